// The object nodes of leaves, and the field attributes that describe nodes.
#include <google/protobuf/descriptor.h>

#include "core/gpb_log.h"
#include "core/gpb_protobuf_compat.h"
#include "gpb_templatelib/gpb_template.h"
#include "platform/yos.h"
#include "template/gpb_template_mapping.h"
#include "template/gpb_template_text.h"

using google::protobuf::FieldDescriptor;

namespace
{

constexpr uint32_t FIELD_ID_SHIFT = 32;

uint64_t IntegerValue(const GpbCidFid &ids)
{
    return (static_cast<uint64_t>(ids.ucFieldId) << FIELD_ID_SHIFT) | ids.uiClassId;
}

// Types whose repeated form protobuf can pack: those of a fixed or varint encoding.
bool IsPackableType(FieldDescriptor::Type type)
{
    return type != FieldDescriptor::TYPE_STRING && type != FieldDescriptor::TYPE_GROUP &&
           type != FieldDescriptor::TYPE_MESSAGE && type != FieldDescriptor::TYPE_BYTES;
}

uint32_t FieldFlag(const FieldDescriptor *field, uint32_t isKey)
{
    uint32_t flag = 0;
    if (field->is_repeated())
    {
        flag |= GPB_RDMI_FLAG_REPEATED;
        if (IsPackableType(field->type()))
        {
            flag |= GPB_RDMI_FLAG_PACKABLE;
        }
    }
    if (isKey == 1)
    {
        flag |= GPB_RDMI_FLAG_KEY;
    }
    return flag;
}

// Describes the new node of a leaf. A node that could not be made is no reason to fail: its leaf is left out.
ObjNode *DescribeLeaf(const GpbLibContext *context, ObjTree tree, ObjNode *parent, ObjNode *leafNode,
                      const FieldDescriptor *field, const GpbYangNode *node, const GpbYangLeaf *leaf)
{
    if (leafNode == nullptr)
    {
        return nullptr;
    }
    ObjNode *attr =
        GPBLIB_FieldAttributeAdd(context, tree, parent, leafNode, field, leaf->pcName, leaf->uiFieldId, leaf->uiIsKey);
    if (attr == nullptr)
    {
        // The trailing comma stays: hosts match this line as it is.
        GPB_LOG(context, GPB_LOG_ERROR, __LINE__,
                "failed to AddFieldAttribute [fid=%u, fname=%s] of container[classid=%u, nodename=%s],",
                leaf->uiFieldId, GpbShown(leaf->pcName), node->uiClassId, GpbShown(node->pcName));
    }
    return attr;
}

bool AreGiven(const GpbYangNode *node, const ObjNode *tree, const FieldDescriptor *field, const ObjNode *parent,
              const GpbYangLeaf *leaf, const GpbLibContext *context)
{
    return node != nullptr && tree != nullptr && field != nullptr && parent != nullptr && leaf != nullptr &&
           context != nullptr;
}

} // namespace

ObjNode *GPBLIB_CreateNode(const GpbYangNode *pstNode, ObjTree pstTree, const FieldDescriptor *pstField,
                           const GpbCidFid *pstIds, ObjNode *pstParent, uint32_t uiAllLeaves,
                           const GpbYangLeaf *pstLeaf, const GpbLibContext *pstCtx)
{
    if (pstField == nullptr)
    {
        return nullptr;
    }
    switch (pstField->cpp_type())
    {
    case FieldDescriptor::CPPTYPE_INT32:
    case FieldDescriptor::CPPTYPE_INT64:
    case FieldDescriptor::CPPTYPE_UINT32:
    case FieldDescriptor::CPPTYPE_UINT64:
    case FieldDescriptor::CPPTYPE_BOOL:
    case FieldDescriptor::CPPTYPE_ENUM:
        return GPBLIB_CreateIntegerNode(pstNode, pstTree, pstField, pstIds, pstParent, uiAllLeaves, pstLeaf, pstCtx);
    case FieldDescriptor::CPPTYPE_STRING:
        return GPBLIB_CreateStrNode(pstNode, pstTree, pstField, pstIds, pstParent, uiAllLeaves, pstLeaf, pstCtx);
    case FieldDescriptor::CPPTYPE_MESSAGE:
        return nullptr;
    default:
        GPB_LOG(pstCtx, GPB_LOG_PROGRESS, __LINE__, "unknown field type = %d, name = %s",
                static_cast<int>(pstField->cpp_type()), GpbPbName(*pstField).c_str());
        return nullptr;
    }
}

ObjNode *GPBLIB_CreateIntegerNode(const GpbYangNode *pstNode, ObjTree pstTree, const FieldDescriptor *pstField,
                                  const GpbCidFid *pstIds, ObjNode *pstParent, uint32_t uiAllLeaves,
                                  const GpbYangLeaf *pstLeaf, const GpbLibContext *pstCtx)
{
    if (!AreGiven(pstNode, pstTree, pstField, pstParent, pstLeaf, pstCtx) || pstIds == nullptr)
    {
        return nullptr;
    }
    GpbCidFid ids = *pstIds;
    if (pstCtx->pfnClassMap != nullptr && uiAllLeaves == 0)
    {
        // The key of an ancestor stands for the index by which the class's own rows refer to that ancestor.
        const GpbCidFid key = GpbIndexKey(pstNode, pstLeaf);
        const uint32_t ret = GpbMapIndex(pstCtx, key, &ids);
        if (ret != 0)
        {
            GPB_LOG(pstCtx, GPB_LOG_ERROR, __LINE__,
                    "failed to convert index cid=0x%x, fid=%u to subindex cidfid, container nodename=%s,leafname=%s, "
                    "ret=%u",
                    key.uiClassId, static_cast<uint32_t>(key.ucFieldId), GpbShown(pstNode->pcName),
                    GpbShown(pstLeaf->pcName), ret);
            return nullptr;
        }
    }
    ObjNode *leafNode =
        GPBLIB_RDMI_CreateInteger(pstTree, pstParent, static_cast<uint32_t>(pstField->number()), IntegerValue(ids));
    return DescribeLeaf(pstCtx, pstTree, pstParent, leafNode, pstField, pstNode, pstLeaf);
}

ObjNode *GPBLIB_CreateStrNode(const GpbYangNode *pstNode, ObjTree pstTree, const FieldDescriptor *pstField,
                              const GpbCidFid * /*pstIds*/, ObjNode *pstParent, uint32_t uiAllLeaves,
                              const GpbYangLeaf *pstLeaf, const GpbLibContext *pstCtx)
{
    if (!AreGiven(pstNode, pstTree, pstField, pstParent, pstLeaf, pstCtx))
    {
        return nullptr;
    }
    char ids[GPB_TEMPLATE_ID_TEXT_SIZE] = {};
    if (GPBLIB_FillFidCidOfStrNode_(pstNode, uiAllLeaves, pstLeaf, ids, sizeof(ids), pstCtx) != 0)
    {
        return nullptr;
    }
    ObjNode *leafNode =
        GPBLIB_RDMI_CreateString(pstTree, pstParent, static_cast<uint32_t>(pstField->number()), YOS_StrLen(ids), ids);
    return DescribeLeaf(pstCtx, pstTree, pstParent, leafNode, pstField, pstNode, pstLeaf);
}

ObjNode *GPBLIB_FieldAttributeAdd(const GpbLibContext * /*pstCtx*/, ObjTree pstTree, ObjNode *pstParent,
                                  ObjNode *pstNode, const FieldDescriptor *pstField, const char *pcName,
                                  uint32_t uiFieldId, uint32_t uiIsKey)
{
    if (pstNode == nullptr || pstField == nullptr || pcName == nullptr)
    {
        return nullptr;
    }
    RdmiFieldAttr attr = {};
    attr.usFieldId = static_cast<uint16_t>(uiFieldId);
    attr.usFieldNumber = static_cast<uint16_t>(pstField->number());
    attr.pcFieldName = pcName;
    attr.uiFieldNameLen = YOS_StrLen(pcName);
    attr.uiFieldType = static_cast<uint32_t>(pstField->type());
    attr.uiFieldFlag = FieldFlag(pstField, uiIsKey);
    ObjNode *fieldAttr = GPBLIB_RDMI_AddFieldAttribute(pstTree, pstParent, &attr);
    if (fieldAttr != nullptr)
    {
        pstNode->pFieldAttr = fieldAttr;
    }
    return fieldAttr;
}
