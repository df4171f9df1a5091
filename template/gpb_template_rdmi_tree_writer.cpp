// Writing the nodes of an object tree, and the whole tree.
#include "core/gpb_log.h"
#include "gpb_templatelib/gpb_objtree.h"
#include "platform/cmf_tree.h"
#include "platform/safe_string.h"
#include "platform/zmp.h"
#include "template/gpb_template_rdmi_tree_links.h"
#include "template/gpb_template_rdmi_tree_tag.h"
#include "template/gpb_template_rdmi_tree_wire.h"

namespace
{

constexpr uint32_t LINE_COPY_VARINT_FAILED = 60;
constexpr uint32_t LINE_COPY_STRING_FAILED = 136;
constexpr uint32_t LINE_WRITE_BEGIN = 828;
constexpr uint32_t LINE_WRITE_NO_ROOM = 836;
constexpr uint32_t LINE_WRITE_NODE_FAILED = 850;
constexpr uint32_t LINE_WRITE_END = 860;

// The function that all lines of writing are logged under.
constexpr const char *WRITE_OPERATION = "GPBLIB_ObjTree_Write";

// The bytes of a varint; where they end.
uint8_t *FormVarint(uint64_t value, uint8_t *bytes)
{
    while (value > GPB_VARINT_PAYLOAD)
    {
        *bytes++ = static_cast<uint8_t>(value | GPB_VARINT_CONTINUED);
        value >>= GPB_VARINT_PAYLOAD_BITS;
    }
    *bytes = static_cast<uint8_t>(value);
    return bytes + 1;
}

// Copies the bytes of a varint where they fit; their number, 0 where they do not.
uint32_t WriteVarint(uint64_t value, uint8_t *dest, uint32_t room)
{
    uint8_t bytes[GPB_VARINT_MAX_SIZE];
    const auto length = static_cast<uint32_t>(FormVarint(value, bytes) - bytes);
    if (room < length)
    {
        return 0;
    }
    if (memcpy_s(dest, room, bytes, length) != 0)
    {
        ZMP_Assert(GPB_RDMI_TREE_TAG, LINE_COPY_VARINT_FAILED, 0);
    }
    return length;
}

// A tag followed by one varint, which is all that every node but a string consists of.
uint32_t WriteTagAndVarint(const ObjNode *node, uint32_t wireType, uint64_t value, uint8_t *dest, uint32_t room)
{
    const uint32_t tagLen = WriteVarint(GpbWireTag(node, wireType), dest, room);
    if (tagLen == 0)
    {
        return 0;
    }
    const uint32_t valueLen = WriteVarint(value, dest + tagLen, room - tagLen);
    return valueLen == 0 ? 0 : tagLen + valueLen;
}

uint32_t WriteInteger(const ObjNode *node, uint8_t *dest, uint32_t room)
{
    return WriteTagAndVarint(node, GPB_WIRE_VARINT, node->value, dest, room);
}

uint32_t WriteHeader(const ObjNode *node, uint32_t wireType, uint8_t *dest, uint32_t room)
{
    return WriteTagAndVarint(node, wireType, node->objLen, dest, room);
}

uint32_t WriteString(const ObjNode *node, uint8_t *dest, uint32_t room)
{
    const uint32_t headerLen = WriteHeader(node, GPB_WIRE_DELIMITED, dest, room);
    if (headerLen == 0 || node->objLen == 0)
    {
        return headerLen;
    }
    const uint32_t left = room - headerLen;
    if (node->objLen > left || node->pucString == nullptr)
    {
        return 0;
    }
    if (memcpy_s(dest + headerLen, left, node->pucString, node->objLen) != 0)
    {
        ZMP_Assert(GPB_RDMI_TREE_TAG, LINE_COPY_STRING_FAILED, 0);
    }
    return headerLen + node->objLen;
}

// The bytes of a node by its type; none for a type that writes none of its own.
uint32_t WriteByType(const ObjNode *node, uint8_t *dest, uint32_t room, bool isTemplate)
{
    switch (node->nodeType)
    {
    case GPB_OBJNODE_INTLEAF:
        return WriteInteger(node, dest, room);
    case GPB_OBJNODE_STRLEAF:
        return WriteString(node, dest, room);
    case GPB_OBJNODE_CONTAIN:
        return WriteHeader(node, isTemplate ? GPB_WIRE_CONTAINER : GPB_WIRE_DELIMITED, dest, room);
    case GPB_OBJNODE_ROOTDOC:
        return isTemplate ? WriteHeader(node, GPB_WIRE_CONTAINER, dest, room) : 0;
    default:
        return 0;
    }
}

// A node as the mode has it: templates know no encode flag.
uint32_t WriteInMode(const ObjNode *node, uint8_t *dest, uint32_t room, bool isTemplate)
{
    return isTemplate || node->gpbFlg != 0 ? WriteByType(node, dest, room, isTemplate) : 0;
}

bool IsWritable(const ObjNode *node, const uint8_t *dest)
{
    return node != nullptr && dest != nullptr;
}

// The nodes of a tree one after the other, into what is left of the destination.
class TreeWriter
{
public:
    TreeWriter(uint8_t *dest, uint32_t room, bool isTemplate, const GpbLibContext *context)
        : dest_(dest), room_(room), isTemplate_(isTemplate), context_(context)
    {
    }

    // With all its steps in it: a node has few bytes, and each call on the way to them costs as much as one of these.
    [[nodiscard, gnu::flatten]] bool Write(const ObjNode *node)
    {
        if (node->gpbSize > room_ - written_)
        {
            GPB_LOG_AS(context_, GPB_LOG_PROGRESS, WRITE_OPERATION, LINE_WRITE_NO_ROOM,
                       "RDMI ObjTree failed to write to Buf[%d]", static_cast<int>(room_));
            GPBLIB_DBG_PrintPath(node, context_);
            return false;
        }
        const uint32_t count = WriteInMode(node, dest_ + written_, room_ - written_, isTemplate_);
        if (count == 0 && node->nodeType != GPB_OBJNODE_ROOTDOC && node->gpbFlg == 1)
        {
            GPB_LOG_AS(context_, GPB_LOG_PROGRESS, WRITE_OPERATION, LINE_WRITE_NODE_FAILED,
                       "RDMI ObjTree failed to write to Buf[%d], nodetype=%d, encodeflag=%d", static_cast<int>(room_),
                       static_cast<int>(node->nodeType), static_cast<int>(node->gpbFlg));
            GPBLIB_DBG_PrintPath(node, context_);
            return false;
        }
        written_ += count;
        return true;
    }

    uint32_t Written() const { return written_; }

private:
    uint8_t *dest_;
    uint32_t room_;
    bool isTemplate_;
    const GpbLibContext *context_;
    uint32_t written_ = 0;
};

} // namespace

uint32_t GPBLIB_Encoding_WriteVarInt(uint64_t ulValue, uint8_t *pucDest, uint32_t uiRoom)
{
    return pucDest == nullptr ? 0 : WriteVarint(ulValue, pucDest, uiRoom);
}

uint32_t GPBLIB_ObjNode_WriteVarint(const ObjNode *pstNode, uint8_t *pucDest, uint32_t uiRoom)
{
    return IsWritable(pstNode, pucDest) ? WriteInteger(pstNode, pucDest, uiRoom) : 0;
}

uint32_t GPBLIB_ObjNode_WriteString(const ObjNode *pstNode, uint8_t *pucDest, uint32_t uiRoom)
{
    return IsWritable(pstNode, pucDest) ? WriteString(pstNode, pucDest, uiRoom) : 0;
}

uint32_t GPBLIB_ObjNode_WriteNode(const ObjNode *pstNode, uint8_t *pucDest, uint32_t uiRoom)
{
    return IsWritable(pstNode, pucDest) ? WriteHeader(pstNode, GPB_WIRE_DELIMITED, pucDest, uiRoom) : 0;
}

uint32_t GPBLIB_ObjNode_WriteNodeTemplate(const ObjNode *pstNode, uint8_t *pucDest, uint32_t uiRoom)
{
    return IsWritable(pstNode, pucDest) ? WriteHeader(pstNode, GPB_WIRE_CONTAINER, pucDest, uiRoom) : 0;
}

uint32_t GPBLIB_ObjNode_Write(const ObjNode *pstNode, uint8_t *pucDest, uint32_t uiRoom)
{
    return IsWritable(pstNode, pucDest) ? WriteInMode(pstNode, pucDest, uiRoom, false) : 0;
}

uint32_t GPBLIB_ObjNode_TemplateWrite(const ObjNode *pstNode, uint8_t *pucDest, uint32_t uiRoom)
{
    return IsWritable(pstNode, pucDest) ? WriteInMode(pstNode, pucDest, uiRoom, true) : 0;
}

uint32_t GPBLIB_ObjTree_Write(ObjTree pstTree, uint8_t *pucDest, uint32_t uiRoom, uint32_t uiMode,
                              const GpbLibContext *pstCtx)
{
    if (pstTree == nullptr || pucDest == nullptr || uiRoom == 0 || GPBLIB_ObjTree_GetWriteLen(pstTree) > uiRoom)
    {
        return 0;
    }
    GPB_LOG(pstCtx, GPB_LOG_PROGRESS, LINE_WRITE_BEGIN, "gpb obj tree write begin");
    GPBLIB_ObjTree_Print(pstTree, pstCtx);

    TreeWriter writer(pucDest, uiRoom, uiMode == GPB_OBJTREE_MODE_TEMPLATE, pstCtx);
    CmfTreeIter iter;
    for (CmfTreeNode *link = CMF_TREE_GetPreOrderIter(&pstTree->stTree, &iter, 0); link != nullptr;
         link = CMF_TREE_GetNextByPreOrder(&iter, 0))
    {
        if (!writer.Write(GpbNodeOfLink(link)))
        {
            return 0;
        }
    }
    GPB_LOG(pstCtx, GPB_LOG_PROGRESS, LINE_WRITE_END, "gpb obj tree write end");
    return writer.Written();
}
