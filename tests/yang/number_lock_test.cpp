/** Numbers stay what they are from one revision of a module to the next. */
#include <gmock/gmock.h>

#include "proto_fixture.h"

namespace
{

using gpbtest::errorOf;
using ::testing::HasSubstr;

class NumberLocks : public gpbtest::ProtoTest
{
protected:
    std::string m_lock;
};

std::string leaf(const std::string &name, const std::string &type = "string")
{
    return "leaf " + name + " { type " + type + "; } ";
}

TEST_F(NumberLocks, TheLockListsMessagesAndEnumerations)
{
    locked("container t { choice c { case d { " + leaf("x") +
               " } } list l { key k; leaf k { type enumeration { enum a-b { value 3; } } } } }",
           m_lock);
    EXPECT_EQ(m_lock, "gpb-numbers 1\n"
                      "module m\n"
                      "\n"
                      "message /m:t\n"
                      "  1 c/d message c_d\n"
                      "  2 l message[] l\n"
                      "\n"
                      "message /m:t/c/d\n"
                      "  1 x string x\n"
                      "\n"
                      "message /m:t/l\n"
                      "  1 k enum k\n"
                      "\n"
                      "enum /m:t/l/k\n"
                      "  3 AX_B\n");
}

TEST_F(NumberLocks, NewNodesGetNewNumbersWhereverTheyStand)
{
    locked("container t { " + leaf("a") + leaf("b") + "}", m_lock);
    EXPECT_EQ(locked("container t { " + leaf("first") + leaf("b") + leaf("a") + leaf("last") + "}", m_lock),
              "message T {\n"
              "    optional string first = 3;\n"
              "    optional string b = 2;\n"
              "    optional string a = 1;\n"
              "    optional string last = 4;\n"
              "}\n");
}

TEST_F(NumberLocks, RemovedNodesAreReservedAndGetTheirNumberBack)
{
    const std::string both = "container t { " + leaf("a") + leaf("b") + "}";
    locked(both, m_lock);
    EXPECT_EQ(locked("container t { " + leaf("c") + leaf("b") + "}", m_lock), "message T {\n"
                                                                              "    reserved 1;\n"
                                                                              "    reserved \"a\";\n"
                                                                              "    optional string c = 3;\n"
                                                                              "    optional string b = 2;\n"
                                                                              "}\n");
    EXPECT_EQ(locked("container t { }", m_lock), "message T {\n"
                                                 "    reserved 1, 2, 3;\n"
                                                 "    reserved \"a\", \"b\", \"c\";\n"
                                                 "}\n");
    EXPECT_EQ(locked(both, m_lock), "message T {\n"
                                    "    reserved 3;\n"
                                    "    reserved \"c\";\n"
                                    "    optional string a = 1;\n"
                                    "    optional string b = 2;\n"
                                    "}\n");
}

TEST_F(NumberLocks, AnotherTypeIsAnotherField)
{
    locked("container t { " + leaf("a") + "}", m_lock);
    EXPECT_EQ(locked("container t { " + leaf("a", "uint8") + "}", m_lock),
              "message T {\n    reserved 1;\n    optional uint32 a = 2;\n}\n");
    EXPECT_EQ(locked("container t { leaf-list a { type uint8; } }", m_lock),
              "message T {\n    reserved 1, 2;\n    repeated uint32 a = 3;\n}\n");
    EXPECT_EQ(locked("container t { " + leaf("a", "uint16") + "}", m_lock),
              "message T {\n    reserved 1, 3;\n    optional uint32 a = 2;\n}\n");
}

TEST_F(NumberLocks, ANodeKeepsItsNumberWhenItsNameHasToMakeWay)
{
    locked("container t { " + leaf("a_b") + "}", m_lock);
    EXPECT_EQ(locked("container t { " + leaf("a-b") + leaf("a_b") + "}", m_lock),
              "message T {\n"
              "    optional string a_b = 2;\n"
              "    optional string a_b2 = 1 [json_name = \"a_b\"];\n"
              "}\n");
}

TEST_F(NumberLocks, SameNamedNodesOfTwoModulesAreTwo)
{
    writeModule("z", "import m { prefix m; } augment /m:t { leaf a { type string; } }");
    m_augmenting = {"z"};
    const std::string text = locked("container t { " + leaf("a") + "}", m_lock);
    EXPECT_THAT(m_lock, HasSubstr("  1 a string a\n  2 z:a string a2\n"));
    EXPECT_EQ(locked("container t { " + leaf("a") + "}", m_lock), text);
}

TEST_F(NumberLocks, EnumerationValuesStayAndAreReserved)
{
    const auto values = [](const std::string &list)
    { return "container t { leaf s { type enumeration { " + list + "} } }"; };
    locked(values("enum a; enum b; enum c;"), m_lock);
    EXPECT_THAT(locked(values("enum c; enum new; enum b;"), m_lock), HasSubstr("        S_UNSPECIFIED = 0;\n"
                                                                               "        S_C = 2;\n"
                                                                               "        S_NEW = 3;\n"
                                                                               "        S_B = 1;\n"
                                                                               "        reserved \"S_A\";\n"
                                                                               "    }\n"));
    EXPECT_THAT(locked(values("enum a; enum far { value 70; }"), m_lock),
                HasSubstr("        S_A = 0;\n"
                          "        S_FAR = 70;\n"
                          "        reserved 1, 2, 3;\n"
                          "        reserved \"S_B\", \"S_C\", \"S_NEW\";\n"));
}

TEST_F(NumberLocks, NumbersThatProtobufKeepsArePassedOver)
{
    m_lock = "gpb-numbers 1\nmodule m\nmessage /m:t\n 18999 a string a\n";
    EXPECT_EQ(locked("container t { " + leaf("a") + leaf("b") + "}", m_lock),
              "message T {\n    optional string a = 18999;\n    optional string b = 20000;\n}\n");
}

TEST_F(NumberLocks, NumbersMayRunOut)
{
    m_lock = "gpb-numbers 1\nmodule m\nmessage /m:t\n 536870911 a string a\n";
    const auto [fault, text] = errorOf([&] { locked("container t { " + leaf("a") + leaf("b") + "}", m_lock); });
    EXPECT_EQ(fault, gpbyang::Fault::Lock);
    EXPECT_EQ(text, "/m:t: no field numbers are left");
    m_lock = "gpb-numbers 1\nmodule m\nenum /m:t/s\n 2147483647 A\n 0 B\n";
    const auto [again, value] =
        errorOf([&] { locked("container t { leaf s { type enumeration { enum c; } } }", m_lock); });
    EXPECT_EQ(again, gpbyang::Fault::Lock);
    EXPECT_EQ(value, "/m:t/s: no numbers are left for S_C");
}

TEST_F(NumberLocks, ReadingAndWritingKeepsTheText)
{
    locked("container t { leaf s { type enumeration { enum a; } } container u { " + leaf("x") + "} } notification n;",
           m_lock);
    EXPECT_EQ(gpbyang::NumberLock::Read(m_lock, "m.lock", "m").Text(), m_lock);
}

} // namespace
