// The index of case fields answers as the search through the cases does, before and after it is made.
#include "descriptor/gpb_case_index.h"

#include <google/protobuf/descriptor.h>
#include <gtest/gtest.h>
#include <random>
#include <set>
#include <string>

#include "gpb_templatelib/gpb_host.h"
#include "support/proto_judge.h"

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;

namespace
{

constexpr int32_t MAX_LAYER = 4;

void CollectNames(const Descriptor *message, std::set<std::string> &names)
{
    for (int i = 0; i < message->field_count(); ++i)
    {
        std::string name = message->field(i)->lowercase_name();
        names.insert(name);
        // What a document calls a field with a layer suffix, and names that only look so.
        while (!name.empty() && name.back() >= '0' && name.back() <= '9')
        {
            name.pop_back();
            names.insert(name);
        }
    }
    for (int i = 0; i < message->nested_type_count(); ++i)
    {
        CollectNames(message->nested_type(i), names);
    }
}

std::set<std::string> NamesAround(const Descriptor *message)
{
    std::set<std::string> names = {"", "no_such_name", "2", std::string(127, 'n')};
    for (int i = 0; i < message->file()->message_type_count(); ++i)
    {
        CollectNames(message->file()->message_type(i), names);
    }
    return names;
}

uint64_t PlainSearchCalls()
{
    return GpbHost_CallCount(GPB_HOST_STRCPY);
}

// Asks an index for every name until it has long been made, and compares each answer with the plain search.
// Returns how many fields were found in cases in one round.
size_t CompareAnswers(const Descriptor *message, int32_t layer)
{
    const std::set<std::string> names = NamesAround(message);
    GpbCaseIndex index(message, layer);
    size_t found = 0;
    for (int round = 0; round < 4; ++round)
    {
        found = 0;
        for (const std::string &name : names)
        {
            const FieldDescriptor *caseField = nullptr;
            const FieldDescriptor *field = GPB_GetFieldDescByOneof(name.c_str(), message, layer, &caseField);
            const GpbFoundField answer = index.Find(name.c_str());
            EXPECT_EQ(answer.field, field) << name << " in " << message->full_name() << " layer " << layer;
            EXPECT_EQ(answer.caseField, caseField) << name << " in " << message->full_name() << " layer " << layer;
            found += field == nullptr ? 0 : 1;
        }
    }
    return found;
}

size_t CompareAnswersOfAll(const Descriptor *message)
{
    size_t found = 0;
    for (int32_t layer = 0; layer <= MAX_LAYER; ++layer)
    {
        found += CompareAnswers(message, layer);
    }
    for (int i = 0; i < message->nested_type_count(); ++i)
    {
        found += CompareAnswersOfAll(message->nested_type(i));
    }
    return found;
}

class CaseIndex : public ::testing::Test
{
protected:
    const Descriptor *TypeOf(const std::string &text, const std::string &type)
    {
        m_judge.addFile("m.proto", text);
        const Descriptor *found = m_judge.findType(type);
        EXPECT_NE(found, nullptr);
        return found;
    }

private:
    gpbtest::ProtoJudge m_judge;
};

std::string Choice(int cases)
{
    std::string members;
    std::string types;
    for (int i = 0; i < cases; ++i)
    {
        const std::string n = std::to_string(i);
        types += "  message C" + n + " { string leaf_" + n + "_x = 1; string same = 2; }\n";
        members += "    C" + n + " c" + n + " = " + std::to_string(i + 1) + ";\n";
    }
    return "syntax = \"proto3\";\npackage m;\nmessage Top {\n" + types + "  oneof choice {\n" + members + "  }\n}\n";
}

} // namespace

TEST_F(CaseIndex, TheFirstOfSeveralCasesWins)
{
    const Descriptor *top = TypeOf(R"(syntax = "proto3"; package m; message Top {
        message A { string x = 1; string shared = 2; }
        message B { string shared = 1; string y = 2; }
        oneof choice { A a = 1; B b = 2; } })",
                                   "m.Top");
    EXPECT_EQ(CompareAnswers(top, 1), 3U);
}

TEST_F(CaseIndex, ASuffixCountsAfterTheExactNameOfItsCaseAndBeforeLaterCases)
{
    const Descriptor *top = TypeOf(R"(syntax = "proto3"; package m; message Top {
        message A { string name2 = 1; string other3 = 2; string both = 3; string both2 = 4; }
        message B { string name = 1; string other = 2; }
        oneof choice { A a = 1; B b = 2; } })",
                                   "m.Top");
    EXPECT_GT(CompareAnswersOfAll(top), 0U);
}

TEST_F(CaseIndex, AForeignCaseMessageEndsTheSearchAfterItsExactNames)
{
    const Descriptor *top = TypeOf(R"(syntax = "proto3"; package m;
        message Foreign { string f = 1; string g2 = 2; }
        message Top { message A { string a = 1; } message B { string b = 1; }
        oneof choice { A first = 1; Foreign foreign = 2; B last = 3; } })",
                                   "m.Top");
    // "a", "f" and "g2" are found; "g" and "b" are not.
    EXPECT_EQ(CompareAnswers(top, 1), 3U);
}

TEST_F(CaseIndex, ContainersAndChoicesOfCasesAreSearchedToo)
{
    const Descriptor *top = TypeOf(R"(syntax = "proto3"; package m; message Top {
        message A { message Inner { message Deep { string z = 1; } oneof inner { Deep deep = 1; } string p3 = 2; }
                    message Plain { string q = 1; string x4 = 2; }
                    oneof choice { Inner in_case = 1; } Plain plain = 2; string x = 3; }
        oneof choice { A a = 1; } })",
                                   "m.Top");
    EXPECT_GT(CompareAnswersOfAll(top), 0U);
}

TEST_F(CaseIndex, NamesThatDifferInCaseAloneAreProtobufsChoice)
{
    const Descriptor *top = TypeOf(R"(syntax = "proto2"; package m; message Top {
        message A { optional string Foo = 1; optional string foo = 2; optional string FOO2 = 3;
                    optional string foo2 = 4; }
        oneof choice { A a = 1; } })",
                                   "m.Top");
    EXPECT_GT(CompareAnswersOfAll(top), 0U);
}

TEST_F(CaseIndex, AnExtensionInTheScopeOfACaseMayHideAField)
{
    // Which of two names that differ in case alone is found is protobuf's secret: with many pairs, both come to pass.
    std::string fields;
    std::string extensions;
    for (int i = 1; i <= 40; ++i)
    {
        const std::string n = std::to_string(i);
        fields += "optional string leaf_" + n + "_x = " + n + "; optional string long_" + n + "_y2 = 1" + n + "00;\n";
        extensions +=
            "optional string Leaf_" + n + "_x = 1" + n + "; optional string Long_" + n + "_y2 = 2" + n + ";\n";
    }
    const Descriptor *top = TypeOf("syntax = \"proto2\"; package m; message Base { extensions 1 to 1000; }\n"
                                   "message Top { message A {\n" +
                                       fields + "extend Base {\n" + extensions + "} }\n" +
                                       "message B { optional string leaf_1_x = 1; optional string long_1_y = 2; }\n" +
                                       "oneof choice { A a = 1; B b = 2; } }",
                                   "m.Top");
    EXPECT_GT(CompareAnswers(top, 1), 0U);
}

TEST_F(CaseIndex, AMessageThatContainsItselfFillsTheCollection)
{
    const Descriptor *top = TypeOf(R"(syntax = "proto3"; package m; message Top {
        message A { string x = 1; oneof inner { A again = 2; } }
        oneof choice { A a = 1; } })",
                                   "m.Top");
    EXPECT_EQ(CompareAnswers(top, 1), 0U);
}

TEST_F(CaseIndex, ProtoThreeOptionalFieldsAreNoCases)
{
    const Descriptor *top = TypeOf(R"(syntax = "proto3"; package m; message Top {
        message A { string x = 1; } optional A a = 1; })",
                                   "m.Top");
    EXPECT_EQ(CompareAnswers(top, 1), 0U);
}

TEST_F(CaseIndex, LongNamesHaveNoRoomForASuffix)
{
    const std::string fits(126, 'a');
    const std::string full(127, 'b');
    const Descriptor *top =
        TypeOf("syntax = \"proto3\"; package m; message Top { message A { string " + fits + "2 = 1; string " + full +
                   "2 = 2; string " + std::string(130, 'c') + " = 3; } oneof choice { A a = 1; } }",
               "m.Top");
    EXPECT_GT(CompareAnswersOfAll(top), 0U);
}

TEST_F(CaseIndex, TheCollectionHoldsOneCaseFewerThanItsRoom)
{
    EXPECT_EQ(CompareAnswers(TypeOf(Choice(255), "m.Top"), 1), 256U);
}

TEST_F(CaseIndex, AFullCollectionFindsNothing)
{
    EXPECT_EQ(CompareAnswers(TypeOf(Choice(256), "m.Top"), 1), 0U);
}

TEST_F(CaseIndex, SearchesEndOnceTheyHaveCostAsMuchAsTheIndex)
{
    // 200 cases of two fields: a search looks up 400 names, as many as there are fields, so the second one is indexed.
    const Descriptor *top = TypeOf(Choice(200), "m.Top");
    GpbCaseIndex index(top, 1);
    uint64_t before = PlainSearchCalls();
    EXPECT_NE(index.Find("leaf_199_x").field, nullptr);
    EXPECT_GT(PlainSearchCalls(), before);

    before = PlainSearchCalls();
    EXPECT_NE(index.Find("leaf_198_x").field, nullptr);
    EXPECT_EQ(index.Find("no_such_name").field, nullptr);
    EXPECT_EQ(PlainSearchCalls(), before);
}

TEST_F(CaseIndex, ABigCaseIsSearchedForLonger)
{
    // One case of 100 fields: 50 searches look up as many names.
    std::string fields;
    for (int i = 1; i <= 100; ++i)
    {
        fields += "string field_" + std::to_string(i) + "_x = " + std::to_string(i) + ";\n";
    }
    const Descriptor *top =
        TypeOf("syntax = \"proto3\"; package m; message Top { message A {\n" + fields + "} oneof choice { A a = 1; } }",
               "m.Top");
    GpbCaseIndex index(top, 1);
    for (int i = 0; i < 50; ++i)
    {
        const uint64_t before = PlainSearchCalls();
        EXPECT_EQ(index.Find("no_such_name").field, nullptr);
        EXPECT_GT(PlainSearchCalls(), before) << i;
    }
    const uint64_t before = PlainSearchCalls();
    EXPECT_EQ(index.Find("no_such_name").field, nullptr);
    EXPECT_NE(index.Find("field_100_x").field, nullptr);
    EXPECT_EQ(PlainSearchCalls(), before);
}

namespace
{

// Message types with random choices, nested and foreign cases, and names that clash with and without suffixes.
class RandomProto
{
public:
    explicit RandomProto(uint32_t seed) : m_random(seed) {}

    std::string Text()
    {
        std::string text = "syntax = \"proto3\";\npackage m;\n";
        text += "message Foreign { string name = 1; string name2 = 2; string a = 3; }\n";
        return text + Message("Top", 0);
    }

private:
    uint32_t Pick(uint32_t below) { return static_cast<uint32_t>(m_random() % below); }

    std::string Message(const std::string &type, uint32_t depth)
    {
        static const char *const kNames[] = {"name", "name2", "name3", "name4", "a", "a2", "b", "b3", "c", "c4"};
        std::string types;
        std::string fields;
        std::string members;
        int number = 0;
        for (const char *name : kNames)
        {
            if (Pick(3) == 0)
            {
                fields += std::string("string ") + name + " = " + std::to_string(++number) + ";\n";
            }
        }
        for (uint32_t i = 0; depth < 3 && i < Pick(4); ++i)
        {
            const std::string id = std::to_string(i);
            const bool foreign = Pick(6) == 0;
            types += foreign ? "" : Message("T" + id, depth + 1);
            (Pick(3) == 0 ? fields : members) +=
                (foreign ? "Foreign" : "T" + id) + " child_" + id + " = " + std::to_string(++number) + ";\n";
        }
        if (!members.empty())
        {
            members = "oneof choice {\n" + members + "}\n";
        }
        return "message " + type + " {\n" + types + fields + members + "}\n";
    }

    std::mt19937 m_random;
};

} // namespace

TEST_F(CaseIndex, AnswersAsTheSearchDoesForRandomTypes)
{
    size_t found = 0;
    for (uint32_t seed = 0; seed < 200; ++seed)
    {
        gpbtest::ProtoJudge judge;
        const std::string text = RandomProto(seed).Text();
        judge.addFile("m.proto", text);
        const Descriptor *top = judge.findType("m.Top");
        ASSERT_NE(top, nullptr);
        found += CompareAnswersOfAll(top);
        ASSERT_FALSE(HasFailure()) << "seed " << seed << "\n" << text;
    }
    // The types were worth comparing.
    EXPECT_GT(found, 1000U);
}
