// JSON to GPB: from a tree to the messages, and from a message to bytes.
#include <cjson/cJSON.h>
#include <google/protobuf/message.h>

#include "compiler/gpb_factory_guard.h"
#include "compiler/gpb_layer.h"
#include "compiler/gpb_source_tag.h"
#include "compiler/gpb_translator_table.h"
#include "core/gpb_log.h"
#include "gpb_templatelib/gpb_compiler.h"

using google::protobuf::Message;

namespace
{

constexpr char ENCODE_JSON[] = "EncodeJson";
constexpr uint32_t LINE_PREPARE_FAILED = 670;
constexpr uint32_t LINE_ITERATE_FAILED = 680;
constexpr uint32_t LINE_NO_TOP_MESSAGE = 693;
constexpr uint32_t LINE_NO_LAYER_MESSAGE = 698;

void ReportIterateFailed(void *libHandle, unsigned int result)
{
    GPB_LOG_AS(libHandle, GPB_LOG_ERROR, ENCODE_JSON, LINE_ITERATE_FAILED,
               "Gpb compiler encode fail to iterate json, return %u.", result);
}

// A result is taken from the layers below this one only.
constexpr unsigned int SERIALIZE_LAYER_END = 30;

constexpr GpbSerializeLog SERIALIZE_LOG = {
    "GetGpbBuffer",
    82,
    "Gpb compiler top message is null.",
    87,
    "Gpb compiler top message is not initialized.",
    93,
    "Gpb compiler Fail to serialize.",
    99,
    "Gpb compiler Success to serialize, length is %u.",
};

} // namespace

GpbJsonCompiler::GpbJsonCompiler(const google::protobuf::FileDescriptor *pstFile,
                                 const google::protobuf::compiler::Importer *pstImport, void *pvHandle)
    : GpbXmlCompilerBase(pstFile, pstImport, pvHandle)
{
    GpbFillTranslatorTable(astStrTrans, GPB_JSON_COMPILER_TAG);
}

GpbJsonCompiler::~GpbJsonCompiler() = default;

unsigned int GpbJsonCompiler::EncodeJson(cJSON *pstRoot, cJSON *pstItem)
{
    if (pstItem == nullptr)
    {
        return GPB_COMPILER_ERR;
    }
    return GpbGuardFactory(
        ucFactoryBroken, GPB_COMPILER_ERR, [&] { return EncodeItem(pstRoot, pstItem); },
        [this] { ReportIterateFailed(pvLibHandle, GPB_COMPILER_ERR); });
}

unsigned int GpbJsonCompiler::EncodeItem(cJSON *pstRoot, cJSON *pstItem)
{
    GpbCompilerStack stack;
    GpbTopMessage top(stack);
    unsigned int result = GPB_CompilerStackPrepare(pstRoot, pstItem, stack);
    if (result != GPB_COMPILER_OK)
    {
        GPB_LOG_AS(pvLibHandle, GPB_LOG_ERROR, ENCODE_JSON, LINE_PREPARE_FAILED, "Gpb compiler prepare fail %u.",
                   result);
        return result;
    }
    // Taken before the walk and read after it: a pop leaves the message in its slot, and the last one pushed there is
    // the item's.
    const unsigned int serializeLayer = GPB_GetItemSerializeLayer(stack, pstRoot, pstItem);
    result = pstItem == pstRoot ? IterJson(pstRoot->child, pstRoot, stack)
                                : IterJson(pstItem, FindArrayOf(pstRoot, pstItem), stack);
    if (result != GPB_COMPILER_OK)
    {
        ReportIterateFailed(pvLibHandle, result);
        return result;
    }
    if (serializeLayer >= SERIALIZE_LAYER_END)
    {
        return GPB_COMPILER_ERR;
    }
    Message *layerMessage = stack.astLayer[serializeLayer].pstMessage;
    KeepTopMessage(top.Release());
    pstEncodedMessage.reset();
    pstLayerMessage = layerMessage;
    if (pstMessage == nullptr)
    {
        GPB_LOG_AS(pvLibHandle, GPB_LOG_SKIP, ENCODE_JSON, LINE_NO_TOP_MESSAGE, "Gpb compiler encode fail to encode.");
    }
    if (pstLayerMessage == nullptr)
    {
        GPB_LOG_AS(pvLibHandle, GPB_LOG_SKIP, ENCODE_JSON, LINE_NO_LAYER_MESSAGE,
                   "Gpb layer compiler encode fail to encode.");
    }
    return GPB_COMPILER_OK;
}

void GpbJsonCompiler::KeepTopMessage(Message *pstTop)
{
    // The result of the last encode is a part of its top message, so that one stays as long as the result does.
    if (pstLayerMessage != nullptr && pstEncodedMessage == nullptr)
    {
        pstEncodedMessage.reset(pstMessage);
    }
    else
    {
        delete pstMessage;
    }
    pstMessage = pstTop;
}

const char *GpbJsonCompiler::GetResult(unsigned int *puiLen)
{
    return GetGpbBuffer(puiLen);
}

const char *GpbJsonCompiler::GetGpbBuffer(unsigned int *puiLen)
{
    return GpbSerialize(pvLibHandle, pstLayerMessage, SERIALIZE_LOG, strGpbBuffer, puiLen);
}

std::string GpbJsonCompiler::GetEncodeDebugString() const
{
    return GpbDebugText(pstMessage);
}
