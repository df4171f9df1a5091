// The tables of a plan answer as the exported searches do, whatever the name and however it is spelt.
#include "descriptor/gpb_name_table.h"

#include <algorithm>
#include <google/protobuf/descriptor.h>
#include <gtest/gtest.h>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "case_index/random_proto.h"
#include "descriptor/gpb_field_finder.h"
#include "support/proto_judge.h"

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;

namespace
{

constexpr uint32_t MAX_LAYER = 12; // of two digits, too

char ToUpper(char c)
{
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

// A name as it is, with dashes, with some dashes, in upper case, and with a character more and less.
std::set<std::string> SpellingsOf(const std::string &name)
{
    std::set<std::string> spellings = {name, name + "x", name + "2", name.substr(0, name.size() / 2)};
    std::string changed = name;
    std::replace(changed.begin(), changed.end(), '_', '-');
    spellings.insert(changed);
    if (changed.find('-') != std::string::npos)
    {
        changed[changed.find('-')] = '_';
        spellings.insert(changed);
    }
    std::transform(changed.begin(), changed.end(), changed.begin(), ToUpper);
    spellings.insert(changed);
    return spellings;
}

// Compares every spelling of every name; returns how many fields were found.
size_t CompareAnswers(GpbFieldFinder &finder, const Descriptor *message, uint32_t layer)
{
    size_t found = 0;
    for (const std::string &name : gpbtest::namesAround(message))
    {
        for (const std::string &spelling : SpellingsOf(name))
        {
            SCOPED_TRACE("'" + spelling + "' in " + message->full_name() + " layer " + std::to_string(layer));
            const FieldDescriptor *caseField = nullptr;
            const FieldDescriptor *field =
                GPB_FindFieldDescByNodeName(message, spelling.c_str(), static_cast<int32_t>(layer), &caseField);
            const GpbFoundField node = finder.FindNode(message, spelling.c_str(), layer);
            EXPECT_EQ(node.field, field);
            EXPECT_EQ(node.caseField, caseField);
            found += field == nullptr ? 0 : 1;
            caseField = nullptr;
            field = GPB_GetLeafFieldDescByNodeName(spelling.c_str(), message, static_cast<int32_t>(layer), &caseField);
            const GpbFoundField leaf = finder.FindLeaf(message, spelling.c_str(), layer);
            EXPECT_EQ(leaf.field, field);
            EXPECT_EQ(leaf.caseField, caseField);
            found += field == nullptr ? 0 : 1;
        }
    }
    return found;
}

size_t CompareAnswersOfAll(GpbFieldFinder &finder, const Descriptor *message)
{
    size_t found = 0;
    for (const uint32_t layer : {1U, 2U, 3U, 4U, MAX_LAYER})
    {
        found += CompareAnswers(finder, message, layer);
    }
    for (int i = 0; i < message->nested_type_count(); ++i)
    {
        found += CompareAnswersOfAll(finder, message->nested_type(i));
    }
    return found;
}

class NameTable : public ::testing::Test
{
protected:
    const Descriptor *TypeOf(const std::string &text)
    {
        m_judge.addFile("m.proto", text);
        const Descriptor *found = m_judge.findType("m.Top");
        EXPECT_NE(found, nullptr);
        return found;
    }

    GpbNamePlan m_plan;
    GpbFieldFinder m_finder{m_plan};

private:
    gpbtest::ProtoJudge m_judge;
};

} // namespace

TEST_F(NameTable, LeavesContainersAndCases)
{
    const Descriptor *top = TypeOf(R"(syntax = "proto3"; package m; message Top {
        message A { string in_case = 1; string box = 2; string bag1 = 3; } message Box { string x = 1; }
        string some_leaf_name = 1; oneof choice { A a = 2; } Box box = 3; Box bag = 4; string twelve12 = 5; })");
    EXPECT_GT(CompareAnswersOfAll(m_finder, top), 20U);
}

// A finder tries the name first that came behind the last one before, or is declared there: whatever comes instead is
// found all the same.
TEST_F(NameTable, NamesInAnyOrder)
{
    const Descriptor *top = TypeOf(R"(syntax = "proto3"; package m; message Top {
        message A { string in_a = 1; string of_a3 = 2; } message B { string in_b = 1; }
        string first_leaf = 1; string second2 = 2; repeated string many = 3;
        oneof choice { A a = 4; B b = 5; } string last_leaf = 6; })");
    const std::vector<std::string> declared = {"first-leaf", "second", "many", "a",   "b",
                                               "last-leaf",  "in-a",   "of-a", "in-b"};
    std::vector<std::string> names = declared;
    std::vector<std::string> turned(declared.rbegin(), declared.rend());
    const std::vector<std::string> odd = {"many",    "many",   "many", "a",          "first-leaf", "first_leaf",
                                          "unknown", "second", "",     "first-leaf", "second2",    "many",
                                          "In-A",    "of-a",   "in-b", "first-leaf"};
    names.insert(names.end(), declared.begin(), declared.end());
    names.insert(names.end(), turned.begin(), turned.end());
    names.insert(names.end(), odd.begin(), odd.end());
    GpbNameMemo memo;
    const GpbFieldFinder::Document document(m_finder, &memo);
    for (const std::string &name : names)
    {
        const FieldDescriptor *caseField = nullptr;
        const FieldDescriptor *field = GPB_FindFieldDescByNodeName(top, name.c_str(), 2, &caseField);
        EXPECT_EQ(field == nullptr, name.empty() || name == "unknown") << name;
        const GpbFoundField found = m_finder.FindNode(top, name.c_str(), 2);
        EXPECT_EQ(found.field, field) << name;
        EXPECT_EQ(found.caseField, caseField) << name;
    }
}

// Names of two types that are alike, at the same addresses: in order, in another order that comes again, and at random,
// with more fields than a memo has places for.
TEST_F(NameTable, NamesOfADocumentInAnyOrder)
{
    constexpr size_t FIELDS = 200;
    constexpr size_t STEPS = 40000;
    constexpr size_t STRIDE = 7;
    std::string fields;
    std::vector<std::string> names = {"unknown", "in-a"};
    for (size_t i = 1; i <= FIELDS; ++i)
    {
        fields += "string f_" + std::to_string(i) + " = " + std::to_string(i) + ";";
        names.push_back("f-" + std::to_string(i));
    }
    const Descriptor *top = TypeOf("syntax = \"proto3\"; package m; message Top { message A { string in_a = 1000; " +
                                   fields + "}" + fields + " oneof choice { A a = 1000; } }");
    for (const bool doNamesStay : {true, false})
    {
        std::minstd_rand random(1); // NOLINT(cert-msc51-cpp): the same steps each time
        GpbNameMemo memo;
        const GpbFieldFinder::Document document(m_finder, doNamesStay ? &memo : nullptr);
        const Descriptor *message = top;
        size_t at = 0;
        size_t stride = 1;
        for (size_t step = 0; step < STEPS; ++step)
        {
            at = random() % 8 == 0 ? random() % names.size() : (at + stride) % names.size();
            if (random() % 50 == 0)
            {
                message = message == top ? top->nested_type(0) : top;
                stride = random() % 2 == 0 ? 1 : STRIDE;
            }
            const FieldDescriptor *caseField = nullptr;
            const FieldDescriptor *field = GPB_FindFieldDescByNodeName(message, names[at].c_str(), 2, &caseField);
            const GpbFoundField found = m_finder.FindNode(message, names[at].c_str(), 2);
            ASSERT_EQ(found.field, field) << names[at];
            ASSERT_EQ(found.caseField, caseField) << names[at];
        }
    }
}

// A log callback may encode another document with the compiler that calls it.
TEST_F(NameTable, DocumentsWithinDocuments)
{
    const Descriptor *top = TypeOf(R"(syntax = "proto3"; package m; message Top { string one = 1; string two = 2; })");
    char name[] = "one";
    const GpbFieldFinder::Document outer(m_finder, nullptr);
    EXPECT_EQ(m_finder.FindNode(top, name, 2).field, top->FindFieldByName("one"));
    {
        GpbNameMemo memo;
        const GpbFieldFinder::Document inner(m_finder, &memo);
        EXPECT_EQ(m_finder.FindNode(top, name, 2).field, top->FindFieldByName("one"));
    }
    std::copy_n("two", sizeof(name), name);
    EXPECT_EQ(m_finder.FindNode(top, name, 2).field, top->FindFieldByName("two"));
    std::copy_n("one", sizeof(name), name);
    EXPECT_EQ(m_finder.FindNode(top, name, 2).field, top->FindFieldByName("one"));
}

TEST_F(NameTable, NamesMoveFromDocumentToDocument)
{
    const Descriptor *top =
        TypeOf(R"(syntax = "proto3"; package m; message Top { repeated string one = 1; repeated string two = 2; })");
    char name[] = "one";
    for (const char *text : {"one", "two", "six", "two", "one"})
    {
        std::copy_n(text, sizeof(name), name);
        GpbNameMemo memo;
        const GpbFieldFinder::Document document(m_finder, &memo);
        for (int i = 0; i < 5; ++i)
        {
            EXPECT_EQ(m_finder.FindNode(top, name, 2).field, top->FindFieldByName(text)) << text;
        }
    }
    for (const char *text : {"one", "two", "six", "two", "one"})
    {
        std::copy_n(text, sizeof(name), name);
        EXPECT_EQ(m_finder.FindNode(top, name, 2).field, top->FindFieldByName(text)) << text;
    }
}

TEST_F(NameTable, LongNames)
{
    const Descriptor *top =
        TypeOf("syntax = \"proto3\"; package m; message Top { string " + std::string(127, 'a') + " = 1; string " +
               std::string(128, 'b') + " = 2; string " + std::string(126, 'c') + "2 = 3; string " +
               std::string(127, 'd') + "2 = 4; string " + std::string(126, 'e') + "12 = 5; }");
    EXPECT_GT(CompareAnswersOfAll(m_finder, top), 0U);
    EXPECT_NE(m_finder.FindNode(top, std::string(127, 'a').c_str(), 1).field, nullptr);
    EXPECT_NE(m_finder.FindNode(top, std::string(126, 'c').c_str(), 2).field, nullptr);
}

TEST_F(NameTable, NamesThatDifferInCaseAloneAreProtobufsChoice)
{
    const Descriptor *top = TypeOf(R"(syntax = "proto2"; package m; message Top {
        optional string Foo = 1; optional string foo = 2; optional string FOO2 = 3; optional string foo2 = 4; })");
    EXPECT_GT(CompareAnswersOfAll(m_finder, top), 0U);
}

TEST_F(NameTable, AMessageThatContainsItselfHasATablePerLayer)
{
    const Descriptor *top = TypeOf(R"(syntax = "proto3"; package m; message Top {
        string name2 = 1; string name3 = 2; Top again = 3; message A { Top back = 1; string other = 2; }
        oneof choice { A a = 4; } })");
    for (uint32_t layer = 1; layer <= 40; ++layer)
    {
        CompareAnswers(m_finder, top, layer);
    }
    EXPECT_EQ(m_finder.FindNode(top, "name", 3).field->name(), "name3");
}

TEST_F(NameTable, NothingIsFoundInNoMessageAndUnderNoName)
{
    const Descriptor *top = TypeOf(R"(syntax = "proto3"; package m; message Top { string a = 1; })");
    EXPECT_EQ(m_finder.FindNode(nullptr, "a", 1).field, nullptr);
    EXPECT_EQ(m_finder.FindLeaf(nullptr, "a", 1).field, nullptr);
    EXPECT_EQ(m_finder.FindNode(top, nullptr, 1).field, nullptr);
    EXPECT_EQ(m_finder.FindLeaf(top, nullptr, 1).field, nullptr);
}

TEST_F(NameTable, AnswersAsTheSearchesDoForRandomTypes)
{
    size_t found = 0;
    for (uint32_t seed = 0; seed < 100; ++seed)
    {
        gpbtest::ProtoJudge judge;
        const std::string text = gpbtest::randomProto(seed);
        judge.addFile("m.proto", text);
        GpbNamePlan plan;
        GpbFieldFinder finder(plan);
        found += CompareAnswersOfAll(finder, judge.findType("m.Top"));
        ASSERT_FALSE(HasFailure()) << "seed " << seed << "\n" << text;
    }
    // The types were worth comparing.
    EXPECT_GT(found, 10000U);
}

// Threads that ask for the same tables at the same moment get the same ones.
TEST_F(NameTable, IsMadeOnceForAllThreads)
{
    constexpr size_t THREADS = 4;
    const Descriptor *top = TypeOf(R"(syntax = "proto3"; package m; message Top { string a = 1; })");
    const GpbNameTable *tables[THREADS] = {};
    std::vector<std::thread> threads;
    for (size_t i = 0; i < THREADS; ++i)
    {
        threads.emplace_back([&, i] { tables[i] = &m_plan.TableOf(top, 2); });
    }
    for (std::thread &thread : threads)
    {
        thread.join();
    }
    for (const GpbNameTable *table : tables)
    {
        EXPECT_EQ(table, tables[0]);
    }
}
