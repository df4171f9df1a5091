#include "support/proto_text.h"

#include <algorithm>
#include <cstdint>

namespace gpbbench
{

namespace
{

constexpr size_t INDENT = 2;
constexpr size_t LEAF_KINDS = 8;

std::string FieldName(std::string nodeName)
{
    std::replace(nodeName.begin(), nodeName.end(), '-', '_');
    return nodeName;
}

std::string TypeName(LeafKind kind)
{
    switch (kind)
    {
    case LeafKind::STRING:
        return "string";
    case LeafKind::UINT32:
        return "uint32";
    case LeafKind::ENUM:
        return "Encoding";
    case LeafKind::INT64:
        return "int64";
    case LeafKind::DOUBLE:
        return "double";
    case LeafKind::UINT64:
        return "uint64";
    case LeafKind::BOOL:
    case LeafKind::EMPTY:
        break;
    }
    return "bool";
}

std::string Value(LeafKind kind, size_t seed)
{
    switch (kind)
    {
    case LeafKind::STRING:
        return "/interfaces/interface/" + std::to_string(seed) + "/state";
    case LeafKind::UINT32:
        return std::to_string(1 + seed % 65535);
    case LeafKind::BOOL:
        return "true";
    case LeafKind::ENUM:
        return seed % 2 == 0 ? "PROTO3" : "JSON";
    case LeafKind::INT64:
        return "-" + std::to_string(1 + seed);
    case LeafKind::DOUBLE:
        return std::to_string(seed) + ".25";
    case LeafKind::UINT64:
        return std::to_string(UINT64_C(1) + UINT64_C(1000000007) * seed);
    case LeafKind::EMPTY:
        break;
    }
    return "";
}

} // namespace

LeafKind LeafKindOf(size_t index)
{
    return static_cast<LeafKind>(index % LEAF_KINDS);
}

ProtoText::ProtoText(const std::string &package)
{
    Line("syntax = \"proto3\";");
    Line("package " + package + ";");
}

void ProtoText::Line(const std::string &line)
{
    text_.append(depth_ * INDENT, ' ').append(line).append("\n");
}

void ProtoText::OpenMessage(const std::string &name)
{
    Line("message " + name + " {");
    ++depth_;
}

void ProtoText::CloseMessage()
{
    --depth_;
    Line("}");
}

void ProtoText::OpenChoice(const std::string &name)
{
    Line("oneof " + name + " {");
    ++depth_;
}

void ProtoText::CloseChoice()
{
    CloseMessage();
}

void ProtoText::DeclareEnum()
{
    Line("enum Encoding { Encoding_NONE = 0; Encoding_PROTO3 = 1; Encoding_JSON = 2; }");
}

void ProtoText::LeafField(const std::string &nodeName, LeafKind kind, int number)
{
    Line(TypeName(kind) + " " + FieldName(nodeName) + " = " + std::to_string(number) + ";");
}

void ProtoText::MessageField(const std::string &nodeName, const std::string &type, int number, bool repeated)
{
    Line((repeated ? "repeated " : "") + type + " " + FieldName(nodeName) + " = " + std::to_string(number) + ";");
}

void XmlText::Open(const std::string &name)
{
    text_.append(depth_ * INDENT, ' ').append("<").append(name).append(">\n");
    ++depth_;
}

void XmlText::Close(const std::string &name)
{
    --depth_;
    text_.append(depth_ * INDENT, ' ').append("</").append(name).append(">\n");
}

void XmlText::Leaf(const std::string &name, LeafKind kind, size_t seed)
{
    text_.append(depth_ * INDENT, ' ').append("<").append(name);
    if (kind == LeafKind::EMPTY)
    {
        text_.append("/>\n");
    }
    else
    {
        text_.append(">").append(Value(kind, seed)).append("</").append(name).append(">\n");
    }
    ++leaves_;
}

} // namespace gpbbench
