#include "yang/proto_names.h"

#include <google/protobuf/compiler/importer.h>

#include <algorithm>
#include <vector>

#include "gpb_templatelib/gpb_compiler.h"
#include "gpb_templatelib/gpb_descriptor.h"
#include "gpb_templatelib/gpb_limits.h"

namespace gpbyang
{

namespace
{

/** Replaced characters become two, "X_", and so does a leading digit. */
constexpr std::size_t kWorstGrowth = 2;
/** "_1", which the library appends in place. */
constexpr std::size_t kSuffixSize = 2;
constexpr std::uint32_t kNoSuffix = 1;
constexpr std::uint32_t kWithSuffix = 0;

bool IsNameCharacter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

/** YANG names have "." and "-" beyond what protobuf's names have. */
std::string WithoutDots(std::string name)
{
    std::replace(name.begin(), name.end(), '.', '_');
    return name;
}

std::string ContainerName(const std::string &node, std::uint32_t suffix)
{
    // The library finds no longer names, and keeps a copy of limited size.
    const std::string most = node.substr(0, GPB_NAME_SIZE - 1);
    std::vector<char> buffer(most.begin(), most.end());
    buffer.resize(most.size() + kSuffixSize + 1);
    Gpb_util_ConverContainerName(buffer.data(), suffix);
    return WithoutDots(buffer.data());
}

/** The library fills its table of special characters when the first compiler is made. */
void FillSpecialCharacters()
{
    google::protobuf::compiler::DiskSourceTree tree;
    const google::protobuf::compiler::Importer importer(&tree, nullptr);
    const GpbXmlCompiler filled(nullptr, &importer, nullptr);
}

} // namespace

std::string PackageName(const std::string &module)
{
    std::string name = WithoutDots(module);
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

std::string FieldName(const std::string &node)
{
    std::vector<char> buffer(node.size() + 1);
    GPB_ConvertXmlNodeName(node.c_str(), buffer.data(), static_cast<std::uint32_t>(buffer.size()));
    return WithoutDots(buffer.data());
}

std::string TopMessageName(const std::string &node)
{
    return ContainerName(node, kNoSuffix);
}

std::string NestedMessageName(const std::string &node)
{
    return ContainerName(node, kWithSuffix);
}

std::string EnumTypeName(const std::string &leaf)
{
    const std::string plain = WithoutDots(leaf);
    std::vector<char> buffer(plain.begin(), plain.end());
    buffer.push_back('\0');
    Gpb_Util_ConvertTopLayerName(buffer.data());
    std::string name = buffer.data();
    name.erase(std::remove(name.begin(), name.end(), '_'), name.end());
    // A name of nothing but "_" and digits is left without a letter to begin with.
    const bool begins = !name.empty() && !(name.front() >= '0' && name.front() <= '9');
    return begins ? name : "E" + name;
}

std::optional<std::string> EnumValueName(const std::string &value, const std::string &type)
{
    static const bool kFilled = (FillSpecialCharacters(), true);
    const bool oneToken = value.size() < GPB_NAME_SIZE && value.find(' ') == std::string::npos;
    if (!kFilled || !oneToken)
    {
        return std::nullopt;
    }
    std::vector<char> buffer(type.size() + kWorstGrowth * (value.size() + 1) + GPB_NAME_SIZE);
    if (GpbXmlCompilerBase_EnumYang2Proto(value.c_str(), type.c_str(), buffer.data(), GPB_NAME_SIZE) == nullptr)
    {
        return std::nullopt;
    }
    std::string name = buffer.data();
    const bool written = std::all_of(name.begin(), name.end(), IsNameCharacter) && name.size() < GPB_NAME_SIZE - 1;
    return written ? std::optional<std::string>(std::move(name)) : std::nullopt;
}

std::string JsonForm(const std::string &field)
{
    std::string form;
    std::copy_if(field.begin(), field.end(), std::back_inserter(form), [](char c) { return c != '_'; });
    return form;
}

bool NameScope::CanAddField(const std::string &name) const
{
    return !Has(name) && jsonForms_.count(JsonForm(name)) == 0;
}

void NameScope::AddField(const std::string &name)
{
    Add(name);
    jsonForms_.insert(JsonForm(name));
}

std::string NameScope::AddUnique(const std::string &name, const std::string &joint, unsigned int first)
{
    std::string unique = name;
    for (unsigned int i = first; Has(unique); ++i)
    {
        unique = name + joint + std::to_string(i);
    }
    Add(unique);
    return unique;
}

} // namespace gpbyang
