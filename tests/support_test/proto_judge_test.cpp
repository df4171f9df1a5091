#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include "support/proto_judge.h"

namespace
{

constexpr const char *kProto = "syntax = \"proto3\";\n"
                               "package pkg;\n"
                               "message Top {\n"
                               "  uint32 number = 1;\n"
                               "  repeated Entry list_entry = 2;\n"
                               "  message Entry { string name = 1; }\n"
                               "}\n";

class ProtoJudgeTest : public ::testing::Test
{
protected:
    ProtoJudgeTest() { m_judge.addFile("m.proto", kProto); }

    /** number 3, one entry named "a" */
    const std::string m_bytes{"\x08\x03\x12\x03\x0A\x01"
                              "a",
                              7};
    gpbtest::ProtoJudge m_judge;
};

TEST_F(ProtoJudgeTest, ReadsBytes)
{
    EXPECT_TRUE(m_judge.holds("pkg.Top", m_bytes, "list_entry { name: 'a' } number: 3"));
    EXPECT_EQ("{\"number\":3,\"list_entry\":[{\"name\":\"a\"}]}", m_judge.toJson("pkg.Top", m_bytes));
    EXPECT_NE(std::string::npos, m_judge.toText("pkg.Top", m_bytes).find("name"));
    EXPECT_EQ(m_bytes, m_judge.encode("pkg.Top", "number: 3 list_entry { name: 'a' }"));
}

TEST_F(ProtoJudgeTest, OtherContentDoesNotHold)
{
    EXPECT_FALSE(m_judge.holds("pkg.Top", m_bytes, "number: 3"));
    EXPECT_FALSE(m_judge.holds("pkg.Top", m_bytes, "list_entry { name: 'a' } number: 4"));
    EXPECT_FALSE(m_judge.holds("pkg.Top", m_bytes, "list_entry { name: 'a' } list_entry {} number: 3"));
    EXPECT_FALSE(m_judge.holds("pkg.Top", "", "number: 3"));
    EXPECT_TRUE(m_judge.holds("pkg.Top", "", ""));
}

TEST_F(ProtoJudgeTest, UnknownFieldsDoNotHold)
{
    EXPECT_FALSE(m_judge.holds("pkg.Top", m_bytes + "\x78\x01", "list_entry { name: 'a' } number: 3"));
}

TEST_F(ProtoJudgeTest, InvalidBytesAndNamesDoNotHold)
{
    EXPECT_FALSE(m_judge.holds("pkg.Top", m_bytes.substr(0, 6), "number: 3"));
    EXPECT_EQ("not valid bytes of pkg.Top", m_judge.toText("pkg.Top", m_bytes.substr(0, 6)));
    EXPECT_EQ("not valid bytes of pkg.Top", m_judge.toJson("pkg.Top", m_bytes.substr(0, 6)));
    EXPECT_FALSE(m_judge.holds("pkg.None", m_bytes, ""));
    EXPECT_EQ("no message type pkg.None", m_judge.toText("pkg.None", m_bytes));
    EXPECT_FALSE(m_judge.holds("pkg.Top", m_bytes, "no_such_field: 3"));
    EXPECT_EQ(nullptr, m_judge.findType("Top"));
    EXPECT_NE(nullptr, m_judge.findType("pkg.Top"));
}

TEST_F(ProtoJudgeTest, FaultyTextsFailTheTest)
{
    static gpbtest::ProtoJudge judge;
    EXPECT_NONFATAL_FAILURE(judge.addFile("bad.proto", "message {"), "bad.proto: 1:");
    EXPECT_NONFATAL_FAILURE(judge.addFile("open.proto", "syntax = 'proto3'; message A { B b = 1; }"), "open.proto: ");
    EXPECT_NONFATAL_FAILURE(judge.encode("None", ""), "no message type None");
}

} // namespace
