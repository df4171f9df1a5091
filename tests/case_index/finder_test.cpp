// The finder answers as the exported searches do, whether it remembers a name or not, and what it remembers is bounded.
#include "descriptor/gpb_field_finder.h"

#include <google/protobuf/descriptor.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "gpb_templatelib/gpb_host.h"
#include "support/proto_judge.h"

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;

namespace
{

constexpr uint32_t LAYER = 1;
constexpr size_t NAME_ROOM = 128;

class FieldFinder : public ::testing::Test
{
protected:
    using Find = GpbFoundField (GpbFieldFinder::*)(const Descriptor *, const char *, uint32_t);

    void SetUp() override
    {
        m_judge.addFile("m.proto", R"(syntax = "proto3"; package m; message Top {
            message A { string in_case = 1; string box = 2; string far2 = 3; } message Box { string x = 1; }
            string some_leaf_name = 1; oneof choice { A a = 2; } Box box = 3; string more1 = 4; })");
        m_top = m_judge.findType("m.Top");
        ASSERT_NE(m_top, nullptr);
    }

    // Whether an answer is remembered: a search calls the platform.
    bool IsRemembered(const std::string &name, Find find = &GpbFieldFinder::FindNode)
    {
        const uint64_t before = GpbHost_TotalCallCount();
        (m_finder.*find)(m_top, name.c_str(), LAYER);
        return GpbHost_TotalCallCount() == before;
    }

    // "some_leaf_name" with each of its letters in either case.
    static std::vector<std::string> Spellings()
    {
        std::vector<std::string> spellings = {""};
        for (const char letter : std::string("some_leaf_name"))
        {
            std::vector<std::string> longer;
            for (const std::string &begin : spellings)
            {
                longer.push_back(begin + letter);
                if (letter != '_')
                {
                    longer.push_back(begin + static_cast<char>(letter - 'a' + 'A'));
                }
            }
            spellings = longer;
        }
        return spellings;
    }

    gpbtest::ProtoJudge m_judge;
    const Descriptor *m_top = nullptr;
    GpbFieldFinder m_finder;
};

} // namespace

TEST_F(FieldFinder, WhatAFailingServiceHidesIsFoundTheNextTime)
{
    const auto expectFoundNextTime = [&](Find find, const char *name, GpbHostService service, uint64_t failing)
    {
        GpbFieldFinder finder;
        GpbHost_FailCall(service, failing);
        EXPECT_EQ((finder.*find)(m_top, name, LAYER).field, nullptr) << name;
        GpbHost_FailCall(service, 0);
        EXPECT_NE((finder.*find)(m_top, name, LAYER).field, nullptr) << name;
    };
    expectFoundNextTime(&GpbFieldFinder::FindNode, "some-leaf-name", GPB_HOST_STRCPY, 1);
    expectFoundNextTime(&GpbFieldFinder::FindNode, "more", GPB_HOST_STRCPY, 2);
    expectFoundNextTime(&GpbFieldFinder::FindNode, "more", GPB_HOST_SPRINTF, 1);
    expectFoundNextTime(&GpbFieldFinder::FindNode, "far", GPB_HOST_STRCPY, 3);
    expectFoundNextTime(&GpbFieldFinder::FindNode, "far", GPB_HOST_SPRINTF, 2);
    expectFoundNextTime(&GpbFieldFinder::FindLeaf, "box", GPB_HOST_STRCPY, 2);
}

TEST_F(FieldFinder, AnswersAsTheSearchesDoEachTime)
{
    const std::string tooLong(NAME_ROOM, 'n');
    for (int round = 0; round < 3; ++round)
    {
        for (const std::string &name :
             {std::string("some-leaf-name"), std::string("in-case"), std::string("box"), std::string("none"), tooLong})
        {
            const FieldDescriptor *caseField = nullptr;
            GpbFoundField found = m_finder.FindNode(m_top, name.c_str(), LAYER);
            EXPECT_EQ(found.field, GPB_FindFieldDescByNodeName(m_top, name.c_str(), LAYER, &caseField)) << name;
            EXPECT_EQ(found.caseField, caseField) << name;
            caseField = nullptr;
            found = m_finder.FindLeaf(m_top, name.c_str(), LAYER);
            EXPECT_EQ(found.field, GPB_GetLeafFieldDescByNodeName(name.c_str(), m_top, LAYER, &caseField)) << name;
            EXPECT_EQ(found.caseField, caseField) << name;
        }
    }
    EXPECT_EQ(m_finder.FindNode(nullptr, "box", LAYER).field, nullptr);
    EXPECT_EQ(m_finder.FindLeaf(m_top, nullptr, LAYER).field, nullptr);
}

TEST_F(FieldFinder, RemembersHitsAndMisses)
{
    for (const char *name : {"some-leaf-name", "in-case", "none"})
    {
        for (const Find find : {&GpbFieldFinder::FindNode, &GpbFieldFinder::FindLeaf})
        {
            EXPECT_FALSE(IsRemembered(name, find)) << name;
            EXPECT_TRUE(IsRemembered(name, find)) << name;
        }
    }
}

TEST_F(FieldFinder, RemembersNoNameThatIsTooLongForAField)
{
    const std::string fits(NAME_ROOM - 1, 'n');
    const std::string tooLong(NAME_ROOM, 'n');
    EXPECT_FALSE(IsRemembered(fits));
    EXPECT_TRUE(IsRemembered(fits));
    EXPECT_FALSE(IsRemembered(tooLong));
    EXPECT_FALSE(IsRemembered(tooLong));
}

TEST_F(FieldFinder, RemembersAsManyMissesAsItMay)
{
    const auto name = [](size_t n) { return "none_" + std::to_string(n) + "_x"; };
    const size_t last = GpbFieldFinder::MAX_REMEMBERED - 1;
    for (size_t n = 0; n <= last + 10; ++n)
    {
        ASSERT_FALSE(IsRemembered(name(n)));
    }
    EXPECT_TRUE(IsRemembered(name(0)));
    EXPECT_TRUE(IsRemembered(name(last)));
    EXPECT_FALSE(IsRemembered(name(last + 1)));
    EXPECT_FALSE(IsRemembered(name(last + 1)));
    EXPECT_FALSE(IsRemembered("none_of_a_leaf", &GpbFieldFinder::FindLeaf));
    EXPECT_FALSE(IsRemembered("none_of_a_leaf", &GpbFieldFinder::FindLeaf));
    EXPECT_FALSE(IsRemembered("some-leaf-name"));
    EXPECT_TRUE(IsRemembered("some-leaf-name")) << "misses displace no field";
}

TEST_F(FieldFinder, RemembersAsManySpellingsAsItMay)
{
    const std::vector<std::string> spellings = Spellings();
    for (const std::string &name : spellings)
    {
        const GpbFoundField found = m_finder.FindNode(m_top, name.c_str(), LAYER);
        ASSERT_NE(found.field, nullptr) << name;
        ASSERT_EQ(found.field->name(), "some_leaf_name");
    }
    size_t remembered = 0;
    for (const std::string &name : spellings)
    {
        remembered += IsRemembered(name) ? 1 : 0;
    }
    ASSERT_GT(spellings.size(), remembered);
    EXPECT_EQ(remembered, GpbFieldFinder::MAX_REMEMBERED);
    EXPECT_FALSE(IsRemembered("none"));
    EXPECT_TRUE(IsRemembered("none")) << "hits displace no miss";
}
