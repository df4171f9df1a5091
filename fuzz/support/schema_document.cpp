/** Documents of a schema, with the bytes that they have to become: an encoder of its own, without reflection. */
#include <cstdio>
#include <cstring>
#include <map>

#include "support/schema.h"

namespace gpbfuzz
{

namespace
{

constexpr uint32_t kMaxEntries = 3;

constexpr uint32_t kVarint = 0;
constexpr uint32_t kFixed64 = 1;
constexpr uint32_t kDelimited = 2;
constexpr uint32_t kFixed32 = 5;

std::string varint(uint64_t value)
{
    std::string bytes;
    for (; value >= 0x80; value >>= 7)
    {
        bytes.push_back(static_cast<char>(value | 0x80));
    }
    bytes.push_back(static_cast<char>(value));
    return bytes;
}

std::string fixed(uint64_t value, int size)
{
    std::string bytes;
    for (int i = 0; i < size; ++i)
    {
        bytes.push_back(static_cast<char>(value >> (8 * i)));
    }
    return bytes;
}

std::string delimited(const std::string &content)
{
    return varint(content.size()) + content;
}

std::string tag(uint32_t number, uint32_t wireType)
{
    return varint(uint64_t{number} << 3 | wireType);
}

/** One value of a leaf: its text, its bytes, and whether it is what an absent field stands for. */
struct Value
{
    std::string text;
    std::string bytes;
    uint32_t wireType = kVarint;
    bool isDefault = false;
};

uint64_t zigzag(int64_t value)
{
    return static_cast<uint64_t>(value) << 1 ^ static_cast<uint64_t>(value >> 63);
}

/** Numbers near the ends of their types as often as others. */
int64_t signedNumber(Bytes &bytes, int64_t least, int64_t greatest)
{
    switch (bytes.below(6))
    {
    case 0:
        return least;
    case 1:
        return greatest;
    case 2:
        return 0;
    case 3:
        return greatest == INT64_MAX ? static_cast<int64_t>(bytes.wide()) : static_cast<int32_t>(bytes.number());
    default:
        return static_cast<int8_t>(bytes.byte());
    }
}

uint64_t unsignedNumber(Bytes &bytes, uint64_t greatest)
{
    switch (bytes.below(4))
    {
    case 0:
        return greatest;
    case 1:
        return bytes.wide() & greatest;
    default:
        return bytes.byte();
    }
}

Value signedValue(int64_t number, const std::string &bytes, uint32_t wireType)
{
    return {std::to_string(number), bytes, wireType, number == 0};
}

Value unsignedValue(uint64_t number, const std::string &bytes, uint32_t wireType)
{
    return {std::to_string(number), bytes, wireType, number == 0};
}

Value floatingValue(Bytes &bytes, bool isFloat)
{
    // Halves within 24 bits are the same as a text, as a float and as a double.
    const double number = static_cast<double>(static_cast<int32_t>(bytes.number()) / 512) / 2;
    char text[32];
    (void)std::snprintf(text, sizeof(text), "%.1f", number);
    Value value;
    value.text = text;
    // "-0.0" is no default: its bits are not all 0, but that text is never made.
    value.isDefault = number == 0;
    uint64_t bits = 0;
    if (isFloat)
    {
        const auto narrow = static_cast<float>(number);
        uint32_t narrowBits = 0;
        std::memcpy(&narrowBits, &narrow, sizeof(narrow));
        bits = narrowBits;
    }
    else
    {
        std::memcpy(&bits, &number, sizeof(number));
    }
    value.bytes = fixed(bits, isFloat ? 4 : 8);
    value.wireType = isFloat ? kFixed32 : kFixed64;
    return value;
}

/** Printable text, never empty and never white space at its beginning, which both would stand for something else. */
Value textValue(Bytes &bytes)
{
    std::string text = "t";
    for (uint32_t count = bytes.below(20); count > 0; --count)
    {
        const uint8_t c = bytes.byte();
        text += c >= 0x7F ? std::string("\xC3") + static_cast<char>(0x80 | (c & 0x3F))
                          : std::string(1, static_cast<char>(c < 0x20 ? ' ' : c));
    }
    return {text, delimited(text), kDelimited, false};
}

Value enumValue(const Node &node, Bytes &bytes)
{
    const uint32_t index = bytes.below(static_cast<uint32_t>(node.enumValues.size()));
    return {node.enumValues[index], varint(index), kVarint, index == 0};
}

Value leafValue(const Node &node, Bytes &bytes)
{
    int64_t number = 0;
    uint64_t count = 0;
    switch (node.kind)
    {
    case Kind::DOUBLE:
    case Kind::FLOAT:
        return floatingValue(bytes, node.kind == Kind::FLOAT);
    case Kind::INT64:
    case Kind::SFIXED64:
    case Kind::SINT64:
        number = signedNumber(bytes, INT64_MIN, INT64_MAX);
        return node.kind == Kind::SFIXED64 ? signedValue(number, fixed(static_cast<uint64_t>(number), 8), kFixed64)
               : node.kind == Kind::SINT64 ? signedValue(number, varint(zigzag(number)), kVarint)
                                           : signedValue(number, varint(static_cast<uint64_t>(number)), kVarint);
    case Kind::INT32:
    case Kind::SFIXED32:
    case Kind::SINT32:
        number = signedNumber(bytes, INT32_MIN, INT32_MAX);
        return node.kind == Kind::SFIXED32 ? signedValue(number, fixed(static_cast<uint64_t>(number), 4), kFixed32)
               : node.kind == Kind::SINT32 ? signedValue(number, varint(zigzag(number)), kVarint)
                                           : signedValue(number, varint(static_cast<uint64_t>(number)), kVarint);
    case Kind::UINT64:
    case Kind::FIXED64:
        count = unsignedNumber(bytes, UINT64_MAX);
        return unsignedValue(count, node.kind == Kind::UINT64 ? varint(count) : fixed(count, 8),
                             node.kind == Kind::UINT64 ? kVarint : kFixed64);
    case Kind::BOOL:
        count = bytes.below(2);
        return {count == 0 ? "false" : "true", varint(count), kVarint, count == 0};
    case Kind::STRING:
    case Kind::BYTES:
        return textValue(bytes);
    case Kind::ENUM:
        return enumValue(node, bytes);
    default:
        count = unsignedNumber(bytes, UINT32_MAX);
        return unsignedValue(count, node.kind == Kind::UINT32 ? varint(count) : fixed(count, 4),
                             node.kind == Kind::UINT32 ? kVarint : kFixed32);
    }
}

std::string escapedXml(const std::string &text)
{
    std::string out;
    for (const char c : text)
    {
        out += c == '<' ? "&lt;" : c == '&' ? "&amp;" : c == '>' ? "&gt;" : std::string(1, c);
    }
    return out;
}

std::string escapedJson(const std::string &text)
{
    std::string out;
    for (const char c : text)
    {
        out += c == '"' || c == '\\' ? std::string("\\") + c : std::string(1, c);
    }
    return out;
}

/** A message as far as it is filled: the bytes of its fields by number, which is the order in which they are written.
 */
struct Filled
{
    std::map<uint32_t, std::string> fields;

    std::string bytes() const
    {
        std::string all;
        for (const auto &field : fields)
        {
            all += field.second;
        }
        return all;
    }
};

class DocumentMaker
{
public:
    explicit DocumentMaker(Bytes &bytes) : m_bytes(bytes) {}

    Expectation make(const Node &top)
    {
        Expectation document;
        Filled fromXml;
        Filled fromJson;
        std::string members;
        std::string elements;
        fillMessage(top, false, elements, members, fromXml, fromJson);
        document.xml = "<" + top.name + ">" + elements + "</" + top.name + ">";
        document.isXmlEmpty = elements.empty();
        document.json = "{\"" + top.name + "\":{" + members + "}}";
        document.fromXml = fromXml.bytes();
        document.fromJson = fromJson.bytes();
        return document;
    }

private:
    static void member(std::string &members, const std::string &name, const std::string &value)
    {
        members += (members.empty() ? "\"" : ",\"") + name + "\":" + value;
    }

    void fillMessage(const Node &node, bool isCase, std::string &xml, std::string &json, Filled &fromXml,
                     Filled &fromJson)
    {
        for (const Node &child : node.children)
        {
            if (m_bytes.below(5) == 0)
            {
                continue;
            }
            if (child.kind == Kind::CHOICE)
            {
                fillChoice(child, xml, json, fromXml, fromJson);
            }
            else if (child.kind == Kind::MESSAGE)
            {
                fillContainer(child, isCase, xml, json, fromXml, fromJson);
            }
            else
            {
                fillLeaf(child, xml, json, fromXml, fromJson);
            }
        }
    }

    /** The nodes of one case stand in the document without an element of the case's own. */
    void fillChoice(const Node &choice, std::string &xml, std::string &json, Filled &fromXml, Filled &fromJson)
    {
        const Node &chosen = choice.children[m_bytes.below(static_cast<uint32_t>(choice.children.size()))];
        Filled innerXml;
        Filled innerJson;
        std::string elements;
        std::string members;
        const bool opensBefore = m_opensCase;
        m_opensCase = false;
        fillMessage(chosen, true, elements, members, innerXml, innerJson);
        const std::string header = tag(chosen.number, kDelimited);
        if (!elements.empty())
        {
            fromXml.fields[chosen.number] = header + delimited(innerXml.bytes());
        }
        // A leaf-list that JSON leaves out opens no case either.
        if (m_opensCase)
        {
            fromJson.fields[chosen.number] = header + delimited(innerJson.bytes());
        }
        xml += elements;
        json += (json.empty() || members.empty() ? "" : ",") + members;
        m_opensCase = m_opensCase || opensBefore;
    }

    void fillContainer(const Node &node, bool inCase, std::string &xml, std::string &json, Filled &fromXml,
                       Filled &fromJson)
    {
        const uint32_t count = node.repeated ? 1 + m_bytes.below(kMaxEntries) : 1;
        std::string entries;
        for (uint32_t i = 0; i < count; ++i)
        {
            Filled innerXml;
            Filled innerJson;
            std::string elements;
            std::string members;
            fillMessage(node, false, elements, members, innerXml, innerJson);
            // A container that is only present leaves the layers of its case open, and then nothing behind it is
            // found.
            if (inCase && elements.empty())
            {
                continue;
            }
            const std::string header = tag(node.number, kDelimited);
            fromXml.fields[node.number] += header + delimited(innerXml.bytes());
            fromJson.fields[node.number] += header + delimited(innerJson.bytes());
            // Content that begins with a line feed stands for nothing but the container.
            xml += "<" + node.name + ">" + (elements.empty() ? "\n" : elements) + "</" + node.name + ">";
            entries += (entries.empty() ? "{" : ",{") + members + "}";
        }
        if (!entries.empty())
        {
            member(json, node.name, node.repeated ? "[" + entries + "]" : entries);
            m_opensCase = true;
        }
    }

    void fillLeaf(const Node &node, std::string &xml, std::string &json, Filled &fromXml, Filled &fromJson)
    {
        const uint32_t count = node.repeated ? 1 + m_bytes.below(kMaxEntries) : 1;
        std::string values;
        std::string packed;
        std::string separate;
        Value value;
        for (uint32_t i = 0; i < count; ++i)
        {
            value = leafValue(node, m_bytes);
            xml += "<" + node.name + ">" + escapedXml(value.text) + "</" + node.name + ">";
            values += (values.empty() ? "\"" : ",\"") + escapedJson(value.text) + "\"";
            packed += value.bytes;
            separate += tag(node.number, kDelimited) + value.bytes;
        }
        std::string bytes;
        if (!node.repeated)
        {
            bytes = value.isDefault ? std::string() : tag(node.number, value.wireType) + value.bytes;
        }
        else
        {
            bytes = value.wireType == kDelimited ? separate : tag(node.number, kDelimited) + delimited(packed);
        }
        fromXml.fields[node.number] = bytes;
        member(json, node.name, node.repeated ? "[" + values + "]" : values);
        if (!node.repeated || node.kind == Kind::ENUM)
        {
            fromJson.fields[node.number] = bytes;
            m_opensCase = true;
        }
    }

    Bytes &m_bytes;
    bool m_opensCase = false;
};

} // namespace

Expectation makeDocument(const Node &top, Bytes &bytes)
{
    return DocumentMaker(bytes).make(top);
}

} // namespace gpbfuzz
