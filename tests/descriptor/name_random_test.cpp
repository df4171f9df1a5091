/** The name conversions against simple restatements of their rules, on random names made of the characters that matter.
 */
#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "gpb_templatelib/gpb_descriptor.h"
#include "support/platform_fixture.h"

namespace
{

constexpr uint32_t kSeed = 20240229;
constexpr int kRounds = 50000;
constexpr size_t kMaxLength = 12;
constexpr size_t kRoom = 64;

bool isLower(char c)
{
    return c >= 'a' && c <= 'z';
}

bool isUpper(char c)
{
    return c >= 'A' && c <= 'Z';
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

char raised(char c)
{
    return isLower(c) ? static_cast<char>(c - ('a' - 'A')) : c;
}

char lowered(char c)
{
    return isUpper(c) ? static_cast<char>(c + ('a' - 'A')) : c;
}

/** Camel case, told by what stands before a character instead of what follows. */
std::string camelCase(const std::string &name, const std::string &separators)
{
    enum class Before
    {
        kStart,
        kSeparator,
        kFreeDigit, // a digit that followed no separator that was removed
        kOther
    };
    Before before = Before::kStart;
    std::string result;
    for (const char c : name)
    {
        const bool isSeparator = separators.find(c) != std::string::npos;
        if (before == Before::kSeparator && !isLower(c) && !isDigit(c))
        {
            result += '_';
        }
        if (isSeparator)
        {
            before = Before::kSeparator;
            continue;
        }
        result += before == Before::kOther ? c : raised(c);
        before = isDigit(c) && before != Before::kSeparator ? Before::kFreeDigit : Before::kOther;
    }
    return before == Before::kSeparator ? result + '_' : result;
}

std::string replaced(std::string text, char from, char to)
{
    std::replace(text.begin(), text.end(), from, to);
    return text;
}

/** A path of any length without prefixes: segment by segment, what stands behind the last ":". */
std::string withoutPrefixes(const std::string &path)
{
    std::string result;
    size_t start = 0;
    while (true)
    {
        const size_t end = path.find('/', start);
        const std::string segment = path.substr(start, end == std::string::npos ? end : end - start);
        const size_t colon = segment.rfind(':');
        result += colon == std::string::npos ? segment : segment.substr(colon + 1);
        if (end == std::string::npos)
        {
            return result;
        }
        result += '/';
        start = end + 1;
    }
}

/** The same in a buffer: what the shortest beginning of the path gives that fills the room, else the whole path. */
std::string withoutPrefixes(const std::string &path, size_t room)
{
    for (size_t length = 0; length <= path.size(); ++length)
    {
        const std::string result = withoutPrefixes(path.substr(0, length));
        if (result.size() == room - 1)
        {
            return result;
        }
    }
    return withoutPrefixes(path);
}

class NameRandom : public gpbtest::PlatformFixture
{
protected:
    std::string randomText(const std::string &alphabet)
    {
        std::string text(m_engine() % (kMaxLength + 1), '\0');
        for (char &c : text)
        {
            c = alphabet[m_engine() % alphabet.size()];
        }
        return text;
    }

    uint32_t randomSize() { return static_cast<uint32_t>(1 + m_engine() % (kMaxLength + 2)); }

    static std::string inRoom(std::string text)
    {
        text.resize(kRoom);
        return text;
    }

private:
    std::mt19937 m_engine{kSeed};
};

TEST_F(NameRandom, TopLayerNames)
{
    for (int round = 0; round < kRounds; ++round)
    {
        const std::string name = randomText("abzAZ019-_-_.");
        std::string room = inRoom(name);
        Gpb_Util_ConvertTopLayerName(room.data());
        ASSERT_EQ(camelCase(name, "-_"), room.c_str()) << name;
    }
}

TEST_F(NameRandom, ContainerNames)
{
    int suffixes = 0;
    for (int round = 0; round < kRounds; ++round)
    {
        const std::string name = randomText("abAZ01-_");
        const uint32_t flag = static_cast<uint32_t>(round % 2);
        const std::string converted = camelCase(name, "-");
        const std::string compared = replaced(name, '-', '_');
        const bool isSame = !name.empty() && converted == compared;
        std::string room = inRoom(name);
        const int result = Gpb_util_ConverContainerName(room.data(), flag);
        ASSERT_EQ(converted + (isSame && flag == 0 ? "_1" : ""), room.c_str()) << name;
        ASSERT_EQ(name.empty() || isSame, result == 0) << name;
        ASSERT_EQ(!name.empty() && converted < compared, result < 0) << name;
        suffixes += isSame ? 1 : 0;
    }
    EXPECT_GT(suffixes, kRounds / 100) << "both outcomes are met";
}

TEST_F(NameRandom, PathsWithoutModules)
{
    for (int round = 0; round < kRounds; ++round)
    {
        const std::string path = randomText("ab:/:/-");
        const uint32_t size = randomSize();
        std::string room(kRoom, '#');
        Gpb_Util_RemoveModuleName(room.data(), size, path.c_str());
        ASSERT_EQ(withoutPrefixes(path, size), room.c_str()) << path << " in " << size;
        ASSERT_EQ(std::string(kRoom - size, '#'), room.substr(size)) << path << " in " << size;
    }
}

TEST_F(NameRandom, FieldNames)
{
    for (int round = 0; round < kRounds; ++round)
    {
        const std::string name = randomText("abAZ01-_@[`{");
        const uint32_t size = randomSize();
        std::string expected = replaced(name, '-', '_');
        std::transform(expected.begin(), expected.end(), expected.begin(), lowered);
        std::string room(kRoom, '#');
        const bool fits = name.size() < size;
        ASSERT_EQ(fits ? 0u : 1u, GPB_ConvertXmlNodeName(name.c_str(), room.data(), size)) << name;
        ASSERT_EQ(fits ? expected : "", room.c_str()) << name;
    }
}

TEST_F(NameRandom, EnumNames)
{
    for (int round = 0; round < kRounds; ++round)
    {
        const std::string name = randomText("aA1__-");
        const uint32_t size = randomSize();
        const size_t underline = name.find('_');
        const bool fits = underline != std::string::npos && name.size() - underline - 1 < size;
        std::string room(kRoom, '\0');
        ASSERT_EQ(fits ? 0u : 1u, Gpb_Util_ConvertProtoEnumToYangEnum(name.c_str(), room.data(), size)) << name;
        ASSERT_EQ(fits ? name.substr(underline + 1) : "", room.c_str()) << name;
    }
}

TEST_F(NameRandom, SmallSteps)
{
    for (int round = 0; round < kRounds; ++round)
    {
        const std::string text = randomText("abAZ01-_@[`{\x80\xFF");
        std::string room = inRoom(text);
        Gpb_Util_ConverDashToUnderline(room.data());
        ASSERT_EQ(replaced(text, '-', '_'), room.c_str());
        room = inRoom(text);
        Gpb_Util_ConverUnderlineToDash(room.data());
        ASSERT_EQ(replaced(text, '_', '-'), room.c_str());
        room = inRoom(text);
        Gpb_Util_StrToLowcase(room.data());
        std::string expected = text;
        std::transform(expected.begin(), expected.end(), expected.begin(), lowered);
        ASSERT_EQ(expected, room.c_str());
        room = inRoom(text);
        Gpb_Util_CutFirstChar(room.data());
        ASSERT_EQ(text.empty() ? "" : text.substr(1), room.c_str());
    }
}

} // namespace
