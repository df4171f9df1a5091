/** Message names from container names: the top level and the levels below. */
#include <string>
#include <utility>
#include <vector>

#include "gpb_templatelib/gpb_descriptor.h"
#include "support/platform_fixture.h"

namespace
{

constexpr uint32_t kWithSuffix = 0;
constexpr uint32_t kNoSuffix = 1;
constexpr size_t kRoomBehind = 3; // two more characters and the terminator
constexpr size_t kMaxName = 255;

using Example = std::pair<const char *, const char *>;

class MessageName : public gpbtest::PlatformFixture
{
protected:
    static std::string top(std::string name)
    {
        Gpb_Util_ConvertTopLayerName(name.data());
        return name.c_str();
    }

    static std::string container(const std::string &name, uint32_t flag = kWithSuffix)
    {
        std::string room = name + std::string(kRoomBehind, '\0') + "#";
        Gpb_util_ConverContainerName(room.data(), flag);
        EXPECT_EQ('#', room.back()) << "written behind the room of two more characters";
        return room.c_str();
    }

    static int comparison(std::string name, uint32_t flag = kWithSuffix)
    {
        name.resize(name.size() + kRoomBehind);
        return Gpb_util_ConverContainerName(name.data(), flag);
    }
};

class MessageNameDeliberateOddities : public MessageName
{
};

TEST_F(MessageName, OfATopLevelContainer)
{
    for (const Example &example : std::vector<Example>{{"top", "Top"},
                                                       {"Top", "Top"},
                                                       {"ipv4-address", "Ipv4Address"},
                                                       {"my_name-x", "MyNameX"},
                                                       {"a1b", "A1B"},
                                                       {"a12b", "A12B"},
                                                       {"a1B", "A1B"},
                                                       {"a-B", "A_B"},
                                                       {"a_B", "A_B"},
                                                       {"a-1", "A1"},
                                                       {"a--b", "A_B"},
                                                       {"a-_b", "A_B"},
                                                       {"a---1", "A__1"},
                                                       {"a-", "A_"},
                                                       {"a_", "A_"},
                                                       {"-a", "A"},
                                                       {"_a", "A"},
                                                       {"-A", "_A"},
                                                       {"-1a", "1a"},
                                                       {"-", "_"},
                                                       {"1a", "1A"},
                                                       {"1", "1"},
                                                       {"a.b", "A.b"},
                                                       {"a-.b", "A_.b"},
                                                       {"aBc", "ABc"}})
    {
        EXPECT_EQ(example.second, top(example.first)) << example.first;
    }
}

TEST_F(MessageName, OfANestedContainer)
{
    for (const Example &example : std::vector<Example>{{"abc", "Abc"},
                                                       {"my_name-x", "My_nameX"},
                                                       {"my-name", "MyName"},
                                                       {"a_b", "A_b"},
                                                       {"a_1b", "A_1B"},
                                                       {"a-1b", "A1b"},
                                                       {"a-_b", "A__b"},
                                                       {"a_-b", "A_B"},
                                                       {"ipv4-address", "Ipv4Address"}})
    {
        EXPECT_EQ(example.second, container(example.first)) << example.first;
        EXPECT_EQ(example.second, container(example.first, kNoSuffix)) << example.first;
    }
}

TEST_F(MessageName, ThatIsItsFieldsNameGetsASuffixUnlessItIsUnwanted)
{
    for (const char *const name : {"ABC", "Abc", "_a", "1", "A_B", "Abc_1", "_", ".a"})
    {
        EXPECT_EQ(std::string(name) + "_1", container(name)) << name;
        EXPECT_EQ(name, container(name, kNoSuffix)) << name;
        EXPECT_EQ(name, container(name, 0xFFFFFFFF)) << name;
    }
    EXPECT_EQ("A_B_1", container("A-B")) << "compared with the field's spelling";
    EXPECT_EQ("_A_1", container("-A"));
}

TEST_F(MessageName, ComparisonIsTheResult)
{
    EXPECT_EQ(0, comparison("ABC"));
    EXPECT_EQ(0, comparison("ABC", kNoSuffix));
    EXPECT_EQ(0, comparison("A-B"));
    EXPECT_LT(comparison("abc"), 0) << "Abc comes before abc";
    EXPECT_LT(comparison("A-1"), 0) << "A1 comes before A_1";
    EXPECT_LT(comparison("abc", kNoSuffix), 0);
}

TEST_F(MessageName, Of255CharactersIsCompared)
{
    const std::string longest(kMaxName, 'N');
    EXPECT_EQ(longest + "_1", container(longest));
}

TEST_F(MessageName, Of256CharactersIsAssertedAndComparedWithNothing)
{
    const std::string tooLong(kMaxName + 1, 'N');
    EXPECT_EQ(tooLong, container(tooLong));
    const std::vector<std::string> asserts = takeAsserts();
    ASSERT_EQ(1u, asserts.size());
    EXPECT_EQ("gpb_util", asserts[0].substr(0, asserts[0].find(':')));
}

TEST_F(MessageName, IsConvertedEvenWhenItsCopyFails)
{
    GpbHost_FailCall(GPB_HOST_STRCPY, 1);
    EXPECT_EQ("MyName", container("my-name"));
    EXPECT_EQ(1u, takeAsserts().size());
    GpbHost_FailCall(GPB_HOST_STRCPY, 1);
    EXPECT_EQ("ABC", container("ABC"));
    EXPECT_EQ(1u, takeAsserts().size());
}

TEST_F(MessageNameDeliberateOddities, NoCapitalFollowsASingleDigitBehindASeparator)
{
    EXPECT_EQ("A1b", top("a-1b"));
    EXPECT_EQ("A12B", top("a-12b"));
    EXPECT_EQ("A1b", top("a_1b"));
    EXPECT_EQ("A1B", top("a1b"));
    EXPECT_EQ("A1b", container("a-1b"));
    EXPECT_EQ("A12B", container("a-12b"));
}

TEST_F(MessageNameDeliberateOddities, UnderlineSeparatesAtTheTopLevelOnly)
{
    EXPECT_EQ("MyName", top("my_name"));
    EXPECT_EQ("My_name", container("my_name"));
}

} // namespace
