#include "value_check.h"

#include <google/protobuf/descriptor.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <limits>
#include <vector>

#include "core/gpb_protobuf_compat.h"
#include "gpb_templatelib/gpb_compiler.h"
#include "gpb_templatelib/gpb_descriptor.h"

namespace gpbtool
{

namespace
{

namespace pb = google::protobuf;

/** Longer values are cut in messages. */
constexpr std::size_t kShownLength = 60;

std::string Quoted(const std::string &value)
{
    return "\"" + (value.size() > kShownLength ? value.substr(0, kShownLength) + "..." : value) + "\"";
}

bool OnlyBlanks(const char *text)
{
    return std::string(text).find_first_not_of(" \t\r\n") == std::string::npos;
}

bool IsSigned(const std::string &value, long long minimum, long long maximum)
{
    char *end = nullptr;
    errno = 0;
    const long long number = std::strtoll(value.c_str(), &end, 10);
    return end != value.c_str() && OnlyBlanks(end) && errno == 0 && number >= minimum && number <= maximum;
}

bool IsUnsigned(const std::string &value, unsigned long long maximum)
{
    char *end = nullptr;
    errno = 0;
    const unsigned long long number = std::strtoull(value.c_str(), &end, 10);
    const bool negative = value.find('-') != std::string::npos;
    return end != value.c_str() && OnlyBlanks(end) && errno == 0 && !negative && number <= maximum;
}

bool IsReal(const std::string &value)
{
    char *end = nullptr;
    std::strtod(value.c_str(), &end);
    return end != value.c_str() && OnlyBlanks(end);
}

std::vector<std::string> SplitAtBlanks(const std::string &text)
{
    std::vector<std::string> tokens;
    std::size_t begin = 0;
    while (begin < text.size())
    {
        const std::size_t end = std::min(text.find(' ', begin), text.size());
        tokens.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return tokens;
}

bool IsEnumValue(const pb::FieldDescriptor &field, const std::string &token)
{
    if (token.size() >= GPB_NAME_SIZE)
    {
        return false;
    }
    // Special characters become two and are written without a bounds test.
    std::vector<char> name(GPB_NAME_SIZE + 2 + 2 * token.size() + 1, '\0');
    const char *converted = GpbXmlCompilerBase_EnumYang2Proto(token.c_str(), GpbPbName(*field.enum_type()).c_str(),
                                                              name.data(), GPB_NAME_SIZE);
    return converted != nullptr && field.enum_type()->FindValueByName(converted) != nullptr;
}

std::string EnumProblem(const pb::FieldDescriptor &field, const std::string &value)
{
    const std::vector<std::string> tokens = SplitAtBlanks(value);
    for (const std::string &token : tokens)
    {
        if (!IsEnumValue(field, token))
        {
            return Quoted(token) + " is no value of enumeration " + GpbPbName(*field.enum_type());
        }
    }
    return !field.is_repeated() && tokens.size() > 1 ? Quoted(value) + " are several values, the leaf takes one" : "";
}

} // namespace

std::string ValueProblem(const pb::FieldDescriptor &field, const std::string &value)
{
    bool good = true;
    switch (field.cpp_type())
    {
    case pb::FieldDescriptor::CPPTYPE_INT32:
        good = IsSigned(value, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max());
        break;
    case pb::FieldDescriptor::CPPTYPE_INT64:
        good = IsSigned(value, std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max());
        break;
    case pb::FieldDescriptor::CPPTYPE_UINT32:
        good = IsUnsigned(value, std::numeric_limits<std::uint32_t>::max());
        break;
    case pb::FieldDescriptor::CPPTYPE_UINT64:
        good = IsUnsigned(value, std::numeric_limits<std::uint64_t>::max());
        break;
    case pb::FieldDescriptor::CPPTYPE_DOUBLE:
    case pb::FieldDescriptor::CPPTYPE_FLOAT:
        good = IsReal(value);
        break;
    case pb::FieldDescriptor::CPPTYPE_BOOL:
        good = value == "true" || value == "false";
        break;
    case pb::FieldDescriptor::CPPTYPE_ENUM:
        return EnumProblem(field, value);
    case pb::FieldDescriptor::CPPTYPE_STRING:
    case pb::FieldDescriptor::CPPTYPE_MESSAGE:
        break;
    }
    return good ? std::string() : Quoted(value) + " is no value of type " + GpbPbTypeName(field);
}

} // namespace gpbtool
