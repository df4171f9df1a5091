#include "compiler/gpb_type_chain.h"

#include <algorithm>
#include <google/protobuf/descriptor.h>
#include <unordered_map>
#include <vector>

using google::protobuf::Descriptor;

namespace
{

// A type that has been reached. Types that reach each other form a group (a type in no circle is one of its own), and
// groups are finished innermost first.
struct Type
{
    const Descriptor *descriptor;
    int nextField;
    size_t earliest; // number of the earliest type of an unfinished group that this one reaches
    size_t below;    // longest chain of the finished groups that this one's group so far leads to
    size_t chain;    // longest chain from here; 0 while the group is unfinished
};

class TypeWalk
{
public:
    size_t Run(const Descriptor *top)
    {
        Enter(top);
        while (!path_.empty())
        {
            const size_t current = path_.back();
            const Descriptor *next = NextFieldType(types_[current]);
            if (next == nullptr)
            {
                Leave(current);
                continue;
            }
            const auto known = numbers_.find(next);
            if (known == numbers_.end())
            {
                Enter(next);
                continue;
            }
            const Type &reached = types_[known->second];
            if (reached.chain == 0)
            {
                types_[current].earliest = std::min(types_[current].earliest, known->second);
            }
            types_[current].below = std::max(types_[current].below, reached.chain);
        }
        return types_.front().chain;
    }

private:
    void Enter(const Descriptor *descriptor)
    {
        const size_t number = types_.size();
        numbers_.emplace(descriptor, number);
        types_.push_back({descriptor, 0, number, 0, 0});
        path_.push_back(number);
        unfinished_.push_back(number);
    }

    // The message type of the next field that has one, or null behind the last field.
    static const Descriptor *NextFieldType(Type &type)
    {
        while (type.nextField < type.descriptor->field_count())
        {
            const Descriptor *found = type.descriptor->field(type.nextField++)->message_type();
            if (found != nullptr)
            {
                return found;
            }
        }
        return nullptr;
    }

    void Leave(size_t current)
    {
        path_.pop_back();
        if (types_[current].earliest == current)
        {
            FinishGroup(current);
        }
        if (path_.empty())
        {
            return;
        }
        const Type &type = types_[current];
        Type &upper = types_[path_.back()];
        if (type.chain == 0)
        {
            upper.earliest = std::min(upper.earliest, type.earliest);
        }
        upper.below = std::max(upper.below, type.chain == 0 ? type.below : type.chain);
    }

    // The group of `first` is everything that is unfinished from there on.
    void FinishGroup(size_t first)
    {
        const auto begin = std::find(unfinished_.rbegin(), unfinished_.rend(), first).base() - 1;
        const auto size = static_cast<size_t>(unfinished_.end() - begin);
        for (auto member = begin; member != unfinished_.end(); ++member)
        {
            types_[*member].chain = size + types_[first].below;
        }
        unfinished_.erase(begin, unfinished_.end());
    }

    std::vector<Type> types_;
    std::unordered_map<const Descriptor *, size_t> numbers_;
    std::vector<size_t> path_;       // from the top to the type that is being looked at
    std::vector<size_t> unfinished_; // in the order they were reached
};

} // namespace

size_t GpbLongestTypeChain(const Descriptor *top)
{
    return TypeWalk().Run(top);
}
