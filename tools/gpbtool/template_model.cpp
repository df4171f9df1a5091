#include "template_model.h"

#include <map>

namespace gpbtool
{

namespace
{

const ObjNode *FirstChild(const ObjNode &node)
{
    return reinterpret_cast<const ObjNode *>(CMF_TREE_GetFirstChild(&node.stTree, 0));
}

const ObjNode *NextSibling(const ObjNode &node)
{
    return reinterpret_cast<const ObjNode *>(CMF_TREE_GetNextSibling(&node.stTree, 0));
}

/** The value of the first integer leaf of a number, and the content of the first string leaf. */
std::uint64_t IntegerIn(const ObjNode &container, std::uint32_t id)
{
    for (const ObjNode *node = FirstChild(container); node != nullptr; node = NextSibling(*node))
    {
        if (node->id == id && node->nodeType == GPB_OBJNODE_INTLEAF)
        {
            return node->value;
        }
    }
    return 0;
}

std::string TextIn(const ObjNode &container, std::uint32_t id)
{
    for (const ObjNode *node = FirstChild(container); node != nullptr; node = NextSibling(*node))
    {
        if (node->id == id && node->nodeType == GPB_OBJNODE_STRLEAF)
        {
            return ContentOf(*node);
        }
    }
    return {};
}

ClassDescription DescribeClass(const ObjNode &attribute)
{
    return {IntegerIn(attribute, GPB_RDMI_ID_CLASS_ID), TextIn(attribute, GPB_RDMI_ID_NAME),
            IntegerIn(attribute, GPB_RDMI_ID_NODE_FLAG)};
}

FieldDescription DescribeField(const ObjNode &attribute)
{
    return {IntegerIn(attribute, GPB_RDMI_ID_FIELD_ID), TextIn(attribute, GPB_RDMI_ID_FIELD_NAME),
            IntegerIn(attribute, GPB_RDMI_ID_FIELD_NUMBER), IntegerIn(attribute, GPB_RDMI_ID_FIELD_TYPE),
            IntegerIn(attribute, GPB_RDMI_ID_FIELD_FLAG)};
}

/** The field attributes of a container: the first field of a number takes the first attribute with that number. */
class FieldAttributes
{
public:
    explicit FieldAttributes(const ObjNode &nodeAttribute)
    {
        for (const ObjNode *node = FirstChild(nodeAttribute); node != nullptr; node = NextSibling(*node))
        {
            if (node->id == GPB_RDMI_ID_FIELD_ATTR && node->nodeType == GPB_OBJNODE_CONTAIN)
            {
                const FieldDescription field = DescribeField(*node);
                byNumber_.emplace(field.number, field);
            }
        }
    }

    std::optional<FieldDescription> Take(std::uint32_t number)
    {
        const auto found = byNumber_.lower_bound(number);
        if (found == byNumber_.end() || found->first != number)
        {
            return std::nullopt;
        }
        FieldDescription field = found->second;
        byNumber_.erase(found);
        return field;
    }

private:
    std::multimap<std::uint64_t, FieldDescription> byNumber_; // equal numbers stay in their order
};

void AddChildren(const ObjNode &container, TemplateNode &model)
{
    const ObjNode *child = FirstChild(container);
    std::optional<FieldAttributes> attributes;
    if (child != nullptr && IsNodeAttribute(*child))
    {
        model.managementClass = DescribeClass(*child);
        attributes.emplace(*child);
        child = NextSibling(*child);
    }
    for (; child != nullptr; child = NextSibling(*child))
    {
        TemplateNode &node = model.children.emplace_back(MakeModel(*child));
        node.field = attributes ? attributes->Take(child->id) : std::nullopt;
    }
}

} // namespace

std::string ContentOf(const ObjNode &node)
{
    return node.pucString != nullptr ? std::string(reinterpret_cast<const char *>(node.pucString), node.objLen)
                                     : std::string();
}

bool IsNodeAttribute(const ObjNode &node)
{
    const auto *parent = reinterpret_cast<const ObjNode *>(CMF_TREE_GetParent(&node.stTree, 0));
    return node.id == GPB_RDMI_ID_NODE_ATTR && node.nodeType == GPB_OBJNODE_CONTAIN && parent != nullptr &&
           FirstChild(*parent) == &node;
}

TemplateNode MakeModel(const ObjNode &root)
{
    TemplateNode model;
    model.nodeType = root.nodeType;
    model.number = root.id;
    if (root.nodeType == GPB_OBJNODE_INTLEAF)
    {
        model.value = root.value;
    }
    else if (root.nodeType == GPB_OBJNODE_STRLEAF)
    {
        model.text = ContentOf(root);
    }
    else
    {
        AddChildren(root, model);
    }
    return model;
}

std::string NameOf(const TemplateNode &node)
{
    if (node.field)
    {
        return Escaped(node.field->name);
    }
    return node.managementClass ? Escaped(node.managementClass->name) : "?";
}

std::string HexDigits(std::uint64_t number, std::size_t width)
{
    std::string digits;
    for (; number != 0; number >>= 4U)
    {
        digits.insert(0, 1, "0123456789abcdef"[number & 0xFU]);
    }
    return digits.size() < width ? std::string(width - digits.size(), '0') + digits : digits;
}

std::string Escaped(const std::string &text)
{
    std::string out;
    for (const char c : text)
    {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || byte > 0x7e)
        {
            out.append("\\x").append(HexDigits(byte, 2));
            continue;
        }
        if (c == '"' || c == '\\')
        {
            out += '\\';
        }
        out += c;
    }
    return out;
}

} // namespace gpbtool
