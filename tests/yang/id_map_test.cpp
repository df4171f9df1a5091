#include "yang/id_map.h"

#include "yang_fixture.h"

namespace
{

using gpbtest::errorOf;
using gpbyang::Fault;

class IdMap : public gpbtest::YangTest
{
protected:
    void SetUp() override
    {
        YangTest::SetUp();
        m_tree = records(R"(
            container top { leaf a { type string; } leaf b { type string; } leaf c { type string; }
                choice way { case one { leaf x { type string; } container inner { leaf y { type string; } } } } })");
    }

    void TearDown() override
    {
        m_tree.reset();
        YangTest::TearDown();
    }

    void apply(const std::string &text) { gpbyang::ApplyIdMap(*m_tree, text, "map.json"); }

    std::string error(const std::string &text)
    {
        const auto [fault, what] = errorOf([&] { apply(text); });
        EXPECT_EQ(fault, Fault::Ids);
        return what;
    }

    /** The error of a map whose classes are that text, with the place taken off its start when it is that column. */
    std::string classError(const std::string &classes, std::size_t column)
    {
        const std::string start = "{\"module\":\"m\",\"classes\":\n";
        const std::string place = "map.json:2:" + std::to_string(column) + ": ";
        const std::string what = error(start + classes + "}");
        return what.compare(0, place.size(), place) == 0 ? what.substr(place.size()) : what;
    }

    std::unique_ptr<gpbyang::RecordTree> m_tree;
};

TEST_F(IdMap, SetsWhatItNamesAndNothingElse)
{
    apply(R"({"classes": {
        "/top": {"class": 4294967295, "fields": {"a": 1, "c": {"id": 65535, "map": 7}}},
        "/m:top/way/one": {"fields": {"x": {"id": 2}}, "class": 16},
        "/top/inner": {"skip": true}
      }, "module": "m"})");
    EXPECT_EQ(describe(*m_tree), (std::vector<std::string>{
                                     "/top kind=0 class=4294967295 a=1/0 b=0/0 c=65535/7",
                                     "/top/way kind=1 class=0",
                                     "/top/way/one kind=2 class=16 x=2/0",
                                     "/top/way/one/inner kind=0 class=0 skip y=0/0",
                                 }));
}

TEST_F(IdMap, NoClassesAreNoIds)
{
    apply(R"({"module": "m", "classes": {}})");
    EXPECT_EQ(m_tree->Nodes()[0]->uiClassId, 0u);
}

TEST_F(IdMap, WhatIsMissingOrUnknownAtTheTop)
{
    EXPECT_EQ(error("[]"), "map.json:1:1: an object is needed here");
    EXPECT_EQ(error("{}"), "map.json:1:1: \"module\" is missing");
    EXPECT_EQ(error("{\"module\":\"m\"}"), "map.json:1:1: \"classes\" is missing");
    EXPECT_EQ(error("{\"module\":\"m\",\n \"class\":{}}"),
              "map.json:2:2: \"class\" is not known; there is: module, classes");
    EXPECT_EQ(error("{\"module\":\"m\",\"classes\":{},\"classes\":{}}"), "map.json:1:28: \"classes\" is there already");
    EXPECT_EQ(error("{\"module\":\"other\",\"classes\":{}}"), "map.json:1:2: the map is not for module m");
    EXPECT_EQ(error("{\"module\":7,\"classes\":{}}"), "map.json:1:2: the map is not for module m");
    EXPECT_EQ(error("{\"module\":\"m\",\"classes\":[]}"), "map.json:1:15: an object is needed here");
}

TEST_F(IdMap, WhatIsWrongWithAClass)
{
    EXPECT_EQ(classError(R"({"/none":{"class":1}})", 2),
              "/none: no container, list or notification none in module m; there is: top");
    EXPECT_EQ(classError(R"({"top":{"class":1}})", 2),
              "\"top\" is no path; it should look like /top/list or /module:top/list");
    EXPECT_EQ(classError(R"({"/top":1})", 2), "an object is needed here");
    EXPECT_EQ(classError(R"({"/top":{}})", 2), "\"class\" is missing");
    EXPECT_EQ(classError(R"({"/top":{"fields":{}}})", 2), "\"class\" is missing");
    EXPECT_EQ(classError(R"({"/top":{"class":1,"name":2}})", 20),
              "\"name\" is not known; there is: class, fields, skip");
    EXPECT_EQ(classError(R"({"/top":{"class":1},"/top":{"class":2}})", 21), "\"/top\" is there already");
    EXPECT_EQ(classError(R"({"/top":{"class":1},"/m:top":{"class":2}})", 21), "/top is there already, by another path");
    EXPECT_EQ(classError(R"({"/top/way":{"class":1}})", 2), "/top/way is a choice; its cases can be classes");
}

TEST_F(IdMap, WhatIsWrongWithASkippedNode)
{
    EXPECT_EQ(classError(R"({"/top":{"skip":true}})", 2), "/top is a top-level node, which cannot be skipped");
    EXPECT_EQ(classError(R"({"/top/inner":{"skip":false}})", 16), "\"skip\" is true or not there");
    EXPECT_EQ(classError(R"({"/top/inner":{"skip":1}})", 16), "\"skip\" is true or not there");
    EXPECT_EQ(classError(R"({"/top/inner":{"skip":true,"class":1}})", 2), "a skipped node has no class and no fields");
    EXPECT_EQ(classError(R"({"/top/inner":{"fields":{},"skip":true}})", 2),
              "a skipped node has no class and no fields");
}

TEST_F(IdMap, WhatIsNoClassId)
{
    for (const char *id : {"0", "-1", "4294967296", "1.0", "1e3", "01", "1.5", "\"1\"", "\"0x10\"", "true", "null",
                           "[1]", "{}", "1e400"})
    {
        EXPECT_EQ(classError(R"({"/top":{"class":)" + std::string(id) + "}}", 10),
                  "a number from 1 to 4294967295 is needed here")
            << id;
    }
}

TEST_F(IdMap, WhatIsWrongWithAField)
{
    const auto fieldError = [&](const std::string &fields, std::size_t column)
    { return classError("{\"/top\":{\"class\":1,\"fields\":" + fields + "}}", 28 + column); };
    EXPECT_EQ(fieldError(R"({"z":1})", 2), "/top has no leaf z");
    EXPECT_EQ(fieldError(R"({"A":1})", 2), "/top has no leaf A");
    EXPECT_EQ(fieldError(R"({"a":0})", 2), "a number from 1 to 65535 is needed here");
    EXPECT_EQ(fieldError(R"({"a":65536})", 2), "a number from 1 to 65535 is needed here");
    EXPECT_EQ(fieldError(R"({"a":1,"a":2})", 8), "\"a\" is there already");
    EXPECT_EQ(fieldError(R"({"a":1,"b":1})", 8), "another field of /top has id 1 already");
    EXPECT_EQ(fieldError(R"({"a":{"map":1}})", 2), "\"id\" is missing");
    EXPECT_EQ(fieldError(R"({"a":{"id":1,"map":0}})", 14), "a number from 1 to 65535 is needed here");
    EXPECT_EQ(fieldError(R"({"a":{"id":1,"key":true}})", 14), "\"key\" is not known; there is: id, map");
    EXPECT_EQ(fieldError(R"([1])", 0 - std::size_t{8}), "an object is needed here");
}

} // namespace
