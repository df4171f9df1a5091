// XML elements: their paths, and the leaves whose values need special handling.
#include <libxml/tree.h>

#include "core/gpb_memory.h"
#include "descriptor/gpb_util_tables.h"
#include "descriptor/gpb_util_tag.h"
#include "gpb_templatelib/gpb_descriptor.h"
#include "platform/safe_string.h"
#include "platform/yos.h"
#include "platform/zmp.h"

namespace
{

const char *NameOf(const xmlNode *node)
{
    return reinterpret_cast<const char *>(node->name);
}

// The path of an element, as the two tables are searched with it.
struct NodePath
{
    char text[GPB_PATH_SIZE] = {};
};

bool HasName(const xmlNode *node, const char *name)
{
    return node->name != nullptr && YOS_StrCmp(NameOf(node), name) == 0;
}

bool Contains(const char *text, const char *fragment)
{
    return YOS_StrStr(text, fragment) != nullptr;
}

} // namespace

uint32_t GPB_BuildXmlNodePath(xmlNode *pstNode, char *pcDest, uint32_t uiSize)
{
    if (pstNode == nullptr)
    {
        return 0;
    }
    const auto *document = reinterpret_cast<const xmlNode *>(pstNode->doc);
    if (pstNode == document)
    {
        return 0;
    }
    if (pcDest == nullptr)
    {
        return 1;
    }
    const xmlNode *elements[GPB_MAX_NODE_PATH];
    uint32_t count = 0;
    for (const xmlNode *node = pstNode; node != nullptr && node != document; node = node->parent)
    {
        if (count == GPB_MAX_NODE_PATH)
        {
            return 1;
        }
        elements[count++] = node;
    }
    uint32_t length = 0;
    while (count > 0)
    {
        const xmlNode *node = elements[--count];
        const char *name = node->name == nullptr ? "" : NameOf(node);
        const int written = sprintf_s(pcDest + length, uiSize - length, "/%s", name);
        if (written < 0)
        {
            return 1;
        }
        length += static_cast<uint32_t>(written);
    }
    return 0;
}

uint32_t GPB_GetXmlNodeLeafIdtType(xmlNode *pstNode, const char *pcValue, const char **ppcModuleName)
{
    if (pstNode == nullptr || pcValue == nullptr)
    {
        return 1;
    }
    for (const GpbIdentityPrefix &row : GPB_IDENTITY_PREFIXES)
    {
        if (!HasName(pstNode, row.leafName))
        {
            continue;
        }
        NodePath path;
        if (GPB_BuildXmlNodePath(pstNode, path.text, sizeof(path.text)) != 0)
        {
            return 1;
        }
        if (Contains(path.text, row.pathFragment) && Contains(pcValue, row.shortPrefix))
        {
            if (ppcModuleName != nullptr)
            {
                *ppcModuleName = row.moduleName;
            }
            return 0;
        }
    }
    return 1;
}

uint32_t GPB_GetXmlNodeLeafBitsType(xmlNode *pstNode)
{
    if (pstNode == nullptr)
    {
        return 1;
    }
    for (const GpbBitsLeaf &row : GPB_BITS_LEAVES)
    {
        if (!HasName(pstNode, row.leafName))
        {
            continue;
        }
        NodePath path;
        if (GPB_BuildXmlNodePath(pstNode, path.text, sizeof(path.text)) != 0)
        {
            return 1;
        }
        if (Contains(path.text, row.pathFragment))
        {
            return 0;
        }
    }
    return 1;
}

char *GPB_IdentityNodeValueUpdate(uint32_t uiModuleId, xmlNode *pstNode, const char *pcValue)
{
    // Only an element has a list of namespace declarations; other nodes end before it.
    if (pstNode == nullptr || pstNode->type != XML_ELEMENT_NODE || pstNode->nsDef == nullptr)
    {
        return nullptr;
    }
    const char *moduleName = nullptr;
    if (GPB_GetXmlNodeLeafIdtType(pstNode, pcValue, &moduleName) != 0 || moduleName == nullptr)
    {
        return nullptr;
    }
    const char *identity = YOS_StrChr(pcValue, ':');
    if (identity == nullptr)
    {
        return nullptr;
    }
    const size_t size = static_cast<size_t>(YOS_StrLen(moduleName)) + YOS_StrLen(identity) + 1;
    auto *value = static_cast<char *>(GpbMalloc(uiModuleId, size, GPB_UTIL_TAG, __LINE__));
    if (value == nullptr)
    {
        return nullptr;
    }
    if (sprintf_s(value, size, "%s%s", moduleName, identity) < 0)
    {
        ZMP_Free_F(value, GPB_UTIL_TAG, __LINE__);
        return nullptr;
    }
    return value;
}
