// Serializing a stored template for the host, with a hexadecimal trace.
#include "core/gpb_log.h"
#include "core/gpb_memory.h"
#include "core/gpb_template_tag.h"
#include "gpb_templatelib/gpb_template.h"
#include "platform/safe_string.h"
#include "platform/zmp.h"
#include "template/gpb_template_text.h"

namespace
{

constexpr uint32_t LINE_ALLOC_DUMP = 1612;
constexpr uint32_t LINE_ZERO_DUMP = 1618;
constexpr uint32_t LINE_FREE_DUMP = 1627;

constexpr uint32_t HEX_BYTE_LEN = 3;
constexpr uint32_t HEX_LINE_FULL = 599;

// Bytes as text, a line at a time.
class HexTrace
{
public:
    explicit HexTrace(const GpbLibContext *context) : context_(context) {}

    [[nodiscard]] bool Append(uint8_t byte)
    {
        if (sprintf_s(line_ + length_, sizeof(line_) - length_, "%02x ", byte) < 0)
        {
            return false;
        }
        length_ += HEX_BYTE_LEN;
        return true;
    }

    bool IsFull() const { return length_ > HEX_LINE_FULL; }
    bool IsOpen() const { return length_ != 0; }

    void CutTrailingBlank() { line_[length_ - 1] = '\0'; }

    void Print()
    {
        GPB_LOG(context_, GPB_LOG_PROGRESS, __LINE__, "gpb(0x):%s", line_);
        length_ = 0;
    }

private:
    const GpbLibContext *context_;
    char line_[GPB_HEX_LINE_SIZE] = {};
    uint32_t length_ = 0;
};

// Serializes a tree into a new buffer; null on failure.
uint8_t *SerializeTree(const GpbLibContext *context, ObjTree tree, uint32_t *length)
{
    const uint32_t room = GPBLIB_ObjTree_GetWriteLen(tree);
    if (room == 0)
    {
        GPB_LOG(context, GPB_LOG_ERROR, __LINE__, "gpblib template len is %d", 0);
        return nullptr;
    }
    auto *buffer = static_cast<uint8_t *>(GpbMalloc(context->uiModuleId, room, GPB_TEMPLATE_TAG, LINE_ALLOC_DUMP));
    if (buffer == nullptr)
    {
        return nullptr;
    }
    GpbZero(buffer, room, GPB_TEMPLATE_TAG, LINE_ZERO_DUMP);
    *length = GPBLIB_ObjTree_Write(tree, buffer, room, GPB_OBJTREE_MODE_TEMPLATE, context);
    if (*length == 0)
    {
        GPB_LOG(context, GPB_LOG_ERROR, __LINE__, "failed to serialize the gpb template, writelen = %d", 0);
        ZMP_Free_F(buffer, GPB_TEMPLATE_TAG, LINE_FREE_DUMP);
        return nullptr;
    }
    return buffer;
}

} // namespace

uint32_t GPBLIB_DumpProtoFileData(GpbLibContext *pstCtx, const char *pcPath, uint32_t uiClassId, uint8_t **ppucBuf,
                                  uint16_t *pusLen)
{
    GPB_LOG(pstCtx, GPB_LOG_PROGRESS, __LINE__, "gpblib dump template begin (path=%s, class=0x%x)", GpbShown(pcPath),
            uiClassId);
    if (pstCtx == nullptr || ppucBuf == nullptr || pusLen == nullptr)
    {
        return 1;
    }
    const GpbTemplateInfo *info = GPBLIB_GetGpbTemplate(uiClassId, pstCtx);
    if (info == nullptr)
    {
        GPB_LOG(pstCtx, GPB_LOG_ERROR, __LINE__,
                "failed to get gpb template from gpb local when dump it, classid = 0x%x", uiClassId);
        return 1;
    }
    uint32_t length = 0;
    uint8_t *buffer = SerializeTree(pstCtx, info->pstObjTree, &length);
    if (buffer == nullptr)
    {
        return 1;
    }
    GPB_LOG(pstCtx, GPB_LOG_PROGRESS, __LINE__, "dump gpb template len = %u, classid=0x%x", length, info->uiClassId);
    // The trace is a help for who reads the log: that it fails is no reason to withhold the template.
    (void)GPBLIB_PrintHexBuf_espm(buffer, length, pstCtx);
    *ppucBuf = buffer;
    *pusLen = static_cast<uint16_t>(length);
    GPB_LOG(pstCtx, GPB_LOG_PROGRESS, __LINE__, "gpblib dump template end (path=%s, class=0x%x)", GpbShown(pcPath),
            uiClassId);
    return 0;
}

uint32_t GPBLIB_PrintHexBuf_espm(const uint8_t *pucBytes, uint32_t uiLen, const GpbLibContext *pstCtx)
{
    if (pucBytes == nullptr || pstCtx == nullptr)
    {
        return 1;
    }
    if (!GpbLogOpen(pstCtx, GPB_LOG_PROGRESS))
    {
        return 0;
    }
    HexTrace trace(pstCtx);
    for (uint32_t i = 0; i < uiLen; ++i)
    {
        if (!trace.Append(pucBytes[i]))
        {
            return 1;
        }
        // A full line that others follow keeps its trailing blank, deliberately: readers of traces join lines as they
        // are.
        if (trace.IsFull() && i + 1 < uiLen)
        {
            trace.Print();
        }
    }
    if (trace.IsOpen())
    {
        trace.CutTrailingBlank();
        trace.Print();
    }
    return 0;
}
