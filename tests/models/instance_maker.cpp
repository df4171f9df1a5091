#include "instance_maker.h"

#include <libyang/libyang.h>

#include <algorithm>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "models/value_maker.h"
#include "yang/proto_builder.h"
#include "yang/schema_messages.h"

namespace gpbtest
{

namespace
{

constexpr unsigned int kOptionalChance = 65;
constexpr std::uint64_t kUsualEntries = 3;
constexpr std::uint64_t kMostEntries = 12; /**< while there is room */
constexpr std::uint64_t kMostFilling = 1000;
constexpr int kRepairs = 600;
constexpr std::size_t kRoomBeside = 20; /**< values of a document of another module */

std::string escaped(const std::string &text)
{
    std::string result;
    for (const char c : text)
    {
        result += c == '<' ? "&lt;" : c == '>' ? "&gt;" : c == '&' ? "&amp;" : std::string(1, c);
    }
    return result;
}

/** libyang brings some modules along, to which nothing refers. */
bool isLibyangs(const lys_module &module)
{
    return std::string(module.name).find("ietf-yang-") == 0;
}

/** Writes a document as XML. */
class Maker
{
public:
    Maker(std::uint64_t seed, std::size_t leaves) : m_random(seed), m_values(m_random), m_room(leaves) {}

    std::string document(const lysc_node &top)
    {
        std::string text;
        const ly_ctx *context = top.module->ctx;
        std::uint32_t index = 0;
        // Data that references lead to come first. They are few, so that the room stays for the document.
        for (const lys_module *module = ly_ctx_get_module_iter(context, &index); module != nullptr;
             module = ly_ctx_get_module_iter(context, &index))
        {
            const bool isOther = module != top.module && !isLibyangs(*module);
            const bool hasData = module->implemented != 0 && module->compiled != nullptr && isOther;
            for (const lysc_node *node = hasData ? module->compiled->data : nullptr; node != nullptr; node = node->next)
            {
                if ((node->nodetype & (LYS_CONTAINER | LYS_LIST)) != 0)
                {
                    const std::size_t room = std::exchange(m_room, kRoomBeside);
                    instance(*node, nullptr, text);
                    m_room = room;
                }
            }
        }
        instance(top, nullptr, text);
        return text;
    }

private:
    using Nodes = std::vector<const lysc_node *>;

    static Nodes childrenOf(const lysc_node &node)
    {
        Nodes nodes;
        for (const lysc_node *child = lysc_node_child(&node); child != nullptr; child = child->next)
        {
            nodes.push_back(child);
        }
        return nodes;
    }

    static std::string open(const lysc_node &node, const lys_module *around)
    {
        const std::string name = std::string("<") + node.name;
        return node.module != around ? name + " xmlns=\"" + node.module->ns + "\"" : name;
    }

    static std::string close(const lysc_node &node) { return std::string("</") + node.name + ">"; }

    bool wants(const lysc_node &node)
    {
        const bool isMandatory = (node.flags & LYS_MAND_TRUE) != 0;
        return isMandatory || (m_room > 0 && m_random.percent(kOptionalChance));
    }

    /** The nodes of a container, an entry or a case. */
    void content(const lysc_node &parent, const lys_module *around, std::string &text)
    {
        for (const lysc_node *node : childrenOf(parent))
        {
            switch (node->nodetype)
            {
            case LYS_CHOICE:
            {
                const Nodes cases = childrenOf(*node);
                if (!cases.empty() && wants(*node))
                {
                    content(*m_random.of(cases), around, text);
                }
                break;
            }
            case LYS_LIST:
                entries(*node, around, text);
                break;
            case LYS_LEAFLIST:
                values(*node, around, text);
                break;
            case LYS_CONTAINER:
                if (wants(*node))
                {
                    instance(*node, around, text);
                }
                break;
            case LYS_LEAF:
                if ((node->flags & LYS_KEY) == 0 && wants(*node))
                {
                    leaf(*node, around, text);
                }
                break;
            default:
                break;
            }
        }
    }

    /** A container, or an entry of a list with its keys first; an entry whose keys are there already is none. */
    bool instance(const lysc_node &node, const lys_module *around, std::string &text,
                  std::set<std::string> *known = nullptr)
    {
        std::string keys;
        for (const lysc_node *child : childrenOf(node))
        {
            const bool isKey = child->nodetype == LYS_LEAF && (child->flags & LYS_KEY) != 0;
            if (isKey && !leaf(*child, node.module, keys))
            {
                return false;
            }
        }
        if (known != nullptr && !keys.empty() && !known->insert(keys).second)
        {
            return false;
        }
        text += open(node, around) + ">" + keys;
        content(node, node.module, text);
        text += close(node);
        return true;
    }

    std::uint64_t countOf(const lysc_node &node, std::uint32_t least, std::uint32_t most)
    {
        std::uint64_t count = wants(node) ? 1 + m_random.below(m_room > 0 ? kUsualEntries : 1) : 0;
        count = m_room > 0 && m_random.percent(10) ? kMostEntries : count;
        return std::min<std::uint64_t>(std::max<std::uint64_t>(count, least), most);
    }

    void entries(const lysc_node &node, const lys_module *around, std::string &text)
    {
        const auto &list = reinterpret_cast<const lysc_node_list &>(node);
        const std::uint64_t count = countOf(node, list.min, list.max);
        // A list outside of all others takes half of the room that is left, so that the document gets as large as
        // wanted.
        const bool fills = m_openEntries == 0 && list.max > kMostFilling;
        const std::size_t end = fills ? m_room / 2 : m_room;
        std::set<std::string> known;
        ++m_openEntries;
        for (std::uint64_t i = 0; i < count || (m_room > end && i < kMostFilling); ++i)
        {
            instance(node, around, text, &known);
        }
        --m_openEntries;
    }

    void values(const lysc_node &node, const lys_module *around, std::string &text)
    {
        const auto &list = reinterpret_cast<const lysc_node_leaflist &>(node);
        std::set<std::string> known;
        for (std::uint64_t i = countOf(node, list.min, list.max); i > 0; --i)
        {
            std::string value;
            if (leaf(node, around, value) && known.insert(value).second)
            {
                text += value;
            }
        }
    }

    bool leaf(const lysc_node &node, const lys_module *around, std::string &text)
    {
        const std::optional<MadeValue> value = m_values.make(node);
        if (!value)
        {
            return false;
        }
        const std::string prefix = value->prefix != nullptr
                                       ? std::string(" xmlns:") + value->prefix->name + "=\"" + value->prefix->ns + "\""
                                       : "";
        text += open(node, around) + prefix + ">" + escaped(value->text) + close(node);
        m_room -= m_room > 0 ? 1 : 0;
        return true;
    }

    Random m_random;
    ValueMaker m_values;
    std::size_t m_room;
    std::size_t m_openEntries = 0; /**< lists within each other whose entries are being made */
};

/** The path of the data that libyang's last message is about; of the schema, when it names no data. */
std::string pathOfError(const ly_ctx &context)
{
    const ly_err_item *error = ly_err_last(&context);
    const std::string place = error != nullptr && error->path != nullptr ? error->path : "";
    const std::string data = place.find("ata location \"") != std::string::npos ? "ata location \"" : "ocation \"";
    const std::size_t begin = place.find(data);
    const std::size_t end = place.rfind('"');
    return begin != std::string::npos && end > begin + data.size()
               ? place.substr(begin + data.size(), end - begin - data.size())
               : place;
}

/** Whether a path leads to a node below another one. */
bool isBelow(const std::string &path, const std::string &above)
{
    return path.size() > above.size() && path.compare(0, above.size(), above) == 0 && path[above.size()] == '/';
}

/** The first node that lacks the mandatory one at a schema path, which may be a choice. */
lyd_node *findLacking(lyd_node &node, const std::string &path)
{
    if (!isBelow(path, gpbyang::SchemaPath(*node.schema)))
    {
        return nullptr;
    }
    bool leadsOn = false;
    for (lyd_node *child = lyd_child(&node); child != nullptr; child = child->next)
    {
        const std::string own = gpbyang::SchemaPath(*child->schema);
        leadsOn = leadsOn || own == path || isBelow(own, path) || isBelow(path, own);
        lyd_node *lacking = findLacking(*child, path);
        if (lacking != nullptr)
        {
            return lacking;
        }
    }
    return leadsOn ? nullptr : &node;
}

/** The node at a path, or the one that lacks what should be there. */
lyd_node *findCulprit(lyd_node &tree, const std::string &path)
{
    ly_set *set = nullptr;
    const LY_ERR found = path.empty() ? LY_ENOTFOUND : lyd_find_xpath(&tree, path.c_str(), &set);
    lyd_node *node = found == LY_SUCCESS && set->count > 0 ? set->dnodes[set->count - 1] : nullptr;
    ly_set_free(set, nullptr);
    for (lyd_node *top = &tree; top != nullptr && node == nullptr; top = top->next)
    {
        node = findLacking(*top, path);
    }
    return node;
}

/** Takes out what libyang adds to what a document says. */
void dropAdded(Data &tree)
{
    std::vector<lyd_node *> added;
    for (lyd_node *top = tree.get(); top != nullptr; top = top->next)
    {
        lyd_node *node = nullptr;
        LYD_TREE_DFS_BEGIN(top, node)
        {
            if ((node->flags & LYD_DEFAULT) != 0)
            {
                added.push_back(node);
                LYD_TREE_DFS_continue = 1;
            }
            LYD_TREE_DFS_END(top, node);
        }
    }
    for (lyd_node *node : added)
    {
        if (node == tree.get())
        {
            lyd_node *next = tree.release()->next;
            tree.reset(next);
        }
        lyd_free_tree(node);
    }
}

/** Takes out the node at a path, or what cannot be without it; whether anything is left. */
bool takeOut(Data &tree, const std::string &path)
{
    lyd_node *node = findCulprit(*tree, path);
    if (node != nullptr && (node->schema->flags & LYS_KEY) != 0 && node->schema->nodetype == LYS_LEAF)
    {
        node = lyd_parent(node);
    }
    if (node == nullptr)
    {
        return false;
    }
    if (node == tree.get())
    {
        lyd_node *next = tree.release()->next;
        tree.reset(next);
    }
    lyd_free_tree(node);
    return tree != nullptr;
}

/** What libyang reads of its own print; null when it refuses that, such as a year that got five digits. */
Data readAgain(const Data &tree)
{
    std::string text;
    for (const lyd_node *top = tree.get(); top != nullptr; top = top->next)
    {
        text += toXml(*top);
    }
    lyd_node *read = nullptr;
    const LY_ERR valid = text.empty() ? LY_EINVAL
                                      : lyd_parse_data_mem(LYD_CTX(tree.get()), text.c_str(), LYD_XML, LYD_PARSE_STRICT,
                                                           LYD_VALIDATE_PRESENT, &read);
    Data again(read);
    if (valid != LY_SUCCESS)
    {
        return nullptr;
    }
    dropAdded(again);
    return again;
}

} // namespace

Data makeInstance(const lysc_node &top, std::uint64_t seed, std::size_t leaves)
{
    const gpbyang::KeptMessages quiet;
    const ly_ctx *context = top.module->ctx;
    lyd_node *parsed = nullptr;
    if (lyd_parse_data_mem(context, Maker(seed, leaves).document(top).c_str(), LYD_XML,
                           LYD_PARSE_ONLY | LYD_PARSE_STRICT, 0, &parsed) != LY_SUCCESS)
    {
        return nullptr;
    }
    Data tree(parsed);
    for (int i = 0; i < kRepairs; ++i)
    {
        lyd_node *validated = tree.release();
        ly_err_clean(const_cast<ly_ctx *>(context), nullptr);
        const LY_ERR result = lyd_validate_all(&validated, context, LYD_VALIDATE_PRESENT, nullptr);
        tree.reset(validated);
        if (result == LY_SUCCESS)
        {
            dropAdded(tree);
            return readAgain(tree);
        }
        if (tree == nullptr || !takeOut(tree, pathOfError(*context)))
        {
            return nullptr;
        }
    }
    return nullptr;
}

} // namespace gpbtest
