#include "json_shape.h"

#include <google/protobuf/descriptor.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <new>

#include "gpb_templatelib/gpb_descriptor.h"
#include "json_document.h"
#include "value_check.h"

namespace gpbtool
{

namespace
{

namespace pb = google::protobuf;

/** The number that a reader finds in the text that the library prints for this one: printing may cut digits. */
double Printed(double number)
{
    const JsonTree item(cJSON_CreateNumber(number));
    char *text = cJSON_PrintUnformatted(item.get());
    if (text == nullptr)
    {
        throw std::bad_alloc();
    }
    const double printed = std::strtod(text, nullptr);
    cJSON_free(text);
    return printed;
}

/** Whether a whole number is still the same after its way through a number of JSON. */
template <typename Integer>
bool SurvivesAsNumber(const std::string &text, Integer number)
{
    // The first power of two beyond the type; casting what is not below it is undefined.
    constexpr int kBits = std::numeric_limits<Integer>::digits;
    const double printed = Printed(std::strtod(text.c_str(), nullptr));
    return printed < std::ldexp(1.0, kBits) && static_cast<Integer>(printed) == number;
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
        if (lossless_)
        {
            return "";
        }
        const auto first = firstParents_.emplace(&field, node.parent).first;
        return first->second == node.parent
                   ? ""
                   : "goes to the list in line " + std::to_string(xmlGetLineNo(first->second)) +
                         ": the library makes one array of all lists of that type";
    }
    // With the lossless setting, members of one name have their modules in front of it.
    const bool isNew = lossless_ ? losslessMembers_.emplace(node.parent, &field).second
                                 : members_.emplace(node.parent, reinterpret_cast<const char *>(node.name)).second;
    return isNew ? "" : "stands twice in its element, which gives an object with two members of one name";
}

std::string JsonShape::NumberProblem(const std::string &text, const pb::FieldDescriptor &field) const
{
    if (!ValueProblem(field, text).empty())
    {
        return "";
    }
    const double value = std::strtod(text.c_str(), nullptr);
    bool survives = true;
    switch (field.cpp_type())
    {
    case pb::FieldDescriptor::CPPTYPE_DOUBLE:
        survives = std::isfinite(value) && Printed(value) == value;
        break;
    case pb::FieldDescriptor::CPPTYPE_FLOAT:
        survives = std::isfinite(value) && static_cast<float>(Printed(value)) == static_cast<float>(value);
        break;
    case pb::FieldDescriptor::CPPTYPE_INT64:
        survives = !numbers64_ || SurvivesAsNumber(text, std::strtoll(text.c_str(), nullptr, 10));
        break;
    case pb::FieldDescriptor::CPPTYPE_UINT64:
        survives = !numbers64_ || SurvivesAsNumber(text, std::strtoull(text.c_str(), nullptr, 10));
        break;
    default:
        break;
    }
    return survives ? "" : "\"" + text + "\" is no number that JSON can hold as it is";
}

} // namespace gpbtool
