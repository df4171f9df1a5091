// The index of case fields answers as the search through the cases does.
#include "descriptor/gpb_case_index.h"

#include <google/protobuf/descriptor.h>
#include <gtest/gtest.h>
#include <set>
#include <string>

#include "case_index/random_proto.h"
#include "support/proto_judge.h"

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;

namespace
{

constexpr int32_t MAX_LAYER = 4;

// Asks an index for every name, and compares each answer with the plain search. Returns how many fields were found.
size_t CompareAnswers(const Descriptor *message, int32_t layer)
{
    const std::set<std::string> names = gpbtest::namesAround(message);
    GpbCaseIndex index(message, layer);
    size_t found = 0;
    for (const std::string &name : names)
    {
        const FieldDescriptor *caseField = nullptr;
        const FieldDescriptor *field = GPB_GetFieldDescByOneof(name.c_str(), message, layer, &caseField);
        const GpbFoundField answer = index.Find(name);
        EXPECT_EQ(answer.field, field) << name << " in " << message->full_name() << " layer " << layer;
        EXPECT_EQ(answer.caseField, caseField) << name << " in " << message->full_name() << " layer " << layer;
        found += field == nullptr ? 0 : 1;
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

TEST_F(CaseIndex, AnswersAsTheSearchDoesForRandomTypes)
{
    size_t found = 0;
    for (uint32_t seed = 0; seed < 200; ++seed)
    {
        gpbtest::ProtoJudge judge;
        const std::string text = gpbtest::randomProto(seed);
        judge.addFile("m.proto", text);
        const Descriptor *top = judge.findType("m.Top");
        ASSERT_NE(top, nullptr);
        found += CompareAnswersOfAll(top);
        ASSERT_FALSE(HasFailure()) << "seed " << seed << "\n" << text;
    }
    // The types were worth comparing.
    EXPECT_GT(found, 1000U);
}
