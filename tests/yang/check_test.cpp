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
        EXPECT_FALSE(info.kept && !info.loss && info.lossless != nullptr) << info.name;
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
    const std::vector<std::string> lines = findings(CheckKind::CaseFields, cases(256));
    ASSERT_EQ(lines.size(), 256u);
    EXPECT_EQ(lines.back(), "/m:t/c/x255/x255");
    EXPECT_EQ(all(cases(256)).size(), 256u) << "one reason is enough";
    EXPECT_THAT(lost(cases(256), "<x0>1</x0>"), Not(IsEmpty()));
}

TEST_F(Checks, DepthName)
{
    const std::string body = "container t { " + leaf("name2", "uint8") + "choice c { " + leaf("name", "uint8") + "} }";
    EXPECT_THAT(findings(CheckKind::DepthName, body),
                ElementsAre("/m:t/c/name/name: goes to m.T.name2", "/m:t/name2: gets what belongs to c/name/name"));
    EXPECT_THAT(lost(body, "<name>1</name>"), Not(IsEmpty()));
    EXPECT_THAT(lost(body, "<name2>2</name2><name>1</name>"), Contains(HasSubstr("name2 is \"1\"")));
    EXPECT_THAT(all("container t { " + leaf("name3", "uint8") + "choice c { " + leaf("name", "uint8") + "} }"),
                IsEmpty());
    EXPECT_THAT(all("container t { " + leaf("name2", "uint8") + leaf("name", "uint8") + "}"), IsEmpty());
}

TEST_F(Checks, SharedNameOfACaseAndAContainer)
{
    const std::string body = "container t { choice c { case a { container in { " + leaf("x", "uint8") +
                             "} } case b { " + leaf("x", "uint8") + leaf("y", "uint8") + "} } }";
    EXPECT_THAT(findings(CheckKind::SharedName, body),
                ElementsAre("/m:t/c/b/x: goes to m.T.CA.In.x", "/m:t/c/b/y: is lost beside c/b/x"));
    EXPECT_THAT(lost(body, "<x>1</x>"), Not(IsEmpty()));
    EXPECT_THAT(lost(body, "<y>1</y>"), IsEmpty());
    EXPECT_THAT(lost(body, "<y>1</y><x>1</x>"), Contains(HasSubstr("y is not in the message")));
}

TEST_F(Checks, SharedNameOfTwoModules)
{
    writeModule("z", "import m { prefix m; } augment /m:t { leaf a { type uint8; } leaf b { type uint8; } }");
    m_augmenting = {"z"};
    const std::string body = "container t { " + leaf("a", "uint8") + "}";
    EXPECT_THAT(findings(CheckKind::SharedName, body),
                ElementsAre("/m:t/z:a: goes to m.T.a", "/m:t/a: gets what belongs to z:a"));
    EXPECT_THAT(lost(body, "<a xmlns=\"urn:z\">1</a>"), Not(IsEmpty()));
    EXPECT_THAT(lost(body, "<b xmlns=\"urn:z\">1</b>"), IsEmpty());
}

TEST_F(Checks, SharedNameOfNamesThatDifferInCase)
{
    EXPECT_THAT(findings(CheckKind::SharedName, "container t { leaf Ab { type uint8; } leaf ab { type uint8; } }"),
                ElementsAre("/m:t/ab: goes to m.T.ab", "/m:t/Ab: gets what belongs to ab"));
    EXPECT_THAT(findings(CheckKind::SharedName, "container t { leaf a-b { type uint8; } leaf a_b { type uint8; } }"),
                ElementsAre("/m:t/a_b: goes to m.T.a_b", "/m:t/a-b: gets what belongs to a_b"));
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
    EXPECT_THAT(findings(CheckKind::CaseInList, body), ElementsAre("/m:t/l/c/x/x", "/m:t/l/c/y/y", "/m:t/l/in/d/z/z"));
    const std::string one = "<l><k>1</k><x>1</x></l>";
    EXPECT_THAT(lost(body, one), IsEmpty());
    EXPECT_THAT(lost(body, one + "<l><k>2</k><x>2</x></l>"), Not(IsEmpty()));
    EXPECT_THAT(lost(body, "<l><k>1</k><in><z>1</z></in></l><l><k>2</k><in><z>2</z></in></l>"), Not(IsEmpty()));
    EXPECT_THAT(findings(CheckKind::CaseInList, "container t { " + choice + "}"), IsEmpty());
    EXPECT_THAT(findings(CheckKind::CaseInList, "list t { key k; " + leaf("k", "uint8") + choice + "}"), IsEmpty());
}

TEST_F(Checks, BehindEmptyContainer)
{
    const std::string body = "container t { choice c { container in { presence p; " + leaf("x", "uint8") +
                             "} container plain { " + leaf("y", "uint8") + "} } " + leaf("after", "uint8") + "}";
    EXPECT_THAT(findings(CheckKind::BehindEmpty, body), ElementsAre("/m:t/after: behind c/in/in"));
    EXPECT_THAT(lost(body, "<in>\n</in><after>1</after>"), ElementsAre(HasSubstr("after is not in the message")));
    EXPECT_THAT(lost(body, "<in/><after>1</after>"), Contains(HasSubstr("after is not in the message")));
    EXPECT_THAT(lost(body, "<in><x>1</x></in><after>1</after>"), IsEmpty());
    EXPECT_THAT(lost(body, "<plain><y>1</y></plain><after>1</after>"), IsEmpty());
    EXPECT_THAT(findings(CheckKind::BehindEmpty, "container t { container in { presence p; } leaf a { type uint8; } }"),
                IsEmpty());
}

TEST_F(Checks, BehindEmptyLeaf)
{
    // Bits may be empty, and so may a text; an empty leaf is a bool, behind which nothing stays open.
    const auto body = [](const std::string &type)
    {
        return "container t { list l { key k; " + leaf("k", "uint8") + "choice c { case a { leaf x { type " + type +
               " } " + leaf("beside", "uint8") + "choice d { " + leaf("deep", "uint8") + "} } case b { " +
               leaf("other", "uint8") + "} } choice e { " + leaf("y", "uint8") + "} container in { " +
               leaf("z", "uint8") + "} } }";
    };
    for (const char *type : {"string;", "bits { bit one; }", "binary;", "leafref { path /t/s; }"})
    {
        const std::string with = body(type).insert(14, "leaf s { type string; } ");
        EXPECT_THAT(findings(CheckKind::BehindEmpty, with),
                    ElementsAre("/m:t/l/e/y/y: behind c/a/x", "/m:t/l/in: behind c/a/x"))
            << type;
    }
    EXPECT_THAT(findings(CheckKind::BehindEmpty, body("empty;")), IsEmpty());
    EXPECT_THAT(findings(CheckKind::BehindEmpty, body("string { length 1..3; pattern 'a*'; }")), IsEmpty());
    const std::string entry = "<l><k>1</k><x/><beside>1</beside><deep>1</deep><y>1</y><in><z>1</z></in></l>";
    EXPECT_THAT(lost(body("string;"), entry),
                ElementsAre(HasSubstr("x is not"), HasSubstr("y is not"), HasSubstr("in is not")));
}

TEST_F(Checks, BehindATextThatBeginsWithALineBreak)
{
    const std::string body = "container t { choice c { leaf x { type string { length 1..9; } } } leaf after { type "
                             "uint8; } }";
    EXPECT_THAT(findings(CheckKind::BehindEmpty, body), ElementsAre("/m:t/after: behind c/x/x"));
    EXPECT_THAT(lost(body, "<x>\na</x><after>1</after>"),
                ElementsAre(HasSubstr("x is not"), HasSubstr("after is not")));
}

TEST_F(Checks, BehindEmptyFindsNamesakesInTheCase)
{
    // Behind the empty text, "a" of the container is taken for that of the case, which another module has put there.
    writeModule("z", "import m { prefix m; } augment /m:t/m:c/m:d { leaf a { type uint8; } leaf b { type string; } }");
    m_augmenting = {"z"};
    const std::string body = "container t { leaf a { type uint8; } choice c { case d { leaf x { type uint8; } } } }";
    EXPECT_THAT(findings(CheckKind::BehindEmpty, body),
                ElementsAre("/m:t/c/d/z:a: gets what belongs to a", "/m:t/a: behind c/d/z:b"));
}

TEST_F(Checks, RootName)
{
    const std::string longName(128, 'a');
    EXPECT_THAT(findings(CheckKind::RootName, "container a.b { } container abC { } container ab-c { } container " +
                                                  longName + " { } container fits { }"),
                ElementsAre("/m:a.b: the library looks for A.b, not for A_b",
                            "/m:ab-c: the library looks for AbC, not for AbC_1",
                            "/m:" + longName + ": 128 characters"));
}

TEST_F(Checks, EmptyElement)
{
    const std::string body = "container t { container p { presence p; } container n { } list l { config false; leaf a "
                             "{ type uint8; } } list k { key k; leaf k { type uint8; } } }";
    EXPECT_THAT(findings(CheckKind::EmptyElement, body), ElementsAre("/m:t/p", "/m:t/l"));
    EXPECT_THAT(lost(body, "<p/>"), ElementsAre(HasSubstr("p is not in the message")));
    EXPECT_THAT(lost(body, "<p>\n</p>"), IsEmpty());
}

TEST_F(Checks, LineBreak)
{
    const std::string body = "container t { leaf a { type string; } leaf b { type string { pattern 'x*'; } } leaf c { "
                             "type string { length 1; } } leaf d { type uint8; } }";
    EXPECT_THAT(findings(CheckKind::LineBreak, body), ElementsAre("/m:t/a", "/m:t/c"));
    EXPECT_THAT(lost(body, "<a>\nx</a>"), ElementsAre(HasSubstr("a is not in the message")));
    EXPECT_THAT(lost(body, "<a>x\n</a>"), IsEmpty());
}

TEST_F(Checks, AnEmptyElementThatEndsTheWalk)
{
    // "x" of the second case is taken for the one in the list of the first, which nothing can be put into.
    const std::string inside = "choice c { case a { list l { key k; " + leaf("k", "uint8") + leaf("x", "uint8") +
                               "} } case b { " + leaf("x", "empty") + "} } " + leaf("after", "uint8");
    const auto ends = [](const CheckFinding &finding) { return finding.forms.refusedXml; };
    const std::vector<CheckFinding> atTop = all("container t { " + inside + "}");
    const auto end = std::find_if(atTop.begin(), atTop.end(), ends);
    ASSERT_NE(end, atTop.end());
    EXPECT_EQ(end->path, "/m:t/c/b/x");
    EXPECT_EQ(end->detail, "ends the document");
    EXPECT_THAT(findings(CheckKind::BehindEmpty, "container t { " + inside + "}"),
                Contains("/m:t/after: behind c/b/x"));
    const std::string below = "container t { container in { " + inside + "} " + leaf("beside", "uint8") + "}";
    const std::vector<CheckFinding> found = all(below);
    EXPECT_EQ(std::find_if(found.begin(), found.end(), ends), found.end());
    EXPECT_THAT(findings(CheckKind::BehindEmpty, below), Contains("/m:t/in/after: behind c/b/x"));
    EXPECT_THAT(lost(below, "<in><x/><after>1</after></in><beside>1</beside>"),
                ElementsAre(HasSubstr("x is not"), HasSubstr("after is not")));
}

TEST_F(Checks, FormsThatLoseANode)
{
    const auto forms = [&](const std::string &body)
    {
        std::string text;
        for (const CheckFinding &finding : all(body))
        {
            if (gpbyang::InfoOf(finding.kind).loss)
            {
                text += finding.path + (finding.forms.xml ? " xml" : "") + (finding.forms.json ? " json" : "") +
                        (finding.forms.refusedJson ? " refused" : "") + "\n";
            }
        }
        return text;
    };
    EXPECT_EQ(forms("container t { leaf a.b { type uint8; } leaf-list l { type uint8; } anyxml x; choice c { leaf s { "
                    "type string; } } leaf after { type uint8; } }"),
              "/m:t/x xml json refused\n/m:t/a.b xml json refused\n/m:t/a.b xml\n/m:t/l xml\n/m:t/after xml\n"
              "/m:t/l json\n");
    writeModule("z", "import m { prefix m; } augment /m:t/m:c { case b { leaf own { type uint8; } } }");
    m_augmenting = {"z"};
    EXPECT_EQ(forms("container t { container own { presence p; } choice c { leaf x { type uint8; } } }"),
              "/m:t/c/z:b/own json refused\n");
}

TEST_F(Checks, WhatTheLosslessSettingKeeps)
{
    const auto left = [&](const std::string &body)
    {
        std::vector<std::string> paths;
        for (const CheckFinding &finding : all(body))
        {
            if (gpbyang::InfoOf(finding.kind).loss && !finding.IsKept())
            {
                paths.push_back(finding.path + (finding.lossless.xml ? " xml" : "") +
                                (finding.lossless.json ? " json" : ""));
            }
        }
        return paths;
    };
    const std::string body =
        "container t { list l { key k; leaf k { type uint8; } leaf own { type string; } choice c { "
        "leaf x.y { type string; } } } leaf-list s { type string; } }";
    EXPECT_THAT(left(body), IsEmpty());
    EXPECT_THAT(left("leaf a { type string; } container t { anyxml b; } container a.b { }"),
                ElementsAre("/m:a.b xml json", "/m:a xml json", "/m:t/b xml json"));
    const std::string augment = "prefix z; import m { prefix m; } augment /m:t/m:l { leaf own { type string; } } }";
    m_augmenting = {"z"};
    workDirectory().writeFile("yang/z.yang", "module z { namespace \"http://example.com/z\"; " + augment);
    EXPECT_THAT(findings(CheckKind::SharedName, body),
                ElementsAre("/m:t/l/z:own: goes to m.T.L.own", "/m:t/l/own: gets what belongs to z:own"));
    EXPECT_THAT(left(body), IsEmpty());
    workDirectory().writeFile("yang/z.yang", "module z { namespace \"http://example.com/other\"; " + augment);
    EXPECT_THAT(left(body), ElementsAre("/m:t/l/z:own xml", "/m:t/l/own xml"));
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
        "enumeration { enum a; } } leaf j { type bits { bit a; } } "
        "leaf k { type leafref { path ../a; } } }";
    EXPECT_THAT(findings(CheckKind::EmptyText, body),
                ElementsAre("/m:t/a", "/m:t/c", "/m:t/e", "/m:t/g", "/m:t/h", "/m:t/k"));
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
