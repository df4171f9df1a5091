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

[[gnu::cold]] void ReportFailedCopy(uint32_t line)
{
    ZMP_Assert(GPB_RDMI_TREE_TAG, line, 0);
}

// Where bytes go, and how many of them fit. Steps that write return false where theirs do not.
struct Output
{
    Output(uint8_t *begin, uint32_t size) : dest(begin), room(size) {}

    uint8_t *dest;
    uint32_t room;

    // Takes the next `count` bytes, of which there are as many; returns what there was.
    Output Take(uint32_t count)
    {
        const Output before = *this;
        dest += count;
        room -= count;
        return before;
    }
};

bool WriteVarint(uint64_t value, Output *output)
{
    uint8_t bytes[GPB_VARINT_MAX_SIZE];
    const uint32_t length = GpbFormVarint(value, bytes);
    if (!GpbLikely(length <= output->room))
    {
        return false;
    }
    const Output place = output->Take(length);
    if (memcpy_s(place.dest, place.room, bytes, length) != 0)
    {
        ReportFailedCopy(LINE_COPY_VARINT_FAILED);
    }
    return true;
}

// A tag followed by one varint, which is all that every node but a string consists of.
bool WriteTagAndVarint(const ObjNode *node, uint32_t wireType, uint64_t value, Output *output)
{
    return WriteVarint(GpbWireTag(node, wireType), output) && WriteVarint(value, output);
}

bool WriteContent(const ObjNode *node, Output *output)
{
    const uint32_t length = node->objLen;
    if (length == 0)
    {
        return true;
    }
    if (length > output->room || node->pucString == nullptr)
    {
        return false;
    }
    const Output place = output->Take(length);
    if (memcpy_s(place.dest, place.room, node->pucString, length) != 0)
    {
        ReportFailedCopy(LINE_COPY_STRING_FAILED);
    }
    return true;
}

enum class Mode
{
    PLAIN,
    TEMPLATE
};

// The wire type of each node type: none, integer, string, container, root.
constexpr uint32_t NODE_TYPES = 5;
constexpr uint32_t NOT_WRITTEN = 8; // no wire type
static_assert(GPB_OBJNODE_INVALID == 0 && GPB_OBJNODE_INTLEAF == 1 && GPB_OBJNODE_STRLEAF == 2 &&
                  GPB_OBJNODE_CONTAIN == 3 && GPB_OBJNODE_ROOTDOC == 4,
              "the places in these tables");
constexpr uint32_t PLAIN_WIRE_TYPES[NODE_TYPES] = {NOT_WRITTEN, GPB_WIRE_VARINT, GPB_WIRE_DELIMITED, GPB_WIRE_DELIMITED,
                                                   NOT_WRITTEN};
constexpr uint32_t TEMPLATE_WIRE_TYPES[NODE_TYPES] = {NOT_WRITTEN, GPB_WIRE_VARINT, GPB_WIRE_DELIMITED,
                                                      GPB_WIRE_CONTAINER, GPB_WIRE_CONTAINER};

template <Mode MODE>
uint32_t WireTypeOf(uint32_t nodeType)
{
    if (nodeType >= NODE_TYPES)
    {
        return NOT_WRITTEN;
    }
    return MODE == Mode::TEMPLATE ? TEMPLATE_WIRE_TYPES[nodeType] : PLAIN_WIRE_TYPES[nodeType];
}

// A node as the mode has it: templates know no encode flag. False also for a node without bytes of its own.
template <Mode MODE>
bool WriteInMode(const ObjNode *node, Output *output)
{
    const uint32_t wireType = WireTypeOf<MODE>(node->nodeType);
    if (!GpbLikely(wireType != NOT_WRITTEN && (MODE == Mode::TEMPLATE || node->gpbFlg != 0)))
    {
        return false;
    }
    const uint64_t integer = node->value;
    const uint64_t length = node->objLen;
    const uint64_t value = wireType == GPB_WIRE_VARINT ? integer : length;
    return WriteTagAndVarint(node, wireType, value, output) &&
           (node->nodeType != GPB_OBJNODE_STRLEAF || WriteContent(node, output));
}

// Calls a step with a room; the bytes that it wrote, 0 when it failed or had nowhere to write.
template <typename Step>
uint32_t CountBytes(const ObjNode *node, uint8_t *dest, uint32_t room, Step step)
{
    Output output(dest, room);
    return node != nullptr && dest != nullptr && step(&output) ? room - output.room : 0;
}

// Writes the nodes of a tree until one cannot be written, which it returns; null when all are.
//
// With all its steps in it: a node has few bytes, and each call on the way to them costs as much as one of these.
template <Mode MODE>
[[gnu::flatten, gnu::noinline]] const ObjNode *WriteNodes(ObjTree tree, Output *output)
{
    CmfTreeIter iter;
    for (CmfTreeNode *link = CMF_TREE_GetPreOrderIter(&tree->stTree, &iter, 0); link != nullptr;
         link = CMF_TREE_GetNextByPreOrder(&iter, 0))
    {
        const ObjNode *node = GpbNodeOfLink(link);
        Output left = *output;
        if (node->gpbSize > left.room)
        {
            return node;
        }
        if (WriteInMode<MODE>(node, &left))
        {
            *output = left;
        }
        else if (node->nodeType != GPB_OBJNODE_ROOTDOC && node->gpbFlg == 1)
        {
            return node;
        }
    }
    return nullptr;
}

void LogFailedNode(const ObjNode *node, uint32_t left, uint32_t room, const GpbLibContext *context)
{
    if (node->gpbSize > left)
    {
        GPB_LOG_AS(context, GPB_LOG_PROGRESS, WRITE_OPERATION, LINE_WRITE_NO_ROOM,
                   "RDMI ObjTree failed to write to Buf[%d]", static_cast<int>(room));
    }
    else
    {
        GPB_LOG_AS(context, GPB_LOG_PROGRESS, WRITE_OPERATION, LINE_WRITE_NODE_FAILED,
                   "RDMI ObjTree failed to write to Buf[%d], nodetype=%d, encodeflag=%d", static_cast<int>(room),
                   static_cast<int>(node->nodeType), static_cast<int>(node->gpbFlg));
    }
    GPBLIB_DBG_PrintPath(node, context);
}

} // namespace

uint32_t GPBLIB_Encoding_WriteVarInt(uint64_t ulValue, uint8_t *pucDest, uint32_t uiRoom)
{
    Output output(pucDest, uiRoom);
    return pucDest != nullptr && WriteVarint(ulValue, &output) ? uiRoom - output.room : 0;
}

uint32_t GPBLIB_ObjNode_WriteVarint(const ObjNode *pstNode, uint8_t *pucDest, uint32_t uiRoom)
{
    return CountBytes(pstNode, pucDest, uiRoom,
                      [=](Output *output)
                      { return WriteTagAndVarint(pstNode, GPB_WIRE_VARINT, pstNode->value, output); });
}

uint32_t GPBLIB_ObjNode_WriteString(const ObjNode *pstNode, uint8_t *pucDest, uint32_t uiRoom)
{
    return CountBytes(pstNode, pucDest, uiRoom,
                      [=](Output *output) {
                          return WriteTagAndVarint(pstNode, GPB_WIRE_DELIMITED, pstNode->objLen, output) &&
                                 WriteContent(pstNode, output);
                      });
}

uint32_t GPBLIB_ObjNode_WriteNode(const ObjNode *pstNode, uint8_t *pucDest, uint32_t uiRoom)
{
    return CountBytes(pstNode, pucDest, uiRoom,
                      [=](Output *output)
                      { return WriteTagAndVarint(pstNode, GPB_WIRE_DELIMITED, pstNode->objLen, output); });
}

uint32_t GPBLIB_ObjNode_WriteNodeTemplate(const ObjNode *pstNode, uint8_t *pucDest, uint32_t uiRoom)
{
    return CountBytes(pstNode, pucDest, uiRoom,
                      [=](Output *output)
                      { return WriteTagAndVarint(pstNode, GPB_WIRE_CONTAINER, pstNode->objLen, output); });
}

uint32_t GPBLIB_ObjNode_Write(const ObjNode *pstNode, uint8_t *pucDest, uint32_t uiRoom)
{
    return CountBytes(pstNode, pucDest, uiRoom,
                      [=](Output *output) { return WriteInMode<Mode::PLAIN>(pstNode, output); });
}

uint32_t GPBLIB_ObjNode_TemplateWrite(const ObjNode *pstNode, uint8_t *pucDest, uint32_t uiRoom)
{
    return CountBytes(pstNode, pucDest, uiRoom,
                      [=](Output *output) { return WriteInMode<Mode::TEMPLATE>(pstNode, output); });
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

    Output output(pucDest, uiRoom);
    const ObjNode *failed = uiMode == GPB_OBJTREE_MODE_TEMPLATE ? WriteNodes<Mode::TEMPLATE>(pstTree, &output)
                                                                : WriteNodes<Mode::PLAIN>(pstTree, &output);
    if (failed != nullptr)
    {
        LogFailedNode(failed, output.room, uiRoom, pstCtx);
        return 0;
    }
    GPB_LOG(pstCtx, GPB_LOG_PROGRESS, LINE_WRITE_END, "gpb obj tree write end");
    return uiRoom - output.room;
}
