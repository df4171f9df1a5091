// Documents as the peers of the library read them: XML and JSON under the same names, so that each peer is written
// once.
#ifndef GPB_BENCH_SUPPORT_DOM_H
#define GPB_BENCH_SUPPORT_DOM_H

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include <cjson/cJSON.h>
#include <libxml/tree.h>

namespace gpbbench
{

/// Elements of a libxml2 document; values are texts.
struct XmlDom
{
    using Node = xmlNode;

    /// Calls `visit(name, node)` for each child element in document order.
    template <typename Visit>
    static void ForEachNode(const Node *parent, const Visit &visit)
    {
        for (const Node *node = parent->children; node != nullptr; node = node->next)
        {
            if (node->type == XML_ELEMENT_NODE)
            {
                visit(reinterpret_cast<const char *>(node->name), node);
            }
        }
    }

    static const char *Text(const Node *leaf)
    {
        return leaf->children == nullptr ? "" : reinterpret_cast<const char *>(leaf->children->content);
    }
    static uint32_t UInt32(const Node *leaf) { return static_cast<uint32_t>(std::strtoul(Text(leaf), nullptr, 10)); }
    static uint64_t UInt64(const Node *leaf) { return std::strtoull(Text(leaf), nullptr, 10); }
    static int64_t Int64(const Node *leaf) { return std::strtoll(Text(leaf), nullptr, 10); }
    static double Double(const Node *leaf) { return std::strtod(Text(leaf), nullptr); }
    static bool Bool(const Node *leaf) { return std::string_view(Text(leaf)) != "false"; }
};

/// Items of a cJSON tree; the members of an array go by its name. Integers of 64 bits are texts.
struct JsonDom
{
    using Node = cJSON;

    template <typename Visit>
    static void ForEachNode(const Node *parent, const Visit &visit)
    {
        for (const Node *node = parent->child; node != nullptr; node = node->next)
        {
            if (!cJSON_IsArray(node))
            {
                visit(node->string, node);
                continue;
            }
            for (const Node *member = node->child; member != nullptr; member = member->next)
            {
                visit(node->string, member);
            }
        }
    }

    static const char *Text(const Node *leaf) { return leaf->valuestring == nullptr ? "" : leaf->valuestring; }
    static uint32_t UInt32(const Node *leaf) { return static_cast<uint32_t>(leaf->valuedouble); }
    static uint64_t UInt64(const Node *leaf) { return std::strtoull(Text(leaf), nullptr, 10); }
    static int64_t Int64(const Node *leaf) { return std::strtoll(Text(leaf), nullptr, 10); }
    static double Double(const Node *leaf) { return leaf->valuedouble; }
    static bool Bool(const Node *leaf) { return cJSON_IsTrue(leaf) != 0; }
};

} // namespace gpbbench

#endif
