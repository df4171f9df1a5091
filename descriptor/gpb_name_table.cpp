#include "descriptor/gpb_name_table.h"

#include <algorithm>
#include <google/protobuf/descriptor.h>
#include <set>

#include "core/gpb_protobuf_compat.h"
#include "descriptor/gpb_case_index.h"
#include "descriptor/gpb_layer_suffix.h"

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;

namespace
{

constexpr size_t SPELLINGS = 2;

// Every name that a search in this message can find, and perhaps some that it cannot. A field is found by its own name
// and by its name without the layer number, in the message and in its cases.
std::set<std::string_view> Candidates(const Descriptor *message, const GpbLayerSuffix &suffix,
                                      const GpbCaseIndex &cases)
{
    std::set<std::string_view> names;
    for (int i = 0; i < message->field_count(); ++i)
    {
        const std::string &name = GpbPbLowercaseName(*message->field(i));
        names.insert(name);
        if (suffix.Ends(name))
        {
            names.insert(suffix.CutOff(name));
        }
    }
    for (const auto &[name, found] : cases.All())
    {
        names.insert(name);
    }
    return names;
}

std::string WithDashes(std::string_view name)
{
    std::string spelling(name);
    std::replace(spelling.begin(), spelling.end(), '_', '-');
    return spelling;
}

// As GpbSearchNode and GpbSearchLeaf, but without the platform's functions: what fails in one of them must not be
// remembered as a miss.
GpbNamedField Search(const Descriptor *message, const std::string &name, const GpbLayerSuffix &suffix,
                     const GpbCaseIndex &cases)
{
    const GpbFoundField inCase = cases.Find(name);
    const FieldDescriptor *field = message->FindFieldByLowercaseName(name);
    if (field == nullptr)
    {
        field = message->FindFieldByLowercaseName(suffix.AppendedTo(name));
    }
    const GpbFoundField node = field == nullptr ? inCase : GpbFoundField{field, nullptr};
    const bool isContainer = node.field != nullptr && node.field->type() == FieldDescriptor::TYPE_MESSAGE;
    return {node, isContainer ? inCase : node};
}

size_t BytesOf(const std::set<std::string_view> &names)
{
    size_t bytes = 0;
    for (const std::string_view name : names)
    {
        bytes += name.size();
    }
    return bytes;
}

} // namespace

GpbNameTable::GpbNameTable(const Descriptor *message, int32_t layer)
    : GpbNameTable(message, layer, GpbCaseIndex(message, layer))
{
}

GpbNameTable::GpbNameTable(const Descriptor *message, int32_t layer, const GpbCaseIndex &cases)
    : GpbNameTable(message, layer, cases, Candidates(message, GpbLayerSuffix(layer), cases))
{
}

GpbNameTable::GpbNameTable(const Descriptor *message, int32_t layer, const GpbCaseIndex &cases,
                           const std::set<std::string_view> &names)
    : places_(names.size() * SPELLINGS, BytesOf(names) * SPELLINGS)
{
    const GpbLayerSuffix suffix(layer);
    fields_.reserve(names.size() + 1);
    fields_.emplace_back();
    for (const std::string_view candidate : names)
    {
        // No node name is converted to a longer one.
        if (candidate.size() >= GPB_NAME_SIZE)
        {
            continue;
        }
        const std::string name(candidate);
        const GpbNamedField found = Search(message, name, suffix, cases);
        if (found.node.field == nullptr)
        {
            continue;
        }
        const auto place = static_cast<uint32_t>(fields_.size());
        fields_.push_back(found);
        places_.Add(name, place);
        const std::string dashed = WithDashes(name);
        if (dashed != name)
        {
            places_.Add(dashed, place);
        }
    }
}

const GpbNamedField &GpbNameTable::FindConverted(const char *nodeName) const
{
    return fields_[places_.Find(GpbFieldName(nodeName).text)];
}
