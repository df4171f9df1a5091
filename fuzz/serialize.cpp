/**
 * Random documents over every type of field, encoded by the library's own serializer and by protobuf: the bytes must be
 * the same.
 */
#include <google/protobuf/compiler/importer.h>
#include <string>

#include "support/bytes.h"
#include "support/documents.h"
#include "support/guard.h"
#include "support/library.h"
#include "support/twin.h"

using google::protobuf::Descriptor;
using google::protobuf::EnumDescriptor;
using google::protobuf::FieldDescriptor;

namespace
{

constexpr uint32_t kMaxNodes = 12;
constexpr uint32_t kMaxDepth = 6;

constexpr const char *kScalars[] = {"double", "float", "int64",  "uint64",   "int32",    "fixed64", "fixed32", "bool",
                                    "string", "bytes", "uint32", "sfixed32", "sfixed64", "sint32",  "sint64",  "Kind"};

constexpr const char *kTexts[] = {"0",
                                  "-0.0",
                                  "1",
                                  "-1",
                                  "127",
                                  "128",
                                  "16384",
                                  "2147483647",
                                  "-2147483648",
                                  "4294967296",
                                  "9223372036854775807",
                                  "-9223372036854775808",
                                  "18446744073709551615",
                                  "1e300",
                                  "0.1",
                                  "nan",
                                  "true",
                                  "false",
                                  "x",
                                  ""};

constexpr const char *kEnumTexts[] = {"none", "a b", "none  a", "2g", "big", "least", "nothing", "alien"};

/** The module: each scalar type once of each kind, and messages, lists and choices of all this. */
std::string protoText(const char *module, const char *syntax)
{
    const bool isOld = std::string(syntax) == "proto2";
    const std::string label = isOld ? "optional " : "";
    std::string fields;
    std::string cases;
    int number = 0;
    for (const char *const scalar : kScalars)
    {
        const std::string type = scalar;
        const std::string n = std::to_string(++number);
        // Tags of one to five bytes, in no order.
        fields += label + type + " s" + n + " = " + std::to_string(5000 - number) + ";\n";
        fields += "optional " + type + " o" + n + " = " + n + ";\n";
        fields += "repeated " + type + " r" + n + " = " + std::to_string(100 + number) + ";\n";
        if (type != "string" && type != "bytes")
        {
            fields += "repeated " + type + " p" + n + " = " + std::to_string(300000 + number) +
                      " [packed = " + (isOld ? "true" : "false") + "];\n";
        }
        cases += type + " c" + n + " = " + std::to_string(200000000 + number) + ";\n";
    }
    const std::string required = isOld ? "optional Need need = 80; message Need { required int32 must = 1; }\n" : "";
    return std::string("syntax = '") + syntax + "'; package " + module + "; message Top {\n" +
           "enum Kind { Kind_NONE = 0; Kind_A = 1; Kind_B = 2; Kind_X_2G = 3; Kind_BIG = 2147483647; Kind_LEAST = "
           "-2147483648; }\n" +
           fields + required + "oneof one {\n" + cases + "Left left = 90; Right right = 91; }\n" + "message Left { " +
           label + "string inleft = 1; repeated Top lefts = 2; }\n" + "message Right { " + label +
           "int32 inright = 7; " + label + "Top rightbox = 3; }\n" + label +
           "Top box = 70; repeated Top list = 71; }\n";
}

/** The context with both modules; it lives as long as the process. */
GpbLibContext *context()
{
    static GpbLibContext *const made = []
    {
        gpbfuzz::library();
        gpbfuzz::useOwnWorkPath(true);
        gpbfuzz::writeProto("new", protoText("new", "proto3"));
        gpbfuzz::writeProto("old", protoText("old", "proto2"));
        GpbLibContext *const fresh = gpbfuzz::newContext();
        gpbfuzz::require(GPBLIB_ProtobufLoad(fresh, "new", 0) == 0 && GPBLIB_ProtobufLoad(fresh, "old", 0) == 0,
                         "the modules do not load");
        gpbfuzz::useOwnWorkPath(false);
        return fresh;
    }();
    return made;
}

/** A node of a message: an element, and the same as a JSON member; `depth` bounds what lies in it. */
class Writer
{
public:
    explicit Writer(gpbfuzz::Bytes &bytes) : m_bytes(bytes) {}

    std::string content(const Descriptor *type, uint32_t depth)
    {
        std::string xml;
        for (uint32_t count = m_bytes.below(kMaxNodes); count > 0 && !m_bytes.empty(); --count)
        {
            xml +=
                node(type->field(static_cast<int>(m_bytes.below(static_cast<uint32_t>(type->field_count())))), depth);
        }
        return xml.empty() ? "\n" : xml;
    }

private:
    std::string node(const FieldDescriptor *field, uint32_t depth)
    {
        const Descriptor *type = field->message_type();
        if (type != nullptr && field->real_containing_oneof() != nullptr)
        {
            // The nodes of a case stand where the choice does.
            return node(type->field(static_cast<int>(m_bytes.below(static_cast<uint32_t>(type->field_count())))),
                        depth);
        }
        std::string value;
        if (type != nullptr)
        {
            value = depth == 0 ? "\n" : content(type, depth - 1);
        }
        else if (field->enum_type() != nullptr)
        {
            value = kEnumTexts[m_bytes.below(std::size(kEnumTexts))];
        }
        else
        {
            value = m_bytes.flag() ? std::to_string(m_bytes.wide()) : kTexts[m_bytes.below(std::size(kTexts))];
        }
        return "<" + field->name() + ">" + value + "</" + field->name() + ">";
    }

    gpbfuzz::Bytes &m_bytes;
};

/** The element as a JSON item: an object of its members, or its text. */
cJSON *asJson(const xmlNode *element)
{
    const xmlNode *child = element->children;
    if (child == nullptr || (child->type == XML_TEXT_NODE && child->next == nullptr && child->content[0] != '\n'))
    {
        return cJSON_CreateString(child == nullptr ? "" : reinterpret_cast<const char *>(child->content));
    }
    cJSON *const object = cJSON_CreateObject();
    for (; child != nullptr; child = child->next)
    {
        if (child->type == XML_ELEMENT_NODE)
        {
            cJSON_AddItemToObject(object, reinterpret_cast<const char *>(child->name), asJson(child));
        }
    }
    return object;
}

/** A document from XML, from JSON, and from a part of the JSON. */
void requireSame(GpbLibContext *shared, const char *module, xmlDoc *document, cJSON *root)
{
    gpbfuzz::requireSameXml(shared, module, document);
    gpbfuzz::requireSameJson(shared, module, root, root);
    if (root->child != nullptr)
    {
        gpbfuzz::requireSameJson(shared, module, root, root->child);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    GpbLibContext *const shared = context();
    const gpbfuzz::InputGuard guard;
    gpbfuzz::Bytes bytes(data, size);
    const char *const module = bytes.flag() ? "old" : "new";
    const Descriptor *const top =
        GPBLIB_GetImporter(shared)->pool()->FindMessageTypeByName(std::string(module) + ".Top");
    const std::string xml = "<top>" + Writer(bytes).content(top, kMaxDepth) + "</top>";
    const gpbfuzz::XmlDocument document = gpbfuzz::parseXml(reinterpret_cast<const uint8_t *>(xml.data()), xml.size());
    gpbfuzz::require(document != nullptr, "the document is not well-formed");
    const gpbfuzz::JsonDocument tree(cJSON_CreateObject());
    cJSON *const root = asJson(xmlDocGetRootElement(document.get()));
    cJSON_AddItemToObject(tree.get(), "top", root);
    requireSame(shared, module, document.get(), root);
    const gpbfuzz::Lossless lossless(shared);
    requireSame(shared, module, document.get(), root);
    return 0;
}
