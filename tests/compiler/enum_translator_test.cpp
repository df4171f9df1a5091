/** Leaves of enumerations and of bits, which are lists of values. */
#include "compiler/compiler_fixture.h"

namespace
{

namespace pb = google::protobuf;

class EnumTranslatorTest : public gpbtest::CompilerFixture
{
protected:
    void SetUp() override
    {
        CompilerFixture::SetUp();
        addDataModule("enums");
        open("enums");
        m_layer.pstDescriptor = type("enums.Enums");
        m_layer.pstMessage = newMessage("enums.Enums");
    }

    unsigned int store(const std::string &field, const std::string &text)
    {
        m_layer.pstMessage->Clear();
        return GpbCompiler_StrTrans_ToEnum(m_layer, m_layer.pstDescriptor->FindFieldByName(field), text.c_str());
    }

    void expectStored(const std::string &textForm)
    {
        EXPECT_TRUE(judge().holds("enums.Enums", m_layer.pstMessage->SerializeAsString(), textForm));
    }

    GpbCompilerStackLayer m_layer;
};

TEST_F(EnumTranslatorTest, ListAddsEachValueAndTheLastOneWinsInASingularField)
{
    EXPECT_EQ(0u, store("states", "a b"));
    expectStored("states: [Status_A, Status_B]");
    EXPECT_EQ(0u, store("status", "a b"));
    expectStored("status: Status_B");
    EXPECT_EQ(0u, store("chosen", "b a"));
    expectStored("chosen: Status_A");
}

TEST_F(EnumTranslatorTest, NamesAreConverted)
{
    EXPECT_EQ(0u, store("states", "up-2 10g a.b/c-d A"));
    expectStored("states: [Status_UPX_2, Status_X_10G, Status_AX_BX_CX_D, Status_A]");
    EXPECT_EQ(0u, store("states", "..-"));
    expectStored("states: [Status_X_X_X_]");
}

TEST_F(EnumTranslatorTest, EmptyTextSetsNothing)
{
    EXPECT_EQ(0u, store("states", ""));
    expectStored("");
    EXPECT_EQ(0u, store("chosen", ""));
    expectStored("");
}

TEST_F(EnumTranslatorTest, UnknownValueGivesNineAndKeepsWhatWasStoredBefore)
{
    EXPECT_EQ(9u, store("status", "nowhere"));
    expectStored("");
    EXPECT_EQ(9u, store("states", "a nowhere b"));
    expectStored("states: [Status_A]");
    EXPECT_EQ(9u, store("status", "b\t"));
    expectStored("");
}

TEST_F(EnumTranslatorTest, OneBlankAtTheEndIsConsumed)
{
    EXPECT_EQ(0u, store("states", "a b "));
    expectStored("states: [Status_A, Status_B]");
}

TEST_F(EnumTranslatorTest, BlanksInARowGiveAnEmptyToken)
{
    EXPECT_EQ(9u, store("states", "a  b"));
    expectStored("states: [Status_A]");
    EXPECT_EQ(9u, store("states", " a"));
    expectStored("");
    EXPECT_EQ(9u, store("states", " "));
    EXPECT_EQ(9u, store("states", "a  "));
    expectStored("states: [Status_A]");
}

using EnumTranslatorOddities = EnumTranslatorTest;

// An empty token is the type prefix alone, and nothing forbids a value of that name.
TEST_F(EnumTranslatorOddities, EmptyTokenFindsAValueNamedAsThePrefix)
{
    EXPECT_EQ(0u, store("blanks", "set  set"));
    expectStored("blanks: [Blank_SET, Blank_, Blank_SET]");
}

// The name is searched among all enumerations of the message.
TEST_F(EnumTranslatorOddities, ValueOfASiblingEnumIsStoredByItsNumber)
{
    EXPECT_EQ(0u, store("status", "borrowed"));
    expectStored("status: 77");
    EXPECT_EQ(0u, store("states", "a borrowed"));
    expectStored("states: [Status_A, 77]");
}

TEST_F(EnumTranslatorTest, EnumOfAnotherPlaceGivesNine)
{
    EXPECT_EQ(9u, store("outside", "far"));
    EXPECT_EQ(9u, store("deep", "one"));
    expectStored("");

    GpbCompilerStackLayer inner;
    inner.pstDescriptor = type("enums.Enums.Inner");
    inner.pstMessage = newMessage("enums.Enums.Inner");
    EXPECT_EQ(0u, GpbCompiler_StrTrans_ToEnum(inner, inner.pstDescriptor->FindFieldByName("deep"), "one"));
    EXPECT_EQ(9u, GpbCompiler_StrTrans_ToEnum(inner, inner.pstDescriptor->FindFieldByName("upper"), "a"));
    EXPECT_TRUE(judge().holds("enums.Enums.Inner", inner.pstMessage->SerializeAsString(), "deep: Deep_ONE"));
}

TEST_F(EnumTranslatorTest, LayerWithoutTypeFindsNoValue)
{
    m_layer.pstDescriptor = nullptr;
    const pb::FieldDescriptor *const field = type("enums.Enums")->FindFieldByName("status");
    EXPECT_EQ(9u, GpbCompiler_StrTrans_ToEnum(m_layer, field, "a"));
}

TEST_F(EnumTranslatorTest, TokenOf127CharactersFits)
{
    EXPECT_EQ(9u, store("states", std::string(127, 'a')));
    EXPECT_EQ(9u, store("states", std::string(127, 'a') + " a"));
    EXPECT_EQ("", takeAssertText());
}

TEST_F(EnumTranslatorTest, TokenOf128CharactersRaisesAnAssertionAndIsEmpty)
{
    EXPECT_EQ(9u, store("states", std::string(128, 'a')));
    EXPECT_EQ("gpb_reflection.cpp:170\n", takeAssertText());
    EXPECT_EQ(9u, store("states", std::string(128, 'a') + " a"));
    EXPECT_EQ("gpb_reflection.cpp:165\n", takeAssertText());
    EXPECT_EQ(9u, store("states", "a " + std::string(100000, 'b')));
    EXPECT_EQ("gpb_reflection.cpp:170\n", takeAssertText());
    expectStored("states: [Status_A]");
    // Where the empty token is a value, the list goes on.
    EXPECT_EQ(0u, store("blanks", std::string(128, 'a') + " set " + std::string(500, 'b')));
    EXPECT_EQ("gpb_reflection.cpp:165\ngpb_reflection.cpp:170\n", takeAssertText());
    expectStored("blanks: [Blank_, Blank_SET, Blank_]");
}

TEST_F(EnumTranslatorTest, CopyThatFailsIsReportedLikewise)
{
    GpbHost_FailCall(GPB_HOST_STRNCPY, 1);
    EXPECT_EQ(0u, store("blanks", "set"));
    EXPECT_EQ("gpb_reflection.cpp:170\n", takeAssertText());
    expectStored("blanks: [Blank_]");
}

TEST_F(EnumTranslatorTest, PrefixThatCannotBeWrittenGivesOne)
{
    GpbHost_FailCall(GPB_HOST_SNPRINTF_TRUNCATED, 2);
    EXPECT_EQ(1u, store("states", "a b"));
    EXPECT_EQ("gpb_xmlcompilerbase.cpp:80\n", takeAssertText());
    expectStored("states: [Status_A]");
}

TEST_F(EnumTranslatorTest, HostileTextsStayInsideTheBuffers)
{
    for (const char c : std::string("!\"#\\$%&,-()*+/:<>=.?[]{}|^~`@';"))
    {
        EXPECT_EQ(9u, store("states", std::string(127, c)));
        EXPECT_EQ(9u, store("states", "9" + std::string(126, c)));
        EXPECT_EQ(9u, store("states", std::string(60, 'a') + std::string(67, c)));
    }
    EXPECT_EQ(9u, store("states", std::string(127, '\xff')));
    expectStored("");
}

// The longest type name together with the longest token: the prefix alone is cut to the documented 127 characters.
TEST_F(EnumTranslatorTest, LongTypeNameWithHostileText)
{
    const std::string longName = "L" + std::string(199, 'o');
    addModule("longname", "syntax = 'proto3'; package longname; message Top { enum " + longName + " { " + longName +
                              "_ZERO = 0; " + longName.substr(0, 127) + " = 1; } repeated " + longName + " v = 1; }");
    m_layer.pstDescriptor = type("longname.Top");
    m_layer.pstMessage = newMessage("longname.Top");
    EXPECT_EQ(9u, store("v", "9" + std::string(126, '-')));
    EXPECT_EQ(0u, store("v", "zero")); // nothing of the value fits
    EXPECT_TRUE(judge().holds("longname.Top", m_layer.pstMessage->SerializeAsString(), "v: 1"));
}

// In a closed enumeration a foreign number is an unknown field, which the bytes show as well.
TEST_F(EnumTranslatorOddities, SiblingValueInAClosedEnumIsAnUnknownField)
{
    addModule("closed", "syntax = 'proto2'; package closed; message Top { enum E { E_A = 1; } enum F { E_B = 2; } "
                        "optional E e = 1; repeated E r = 2; }");
    m_layer.pstDescriptor = type("closed.Top");
    m_layer.pstMessage = newMessage("closed.Top");
    EXPECT_EQ(0u, store("e", "b"));
    EXPECT_EQ(std::string("\x08\x02", 2), m_layer.pstMessage->SerializeAsString());
    EXPECT_EQ(0u, store("r", "a b"));
    EXPECT_EQ(std::string("\x10\x01\x10\x02", 4), m_layer.pstMessage->SerializeAsString());
}

} // namespace
