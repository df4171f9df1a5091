// XML nodes as the walks of the lossless setting see them.
#ifndef GPB_COMPILER_EXACT_GPB_EXACT_XML_NODE_H
#define GPB_COMPILER_EXACT_GPB_EXACT_XML_NODE_H

#include <google/protobuf/descriptor.h>
#include <libxml/tree.h>
#include <string>
#include <string_view>

#include "compiler/gpb_xml_node.h"

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

/// The value that an empty element stands for; null when its field has none.
char *GpbEmptyValueOf(const google::protobuf::FieldDescriptor &field);

#endif
