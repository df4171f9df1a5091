#include <gmock/gmock.h>

#include "support/proto_judge.h"
#include "tool_fixture.h"

namespace
{

using gpbtest::ProcessResult;

constexpr const char *kDocument = "<top xmlns='urn:m'>\n"
                                  "  <name>a &amp; b</name>\n"
                                  "  <!-- two boxes -->\n"
                                  "  <box><name>one</name><size>-1</size></box>\n"
                                  "  <box><name>two</name></box>\n"
                                  "  <flag/>\n"
                                  "  <presence>\n  </presence>\n"
                                  "</top>\n";
constexpr const char *kText = "name: \"a & b\"\n"
                              "flag: true\n"
                              "box {\n  name: \"one\"\n  size: -1\n}\n"
                              "box {\n  name: \"two\"\n}\n"
                              "presence {\n}\n";

class Encode : public gpbtest::ToolTest
{
protected:
    ::testing::AssertionResult holds(const std::string &bytes, const std::string &text)
    {
        gpbtest::ProtoJudge judge;
        judge.addFile("m.proto", gpbtest::readFile(path("reslink/protobuf/m.proto")));
        return judge.holds("m.Top", bytes, text);
    }
};

TEST_F(Encode, BytesGoToTheFile)
{
    const ProcessResult result = encode({write("doc.xml", kDocument), "-o", path("out.gpb")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "");
    EXPECT_TRUE(holds(gpbtest::readFile(path("out.gpb")), kText));
}

TEST_F(Encode, BytesGoToStandardOutput)
{
    const std::string document = write("doc.xml", kDocument);
    const ProcessResult plain = encode({document});
    EXPECT_EQ(plain.exitCode, 0);
    EXPECT_TRUE(holds(plain.out, kText));
    EXPECT_EQ(encode({document, "-o", "-"}).out, plain.out);
}

TEST_F(Encode, TextForm)
{
    const ProcessResult result = encodeText(kDocument);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, kText);
    EXPECT_EQ(result.err, "");
}

TEST_F(Encode, DocumentFromStandardInput)
{
    gpbtest::ProcessSetup process = setup("encode", {"--module", "m", "--text", "-"});
    process.input = kDocument;
    const ProcessResult result = gpbtest::runProcess(process);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, kText);
}

TEST_F(Encode, EntitiesOfTheDocumentAndCdataAreText)
{
    const ProcessResult result = encodeText("<!DOCTYPE top [<!ENTITY who 'wor&#108;d'>]>"
                                            "<top><name>hello &who;<![CDATA[ <&]]></name></top>");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "name: \"hello world <&\"\n");
}

TEST_F(Encode, IgnoredElementsAreNotMissed)
{
    const ProcessResult result =
        encodeText("<top><name>a</name><zz __tlmtIgnored='1'><y>1</y></zz><box __tlmtIgnored='1x'>\n</box></top>");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "name: \"a\"\n");
    EXPECT_EQ(result.err, "");
}

TEST_F(Encode, WorkPathComesFromTheEnvironmentToo)
{
    gpbtest::ProcessSetup process;
    process.program = GPBTOOL_PROGRAM;
    process.arguments = {"encode", "--module", "m", "--text", write("doc.xml", "<top><name>a</name></top>")};
    process.environment = {{"GPB_WORK_PATH", m_dir.path()}};
    const ProcessResult result = gpbtest::runProcess(process);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "name: \"a\"\n");
}

TEST_F(Encode, InstallPathsComeBeforePatchDirBeforeReslink)
{
    const auto module = [](const std::string &field)
    { return "syntax = 'proto3'; package m; message Top { string name = 1; string " + field + " = 2; }"; };
    const std::string document = write("doc.xml", "<top><name>a</name></top>");
    writeModule("m", module("reslink"));
    write("patch/m.proto", "syntax = 'proto3'; package m; message Top { string other = 1; }");
    write("first/m.proto", module("first"));
    write("second/m.proto", module("second"));
    const std::string first = write("first.xml", "<top><first>a</first></top>");
    const std::string other = write("other.xml", "<top><other>a</other></top>");

    // Paths are taken with and without the "/" at their end.
    EXPECT_EQ(encode({document, "--text"}).exitCode, 0);
    EXPECT_EQ(encode({other, "--text", "--patch-dir", "patch"}).exitCode, 0);
    EXPECT_EQ(encode({first, "--text", "--patch-dir", "patch/", "--install-path", path("first"), "--install-path",
                      path("second/")})
                  .exitCode,
              0);
    EXPECT_EQ(encode({first, "--text", "--install-path", path("second/"), "--install-path", path("first/")}).exitCode,
              6);
}

} // namespace
