#include "json_words.h"

#include <google/protobuf/descriptor.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "compiler/exact/gpb_exact_json_number.h"
#include "core/gpb_protobuf_compat.h"
#include "value_check.h"

namespace gpbtool
{

namespace pb = google::protobuf;

namespace
{

/** How the library writes a number for its translators; what is more does not reach the message. */
constexpr const char *kNumberFormat = "%.14g";

constexpr const char *kQuoteIt = ": write it in double quotes";

std::string NumberText(const cJSON &number, bool lossless)
{
    char text[GPB_JSON_NUMBER_SIZE] = {};
    if (lossless && GpbWriteExactNumber(number.valuedouble, text))
    {
        return text;
    }
    std::snprintf(text, sizeof(text), kNumberFormat, number.valuedouble);
    return text;
}

std::string NumberProblem(const pb::FieldDescriptor &field, const cJSON &number, bool lossless)
{
    const std::string text = NumberText(number, lossless);
    if (field.cpp_type() == pb::FieldDescriptor::CPPTYPE_STRING)
    {
        return "a number, but the module wants a text" + std::string(kQuoteIt);
    }
    if (!std::isfinite(number.valuedouble))
    {
        return "a number beyond the range of JSON numbers" + std::string(kQuoteIt);
    }
    if (std::strtod(text.c_str(), nullptr) != number.valuedouble)
    {
        return "the library reads 14 digits of a number, \"" + text + "\" here" + kQuoteIt;
    }
    const std::string problem = ValueProblem(field, text);
    const bool exponent = text.find('e') != std::string::npos;
    return !problem.empty() && exponent ? problem + kQuoteIt : problem;
}

} // namespace

std::string JsonScalarProblem(const pb::FieldDescriptor &field, const cJSON &item, bool lossless)
{
    if (cJSON_IsString(&item) != 0)
    {
        return ValueProblem(field, item.valuestring);
    }
    if (cJSON_IsNumber(&item) != 0)
    {
        return NumberProblem(field, item, lossless);
    }
    if (field.cpp_type() == pb::FieldDescriptor::CPPTYPE_STRING)
    {
        return "true or false, but the module wants a text" + std::string(kQuoteIt);
    }
    return ValueProblem(field, cJSON_IsTrue(&item) != 0 ? "true" : "false");
}

std::string JsonWanted(const pb::FieldDescriptor &field)
{
    if (field.type() == pb::FieldDescriptor::TYPE_MESSAGE)
    {
        return field.is_repeated() ? "a list" : "a container";
    }
    return std::string(field.is_repeated() ? "a leaf-list" : "a leaf") + " of type " + GpbPbTypeName(field);
}

std::string JsonQuoted(const cJSON &item)
{
    return '"' + std::string(item.string) + "\": ";
}

bool IsJsonContainer(const cJSON &item)
{
    return cJSON_IsObject(&item) != 0 || cJSON_IsArray(&item) != 0;
}

const char *JsonKindOf(const cJSON &item)
{
    if (cJSON_IsObject(&item) != 0)
    {
        return "an object";
    }
    if (cJSON_IsArray(&item) != 0)
    {
        return "an array";
    }
    if (cJSON_IsNull(&item) != 0)
    {
        return "null";
    }
    return cJSON_IsString(&item) != 0 ? "a text" : cJSON_IsNumber(&item) != 0 ? "a number" : "true or false";
}

} // namespace gpbtool
