// Diagnoses of single nodes and of memory.
#include "core/gpb_log.h"
#include "gpb_templatelib/gpb_objtree.h"
#include "platform/safe_string.h"
#include "platform/zmp.h"
#include "template/gpb_template_rdmi_tree_links.h"
#include "template/gpb_template_rdmi_tree_tag.h"

namespace
{

constexpr uint32_t LINE_FORMAT_TEXT_FAILED = 971;
constexpr uint32_t LINE_FORMAT_BYTE_FAILED = 985;

// A path: its text and one piece of it, and the length from which on nothing is added.
constexpr uint32_t PATH_TEXT_SIZE = 257;
constexpr uint32_t PATH_FULL = 245;
constexpr uint32_t PIECE_SIZE = 10;
static_assert(PATH_FULL + PIECE_SIZE <= PATH_TEXT_SIZE, "a last piece always fits");

// A piece has at least two characters, so no path has more pieces than this.
constexpr uint32_t PATH_MAX_PIECES = (PATH_FULL + 1) / 2 + 1;

// "[mem]" and the digits of a first byte take 8 with the terminator.
constexpr uint32_t MEM_FIRST_BYTE_ROOM = 8;
constexpr uint32_t DIGITS_PER_BYTE = 2;
constexpr uint32_t MEM_PREFIX_LEN = sizeof("[mem]") - 1;

constexpr uint8_t PRINTABLE_MIN = 32;
constexpr uint8_t PRINTABLE_MAX = 127;

// The ancestors of a node, itself included, nearest to the root first, as many as a path can show. Walking up meets
// them the other way round and without knowing how many there are: the oldest entries are overwritten.
class TopAncestors
{
public:
    explicit TopAncestors(const ObjNode *node)
    {
        for (; node != nullptr; node = GpbParentOf(node))
        {
            nodes_[count_ % PATH_MAX_PIECES] = node;
            ++count_;
        }
    }

    uint32_t Size() const { return count_ < PATH_MAX_PIECES ? count_ : PATH_MAX_PIECES; }
    const ObjNode *At(uint32_t index) const { return nodes_[(count_ - 1 - index) % PATH_MAX_PIECES]; }

private:
    const ObjNode *nodes_[PATH_MAX_PIECES] = {};
    uint32_t count_ = 0;
};

void AppendHex(const uint8_t *bytes, uint32_t length, char *out, uint32_t room)
{
    char *cursor = out;
    uint32_t left = room;
    for (uint32_t i = 0; i < length && left > DIGITS_PER_BYTE; ++i)
    {
        if (sprintf_s(cursor, left, "%02x", bytes[i]) < 0)
        {
            ZMP_Assert(GPB_RDMI_TREE_TAG, LINE_FORMAT_BYTE_FAILED, 0);
            return;
        }
        cursor += DIGITS_PER_BYTE;
        left -= DIGITS_PER_BYTE;
    }
}

} // namespace

void GPBLIB_DBG_PrintPath(const ObjNode *pstNode, const GpbLibContext *pstCtx)
{
    if (pstNode == nullptr || !GpbLogOpen(pstCtx, GPB_LOG_PROGRESS))
    {
        return;
    }
    const TopAncestors ancestors(pstNode);
    char text[PATH_TEXT_SIZE] = {};
    uint32_t length = 0;
    for (uint32_t i = 0; i < ancestors.Size() && length <= PATH_FULL; ++i)
    {
        // Ids print signed, and one of more than eight characters ends the path: what reads these lines expects it so.
        char piece[PIECE_SIZE] = {};
        const int count =
            snprintf_s(piece, sizeof(piece), sizeof(piece) - 1, "%d.", static_cast<int>(ancestors.At(i)->id));
        if (count < 0 || strcpy_s(text + length, sizeof(text) - length, piece) != 0)
        {
            break;
        }
        length += static_cast<uint32_t>(count);
    }
    GPB_LOG(pstCtx, GPB_LOG_PROGRESS, __LINE__, "Node: %s", text);
}

void GPBLIB_DBG_DumpMemToString(const uint8_t *pucBytes, uint32_t uiLen, char *pcOut, uint32_t uiRoom)
{
    if (pucBytes == nullptr || uiLen == 0 || pcOut == nullptr || uiRoom == 0)
    {
        return;
    }
    pcOut[0] = '\0';
    const bool isString = GPBLIB_DBG_CheckIsString_(pucBytes, uiLen) == 1;
    const int count = isString
                          ? snprintf_truncated_s(pcOut, uiRoom, "[str]%s", reinterpret_cast<const char *>(pucBytes))
                          : snprintf_truncated_s(pcOut, uiRoom, "[mem]");
    if (count < 0)
    {
        ZMP_Assert(GPB_RDMI_TREE_TAG, LINE_FORMAT_TEXT_FAILED, 0);
    }
    else if (!isString && uiRoom >= MEM_FIRST_BYTE_ROOM)
    {
        AppendHex(pucBytes, uiLen, pcOut + MEM_PREFIX_LEN, uiRoom - MEM_PREFIX_LEN);
    }
    pcOut[uiRoom - 1] = '\0';
}

uint32_t GPBLIB_DBG_CheckIsString_(const uint8_t *pucBytes, uint32_t uiLen)
{
    if (pucBytes == nullptr)
    {
        return 0;
    }
    uint32_t end = 0;
    while (end < uiLen && pucBytes[end] >= PRINTABLE_MIN && pucBytes[end] <= PRINTABLE_MAX)
    {
        ++end;
    }
    if (end == uiLen)
    {
        return 0;
    }
    for (uint32_t i = end; i < uiLen; ++i)
    {
        if (pucBytes[i] != 0)
        {
            return 0;
        }
    }
    return 1;
}
