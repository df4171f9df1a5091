// XML to JSON: the walk over the document, containers and list entries.
#include <cjson/cJSON.h>
#include <google/protobuf/compiler/importer.h>
#include <google/protobuf/descriptor.h>
#include <libxml/tree.h>
#include <string>

#include "compiler/gpb_json_document.h"
#include "compiler/gpb_json_node.h"
#include "compiler/gpb_layer.h"
#include "compiler/gpb_xml_node.h"
#include "core/gpb_log.h"
#include "descriptor/gpb_field_finder.h"
#include "gpb_templatelib/gpb_compiler.h"
#include "gpb_templatelib/gpb_descriptor.h"

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;

namespace
{

// The steps that log, in either setting.
constexpr char CONTAINER[] = "ProcXmlContainerNode";
constexpr char FIND_FIELD[] = "FindField";

// An empty object or array as a member of an object below `root`.
cJSON *AddMember(cJSON *root, uint32_t moduleId, cJSON *parent, const char *name, int type)
{
    if (GpbJsonDocument *document = GpbJsonDocument::Of(root))
    {
        return document->AddToObject(parent, name, document->NewItem(type));
    }
    return type == cJSON_Array ? GpbLib_Json_ObjectAddArray(moduleId, parent, name)
                               : GpbLib_Json_ObjectAddObject(moduleId, parent, name);
}

} // namespace

unsigned int GpbXmlCompilerJson::IterXmlDoc(const Descriptor *pstDescriptor, xmlNode *pstNode, cJSON *pstParent)
{
    for (xmlNode *node = pstNode; node != nullptr; node = node->next)
    {
        unsigned int result = GPB_COMPILER_OK;
        bool stops = ucStopOnError != 0;
        switch (GpbClassifyXmlNode(node))
        {
        case GpbXmlNodeKind::IGNORED:
            break;
        case GpbXmlNodeKind::EMPTY:
            result = ProcXmlEmptyLeafNode(pstDescriptor, node, pstParent);
            stops = true;
            break;
        case GpbXmlNodeKind::LEAF:
            result = ProcXmlLeafNode(pstDescriptor, node, pstParent);
            break;
        case GpbXmlNodeKind::CONTAINER:
            result = ProcXmlContainerNode(pstDescriptor, node, pstParent);
            break;
        }
        if (result != GPB_COMPILER_OK && stops)
        {
            return result;
        }
    }
    // Failures that did not stop the walk deliberately stay unreported, that of the root element included: the document
    // then has what could be made of it.
    return GPB_COMPILER_OK;
}

unsigned int GpbXmlCompilerJson::ProcXmlContainerNode(const Descriptor *pstDescriptor, xmlNode *pstNode,
                                                      cJSON *pstParent)
{
    if (!HasRoomFor(pstNode))
    {
        return GPB_COMPILER_NO_JSON_ITEM;
    }
    cJSON *object = nullptr;
    const Descriptor *descriptor = nullptr;
    // Below an element whose type is not known every container stands for itself, as the root does.
    if (pstDescriptor == nullptr)
    {
        const unsigned int result = OpenTopContainer(pstNode, pstParent, object, descriptor);
        if (result != GPB_COMPILER_OK)
        {
            return result;
        }
    }
    else
    {
        const FieldDescriptor *field = FindField(pstDescriptor, pstNode);
        object = CreateJsObject(field, pstNode, pstParent);
        descriptor = field == nullptr ? nullptr : field->message_type();
    }
    if (object == nullptr)
    {
        return GPB_COMPILER_NO_JSON_ITEM;
    }
    ++uiDepth;
    const unsigned int result = IterXmlDoc(descriptor, pstNode->children, object);
    --uiDepth;
    return result;
}

bool GpbXmlCompilerJson::HasRoomFor(xmlNode *pstNode)
{
    if (uiDepth < GPB_JSON_MAX_DEPTH)
    {
        return true;
    }
    GPB_LOG_AS(pvLibHandle, GPB_LOG_ERROR, CONTAINER, __LINE__,
               "[GpbXmlCompilerJson][ProcXmlContainerNode]Fail to make container [%s]. depth is %u.",
               GpbXmlNodeName(pstNode), GPB_JSON_MAX_DEPTH);
    return false;
}

unsigned int GpbXmlCompilerJson::OpenTopContainer(xmlNode *pstNode, cJSON *pstParent, cJSON *&pstObject,
                                                  const Descriptor *&pstDescriptor) const
{
    pstObject = CreateJsTopNode(pstNode, pstParent);
    std::string typeName;
    if (!GpbTopTypeName(*pstFileDesc, GpbXmlNodeName(pstNode), typeName))
    {
        return GPB_COMPILER_NO_JSON_ITEM;
    }
    pstDescriptor = pstImporter->pool()->FindMessageTypeByName(typeName);
    return GPB_COMPILER_OK;
}

unsigned int GpbXmlCompilerJson::ProcXmlPresenceContainerNode(const Descriptor *pstDescriptor, xmlNode *pstNode,
                                                              cJSON *pstParent)
{
    const FieldDescriptor *field = FindField(pstDescriptor, pstNode);
    if (field == nullptr)
    {
        return GPB_COMPILER_OK;
    }
    return CreateJsObject(field, pstNode, pstParent) == nullptr ? GPB_COMPILER_NO_JSON_ITEM : GPB_COMPILER_OK;
}

const FieldDescriptor *GpbXmlCompilerJson::FindField(const Descriptor *pstDescriptor, xmlNode *pstNode)
{
    const char *name = GpbXmlNodeName(pstNode);
    const FieldDescriptor *field =
        pstFieldFinder->FindNode(pstDescriptor, name, GPB_GetDescriptorLayerNum(pstDescriptor) + 1).field;
    if (field == nullptr)
    {
        ReportNoField(pstNode);
    }
    return field;
}

void GpbXmlCompilerJson::ReportNoField(xmlNode *pstNode)
{
    GPB_LOG_AS(pvLibHandle, GPB_LOG_SKIP, FIND_FIELD, __LINE__, "Fail to find field descriptore for name %s.",
               GpbXmlNodeName(pstNode));
}

cJSON *GpbXmlCompilerJson::CreateJsTopNode(xmlNode *pstNode, cJSON *pstParent) const
{
    return AddMember(pstJsonRoot, uiMemHandle, pstParent, GpbXmlCompilerJson_GetFieldName(nullptr, pstNode),
                     cJSON_Object);
}

cJSON *GpbXmlCompilerJson::CreateJsObject(const FieldDescriptor *pstField, xmlNode *pstNode, cJSON *pstParent)
{
    if (pstField == nullptr)
    {
        return nullptr;
    }
    if (!pstField->is_repeated())
    {
        return AddMember(pstJsonRoot, uiMemHandle, pstParent, GpbXmlCompilerJson_GetFieldName(pstField, pstNode),
                         cJSON_Object);
    }
    cJSON *list = GetJsListNode(pstField, pstNode, pstParent);
    if (list == nullptr)
    {
        return nullptr;
    }
    if (GpbJsonDocument *document = GpbJsonDocument::Of(pstJsonRoot))
    {
        return GpbJsonDocument::AddToArray(list, document->NewItem(cJSON_Object));
    }
    return GpbJsonAddToArray(uiMemHandle, list, GpbJsonItem(GpbLib_Json_AllocObject(uiMemHandle)));
}

cJSON *GpbXmlCompilerJson::GetJsListNode(const FieldDescriptor *pstField, xmlNode *pstNode, cJSON *pstParent)
{
    // Deliberately by the field alone: entries of a list that lies in another list all go to the first one's array.
    const auto known = mapListNode.find(pstField);
    if (known != mapListNode.end())
    {
        return known->second;
    }
    cJSON *list =
        AddMember(pstJsonRoot, uiMemHandle, pstParent, GpbXmlCompilerJson_GetFieldName(pstField, pstNode), cJSON_Array);
    if (list != nullptr)
    {
        mapListNode.emplace(pstField, list);
    }
    return list;
}
