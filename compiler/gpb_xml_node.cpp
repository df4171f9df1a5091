#include "compiler/gpb_xml_node.h"

namespace
{

// An element with children whose attribute of this name begins with "1" takes no part in the encoding.
constexpr char IGNORED_ATTRIBUTE[] = "__tlmtIgnored";

} // namespace

bool GpbIsMarkedIgnored(xmlNode *node)
{
    const GpbXmlText value(xmlGetProp(node, reinterpret_cast<const xmlChar *>(IGNORED_ATTRIBUTE)));
    return value != nullptr && *value == '1';
}
