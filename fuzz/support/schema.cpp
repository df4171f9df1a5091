#include "support/schema.h"

namespace gpbfuzz
{

namespace
{

constexpr const char *kTypes[] = {"double", "float", "int64",  "uint64",   "int32",    "fixed64", "fixed32", "bool",
                                  "string", "bytes", "uint32", "sfixed32", "sfixed64", "sint32",  "sint64"};
constexpr uint32_t kMaxChildren = 7;
constexpr uint32_t kMaxDepth = 5;
constexpr uint32_t kMaxNodes = 60;
constexpr const char *kEnumValues[] = {"up", "down", "not-present", "10g", "a.b/c", "x", "low_er", "2-tone", "a@"};

/** Names of letters, each once: no digits, so that no name is another one with a layer number. */
class Names
{
public:
    std::string next()
    {
        std::string name = "q";
        for (uint32_t rest = ++m_count; rest != 0; rest /= 26)
        {
            name.push_back(static_cast<char>('a' + rest % 26));
        }
        return name + "z";
    }
    bool used(uint32_t max) const { return m_count >= max; }

private:
    uint32_t m_count = 0;
};

class SchemaMaker
{
public:
    explicit SchemaMaker(Bytes &bytes) : m_bytes(bytes) {}

    Node make()
    {
        Node top;
        top.name = m_names.next();
        uint32_t number = 0;
        addChildren(top, 1, true, number);
        return top;
    }

private:
    /** @param number  the last field number used in the message that the children belong to */
    void addChildren(Node &parent, uint32_t depth, bool choices, uint32_t &number)
    {
        const uint32_t count = 1 + m_bytes.below(kMaxChildren);
        for (uint32_t i = 0; i < count && !m_names.used(kMaxNodes); ++i)
        {
            parent.children.push_back(makeNode(depth, choices, number));
        }
    }

    Node makeNode(uint32_t depth, bool choices, uint32_t &number)
    {
        Node node;
        node.name = m_names.next();
        node.kind = static_cast<Kind>(m_bytes.below(static_cast<uint32_t>(Kind::COUNT) + 4) %
                                      static_cast<uint32_t>(Kind::COUNT));
        if ((node.kind == Kind::CHOICE && !choices) || (node.kind >= Kind::MESSAGE && depth >= kMaxDepth))
        {
            node.kind = Kind::UINT32;
        }
        if (node.kind == Kind::CHOICE)
        {
            addCases(node, depth, number);
            return node;
        }
        node.repeated = m_bytes.below(3) == 0;
        number += 1 + (m_bytes.below(8) == 0 ? m_bytes.byte() : 0);
        node.number = number;
        if (node.kind == Kind::ENUM)
        {
            const uint32_t count = 1 + m_bytes.below(9);
            node.enumValues.assign(kEnumValues, kEnumValues + count);
        }
        if (node.kind == Kind::MESSAGE)
        {
            uint32_t inner = 0;
            addChildren(node, depth + 1, choices && !node.repeated, inner);
        }
        return node;
    }

    void addCases(Node &choice, uint32_t depth, uint32_t &number)
    {
        const uint32_t count = 1 + m_bytes.below(3);
        for (uint32_t i = 0; i < count; ++i)
        {
            Node node;
            node.name = m_names.next();
            node.number = ++number;
            uint32_t inner = 0;
            addChildren(node, depth + 1, true, inner);
            choice.children.push_back(node);
        }
    }

    Bytes &m_bytes;
    Names m_names;
};

std::string typeName(const Node &node)
{
    return static_cast<char>(node.name[0] - 'a' + 'A') + node.name.substr(1);
}

/** The name of an enum value, as the proto file spells it. */
std::string enumName(const Node &node, const std::string &value)
{
    std::string name = typeName(node) + "_";
    name += value[0] >= '0' && value[0] <= '9' ? "X_" : "";
    for (const char c : value)
    {
        const bool isLetter = c >= 'a' && c <= 'z';
        const bool isPlain = isLetter || c == '_' || (c >= '0' && c <= '9');
        name += isLetter ? std::string(1, static_cast<char>(c - 'a' + 'A')) : isPlain ? std::string(1, c) : "X_";
    }
    return name;
}

void appendMessage(const Node &node, const std::string &name, std::string &text);

void appendField(const Node &node, std::string &text)
{
    const bool isScalar = node.kind < Kind::ENUM;
    text += (node.repeated ? "repeated " : "") +
            (isScalar ? kTypes[static_cast<uint32_t>(node.kind)] : typeName(node)) + " " + node.name + " = " +
            std::to_string(node.number) + ";\n";
}

void appendTypes(const Node &node, std::string &text)
{
    if (node.kind == Kind::ENUM)
    {
        text += "enum " + typeName(node) + " {\n";
        for (size_t i = 0; i < node.enumValues.size(); ++i)
        {
            text += enumName(node, node.enumValues[i]) + " = " + std::to_string(i) + ";\n";
        }
        text += "}\n";
    }
    else if (node.kind == Kind::MESSAGE)
    {
        appendMessage(node, typeName(node), text);
    }
}

void appendMessage(const Node &node, const std::string &name, std::string &text)
{
    text += "message " + name + " {\n";
    for (const Node &child : node.children)
    {
        if (child.kind != Kind::CHOICE)
        {
            appendTypes(child, text);
            appendField(child, text);
            continue;
        }
        for (const Node &caseNode : child.children)
        {
            appendTypes(caseNode, text);
        }
        text += "oneof " + child.name + " {\n";
        for (const Node &caseNode : child.children)
        {
            appendField(caseNode, text);
        }
        text += "}\n";
    }
    text += "}\n";
}

} // namespace

Node makeSchema(Bytes &bytes)
{
    return SchemaMaker(bytes).make();
}

std::string protoText(const Node &top)
{
    std::string text = "syntax = \"proto3\";\npackage p;\n";
    appendMessage(top, typeName(top), text);
    return text;
}

} // namespace gpbfuzz
