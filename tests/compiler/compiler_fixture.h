/** A library context with modules for compilers, and a compiler whose protected parts are open. */
#ifndef GPB_TESTS_COMPILER_COMPILER_FIXTURE_H
#define GPB_TESTS_COMPILER_COMPILER_FIXTURE_H

#include <memory>
#include <string>

#include <google/protobuf/descriptor.h>
#include <google/protobuf/dynamic_message.h>
#include <google/protobuf/message.h>

#include "gpb_templatelib/gpb_compiler.h"
#include "support/library_fixture.h"
#include "support/proto_judge.h"
#include "support/xml_document.h"

namespace gpbtest
{

/** The compiler with everything that a subclass in a host can reach. */
class OpenCompiler : public GpbXmlCompiler
{
public:
    using GpbXmlCompiler::AddLayerToUpperLayer;
    using GpbXmlCompiler::astStrTrans;
    using GpbXmlCompiler::FillLeafField;
    using GpbXmlCompiler::GenerateLayer;
    using GpbXmlCompiler::GenerateXPath;
    using GpbXmlCompiler::GpbXmlCompiler;
    using GpbXmlCompiler::InitCompilerTopLayer;
    using GpbXmlCompiler::IterXmlDoc;
    using GpbXmlCompiler::ProcCompilerTopLayer;
    using GpbXmlCompiler::ProcXmlContainerNode;
    using GpbXmlCompiler::ProcXmlEmptyLeafNode;
    using GpbXmlCompiler::ProcXmlLeafNode;
    using GpbXmlCompiler::ProcXmlPresenceContainerNode;
    using GpbXmlCompiler::pstFileDesc;
    using GpbXmlCompiler::pstImporter;
    using GpbXmlCompiler::pstMessage;
    using GpbXmlCompiler::pstMsgFactory;
    using GpbXmlCompiler::pvLibHandle;
    using GpbXmlCompiler::strGpbBuffer;
    using GpbXmlCompiler::ucStopOnError;
    using GpbXmlCompiler::uiMemHandle;
};

/** Result of GpbXmlCompiler_Encode. */
struct Encoded
{
    bool isNull;
    std::string bytes;
    unsigned int error;
};

class CompilerFixture : public LibraryFixture
{
protected:
    void TearDown() override;

    /** Content of a file of the compilers' test data. */
    static std::string readData(const std::string &file);

    /** Makes a module known to the library and to the judge, and loads it; clears the log. */
    void addModule(const std::string &module, const std::string &protoText);

    /** addModule with the data file MODULE.proto. */
    void addDataModule(const std::string &module) { addModule(module, readData(module + ".proto")); }

    /** A compiler for a module that has been added; it becomes the fixture's compiler, which is destroyed at the end.
     */
    OpenCompiler &open(const std::string &module);

    /** The compiler that open() made. */
    OpenCompiler &compiler() { return *m_compiler; }

    void closeCompiler() { m_compiler.reset(); }

    /** Encodes a document with the fixture's compiler through the C interface. */
    Encoded encode(const std::string &xml, int options = 0);

    /**
     * Encodes a document and expects success, these bytes by their text form, and (level, text) lines before the two
     * of success; the level-3 line has to be the compiler's own debug text.
     */
    void expectEncodes(const std::string &xml, const std::string &type, const std::string &textForm,
                       const std::vector<std::string> &skipLines = {}, int options = 0);

    /** Encodes a document and expects this code, and (level, text) lines before the two that report a failing walk. */
    void expectFails(const std::string &xml, unsigned int code, const std::vector<std::string> &lines, int options = 0);

    /**
     * Encodes a document again with a compiler that is no subclass, which need not keep a message that anybody can look
     * at: what comes out, and what is logged, has to be the same. Once more, where nobody listens, the same comes out.
     * Nothing is done when the fixture's compiler has been given settings of its own.
     */
    void expectTwin(const std::string &xml, int options, const Encoded &result, std::vector<std::string> lines);

    /** Leaves the twin out from here on: a test that looks at the platform's books wants one encode only. */
    void leaveOutTwin() { m_hasTwin = false; }

    /** Encodes a document that gives no message and no error: these lines, and the two that say so. */
    void expectNothing(const std::string &xml, const std::vector<std::string> &lines);

    const google::protobuf::Descriptor *type(const std::string &fullName) const;

    /** An empty message of a module's type; owned by the fixture, lives to the end of the test. */
    google::protobuf::Message *newMessage(const std::string &fullName);

    ProtoJudge &judge() { return m_judge; }

private:
    ProtoJudge m_judge;
    bool m_hasTwin = true;
    std::unique_ptr<OpenCompiler> m_compiler;
    std::unique_ptr<google::protobuf::DynamicMessageFactory> m_factory;
    std::vector<std::unique_ptr<google::protobuf::Message>> m_messages;
};

/** The two lines of a successful encode with its result. */
std::vector<std::string> successLines(const OpenCompiler &compiler, size_t length);

} // namespace gpbtest

#endif
