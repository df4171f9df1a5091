#include "yang/record_path.h"

#include "yang_fixture.h"

namespace
{

using gpbtest::errorOf;
using gpbyang::Fault;

class RecordPath : public gpbtest::YangTest
{
protected:
    void SetUp() override
    {
        YangTest::SetUp();
        m_tree = records(R"(
            container top {
                list row { key k; leaf k { type string; } }
                choice way { case one { container inner { container deeper { } } } case two { leaf l { type string; } } }
                choice shared { container box { container in-box { } } }
            }
            container other { })");
    }

    std::string find(const std::string &path) const { return gpbyang::PathOf(gpbyang::FindNode(*m_tree, path)); }

    std::string error(const std::string &path) const
    {
        const auto [fault, text] = errorOf([&] { find(path); });
        EXPECT_EQ(fault, Fault::Path);
        return text;
    }

    void TearDown() override
    {
        m_tree.reset();
        YangTest::TearDown();
    }

    std::unique_ptr<gpbyang::RecordTree> m_tree;
};

TEST_F(RecordPath, Steps)
{
    EXPECT_EQ(find("/top"), "/top");
    EXPECT_EQ(find("/other"), "/other");
    EXPECT_EQ(find("/top/row"), "/top/row");
}

TEST_F(RecordPath, ChoicesAndCasesMayBeNamedOrLeftOut)
{
    EXPECT_EQ(find("/top/way"), "/top/way");
    EXPECT_EQ(find("/top/way/one"), "/top/way/one");
    EXPECT_EQ(find("/top/one"), "/top/way/one");
    EXPECT_EQ(find("/top/way/one/inner"), "/top/way/one/inner");
    EXPECT_EQ(find("/top/inner/deeper"), "/top/way/one/inner/deeper");
    EXPECT_EQ(find("/top/way/inner"), "/top/way/one/inner");
}

TEST_F(RecordPath, AnImpliedCaseIsMetAheadOfItsNode)
{
    EXPECT_EQ(find("/top/box"), "/top/shared/box");
    EXPECT_EQ(find("/top/box/box"), "/top/shared/box/box");
    EXPECT_EQ(find("/top/box/box/in-box"), "/top/shared/box/box/in-box");
}

TEST_F(RecordPath, TheModuleMayBeNamed)
{
    EXPECT_EQ(find("/m:top/m:row"), "/top/row");
    EXPECT_EQ(error("/x:top"), "/x:top: no container, list or notification top in module m; there is: top, other");
}

TEST_F(RecordPath, WhatIsNotThere)
{
    EXPECT_EQ(error("/nothing"),
              "/nothing: no container, list or notification nothing in module m; there is: top, other");
    EXPECT_EQ(error("/top/k"), "/top/k: no container, list or notification k in /top; there is: row, way, shared");
    EXPECT_EQ(error("/top/row/k"), "/top/row/k: no container, list or notification k in /top/row; there is: none");
}

TEST_F(RecordPath, WhatIsNoPath)
{
    for (const char *path : {"", "/", "top", "/top/", "//top", "/top//row", "/:top", "/m:", "/top/:"})
    {
        EXPECT_EQ(error(path),
                  "\"" + std::string(path) + "\" is no path; it should look like /top/list or /module:top/list");
    }
}

TEST_F(RecordPath, CasesOfOneNameNeedTheirChoice)
{
    const auto tree = records("container t { choice a { case same { } } choice b { case same { } } }");
    EXPECT_EQ(errorOf([&] { gpbyang::FindNode(*tree, "/t/same"); }).second,
              "/t/same: /t has more than one case same; name the choice too, as in /t/a/same");
    EXPECT_EQ(gpbyang::PathOf(gpbyang::FindNode(*tree, "/t/b/same")), "/t/b/same");
}

} // namespace
