// What node names stand for in the lossless setting.
#include "descriptor/gpb_exact_names.h"

#include <google/protobuf/descriptor.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "case_index/random_proto.h"
#include "support/proto_judge.h"

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;

namespace
{

constexpr int32_t TOP_LAYER = 2; // of the first search of a walk

class ExactNames : public ::testing::Test
{
protected:
    // The content of message Top of package m.
    void Use(const std::string &content, const std::string &types = "", int32_t layer = TOP_LAYER)
    {
        m_judge = std::make_unique<gpbtest::ProtoJudge>();
        m_judge->addFile("m.proto", "syntax = \"proto3\"; package m; " + types + " message Top {" + content + "}");
        const Descriptor *top = m_judge->findType("m.Top");
        ASSERT_NE(top, nullptr);
        m_names = std::make_unique<GpbExactNames>(top, layer);
    }

    // The way to what is found, "case_a/leaf"; empty when nothing is.
    std::string Find(const std::string &name, GpbExactKind kind, const std::string &module = "") const
    {
        const GpbExactField *found = m_names->Find(name, kind, module);
        if (found == nullptr)
        {
            return "";
        }
        std::string way;
        for (const FieldDescriptor *caseField : found->cases)
        {
            way += caseField->name() + "/";
        }
        return way + found->field->name();
    }

    std::string Leaf(const std::string &name, const std::string &module = "") const
    {
        return Find(name, GpbExactKind::LEAF, module);
    }

    std::string Message(const std::string &name, const std::string &module = "") const
    {
        return Find(name, GpbExactKind::MESSAGE, module);
    }

    std::string Any(const std::string &name, const std::string &module = "") const
    {
        return Find(name, GpbExactKind::ANY, module);
    }

private:
    std::unique_ptr<gpbtest::ProtoJudge> m_judge;
    std::unique_ptr<GpbExactNames> m_names;
};

} // namespace

TEST_F(ExactNames, KindsAreKeptApart)
{
    Use("string leaf = 1; Box box = 2; repeated Box list = 3; repeated string leaf_list = 4;",
        "message Box { string x = 1; }");
    EXPECT_EQ(Leaf("leaf"), "leaf");
    EXPECT_EQ(Message("leaf"), "");
    EXPECT_EQ(Leaf("box"), "");
    EXPECT_EQ(Message("box"), "box");
    EXPECT_EQ(Message("list"), "list");
    EXPECT_EQ(Leaf("leaf-list"), "leaf_list");
    EXPECT_EQ(Any("leaf"), "leaf");
    EXPECT_EQ(Any("box"), "box");
    EXPECT_EQ(Any("x"), "");
    EXPECT_EQ(Any(""), "");
}

TEST_F(ExactNames, EverySpellingOfAName)
{
    Use("string a_b_c = 1; string Upper_Case = 2;");
    for (const char *name : {"a-b-c", "a_b_c", "a.b.c", "a-b_c", "A.b-C"})
    {
        EXPECT_EQ(Leaf(name), "a_b_c") << name;
    }
    EXPECT_EQ(Leaf("upper.case"), "Upper_Case");
    EXPECT_EQ(Leaf("a--b-c"), "");
    EXPECT_EQ(Leaf("a-b-c-"), "");
}

TEST_F(ExactNames, LongNames)
{
    for (const size_t length : {126U, 127U, 128U, 500U})
    {
        const std::string name = "n-" + std::string(length - 2, 'x');
        const std::string field = "n_" + std::string(length - 2, 'x');
        Use("string " + field + " = 1;");
        EXPECT_EQ(Leaf(name), field) << length;
        Use("string " + field + "2 = 1;");
        EXPECT_EQ(Leaf(name), field + "2") << length;
    }
}

TEST_F(ExactNames, CasesOfCases)
{
    Use("oneof choice { A case_a = 1; B case_b = 2; string text = 3; } string own = 4;",
        "message A { string a = 1; oneof inner { C case_c = 2; } Box box = 3; } message B { string b = 1; }"
        "message C { string c = 1; Box c_box = 2; } message Box { string in_box = 1; oneof o { A in_box_case = 2; } }");
    EXPECT_EQ(Leaf("own"), "own");
    EXPECT_EQ(Leaf("text"), "text");
    EXPECT_EQ(Leaf("a"), "case_a/a");
    EXPECT_EQ(Leaf("b"), "case_b/b");
    EXPECT_EQ(Leaf("c"), "case_a/case_c/c");
    EXPECT_EQ(Message("box"), "case_a/box");
    EXPECT_EQ(Message("c-box"), "case_a/case_c/c_box");
    // Containers are not looked into.
    EXPECT_EQ(Any("in-box"), "");
    EXPECT_EQ(Any("in-box-case"), "");
}

TEST_F(ExactNames, ACaseByItsOwnNameIsTheLastResort)
{
    Use("oneof choice { A case_a = 1; B other = 2; } oneof second { A case_again = 3; }",
        "message A { string other = 1; oneof inner { B inner_case = 2; } } message B { Box case_a = 1; string b = 2; }"
        "message Box { string x = 1; }");
    EXPECT_EQ(Message("case-a"), "other/case_a");
    EXPECT_EQ(Leaf("other"), "case_a/other");
    EXPECT_EQ(Message("other"), "other");
    EXPECT_EQ(Any("other"), "case_a/other");
    EXPECT_EQ(Message("case-again"), "case_again");
    EXPECT_EQ(Leaf("case-again"), "");
    // Only those of the message itself.
    EXPECT_EQ(Any("inner-case"), "");
}

TEST_F(ExactNames, FewestCasesThenFirst)
{
    Use("oneof choice { A a = 1; B b = 2; } C direct = 3;",
        "message A { oneof inner { C c = 1; } } message B { string name = 1; repeated C list = 2; Box direct = 3; }"
        "message C { string name = 1; Box list = 2; } message Box { string x = 1; }");
    EXPECT_EQ(Leaf("name"), "b/name");
    EXPECT_EQ(Message("list"), "b/list");
    EXPECT_EQ(Message("direct"), "direct");
    Use("oneof choice { A a = 1; B b = 2; }", "message A { string name = 1; } message B { string name = 1; }");
    EXPECT_EQ(Leaf("name"), "a/name");
}

TEST_F(ExactNames, NumberOfTheLayer)
{
    Use("string name2 = 1; string name3 = 2; oneof choice { A a = 3; }",
        "message A { string name3 = 1; string inside3 = 2; string wrong2 = 3; oneof inner { B b = 4; } }"
        "message B { string deep4 = 1; }");
    EXPECT_EQ(Leaf("name"), "name2");
    EXPECT_EQ(Leaf("name2"), "name2");
    EXPECT_EQ(Leaf("name3"), "name3");
    EXPECT_EQ(Leaf("inside"), "a/inside3");
    EXPECT_EQ(Leaf("wrong"), "");
    EXPECT_EQ(Leaf("deep"), "a/b/deep4");
    Use("string name12 = 1; string name2 = 2;", "", 12);
    EXPECT_EQ(Leaf("name"), "name12");
    EXPECT_EQ(Leaf("name1"), "");
    // A whole name fits better than one with a number.
    Use("string name2 = 1; oneof choice { A a = 2; }", "message A { string name = 1; }");
    EXPECT_EQ(Leaf("name"), "a/name");
    EXPECT_EQ(Leaf("name2"), "name2");
}

TEST_F(ExactNames, JsonNames)
{
    Use("string a_b = 1 [json_name = 'a.b']; string a_b_1 = 2 [json_name = 'a-b']; string odd = 3 [json_name = ':x'];"
        "string end = 4 [json_name = 'm:'];");
    EXPECT_EQ(Leaf("a.b"), "a_b");
    EXPECT_EQ(Leaf("a-b"), "a_b_1");
    EXPECT_EQ(Leaf("a_b"), "a_b");
    EXPECT_EQ(Leaf("A.B"), "a_b");
    EXPECT_EQ(Leaf(":x"), "odd");
    EXPECT_EQ(Leaf("", "m"), "end");
    // What protobuf makes of a name is nobody's choice.
    Use("string two_words = 1;");
    EXPECT_EQ(Leaf("twoWords"), "");
    // Case counts in a JSON name; converted names have none.
    Use("string first = 1 [json_name = 'x_y']; string x_y = 2 [json_name = 'other'];");
    EXPECT_EQ(Leaf("x_y"), "first");
    EXPECT_EQ(Leaf("x-y"), "x_y");
    EXPECT_EQ(Leaf("X.y"), "x_y");
}

TEST_F(ExactNames, ModulesTellNamesakesApart)
{
    Use("string name = 1 [json_name = 'base:name']; string name_1 = 2 [json_name = 'more:name'];"
        "oneof choice { A a = 3; }",
        "message A { string name = 1 [json_name = 'third:name']; string plain = 2 [json_name = 'plain'];"
        "string mine = 3 [json_name = 'third:mine']; }");
    EXPECT_EQ(Leaf("name", "base"), "name");
    EXPECT_EQ(Leaf("name", "more"), "name_1");
    EXPECT_EQ(Leaf("name", "third"), "a/name");
    // A module that nobody has, and none: the name of the field decides.
    EXPECT_EQ(Leaf("name", "nobody"), "name");
    EXPECT_EQ(Leaf("name"), "name");
    EXPECT_EQ(Leaf("plain", "third"), "a/plain");
    EXPECT_EQ(Leaf("mine", "base"), "a/mine");
    EXPECT_EQ(Leaf("name-1", "base"), "name_1");
    // The module's name outweighs a plain JSON name, and that the field's name; another module's comes last.
    Use("string same = 1; string x = 2 [json_name = 'same']; string y = 3 [json_name = 'm:same'];"
        "string same2 = 4; string last = 5 [json_name = 'm:only']; string only2 = 6;");
    EXPECT_EQ(Leaf("same", "m"), "y");
    EXPECT_EQ(Leaf("same", "n"), "x");
    EXPECT_EQ(Leaf("only", "m"), "last");
    EXPECT_EQ(Leaf("only", "n"), "only2");
}

TEST_F(ExactNames, TheEndOfAModulesNameTellsNamesakesApart)
{
    Use(R"(string tag = 1 [json_name = "example-bgp-filter:tag"]; string tag2 = 2 [json_name = "example-filter:tag"];
        string tag3 = 3 [json_name = "filter:tag"]; string tag4 = 4 [json_name = "example-ports:tag"];
        string other = 5 [json_name = "tag"];)");
    EXPECT_EQ(Leaf("tag", "bgp-filter"), "tag");
    EXPECT_EQ(Leaf("tag", "ports"), "tag4");
    EXPECT_EQ(Leaf("tag", "filter"), "tag3");
    EXPECT_EQ(Leaf("tag", "example-filter"), "tag2");
    // Part of a word, or nothing, is no end.
    EXPECT_EQ(Leaf("tag", "orts"), "other");
    EXPECT_EQ(Leaf("tag", "example-ports-filter"), "other");
    EXPECT_EQ(Leaf("tag", "-ports"), "other");
    EXPECT_EQ(Leaf("tag", ""), "other");
    Use(R"(string tag = 1 [json_name = "example-bgp-filter:tag"]; string tag2 = 2 [json_name = "example-filter:tag"];)");
    EXPECT_EQ(Leaf("tag", "filter"), "tag2");
}

TEST_F(ExactNames, ALeafBeforeAMessageThatFitsAlike)
{
    Use("Box dual = 1; oneof choice { A a = 2; } Box exact = 3 [json_name = 'both'];",
        "message A { bool dual = 1; bool both = 2; } message Box { string x = 1; }");
    EXPECT_EQ(Any("dual"), "a/dual");
    EXPECT_EQ(Message("dual"), "dual");
    EXPECT_EQ(Any("both"), "exact");
}

TEST_F(ExactNames, TypesThatContainThemselves)
{
    Use("oneof choice { Top again = 1; A a = 2; } string own = 3;",
        "message A { oneof inner { A self = 1; B b = 2; Top top = 3; } string in_a = 4; }"
        "message B { oneof inner { A back = 1; } string in_b = 2; }");
    EXPECT_EQ(Leaf("own"), "own");
    EXPECT_EQ(Leaf("in-a"), "a/in_a");
    EXPECT_EQ(Leaf("in-b"), "a/b/in_b");
    EXPECT_EQ(Message("again"), "again");
}

TEST_F(ExactNames, CasesThatShareAType)
{
    Use("oneof choice { A first = 1; A second = 2; }", "message A { string leaf = 1; }");
    EXPECT_EQ(Leaf("leaf"), "first/leaf");
    EXPECT_EQ(Message("second"), "second");
}

TEST_F(ExactNames, OptionalFieldsAndGroupsAreNoCases)
{
    Use("optional Box box = 1; optional string leaf = 2;", "message Box { string x = 1; }");
    EXPECT_EQ(Message("box"), "box");
    EXPECT_EQ(Leaf("leaf"), "leaf");
    EXPECT_EQ(Leaf("x"), "");
    gpbtest::ProtoJudge judge;
    judge.addFile("g.proto", R"(syntax = "proto2"; package g; message Top {
        oneof choice { group Odd = 1 { optional string x = 2; } } optional group Plain = 3 { optional string y = 4; } })");
    const GpbExactNames names(judge.findType("g.Top"), TOP_LAYER);
    ASSERT_NE(names.Find("odd", GpbExactKind::LEAF, ""), nullptr);
    EXPECT_TRUE(names.Find("odd", GpbExactKind::LEAF, "")->cases.empty());
    EXPECT_EQ(names.Find("odd", GpbExactKind::MESSAGE, ""), nullptr);
    EXPECT_NE(names.Find("plain", GpbExactKind::ANY, ""), nullptr);
    EXPECT_EQ(names.Find("x", GpbExactKind::ANY, ""), nullptr);
}

TEST_F(ExactNames, AnyNumberOfCases)
{
    std::string members;
    std::string types;
    constexpr int CASES = 600;
    for (int i = 0; i < CASES; ++i)
    {
        const std::string id = std::to_string(i);
        types += "message T" + id + " { string in_case_x" + id + "x = 1; }";
        members += "T" + id + " case_" + id + " = " + std::to_string(i + 1) + ";";
    }
    Use("oneof choice {" + members + "}", types);
    for (int i = 0; i < CASES; ++i)
    {
        const std::string id = std::to_string(i);
        EXPECT_EQ(Leaf("in-case-x" + id + "x"), "case_" + id + "/in_case_x" + id + "x");
    }
}

// Cases in each other are looked through as deep as there are layers, and no deeper.
TEST_F(ExactNames, CasesInEachOther)
{
    constexpr int DEPTH = 40;
    constexpr int LAYERS = static_cast<int>(GPB_COMPILER_MAX_LAYERS);
    std::string types;
    for (int i = 1; i <= DEPTH; ++i)
    {
        const std::string id = std::to_string(i);
        types += "message T" + id + " { string leaf_x" + id + "x = 1; ";
        types += i < DEPTH ? "oneof c { T" + std::to_string(i + 1) + " n = 2; } }" : "}";
    }
    Use("oneof choice { T1 n = 1; }", types);
    for (int i = 1; i <= DEPTH; ++i)
    {
        const std::string id = std::to_string(i);
        EXPECT_EQ(Leaf("leaf-x" + id + "x") != "", i <= LAYERS) << i;
    }
}

// What a plan answers is always a field of the type in which its last case lies, and every field that no namesake hides
// is found under its own name.
TEST_F(ExactNames, RandomTypes)
{
    size_t found = 0;
    for (uint32_t seed = 0; seed < 100; ++seed)
    {
        gpbtest::ProtoJudge judge;
        judge.addFile("m.proto", gpbtest::randomProto(seed));
        const Descriptor *top = judge.findType("m.Top");
        GpbExactNamePlan plan;
        const GpbExactNames &names = plan.TableOf(top, TOP_LAYER);
        for (const std::string &name : gpbtest::namesAround(top))
        {
            for (const GpbExactKind kind : {GpbExactKind::LEAF, GpbExactKind::MESSAGE})
            {
                const GpbExactField *answer = names.Find(name, kind, "");
                if (answer == nullptr)
                {
                    continue;
                }
                ++found;
                const bool isMessage = answer->field->type() == FieldDescriptor::TYPE_MESSAGE;
                EXPECT_EQ(isMessage, kind == GpbExactKind::MESSAGE) << "seed " << seed << " " << name;
                const Descriptor *holder = top;
                for (const FieldDescriptor *caseField : answer->cases)
                {
                    EXPECT_EQ(caseField->containing_type(), holder);
                    EXPECT_NE(caseField->real_containing_oneof(), nullptr);
                    holder = caseField->message_type();
                }
                EXPECT_EQ(answer->field->containing_type(), holder);
            }
        }
        for (int i = 0; i < top->field_count(); ++i)
        {
            const bool isMessage = top->field(i)->type() == FieldDescriptor::TYPE_MESSAGE;
            const GpbExactField *answer =
                names.Find(top->field(i)->name(), isMessage ? GpbExactKind::MESSAGE : GpbExactKind::LEAF, "");
            const bool isCase = isMessage && top->field(i)->real_containing_oneof() != nullptr;
            ASSERT_NE(answer, nullptr);
            EXPECT_TRUE(answer->field == top->field(i) || isCase) << "seed " << seed << " " << top->field(i)->name();
        }
    }
    EXPECT_GT(found, 500U); // the types were worth asking
}

TEST_F(ExactNames, APlanHasOneTablePerTypeAndLayerForAllThreads)
{
    constexpr size_t THREADS = 4;
    gpbtest::ProtoJudge judge;
    judge.addFile("m.proto", R"(syntax = "proto3"; package m; message Top { string a3 = 1; })");
    const Descriptor *top = judge.findType("m.Top");
    GpbExactNamePlan plan;
    const GpbExactNames *tables[THREADS] = {};
    std::vector<std::thread> threads;
    for (size_t i = 0; i < THREADS; ++i)
    {
        threads.emplace_back([&, i] { tables[i] = &plan.TableOf(top, 2); });
    }
    for (std::thread &thread : threads)
    {
        thread.join();
    }
    for (const GpbExactNames *table : tables)
    {
        EXPECT_EQ(table, tables[0]);
    }
    GpbTableMemory<GpbExactNames> memory(plan);
    EXPECT_EQ(&memory.TableOf(top, 2), tables[0]);
    EXPECT_EQ(memory.TableOf(top, 2).Find("a", GpbExactKind::LEAF, ""), nullptr);
    EXPECT_NE(memory.TableOf(top, 3).Find("a", GpbExactKind::LEAF, ""), nullptr);
}
