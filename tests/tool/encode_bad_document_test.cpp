/** Documents that cannot be read, or are not of the module: code, message, and nothing written. */
#include <gmock/gmock.h>

#include "tool_fixture.h"

namespace
{

using gpbtest::ProcessResult;
using ::testing::HasSubstr;
using ::testing::StartsWith;

class EncodeBadDocument : public gpbtest::ToolTest
{
protected:
    /** Encodes to out/doc.gpb and expects that nothing comes of it. */
    ProcessResult expectFailure(const std::string &document, int code) const
    {
        m_dir.makeDirectory("out");
        const ProcessResult result = encode({document, "-o", path("out/doc.gpb")});
        EXPECT_EQ(result.exitCode, code) << result.err;
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(list("out"), std::vector<std::string>{});
        EXPECT_THAT(result.err, HasSubstr("error: " + document));
        EXPECT_THAT(result.err, HasSubstr("\n  hint: "));
        return result;
    }

    ProcessResult expectRefused(const std::string &xml) const { return expectFailure(write("doc.xml", xml), 3); }
};

TEST_F(EncodeBadDocument, MissingFile)
{
    const ProcessResult result = expectFailure(path("none.xml"), 3);
    EXPECT_EQ(result.err, "error: " + path("none.xml") +
                              ": cannot be read: No such file or directory\n  hint: give a file that can be read\n");
}

TEST_F(EncodeBadDocument, Directory)
{
    const std::string directory = m_dir.makeDirectory("dir");
    const ProcessResult result = tool("json", {"--module", "m", directory});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_THAT(result.err, HasSubstr(directory + ": cannot be read: Is a directory\n"));
    EXPECT_THAT(expectFailure(directory, 3).err, HasSubstr(directory + ": no documents in this directory\n"));
}

TEST_F(EncodeBadDocument, FileThatFailsInTheMiddleOfReading)
{
    const ProcessResult result = expectFailure("/proc/self/mem", 3);
    EXPECT_THAT(result.err, HasSubstr("error: /proc/self/mem: cannot be read: "));
}

TEST_F(EncodeBadDocument, UrlsAreFileNames)
{
    expectFailure("http://localhost/doc.xml", 3);
}

TEST_F(EncodeBadDocument, TruncatedFileNamesTheLine)
{
    const ProcessResult result = expectRefused("<top>\n<name>a</name>\n<box>\n<name>b</na");
    EXPECT_THAT(result.err, HasSubstr(path("doc.xml") + ":4: no well-formed XML: "));
}

TEST_F(EncodeBadDocument, NoXml)
{
    EXPECT_THAT(expectRefused("just text").err, HasSubstr(":1: no well-formed XML: "));
    EXPECT_THAT(expectRefused("").err, HasSubstr("no well-formed XML: "));
    EXPECT_THAT(expectRefused(std::string("\x89PNG\r\n\x1a\n\0\0", 10)).err, HasSubstr("no well-formed XML: "));
    EXPECT_THAT(expectRefused("<!-- no element -->").err, HasSubstr("no well-formed XML: "));
    EXPECT_THAT(expectRefused("<a/><b/>").err, HasSubstr("no well-formed XML: "));
    EXPECT_THAT(expectRefused("<top><name>\xff\xfe</name></top>").err, HasSubstr("no well-formed XML: "));
}

TEST_F(EncodeBadDocument, ExpandingEntitiesAreStopped)
{
    std::string dtd = "<!ENTITY e0 \"" + std::string(60, 'a') + "\">";
    for (int i = 1; i <= 9; ++i)
    {
        dtd += "<!ENTITY e" + std::to_string(i) + " \"";
        for (int j = 0; j < 10; ++j)
        {
            dtd += "&e" + std::to_string(i - 1) + ";";
        }
        dtd += "\">";
    }
    EXPECT_THAT(expectRefused("<!DOCTYPE top [" + dtd + "]><top><name>&e9;</name></top>").err,
                HasSubstr("no well-formed XML: "));
    EXPECT_THAT(expectRefused("<!DOCTYPE top [<!ENTITY a '&b;'><!ENTITY b '&a;'>]><top><name>&a;</name></top>").err,
                HasSubstr("no well-formed XML: "));
}

TEST_F(EncodeBadDocument, ExternalEntitiesAndDtdsAreRefused)
{
    const std::string secret = write("secret.txt", "secret");
    const std::string refused = ": refers to an external DTD or entity, which is not read\n";
    for (const std::string &doctype :
         {"[<!ENTITY x SYSTEM '" + secret + "'>]", "[<!ENTITY x PUBLIC 'p' '" + secret + "'>]",
          "[<!ENTITY % x SYSTEM '" + secret + "'> %x;]", "SYSTEM '" + secret + "'", "PUBLIC 'p' '" + secret + "'"})
    {
        const ProcessResult result = expectRefused("<!DOCTYPE top " + doctype + "><top><name>a</name></top>");
        EXPECT_THAT(result.err, HasSubstr(refused)) << doctype;
    }
    const ProcessResult used =
        expectRefused("<!DOCTYPE top [<!ENTITY x SYSTEM '" + secret + "'>]><top><name>&x;</name></top>");
    EXPECT_THAT(used.err, HasSubstr(refused));
    EXPECT_THAT(used.err, ::testing::Not(HasSubstr("secret\"")));
}

TEST_F(EncodeBadDocument, ElementsNestedWithoutEnd)
{
    std::string xml;
    for (int i = 0; i < 100000; ++i)
    {
        xml += "<top>";
    }
    EXPECT_THAT(expectRefused(xml).err, HasSubstr("no well-formed XML: "));
}

TEST_F(EncodeBadDocument, DocumentOfAnotherModule)
{
    const std::string document = write("doc.xml", "<other><name>a</name></other>");
    EXPECT_EQ(expectFailure(document, 4).err, "library[0]: [GpbXmlCompiler][Encode]Fail to iterate xml doc, return 3.\n"
                                              "library[0]: [14GpbXmlCompiler]Fail to encode, error code is 3.\n"
                                              "error: " +
                                                  document +
                                                  ": root element <other> has no message in module m (code 3)\n"
                                                  "  hint: is this the right module? Its messages: m.Top\n");
}

TEST_F(EncodeBadDocument, OverlongRootName)
{
    const std::string name(128, 'r');
    const std::string document = write("doc.xml", "<" + name + "><name>a</name></" + name + ">");
    EXPECT_EQ(expectFailure(document, 4).err,
              "library[0]: [GpbXmlCompiler][Encode]Fail to iterate xml doc, return 11.\n"
              "library[0]: [14GpbXmlCompiler]Fail to encode, error code is 11.\n"
              "error: " +
                  document +
                  ": the name of the root element has more than 127 characters (code 11)\n"
                  "  hint: no module has such a container; is it the right document?\n");
}

TEST_F(EncodeBadDocument, RootOfTheLongestName)
{
    const std::string name(127, 'r');
    const std::string document = write("doc.xml", "<" + name + "><name>a</name></" + name + ">");
    EXPECT_THAT(expectFailure(document, 4).err, HasSubstr(" has no message in module m (code 3)\n"));
}

TEST_F(EncodeBadDocument, RootWithoutElements)
{
    for (const char *xml : {"<top/>", "<top>text</top>"})
    {
        const std::string document = write("doc.xml", xml);
        EXPECT_THAT(expectFailure(document, 4).err,
                    HasSubstr("error: " + document +
                              ": nothing encoded: [GpbXmlCompiler][GetGpbBuffer]top message is null.\n"
                              "  hint: does <top> hold elements, and every one that the module requires?\n"));
    }
}

TEST_F(EncodeBadDocument, RequiredLeafIsMissing)
{
    writeModule("m", "syntax = 'proto2'; package m; message Top { required string id = 1; optional string name = 2; }");
    const std::string document = write("doc.xml", "<top><name>a</name></top>");
    EXPECT_EQ(expectFailure(document, 4).err,
              "library[0]: [GpbXmlCompiler][GetGpbBuffer]top message is not initialized.\n"
              "error: " +
                  document +
                  ": nothing encoded: [GpbXmlCompiler][GetGpbBuffer]top message is not initialized.\n"
                  "  hint: does <top> hold elements, and every one that the module requires?\n");
    const ProcessResult whole = encodeText("<top><id>i</id></top>");
    EXPECT_EQ(whole.exitCode, 0);
    EXPECT_EQ(whole.out, "id: \"i\"\n");
}

TEST_F(EncodeBadDocument, CaseThatCannotBeReached)
{
    // The case's message is nested in one that no field holds, so that there is no way from the top to its own case.
    writeModule("m", "syntax = 'proto3'; package m; message Deep { bool b = 1; }"
                     "message Top { message Wrap { message Mid { oneof d { Deep deep = 1; } } }"
                     "             string name = 1; oneof c { Wrap.Mid mid = 2; } }");
    const std::string empty = write("doc.xml", "<top><name>a</name><b/></top>");
    EXPECT_EQ(expectFailure(empty, 4).err,
              "library[0]: Gpb compiler empty leaf choice case node [b] fail.\n"
              "library[0]: [GpbXmlCompiler][Encode]Fail to iterate xml doc, return 1.\n"
              "library[0]: [14GpbXmlCompiler]Fail to encode, error code is 1.\n"
              "error: " +
                  empty +
                  ": not encoded (code 1)\n"
                  "  hint: the library's messages above say why; -v shows what it skipped before\n");
    const std::string leaf = write("doc.xml", "<top><name>a</name>\n<b>true</b></top>");
    EXPECT_THAT(expectFailure(leaf, 6).err,
                HasSubstr("\n  " + leaf + ":2: <b>: its case cannot be reached from message m.Top\n"));
}

} // namespace
