#include "compiler/compiler_fixture.h"

#include <algorithm>
#include <fstream>
#include <sstream>

#include <google/protobuf/compiler/importer.h>

namespace gpbtest
{

namespace pb = google::protobuf;

namespace
{

/** Characters of a message that reach a host. */
constexpr size_t kLogText = 1023;

} // namespace

std::vector<std::string> successLines(const OpenCompiler &compiler, size_t length)
{
    const std::string dump =
        "[GpbXmlCompiler][Encode]Success encode, message structure is:\n" + compiler.GetEncodeDebugString() + ".";
    return {"3: " + dump.substr(0, kLogText),
            "1: [GpbXmlCompiler][GetGpbBuffer]Success to serialize, length is " + std::to_string(length) + "."};
}

void CompilerFixture::TearDown()
{
    m_messages.clear();
    m_factory.reset();
    m_compiler.reset();
    LibraryFixture::TearDown();
}

std::string CompilerFixture::readData(const std::string &file)
{
    const std::ifstream stream(GPB_TEST_DATA_DIR + file, std::ios::binary);
    EXPECT_TRUE(stream.is_open()) << file;
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

void CompilerFixture::addModule(const std::string &module, const std::string &protoText)
{
    m_judge.addFile(module + ".proto", protoText);
    writeProto(module, protoText);
    ASSERT_EQ(0u, GPBLIB_ProtobufLoad(context(), module.c_str(), 0));
    log().clear();
}

OpenCompiler &CompilerFixture::open(const std::string &module)
{
    const pb::compiler::Importer *const importer = GPBLIB_GetImporter(context());
    m_compiler = std::make_unique<OpenCompiler>(importer->pool()->FindFileByName(module + ".proto"), importer,
                                                static_cast<void *>(context()));
    return *m_compiler;
}

Encoded CompilerFixture::encode(const std::string &xml, int options)
{
    const XmlDocument document(xml, options);
    constexpr unsigned int kUntouched = 0xDEAD;
    unsigned int length = kUntouched;
    unsigned int error = kUntouched;
    const char *const bytes = GpbXmlCompiler_Encode(m_compiler.get(), document.get(), &length, &error);
    EXPECT_NE(kUntouched, error);
    if (bytes == nullptr)
    {
        // A result that failed has length 0; a walk that failed asks for no result.
        EXPECT_EQ(error == 0 ? 0 : kUntouched, length);
        return {true, std::string(), error};
    }
    return {false, std::string(bytes, length), error};
}

void CompilerFixture::expectEncodes(const std::string &xml, const std::string &typeName, const std::string &textForm,
                                    const std::vector<std::string> &skipLines, int options)
{
    SCOPED_TRACE(xml.substr(0, kLogText));
    log().clear();
    const Encoded result = encode(xml, options);
    EXPECT_EQ(0u, result.error);
    EXPECT_FALSE(result.isNull);
    EXPECT_TRUE(m_judge.holds(typeName, result.bytes, textForm));
    std::vector<std::string> lines = skipLines;
    for (const std::string &line : successLines(*m_compiler, result.bytes.size()))
    {
        lines.push_back(line);
    }
    EXPECT_EQ(joinLines(lines), log().take());
    expectTwin(xml, options, result, lines);
}

void CompilerFixture::expectTwin(const std::string &xml, int options, const Encoded &result,
                                 std::vector<std::string> lines)
{
    GpbXmlCompiler twin(m_compiler->pstFileDesc, m_compiler->pstImporter, m_compiler->pvLibHandle);
    const OpenCompiler usual(m_compiler->pstFileDesc, m_compiler->pstImporter, m_compiler->pvLibHandle);
    if (!m_hasTwin || m_compiler->ucStopOnError != 0 ||
        !std::equal(std::begin(usual.astStrTrans), std::end(usual.astStrTrans), std::begin(m_compiler->astStrTrans)))
    {
        return;
    }
    const XmlDocument document(xml, options);
    unsigned int length = 0;
    unsigned int error = 0;
    const char *const bytes = GpbXmlCompiler_Encode(&twin, document.get(), &length, &error);
    EXPECT_EQ(result.error, error);
    EXPECT_EQ(result.isNull, bytes == nullptr);
    EXPECT_EQ(result.bytes, bytes == nullptr ? "" : std::string(bytes, length));
    for (std::string &line : lines)
    {
        const std::string name = "[N7gpbtest12OpenCompilerE]";
        const size_t at = line.find(name);
        if (at != std::string::npos)
        {
            line.replace(at, name.size(), "[14GpbXmlCompiler]");
        }
    }
    EXPECT_EQ(joinLines(lines), log().take());
    if (error == 0)
    {
        EXPECT_EQ(m_compiler->GetEncodeDebugString(), twin.GetEncodeDebugString());
    }
    const ClosedSlots closed(context());
    GpbXmlCompiler silent(m_compiler->pstFileDesc, m_compiler->pstImporter, m_compiler->pvLibHandle);
    const char *const same = GpbXmlCompiler_Encode(&silent, document.get(), &length, &error);
    EXPECT_EQ(result.error, error);
    EXPECT_EQ(result.isNull, same == nullptr);
    EXPECT_EQ(result.bytes, same == nullptr ? "" : std::string(same, length));
}

void CompilerFixture::expectFails(const std::string &xml, unsigned int code, const std::vector<std::string> &lines,
                                  int options)
{
    SCOPED_TRACE(xml.substr(0, kLogText));
    log().clear();
    const Encoded result = encode(xml, options);
    EXPECT_EQ(code, result.error);
    EXPECT_TRUE(result.isNull);
    std::vector<std::string> expected = lines;
    expected.push_back("0: [GpbXmlCompiler][Encode]Fail to iterate xml doc, return " + std::to_string(code) + ".");
    expected.push_back("0: [N7gpbtest12OpenCompilerE]Fail to encode, error code is " + std::to_string(code) + ".");
    EXPECT_EQ(joinLines(expected), log().take());
    expectTwin(xml, options, result, expected);
}

void CompilerFixture::expectNothing(const std::string &xml, const std::vector<std::string> &lines)
{
    SCOPED_TRACE(xml.substr(0, kLogText));
    log().clear();
    const Encoded result = encode(xml);
    EXPECT_EQ(0u, result.error);
    EXPECT_TRUE(result.isNull);
    std::vector<std::string> expected = lines;
    expected.emplace_back("2: [GpbXmlCompiler][Encode]Fail to encode.");
    expected.emplace_back("0: [GpbXmlCompiler][GetGpbBuffer]top message is null.");
    EXPECT_EQ(joinLines(expected), log().take());
    expectTwin(xml, 0, result, expected);
}

const pb::Descriptor *CompilerFixture::type(const std::string &fullName) const
{
    const pb::Descriptor *const found = GPBLIB_GetImporter(context())->pool()->FindMessageTypeByName(fullName);
    EXPECT_NE(nullptr, found) << fullName;
    return found;
}

pb::Message *CompilerFixture::newMessage(const std::string &fullName)
{
    if (m_factory == nullptr)
    {
        m_factory = std::make_unique<pb::DynamicMessageFactory>(GPBLIB_GetImporter(context())->pool());
    }
    m_messages.emplace_back(m_factory->GetPrototype(type(fullName))->New());
    return m_messages.back().get();
}

} // namespace gpbtest
