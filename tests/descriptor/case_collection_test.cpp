/** Collection of the case fields of a message: which ones, in which order, and how many. */
#include <string>
#include <vector>

#include "descriptor/descriptor_fixture.h"

namespace
{

constexpr uint32_t kRoom = 256;
constexpr uint32_t kUntouched = 7;

class CaseCollection : public gpbtest::DescriptorFixture
{
protected:
    struct Collected
    {
        uint32_t result;
        uint32_t count;
        std::vector<const Field *> fields;

        /** Full names of the first `count` fields, a line each. */
        std::string names() const
        {
            std::vector<std::string> texts;
            for (uint32_t i = 0; i < count; ++i)
            {
                texts.push_back(gpbtest::nameOf(fields[i]));
            }
            return gpbtest::joinLines(texts);
        }
    };

    using Collector = uint32_t (*)(const Message *, const Field **, uint32_t, uint32_t *);

    Collected collect(const std::string &in, uint32_t capacity = kRoom, uint32_t count = 0,
                      Collector collector = GPB_GetOneofCaseChilds) const
    {
        Collected collected{0, count, std::vector<const Field *>(kRoom, nullptr)};
        collected.result = collector(message(in), collected.fields.data(), capacity, &collected.count);
        return collected;
    }
};

TEST_F(CaseCollection, GoesDepthFirstInTheOrderOfDeclaration)
{
    addProto("message Top {"
             "  message A { string a = 1; message Box { Deep deep = 1; } Box box = 2; repeated Box boxes = 3; }"
             "  message Deep { string d = 1; }"
             "  message B { oneof inner { C c = 1; string text = 2; D d = 3; } }"
             "  message C { Deep deep = 1; }"
             "  message D { string d = 1; }"
             "  Deep outside = 9;"
             "  oneof second_declared { B b = 4; int32 number = 5; }"
             "  oneof third { A a = 1; }"
             "}");
    const Collected collected = collect("Top");
    EXPECT_EQ(0u, collected.result);
    EXPECT_EQ(gpbtest::joinLines({"Top.b", "Top.B.c", "Top.C.deep", "Top.B.d", "Top.a", "Top.A.box", "Top.A.boxes"}),
              collected.names());
}

TEST_F(CaseCollection, GoesNoDeeperThroughFieldsThatAreNoCaseFields)
{
    addProto("message Top {"
             "  message Case { Plain plain = 1; oneof inner { Inner inner_case = 2; } }"
             "  message Plain { Hidden hidden = 1; oneof never { Hidden never_seen = 2; } }"
             "  message Inner { Plain plain = 1; }"
             "  message Hidden { string h = 1; }"
             "  oneof choice { Case case_a = 1; }"
             "}");
    EXPECT_EQ(gpbtest::joinLines({"Top.case_a", "Top.Case.plain", "Top.Case.inner_case", "Top.Inner.plain"}),
              collect("Top").names());
}

TEST_F(CaseCollection, IsNothingWithoutChoices)
{
    addProto("message Top { string a = 1; Sub sub = 2; message Sub { string s = 1; } }"
             "message Leaves { oneof choice { string a = 1; int32 b = 2; } }"
             "message Empty { }");
    for (const char *const name : {"Top", "Leaves", "Empty"})
    {
        const Collected collected = collect(name, kRoom, kUntouched);
        EXPECT_EQ(0u, collected.result) << name;
        EXPECT_EQ(kUntouched, collected.count) << name;
    }
}

TEST_F(CaseCollection, TakesNoOptionalFieldForAChoice)
{
    addProto("message Top {"
             "  message Sub { optional Leaf leaf = 1; }"
             "  message Leaf { Hidden hidden = 1; }"
             "  message Hidden { string h = 1; }"
             "  optional Sub sub = 1;"
             "  optional string text = 2;"
             "  oneof choice { Sub case_a = 3; }"
             "}"
             "message Optional { optional Top top = 1; }");
    EXPECT_EQ(gpbtest::joinLines({"Top.case_a", "Top.Sub.leaf"}), collect("Top").names());
    EXPECT_EQ("", collect("Optional").names());
    EXPECT_EQ("(null)", findInCases("Top", "h")) << "an optional field of a case is not gone through";
}

TEST_F(CaseCollection, TakesNoGroupForACase)
{
    addProto2("message Top { oneof choice { group Box = 1 { optional string inside = 2; } } }");
    EXPECT_EQ("", collect("Top").names());
    EXPECT_EQ("(null)", findInCases("Top", "inside"));
}

TEST_F(CaseCollection, AddsBehindWhatIsThere)
{
    addProto("message Top { message C { string s = 1; } oneof choice { C a = 1; C b = 2; } }");
    const Collected collected = collect("Top", kRoom, 2);
    EXPECT_EQ(0u, collected.result);
    EXPECT_EQ(4u, collected.count);
    EXPECT_EQ(nullptr, collected.fields[1]);
    EXPECT_EQ("Top.a", gpbtest::nameOf(collected.fields[2]));
    EXPECT_EQ("Top.b", gpbtest::nameOf(collected.fields[3]));
}

TEST_F(CaseCollection, IsFullWhenTheLastPlaceIsTaken)
{
    addProto("message Top { message C { string s = 1; } oneof choice { C a = 1; C b = 2; } }");
    EXPECT_EQ(0u, collect("Top", 3).result);
    EXPECT_EQ(2u, collect("Top", 3).count);
    for (const uint32_t capacity : {2u, 1u, 0u})
    {
        const Collected collected = collect("Top", capacity, 0);
        EXPECT_EQ(1u, collected.result) << capacity;
        EXPECT_EQ(0u, collected.count) << "not written back";
        EXPECT_EQ(capacity > 1 ? "Top.b" : "(null)", gpbtest::nameOf(collected.fields[1])) << capacity;
        EXPECT_EQ(capacity > 0 ? "Top.a" : "(null)", gpbtest::nameOf(collected.fields[0])) << capacity;
    }
    EXPECT_EQ(1u, collect("Top", 2, 2).result);
    EXPECT_EQ(1u, collect("Top", 2, 3).result);
}

TEST_F(CaseCollection, IsFullInsideACase)
{
    addProto("message Top {"
             "  message Leaf { string s = 1; }"
             "  message Case { Leaf x = 1; oneof inner { Inner y = 2; } }"
             "  message Inner { Leaf z = 1; }"
             "  oneof choice { Case a = 1; }"
             "}");
    EXPECT_EQ(gpbtest::joinLines({"Top.a", "Top.Case.x", "Top.Case.y", "Top.Inner.z"}), collect("Top", 5).names());
    for (const uint32_t capacity : {1u, 2u, 3u, 4u})
    {
        const Collected collected = collect("Top", capacity);
        EXPECT_EQ(1u, collected.result) << capacity;
        EXPECT_EQ(0u, collected.count) << capacity;
        EXPECT_NE(nullptr, collected.fields[capacity - 1]) << capacity;
        EXPECT_EQ(nullptr, collected.fields[capacity]) << capacity;
    }
}

TEST_F(CaseCollection, DescentTakesMessageFieldsInAndOutsideOfChoices)
{
    addProto("message Case {"
             "  message Leaf { string s = 1; }"
             "  message Inner { Leaf deep = 1; }"
             "  string text = 1;"
             "  Leaf plain = 2;"
             "  oneof inner { Inner choice_a = 3; string choice_b = 4; }"
             "  map<string, string> table = 5;"
             "}");
    const Collected collected = collect("Case", kRoom, 0, GPB_GetEachOneofCaseChilds);
    EXPECT_EQ(0u, collected.result);
    EXPECT_EQ(gpbtest::joinLines({"Case.plain", "Case.choice_a", "Case.Inner.deep", "Case.table"}), collected.names());
}

TEST_F(CaseCollection, DescentIntoAFullArrayFailsAtOnce)
{
    addProto("message Empty { } message One { Empty e = 1; }");
    EXPECT_EQ(1u, collect("Empty", 2, 2, GPB_GetEachOneofCaseChilds).result) << "even without fields";
    EXPECT_EQ(1u, collect("Empty", 2, 3, GPB_GetEachOneofCaseChilds).result);
    EXPECT_EQ(0u, collect("Empty", 2, 1, GPB_GetEachOneofCaseChilds).result);
    const Collected full = collect("One", 2, 1, GPB_GetEachOneofCaseChilds);
    EXPECT_EQ(1u, full.result);
    EXPECT_EQ(1u, full.count) << "not written back";
    EXPECT_EQ("One.e", gpbtest::nameOf(full.fields[1]));
}

TEST_F(CaseCollection, EndsForATypeThatContainsItself)
{
    addProto("message Top { string leaf = 1; oneof choice { Top again = 2; } }"
             "message Ping { oneof choice { Pong pong = 1; } } message Pong { oneof choice { Ping ping = 1; } }"
             "message Plain { oneof choice { Case c = 1; } message Case { Case plain = 1; string there = 2; } }");
    EXPECT_EQ(1u, collect("Top").result);
    EXPECT_EQ(1u, collect("Ping").result);
    EXPECT_EQ(gpbtest::joinLines({"Plain.c", "Plain.Case.plain"}), collect("Plain").names());
}

TEST_F(CaseCollection, GoesAsDeepAsTheCapacityOfTheCaller)
{
    addProto("message Top { string leaf = 1; oneof choice { Top again = 2; } }");
    constexpr uint32_t kMillion = 1000000;
    for (const Collector collector : {GPB_GetOneofCaseChilds, GPB_GetEachOneofCaseChilds})
    {
        std::vector<const Field *> fields(kMillion, nullptr);
        uint32_t count = 3;
        EXPECT_EQ(1u, collector(message("Top"), fields.data(), kMillion, &count));
        EXPECT_EQ(3u, count) << "not written back";
        EXPECT_EQ(nullptr, fields[2]);
        EXPECT_EQ("Top.again", gpbtest::nameOf(fields[3]));
        EXPECT_EQ("Top.again", gpbtest::nameOf(fields[kMillion - 1]));
    }
}

TEST_F(CaseCollection, ComesBackToWhereItWentDown)
{
    addProto("message Top {"
             "  message Leaf { string s = 1; }"
             "  message Case { Leaf x = 1; oneof inner { Inner y = 2; Inner z = 3; } Leaf last = 4; }"
             "  message Inner { oneof deep { Deep d = 1; } Leaf e = 2; }"
             "  message Deep { Leaf f = 1; }"
             "  oneof choice { Case a = 1; Leaf b = 2; }"
             "}");
    EXPECT_EQ(gpbtest::joinLines({"Top.a", "Top.Case.x", "Top.Case.y", "Top.Inner.d", "Top.Deep.f", "Top.Inner.e",
                                  "Top.Case.z", "Top.Inner.d", "Top.Deep.f", "Top.Inner.e", "Top.Case.last", "Top.b"}),
              collect("Top").names());
}

TEST_F(CaseCollection, NullArgumentsCollectNothing)
{
    addProto("message Top { message C { string s = 1; } oneof choice { C a = 1; } }");
    const Field *fields[2] = {};
    uint32_t count = 0;
    for (const Collector collector : {GPB_GetOneofCaseChilds, GPB_GetEachOneofCaseChilds})
    {
        EXPECT_EQ(0u, collector(nullptr, fields, 2, &count));
        EXPECT_EQ(0u, collector(message("Top"), nullptr, 2, &count));
        EXPECT_EQ(0u, collector(message("Top"), fields, 2, nullptr));
    }
    EXPECT_EQ(0u, count);
    EXPECT_EQ(nullptr, fields[0]);
}

} // namespace
