// XML to GPB: from a document to a message, and from the message to bytes.
#include "gpb_templatelib/gpb_compiler.h"

#include <google/protobuf/message.h>
#include <libxml/tree.h>
#include <typeinfo>

#include "compiler/exact/gpb_exact_xml_walk.h"
#include "compiler/gpb_factory_guard.h"
#include "compiler/gpb_layer.h"
#include "compiler/gpb_source_tag.h"
#include "compiler/gpb_translator_table.h"
#include "core/gpb_barrier.h"
#include "core/gpb_log.h"
#include "descriptor/gpb_field_finder.h"
#include "gpb_templatelib/gpb_extension.h"
#include "gpb_templatelib/gpb_lib.h"

namespace
{

constexpr char ENCODE[] = "Encode";
constexpr uint32_t LINE_ITERATE_FAILED = 83;
constexpr uint32_t LINE_NOTHING_ENCODED = 91;
constexpr uint32_t LINE_ENCODED = 94;

void ReportIterateFailed(void *libHandle, unsigned int result)
{
    GPB_LOG_AS(libHandle, GPB_LOG_ERROR, ENCODE, LINE_ITERATE_FAILED,
               "[GpbXmlCompiler][Encode]Fail to iterate xml doc, return %u.", result);
}

constexpr GpbSerializeLog SERIALIZE_LOG = {
    "GetGpbBuffer",
    114,
    "[GpbXmlCompiler][GetGpbBuffer]top message is null.",
    119,
    "[GpbXmlCompiler][GetGpbBuffer]top message is not initialized.",
    125,
    "[GpbXmlCompiler][GetGpbBuffer]Fail to serialize.",
    131,
    "[GpbXmlCompiler][GetGpbBuffer]Success to serialize, length is %u.",
};

} // namespace

GpbXmlCompiler::GpbXmlCompiler(const google::protobuf::FileDescriptor *pstFile,
                               const google::protobuf::compiler::Importer *pstImport, void *pvHandle)
    : GpbXmlCompilerBase(pstFile, pstImport, pvHandle),
      uiMemHandle(GPBLIB_GetMemHandle(static_cast<const GpbLibContext *>(pvHandle)))
{
    GpbFillTranslatorTable(astStrTrans, GPB_XML_COMPILER_TAG);
}

GpbXmlCompiler::~GpbXmlCompiler() = default;

unsigned int GpbXmlCompiler::Encode(xmlDoc *pstDoc)
{
    if (pstDoc == nullptr)
    {
        return GPB_COMPILER_ERR;
    }
    xmlNode *root = xmlDocGetRootElement(pstDoc);
    if (root == nullptr)
    {
        return GPB_COMPILER_NO_ROOT;
    }
    return GpbGuardFactory(
        ucFactoryBroken, GPB_COMPILER_NO_MESSAGE, [&] { return EncodeRoot(root); },
        [this] { ReportIterateFailed(pvLibHandle, GPB_COMPILER_NO_MESSAGE); });
}

unsigned int GpbXmlCompiler::EncodeRoot(xmlNode *pstRoot)
{
    GpbCompilerStack stack;
    GpbTopMessage top(stack);
    // Whoever is told what cannot be encoded might rename nodes, and so might a subclass.
    GpbNameMemo names;
    const bool mayNamesMove = GpbArePathsLogged(pvLibHandle) || typeid(*this) != typeid(GpbXmlCompiler);
    const GpbFieldFinder::Document document(*pstFieldFinder, mayNamesMove ? nullptr : &names);
    const bool isLossless = GPBEXT_IsLossless(static_cast<const GpbLibContext *>(pvLibHandle)) != 0;
    const unsigned int result =
        isLossless ? GpbExactXmlWalk(*this).WalkSiblings(pstRoot, stack) : IterXmlDoc(pstRoot, stack);
    if (result != GPB_COMPILER_OK)
    {
        ReportIterateFailed(pvLibHandle, result);
        return result;
    }
    delete pstMessage;
    pstMessage = top.Release();
    if (pstMessage == nullptr)
    {
        GPB_LOG_AS(pvLibHandle, GPB_LOG_SKIP, ENCODE, LINE_NOTHING_ENCODED, "[GpbXmlCompiler][Encode]Fail to encode.");
        return GPB_COMPILER_OK;
    }
    // The message is there: without memory for its dump only the dump is missing.
    GpbNoThrow(
        [this]
        {
            GPB_LOG_AS(pvLibHandle, GPB_LOG_DUMP, ENCODE, LINE_ENCODED,
                       "[GpbXmlCompiler][Encode]Success encode, message structure is:\n%s.",
                       GpbDebugText(pstMessage).c_str());
        });
    return GPB_COMPILER_OK;
}

const char *GpbXmlCompiler::GetResult(unsigned int *puiLen)
{
    return GetGpbBuffer(puiLen);
}

const char *GpbXmlCompiler::GetGpbBuffer(unsigned int *puiLen)
{
    return GpbSerialize(pvLibHandle, pstMessage, SERIALIZE_LOG, strGpbBuffer, puiLen);
}

std::string GpbXmlCompiler::GetEncodeDebugString() const
{
    return GpbDebugText(pstMessage);
}
