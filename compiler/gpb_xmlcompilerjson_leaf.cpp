// XML to JSON: leaves.
#include <cjson/cJSON.h>
#include <google/protobuf/descriptor.h>
#include <libxml/tree.h>
#include <memory>

#include "compiler/gpb_identity_value.h"
#include "compiler/gpb_json_leaf.h"
#include "compiler/gpb_json_node.h"
#include "compiler/gpb_xml_node.h"
#include "compiler/gpb_xmlcompilerjson_tag.h"
#include "core/gpb_log.h"
#include "descriptor/gpb_field_finder.h"
#include "gpb_templatelib/gpb_compiler.h"
#include "gpb_templatelib/gpb_descriptor.h"
#include "platform/zmp.h"

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;

namespace
{

constexpr uint32_t LINE_FREE_IDENTITY = 408;

// GPB_GetXmlNodeLeafBitsType's answer for any other leaf.
constexpr uint32_t NO_BITS_TYPE = 1;

// A leaf that is there and has no content is true.
constexpr char EMPTY_LEAF_VALUE[] = "true";

struct IdentityFree
{
    void operator()(char *value) const { ZMP_Free_F(value, GPB_XML_TO_JSON_TAG, LINE_FREE_IDENTITY); }
};

} // namespace

// Flat, since most of a document are leaves.
[[gnu::flatten]] unsigned int GpbXmlCompilerJson::ProcXmlLeafNode(const Descriptor *pstDescriptor, xmlNode *pstNode,
                                                                  cJSON *pstParent)
{
    const xmlNode *child = pstNode->children;
    if (child == nullptr || child->type != XML_TEXT_NODE)
    {
        return GPB_COMPILER_OK;
    }
    const auto *content = reinterpret_cast<const char *>(child->content);
    if (content == nullptr)
    {
        return GPB_COMPILER_OK;
    }
    // Content that begins with a line break is formatting: the element is a container that is only present.
    if (*content == '\n')
    {
        return ProcXmlPresenceContainerNode(pstDescriptor, pstNode, pstParent);
    }
    const FieldDescriptor *field =
        pstFieldFinder->FindLeaf(pstDescriptor, GpbXmlNodeName(pstNode), GPB_GetDescriptorLayerNum(pstDescriptor) + 1)
            .field;
    if (field == nullptr)
    {
        return GPB_COMPILER_NO_FIELD;
    }
    return GpbMayBeIdentity(pstNode) ? FillLeafText(field, pstNode, pstParent, content)
                                     : FillLeafField(field, pstNode, pstParent, content);
}

unsigned int GpbXmlCompilerJson::FillLeafText(const FieldDescriptor *pstField, xmlNode *pstNode, cJSON *pstParent,
                                              const char *pcText)
{
    const std::unique_ptr<char, IdentityFree> identity(GPB_IdentityNodeValueUpdate(uiMemHandle, pstNode, pcText));
    return FillLeafField(pstField, pstNode, pstParent, identity == nullptr ? pcText : identity.get());
}

unsigned int GpbXmlCompilerJson::ProcXmlEmptyLeafNode(const Descriptor *pstDescriptor, xmlNode *pstNode,
                                                      cJSON *pstParent)
{
    if (pstNode->type != XML_ELEMENT_NODE)
    {
        return GPB_COMPILER_OK;
    }
    const FieldDescriptor *field = FindField(pstDescriptor, pstNode);
    if (field == nullptr || field->type() != FieldDescriptor::TYPE_BOOL)
    {
        return GPB_COMPILER_OK;
    }
    return FillLeafField(field, pstNode, pstParent, EMPTY_LEAF_VALUE);
}

unsigned int GpbXmlCompilerJson::FillLeafField(const FieldDescriptor *pstField, xmlNode *pstNode, cJSON *pstParent,
                                               const char *pcText)
{
    const auto type = static_cast<unsigned int>(pstField->type());
    if (type >= GPB_FIELD_TYPE_NUM)
    {
        GPB_LOG(pvLibHandle, GPB_LOG_ERROR, __LINE__,
                "[GpbXmlCompilerJson][FillLeafField]field type[%u] invalid. node [%s] of path type.", type,
                GpbXmlNodeName(pstNode));
        return GPB_COMPILER_NO_TRANSLATOR;
    }
    const GpbJsonAddFunc add = apfnTrans[type];
    if (add == nullptr)
    {
        GPB_LOG(pvLibHandle, GPB_LOG_ERROR, __LINE__,
                "[GpbXmlCompiler][FillLeafField]Fail to find translator for node [%s] type %u.",
                GpbXmlNodeName(pstNode), type);
        return GPB_COMPILER_NO_TRANSLATOR;
    }
    const unsigned int result = CreateJsField(pstField, pstNode, pstParent, pcText, add);
    if (result != GPB_COMPILER_OK)
    {
        GPB_LOG(pvLibHandle, GPB_LOG_ERROR, __LINE__, "Fail to translator node [%s] value [%s].",
                GpbXmlNodeName(pstNode), pcText);
    }
    return result;
}

unsigned int GpbXmlCompilerJson::CreateJsField(const FieldDescriptor *pstField, xmlNode *pstNode, cJSON *pstParent,
                                               const char *pcText, GpbJsonAddFunc pfnAdd)
{
    if (pstField == nullptr)
    {
        return GPB_COMPILER_ERR;
    }
    GpbJsonDocument *document = GpbJsonDocument::Of(pstJsonRoot);
    cJSON *item =
        document != nullptr ? GpbJsonNewLeaf(*document, pfnAdd, pcText) : pfnAdd(pstField, pcText, uiMemHandle);
    GpbJsonItem ownItem(document != nullptr ? nullptr : item);
    if (item == nullptr)
    {
        return GPB_COMPILER_NO_JSON_ITEM;
    }
    const cJSON *added = nullptr;
    if (pstField->is_repeated() && !XmlNodeIsBitsType(pstField, pstNode))
    {
        cJSON *list = GetJsListNode(pstField, pstNode, pstParent);
        if (list == nullptr)
        {
            return GPB_COMPILER_NO_JSON_ITEM;
        }
        added = document != nullptr ? GpbJsonDocument::AddToArray(list, item)
                                    : GpbJsonAddToArray(uiMemHandle, list, std::move(ownItem));
    }
    else
    {
        const char *name = GpbXmlCompilerJson_GetFieldName(pstField, pstNode);
        added = document != nullptr ? document->AddToObject(pstParent, name, item)
                                    : GpbJsonAddToObject(uiMemHandle, pstParent, name, std::move(ownItem));
    }
    return added == nullptr ? GPB_COMPILER_NO_JSON_ITEM : GPB_COMPILER_OK;
}

bool GpbXmlCompilerJson::XmlNodeIsBitsType(const FieldDescriptor *pstField, xmlNode *pstNode)
{
    return pstField->enum_type() != nullptr && GPB_GetXmlNodeLeafBitsType(pstNode) != NO_BITS_TYPE;
}
