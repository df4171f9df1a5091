/**
 * Each kind of finding with a module that has it and one that just has not; for losses, a document that shows that the
 * library does lose the data.
 */
#include <gmock/gmock.h>

#include <google/protobuf/compiler/importer.h>

#include <fstream>
#include <iterator>
#include <set>

#include "proto_fixture.h"
#include "yang/check.h"

namespace
{

using gpbyang::CheckFinding;
using gpbyang::CheckKind;
using gpbyang::Decimals;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

class Checks : public gpbtest::ProtoTest
{
protected:
    /** "PATH" or "PATH: DETAIL" of the findings of a kind in a module "m" with that body. */
    std::vector<std::string> findings(CheckKind kind, const std::string &body, Decimals decimals = Decimals::Double)
    {
        std::vector<std::string> lines;
        for (const CheckFinding &finding : all(body, "m", decimals))
        {
            if (finding.kind == kind)
            {
                lines.push_back(finding.path + (finding.detail.empty() ? "" : ": " + finding.detail));
            }
        }
        return lines;
    }

    std::vector<CheckFinding> all(const std::string &body, const std::string &module = "m",
                                  Decimals decimals = Decimals::Double)
    {
        writeModule(module, body);
        const gpbyang::Schema loaded({directory()}, module, m_augmenting);
        gpbyang::ProtoFile file = gpbyang::BuildProtoFile(loaded, decimals);
        gpbyang::NumberLock(module).Number(file);
        const std::string path = workDirectory().makeDirectory("checked");
        workDirectory().writeFile("checked/" + module + ".proto", gpbyang::WriteProtoFile(file, false));
        google::protobuf::compiler::DiskSourceTree tree;
        tree.MapPath("", path);
        google::protobuf::compiler::Importer importer(&tree, nullptr);
        return gpbyang::CheckModule(file, *importer.Import(module + ".proto"));
    }

    /** What the library loses of a document of the module of the body, from XML. */
    std::vector<std::string> lost(const std::string &body, const std::string &content)
    {
        proto(body);
        return fromXml("<t xmlns=\"urn:m\">" + content + "</t>").differences;
    }

    static std::string leaf(const std::string &name, const std::string &type = "string")
    {
        return "leaf " + name + " { type " + type + "; } ";
    }
};

TEST_F(Checks, EveryKindHasANameThatTheDocumentationExplains)
{
    std::ifstream page(DOCS_DIR "yang-to-proto.md");
    const std::string text(std::istreambuf_iterator<char>(page), {});
    std::set<std::string> names;
    bool notes = false;
    for (int i = 0; i < static_cast<int>(CheckKind::Count); ++i)
    {
        const gpbyang::CheckKindInfo &info = gpbyang::InfoOf(static_cast<CheckKind>(i));
        EXPECT_EQ(static_cast<int>(info.kind), i);
        EXPECT_TRUE(names.insert(info.name).second) << info.name;
        EXPECT_THAT(text, HasSubstr(std::string("| `") + info.name + "` |")) << "in docs/yang-to-proto.md";
        EXPECT_EQ(info.text[std::string(info.text).size() - 1], '.') << info.name;
        EXPECT_FALSE(notes && info.loss) << "losses come first: " << info.name;
        notes = !info.loss;
    }
}

TEST_F(Checks, AModuleOfWhichNothingIsLost)
{
    EXPECT_THAT(all("container t { leaf a { type uint8; } list l { key k; leaf k { type int32; } } "
                    "leaf e { type enumeration { enum up; } } choice c { leaf x { type boolean; } leaf y { type "
                    "boolean; } } }"),
                IsEmpty());
}

TEST_F(Checks, ModuleName)
{
    const std::string fits(57, 'm');
    const std::string tooLong(58, 'm');
    EXPECT_THAT(all("container t { leaf a { type uint8; } }", fits), IsEmpty());
    const std::vector<CheckFinding> found = all("container t { leaf a { type uint8; } }", tooLong);
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].kind, CheckKind::ModuleName);
    EXPECT_EQ(found[0].path, "/" + tooLong);
    EXPECT_EQ(found[0].detail, "58 characters");
}

TEST_F(Checks, LeftOut)
{
    const auto nested = [](int depth)
    {
        std::string body;
        for (int i = 0; i < depth; ++i)
        {
            body += "container c { ";
        }
        return body + "leaf a { type uint8; } " + std::string(static_cast<std::size_t>(depth), '}');
    };
    EXPECT_THAT(findings(CheckKind::LeftOut, nested(31)), IsEmpty());
    EXPECT_THAT(findings(CheckKind::LeftOut, nested(32)),
                ElementsAre(HasSubstr("/c: it lies below 31 layers of messages")));
    EXPECT_THAT(findings(CheckKind::LeftOut, "container t { anyxml x; } leaf top { type string; }"),
                ElementsAre("/m:t/x: data without a schema has no fields",
                            "/m:top: a document begins with a container, not with a leaf"));
}

TEST_F(Checks, LongName)
{
    const std::string fits(127, 'a');
    const std::string tooLong(128, 'b');
    const std::string body = "container t { " + leaf(fits) + leaf(tooLong) + "}";
    EXPECT_THAT(findings(CheckKind::LongName, body), ElementsAre("/m:t/" + tooLong + ": 128 characters"));
    EXPECT_THAT(lost(body, "<" + fits + ">1</" + fits + ">"), IsEmpty());
    EXPECT_THAT(lost(body, "<" + tooLong + ">1</" + tooLong + ">"), Not(IsEmpty()));
}

TEST_F(Checks, DottedName)
{
    const std::string body =
        "container t { " + leaf("a.b") + leaf("a-c") + "container d.e { " + leaf("f", "uint8") + "} }";
    EXPECT_THAT(findings(CheckKind::DottedName, body), ElementsAre("/m:t/a.b", "/m:t/d.e"));
    EXPECT_THAT(lost(body, "<a-c>1</a-c>"), IsEmpty());
    EXPECT_THAT(lost(body, "<a.b>1</a.b>"), Not(IsEmpty()));
    EXPECT_THAT(lost(body, "<d.e><f>1</f></d.e>"), Not(IsEmpty()));
}

TEST_F(Checks, CaseFields)
{
    const auto cases = [](int count)
    {
        std::string body = "container t { choice c { ";
        for (int i = 0; i < count; ++i)
        {
            body += "leaf x" + std::to_string(i) + " { type uint8; } ";
        }
        return body + "} }";
    };
    EXPECT_THAT(all(cases(255)), IsEmpty());
    EXPECT_THAT(lost(cases(255), "<x254>1</x254>"), IsEmpty());
    EXPECT_THAT(findings(CheckKind::CaseFields, cases(256)), ElementsAre("/m:t"));
    EXPECT_EQ(all(cases(256)).size(), 1u) << "one reason is enough for all nodes of the cases";
    EXPECT_THAT(lost(cases(256), "<x0>1</x0>"), Not(IsEmpty()));
}

TEST_F(Checks, DepthName)
{
    const std::string body = "container t { " + leaf("name2", "uint8") + "choice c { " + leaf("name", "uint8") + "} }";
    EXPECT_THAT(findings(CheckKind::DepthName, body), ElementsAre("/m:t/c/name/name: goes to m.T.name2"));
    EXPECT_THAT(lost(body, "<name>1</name>"), Not(IsEmpty()));
    EXPECT_THAT(all("container t { " + leaf("name3", "uint8") + "choice c { " + leaf("name", "uint8") + "} }"),
                IsEmpty());
    EXPECT_THAT(all("container t { " + leaf("name2", "uint8") + leaf("name", "uint8") + "}"), IsEmpty());
}

TEST_F(Checks, SharedNameOfACaseAndAContainer)
{
    const std::string body = "container t { choice c { case a { container in { " + leaf("x", "uint8") +
                             "} } case b { " + leaf("x", "uint8") + leaf("y", "uint8") + "} } }";
    EXPECT_THAT(findings(CheckKind::SharedName, body), ElementsAre("/m:t/c/b/x: goes to m.T.CA.In.x"));
    EXPECT_THAT(lost(body, "<x>1</x>"), Not(IsEmpty()));
    EXPECT_THAT(lost(body, "<y>1</y>"), IsEmpty());
}

TEST_F(Checks, SharedNameOfTwoModules)
{
    writeModule("z", "import m { prefix m; } augment /m:t { leaf a { type uint8; } leaf b { type uint8; } }");
    m_augmenting = {"z"};
    const std::string body = "container t { " + leaf("a", "uint8") + "}";
    EXPECT_THAT(findings(CheckKind::SharedName, body), ElementsAre("/m:t/z:a: goes to m.T.a"));
    EXPECT_THAT(lost(body, "<a xmlns=\"urn:z\">1</a>"), Not(IsEmpty()));
    EXPECT_THAT(lost(body, "<b xmlns=\"urn:z\">1</b>"), IsEmpty());
}

TEST_F(Checks, SharedNameOfNamesThatDifferInCase)
{
    EXPECT_THAT(findings(CheckKind::SharedName, "container t { leaf Ab { type uint8; } leaf ab { type uint8; } }"),
                ElementsAre("/m:t/ab: goes to m.T.ab"));
    EXPECT_THAT(findings(CheckKind::SharedName, "container t { leaf a-b { type uint8; } leaf a_b { type uint8; } }"),
                ElementsAre("/m:t/a_b: goes to m.T.a_b"));
    EXPECT_THAT(findings(CheckKind::SharedName, "container t { leaf ab { type uint8; } leaf a_b { type uint8; } }"),
                IsEmpty());
}

TEST_F(Checks, SharedNameFromJsonOnly)
{
    // A leaf in a case wins over a container of its name, but only for elements with text.
    writeModule("z", "import m { prefix m; } augment /m:t/m:c { case b { leaf own { type uint8; } } }");
    m_augmenting = {"z"};
    const std::string body = "container t { container own { presence p; } choice c { leaf x { type uint8; } } }";
    EXPECT_THAT(findings(CheckKind::SharedName, body),
                ElementsAre("/m:t/c/z:b/own: goes to m.T.own from JSON, and as an empty element"));
}

TEST_F(Checks, CaseInList)
{
    const std::string choice = "choice c { " + leaf("x", "uint8") + leaf("y", "uint8") + "} ";
    const std::string body = "container t { list l { key k; " + leaf("k", "uint8") + choice +
                             "container in { choice d { " + leaf("z", "uint8") + "} } } }";
    EXPECT_THAT(findings(CheckKind::CaseInList, body), ElementsAre("/m:t/l/c", "/m:t/l/in/d"));
    const std::string one = "<l><k>1</k><x>1</x></l>";
    EXPECT_THAT(lost(body, one), IsEmpty());
    EXPECT_THAT(lost(body, one + "<l><k>2</k><x>2</x></l>"), Not(IsEmpty()));
    EXPECT_THAT(lost(body, "<l><k>1</k><in><z>1</z></in></l><l><k>2</k><in><z>2</z></in></l>"), Not(IsEmpty()));
    EXPECT_THAT(findings(CheckKind::CaseInList, "container t { " + choice + "}"), IsEmpty());
    EXPECT_THAT(findings(CheckKind::CaseInList, "list t { key k; " + leaf("k", "uint8") + choice + "}"), IsEmpty());
}

TEST_F(Checks, CasePresence)
{
    const std::string body = "container t { choice c { container in { presence p; " + leaf("x", "uint8") +
                             "} container plain { " + leaf("y", "uint8") + "} } " + leaf("after", "uint8") + "}";
    EXPECT_THAT(findings(CheckKind::CasePresence, body), ElementsAre("/m:t/c/in/in"));
    EXPECT_THAT(lost(body, "<in>\n</in><after>1</after>"), Not(IsEmpty()));
    EXPECT_THAT(lost(body, "<in><x>1</x></in><after>1</after>"), IsEmpty());
    EXPECT_THAT(lost(body, "<plain><y>1</y></plain><after>1</after>"), IsEmpty());
    EXPECT_THAT(findings(CheckKind::CasePresence, "container t { container in { presence p; } }"), IsEmpty());
}

TEST_F(Checks, UnionEmpty)
{
    const std::string body = "yang-version 1.1; container t { leaf a { type union { type empty; type uint8; } } "
                             "leaf b { type empty; } leaf c { type union { type int8; type uint8; } } }";
    EXPECT_THAT(findings(CheckKind::UnionEmpty, body), ElementsAre("/m:t/a"));
    EXPECT_THAT(lost(body, "<a/>"), Not(IsEmpty()));
    EXPECT_THAT(lost(body, "<a>1</a><b/>"), IsEmpty());
}

TEST_F(Checks, JsonLeafList)
{
    const std::string body =
        "container t { leaf-list s { type uint8; } leaf-list e { type enumeration { enum up; } } }";
    EXPECT_THAT(findings(CheckKind::JsonLeafList, body), ElementsAre("/m:t/s"));
    proto(body);
    EXPECT_THAT(fromJson("<t xmlns=\"urn:m\"><s>1</s></t>").differences, Not(IsEmpty()));
    EXPECT_THAT(fromJson("<t xmlns=\"urn:m\"><e>up</e></t>").differences, IsEmpty());
    EXPECT_THAT(fromXml("<t xmlns=\"urn:m\"><s>1</s></t>").differences, IsEmpty());
}

TEST_F(Checks, TopList)
{
    EXPECT_THAT(findings(CheckKind::TopList, "list l { key k; " + leaf("k", "uint8") + "} container t { }"),
                ElementsAre("/m:l"));
}

TEST_F(Checks, TextEnum)
{
    EXPECT_THAT(
        findings(CheckKind::TextEnum,
                 "container t { leaf a { type enumeration { enum up; enum UP; } } leaf b { type enumeration { "
                 "enum \"1 g\"; } } leaf-list c { type bits { bit x; } } leaf d { type enumeration { enum up; } } }"),
        ElementsAre("/m:t/a: its values \"up\" and \"UP\" have the same name in protobuf",
                    "/m:t/b: its value \"1 g\" has a blank, other characters than ASCII, or is too long",
                    "/m:t/c: a field cannot tell where the bits of one entry end"));
}

TEST_F(Checks, Decimal)
{
    const std::string body =
        "container t { leaf a { type decimal64 { fraction-digits 2; } } "
        "leaf b { type decimal64 { fraction-digits 2; range \"-9999999999999.99..9999999999999.99\"; } } "
        "leaf c { type decimal64 { fraction-digits 2; range \"0..10000000000000\"; } } "
        "leaf d { type decimal64 { fraction-digits 2; range \"-10000000000000..0 | 5\"; } } }";
    EXPECT_THAT(findings(CheckKind::Decimal, body), ElementsAre("/m:t/a", "/m:t/c", "/m:t/d"));
    EXPECT_THAT(findings(CheckKind::Decimal, body, Decimals::String), IsEmpty());
}

TEST_F(Checks, EmptyText)
{
    const std::string body =
        "container t { leaf a { type string; } leaf b { type string { length \"1..5\"; } } "
        "leaf c { type binary; } leaf d { type string { pattern \"x+\"; } } leaf e { type "
        "string { length \"0 | 3\"; } } leaf f { type binary { length 1; } } leaf g { type string { "
        "pattern \"x*\"; } } leaf h { type union { type uint8; type string; } } leaf i { type "
        "enumeration { enum a; } } leaf j { type bits { bit a; } } }";
    EXPECT_THAT(findings(CheckKind::EmptyText, body), ElementsAre("/m:t/a", "/m:t/c", "/m:t/e", "/m:t/g", "/m:t/h"));
    EXPECT_THAT(lost(body, "<a/>"), Not(IsEmpty()));
    EXPECT_THAT(lost(body, "<h/>"), Not(IsEmpty()));
    proto(body);
    EXPECT_THAT(fromJson("<t xmlns=\"urn:m\"><a/></t>").differences, IsEmpty());
}

TEST_F(Checks, ValuePrefix)
{
    EXPECT_THAT(findings(CheckKind::ValuePrefix,
                         "identity i; container t { leaf a { type identityref { base i; } } leaf b { type "
                         "instance-identifier; } leaf c { type union { type uint8; type identityref { base i; } } } "
                         "leaf d { type leafref { path \"../a\"; } } leaf e { type uint8; } }"),
                ElementsAre("/m:t/a", "/m:t/b", "/m:t/c", "/m:t/d"));
}

TEST_F(Checks, JsonNumber)
{
    EXPECT_THAT(findings(CheckKind::JsonNumber,
                         "container t { leaf a { type int64; } leaf-list b { type uint64; } leaf c { "
                         "type int32; } leaf d { type union { type uint64; type string; } } }"),
                ElementsAre("/m:t/a", "/m:t/b", "/m:t/d"));
}

TEST_F(Checks, JsonEmpty)
{
    EXPECT_THAT(findings(CheckKind::JsonEmpty, "container t { leaf a { type empty; } leaf b { type boolean; } }"),
                ElementsAre("/m:t/a"));
}

TEST_F(Checks, JsonNestedList)
{
    EXPECT_THAT(
        findings(CheckKind::JsonNestedList,
                 "container t { list l { key k; leaf k { type uint8; } leaf-list ll { type uint8; } container c { "
                 "list deep { key k; leaf k { type uint8; } } } } leaf-list x { type uint8; } }"),
        ElementsAre("/m:t/l/ll", "/m:t/l/c/deep"));
}

TEST_F(Checks, JsonBits)
{
    EXPECT_THAT(findings(CheckKind::JsonBits,
                         "container t { leaf a { type bits { bit x; } } leaf b { type bits { bit y; "
                         "bit Y; } } }"),
                ElementsAre("/m:t/a"));
}

TEST_F(Checks, TopName)
{
    EXPECT_THAT(findings(CheckKind::TopName,
                         "container my_top { leaf a { type uint8; } } container my-own { } container "
                         "TOP_1 { }"),
                ElementsAre("/m:my_top: MyTop, not My_top", "/m:TOP_1: TOP1, not TOP_1"));
}

TEST_F(Checks, Navigation)
{
    EXPECT_THAT(findings(CheckKind::Navigation,
                         "container t { leaf Upper { type uint8; } leaf a-b { type uint8; } container In { "
                         "leaf x { type uint8; } } container in-ner { leaf y { type uint8; } } }"),
                ElementsAre("/m:t/Upper", "/m:t/In/x"));
}

TEST_F(Checks, EnumList)
{
    EXPECT_THAT(findings(CheckKind::EnumList,
                         "container t { leaf a { type enumeration { enum up; enum up-2; } } leaf b_c { type "
                         "enumeration { enum lower_layer; } } }"),
                ElementsAre("/m:t/a: UPX_2 is one of its names"));
}

TEST_F(Checks, LongPath)
{
    // Three names of 126 characters and their separators: the path of the second is 255 characters with "/t".
    const std::string name(126, 'x');
    const std::string body =
        "container t { container " + name + " { container " + name.substr(1) + " { leaf a { type uint8; } } } }";
    const std::string outer = "/m:t/" + name + "/" + name.substr(1);
    EXPECT_THAT(findings(CheckKind::LongPath, body), ElementsAre(outer + "/a: 257 characters"));
    const std::string shorter =
        "container t { container " + name + " { container " + name.substr(3) + " { leaf a { type uint8; } } } }";
    EXPECT_THAT(findings(CheckKind::LongPath, shorter), IsEmpty());
}

TEST_F(Checks, ManyLeaves)
{
    const auto leaves = [](int count)
    {
        std::string body = "container t { leaf d { type decimal64 { fraction-digits 1; range 0..1; } } ";
        for (int i = 0; i < count; ++i)
        {
            body += leaf("x" + std::to_string(i), "uint8");
        }
        return body + "}";
    };
    EXPECT_THAT(all(leaves(255)), IsEmpty());
    EXPECT_THAT(findings(CheckKind::ManyLeaves, leaves(256)), ElementsAre("/m:t: 256 leaves"));
}

} // namespace
