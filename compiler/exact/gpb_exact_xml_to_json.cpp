#include "compiler/exact/gpb_exact_xml_to_json.h"

#include <algorithm>
#include <google/protobuf/descriptor.h>
#include <utility>

#include "compiler/exact/gpb_exact_xml_node.h"
#include "compiler/gpb_json_node.h"
#include "compiler/gpb_module_plan.h"
#include "compiler/gpb_xml_node.h"
#include "descriptor/gpb_exact_module.h"

using google::protobuf::FieldDescriptor;

namespace
{

// Layer of the members of a top-level container.
constexpr uint32_t TOP_MEMBER_LAYER = 2;

cJSON *LastMember(const cJSON *object)
{
    return object->child == nullptr ? nullptr : object->child->prev;
}

// Gives an object arrays of its own while it is being filled.
class ArrayScope
{
public:
    using Arrays = std::map<const FieldDescriptor *, cJSON *>;

    explicit ArrayScope(Arrays &arrays) : arrays_(arrays) { arrays_.swap(around_); }
    ~ArrayScope() { arrays_.swap(around_); }

    ArrayScope(const ArrayScope &) = delete;
    ArrayScope &operator=(const ArrayScope &) = delete;

private:
    Arrays &arrays_;
    Arrays around_;
};

} // namespace

GpbExactXmlToJson::GpbExactXmlToJson(GpbXmlCompilerJson &compiler)
    : compiler_(compiler), tables_(compiler.pstPlan->exactNames), moduleName_(GpbModuleOf(*compiler.pstFileDesc))
{
}

unsigned int GpbExactXmlToJson::WalkDocument(xmlNode *root)
{
    return WalkSiblings(root, {nullptr, compiler_.pstJsonRoot, 1, moduleName_});
}

unsigned int GpbExactXmlToJson::WalkSiblings(xmlNode *first, const Holder &holder)
{
    for (xmlNode *node = first; node != nullptr; node = node->next)
    {
        bool stops = compiler_.ucStopOnError != 0;
        const unsigned int result =
            holder.type == nullptr ? WalkUnknown(node, holder, stops) : WalkNode(node, holder, stops);
        if (result != GPB_COMPILER_OK && stops)
        {
            return result;
        }
    }
    return GPB_COMPILER_OK;
}

unsigned int GpbExactXmlToJson::WalkUnknown(xmlNode *node, const Holder &holder, bool &stops)
{
    switch (GpbClassifyXmlNode(node))
    {
    case GpbXmlNodeKind::IGNORED:
        break;
    case GpbXmlNodeKind::EMPTY:
        stops = true;
        return compiler_.ProcXmlEmptyLeafNode(nullptr, node, holder.object);
    case GpbXmlNodeKind::LEAF:
        return compiler_.ProcXmlLeafNode(nullptr, node, holder.object);
    case GpbXmlNodeKind::CONTAINER:
        return AddContainer(node, holder);
    }
    return GPB_COMPILER_OK;
}

unsigned int GpbExactXmlToJson::WalkNode(xmlNode *node, const Holder &holder, bool &stops)
{
    std::string joined;
    char *text = nullptr;
    switch (GpbReadExactContent(node, text, joined))
    {
    case GpbXmlNodeKind::IGNORED:
        break;
    case GpbXmlNodeKind::EMPTY:
        stops = true;
        return AddEmpty(node, holder);
    case GpbXmlNodeKind::LEAF:
        return AddText(node, text, holder);
    case GpbXmlNodeKind::CONTAINER:
        return AddContainer(node, holder);
    }
    return GPB_COMPILER_OK;
}

unsigned int GpbExactXmlToJson::AddContainer(xmlNode *node, const Holder &holder)
{
    if (!compiler_.HasRoomFor(node))
    {
        return GPB_COMPILER_NO_JSON_ITEM;
    }
    Holder inner = {nullptr, nullptr, TOP_MEMBER_LAYER, holder.module};
    unsigned int levels = 1; // of JSON, where an entry lies in an array
    unsigned int result = GPB_COMPILER_OK;
    // Below an element whose type is not known every container stands for itself, as the root does.
    if (holder.type == nullptr)
    {
        result = compiler_.OpenTopContainer(node, holder.object, inner.object, inner.type);
    }
    else if (const GpbExactField *field = Find(node, GpbExactKind::MESSAGE, holder))
    {
        inner = AddObject(node, *field, holder);
        levels += field->field->is_repeated() ? 1 : 0;
    }
    else
    {
        compiler_.ReportNoField(node);
    }
    if (result != GPB_COMPILER_OK || inner.object == nullptr)
    {
        return GPB_COMPILER_NO_JSON_ITEM;
    }
    const ArrayScope arrays(compiler_.mapListNode);
    compiler_.uiDepth += levels;
    result = WalkSiblings(node->children, inner);
    compiler_.uiDepth -= levels;
    return result;
}

unsigned int GpbExactXmlToJson::AddText(xmlNode *node, const char *text, const Holder &holder)
{
    const GpbExactField *field = GpbFindForText(text, [&](GpbExactKind kind) { return Find(node, kind, holder); });
    if (field != nullptr && field->field->type() == FieldDescriptor::TYPE_MESSAGE)
    {
        return AddObject(node, *field, holder).object == nullptr ? GPB_COMPILER_NO_JSON_ITEM : GPB_COMPILER_OK;
    }
    if (field != nullptr)
    {
        return AddLeaf(node, *field, text, holder);
    }
    // Only what may be a container has a line.
    if (*text != GPB_LINE_BREAK)
    {
        return GPB_COMPILER_NO_FIELD;
    }
    compiler_.ReportNoField(node);
    return GPB_COMPILER_OK;
}

unsigned int GpbExactXmlToJson::AddEmpty(xmlNode *node, const Holder &holder)
{
    const GpbExactField *field = Find(node, GpbExactKind::ANY, holder);
    if (field == nullptr)
    {
        compiler_.ReportNoField(node);
        return GPB_COMPILER_OK;
    }
    if (field->field->type() == FieldDescriptor::TYPE_MESSAGE)
    {
        return AddObject(node, *field, holder).object == nullptr ? GPB_COMPILER_NO_JSON_ITEM : GPB_COMPILER_OK;
    }
    const char *value = GpbEmptyValueOf(*field->field);
    return value == nullptr ? GPB_COMPILER_OK : AddLeaf(node, *field, value, holder);
}

GpbExactXmlToJson::Holder GpbExactXmlToJson::AddObject(xmlNode *node, const GpbExactField &field, const Holder &holder)
{
    // Messages that lie deeper than layers go are in no proto file's names, and need no tables of their own.
    const uint32_t layer = holder.layer + static_cast<uint32_t>(field.cases.size()) + 1;
    Holder inner = {field.field->message_type(), nullptr, std::min(layer, GPB_COMPILER_STACK_DEPTH), holder.module};
    const cJSON *last = LastMember(holder.object);
    cJSON *object = compiler_.CreateJsObject(field.field, node, holder.object);
    if (!QualifyNew(last, node, field, holder) || object == nullptr)
    {
        return inner;
    }
    // An entry has no name: its array's is the one that has the prefix.
    const auto array = compiler_.mapListNode.find(field.field);
    const cJSON *named = array == compiler_.mapListNode.end() ? object : array->second;
    inner.object = object;
    inner.module = GpbSplitName(named->string, holder.module).module;
    return inner;
}

unsigned int GpbExactXmlToJson::AddLeaf(xmlNode *node, const GpbExactField &field, const char *text,
                                        const Holder &holder)
{
    const cJSON *last = LastMember(holder.object);
    const unsigned int result = compiler_.FillLeafText(field.field, node, holder.object, text);
    return QualifyNew(last, node, field, holder) ? result : GPB_COMPILER_NO_JSON_ITEM;
}

const GpbExactField *GpbExactXmlToJson::Find(xmlNode *node, GpbExactKind kind, const Holder &holder)
{
    return tables_.TableOf(holder.type, holder.layer).Find(GpbXmlNodeName(node), kind, GpbExactModuleOf(node->ns));
}

bool GpbExactXmlToJson::QualifyNew(const cJSON *last, xmlNode *node, const GpbExactField &field, const Holder &holder)
{
    cJSON *added = LastMember(holder.object);
    const std::string_view name = GpbXmlNodeName(node);
    const std::string_view module = GpbExactModuleOf(node->ns);
    // Of a leaf and a container that share the name, one has to say its module: an object holds a name once.
    if (added == last || module == holder.module ||
        tables_.TableOf(holder.type, holder.layer).Find(name, GpbExactKind::ANY, holder.module) == &field)
    {
        return true;
    }
    std::string qualified(field.field->has_json_name() ? GpbPbJsonName(*field.field) : std::string());
    const GpbQualifiedName own = GpbSplitName(qualified, name);
    if (own.name != name || own.name.size() == qualified.size())
    {
        // Nobody knows the module of an element without a namespace.
        if (module.empty())
        {
            return true;
        }
        qualified = std::string(module) + GPB_MODULE_NAME_END + std::string(name);
    }
    GpbJsonItem item(cJSON_DetachItemViaPointer(holder.object, added));
    if (GpbJsonAddToObject(compiler_.uiMemHandle, holder.object, qualified.c_str(), std::move(item)) != nullptr)
    {
        return true;
    }
    compiler_.mapListNode.erase(field.field);
    return false;
}
