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

using NodeWriter = uint32_t (*)(const ObjNode *node, uint8_t *dest, uint32_t room);

constexpr uint32_t NODE_TYPES = GPB_OBJNODE_ROOTDOC + 1;

// By node type; null: the type writes no bytes of its own.
constexpr NodeWriter PLAIN_WRITERS[NODE_TYPES] = {nullptr, GPBLIB_ObjNode_WriteVarint, GPBLIB_ObjNode_WriteString,
                                                  GPBLIB_ObjNode_WriteNode, nullptr};
constexpr NodeWriter TEMPLATE_WRITERS[NODE_TYPES] = {nullptr, GPBLIB_ObjNode_WriteVarint, GPBLIB_ObjNode_WriteString,
                                                     GPBLIB_ObjNode_WriteNodeTemplate,
                                                     GPBLIB_ObjNode_WriteNodeTemplate};

uint32_t WriteByType(const NodeWriter *writers, const ObjNode *node, uint8_t *dest, uint32_t room)
{
    if (node->nodeType >= NODE_TYPES || writers[node->nodeType] == nullptr)
    {
        return 0;
    }
    return writers[node->nodeType](node, dest, room);
}

// The bytes of a varint; their number.
uint32_t FormVarint(uint64_t value, uint8_t *bytes)
{
    uint32_t length = 0;
    while (value > GPB_VARINT_PAYLOAD)
    {
        bytes[length++] = static_cast<uint8_t>(value | GPB_VARINT_CONTINUED);
        value >>= GPB_VARINT_PAYLOAD_BITS;
    }
    bytes[length++] = static_cast<uint8_t>(value);
    return length;
}

// Copies the bytes of a varint where they fit; their number, 0 where they do not.
uint32_t CopyVarint(const uint8_t *bytes, uint32_t length, uint8_t *dest, uint32_t room)
{
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
    uint8_t bytes[GPB_VARINT_MAX_SIZE];
    const uint32_t tagLen = CopyVarint(bytes, FormVarint(GpbWireTag(node, wireType), bytes), dest, room);
    if (tagLen == 0)
    {
        return 0;
    }
    const uint32_t valueLen = CopyVarint(bytes, FormVarint(value, bytes), dest + tagLen, room - tagLen);
    return valueLen == 0 ? 0 : tagLen + valueLen;
}

bool IsWritable(const ObjNode *node, const uint8_t *dest)
{
    return node != nullptr && dest != nullptr;
}

// The nodes of a tree one after the other, into what is left of the destination.
class TreeWriter
{
public:
    TreeWriter(uint8_t *dest, uint32_t room, uint32_t mode, const GpbLibContext *context)
        : dest_(dest), room_(room), mode_(mode), context_(context)
    {
    }

    [[nodiscard]] bool Write(const ObjNode *node)
    {
        if (node->gpbSize > room_ - written_)
        {
            GPB_LOG_AS(context_, GPB_LOG_PROGRESS, WRITE_OPERATION, LINE_WRITE_NO_ROOM,
                       "RDMI ObjTree failed to write to Buf[%d]", static_cast<int>(room_));
            GPBLIB_DBG_PrintPath(node, context_);
            return false;
        }
        const uint32_t count = WriteBytes(node);
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
    uint32_t WriteBytes(const ObjNode *node) const
    {
        uint8_t *cursor = dest_ + written_;
        const uint32_t left = room_ - written_;
        return mode_ == GPB_OBJTREE_MODE_TEMPLATE ? GPBLIB_ObjNode_TemplateWrite(node, cursor, left)
                                                  : GPBLIB_ObjNode_Write(node, cursor, left);
    }

    uint8_t *dest_;
    uint32_t room_;
    uint32_t mode_;
    const GpbLibContext *context_;
    uint32_t written_ = 0;
};

} // namespace

uint32_t GPBLIB_Encoding_WriteVarInt(uint64_t ulValue, uint8_t *pucDest, uint32_t uiRoom)
{
    uint8_t bytes[GPB_VARINT_MAX_SIZE];
    const uint32_t length = FormVarint(ulValue, bytes);
    return pucDest == nullptr ? 0 : CopyVarint(bytes, length, pucDest, uiRoom);
}

uint32_t GPBLIB_ObjNode_WriteVarint(const ObjNode *pstNode, uint8_t *pucDest, uint32_t uiRoom)
{
    return IsWritable(pstNode, pucDest) ? WriteTagAndVarint(pstNode, GPB_WIRE_VARINT, pstNode->value, pucDest, uiRoom)
                                        : 0;
}

uint32_t GPBLIB_ObjNode_WriteString(const ObjNode *pstNode, uint8_t *pucDest, uint32_t uiRoom)
{
    const uint32_t headerLen = GPBLIB_ObjNode_WriteNode(pstNode, pucDest, uiRoom);
    if (headerLen == 0 || pstNode->objLen == 0)
    {
        return headerLen;
    }
    const uint32_t left = uiRoom - headerLen;
    if (pstNode->objLen > left || pstNode->pucString == nullptr)
    {
        return 0;
    }
    if (memcpy_s(pucDest + headerLen, left, pstNode->pucString, pstNode->objLen) != 0)
    {
        ZMP_Assert(GPB_RDMI_TREE_TAG, LINE_COPY_STRING_FAILED, 0);
    }
    return headerLen + pstNode->objLen;
}

uint32_t GPBLIB_ObjNode_WriteNode(const ObjNode *pstNode, uint8_t *pucDest, uint32_t uiRoom)
{
    return IsWritable(pstNode, pucDest)
               ? WriteTagAndVarint(pstNode, GPB_WIRE_DELIMITED, pstNode->objLen, pucDest, uiRoom)
               : 0;
}

uint32_t GPBLIB_ObjNode_WriteNodeTemplate(const ObjNode *pstNode, uint8_t *pucDest, uint32_t uiRoom)
{
    return IsWritable(pstNode, pucDest)
               ? WriteTagAndVarint(pstNode, GPB_WIRE_CONTAINER, pstNode->objLen, pucDest, uiRoom)
               : 0;
}

uint32_t GPBLIB_ObjNode_Write(const ObjNode *pstNode, uint8_t *pucDest, uint32_t uiRoom)
{
    if (pstNode == nullptr || pstNode->gpbFlg == 0)
    {
        return 0;
    }
    return WriteByType(PLAIN_WRITERS, pstNode, pucDest, uiRoom);
}

uint32_t GPBLIB_ObjNode_TemplateWrite(const ObjNode *pstNode, uint8_t *pucDest, uint32_t uiRoom)
{
    return pstNode == nullptr ? 0 : WriteByType(TEMPLATE_WRITERS, pstNode, pucDest, uiRoom);
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

    TreeWriter writer(pucDest, uiRoom, uiMode, pstCtx);
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
