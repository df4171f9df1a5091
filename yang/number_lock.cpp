#include "yang/number_lock.h"

#include <algorithm>
#include <limits>
#include <set>

#include "yang/lock_reader.h"
#include "yang/yang_error.h"

namespace gpbyang
{

namespace
{

/** What a field's bytes depend on. */
std::string TypeOf(const ProtoField &field)
{
    const std::string type = field.message != nullptr ? "message" : field.isEnum ? "enum" : field.type;
    return field.label == ProtoLabel::Repeated ? type + "[]" : type;
}

/** The path of a node below its message. */
std::string Below(const ProtoMessage &message, const ProtoField &field)
{
    return field.path.substr(message.path.size() + 1);
}

template <typename Entry>
std::int64_t Highest(const std::vector<Entry> &entries)
{
    std::int64_t highest = -1;
    for (const Entry &entry : entries)
    {
        highest = std::max<std::int64_t>(highest, entry.number);
    }
    return highest;
}

template <typename Entry>
bool IsTaken(const std::vector<Entry> &entries, std::int32_t number)
{
    return std::any_of(entries.begin(), entries.end(), [&](const Entry &entry) { return entry.number == number; });
}

/** What is no longer there is reserved, its name only when nothing else has it. */
template <typename Entry>
ProtoReserved Reserved(const std::vector<Entry> &entries, const std::string &prefix, const std::set<std::string> &names)
{
    ProtoReserved reserved;
    std::set<std::string> reservedNames;
    for (const Entry &entry : entries)
    {
        if (!entry.present)
        {
            reserved.numbers.push_back(entry.number);
            const std::string name = prefix + (entry.name.empty() ? entry.node : entry.name);
            if (names.count(name) == 0)
            {
                reservedNames.insert(name);
            }
        }
    }
    std::sort(reserved.numbers.begin(), reserved.numbers.end());
    reserved.names.assign(reservedNames.begin(), reservedNames.end());
    return reserved;
}

} // namespace

NumberLock NumberLock::Read(const std::string &text, const std::string &source, const std::string &module)
{
    NumberLock lock(module);
    LockReader(source, lock).Read(text);
    return lock;
}

void NumberLock::Number(ProtoFile &file)
{
    for (const std::unique_ptr<ProtoMessage> &message : file.messages)
    {
        NumberMessage(*message);
    }
}

void NumberLock::NumberMessage(ProtoMessage &message)
{
    Entries &entries = messages_[message.path];
    std::set<std::string> names;
    for (ProtoField &field : message.fields)
    {
        const std::string node = Below(message, field);
        const std::string type = TypeOf(field);
        auto known = std::find_if(entries.begin(), entries.end(),
                                  [&](const Entry &entry) { return entry.node == node && entry.type == type; });
        if (known == entries.end())
        {
            std::int64_t next = std::max<std::int64_t>(Highest(entries), 0) + 1;
            next = next >= kFirstKeptNumber && next <= kLastKeptNumber ? kLastKeptNumber + 1 : next;
            if (next > kMostFieldNumber)
            {
                throw YangError(Fault::Lock, message.path + ": no field numbers are left");
            }
            known = entries.insert(entries.end(), {static_cast<std::int32_t>(next), node, type, field.name});
        }
        known->name = field.name;
        known->present = true;
        field.number = known->number;
        names.insert(field.name);
    }
    message.reserved = Reserved(entries, "", names);
    for (ProtoEnum &made : message.enums)
    {
        NumberEnum(made, enums_[made.path]);
    }
    for (const std::unique_ptr<ProtoMessage> &nested : message.messages)
    {
        NumberMessage(*nested);
    }
}

void NumberLock::NumberEnum(ProtoEnum &made, Entries &entries)
{
    const std::string prefix = made.name + "_";
    std::set<std::string> names;
    for (ProtoEnumValue &value : made.values)
    {
        const std::string node = value.name.substr(prefix.size());
        auto known =
            std::find_if(entries.begin(), entries.end(), [&](const Entry &entry) { return entry.node == node; });
        if (known == entries.end())
        {
            const std::int64_t number = IsTaken(entries, value.wanted) ? Highest(entries) + 1 : value.wanted;
            if (number > std::numeric_limits<std::int32_t>::max())
            {
                throw YangError(Fault::Lock, made.path + ": no numbers are left for " + value.name);
            }
            known = entries.insert(entries.end(), {static_cast<std::int32_t>(number), node, "", ""});
        }
        known->present = true;
        value.number = known->number;
        names.insert(value.name);
    }
    made.reserved = Reserved(entries, prefix, names);
}

std::string NumberLock::Text() const
{
    const auto sorted = [](Entries entries)
    {
        std::sort(entries.begin(), entries.end(), [](const Entry &a, const Entry &b) { return a.number < b.number; });
        return entries;
    };
    std::string text = std::string(kLockHeading) + "\nmodule " + module_ + "\n";
    for (const auto &[path, entries] : messages_)
    {
        text += "\nmessage " + path + "\n";
        for (const Entry &entry : sorted(entries))
        {
            text += "  " + std::to_string(entry.number) + " " + entry.node + " " + entry.type + " " + entry.name + "\n";
        }
    }
    for (const auto &[path, entries] : enums_)
    {
        text += "\nenum " + path + "\n";
        for (const Entry &entry : sorted(entries))
        {
            text += "  " + std::to_string(entry.number) + " " + entry.node + "\n";
        }
    }
    return text;
}

} // namespace gpbyang
