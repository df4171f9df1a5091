#include "soak/fault_lives.h"

#include <libxml/parser.h>

#include "faults/process_memory.h"
#include "gpb_templatelib/gpb_host.h"
#include "support/guard.h"
#include "support/library.h"

namespace gpbsoak
{

using gpbfuzz::require;
using gpbtest::FaultResult;
using gpbtest::kFaultModule;

FaultLives::FaultLives() : m_installPath(m_work.makeDirectory("installed")), m_json(cJSON_Parse(gpbtest::kFaultJson))
{
    const std::string xml = gpbtest::faultXmlWithoutTexts();
    m_xml = xmlReadMemory(xml.data(), static_cast<int>(xml.size()), nullptr, nullptr, XML_PARSE_NONET);
    require(m_xml != nullptr && m_json != nullptr, "the documents of the fault lives cannot be parsed");
    for (const std::string &module : {std::string(kFaultModule), m_templateModule})
    {
        m_work.writeFile("installed/" + module + ".proto", gpbtest::kFaultProto);
    }
}

FaultLives::~FaultLives()
{
    xmlFreeDoc(m_xml);
    cJSON_Delete(m_json);
}

GpbLibContext *FaultLives::createContext() const
{
    GpbLibContext *const context = gpbfuzz::newContext();
    GPBLIB_SetPatchDir(context, "patch/");
    if (context != nullptr)
    {
        GPBLIB_PkgAddInstallPath(context, m_installPath.c_str());
    }
    return context;
}

FaultResult FaultLives::use(GpbLibContext *context, Use use)
{
    ++(use == kTemplate ? m_templates : m_documents);
    cJSON *const root = m_json->child;
    switch (use)
    {
    case kXmlToGpb:
        return gpbtest::encodeXml(GpbXmlCompiler_CreateCompiler(context, kFaultModule), m_xml);
    case kXmlToJson:
        return gpbtest::encodeXml(GpbXmlCompiler_CreateJsonCompiler(context, kFaultModule, 1), m_xml);
    case kJsonToGpb:
        return gpbtest::encodeJson(GpbJsonCompiler_CreateJsonCompiler(context, kFaultModule), root, root);
    case kJsonListToGpb:
        return gpbtest::encodeJson(GpbJsonCompiler_CreateJsonCompiler(context, kFaultModule), root,
                                   gpbtest::findItem(root, "list"));
    case kJsonLeafToGpb:
        return gpbtest::encodeJson(GpbJsonCompiler_CreateJsonCompiler(context, kFaultModule), root,
                                   gpbtest::findItem(root, "a-leaf"));
    case kAttributes:
        return gpbtest::listAttributes(context, GpbJsonCompiler_CreateJsonCompiler(context, kFaultModule), root,
                                       gpbtest::findItem(root, "box"));
    default:
        GPBLIB_ProtobufLoad(context, m_templateModule.c_str(), 0);
        return gpbtest::generateTemplate(context, m_templateModule.c_str(), m_records);
    }
}

FaultResult FaultLives::live(Use use)
{
    ++m_modules;
    GpbLibContext *const context = createContext();
    if (context == nullptr)
    {
        return {};
    }
    const FaultResult result = this->use(context, use);
    GPBLIB_UnloadProtoFile(context, use == kTemplate ? m_templateModule.c_str() : kFaultModule);
    GPBLIB_UnloadProtoFileAll(context, 0);
    GPBLIB_Uninitial(context);
    return result;
}

void FaultLives::failPlatform(Use use, Random &random)
{
    const size_t held = GpbHost_LiveCount();
    const uint64_t before = GpbHost_TotalCallCount();
    const FaultResult good = live(use);
    const uint64_t calls = GpbHost_TotalCallCount() - before;
    require(good.isDone, "a life without fault fails");
    ++m_faults;
    GpbHost_FailAnyCall(1 + random() % calls);
    live(use);
    GpbHost_FailAnyCall(0);
    require(GpbHost_LiveCount() == held, "memory is held after a platform fault");
}

void FaultLives::failMemory(Use use, Random &random)
{
    const size_t held = GpbHost_LiveCount();
    GpbLibContext *const context = createContext();
    ++m_modules;
    // The first use makes what protobuf makes once for a file.
    const FaultResult good = this->use(context, use);
    uint64_t calls = 0;
    {
        const gpbtest::FailingMemory memory(0);
        require(this->use(context, use) == good && good.isDone, "a second use ends otherwise");
        calls = memory.count();
    }
    require(calls != 0, "there is no memory that could be missing");
    ++m_faults;
    {
        const gpbtest::FailingMemory memory(1 + random() % calls);
        this->use(context, use);
    }
    require(this->use(context, use) == good, "a lack of memory changed the context");
    GPBLIB_Uninitial(context);
    require(GpbHost_LiveCount() == held, "memory is held after a lack of memory");
}

} // namespace gpbsoak
