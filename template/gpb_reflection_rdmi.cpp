// Builders of templates: nodes together with the attributes that describe them.
#include "gpb_templatelib/gpb_objtree.h"
#include "platform/yos.h"

namespace
{

constexpr uint32_t ENCODED = 1;

ObjNode *CreateContainer(ObjTree tree, ObjNode *parent, uint32_t id)
{
    return GPBLIB_ObjTree_CreateNode(tree, parent, id, ENCODED);
}

} // namespace

ObjNode *GPBLIB_RDMI_CreateInteger(ObjTree pstTree, ObjNode *pstParent, uint32_t uiId, uint64_t ulValue)
{
    return GPBLIB_ObjTree_CreateInteger(pstTree, pstParent, uiId, ulValue, ENCODED);
}

ObjNode *GPBLIB_RDMI_CreateString(ObjTree pstTree, ObjNode *pstParent, uint32_t uiId, uint32_t uiLen,
                                  const void *pvContent)
{
    return GPBLIB_ObjTree_CreateString(pstTree, pstParent, uiId, uiLen, pvContent, ENCODED);
}

ObjNode *GPBLIB_RDMI_CreateNodeAttribute(ObjTree pstTree, ObjNode *pstNode, const RdmiNodeAttr *pstAttr)
{
    // Without a node the attribute would end up below the root.
    if (pstNode == nullptr || pstAttr == nullptr)
    {
        return nullptr;
    }
    ObjNode *attr = CreateContainer(pstTree, pstNode, GPB_RDMI_ID_NODE_ATTR);
    if (attr == nullptr)
    {
        return nullptr;
    }
    pstNode->pNodeAttr = attr;
    const bool complete =
        GPBLIB_RDMI_CreateInteger(pstTree, attr, GPB_RDMI_ID_CLASS_ID, pstAttr->uiClassId) != nullptr &&
        GPBLIB_RDMI_CreateString(pstTree, attr, GPB_RDMI_ID_NAME, pstAttr->uiNameLen, pstAttr->pcName) != nullptr &&
        GPBLIB_RDMI_CreateInteger(pstTree, attr, GPB_RDMI_ID_NODE_FLAG, pstAttr->uiNodeFlag) != nullptr;
    return complete ? attr : nullptr;
}

ObjTree GPBLIB_RDMI_CreateRoot(uint32_t uiModuleId, const char *pcName)
{
    if (pcName == nullptr)
    {
        return nullptr;
    }
    ObjTree tree = GPBLIB_ObjTree_Create(0, uiModuleId);
    const RdmiNodeAttr attr = {0, pcName, YOS_StrLen(pcName), 0};
    if (GPBLIB_RDMI_CreateNodeAttribute(tree, tree, &attr) == nullptr)
    {
        GPBLIB_ObjTree_Delete(&tree);
    }
    return tree;
}

ObjNode *GPBLIB_RDMI_CreateNode(ObjTree pstTree, ObjNode *pstParent, uint32_t uiId, const RdmiNodeAttr *pstAttr)
{
    ObjNode *node = CreateContainer(pstTree, pstParent, uiId);
    return GPBLIB_RDMI_CreateNodeAttribute(pstTree, node, pstAttr) != nullptr ? node : nullptr;
}

ObjNode *GPBLIB_RDMI_AddFieldAttribute(ObjTree pstTree, ObjNode *pstNode, const RdmiFieldAttr *pstAttr)
{
    if (pstNode == nullptr || pstNode->pNodeAttr == nullptr || pstAttr == nullptr)
    {
        return nullptr;
    }
    ObjNode *attr = CreateContainer(pstTree, pstNode->pNodeAttr, GPB_RDMI_ID_FIELD_ATTR);
    if (attr == nullptr)
    {
        return nullptr;
    }
    const bool complete =
        GPBLIB_RDMI_CreateInteger(pstTree, attr, GPB_RDMI_ID_FIELD_ID, pstAttr->usFieldId) != nullptr &&
        GPBLIB_RDMI_CreateString(pstTree, attr, GPB_RDMI_ID_FIELD_NAME, pstAttr->uiFieldNameLen,
                                 pstAttr->pcFieldName) != nullptr &&
        GPBLIB_RDMI_CreateInteger(pstTree, attr, GPB_RDMI_ID_FIELD_NUMBER, pstAttr->usFieldNumber) != nullptr &&
        GPBLIB_RDMI_CreateInteger(pstTree, attr, GPB_RDMI_ID_FIELD_TYPE, pstAttr->uiFieldType) != nullptr &&
        GPBLIB_RDMI_CreateInteger(pstTree, attr, GPB_RDMI_ID_FIELD_FLAG, pstAttr->uiFieldFlag) != nullptr;
    return complete ? attr : nullptr;
}
