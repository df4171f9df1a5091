/** Documents that ask for the same refused thing again and again: the cost must grow with the document, not faster. */
#include <chrono>

#include <cjson/cJSON.h>

#include "gpb_templatelib/gpb_compiler_c.h"
#include "support/library_fixture.h"
#include "support/xml_document.h"

namespace
{

constexpr const char *kModule = "cost";
constexpr const char *kProto = R"(
syntax = "proto2";
package cost;
message Top {
  enum E { E_A = 0; }
  oneof choice {
    Big big = 1;
    E e = 2;
    int32 n = 3;
    group G = 4 { optional int32 x = 1; }
  }
  message Big { repeated Item item = 1; message Item { optional int32 n = 1; } }
}
)";
constexpr int kCount = 10000;

// Searching the big case at every refusal takes more than a minute, and a hundredth of a second when it is not.
constexpr std::chrono::seconds kEnough(20);

std::string repeated(const std::string &text)
{
    std::string all;
    for (int i = 0; i < kCount; ++i)
    {
        all += text;
    }
    return all;
}

class Cost : public gpbtest::LibraryFixture
{
protected:
    void SetUp() override
    {
        LibraryFixture::SetUp();
        recreateContext({GPB_LOG_ERROR, GPB_LOG_PROGRESS, GPB_LOG_SKIP, GPB_LOG_DUMP});
        writeProto(kModule, kProto);
        ASSERT_EQ(0u, GPBLIB_ProtobufLoad(context(), kModule, 0));
    }

    /** The bytes of the top message that holds nothing but the big case, which no refused leaf may have changed. */
    std::string bigCase() const { return encodeXml("<top>" + m_bigXml + "</top>"); }

    std::string encodeXml(const std::string &text) const
    {
        const gpbtest::XmlDocument document(text);
        GpbXmlCompilerBase *const compiler = GpbXmlCompiler_CreateCompiler(context(), kModule);
        unsigned int length = 0;
        unsigned int code = 0;
        const char *const bytes = GpbXmlCompiler_Encode(compiler, document.get(), &length, &code);
        std::string result(bytes == nullptr ? "no result" : std::string(bytes, length));
        GpbXmlCompiler_Destory(compiler);
        return result;
    }

    std::string encodeJson(const std::string &text) const
    {
        cJSON *const document = cJSON_Parse(text.c_str());
        EXPECT_NE(nullptr, document);
        GpbXmlCompilerBase *const compiler = GpbJsonCompiler_CreateJsonCompiler(context(), kModule);
        unsigned int length = 0;
        const char *const bytes = GpbXmlCompiler_EncodeJson(compiler, document->child, document->child, &length);
        std::string result(bytes == nullptr ? "no result" : std::string(bytes, length));
        GpbXmlCompiler_Destory(compiler);
        cJSON_Delete(document);
        return result;
    }

    const std::string m_bigXml = "<big>" + repeated("<item><n>1</n></item>") + "</big>";
    const std::string m_bigJson = R"({"top":{"big":{"item":[)" + repeated(R"({"n":1},)") + R"({"n":1}]})";
};

TEST_F(Cost, RefusedLeavesAndGroupsFromXml)
{
    const std::string expected = bigCase();
    EXPECT_GT(expected.size(), size_t{kCount});
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(expected == encodeXml("<top>" + m_bigXml + repeated("<e>bad</e>") + "</top>"));
    EXPECT_TRUE(expected == encodeXml("<top>" + m_bigXml + repeated("<g><x>1</x></g>") + "</top>"));
    EXPECT_LT(std::chrono::steady_clock::now() - start, kEnough);
}

TEST_F(Cost, RefusedLeavesFromJson)
{
    const auto start = std::chrono::steady_clock::now();
    const std::string expected = encodeJson(m_bigJson + "}}");
    EXPECT_GT(expected.size(), size_t{kCount});
    EXPECT_TRUE(expected == encodeJson(m_bigJson + repeated(R"(,"e":"bad")") + "}}"));
    EXPECT_TRUE(expected == encodeJson(m_bigJson + repeated(R"(,"n":null)") + "}}"));
    EXPECT_LT(std::chrono::steady_clock::now() - start, kEnough);
}

} // namespace
