#include "support/documents.h"

#include <google/protobuf/descriptor.h>
#include <google/protobuf/dynamic_message.h>

#include "gpb_templatelib/gpb_descriptor.h"
#include "support/guard.h"
#include "support/library.h"

namespace gpbfuzz
{

namespace
{

void collect(cJSON *first, std::vector<cJSON *> &items)
{
    for (cJSON *item = first; item != nullptr; item = item->next)
    {
        items.push_back(item);
        collect(item->child, items);
    }
}

} // namespace

XmlDocument parseXml(const uint8_t *data, size_t size, int options)
{
    return XmlDocument(xmlReadMemory(reinterpret_cast<const char *>(data), static_cast<int>(size), nullptr, nullptr,
                                     options | XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING));
}

JsonDocument parseJson(const uint8_t *data, size_t size)
{
    return JsonDocument(cJSON_ParseWithLength(reinterpret_cast<const char *>(data), size));
}

const char *rootName(xmlDoc *document)
{
    const xmlNode *root = xmlDocGetRootElement(document);
    return root == nullptr ? "" : reinterpret_cast<const char *>(root->name);
}

std::vector<cJSON *> itemsOf(cJSON *root, size_t max)
{
    std::vector<cJSON *> all;
    collect(root->child, all);
    if (all.size() <= max)
    {
        return all;
    }
    std::vector<cJSON *> some;
    for (size_t i = 0; i < max; ++i)
    {
        some.push_back(all[i * all.size() / max]);
    }
    return some;
}

void requireEncoding(const char *module, const char *containerName, const char *bytes, unsigned int length)
{
    char name[GPB_NAME_SIZE] = {};
    std::string(containerName).copy(name, sizeof(name) - 1);
    Gpb_util_ConverContainerName(name, 1);
    const google::protobuf::Descriptor *type = fileOf(module)->FindMessageTypeByName(name);
    require(type != nullptr, "bytes of an unknown message");
    google::protobuf::DynamicMessageFactory factory;
    const std::unique_ptr<google::protobuf::Message> message(factory.GetPrototype(type)->New());
    require(message->ParsePartialFromArray(bytes, static_cast<int>(length)), "the bytes are no message");
}

} // namespace gpbfuzz
