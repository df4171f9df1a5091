#include "descriptor/gpb_name_table.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <functional>
#include <google/protobuf/descriptor.h>
#include <set>
#include <string>
#include <utility>

#include "core/gpb_protobuf_compat.h"
#include "descriptor/gpb_case_index.h"
#include "descriptor/gpb_layer_suffix.h"

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;

namespace
{

constexpr size_t SPELLINGS = 2;

// Fields of all tables that were made, from zero again when there are more than it counts.
std::atomic<uint32_t> g_fieldCount = 0;

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
    GpbNamedField found;
    found.node = node;
    found.leaf = isContainer ? inCase : node;
    return found;
}

// A name that stands for something.
struct Answer
{
    std::string name;
    GpbNamedField found;
};

// The fields of a message lie one behind the other. A field's name without the layer number, which documents use, comes
// before the one with it.
bool IsDeclaredBefore(const Answer &left, const Answer &right)
{
    const auto isBefore = std::less<>();
    const GpbFoundField &one = left.found.node;
    const GpbFoundField &other = right.found.node;
    if (one.caseField != other.caseField)
    {
        return isBefore(one.caseField, other.caseField);
    }
    return one.field == other.field ? left.name.size() < right.name.size() : isBefore(one.field, other.field);
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
    : message_(message), layer_(layer), places_(names.size() * SPELLINGS, BytesOf(names) * SPELLINGS)
{
    const GpbLayerSuffix suffix(layer);
    std::vector<Answer> answers;
    for (const std::string_view candidate : names)
    {
        // No node name is converted to a longer one.
        if (candidate.size() >= GPB_NAME_SIZE)
        {
            continue;
        }
        std::string name(candidate);
        const GpbNamedField found = Search(message, name, suffix, cases);
        if (found.node.field != nullptr)
        {
            answers.push_back({std::move(name), found});
        }
    }
    std::sort(answers.begin(), answers.end(), IsDeclaredBefore);
    fields_.reserve(answers.size() + 1);
    fields_.emplace_back();
    for (const Answer &answer : answers)
    {
        const auto place = static_cast<uint32_t>(fields_.size());
        fields_.push_back(answer.found);
        const char *const kept = places_.Add(answer.name, place);
        const std::string dashed = WithDashes(answer.name);
        fields_.back().name = dashed == answer.name ? kept : places_.Add(dashed, place);
    }
    SetNext();
    SetTableAndNumbers();
}

// The same once more for one of a list, else the first name of the field behind this one, and in the end the first of
// all.
void GpbNameTable::SetNext()
{
    const GpbNamedField *following = fields_.size() > 1 ? &fields_[1] : &fields_.front();
    fields_.front().next = following;
    for (size_t place = fields_.size() - 1; place > 0; --place)
    {
        GpbNamedField &field = fields_[place];
        field.next = field.node.field->is_repeated() ? &field : following;
        if (fields_[place - 1].node.field != field.node.field)
        {
            following = &field;
        }
    }
}

void GpbNameTable::SetTableAndNumbers()
{
    uint32_t number = g_fieldCount.fetch_add(static_cast<uint32_t>(fields_.size()), std::memory_order_relaxed);
    for (GpbNamedField &field : fields_)
    {
        field.table = this;
        field.number = number++;
    }
}

// An address is new once in a document.
bool GpbNameTable::IsNewNameOf(const GpbNamedField &field, const char *nodeName, GpbNameMemo &memo)
{
    const bool isName = std::strcmp(field.name, nodeName) == 0;
    if (isName)
    {
        memo.Keep(nodeName, field);
    }
    return isName;
}

// A name that is known needs no more than this: looking for the text is left to a function of its own, whose needs
// would slow this one down.
const GpbNamedField &GpbNameTable::Find(const char *nodeName, GpbNameGuess &guess, GpbNameMemo *memo, uint32_t walk)
{
    const GpbNameTable &table = *guess.Field()->table;
    const GpbNamedField *const known = memo == nullptr ? nullptr : memo->FieldAt(nodeName, table);
    return known != nullptr ? GuessBehind(*known, guess, memo, walk) : table.FindText(nodeName, guess, memo, walk);
}

[[gnu::noinline]] const GpbNamedField &GpbNameTable::FindText(const char *nodeName, GpbNameGuess &guess,
                                                              GpbNameMemo *memo, uint32_t walk) const
{
    const uint32_t place = places_.Find(nodeName);
    if (place == GpbNameMap::NOTHING)
    {
        // Converted each time: what fails in the platform's functions must not be remembered as a miss.
        return GuessBehind(FindConverted(nodeName), guess, memo, walk);
    }
    // A name in its order will be guessed the next time.
    if (memo != nullptr && &fields_[place] != guess.Field())
    {
        memo->KeepAt(nodeName, fields_[place]);
    }
    return GuessBehind(fields_[place], guess, memo, walk);
}

const GpbNamedField &GpbNameTable::GuessBehind(const GpbNamedField &found, GpbNameGuess &guess, GpbNameMemo *memo,
                                               uint32_t walk)
{
    const bool wasGuessed = &found == guess.Field();
    // A name that stands for nothing is converted each time, so it is never guessed.
    if (memo != nullptr && !wasGuessed && &found != &found.table->fields_.front())
    {
        memo->SetNextOfLast(walk, found);
    }
    Arrive(found, wasGuessed, guess, memo, walk);
    return found;
}

const GpbNamedField &GpbNameTable::FindConverted(const char *nodeName) const
{
    return fields_[places_.Find(GpbFieldName(nodeName).text)];
}
