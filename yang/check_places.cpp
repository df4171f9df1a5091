#include "yang/check_places.h"

#include <google/protobuf/descriptor.h>
#include <libyang/libyang.h>

#include <algorithm>
#include <functional>
#include <iterator>
#include <string>
#include <utility>

#include "core/gpb_protobuf_compat.h"
#include "descriptor/gpb_exact_module.h"
#include "descriptor/gpb_exact_names.h"
#include "gpb_templatelib/gpb_descriptor.h"
#include "gpb_templatelib/gpb_limits.h"
#include "yang/check_search.h"
#include "yang/proto_names.h"

namespace gpbyang
{

namespace
{

namespace pb = google::protobuf;

constexpr CheckForms kXmlOnly = {true, false};
constexpr CheckForms kJsonOnly = {false, true};
constexpr CheckForms kXmlRefused = {true, false, false, true};

/** A data node with the field that it should get into. */
struct Member
{
    const ProtoField *field;
    const pb::FieldDescriptor *descriptor;
    FieldChain cases; /**< the case fields above it, the outermost first */

    const char *Name() const { return field->node->name; }
    bool IsLeaf() const { return field->message == nullptr; }
};

void Collect(const ProtoMessage &message, const pb::Descriptor &type, const FieldChain &cases,
             std::vector<Member> &members)
{
    for (const ProtoField &field : message.fields)
    {
        const pb::FieldDescriptor *descriptor = type.FindFieldByName(field.name);
        if (field.oneof == kNoOneof)
        {
            members.push_back({&field, descriptor, cases});
            continue;
        }
        FieldChain inner = cases;
        inner.push_back(descriptor);
        Collect(*field.message, *descriptor->message_type(), inner, members);
    }
}

bool HasTooManyCaseFields(const pb::Descriptor &type)
{
    const pb::FieldDescriptor *fields[GPB_MAX_CASE_FIELDS] = {};
    std::uint32_t count = 0;
    return GPB_GetOneofCaseChilds(&type, fields, GPB_MAX_CASE_FIELDS, &count) != 0;
}

/** "goes to m.Top.field" */
std::string Destination(const Search &search)
{
    const pb::FieldDescriptor *found = search.Found();
    return found == nullptr   ? "is not found"
           : search.Reached() ? "goes to " + GpbPbFullName(*found)
                              : "is taken for " + GpbPbFullName(*found) + ", which cannot be opened";
}

class PlaceCheck
{
public:
    PlaceCheck(const ProtoMessage &message, const pb::Descriptor &type, const FieldNodes &nodes,
               std::vector<CheckFinding> &findings)
        : message_(message), type_(type), nodes_(nodes), findings_(findings)
    {
        Collect(message, type, {}, members_);
    }

    void Names()
    {
        const bool tooManyCases = HasTooManyCaseFields(type_);
        for (const Member &member : members_)
        {
            const std::string name = member.Name();
            if (name.size() >= GPB_NAME_SIZE)
            {
                Report(CheckKind::LongName, *member.field, std::to_string(name.size()) + " characters", kRefused);
            }
            else if (name.find('.') != std::string::npos)
            {
                Report(CheckKind::DottedName, *member.field, "", kRefused);
            }
            else if (tooManyCases && !member.cases.empty())
            {
                Report(CheckKind::CaseFields, *member.field, "", kRefused);
            }
            else
            {
                Lookups(member);
            }
        }
    }

    void Entries()
    {
        for (const Member &member : members_)
        {
            if (!member.cases.empty())
            {
                Report(CheckKind::CaseInList, *member.field, "", {});
            }
        }
    }

    /** What the namespace cannot tell apart. */
    void Lossless()
    {
        const GpbExactNames names(&type_, static_cast<std::int32_t>(message_.layer) + 1);
        for (const Member &member : members_)
        {
            const lys_module &module = *member.field->node->module;
            for (const Element element : ElementsOf(*member.field))
            {
                LosslessLookup(names, member, KindOf(element), GpbModuleOfNamespace(module.ns), kXmlOnly);
            }
            LosslessLookup(names, member, member.IsLeaf() ? GpbExactKind::LEAF : GpbExactKind::MESSAGE, module.name,
                           kJsonOnly);
        }
    }

    /** What stands behind an element that leaves the library in a case. */
    void Followers()
    {
        FindOpenMessages();
        for (const Member &member : members_)
        {
            // The keys of an entry come first.
            if ((member.field->node->flags & LYS_KEY) == 0)
            {
                Follower(member);
            }
        }
    }

private:
    /** A message in which the library goes on, with the nodes that leave it there. */
    struct OpenMessage
    {
        const pb::Descriptor *type;
        std::vector<const Member *> causes;
    };

    static constexpr CheckForms kRefused = {true, true, true};

    /** One finding for each kind and node; what is said of a node again adds to its forms. */
    void Report(CheckKind kind, const ProtoField &field, const std::string &detail, CheckForms forms)
    {
        const auto [known, isNew] = reported_.emplace(std::make_pair(kind, &field), findings_.size());
        if (isNew)
        {
            findings_.emplace_back(kind, field.path, detail, forms);
            return;
        }
        Add(findings_[known->second].forms, forms);
    }

    static void Add(CheckForms &all, const CheckForms &forms)
    {
        all = {all.xml || forms.xml, all.json || forms.json, all.refusedJson || forms.refusedJson,
               all.refusedXml || forms.refusedXml};
    }

    static GpbExactKind KindOf(Element element)
    {
        return element == Element::Text      ? GpbExactKind::LEAF
               : element == Element::Content ? GpbExactKind::MESSAGE
                                             : GpbExactKind::ANY;
    }

    void LosslessLookup(const GpbExactNames &names, const Member &member, GpbExactKind kind, std::string_view module,
                        CheckForms forms)
    {
        const GpbExactField *found = names.Find(member.Name(), kind, module);
        if (found != nullptr && found->field == member.descriptor)
        {
            return;
        }
        const auto report = [&](const ProtoField &field, const std::string &detail)
        { ReportLossless(field, detail, forms); };
        report(*member.field, "");
        if (found != nullptr)
        {
            Victims(member, found->cases, found->field, report);
        }
    }

    /** The default takes such nodes for each other, too. */
    void ReportLossless(const ProtoField &field, const std::string &detail, CheckForms forms)
    {
        const CheckKind kind =
            reported_.count({CheckKind::DepthName, &field}) > 0 ? CheckKind::DepthName : CheckKind::SharedName;
        Report(kind, field, detail, forms);
        Add(findings_[reported_.at({kind, &field})].lossless, forms);
    }

    void Lookups(const Member &member)
    {
        const std::vector<Element> elements = ElementsOf(*member.field);
        const Search usual(type_, member.Name(), elements.front() == Element::Text);
        const Search node(type_, member.Name(), false);
        const bool usualIsWrong = !usual.Finds(member.descriptor);
        if (usualIsWrong)
        {
            Report(KindOf(member, usual), *member.field, Destination(usual), kXmlOnly);
        }
        if (!node.Finds(member.descriptor))
        {
            const CheckKind kind = KindOf(member, node);
            const bool isRefused = RefusesJson(member, node);
            Report(kind, *member.field, Destination(node) + " from JSON, and as an empty element",
                   {elements.size() > 1, true, isRefused});
            Victims(kind, member, node, member.IsLeaf() ? !node.FindsMessage() : node.FindsMessage(), kJsonOnly);
        }
        for (const Element element : elements)
        {
            const Search &search = element == Element::Text ? usual : node;
            if (!search.Finds(member.descriptor))
            {
                Victims(KindOf(member, search), member, search, search.Stores(element), kXmlOnly);
            }
        }
    }

    static CheckKind KindOf(const Member &member, const Search &search)
    {
        const pb::FieldDescriptor *found = search.Found();
        return found != nullptr && GpbPbLowercaseName(*found) != FieldName(member.Name()) ? CheckKind::DepthName
                                                                                          : CheckKind::SharedName;
    }

    static bool RefusesJson(const Member &member, const Search &search)
    {
        if (member.field->node->nodetype == LYS_LEAFLIST)
        {
            return search.Found() == nullptr;
        }
        return !search.Reached() || member.IsLeaf() == search.FindsMessage();
    }

    using VictimReport = std::function<void(const ProtoField &, const std::string &detail)>;

    /** What a node that goes astray does to others. */
    void Victims(CheckKind kind, const Member &member, const Search &search, bool stores, CheckForms forms)
    {
        Victims(member, search.Opened(), stores ? search.Found() : nullptr,
                [&](const ProtoField &field, const std::string &detail) { Report(kind, field, detail, forms); });
    }

    /** It clears the other cases of those that it opens, and adds to the field that it is stored in, if any. */
    void Victims(const Member &member, const FieldChain &opened, const pb::FieldDescriptor *stored,
                 const VictimReport &report)
    {
        for (const pb::FieldDescriptor *field : opened)
        {
            const pb::OneofDescriptor *choice = field->real_containing_oneof();
            for (int i = 0; choice != nullptr && i < choice->field_count(); ++i)
            {
                if (choice->field(i) != field)
                {
                    Cleared(member, *choice->field(i), report);
                }
            }
        }
        const auto found = nodes_.find(stored);
        if (found != nodes_.end() && !Exclude(member.cases, opened))
        {
            report(*found->second, "gets what belongs to " + Below(member));
        }
    }

    void Cleared(const Member &cause, const pb::FieldDescriptor &caseField, const VictimReport &report)
    {
        std::vector<Member> cleared;
        Collect(*nodes_.at(&caseField)->message, *caseField.message_type(), {&caseField}, cleared);
        for (const Member &member : cleared)
        {
            if (member.field != cause.field && !Exclude(member.cases, cause.cases))
            {
                report(*member.field, "is lost beside " + Below(cause));
            }
        }
    }

    void FindOpenMessages()
    {
        AddOpenMessages(type_);
        // Each may add others behind it.
        std::size_t next = 0;
        while (next < open_.size())
        {
            AddOpenMessages(*open_[next++].type);
        }
    }

    void AddOpenMessages(const pb::Descriptor &from)
    {
        for (const Member &member : members_)
        {
            for (const Element element : ElementsOf(*member.field))
            {
                const Search search(from, member.Name(), element == Element::Text);
                const pb::Descriptor *left = search.LeftOpen(element);
                if (left != nullptr)
                {
                    AddCause(*left, member);
                }
                if (Stops(search, element))
                {
                    AddStop(member);
                }
            }
        }
    }

    /** An empty element that cannot be placed ends the walk through the message; at the top, that is the document. */
    static bool Stops(const Search &search, Element element)
    {
        return element == Element::Empty && search.Found() != nullptr && !search.Reached();
    }

    void AddCause(const pb::Descriptor &left, const Member &member)
    {
        auto known =
            std::find_if(open_.begin(), open_.end(), [&](const OpenMessage &open) { return open.type == &left; });
        if (known == open_.end())
        {
            known = open_.insert(open_.end(), {&left, {}});
        }
        if (std::find(known->causes.begin(), known->causes.end(), &member) == known->causes.end())
        {
            known->causes.push_back(&member);
        }
    }

    void AddStop(const Member &member)
    {
        stops_.push_back(&member);
        if (message_.layer == 1)
        {
            Report(CheckKind::BehindEmpty, *member.field, "ends the document", kXmlRefused);
        }
    }

    void Follower(const Member &member)
    {
        std::vector<const Member *> causes;
        std::copy_if(stops_.begin(), stops_.end(), std::back_inserter(causes),
                     [&](const Member *other) { return !Exclude(other->cases, member.cases); });
        for (const OpenMessage &open : open_)
        {
            for (const Element element : ElementsOf(*member.field))
            {
                const Search search(*open.type, member.Name(), element == Element::Text);
                if (search.Finds(member.descriptor))
                {
                    continue;
                }
                const auto cause =
                    std::find_if(open.causes.begin(), open.causes.end(),
                                 [&](const Member *other) { return !Exclude(other->cases, member.cases); });
                if (cause != open.causes.end())
                {
                    causes.push_back(*cause);
                    Victims(CheckKind::BehindEmpty, member, search, search.Stores(element), kXmlOnly);
                }
            }
        }
        if (!causes.empty())
        {
            Report(CheckKind::BehindEmpty, *member.field, "behind " + Below(*causes.front()), kXmlOnly);
        }
    }

    /** The path of a node below the message. */
    std::string Below(const Member &member) const { return member.field->path.substr(message_.path.size() + 1); }

    const ProtoMessage &message_;
    const pb::Descriptor &type_;
    const FieldNodes &nodes_;
    std::vector<CheckFinding> &findings_;
    std::vector<Member> members_;
    std::map<std::pair<CheckKind, const ProtoField *>, std::size_t> reported_;
    std::vector<OpenMessage> open_;
    std::vector<const Member *> stops_; /**< nodes behind which the library may look for nothing more */
};

} // namespace

void MapFields(const ProtoMessage &message, const pb::Descriptor &type, FieldNodes &nodes)
{
    for (const ProtoField &field : message.fields)
    {
        const pb::FieldDescriptor *descriptor = type.FindFieldByName(field.name);
        nodes.emplace(descriptor, &field);
        if (field.message != nullptr)
        {
            MapFields(*field.message, *descriptor->message_type(), nodes);
        }
    }
}

void CheckPlaces(const ProtoMessage &message, const pb::Descriptor &type, bool inEntry, const FieldNodes &nodes,
                 std::vector<CheckFinding> &findings)
{
    PlaceCheck check(message, type, nodes, findings);
    check.Names();
    if (inEntry)
    {
        check.Entries();
    }
    check.Followers();
    check.Lossless();
}

} // namespace gpbyang
