// JSON to GPB: from a tree to the messages, and from a message to bytes.
#include <cjson/cJSON.h>
#include <google/protobuf/message.h>

#include "compiler/exact/gpb_exact_json_walk.h"
#include "compiler/gpb_factory_guard.h"
#include "compiler/gpb_layer.h"
#include "compiler/gpb_source_tag.h"
#include "compiler/gpb_translator_table.h"
#include "core/gpb_log.h"
#include "gpb_templatelib/gpb_compiler.h"
#include "gpb_templatelib/gpb_extension.h"

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

void ReportMissing(void *libHandle, const Message *topMessage, const Message *layerMessage)
{
    if (topMessage == nullptr)
    {
        GPB_LOG_AS(libHandle, GPB_LOG_SKIP, ENCODE_JSON, LINE_NO_TOP_MESSAGE, "Gpb compiler encode fail to encode.");
    }
    if (layerMessage == nullptr)
    {
        GPB_LOG_AS(libHandle, GPB_LOG_SKIP, ENCODE_JSON, LINE_NO_LAYER_MESSAGE,
                   "Gpb layer compiler encode fail to encode.");
    }
}

// A result is taken from the layers below this one only.
constexpr unsigned int SERIALIZE_LAYER_END = 30;

// The code of a walk, and the layer whose message is its result.
struct Walked
{
    unsigned int result;
    unsigned int layer;
};

// An encode by the steps of a walk: `prepare(stack)` opens the layers around the item and gives a code, `walk(stack)`
// fills them and gives a Walked, `keep(top, message)` takes the messages.
template <typename Prepare, typename Walk, typename Keep>
unsigned int EncodeBy(void *libHandle, const Prepare &prepare, const Walk &walk, const Keep &keep)
{
    GpbCompilerStack stack;
    GpbTopMessage top(stack);
    const unsigned int result = prepare(stack);
    if (result != GPB_COMPILER_OK)
    {
        GPB_LOG_AS(libHandle, GPB_LOG_ERROR, ENCODE_JSON, LINE_PREPARE_FAILED, "Gpb compiler prepare fail %u.", result);
        return result;
    }
    const Walked walked = walk(stack);
    if (walked.result != GPB_COMPILER_OK)
    {
        ReportIterateFailed(libHandle, walked.result);
        return walked.result;
    }
    if (walked.layer >= SERIALIZE_LAYER_END)
    {
        return GPB_COMPILER_ERR;
    }
    keep(top, stack.astLayer[walked.layer].pstMessage);
    return GPB_COMPILER_OK;
}

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
    const auto keep = [this](GpbTopMessage &top, Message *layerMessage)
    {
        KeepTopMessage(top.Release());
        pstEncodedMessage.reset();
        pstLayerMessage = layerMessage;
        ReportMissing(pvLibHandle, pstMessage, pstLayerMessage);
    };
    if (GPBEXT_IsLossless(static_cast<const GpbLibContext *>(pvLibHandle)) != 0)
    {
        GpbExactJsonWalk walk(*this, pstRoot, pstItem);
        return EncodeBy(
            pvLibHandle, [&](GpbCompilerStack &stack) { return walk.Prepare(stack); },
            [&](GpbCompilerStack &stack) {
                return Walked{walk.Run(stack), walk.ResultLayer()};
            },
            keep);
    }
    return EncodeBy(
        pvLibHandle, [&](GpbCompilerStack &stack) { return GPB_CompilerStackPrepare(pstRoot, pstItem, stack); },
        [&](GpbCompilerStack &stack)
        {
            // Taken before the walk and read after it: a pop leaves the message in its slot, and the last one pushed
            // there is the item's.
            const unsigned int serializeLayer = GPB_GetItemSerializeLayer(stack, pstRoot, pstItem);
            return Walked{pstItem == pstRoot ? IterJson(pstRoot->child, pstRoot, stack)
                                             : IterJson(pstItem, FindArrayOf(pstRoot, pstItem), stack),
                          serializeLayer};
        },
        keep);
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
