/** The name and path helpers against plain statements of what they do. */
#include <cstring>
#include <string>
#include <vector>

#include "gpb_templatelib/gpb_compiler.h"
#include "gpb_templatelib/gpb_descriptor.h"
#include "gpb_templatelib/gpb_lib.h"
#include "platform/zmp.h"
#include "support/bytes.h"
#include "support/guard.h"
#include "support/library.h"

namespace
{

using gpbfuzz::require;

bool isLower(char c)
{
    return c >= 'a' && c <= 'z';
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

char upper(char c)
{
    return isLower(c) ? static_cast<char>(c - 'a' + 'A') : c;
}

/** A text in a buffer of exactly its size and `spare` bytes, so that a checker sees any byte too many. */
std::vector<char> bufferOf(const std::string &text, size_t spare = 0)
{
    std::vector<char> buffer(text.begin(), text.end());
    buffer.resize(text.size() + 1 + spare, '\0');
    return buffer;
}

std::string replaced(std::string text, char from, char to)
{
    for (char &c : text)
    {
        c = c == from ? to : c;
    }
    return text;
}

std::string lowered(std::string text)
{
    for (char &c : text)
    {
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return text;
}

/** The conversion of a name, written as the rules are told: separators go where a letter or digit follows. */
std::string camelCase(std::string name, const std::string &separators)
{
    size_t i = 0;
    if (!name.empty() && isLower(name[0]))
    {
        name[0] = upper(name[0]);
        i = 1;
    }
    while (i < name.size())
    {
        const char next = i + 1 < name.size() ? name[i + 1] : '\0';
        if (separators.find(name[i]) != std::string::npos)
        {
            name[i] = '_';
            if (isLower(next) || isDigit(next))
            {
                name.erase(i, 1);
                name[i] = upper(name[i]);
            }
            ++i;
        }
        else if (isDigit(name[i]) && isLower(next))
        {
            name[i + 1] = upper(next);
            i += 2;
        }
        else
        {
            ++i;
        }
    }
    return name;
}

std::string withoutPrefixes(const std::string &path, size_t size)
{
    std::string out;
    for (size_t i = 0; i < path.size() && out.size() < size - 1; ++i)
    {
        if (path[i] != ':')
        {
            out.push_back(path[i]);
            continue;
        }
        const size_t slash = out.rfind('/');
        out.resize(slash == std::string::npos ? 0 : slash + 1);
    }
    return out;
}

void checkInPlace(const std::string &text)
{
    std::vector<char> buffer = bufferOf(text);
    Gpb_Util_ConverDashToUnderline(buffer.data());
    require(buffer.data() == replaced(text, '-', '_'), "ConverDashToUnderline");
    Gpb_Util_ConverUnderlineToDash(buffer.data());
    require(buffer.data() == replaced(replaced(text, '-', '_'), '_', '-'), "ConverUnderlineToDash");
    buffer = bufferOf(text);
    Gpb_Util_StrToLowcase(buffer.data());
    require(buffer.data() == lowered(text), "StrToLowcase");
    buffer = bufferOf(text);
    Gpb_Util_CutFirstChar(buffer.data());
    require(buffer.data() == (text.empty() ? text : text.substr(1)), "CutFirstChar");
    buffer = bufferOf(text);
    Gpb_Util_ConvertTopLayerName(buffer.data());
    require(buffer.data() == camelCase(text, "-_"), "ConvertTopLayerName");
}

void checkContainerName(const std::string &text, uint32_t noSuffix)
{
    std::vector<char> buffer = bufferOf(text, 2);
    Gpb_util_ConverContainerName(buffer.data(), noSuffix);
    std::string expected = camelCase(text, "-");
    // A name of 256 characters or more does not fit into the copy that it is compared with.
    const std::string before = text.size() < 256 ? replaced(text, '-', '_') : std::string();
    if (!text.empty() && noSuffix == 0 && expected == before)
    {
        expected += "_1";
    }
    require(buffer.data() == expected, "ConverContainerName");
}

void checkBounded(const std::string &text, uint32_t size)
{
    std::vector<char> buffer(size);
    Gpb_Util_RemoveModuleName(buffer.data(), size, text.c_str());
    require(buffer.data() == withoutPrefixes(text, size), "RemoveModuleName");

    buffer.assign(size, '#');
    const uint32_t converted = GPB_ConvertXmlNodeName(text.c_str(), buffer.data(), size);
    require((converted == 0) == (text.size() < size), "ConvertXmlNodeName's result");
    require(converted != 0 || buffer.data() == lowered(replaced(text, '-', '_')), "ConvertXmlNodeName");

    buffer.assign(size, '#');
    const size_t separator = text.find('_');
    const std::string behind = separator == std::string::npos ? std::string() : text.substr(separator + 1);
    const uint32_t cut = Gpb_Util_ConvertProtoEnumToYangEnum(text.c_str(), buffer.data(), size);
    require((cut == 0) == (separator != std::string::npos && behind.size() < size), "ProtoEnumToYangEnum's result");
    require(cut != 0 || buffer.data() == behind, "ProtoEnumToYangEnum");
}

void checkEnumName(const std::string &type, const std::string &value)
{
    constexpr char kSpecial[] = "!\"#\\$%&,-()*+/:<>=.?[]{}|^~`@'; ";
    constexpr unsigned int kSize = 128;
    std::vector<char> buffer(kSize + 2 + 2 * value.size() + 1);
    const char *const name = GpbXmlCompilerBase_EnumYang2Proto(value.c_str(), type.c_str(), buffer.data(), kSize);
    require(name == buffer.data(), "EnumYang2Proto's result");
    std::string expected = (type + "_").substr(0, kSize - 1);
    expected += !value.empty() && isDigit(value[0]) ? "X_" : "";
    for (const char c : value)
    {
        if (std::strchr(kSpecial, c) != nullptr)
        {
            expected += "X_";
            continue;
        }
        if (expected.size() >= kSize - 1)
        {
            break;
        }
        expected.push_back(upper(c));
        if (expected.size() == kSize - 1)
        {
            break;
        }
    }
    require(expected == name, "EnumYang2Proto");
}

void checkReplace(const std::string &text, char from, char to)
{
    std::vector<char> buffer = bufferOf(text);
    require(GPBLIB_ChrReplace(buffer.data(), from, to) == 0, "ChrReplace's result");
    require(buffer.data() == replaced(text, from, to), "ChrReplace");
}

void checkCopy(const std::string &text)
{
    uint32_t length = 0;
    char *const copy = Gpb_util_StrDup(1, text.c_str(), &length);
    require(copy != nullptr && copy == text && length == text.size(), "StrDup");
    ZMP_Free_F(copy, "fuzz", 1);
}

/** Paths into loaded modules: whatever the path, the search ends in a field of that name or in nothing. */
void checkPath(const std::string &path, const std::string &leaf)
{
    for (const char *module : {"everything-three", "example-interfaces"})
    {
        const GpbPbFileDescriptor *file = gpbfuzz::fileOf(module);
        const GpbPbFieldDescriptor *field =
            Gpb_ModuleAdapt_GetFieldHandle(gpbfuzz::library(), file, path.c_str(), leaf.c_str());
        GpbYangEnumItem *items = nullptr;
        uint32_t count = 0;
        const uint32_t result =
            Gpb_ModuleAdapt_GetEnumList(gpbfuzz::library(), file, path.c_str(), leaf.c_str(), &items, &count);
        require((field == nullptr) == (result == 3), "GetEnumList and GetFieldHandle do not agree");
        require((result == 0) == (items != nullptr) && (result == 0) == (count != 0), "GetEnumList's result");
        ZMP_Free_F(items, "fuzz", 1);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    gpbfuzz::library();
    // Paths and names that are too long raise assertions.
    const gpbfuzz::InputGuard guard(true);
    gpbfuzz::Bytes bytes(data, size);
    const uint32_t room = 1 + bytes.below(255);
    const uint32_t noSuffix = bytes.below(2);
    const std::string first = bytes.text(200).c_str(); // up to its first NUL
    const std::string second = bytes.rest().c_str();
    for (const std::string &text : {first, second})
    {
        checkInPlace(text);
        checkContainerName(text, noSuffix);
        checkBounded(text, room);
        checkCopy(text);
        checkReplace(text, '-', '_');
        checkReplace(text, text.empty() ? 'a' : text.back(), '/');
    }
    // The table of special characters is filled by the first compiler.
    GpbXmlCompiler_Destory(GpbXmlCompiler_CreateCompiler(gpbfuzz::library(), "everything-three"));
    checkEnumName(first, second);
    checkPath(second, first);
    return 0;
}
