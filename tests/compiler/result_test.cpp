/** Results: the bytes, their life, the debug text, and a second document. */
#include "compiler/compiler_fixture.h"

namespace
{

class ResultTest : public gpbtest::CompilerFixture
{
protected:
    void SetUp() override
    {
        CompilerFixture::SetUp();
        addDataModule("walk");
        open("walk");
    }

    unsigned int encodeOnly(const std::string &xml)
    {
        const gpbtest::XmlDocument document(xml);
        return compiler().Encode(document.get());
    }

    std::string debugLine()
    {
        return ("3: [GpbXmlCompiler][Encode]Success encode, message structure is:\n" +
                compiler().GetEncodeDebugString() + ".")
            .substr(0, 3 + 1023);
    }
};

TEST_F(ResultTest, NothingEncodedYet)
{
    EXPECT_EQ(nullptr, compiler().pstMessage);
    EXPECT_EQ("There is no valid encode message.", compiler().GetEncodeDebugString());
    unsigned int length = 7;
    EXPECT_EQ(nullptr, compiler().GetGpbBuffer(&length));
    EXPECT_EQ(0u, length);
    length = 7;
    EXPECT_EQ(nullptr, compiler().GetResult(&length));
    EXPECT_EQ(0u, length);
    EXPECT_LOG(log(), "0: [GpbXmlCompiler][GetGpbBuffer]top message is null.",
               "0: [GpbXmlCompiler][GetGpbBuffer]top message is null.");
}

TEST_F(ResultTest, EncodeKeepsTheMessageAndGetResultSerializesIt)
{
    EXPECT_EQ(0u, encodeOnly("<top><name>n</name></top>"));
    EXPECT_LOG(log(), debugLine());
    ASSERT_NE(nullptr, compiler().pstMessage);
    EXPECT_EQ(compiler().pstMessage->DebugString(), compiler().GetEncodeDebugString());
    unsigned int length = 0;
    const char *const bytes = compiler().GetResult(&length);
    EXPECT_EQ(3u, length);
    EXPECT_EQ(std::string("\x0a\x01n"), std::string(bytes, length));
    EXPECT_LOG(log(), "1: [GpbXmlCompiler][GetGpbBuffer]Success to serialize, length is 3.");
    EXPECT_EQ(compiler().strGpbBuffer.data(), bytes);
    EXPECT_EQ(bytes, compiler().GetGpbBuffer(&length)); // the same again
    EXPECT_EQ(3u, length);
}

TEST_F(ResultTest, EmptyMessageHasAResultOfNoBytes)
{
    EXPECT_EQ(0u, encodeOnly("<top> <!-- --></top>"));
    unsigned int length = 7;
    EXPECT_NE(nullptr, compiler().GetResult(&length));
    EXPECT_EQ(0u, length);
}

TEST_F(ResultTest, LongDumpIsCut)
{
    EXPECT_EQ(0u, encodeOnly("<top><name>" + std::string(5000, 'x') + "</name></top>"));
    EXPECT_LOG(log(), debugLine());
    EXPECT_EQ(3u + 1023, debugLine().size());
}

TEST_F(ResultTest, ClosedLevelsChangeNothing)
{
    closeCompiler();
    recreateContext({0, 1, 2, 3});
    ASSERT_EQ(0u, GPBLIB_ProtobufLoad(context(), "walk", 0));
    open("walk");
    const gpbtest::Encoded good = encode("<top><name>n</name><nowhere>1</nowhere></top>");
    EXPECT_EQ(0u, good.error);
    EXPECT_EQ("\x0a\x01n", good.bytes);
    EXPECT_EQ(3u, encode("<nowhere><x>1</x></nowhere>").error);
    EXPECT_LOG(log(), );
}

TEST_F(ResultTest, MissingRequiredFieldGivesNoBytes)
{
    addModule("need", "syntax='proto2'; package need; message Top { message Sub { required string r = 1; } required "
                      "string must = 1; optional Sub sub = 2; repeated Sub list = 3; }");
    open("need");
    const auto expectMissing = [&](const std::string &content)
    {
        const gpbtest::Encoded result = encode("<top>" + content + "</top>");
        EXPECT_EQ(0u, result.error);
        EXPECT_TRUE(result.isNull);
        EXPECT_LOG(log(), debugLine(), "0: [GpbXmlCompiler][GetGpbBuffer]top message is not initialized.");
    };
    expectMissing("<sub><r>1</r></sub>");
    expectMissing("<must>m</must><sub>\n</sub>");
    expectMissing("<must>m</must><list><r>1</r></list><list>\n</list>");
    expectEncodes("<top><must>m</must><sub><r>1</r></sub></top>", "need.Top", "must: 'm' sub { r: '1' }");
}

TEST_F(ResultTest, NullDocumentGivesOne)
{
    unsigned int length = 7;
    unsigned int error = 0;
    EXPECT_EQ(nullptr, GpbXmlCompiler_Encode(&compiler(), nullptr, &length, &error));
    EXPECT_EQ(1u, error);
    EXPECT_EQ(7u, length);
    EXPECT_LOG(log(), "0: [N7gpbtest12OpenCompilerE]Fail to encode, error code is 1.");
    EXPECT_EQ(1u, compiler().Encode(nullptr));
    EXPECT_LOG(log(), );
}

TEST_F(ResultTest, DocumentWithoutRootGivesTwo)
{
    const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> document(xmlNewDoc(BAD_CAST "1.0"), xmlFreeDoc);
    unsigned int length = 7;
    unsigned int error = 0;
    EXPECT_EQ(nullptr, GpbXmlCompiler_Encode(&compiler(), document.get(), &length, &error));
    EXPECT_EQ(2u, error);
    EXPECT_EQ(7u, length);
    EXPECT_LOG(log(), "0: [N7gpbtest12OpenCompilerE]Fail to encode, error code is 2.");
    xmlAddChild(reinterpret_cast<xmlNode *>(document.get()), xmlNewDocComment(document.get(), BAD_CAST "no root"));
    EXPECT_EQ(2u, compiler().Encode(document.get()));
    EXPECT_LOG(log(), );
}

// ---- a second document ----

TEST_F(ResultTest, SecondDocumentReplacesTheFirst)
{
    expectEncodes("<top><name>n</name><count>1</count></top>", "walk.Top", "name: 'n' count: 1");
    expectEncodes("<top><count>2</count></top>", "walk.Top", "count: 2");
    // A message that would still be held is reported by the leak check at the end of the program.
}

TEST_F(ResultTest, FailedEncodeKeepsTheFirst)
{
    EXPECT_EQ(0u, encodeOnly("<top><name>n</name></top>"));
    const google::protobuf::Message *const first = compiler().pstMessage;
    EXPECT_EQ(3u, encodeOnly("<nowhere><x>1</x></nowhere>"));
    EXPECT_EQ(first, compiler().pstMessage);
    EXPECT_EQ(1u, compiler().Encode(nullptr));
    compiler().ucStopOnError = 1;
    EXPECT_EQ(6u, encodeOnly("<top><nowhere>1</nowhere></top>"));
    EXPECT_EQ(first, compiler().pstMessage);
    unsigned int length = 0;
    const char *const bytes = compiler().GetResult(&length);
    EXPECT_TRUE(judge().holds("walk.Top", std::string(bytes, length), "name: 'n'"));
}

TEST_F(ResultTest, DocumentWithoutMessageReplacesTheFirstByNone)
{
    EXPECT_EQ(0u, encodeOnly("<top><name>n</name></top>"));
    EXPECT_EQ(0u, encodeOnly("<top/>"));
    EXPECT_EQ(nullptr, compiler().pstMessage);
    EXPECT_EQ("There is no valid encode message.", compiler().GetEncodeDebugString());
    EXPECT_EQ(0u, encodeOnly("<top><name>m</name></top>"));
    EXPECT_NE(nullptr, compiler().pstMessage);
}

TEST_F(ResultTest, BytesStayUntilTheNextResult)
{
    EXPECT_EQ(0u, encodeOnly("<top><name>first</name></top>"));
    unsigned int length = 0;
    const char *const bytes = compiler().GetResult(&length);
    const std::string copy(bytes, length);
    EXPECT_EQ(0u, encodeOnly("<top><name>other</name></top>"));
    EXPECT_EQ(copy, std::string(bytes, length));
}

TEST_F(ResultTest, NullLengthGivesNull)
{
    EXPECT_EQ(0u, encodeOnly("<top><name>n</name></top>"));
    log().clear();
    EXPECT_EQ(nullptr, compiler().GetGpbBuffer(nullptr));
    EXPECT_EQ(nullptr, compiler().GetResult(nullptr));
    EXPECT_LOG(log(), );
}

TEST_F(ResultTest, CompilersOfOneModuleAreIndependent)
{
    gpbtest::OpenCompiler other(compiler().pstFileDesc, compiler().pstImporter, context());
    EXPECT_EQ(0u, encodeOnly("<top><name>n</name></top>"));
    EXPECT_EQ(nullptr, other.pstMessage);
    EXPECT_NE(compiler().pstMsgFactory, other.pstMsgFactory);
}

} // namespace
