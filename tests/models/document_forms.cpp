#include "document_forms.h"

#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libyang/libyang.h>

#include <cstdlib>
#include <cstring>

#include "gpb_templatelib/gpb_compiler_c.h"

namespace gpbtest
{

namespace
{

using XmlDocumentPointer = std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)>;

XmlDocumentPointer parseXml(const std::string &text)
{
    return {xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr, XML_PARSE_HUGE), &xmlFreeDoc};
}

std::string print(const lyd_node &top, LYD_FORMAT format)
{
    char *text = nullptr;
    lyd_print_mem(&text, &top, format, LYD_PRINT_SHRINK | LYD_PRINT_WD_EXPLICIT);
    const std::string result = text != nullptr ? text : "";
    std::free(text);
    return result;
}

/** Both trees have the same nodes in the same order. */
void fillEmptyElements(const lyd_node &data, xmlNode &element)
{
    if (element.children == nullptr && (data.schema->nodetype & (LYS_CONTAINER | LYS_LIST)) != 0)
    {
        xmlNodeAddContent(&element, reinterpret_cast<const xmlChar *>("\n"));
        return;
    }
    xmlNode *child = xmlFirstElementChild(&element);
    for (const lyd_node *node = lyd_child(&data); node != nullptr && child != nullptr; node = node->next)
    {
        fillEmptyElements(*node, *child);
        child = xmlNextElementSibling(child);
    }
}

void adapt(cJSON &item)
{
    const char *colon = item.string != nullptr ? std::strchr(item.string, ':') : nullptr;
    if (colon != nullptr)
    {
        std::memmove(item.string, colon + 1, std::strlen(colon));
    }
    if (cJSON_IsArray(&item) != 0 && item.child != nullptr && cJSON_IsNull(item.child) != 0)
    {
        cJSON_Delete(item.child);
        item.child = nullptr;
        item.type = (item.type & ~0xFF) | cJSON_NULL;
    }
    for (cJSON *child = item.child; child != nullptr; child = child->next)
    {
        adapt(*child);
    }
}

/** What a compiler, which is destroyed, makes of an XML document. */
Encoded runCompiler(GpbXmlCompilerBase *compiler, const std::string &xml)
{
    Encoded encoded;
    const XmlDocumentPointer document = parseXml(xml);
    if (document != nullptr && compiler != nullptr)
    {
        unsigned int length = 0;
        unsigned int code = 0;
        const char *bytes = GpbXmlCompiler_Encode(compiler, document.get(), &length, &code);
        encoded = {bytes != nullptr, std::string(bytes != nullptr ? bytes : "", length)};
    }
    GpbXmlCompiler_Destory(compiler);
    return encoded;
}

} // namespace

void DataDeleter::operator()(lyd_node *data) const
{
    lyd_free_all(data);
}

std::string toXml(const lyd_node &top)
{
    return print(top, LYD_XML);
}

std::string toXmlWithLineFeeds(const lyd_node &top)
{
    const XmlDocumentPointer document = parseXml(print(top, LYD_XML));
    if (document == nullptr)
    {
        return "";
    }
    fillEmptyElements(top, *xmlDocGetRootElement(document.get()));
    const std::unique_ptr<xmlBuffer, decltype(&xmlBufferFree)> buffer(xmlBufferCreate(), &xmlBufferFree);
    xmlNodeDump(buffer.get(), document.get(), xmlDocGetRootElement(document.get()), 0, 0);
    return reinterpret_cast<const char *>(xmlBufferContent(buffer.get()));
}

Json toJson(const lyd_node &top)
{
    Json json(cJSON_Parse(print(top, LYD_JSON).c_str()));
    cJSON *list = json != nullptr ? json->child : nullptr;
    if (cJSON_IsArray(list) != 0)
    {
        // A document has one root: the entry of a top-level list stands for the list.
        const std::string name = list->string;
        cJSON *entry = cJSON_DetachItemFromArray(list, 0);
        cJSON_DeleteItemFromObjectCaseSensitive(json.get(), name.c_str());
        cJSON_AddItemToObject(json.get(), name.c_str(), entry);
    }
    return json;
}

Json toJsonWithoutPrefixes(const lyd_node &top)
{
    Json json = toJson(top);
    if (json != nullptr)
    {
        adapt(*json);
    }
    return json;
}

Encoded encodeXml(GpbLibContext *context, const std::string &module, const std::string &xml)
{
    return runCompiler(GpbXmlCompiler_CreateCompiler(context, module.c_str()), xml);
}

Json convertXml(GpbLibContext *context, const std::string &module, const std::string &xml)
{
    return Json(
        cJSON_Parse(runCompiler(GpbXmlCompiler_CreateJsonCompiler(context, module.c_str(), 0), xml).bytes.c_str()));
}

Encoded encodeJson(GpbLibContext *context, const std::string &module, cJSON &document)
{
    Encoded encoded;
    GpbXmlCompilerBase *compiler = GpbJsonCompiler_CreateJsonCompiler(context, module.c_str());
    if (compiler != nullptr && document.child != nullptr)
    {
        unsigned int length = 0;
        const char *bytes = GpbXmlCompiler_EncodeJson(compiler, document.child, document.child, &length);
        encoded = {bytes != nullptr, std::string(bytes != nullptr ? bytes : "", length)};
    }
    GpbXmlCompiler_Destory(compiler);
    return encoded;
}

} // namespace gpbtest
