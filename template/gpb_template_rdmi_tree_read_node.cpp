// Reading one node of an object tree.
#include "core/gpb_memory.h"
#include "gpb_templatelib/gpb_objtree.h"
#include "platform/safe_string.h"
#include "platform/zmp.h"
#include "template/gpb_template_rdmi_tree_tag.h"
#include "template/gpb_template_rdmi_tree_wire.h"

namespace
{

constexpr uint32_t LINE_ZERO_CONTENT_FAILED = 474;
constexpr uint32_t LINE_COPY_CONTENT_FAILED = 479;

constexpr uint32_t FIXED64_SIZE = 8;
constexpr uint32_t FIXED32_SIZE = 4;
constexpr uint32_t BITS_PER_BYTE = 8;

uint32_t ReadFixed(ObjNode *node, const uint8_t *bytes, uint32_t length, uint32_t size)
{
    if (node == nullptr || bytes == nullptr || length < size)
    {
        return 0;
    }
    uint64_t value = 0;
    for (uint32_t i = 0; i < size; ++i)
    {
        value |= static_cast<uint64_t>(bytes[i]) << (BITS_PER_BYTE * i);
    }
    node->nodeType = GPB_OBJNODE_INTLEAF;
    node->value = value;
    return size;
}

// A copy of string content; null without memory.
uint8_t *CopyContent(const ObjNode *tree, const uint8_t *bytes, uint32_t length)
{
    auto *content = static_cast<uint8_t *>(GPBLIB_ObjTree_Malloc(tree, length));
    if (content == nullptr)
    {
        return nullptr;
    }
    GpbZero(content, length, GPB_RDMI_TREE_TAG, LINE_ZERO_CONTENT_FAILED);
    if (memcpy_s(content, length, bytes, length) != 0)
    {
        ZMP_Assert(GPB_RDMI_TREE_TAG, LINE_COPY_CONTENT_FAILED, 0);
    }
    return content;
}

// GPBLIB_Encoding_ReadVarInt for tags and lengths, nearly all of which are one byte.
uint32_t ReadShortVarint(uint64_t *value, const uint8_t *bytes, uint32_t length)
{
    if (bytes != nullptr && length != 0 && bytes[0] <= GPB_VARINT_PAYLOAD)
    {
        *value = bytes[0];
        return 1;
    }
    return GPBLIB_Encoding_ReadVarInt(value, bytes, length);
}

} // namespace

uint32_t GPBLIB_Encoding_ReadVarInt(uint64_t *pulValue, const uint8_t *pucBytes, uint32_t uiLen)
{
    if (pulValue == nullptr || pucBytes == nullptr)
    {
        return 0;
    }
    const uint32_t room = uiLen < GPB_VARINT_MAX_SIZE ? uiLen : GPB_VARINT_MAX_SIZE;
    uint64_t value = 0;
    for (uint32_t i = 0; i < room; ++i)
    {
        const uint64_t byte = pucBytes[i];
        value |= (byte & GPB_VARINT_PAYLOAD) << (GPB_VARINT_PAYLOAD_BITS * i);
        if ((byte & GPB_VARINT_CONTINUED) == 0)
        {
            *pulValue = value;
            return i + 1;
        }
    }
    return 0;
}

uint32_t GPBLIB_ObjNode_Read_VARINT(ObjNode *pstNode, const uint8_t *pucBytes, uint32_t uiLen)
{
    uint64_t value = 0;
    const uint32_t count = GPBLIB_Encoding_ReadVarInt(&value, pucBytes, uiLen);
    if (pstNode == nullptr || count == 0)
    {
        return 0;
    }
    pstNode->nodeType = GPB_OBJNODE_INTLEAF;
    pstNode->value = value;
    return count;
}

uint32_t GPBLIB_ObjNode_Read_FIXED64(ObjNode *pstNode, const uint8_t *pucBytes, uint32_t uiLen)
{
    return ReadFixed(pstNode, pucBytes, uiLen, FIXED64_SIZE);
}

uint32_t GPBLIB_ObjNode_Read_FIXED32(ObjNode *pstNode, const uint8_t *pucBytes, uint32_t uiLen)
{
    return ReadFixed(pstNode, pucBytes, uiLen, FIXED32_SIZE);
}

uint32_t GPBLIB_ObjNode_Read_LENGTH_DELIMITED(const ObjNode *pstTree, ObjNode *pstNode, const uint8_t *pucBytes,
                                              uint32_t uiLen)
{
    uint64_t length = 0;
    const uint32_t count = ReadShortVarint(&length, pucBytes, uiLen);
    // Compared in 64 bits: a length that is cut to 32 bits first would pass.
    if (pstNode == nullptr || count == 0 || length > uiLen - count)
    {
        return 0;
    }
    const auto contentLen = static_cast<uint32_t>(length);
    uint8_t *content = nullptr;
    if (contentLen != 0)
    {
        // Before the node changes: where it is the root itself, it is also the tree to allocate from.
        content = CopyContent(pstTree, pucBytes + count, contentLen);
        if (content == nullptr)
        {
            return 0;
        }
    }
    pstNode->nodeType = GPB_OBJNODE_STRLEAF;
    pstNode->objLen = contentLen;
    pstNode->value = 0; // the pointer alone may be narrower than what a root held here
    pstNode->pucString = content;
    return count + contentLen;
}

uint32_t GPBLIB_ObjNode_Read_NODE(const ObjNode *pstTree, ObjNode *pstNode, const uint8_t *pucBytes, uint32_t uiLen)
{
    uint64_t length = 0;
    const uint32_t count = ReadShortVarint(&length, pucBytes, uiLen);
    // A length may promise more than there is, the children are read as far as they go; but it must be a length.
    if (pstNode == nullptr || count == 0 || length > UINT32_MAX)
    {
        return 0;
    }
    pstNode->objLen = static_cast<uint32_t>(length);
    const bool isRoot = pstNode == pstTree || pstNode->nodeType == GPB_OBJNODE_ROOTDOC;
    pstNode->nodeType = isRoot ? GPB_OBJNODE_ROOTDOC : GPB_OBJNODE_CONTAIN;
    return count;
}

uint32_t GPBLIB_ObjNode_Read(const ObjNode *pstTree, ObjNode *pstNode, const uint8_t *pucBytes, uint32_t uiLen)
{
    uint64_t tag = 0;
    const uint32_t tagLen = ReadShortVarint(&tag, pucBytes, uiLen);
    if (pstNode == nullptr || tagLen == 0)
    {
        return 0;
    }
    pstNode->id = static_cast<uint32_t>(tag >> GPB_WIRE_TYPE_BITS);
    const uint8_t *rest = pucBytes + tagLen;
    const uint32_t restLen = uiLen - tagLen;
    uint32_t count = 0;
    switch (tag & GPB_WIRE_TYPE_MASK)
    {
    case GPB_WIRE_VARINT:
        count = GPBLIB_ObjNode_Read_VARINT(pstNode, rest, restLen);
        break;
    case GPB_WIRE_FIXED64:
        count = GPBLIB_ObjNode_Read_FIXED64(pstNode, rest, restLen);
        break;
    case GPB_WIRE_DELIMITED:
        count = GPBLIB_ObjNode_Read_LENGTH_DELIMITED(pstTree, pstNode, rest, restLen);
        break;
    case GPB_WIRE_FIXED32:
        count = GPBLIB_ObjNode_Read_FIXED32(pstNode, rest, restLen);
        break;
    case GPB_WIRE_CONTAINER:
        count = GPBLIB_ObjNode_Read_NODE(pstTree, pstNode, rest, restLen);
        break;
    default: // groups (3, 4), which templates do not have, and 7, which nobody has
        break;
    }
    return count == 0 ? 0 : tagLen + count;
}
