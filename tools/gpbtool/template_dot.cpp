// A template as a Graphviz picture.
#include "template_views.h"

namespace gpbtool
{

namespace
{

/** Marks of record labels are text here. */
std::string Label(const std::string &text)
{
    std::string out;
    for (const char c : text)
    {
        if (std::string("\\{}|<>\"").find(c) != std::string::npos)
        {
            out += '\\';
        }
        out += c;
    }
    return out;
}

std::string LeafLine(const TemplateNode &leaf)
{
    const NodeWords words = InWords(leaf);
    std::string line = NameOf(leaf) + " = " + std::to_string(leaf.number);
    for (const std::string &part : {words.type, words.id, words.carried})
    {
        line += part.empty() ? "" : "  " + part;
    }
    return Label(line) + "\\l";
}

class DotWriter
{
public:
    std::string Write(const TemplateNode &root)
    {
        text_ = "digraph template {\n"
                "  rankdir=LR;\n"
                "  node [shape=record, fontname=monospace];\n";
        AddContainer(root);
        return text_ + "}\n";
    }

private:
    /** Returns the name of the box. */
    std::string AddContainer(const TemplateNode &container)
    {
        std::string box = "n" + std::to_string(boxes_++);
        const NodeWords words = InWords(container);
        std::string leaves;
        for (const TemplateNode &child : container.children)
        {
            leaves += IsLeaf(child) ? LeafLine(child) : "";
        }
        std::string title = Label(NameOf(container));
        for (const std::string &part : {words.type, words.id})
        {
            title += part.empty() ? "" : "\\n" + Label(part);
        }
        text_ += "  " + box + " [label=\"{" + title + (leaves.empty() ? "" : "|" + leaves) + "}\"];\n";
        for (const TemplateNode &child : container.children)
        {
            if (!IsLeaf(child))
            {
                const std::string childBox = AddContainer(child);
                text_.append("  ").append(box).append(" -> ").append(childBox);
                text_.append(" [label=\"").append(std::to_string(child.number)).append("\"];\n");
            }
        }
        return box;
    }

    static bool IsLeaf(const TemplateNode &node)
    {
        return node.nodeType == GPB_OBJNODE_INTLEAF || node.nodeType == GPB_OBJNODE_STRLEAF;
    }

    std::string text_;
    std::size_t boxes_ = 0;
};

} // namespace

std::string TemplateDot(const TemplateNode &root)
{
    return DotWriter().Write(root);
}

} // namespace gpbtool
