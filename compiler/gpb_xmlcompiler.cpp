// XML to GPB: from a document to a message, and from the message to bytes.
#include "gpb_templatelib/gpb_compiler.h"

#include <google/protobuf/message.h>
#include <libxml/tree.h>
#include <memory>

#include "compiler/gpb_translator_table.h"
#include "core/gpb_barrier.h"
#include "core/gpb_log.h"
#include "gpb_templatelib/gpb_lib.h"

using google::protobuf::Message;

namespace
{

constexpr uint32_t LINE_ITERATE_FAILED = 83;
constexpr uint32_t LINE_NOTHING_ENCODED = 91;
constexpr uint32_t LINE_ENCODED = 94;
constexpr uint32_t LINE_NO_MESSAGE = 114;
constexpr uint32_t LINE_NOT_INITIALIZED = 119;
constexpr uint32_t LINE_SERIALIZE_FAILED = 125;
constexpr uint32_t LINE_SERIALIZED = 131;

// Owns the message of layer 0 until the encode takes it.
class TopMessage
{
public:
    explicit TopMessage(GpbCompilerStack &stack) : top_(stack.astLayer[0]) {}

    ~TopMessage()
    {
        delete top_.pstMessage;
        top_.pstDescriptor = nullptr;
        top_.pstMessage = nullptr;
    }

    TopMessage(const TopMessage &) = delete;
    TopMessage &operator=(const TopMessage &) = delete;

    Message *Release() { return std::exchange(top_.pstMessage, nullptr); }

private:
    GpbCompilerStackLayer &top_;
};

} // namespace

GpbXmlCompiler::GpbXmlCompiler(const google::protobuf::FileDescriptor *pstFile,
                               const google::protobuf::compiler::Importer *pstImport, void *pvHandle)
    : GpbXmlCompilerBase(pstFile, pstImport, pvHandle),
      uiMemHandle(GPBLIB_GetMemHandle(static_cast<const GpbLibContext *>(pvHandle)))
{
    GpbFillTranslatorTable(astStrTrans);
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
    if (ucFactoryBroken != 0)
    {
        return GPB_COMPILER_NO_MESSAGE;
    }
    // Set while the walk runs, so that it stays set when an exception ends it.
    ucFactoryBroken = 1;
    return GpbNoThrow(GPB_COMPILER_NO_MESSAGE,
                      [&]
                      {
                          const unsigned int result = EncodeRoot(root);
                          ucFactoryBroken = 0;
                          return result;
                      });
}

unsigned int GpbXmlCompiler::EncodeRoot(xmlNode *pstRoot)
{
    GpbCompilerStack stack;
    TopMessage top(stack);
    const unsigned int result = IterXmlDoc(pstRoot, stack);
    if (result != GPB_COMPILER_OK)
    {
        GPB_LOG(pvLibHandle, GPB_LOG_ERROR, LINE_ITERATE_FAILED,
                "[GpbXmlCompiler][Encode]Fail to iterate xml doc, return %u.", result);
        return result;
    }
    delete pstMessage;
    pstMessage = top.Release();
    if (pstMessage == nullptr)
    {
        GPB_LOG(pvLibHandle, GPB_LOG_SKIP, LINE_NOTHING_ENCODED, "[GpbXmlCompiler][Encode]Fail to encode.");
        return GPB_COMPILER_OK;
    }
    GPB_LOG(pvLibHandle, GPB_LOG_DUMP, LINE_ENCODED,
            "[GpbXmlCompiler][Encode]Success encode, message structure is:\n%s.", pstMessage->DebugString().c_str());
    return GPB_COMPILER_OK;
}

const char *GpbXmlCompiler::GetResult(unsigned int *puiLen)
{
    return GetGpbBuffer(puiLen);
}

const char *GpbXmlCompiler::GetGpbBuffer(unsigned int *puiLen)
{
    if (puiLen == nullptr)
    {
        return nullptr;
    }
    *puiLen = 0;
    if (pstMessage == nullptr)
    {
        GPB_LOG(pvLibHandle, GPB_LOG_ERROR, LINE_NO_MESSAGE, "[GpbXmlCompiler][GetGpbBuffer]top message is null.");
        return nullptr;
    }
    if (!pstMessage->IsInitialized())
    {
        GPB_LOG(pvLibHandle, GPB_LOG_ERROR, LINE_NOT_INITIALIZED,
                "[GpbXmlCompiler][GetGpbBuffer]top message is not initialized.");
        return nullptr;
    }
    if (!GpbNoThrow(false, [&] { return pstMessage->SerializeToString(&strGpbBuffer); }))
    {
        GPB_LOG(pvLibHandle, GPB_LOG_ERROR, LINE_SERIALIZE_FAILED, "[GpbXmlCompiler][GetGpbBuffer]Fail to serialize.");
        return nullptr;
    }
    *puiLen = static_cast<unsigned int>(strGpbBuffer.size());
    GPB_LOG(pvLibHandle, GPB_LOG_PROGRESS, LINE_SERIALIZED,
            "[GpbXmlCompiler][GetGpbBuffer]Success to serialize, length is %u.", *puiLen);
    return strGpbBuffer.data();
}

std::string GpbXmlCompiler::GetEncodeDebugString() const
{
    return pstMessage == nullptr ? "There is no valid encode message." : pstMessage->DebugString();
}
