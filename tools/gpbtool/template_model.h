/** A template as its reader sees it: fields with their descriptions, instead of nodes beside attribute nodes. */
#ifndef GPBTOOL_TEMPLATE_MODEL_H
#define GPBTOOL_TEMPLATE_MODEL_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "gpb_templatelib/gpb_objtree.h"

namespace gpbtool
{

/** What the node attribute of a container says. */
struct ClassDescription
{
    std::uint64_t classId = 0;
    std::string name;
    std::uint64_t kind = 0; /**< of the YANG node: GPB_YANG_CHOICE, GPB_YANG_CASE or ordinary */
};

/** What a field attribute says. */
struct FieldDescription
{
    std::uint64_t fieldId = 0;
    std::string name;
    std::uint64_t number = 0;
    std::uint64_t type = 0;
    std::uint64_t flags = 0; /**< GPB_RDMI_FLAG_ bits */
};

struct TemplateNode
{
    std::uint32_t nodeType = 0;                      /**< GPB_OBJNODE_INTLEAF, STRLEAF, CONTAIN or ROOTDOC */
    std::uint32_t number = 0;                        /**< field number */
    std::optional<FieldDescription> field;           /**< none at the root, and where a template is incomplete */
    std::optional<ClassDescription> managementClass; /**< none at a leaf, and where a template is incomplete */
    std::uint64_t value = 0;                         /**< of an integer leaf: field id x 2^32 + class id */
    std::string text;                                /**< of a string leaf */
    std::vector<TemplateNode> children;
};

/** The content of a string leaf. */
std::string ContentOf(const ObjNode &node);

/** Whether a container's child is the node attribute that describes it: the first child, a container of that number. */
bool IsNodeAttribute(const ObjNode &node);

TemplateNode MakeModel(const ObjNode &root);

/** The name of a node: its field's, else its class's; "?" without description. Without unprintable characters. */
std::string NameOf(const TemplateNode &node);

/** Hexadecimal digits, with zeros ahead up to a width. */
std::string HexDigits(std::uint64_t number, std::size_t width = 1);

/** The text with a backslash before quotes and backslashes, and \xNN for what is not printable ASCII. */
std::string Escaped(const std::string &text);

} // namespace gpbtool

#endif
