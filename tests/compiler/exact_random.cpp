#include "compiler/exact_random.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace gpbtest
{

namespace
{

constexpr uint32_t kMaxDepth = 4;
constexpr uint32_t kMaxNodes = 6;
constexpr uint32_t kMaxEntries = 3;

constexpr const char *kWords[] = {"alpha", "beta", "gamma", "delta", "name", "type", "state", "mode", "id", "peer"};

bool isRepeated(RandomNode::Kind kind)
{
    return kind == RandomNode::Kind::TEXTS || kind == RandomNode::Kind::NUMBERS || kind == RandomNode::Kind::LIST;
}

std::string element(const std::string &name, const std::string &content)
{
    return "<" + name + ">" + content + "</" + name + ">";
}

} // namespace

RandomModel::RandomModel(uint32_t seed) : m_random(seed)
{
    std::set<std::string> names = {"always"};
    m_nodes.push_back({Kind::TEXT, "always", {}});
    for (RandomNode &node : makeNodes(0, names))
    {
        m_nodes.push_back(std::move(node));
    }
}

std::string RandomModel::Form::text() const
{
    std::string all = fields;
    for (const auto &[name, form] : cases)
    {
        all += name + " { " + form.text() + "} ";
    }
    return all;
}

std::string RandomModel::newName(std::set<std::string> &names)
{
    std::string name;
    do
    {
        name = std::string(kWords[pick(std::size(kWords))]) + "-" + kWords[pick(std::size(kWords))];
    } while (!names.insert(name).second);
    return name;
}

std::vector<RandomNode> RandomModel::makeNodes(uint32_t depth, std::set<std::string> &names)
{
    std::vector<RandomNode> nodes;
    for (uint32_t count = 1 + pick(kMaxNodes); count > 0; --count)
    {
        const auto kind = static_cast<Kind>(pick(static_cast<uint32_t>(Kind::CASE)));
        nodes.push_back(makeNode(depth == kMaxDepth && kind > Kind::NUMBERS ? Kind::TEXT : kind, depth, names));
    }
    return nodes;
}

RandomNode RandomModel::makeNode(Kind kind, uint32_t depth, std::set<std::string> &names)
{
    RandomNode node = {kind, newName(names), {}};
    std::set<std::string> ownNames;
    switch (kind)
    {
    case Kind::BOX:
    case Kind::LIST:
        node.children = makeNodes(depth + 1, ownNames);
        break;
    case Kind::CHOICE:
        for (uint32_t count = 1 + pick(3); count > 0; --count)
        {
            node.children.push_back(pick(4) == 0 ? makeNode(Kind::TEXT, depth, names)
                                                 : makeNode(Kind::CASE, depth, names));
        }
        break;
    case Kind::CASE:
        node.name = "case-" + std::string(static_cast<size_t>(++m_caseNum), 'x'); // of letters, like all names here
        node.children = makeNodes(depth + 1, names);
        break;
    default:
        break;
    }
    return node;
}

std::string RandomModel::fieldName(const std::string &nodeName)
{
    std::string name = nodeName;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

std::string RandomModel::messageContent(const std::vector<RandomNode> &nodes)
{
    std::string content;
    int number = 0;
    for (const RandomNode &node : nodes)
    {
        if (node.kind != Kind::CHOICE)
        {
            content += fieldText(node, number, false);
            continue;
        }
        std::string members;
        std::string types;
        for (const RandomNode &one : node.children)
        {
            members += fieldText(one, number, true);
            types += one.kind == Kind::CASE
                         ? "message T" + fieldName(one.name) + " {" + messageContent(one.children) + "}\n"
                         : "";
        }
        content += types + "oneof choice_" + fieldName(node.name) + " {" + members + "}\n";
    }
    return content;
}

std::string RandomModel::fieldText(const RandomNode &node, int &number, bool isCase)
{
    static const char *const kTypes[] = {"string", "int32", "bool", "string", "int32"};
    const std::string name = fieldName(node.name);
    const std::string end = " " + name + " = " + std::to_string(++number) + ";\n";
    if (node.kind <= Kind::NUMBERS)
    {
        return (isRepeated(node.kind) ? "repeated " : "") + std::string(kTypes[static_cast<size_t>(node.kind)]) + end;
    }
    const std::string type = "T" + name;
    return isCase ? type + end
                  : "message " + type + " {" + messageContent(node.children) + "}\n" +
                        (isRepeated(node.kind) ? "repeated " : "") + type + end;
}

RandomDocument RandomModel::makeDocument(bool isFull)
{
    RandomDocument document = makeContent({m_nodes.begin() + 1, m_nodes.end()}, isFull);
    // A root without content stands for no message.
    return {element("always", "1") + document.content, "always: '1' " + document.textForm};
}

RandomDocument RandomModel::makeContent(const std::vector<RandomNode> &nodes, bool isFull)
{
    std::vector<std::vector<Instance>> groups;
    addInstances(nodes, {}, isFull, groups);
    RandomDocument document;
    Form form;
    // The elements of all groups mixed, those of each in their order.
    while (!groups.empty())
    {
        const size_t at = pick(static_cast<uint32_t>(groups.size()));
        std::vector<Instance> &group = groups[at];
        const Instance &first = group.front();
        document.content += first.xml;
        Form *holder = &form;
        for (const std::string &name : first.cases)
        {
            holder = &holder->cases[name];
        }
        holder->fields += first.form + " ";
        group.erase(group.begin());
        if (group.empty())
        {
            groups.erase(groups.begin() + static_cast<std::ptrdiff_t>(at));
        }
    }
    document.textForm = form.text();
    return document;
}

void RandomModel::addInstances(const std::vector<RandomNode> &nodes, const std::vector<std::string> &cases, bool isFull,
                               std::vector<std::vector<Instance>> &groups)
{
    for (const RandomNode &node : nodes)
    {
        if (node.kind == Kind::CHOICE)
        {
            const RandomNode &chosen = node.children[pick(static_cast<uint32_t>(node.children.size()))];
            if (!isFull || pick(5) == 0)
            {
                continue;
            }
            std::vector<std::string> inner = cases;
            if (chosen.kind != Kind::CASE)
            {
                addInstances({chosen}, cases, isFull, groups);
                continue;
            }
            inner.push_back(fieldName(chosen.name));
            addInstances(chosen.children, inner, isFull, groups);
            continue;
        }
        std::vector<Instance> group;
        for (uint32_t count = isRepeated(node.kind) ? pick(kMaxEntries + 1) : pick(2); count > 0; --count)
        {
            group.push_back(makeInstance(node, isFull));
            group.back().cases = cases;
        }
        if (!group.empty())
        {
            groups.push_back(std::move(group));
        }
    }
}

RandomModel::Instance RandomModel::makeInstance(const RandomNode &node, bool isFull)
{
    if (node.kind != Kind::BOX && node.kind != Kind::LIST)
    {
        return makeLeaf(node, isFull);
    }
    const RandomDocument inside = makeContent(node.children, isFull);
    const char *const kBlank[] = {"\n", "", " "};
    const std::string content = inside.content.empty() ? kBlank[isFull ? pick(3) : 0] : inside.content;
    return {{}, element(node.name, content), fieldName(node.name) + " { " + inside.textForm + "}"};
}

RandomModel::Instance RandomModel::makeLeaf(const RandomNode &node, bool isFull)
{
    std::string value = std::to_string(1 + pick(1000000));
    std::string xml = value;
    switch (node.kind)
    {
    case Kind::FLAG:
        value = pick(2) == 0 ? "false" : "true";
        xml = value == "true" && pick(2) == 0 ? "" : value;
        break;
    case Kind::TEXT:
    case Kind::TEXTS:
        if (isFull && pick(3) == 0)
        {
            const std::pair<const char *, const char *> kOdd[] = {
                {"", ""},        {"<![CDATA[<a>]]>", "<a>"},    {"b<!-- c -->d", "bd"},
                {"\ne", "\\ne"}, {"<?f?>g<![CDATA[h]]>", "gh"}, {" ", " "}};
            std::tie(xml, value) = kOdd[pick(std::size(kOdd))];
        }
        value = "'" + value + "'";
        break;
    default:
        break;
    }
    return {{}, element(node.name, xml), fieldName(node.name) + ": " + value};
}

} // namespace gpbtest
