#include "yang/check_search.h"

#include <google/protobuf/descriptor.h>
#include <libyang/libyang.h>

#include "gpb_templatelib/gpb_compiler.h"
#include "gpb_templatelib/gpb_descriptor.h"
#include "gpb_templatelib/gpb_limits.h"
#include "yang/check_values.h"
#include "yang/proto_types.h"

namespace gpbyang
{

namespace pb = google::protobuf;

std::vector<Element> ElementsOf(const ProtoField &field)
{
    const lysc_node &node = *field.node;
    if (field.message != nullptr)
    {
        return MayStandEmpty(node) ? std::vector<Element>{Element::Content, Element::Empty, Element::Break}
                                   : std::vector<Element>{Element::Content};
    }
    std::vector<Element> elements;
    if (LeafType(node)->basetype != LY_TYPE_EMPTY)
    {
        elements.push_back(Element::Text);
    }
    if (MayBeText(node, ""))
    {
        elements.push_back(Element::Empty);
    }
    if (MayBeginWithLineBreak(node))
    {
        elements.push_back(Element::Break);
    }
    return elements;
}

bool Exclude(const FieldChain &a, const FieldChain &b)
{
    for (const pb::FieldDescriptor *one : a)
    {
        for (const pb::FieldDescriptor *other : b)
        {
            if (one != other && one->real_containing_oneof() != nullptr &&
                one->real_containing_oneof() == other->real_containing_oneof())
            {
                return true;
            }
        }
    }
    return false;
}

Search::Search(const pb::Descriptor &from, const char *node, bool asText)
{
    const pb::FieldDescriptor *caseField = nullptr;
    const auto layer = static_cast<std::int32_t>(GPB_GetDescriptorLayerNum(&from) + 1);
    found_ = asText ? GPB_GetLeafFieldDescByNodeName(node, &from, layer, &caseField)
                    : GPB_FindFieldDescByNodeName(&from, node, layer, &caseField);
    reached_ = found_ != nullptr;
    if (found_ == nullptr || caseField == nullptr)
    {
        return;
    }
    const pb::FieldDescriptor *ancestors[GPB_MAX_ANCESTOR_NUM] = {};
    std::uint32_t count = GPB_GetDescriptorAncestors(caseField, &from, ancestors, GPB_MAX_ANCESTOR_NUM);
    reached_ = count > 0;
    while (count > 0 && reached_)
    {
        const pb::FieldDescriptor *entry = ancestors[--count];
        // Nothing but a new entry could be opened for a list.
        reached_ = !entry->is_repeated();
        if (reached_)
        {
            opened_.push_back(entry);
        }
    }
}

bool Search::FindsMessage() const
{
    return reached_ && found_->type() == pb::FieldDescriptor::TYPE_MESSAGE;
}

bool Search::Stores(Element element) const
{
    switch (element)
    {
    case Element::Text:
        return reached_ && !FindsMessage();
    case Element::Empty:
        return reached_ && found_->type() == pb::FieldDescriptor::TYPE_BOOL;
    default:
        return FindsMessage();
    }
}

const pb::Descriptor *Search::LeftOpen(Element element) const
{
    const bool closes = element == Element::Text ? reached_ : element != Element::Break && Stores(element);
    return closes || opened_.empty() ? nullptr : opened_.back()->message_type();
}

} // namespace gpbyang
