// JSON to GPB: whole documents.
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "compiler/json_fixture.h"

namespace gpbtest
{
namespace
{

class JsonEncodeTest : public JsonFixture
{
protected:
    void SetUp() override
    {
        JsonFixture::SetUp();
        addModule("plant", kPlantProto);
    }

    void encodes(const std::string &members, const std::string &textForm, std::vector<std::string> lines = {})
    {
        expectEncodes("plant", "{\"plant\":{" + members + "}}", "plant.Plant", textForm, std::move(lines));
    }

    void fails(const std::string &members, std::vector<std::string> lines = {})
    {
        expectFails("plant", "{\"plant\":{" + members + "}}", 1, std::move(lines));
    }
};

TEST_F(JsonEncodeTest, FillsALeafOfEachType)
{
    encodes(R"("ratio":1.5,"load":0.25,"big":"-9007199254740993","ubig":"18446744073709551615","level":-7,"fix64":"64",
               "fix32":32,"on":true,"first-name":"Ann","blob":"raw","count":4294967295,"state":"up","sfix32":-32,
               "sfix64":"-64","zig32":-1,"zig64":"-2")",
            "ratio:1.5 load:0.25 big:-9007199254740993 ubig:18446744073709551615 level:-7 fix64:64 fix32:32 on:true "
            "first_name:'Ann' blob:'raw' count:4294967295 state:State_UP sfix32:-32 sfix64:-64 zig32:-1 zig64:-2");
}

TEST_F(JsonEncodeTest, MatchesKeysWithoutRegardToCaseAndDashes)
{
    encodes(R"("First-Name":"Ann","LEVEL":2)", "first_name:'Ann' level:2");
}

TEST_F(JsonEncodeTest, KeepsTheLastValueOfALeafThatStandsTwice)
{
    encodes(R"("level":1,"level":2)", "level:2");
}

TEST_F(JsonEncodeTest, HandsNumbersOverWithFourteenDigits)
{
    encodes(R"("first-name":0.1)", "first_name:'0.1'");
    encodes(R"("first-name":1e20)", "first_name:'1e+20'");
    encodes(R"("first-name":123456789012345678)", "first_name:'1.2345678901235e+17'");
    encodes(R"("first-name":-0.0)", "first_name:'-0'");
    encodes(R"("first-name":12345678901234)", "first_name:'12345678901234'");
    encodes(R"("ratio":0.12345678901234567)", "ratio:0.12345678901235");
    // The last numbers that are whole and have fourteen digits, and the first ones with more.
    for (const char *const text : {"0", "-1", "99999999999999", "-99999999999999"})
    {
        encodes(std::string("\"first-name\":") + text, std::string("first_name:'") + text + "'");
    }
    encodes(R"("first-name":100000000000000)", "first_name:'1e+14'");
    encodes(R"("first-name":-100000000000000)", "first_name:'-1e+14'");
    encodes(R"("first-name":99999999999999.5)", "first_name:'1e+14'");
}

TEST_F(JsonEncodeTest, HandsDecimalsOverAsPrintfWritesThem)
{
    std::vector<std::string> numbers = {"0.5",
                                        "-0.5",
                                        "0.0001",
                                        "0.00001",
                                        "0.00012",
                                        "-1e-7",
                                        "1e-300",
                                        "9.9999",
                                        "99999999999.999",
                                        "9999999999.9999",
                                        "99999999999.9999",
                                        "9999999999999.9",
                                        "99999999999999.9",
                                        "0.30000000000000004",
                                        "0.1234567890123456",
                                        "4.35",
                                        "1.005",
                                        "2.675",
                                        "1234567.8901",
                                        "-0.0010",
                                        "10.0100",
                                        "5e-324",
                                        "0.00005"};
    for (uint64_t i = 1; i < 20000; i += 197)
    {
        constexpr uint64_t LARGE = 99999999999;
        numbers.push_back(std::to_string(i * i % 1009) + "." + std::to_string(i));
        numbers.push_back("-" + std::to_string(LARGE - i) + "." + std::to_string(i % 1000));
    }
    for (const std::string &number : numbers)
    {
        char printed[64] = {};
        ASSERT_GT(std::snprintf(printed, sizeof(printed), "%.14g", std::strtod(number.c_str(), nullptr)), 0);
        encodes("\"first-name\":" + number, std::string("first_name:'") + printed + "'");
        encodes("\"ratio\":" + number, std::string("ratio:") + printed);
    }
}

TEST_F(JsonEncodeTest, ReadsAnIntegerFromItsPrintedNumber)
{
    // The text has an exponent, and the translator stops there.
    encodes(R"("big":123456789012345678)", "big:1");
    // A number beyond the field is clamped to the machine's long and then cut.
    encodes(R"("level":3000000000)", sizeof(long) == 4 ? "level:2147483647" : "level:-1294967296");
    encodes(R"("level":2.9)", "level:2");
    encodes(R"("count":-1)", "count:4294967295");
}

TEST_F(JsonEncodeTest, HandsBooleansOverAsTexts)
{
    encodes(R"("on":false,"first-name":true,"level":true)", "first_name:'true' on:false level:0");
    encodes(R"("on":"false")", "on:false");
    encodes(R"("on":"FALSE")", "on:true");
    encodes(R"("on":0)", "on:true");
}

TEST_F(JsonEncodeTest, TakesNullAsAnEmptyLeaf)
{
    encodes(R"("on":null,"first-name":null)", "on:true first_name:''");
    encodes(R"("flags":null)", "flags:true");
    encodes(R"("names":null)", "names:''");
    encodes(R"("level":null,"first-name":"kept")", "first_name:'kept'",
            {"0: Gpb compiler empty leaf level, expect type 5."});
    encodes(R"("blob":null)", "", {"0: Gpb compiler empty leaf blob, expect type 12."});
    encodes(R"("state":null)", "", {"0: Gpb compiler empty leaf state, expect type 14."});
    fails(R"("box":null)");
}

TEST_F(JsonEncodeTest, LeavesOutAValueThatDoesNotConvert)
{
    encodes(R"("state":"sideways","level":1)", "level:1",
            {"0: Gpb Compiler  fill leaf fail to translator layer [plant.Plant]."});
    encodes(R"("box":{"label":"x"},"state":"","level":1)", "box{label:'x'} level:1");
    encodes(R"("state":5,"level":1)", "level:1",
            {"0: Gpb Compiler  fill leaf fail to translator layer [plant.Plant]."});
}

TEST_F(JsonEncodeTest, ConvertsEnumValues)
{
    encodes(R"("state":"2g")", "state:State_X_2G");
    encodes(R"("state":"up none")", "state:State_NONE");
    encodes(R"("states":"up none")", "states:State_UP states:State_NONE");
}

TEST_F(JsonEncodeTest, OpensContainersAndListEntries)
{
    encodes(
        R"("box":{"label":"a","lid":{"colour":"red"}},"boxes":[{"label":"b"},{"size":2,"lids":[{},{"colour":"x"}]}])",
        "box{label:'a' lid{colour:'red'}} boxes{label:'b'} boxes{size:2 lids{} lids{colour:'x'}}");
    encodes(R"("box":{})", "box{}");
    encodes(R"("boxes":[])", "");
    encodes("", "");
}

TEST_F(JsonEncodeTest, TakesAnObjectForAListEntryAndAnArrayForAContainer)
{
    encodes(R"("boxes":{"label":"a"},"boxes":{"label":"b"})", "boxes{label:'a'} boxes{label:'b'}");
    encodes(R"("box":[{"label":"a"},{"size":1},{"label":"b"}])", "box{label:'b' size:1}");
}

TEST_F(JsonEncodeTest, DecidesByTheFirstMemberWhatAnArrayIs)
{
    encodes(R"("boxes":[{"label":"a"},5,null,"x",[]])", "boxes{label:'a'} boxes{} boxes{} boxes{} boxes{}");
    encodes(R"("boxes":[null,{"label":"a"}],"level":1)", "level:1");
    encodes(R"("names":[{}],"level":1)", "level:1");
    fails(R"("level":[{}])", {"0: Gpb Compiler fill layer message Field [level] type is not message, it is 5."});
}

TEST_F(JsonEncodeTest, FillsLeafListsOfEnumsOnly)
{
    encodes(R"("states":["up","none","2g"])", "states:State_UP states:State_NONE states:State_X_2G");
    encodes(R"("names":["a","b"],"numbers":[1,2],"flags":[true],"level":1)", "level:1");
    encodes(R"("first-name":["a"],"box":[1],"boxes":["a"])", "");
    encodes(R"("state":["up","none"])", "state:State_NONE");
    encodes(R"("states":["up","sideways","2g"])", "states:State_UP states:State_X_2G",
            {"0: Gpb Compiler  fill leaf fail to translator layer [plant.Plant]."});
    encodes(R"("numbers":7,"names":"a","flags":false)", "numbers:7 names:'a' flags:false");
}

TEST_F(JsonEncodeTest, FailsALeafListMemberThatIsNoValue)
{
    fails(R"("states":["up",null])");
    fails(R"("states":["up",{}])");
    fails(R"("states":["up",["up"]])");
    fails(R"("nothing":["up"])");
}

TEST_F(JsonEncodeTest, FailsUnknownKeys)
{
    fails(R"("nothing":1)", {"2: Gpb Compiler leaf node fail to find field [nothing] from [plant.Plant]."});
    fails(R"("box":{"nothing":null})",
          {"2: Gpb Compiler leaf node fail to find field [nothing] from [plant.Plant.box]."});
    fails(R"("nothing":{})");
    fails(R"("nothing":[{}])");
    fails(R"("":1)", {"2: Gpb Compiler leaf node fail to find field [] from [plant.Plant]."});
    fails(R"("plant:level":1)", {"2: Gpb Compiler leaf node fail to find field [plant:level] from [plant.Plant]."});
    encodes(R"("nothing":[])", "");
}

TEST_F(JsonEncodeTest, StopsAtTheFirstFailure)
{
    fails(R"("nothing":1,"nowhere":2,"level":{})",
          {"2: Gpb Compiler leaf node fail to find field [nothing] from [plant.Plant]."});
    fails(R"("boxes":[{"label":"a"},{"nothing":1},{"nowhere":2}],"nowhere":3)",
          {"2: Gpb Compiler leaf node fail to find field [nothing] from [plant.Plant.boxes]."});
    fails(R"("box":{"lid":{"nothing":1},"nowhere":2},"nowhere":3)",
          {"2: Gpb Compiler leaf node fail to find field [nothing] from [plant.Plant.box.lid]."});
    fails(R"("states":["sideways",null,"downwards"],"nowhere":1)",
          {"0: Gpb Compiler  fill leaf fail to translator layer [plant.Plant]."});
}

TEST_F(JsonEncodeTest, FailsValuesOfTheWrongShape)
{
    fails(R"("box":5)", {"0: Gpb Compiler fill leaf fail to find translator for node [box] type 11."});
    fails(R"("boxes":"x")", {"0: Gpb Compiler fill leaf fail to find translator for node [boxes] type 11."});
    fails(R"("level":{})", {"0: Gpb Compiler fill layer message Field [level] type is not message, it is 5."});
    fails(R"("state":{"a":1})", {"0: Gpb Compiler fill layer message Field [state] type is not message, it is 14."});
}

TEST_F(JsonEncodeTest, FailsArraysInArrays)
{
    // A member has no key, and neither has what lies in it, so nothing below the outer array's member is found.
    fails(R"("boxes":[[1]])", {"2: Gpb Compiler leaf node fail to find field [] from [plant.Plant.boxes]."});
    fails(R"("boxes":[[{}]])");
    fails(R"("boxes":[[[1]]])");
    fails(R"("boxes":[[[[]]]])");
    encodes(R"("boxes":[[],[]])", "boxes{} boxes{}");
    encodes(R"("boxes":[[[]]])", "boxes{}");
    fails(R"("names":[[1]])", {"2: Gpb Compiler leaf node fail to find field [] from [plant.Plant]."});
}

TEST_F(JsonEncodeTest, LimitsKeysTo127Characters)
{
    const std::string longest(127, 'k');
    const std::string module = "syntax = \"proto3\"; package long; message Top { int32 " + longest + " = 1; }";
    addModule("long", module);
    expectEncodes("long", "{\"top\":{\"" + longest + "\":1}}", "long.Top", longest + ":1");
    expectFails("long", "{\"top\":{\"" + longest + "k\":1}}", 1,
                {"2: Gpb Compiler leaf node fail to find field [" + longest + "k] from [long.Top]."});
    const std::string huge(5000, 'k');
    const std::string line = "2: Gpb Compiler leaf node fail to find field [" + huge;
    expectFails("long", "{\"top\":{\"" + huge + "\":1}}", 1, {line.substr(0, 3 + 1023)});
    expectFails("long", "{\"top\":{\"" + huge + "\":{}}}", 1);
    expectFails("long", "{\"top\":{\"" + huge + "\":[1]}}", 1);
}

TEST_F(JsonEncodeTest, FindsFieldsWithALayerNumber)
{
    addModule("suffix", R"(syntax = "proto3"; package suffix;
        message Top { int32 name2 = 1; message Sub { int32 name3 = 1; } Sub sub = 2; repeated Sub list2 = 3; })");
    expectEncodes("suffix", R"({"top":{"name":1,"sub":{"name":2},"list":[{"name":3}]}})", "suffix.Top",
                  "name2:1 sub{name3:2} list2{name3:3}");
}

TEST_F(JsonEncodeTest, EncodesTextsAsTheyStand)
{
    encodes(R"("first-name":"\u00e4\n\"%s%n\"","blob":"\u20ac")",
            "first_name:'\xc3\xa4\\n\"%s%n\"' blob:'\xe2\x82\xac'");
}

// ---- the top layer ----

TEST_F(JsonEncodeTest, NamesTheTopMessageAfterTheRoot)
{
    addModule("tops", R"(syntax = "proto3"; package a.b;
        message FooBar { int32 x = 1; } message Ipv4Address { int32 x = 1; })");
    expectEncodes("tops", R"({"foo-bar":{"x":1}})", "a.b.FooBar", "x:1");
    expectEncodes("tops", R"({"ipv4-address":{"x":1}})", "a.b.Ipv4Address", "x:1");
}

TEST_F(JsonEncodeTest, FailsARootWithoutMessageType)
{
    const JsonTree tree(R"({"green-house":{}})");
    const auto compiler = open<OpenJsonCompiler>("plant");
    EXPECT_EQ(1u, compiler->EncodeJson(tree.root(), tree.root()));
    EXPECT_LOG(log(), "2: Fail to find message type for path plant.GreenHouse.", prepareLine(1));
}

TEST_F(JsonEncodeTest, FailsARootNameThatIsTooLong)
{
    const auto compiler = open<OpenJsonCompiler>("plant");
    const JsonTree longest("{\"" + std::string(127, 'x') + "\":{}}");
    EXPECT_EQ(1u, compiler->EncodeJson(longest.root(), longest.root()));
    EXPECT_LOG(log(), "2: Fail to find message type for path plant.X" + std::string(126, 'x') + ".", prepareLine(1));
    const JsonTree tooLong("{\"" + std::string(128, 'x') + "\":{}}");
    EXPECT_EQ(1u, compiler->EncodeJson(tooLong.root(), tooLong.root()));
    EXPECT_LOG(log(), prepareLine(1));
}

TEST_F(JsonEncodeTest, FailsARootWithoutKey)
{
    const JsonTree tree(R"([{"level":1}])");
    const auto compiler = open<OpenJsonCompiler>("plant");
    EXPECT_EQ(1u, compiler->EncodeJson(tree.root(), tree.root()));
    EXPECT_LOG(log(), prepareLine(1));
    EXPECT_EQ(1u, compiler->EncodeJson(nullptr, tree.root()));
    EXPECT_LOG(log(), prepareLine(1));
}

TEST_F(JsonEncodeTest, FailsWithoutItemAndWithoutALine)
{
    const JsonTree tree(R"({"plant":{}})");
    const auto compiler = open<OpenJsonCompiler>("plant");
    EXPECT_EQ(1u, compiler->EncodeJson(tree.root(), nullptr));
    EXPECT_EQ(1u, compiler->EncodeJson(nullptr, nullptr));
    EXPECT_EQ("", log().take());
}

TEST_F(JsonEncodeTest, TakesARootOfAnyType)
{
    expectEncodes("plant", R"({"plant":5})", "plant.Plant", "");
    expectEncodes("plant", R"({"plant":null})", "plant.Plant", "");
    expectEncodes("plant", R"({"plant":[]})", "plant.Plant", "");
    // Members of an array root have no key and go by the root's, which is no field of the top message.
    expectFails("plant", R"({"plant":[{"level":1}]})", 1);
    expectFails("plant", R"({"plant":[1]})", 1,
                {"2: Gpb Compiler leaf node fail to find field [] from [plant.Plant]."});
}

TEST_F(JsonEncodeTest, DoesNotTakeInWhatFollowsTheRoot)
{
    expectEncodes("plant", R"({"plant":{"level":1},"level":2,"nothing":3})", "plant.Plant", "level:1");
}

// ---- choices ----

TEST_F(JsonEncodeTest, OpensTheCaseOfAContainerLeafOrLeafList)
{
    encodes(R"("left-leaf":"x","level":1)", "left{left_leaf:'x'} level:1");
    encodes(R"("inner":{"depth":3},"level":1)", "left{inner{depth:3}} level:1");
    encodes(R"("sides":["b","a"],"level":1)", "left{sides:Side_B sides:Side_A} level:1");
    encodes(R"("mark":null,"level":1)", "right{mark:true} level:1");
    encodes(R"("left-leaf":"x","inner":{"depth":3},"sides":["b"])", "left{left_leaf:'x' inner{depth:3} sides:Side_B}");
}

TEST_F(JsonEncodeTest, OpensTheWholeWayToALeafOfAContainerInACase)
{
    encodes(R"("depth":3,"level":1)", "left{inner{depth:3}} level:1");
    // What was opened stays when nothing is stored.
    encodes(R"("depth":null,"level":1)", "left{inner{}} level:1", {"0: Gpb compiler empty leaf depth, expect type 5."});
    encodes(R"("sides":["c"],"level":1)", "left{} level:1",
            {"0: Gpb Compiler  fill leaf fail to translator layer [plant.Plant.left]."});
    fails(R"("depth":{})", {"0: Gpb Compiler fill layer message Field [depth] type is not message, it is 5."});
}

TEST_F(JsonEncodeTest, KeepsTheLastCaseOfAChoice)
{
    encodes(R"("left-leaf":"x","inner":{"depth":3},"right-leaf":"y")", "right{right_leaf:'y'}");
    encodes(R"("inner":{"depth":3},"plain":"p","inner":{})", "left{inner{}}");
    encodes(R"("inner":{"depth":3},"mode":["up"],"left-leaf":"x")", "left{left_leaf:'x'}");
    encodes(R"("inner":{"depth":3},"plain":null)", "plain:''");
    encodes(R"("left":{"inner":{"depth":1}},"right":{},"inner":{"depth":2})", "left{inner{depth:2}}");
}

TEST_F(JsonEncodeTest, FailsANodeBehindAListInsideACase)
{
    // The case is reached through a list, in which no entry can be chosen.
    fails(R"("cell":"x")",
          {"0: Json compiler choice case leaf node fail to find field [cell] from [plant.Plant.rows]."});
    fails(R"("sub":{"x":1})", {"0: Json compiler push choice case node [sub] fail."});
    fails(R"("es":["a"])", {"0: Gpb compiler choice case leaflist node fail to find field []."});
    encodes(R"("row":[{"cell":"x"},{"cell":"y"}])", "rows{row{cell:'x'} row{cell:'y'}}");
}

// ---- groups ----

TEST_F(JsonEncodeTest, HasNoWayToFillGroups)
{
    addModule("grouped", R"(syntax = "proto2"; package grouped;
        message Top { optional group One = 1 { optional int32 x = 1; }
                      repeated group Many = 2 { optional int32 y = 1; } optional int32 z = 3; })");
    expectFails("grouped", R"({"top":{"one":{"x":1}}})", 1,
                {"0: Gpb Compiler fill layer message Field [one] type is not message, it is 10."});
    expectFails("grouped", R"({"top":{"one":1}})", 1,
                {"0: Gpb Compiler fill leaf fail to find translator for node [one] type 10."});
    expectFails("grouped", R"({"top":{"one":null}})", 1);
    // A repeated one is passed by as a leaf-list is, and what it holds is looked up in its parent.
    expectEncodes("grouped", R"({"top":{"many":[{"z":1}]}})", "grouped.Top", "z:1");
}

using JsonEncodeOddityTest = JsonEncodeTest;

// The layer that a case leaves behind is taken again, with the message of the entry that it was opened in.
TEST_F(JsonEncodeOddityTest, TheCaseOfAnEarlierListEntryIsReused)
{
    addModule("pick", R"(syntax = "proto3"; package pick;
        message Top { message Entry { message One { string one = 1; repeated K ks = 2; enum K { K_A = 0; K_B = 1; }
                                                    message In { int32 x = 1; } In in = 3; }
                                      message Two { string two = 1; }
                                      oneof way { One case_one = 1; Two case_two = 2; } string name = 3; }
                      repeated Entry entry = 1; })");
    const auto picks = [&](const std::string &entries, const std::string &textForm)
    { expectEncodes("pick", "{\"top\":{\"entry\":[" + entries + "]}}", "pick.Top", textForm); };
    picks(R"({"one":"1","name":"a"},{"one":"2","name":"b"})",
          "entry { case_one { one: '2' } name: 'a' } entry { name: 'b' }");
    picks(R"({"one":"1"},{"ks":["b"]})", "entry { case_one { one: '1' ks: K_B } } entry {}");
    picks(R"({"in":{"x":1}},{"in":{"x":2}})", "entry { case_one { in { x: 2 } } } entry {}");
    // Another case has another type, and takes the slot.
    picks(R"({"one":"1"},{"two":"2"},{"one":"3"})",
          "entry { case_one { one: '1' } } entry { case_two { two: '2' } } entry { case_one { one: '3' } }");
    picks(R"({"one":"1"},{"case-one":{"one":"2"}})", "entry { case_one { one: '1' } } entry { case_one { one: '2' } }");
}

TEST_F(JsonEncodeOddityTest, AnObjectUnderALeafListIsTakenAsPartOfItsParent)
{
    encodes(R"("names":{"level":4,"names":{"names":[{"on":true}]}})", "level:4 on:true");
}

} // namespace
} // namespace gpbtest
