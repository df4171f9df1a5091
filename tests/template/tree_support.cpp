#include "tree_support.h"

#include <algorithm>
#include <cstdio>
#include <sstream>

#include "platform/cmf_tree.h"

namespace gpbtest
{

Bytes fromHex(const std::string &text)
{
    Bytes bytes;
    std::istringstream stream(text);
    unsigned int byte = 0;
    while (stream >> std::hex >> byte)
    {
        bytes.push_back(static_cast<uint8_t>(byte));
    }
    return bytes;
}

std::string toHex(const Bytes &bytes)
{
    std::string text;
    for (const uint8_t byte : bytes)
    {
        char digits[4];
        std::snprintf(digits, sizeof(digits), "%02X ", byte);
        text += digits;
    }
    return text.substr(0, text.empty() ? 0 : text.size() - 1);
}

Bytes write(ObjTree tree, uint32_t mode, const GpbLibContext *context)
{
    Bytes bytes(GPBLIB_ObjTree_GetWriteLen(tree));
    const auto room = static_cast<uint32_t>(bytes.size());
    bytes.resize(GPBLIB_ObjTree_Write(tree, bytes.data(), room, mode, context));
    return bytes;
}

ReadResult read(const Bytes &bytes, uint32_t moduleId, const GpbLibContext *context)
{
    const std::unique_ptr<uint8_t[]> copy(new uint8_t[bytes.size()]);
    std::copy(bytes.begin(), bytes.end(), copy.get());
    ReadResult result = {nullptr, 0xDEADBEEF};
    result.tree.reset(
        GPBLIB_ObjTree_Read(copy.get(), static_cast<uint32_t>(bytes.size()), &result.consumed, moduleId, context));
    return result;
}

std::string describe(const ObjNode *node, bool withFlags)
{
    static constexpr char kTypes[] = "?ISCR";
    std::string text(1, kTypes[node->nodeType]);
    text += std::to_string(node->id);
    if (withFlags && node->gpbFlg == 0 && node->nodeType != GPB_OBJNODE_ROOTDOC)
    {
        text += "-";
    }
    if (node->nodeType == GPB_OBJNODE_INTLEAF)
    {
        return text + "=" + std::to_string(node->value);
    }
    if (node->nodeType == GPB_OBJNODE_STRLEAF)
    {
        const std::string content(reinterpret_cast<const char *>(node->pucString), node->objLen);
        return text + "='" + content + "'";
    }
    text += "(";
    for (size_t i = 0; const ObjNode *child = childAt(node, i); ++i)
    {
        text += (i == 0 ? "" : " ") + describe(child, withFlags);
    }
    return text + ")";
}

ObjNode *childAt(const ObjNode *node, size_t index)
{
    CmfTreeNode *child = CMF_TREE_GetFirstChild(&node->stTree, 0);
    for (; child != nullptr && index > 0; --index)
    {
        child = CMF_TREE_GetNextSibling(child, 0);
    }
    return reinterpret_cast<ObjNode *>(child);
}

TreePtr nestedTree(uint32_t moduleId, size_t count)
{
    TreePtr tree(GPBLIB_ObjTree_Create(0, moduleId));
    ObjNode *parent = tree.get();
    for (size_t i = 0; i < count; ++i)
    {
        parent = GPBLIB_ObjTree_CreateNode(tree.get(), parent, 1, 1);
    }
    return tree;
}

TreePtr randomTree(std::mt19937_64 &random, size_t nodes, uint32_t maxId, uint32_t moduleId)
{
    TreePtr tree(GPBLIB_ObjTree_Create(0, moduleId));
    std::vector<ObjNode *> parents = {tree.get()};
    for (size_t i = 0; i < nodes; ++i)
    {
        ObjNode *parent = parents[static_cast<size_t>(random() % parents.size())];
        const uint32_t id = 1 + (static_cast<uint32_t>(random()) >> (random() % 32)) % maxId;
        switch (random() % 3)
        {
        case 0:
            GPBLIB_ObjTree_CreateInteger(tree.get(), parent, id, random() >> (random() % 64), 1);
            break;
        case 1:
        {
            const std::string content(static_cast<size_t>(1 + random() % 300), static_cast<char>('a' + random() % 26));
            GPBLIB_ObjTree_CreateString(tree.get(), parent, id, static_cast<uint32_t>(content.size()), content.data(),
                                        1);
            break;
        }
        default:
            parents.push_back(GPBLIB_ObjTree_CreateNode(tree.get(), parent, id, 1));
        }
    }
    return tree;
}

} // namespace gpbtest
