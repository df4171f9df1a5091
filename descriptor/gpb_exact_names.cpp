#include "descriptor/gpb_exact_names.h"

#include <algorithm>
#include <limits>
#include <map>
#include <set>
#include <utility>

#include "core/gpb_protobuf_compat.h"
#include "gpb_templatelib/gpb_limits.h"

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;

namespace
{

constexpr char MODULE_END = ':';
constexpr char MODULE_PART = '-'; // between the parts of a module's name

bool IsMessage(const FieldDescriptor &field)
{
    return field.type() == FieldDescriptor::TYPE_MESSAGE;
}

bool IsCase(const FieldDescriptor &field)
{
    return IsMessage(field) && field.real_containing_oneof() != nullptr;
}

// As field names are spelt.
char Converted(char c)
{
    if (c == '-' || c == '.')
    {
        return '_';
    }
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string Converted(std::string_view name)
{
    std::string converted(name);
    for (char &c : converted)
    {
        c = Converted(c);
    }
    return converted;
}

// As most modules spell their nodes; converts back to the name.
std::string WithDashes(std::string_view name)
{
    std::string spelling(name);
    std::replace(spelling.begin(), spelling.end(), '_', '-');
    return spelling;
}

bool EndsWith(std::string_view text, std::string_view end)
{
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

} // namespace

template class GpbLayerTables<GpbExactNames>;

// Collects the fields and their names.
class GpbExactNames::Builder
{
public:
    Builder(const Descriptor *message, int32_t layer)
    {
        CollectFields(message, layer);
        CollectSpellings();
    }

    std::deque<GpbExactField> fields;
    std::map<std::string, std::vector<Entry>> entriesBySpelling;

    size_t BytesOfSpellings() const
    {
        size_t bytes = 0;
        for (const auto &[spelling, entries] : entriesBySpelling)
        {
            bytes += spelling.size();
        }
        return bytes;
    }

private:
    using Cases = std::vector<const FieldDescriptor *>;

    // Breadth first. A case type that was seen holds nothing new: so types that contain themselves come to an end.
    void CollectFields(const Descriptor *message, int32_t layer)
    {
        std::set<const Descriptor *> seen = {message};
        std::deque<std::pair<const Descriptor *, Cases>> open = {{message, Cases()}};
        for (; !open.empty(); open.pop_front())
        {
            const auto &[holder, cases] = open.front();
            for (int i = 0; i < holder->field_count(); ++i)
            {
                const FieldDescriptor *field = holder->field(i);
                if (!IsCase(*field))
                {
                    AddField(field, cases, layer + static_cast<int32_t>(cases.size()), false);
                    continue;
                }
                // What lies in more cases than there are layers cannot be opened anyway.
                if (cases.size() < GPB_COMPILER_MAX_LAYERS && seen.insert(field->message_type()).second)
                {
                    Cases inner = cases;
                    inner.push_back(field);
                    open.emplace_back(field->message_type(), std::move(inner));
                }
            }
        }
        for (int i = 0; i < message->field_count(); ++i)
        {
            if (IsCase(*message->field(i)))
            {
                AddField(message->field(i), Cases(), layer, true);
            }
        }
    }

    void AddField(const FieldDescriptor *field, const Cases &cases, int32_t layer, bool isCaseItself)
    {
        fields.push_back({field, cases});
        const GpbExactField *added = &fields.back();
        if (field->has_json_name())
        {
            const std::string name(GpbPbJsonName(*field));
            const size_t end = name.find(MODULE_END);
            if (end == std::string::npos || end == 0)
            {
                byJsonName_[name].push_back({added, Match::JSON_NAME, isCaseItself, {}});
            }
            else
            {
                byJsonName_[name.substr(end + 1)].push_back(
                    {added, Match::MODULE_NAME, isCaseItself, name.substr(0, end)});
            }
        }
        const std::string name(GpbPbLowercaseName(*field));
        byFieldName_[name].push_back({added, Match::FIELD_NAME, isCaseItself, {}});
        const std::string number = std::to_string(layer);
        if (EndsWith(name, number))
        {
            byFieldName_[name.substr(0, name.size() - number.size())].push_back(
                {added, Match::FIELD_NAME_LAYER, isCaseItself, {}});
        }
    }

    // Each spelling gets all that it stands for, so that a name that is found as it is needs no second look.
    void CollectSpellings()
    {
        for (const auto &[name, entries] : byJsonName_)
        {
            std::vector<Entry> &all = entriesBySpelling[name];
            all = entries;
            const auto found = byFieldName_.find(Converted(name));
            if (found != byFieldName_.end())
            {
                all.insert(all.end(), found->second.begin(), found->second.end());
            }
        }
        for (const auto &[name, entries] : byFieldName_)
        {
            entriesBySpelling.try_emplace(name, entries);
            entriesBySpelling.try_emplace(WithDashes(name), entries);
        }
    }

    std::map<std::string, std::vector<Entry>> byJsonName_;
    std::map<std::string, std::vector<Entry>> byFieldName_;
};

GpbExactNames::GpbExactNames(const Descriptor *message, int32_t layer) : GpbExactNames(Builder(message, layer)) {}

GpbExactNames::GpbExactNames(Builder &&builder)
    : fields_(std::move(builder.fields)), places_(builder.entriesBySpelling.size(), builder.BytesOfSpellings())
{
    entries_.reserve(builder.entriesBySpelling.size());
    for (auto &[spelling, entries] : builder.entriesBySpelling)
    {
        entries_.push_back(std::move(entries));
        places_.Add(spelling, static_cast<uint32_t>(entries_.size()));
    }
}

const GpbExactField *GpbExactNames::Find(std::string_view name, GpbExactKind kind, std::string_view module) const
{
    const uint32_t place = places_.Find(name);
    if (place != GpbNameMap::NOTHING)
    {
        return Best(entries_[place - 1], kind, module, false);
    }
    const uint32_t converted = places_.Find(Converted(name));
    return converted == GpbNameMap::NOTHING ? nullptr : Best(entries_[converted - 1], kind, module, true);
}

// How the entry of a name fits a module.
GpbExactNames::Match GpbExactNames::MatchOf(const Entry &entry, std::string_view module)
{
    if (entry.match != Match::MODULE_NAME || entry.module == module)
    {
        return entry.match;
    }
    const bool isEnd = !module.empty() && EndsWith(entry.module, module) &&
                       entry.module[entry.module.size() - module.size() - 1] == MODULE_PART;
    return isEnd ? Match::MODULE_END_NAME : Match::OTHER_MODULE_NAME;
}

// The best of a name's entries. A node whose name had to be converted has no field's JSON name.
const GpbExactField *GpbExactNames::Best(const std::vector<Entry> &entries, GpbExactKind kind, std::string_view module,
                                         bool isConverted)
{
    // What outweighs what: the case itself comes last, then the match counts, then the kind.
    constexpr unsigned MESSAGE_WEIGHT = 1;
    constexpr unsigned MATCH_WEIGHT = 2;
    constexpr unsigned CASE_WEIGHT = MATCH_WEIGHT * static_cast<unsigned>(Match::NONE);
    const GpbExactField *best = nullptr;
    // The length of the module's name decides between modules of one end.
    std::pair<unsigned, size_t> least(std::numeric_limits<unsigned>::max(), 0);
    for (const Entry &entry : entries)
    {
        const bool isMessage = IsMessage(*entry.field->field);
        const bool isJsonName = entry.match == Match::MODULE_NAME || entry.match == Match::JSON_NAME;
        if ((kind != GpbExactKind::ANY && isMessage != (kind == GpbExactKind::MESSAGE)) || (isConverted && isJsonName))
        {
            continue;
        }
        const Match match = MatchOf(entry, module);
        const std::pair<unsigned, size_t> weight(static_cast<unsigned>(match) * MATCH_WEIGHT +
                                                     (isMessage ? MESSAGE_WEIGHT : 0) +
                                                     (entry.isCaseItself ? CASE_WEIGHT : 0),
                                                 match == Match::MODULE_END_NAME ? entry.module.size() : 0);
        if (weight < least)
        {
            least = weight;
            best = entry.field;
        }
    }
    return best;
}
