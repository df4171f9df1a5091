#include "yang_fixture.h"

namespace
{

using Lines = std::vector<std::string>;

class Records : public gpbtest::YangTest
{
};

TEST_F(Records, ContainersListsChoicesAndCases)
{
    const auto tree = records(R"(
        container top {
            leaf first { type string; }
            list row { key "b a"; leaf x { type string; } leaf a { type string; } leaf b { type string; }
                leaf-list many { type string; } }
            choice way {
                case one { leaf one-leaf { type string; } container inner { leaf deep { type string; } } }
                case two { choice nested { case three { leaf y { type string; } } } }
            }
            leaf last { type string; }
        })");
    EXPECT_EQ(describe(*tree), (Lines{
                                   "/top kind=0 class=0 first=0/0 last=0/0",
                                   "/top/row kind=0 class=0 b*=0/0 a*=0/0 x=0/0 many=0/0",
                                   "/top/way kind=1 class=0",
                                   "/top/way/one kind=2 class=0 one-leaf=0/0",
                                   "/top/way/one/inner kind=0 class=0 deep=0/0",
                                   "/top/way/two kind=2 class=0",
                                   "/top/way/two/nested kind=1 class=0",
                                   "/top/way/two/nested/three kind=2 class=0 y=0/0",
                               }));
}

TEST_F(Records, LinksAreThoseOfTheSchema)
{
    const auto tree = records("container top { container a { container b { } } container c { } } container other { }");
    const std::vector<GpbYangNode *> &nodes = tree->Nodes();
    ASSERT_EQ(nodes.size(), 5u);
    const GpbYangNode *top = nodes[0];
    EXPECT_EQ(top->pstParent, nullptr);
    EXPECT_EQ(top->pstNextSibling, nullptr); // A top node stands alone: its tree is what the library is given.
    EXPECT_EQ(top->pstFirstChild, nodes[1]);
    EXPECT_EQ(nodes[1]->pstFirstChild, nodes[2]);
    EXPECT_EQ(nodes[1]->pstNextSibling, nodes[3]);
    EXPECT_EQ(nodes[2]->pstParent, nodes[1]);
    EXPECT_EQ(nodes[2]->pstFirstChild, nullptr);
    EXPECT_EQ(nodes[3]->pstNextSibling, nullptr);
    EXPECT_EQ(nodes[4]->pstParent, nullptr);
    EXPECT_STREQ(nodes[4]->pcName, "other");
}

TEST_F(Records, ImpliedCasesAreCases)
{
    const auto tree =
        records("container top { choice way { leaf a { type string; } container b { leaf c { type string; } } } }");
    EXPECT_EQ(describe(*tree),
              (Lines{"/top kind=0 class=0", "/top/way kind=1 class=0", "/top/way/a kind=2 class=0 a=0/0",
                     "/top/way/b kind=2 class=0", "/top/way/b/b kind=0 class=0 c=0/0"}));
}

TEST_F(Records, NotificationsComeBehindData)
{
    const auto tree = records(R"(yang-version 1.1;
        notification alarm { leaf severity { type string; } }
        container top { notification changed { leaf by { type string; } } container a { } })");
    EXPECT_EQ(describe(*tree), (Lines{"/top kind=0 class=0", "/top/a kind=0 class=0",
                                      "/top/changed kind=0 class=0 by=0/0", "/alarm kind=0 class=0 severity=0/0"}));
}

TEST_F(Records, WhatTemplatesHaveNoPlaceFor)
{
    const auto tree = records(R"(yang-version 1.1;
        leaf alone { type string; }
        leaf-list several { type string; }
        rpc do { input { leaf x { type string; } } output { leaf y { type string; } } }
        container top { anydata any; anyxml xml; action act { input { leaf z { type string; } } } })");
    EXPECT_EQ(describe(*tree), Lines{"/top kind=0 class=0"});
}

TEST_F(Records, ANodeWithoutLeavesHasNoVector)
{
    const auto tree = records("container top { container empty { } }");
    EXPECT_EQ(tree->Nodes()[0]->pstLeafVec, nullptr);
    EXPECT_EQ(tree->Nodes()[1]->pstLeafVec, nullptr);
}

TEST_F(Records, GroupingsFeaturesAndAugmentsAreFollowed)
{
    writeModule("base", "grouping g { leaf from-grouping { type string; } container c { leaf d { type string; } } }");
    const auto tree = records(R"(import base { prefix b; } feature f;
        container top { uses b:g; leaf optional { if-feature f; type string; } }
        augment "/m:top" { leaf added { type string; } container later { } })");
    EXPECT_EQ(describe(*tree), (Lines{"/top kind=0 class=0 from-grouping=0/0 optional=0/0 added=0/0",
                                      "/top/c kind=0 class=0 d=0/0", "/top/later kind=0 class=0"}));
}

TEST_F(Records, ManyLeavesStayInOrder)
{
    std::string body = "container top {";
    for (int i = 0; i < 300; ++i)
    {
        body += "leaf l" + std::to_string(i) + " { type string; }";
    }
    const auto tree = records(body + "}");
    const GpbYangNode &top = *tree->Nodes()[0];
    const std::vector<GpbYangLeaf *> leaves = tree->Leaves(top);
    ASSERT_EQ(leaves.size(), 300u);
    ASSERT_EQ(VEC_VectorCount(top.pstLeafVec), 300u);
    for (uint32_t i = 0; i < 300; ++i)
    {
        EXPECT_EQ(top.pstLeafVec->ppvSlot[i], leaves[i]);
        EXPECT_EQ("l" + std::to_string(i), leaves[i]->pcName);
    }
}

TEST_F(Records, AModuleWithoutDataHasNone)
{
    EXPECT_EQ(describe(*records("grouping g { leaf a { type string; } }")), Lines{});
}

TEST_F(Records, EachFailingPlatformCallIsReportedAndNothingIsKept)
{
    writeModule("m", "container top { leaf a { type string; } container b { leaf c { type string; } } }");
    const gpbyang::Schema loaded = schema("m");
    const uint64_t calls = failEachCall(
        [&](const gpbtest::FaultRun &run)
        {
            bool failed = false;
            try
            {
                const gpbyang::RecordTree tree(loaded, kModuleId);
                EXPECT_EQ(tree.Nodes().size(), 2u);
            }
            catch (const std::bad_alloc &)
            {
                failed = true;
            }
            EXPECT_EQ(failed, run.fails());
        });
    EXPECT_GE(calls, 4u);
}

} // namespace
