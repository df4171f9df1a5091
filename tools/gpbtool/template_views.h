/** Templates as text. */
#ifndef GPBTOOL_TEMPLATE_VIEWS_H
#define GPBTOOL_TEMPLATE_VIEWS_H

#include <string>
#include <vector>

#include "gpb_templatelib/gpb_objtree.h"
#include "template_model.h"

namespace gpbtool
{

/** A node in words. */
struct NodeWords
{
    std::string type; /**< "uint32", "message", with " repeated", " packable", " key", " case", " choice" */
    std::string id;   /**< "field 5" or "class 0x11"; empty when there is none */
    std::string
        carried; /**< what a leaf carries: class and field, both hexadecimal; as a number 11.5, as a text "11.5" */
};

NodeWords InWords(const TemplateNode &node);

/** A node with its place. */
struct DescribedNode
{
    std::string path; /**< unique in its template, "interfaces/interface/name" */
    std::string description;
};

/** All nodes, parents ahead of their children. */
std::vector<DescribedNode> DescribeAll(const TemplateNode &root);

/** A line per node, indented as a tree, in columns. */
std::string TemplateTree(const TemplateNode &root);

/** Graphviz input: a box per container with its leaves. */
std::string TemplateDot(const TemplateNode &root);

/** Every byte in hexadecimal with its offset and its meaning. */
std::string TemplateHex(const ObjNode &root);

} // namespace gpbtool

#endif
