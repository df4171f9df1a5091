#include "json_shape.h"

#include <google/protobuf/descriptor.h>

#include <cmath>
#include <cstdlib>

#include "gpb_templatelib/gpb_descriptor.h"
#include "value_check.h"

namespace gpbtool
{

namespace
{

namespace pb = google::protobuf;

/** Whole numbers up to this one are exact as doubles, which numbers of JSON become. */
constexpr long long kLastExact = 1LL << 53;

bool IsExact(const std::string &text, bool isSigned)
{
    if (isSigned)
    {
        const long long number = std::strtoll(text.c_str(), nullptr, 10);
        return number >= -kLastExact && number <= kLastExact;
    }
    return std::strtoull(text.c_str(), nullptr, 10) <= static_cast<unsigned long long>(kLastExact);
}

} // namespace

std::string JsonShape::Problem(const xmlNode &node, const pb::FieldDescriptor &field)
{
    std::string problem = StructureProblem(node, field);
    if (problem.empty() && node.children != nullptr && node.children->content != nullptr)
    {
        problem = NumberProblem(reinterpret_cast<const char *>(node.children->content), field);
    }
    return problem;
}

std::string JsonShape::StructureProblem(const xmlNode &node, const pb::FieldDescriptor &field)
{
    // A leaf of bits is one member, although its field takes several values.
    const bool bits = field.enum_type() != nullptr && GPB_GetXmlNodeLeafBitsType(const_cast<xmlNode *>(&node)) == 0;
    if (field.is_repeated() && !bits)
    {
        const auto first = firstParents_.emplace(&field, node.parent).first;
        return first->second == node.parent
                   ? ""
                   : "goes to the list in line " + std::to_string(xmlGetLineNo(first->second)) +
                         ": the library makes one array of all lists of that type";
    }
    const bool isNew = members_.emplace(node.parent, reinterpret_cast<const char *>(node.name)).second;
    return isNew ? "" : "stands twice in its element, which gives an object with two members of one name";
}

std::string JsonShape::NumberProblem(const std::string &text, const pb::FieldDescriptor &field) const
{
    if (!ValueProblem(field, text).empty())
    {
        return "";
    }
    switch (field.cpp_type())
    {
    case pb::FieldDescriptor::CPPTYPE_DOUBLE:
    case pb::FieldDescriptor::CPPTYPE_FLOAT:
        return std::isfinite(std::strtod(text.c_str(), nullptr)) ? "" : "JSON has no number \"" + text + "\"";
    case pb::FieldDescriptor::CPPTYPE_INT64:
    case pb::FieldDescriptor::CPPTYPE_UINT64:
        return !numbers64_ || IsExact(text, field.cpp_type() == pb::FieldDescriptor::CPPTYPE_INT64)
                   ? ""
                   : "\"" + text + "\" loses digits as a number; without --numbers64 it is a text";
    default:
        return "";
    }
}

} // namespace gpbtool
