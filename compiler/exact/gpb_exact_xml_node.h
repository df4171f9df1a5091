// XML nodes as the walks of the lossless setting see them.
#ifndef GPB_COMPILER_EXACT_GPB_EXACT_XML_NODE_H
#define GPB_COMPILER_EXACT_GPB_EXACT_XML_NODE_H

#include <google/protobuf/descriptor.h>
#include <libxml/tree.h>
#include <string>
#include <string_view>

#include "compiler/gpb_xml_node.h"
#include "descriptor/gpb_exact_names.h"

/// What an element below the root stands for, and the text of a leaf: the document's own, or several pieces of it
/// joined. Comments and processing instructions count for nothing.
///
/// @param joined  empty; keeps the pieces
GpbXmlNodeKind GpbReadExactContent(xmlNode *node, char *&text, std::string &joined);

/// The module that a namespace stands for. Empty for none.
std::string_view GpbExactModuleOf(const xmlNs *space);

/// The text of a container that is only formatted begins so.
constexpr char GPB_LINE_BREAK = '\n';

/// Whether a container's text is only formatting.
bool GpbIsFormatting(const char *text);

/// Whether a text is a value of a leaf's type; blanks are one of texts only.
bool GpbIsValueOf(const google::protobuf::FieldDescriptor &leaf, const char *text);

/// The field of an element with a text, or null: a leaf, or the container of a text that is only formatting.
///
/// @param find  finds the element's field of a GpbExactKind
template <typename Find>
const GpbExactField *GpbFindForText(const char *text, const Find &find)
{
    const GpbExactField *leaf = find(GpbExactKind::LEAF);
    if (leaf != nullptr && GpbIsValueOf(*leaf->field, text))
    {
        return leaf;
    }
    return GpbIsFormatting(text) ? find(GpbExactKind::ANY) : nullptr;
}

/// The value that an empty element stands for; null when its field has none.
char *GpbEmptyValueOf(const google::protobuf::FieldDescriptor &field);

#endif
