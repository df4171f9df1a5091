// A template byte by byte.
#include <algorithm>

#include "template_views.h"

namespace gpbtool
{

namespace
{

constexpr std::size_t kBytesPerLine = 16;
constexpr std::size_t kOffsetDigits = 6;
/** Room for a tag and a length, or a tag and a value. */
constexpr std::uint32_t kHeaderRoom = 20;

/** What surrounds a node, which says what its number means. */
enum class Place
{
    Fields,
    NodeAttribute,
    FieldAttribute,
};

const char *Meaning(Place place, std::uint32_t id)
{
    if (place == Place::NodeAttribute)
    {
        switch (id)
        {
        case GPB_RDMI_ID_CLASS_ID:
            return "class id";
        case GPB_RDMI_ID_NAME:
            return "name";
        case GPB_RDMI_ID_NODE_FLAG:
            return "flag";
        case GPB_RDMI_ID_FIELD_ATTR:
            return "field attribute";
        default:
            return nullptr;
        }
    }
    if (place == Place::FieldAttribute)
    {
        switch (id)
        {
        case GPB_RDMI_ID_FIELD_ID:
            return "field id";
        case GPB_RDMI_ID_FIELD_NAME:
            return "field name";
        case GPB_RDMI_ID_FIELD_NUMBER:
            return "field number";
        case GPB_RDMI_ID_FIELD_TYPE:
            return "field type";
        case GPB_RDMI_ID_FIELD_FLAG:
            return "field flag";
        default:
            return nullptr;
        }
    }
    return nullptr;
}

class HexWriter
{
public:
    std::string Write(const ObjNode &root)
    {
        AddNode(root, Place::Fields, 0);
        return std::move(text_);
    }

private:
    void AddNode(const ObjNode &node, Place place, std::size_t depth)
    {
        const bool isAttribute = IsNodeAttribute(node);
        const bool isLeaf = node.nodeType == GPB_OBJNODE_INTLEAF || node.nodeType == GPB_OBJNODE_STRLEAF;
        AddLines(OwnBytes(node), std::string(2 * depth, ' ') + Words(node, place));
        if (isLeaf)
        {
            return;
        }
        const Place inside = isAttribute ? Place::NodeAttribute
                             : place == Place::NodeAttribute && node.id == GPB_RDMI_ID_FIELD_ATTR
                                 ? Place::FieldAttribute
                                 : Place::Fields;
        for (const CmfTreeNode *child = CMF_TREE_GetFirstChild(&node.stTree, 0); child != nullptr;
             child = CMF_TREE_GetNextSibling(child, 0))
        {
            AddNode(*reinterpret_cast<const ObjNode *>(child), inside, depth + 1);
        }
    }

    static std::string OwnBytes(const ObjNode &node)
    {
        const std::uint32_t content = node.nodeType == GPB_OBJNODE_STRLEAF ? node.objLen : 0;
        std::string bytes(std::size_t{content} + kHeaderRoom, '\0');
        const auto room = static_cast<std::uint32_t>(bytes.size());
        bytes.resize(GPBLIB_ObjNode_TemplateWrite(&node, reinterpret_cast<std::uint8_t *>(bytes.data()), room));
        return bytes;
    }

    static std::string Words(const ObjNode &node, Place place)
    {
        const char *meaning = Meaning(place, node.id);
        const std::string name = node.nodeType == GPB_OBJNODE_ROOTDOC ? "template"
                                 : IsNodeAttribute(node)              ? "node attribute"
                                 : meaning != nullptr                 ? meaning
                                                                      : "field " + std::to_string(node.id);
        if (node.nodeType == GPB_OBJNODE_INTLEAF)
        {
            return name + (meaning != nullptr ? " " + std::to_string(node.value) : ": 0x" + HexDigits(node.value));
        }
        if (node.nodeType == GPB_OBJNODE_STRLEAF)
        {
            return name + (meaning != nullptr ? " \"" : ": \"") + Escaped(ContentOf(node)) + "\"";
        }
        return name + ", " + std::to_string(node.objLen) + " bytes";
    }

    void AddLines(const std::string &bytes, const std::string &words)
    {
        for (std::size_t at = 0; at < bytes.size(); at += kBytesPerLine)
        {
            std::string digits;
            for (std::size_t i = at; i < std::min(at + kBytesPerLine, bytes.size()); ++i)
            {
                digits.append(" ").append(HexDigits(static_cast<unsigned char>(bytes[i]), 2));
            }
            text_.append(HexDigits(offset_ + at, kOffsetDigits)).append(" ").append(digits);
            if (at == 0)
            {
                text_ += std::string(3 * kBytesPerLine - digits.size() + 2, ' ') + words;
            }
            text_ += "\n";
        }
        offset_ += bytes.size();
    }

    std::string text_;
    std::size_t offset_ = 0;
};

} // namespace

std::string TemplateHex(const ObjNode &root)
{
    return HexWriter().Write(root);
}

} // namespace gpbtool
