#include "compiler/gpb_record_plan.h"

#include <algorithm>
#include <google/protobuf/descriptor.h>

#include "compiler/gpb_type_chain.h"
#include "gpb_templatelib/gpb_limits.h"

using google::protobuf::Descriptor;

namespace
{

using KnownTypes = std::unordered_map<const Descriptor *, const GpbRecordType *>;

// A type and all that it reaches through fields, but for those that are known; they have no record type yet.
std::vector<const Descriptor *> UnknownTypes(const Descriptor *top, KnownTypes &known)
{
    std::vector<const Descriptor *> unknown;
    const auto add = [&](const Descriptor *type)
    {
        if (type != nullptr && known.try_emplace(type, nullptr).second)
        {
            unknown.push_back(type);
        }
    };
    add(top);
    size_t next = 0;
    while (next < unknown.size())
    {
        const Descriptor *type = unknown[next++]; // others are added meanwhile
        for (int i = 0; i < type->field_count(); ++i)
        {
            add(type->field(i)->message_type());
        }
    }
    return unknown;
}

// Whether a type has required fields, or fields of types that may reach some.
bool ReachesRequired(const GpbRecordType &type)
{
    for (size_t place = 0; place < type.FieldCount(); ++place)
    {
        const GpbRecordField &field = type.FieldAt(place);
        if (field.isRequired || (field.type != nullptr && field.type->MayReachRequired()))
        {
            return true;
        }
    }
    return false;
}

} // namespace

GpbTopType GpbRecordPlan::TopTypeOf(const Descriptor *type)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto answer = tops_.find(type);
    if (answer != tops_.end())
    {
        return answer->second;
    }
    GpbTopType top;
    top.fitsFactory = GpbLongestTypeChain(type) <= GPB_COMPILER_MAX_TYPE_CHAIN;
    top.record = top.fitsFactory ? MakeTypes(type) : nullptr;
    tops_.emplace(type, top);
    return top;
}

// The record type of a top type; null when records cannot hold all that it reaches. What is known changes only when
// everything has been made.
const GpbRecordType *GpbRecordPlan::MakeTypes(const Descriptor *top)
{
    KnownTypes known = known_;
    const std::vector<const Descriptor *> unknown = UnknownTypes(top, known);
    std::vector<std::unique_ptr<GpbRecordType>> made;
    for (const Descriptor *type : unknown)
    {
        made.push_back(std::make_unique<GpbRecordType>(type));
        if (!made.back()->CanHold())
        {
            return nullptr;
        }
        known[type] = made.back().get();
    }
    for (const std::unique_ptr<GpbRecordType> &type : made)
    {
        type->LinkTo([&](const Descriptor *descriptor) { return known.find(descriptor)->second; });
    }
    // Types that are made together may all reach each other.
    const bool mayReachRequired = std::any_of(unknown.begin(), unknown.end(),
                                              [&](const Descriptor *type) { return ReachesRequired(*known[type]); });
    for (const std::unique_ptr<GpbRecordType> &type : made)
    {
        if (mayReachRequired)
        {
            type->SetMayReachRequired();
        }
    }
    types_.reserve(types_.size() + made.size());
    for (std::unique_ptr<GpbRecordType> &type : made)
    {
        types_.push_back(std::move(type));
    }
    known_.swap(known);
    return known_.find(top)->second;
}
