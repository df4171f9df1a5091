// A template in words: as an indented tree, and as a list to compare.
#include <algorithm>
#include <array>
#include <unordered_map>

#include "gpb_templatelib/gpb_template.h"
#include "template_views.h"

namespace gpbtool
{

namespace
{

/** Names of protobuf's field types by number; 0 is none. */
constexpr const char *kTypeNames[] = {"",        "double",   "float",    "int64",  "uint64",  "int32", "fixed64",
                                      "fixed32", "bool",     "string",   "group",  "message", "bytes", "uint32",
                                      "enum",    "sfixed32", "sfixed64", "sint32", "sint64"};

/** Columns are no wider than this, so that one long line does not push all others out of sight. */
constexpr std::size_t kMostWidth = 60;
constexpr std::size_t kGap = 2;

std::string TypeName(std::uint64_t type)
{
    return type > 0 && type < std::size(kTypeNames) ? kTypeNames[type] : "type " + std::to_string(type);
}

std::string TypeWords(const TemplateNode &node)
{
    std::string words;
    const auto add = [&](bool wanted, const std::string &word)
    {
        if (wanted)
        {
            words += (words.empty() ? "" : " ") + word;
        }
    };
    if (node.field)
    {
        const std::uint64_t flags = node.field->flags;
        add(true, TypeName(node.field->type));
        add((flags & GPB_RDMI_FLAG_REPEATED) != 0, "repeated");
        add((flags & GPB_RDMI_FLAG_PACKABLE) != 0, "packable");
        add((flags & GPB_RDMI_FLAG_KEY) != 0, "key");
    }
    else
    {
        add(node.nodeType != GPB_OBJNODE_ROOTDOC, "not described");
    }
    if (node.managementClass)
    {
        add(node.managementClass->kind == GPB_YANG_CHOICE, "choice");
        add(node.managementClass->kind == GPB_YANG_CASE, "case");
    }
    return words;
}

struct Row
{
    std::array<std::string, 4> cells;
};

void AddRows(const TemplateNode &node, const std::string &lead, const std::string &childLead, std::vector<Row> &rows)
{
    const NodeWords words = InWords(node);
    const bool isRoot = node.nodeType == GPB_OBJNODE_ROOTDOC;
    const std::string number = isRoot ? "" : " = " + std::to_string(node.number);
    rows.push_back({{lead + NameOf(node) + number, words.type, words.id, words.carried}});
    for (std::size_t i = 0; i < node.children.size(); ++i)
    {
        const bool last = i + 1 == node.children.size();
        AddRows(node.children[i], childLead + (last ? "`-- " : "|-- "), childLead + (last ? "    " : "|   "), rows);
    }
}

void AddDescriptions(const TemplateNode &node, const std::string &path, std::vector<DescribedNode> &all)
{
    const NodeWords words = InWords(node);
    std::string description = "= " + std::to_string(node.number);
    for (const std::string &part : {words.type, words.id, words.carried})
    {
        description += part.empty() ? "" : "  " + part;
    }
    all.push_back({path, description});
    std::unordered_map<std::string, int> seen;
    for (const TemplateNode &child : node.children)
    {
        const std::string name = NameOf(child);
        const int before = seen[name]++;
        std::string childPath = path;
        childPath.append("/").append(name);
        if (before > 0)
        {
            childPath.append("[").append(std::to_string(before + 1)).append("]");
        }
        AddDescriptions(child, childPath, all);
    }
}

} // namespace

NodeWords InWords(const TemplateNode &node)
{
    NodeWords words;
    words.type = TypeWords(node);
    if (node.managementClass)
    {
        words.id = "class 0x" + HexDigits(node.managementClass->classId);
    }
    else if (node.field)
    {
        words.id = "field " + std::to_string(node.field->fieldId);
    }
    if (node.nodeType == GPB_OBJNODE_INTLEAF)
    {
        words.carried = HexDigits(node.value & 0xFFFFFFFFU) + "." + HexDigits(node.value >> 32U);
    }
    else if (node.nodeType == GPB_OBJNODE_STRLEAF)
    {
        words.carried = "\"" + Escaped(node.text) + "\"";
    }
    return words;
}

std::vector<DescribedNode> DescribeAll(const TemplateNode &root)
{
    std::vector<DescribedNode> all;
    AddDescriptions(root, NameOf(root), all);
    return all;
}

std::string TemplateTree(const TemplateNode &root)
{
    std::vector<Row> rows;
    AddRows(root, "", "", rows);
    std::array<std::size_t, 4> widths = {};
    for (const Row &row : rows)
    {
        for (std::size_t i = 0; i < widths.size(); ++i)
        {
            widths[i] = std::min(std::max(widths[i], row.cells[i].size()), kMostWidth);
        }
    }
    std::string text;
    for (const Row &row : rows)
    {
        std::string line;
        for (std::size_t i = 0; i < widths.size(); ++i)
        {
            const std::string &cell = row.cells[i];
            line += cell + std::string((cell.size() < widths[i] ? widths[i] - cell.size() : 0) + kGap, ' ');
        }
        text += line.substr(0, line.find_last_not_of(' ') + 1) + "\n";
    }
    return text;
}

} // namespace gpbtool
