#include "yang/proto_builder.h"

#include <libyang/libyang.h>

#include <cstdlib>
#include <functional>
#include <new>
#include <set>

#include "gpb_templatelib/gpb_limits.h"
#include "yang/json_names.h"
#include "yang/proto_names.h"
#include "yang/schema.h"
#include "yang/yang_error.h"

namespace gpbyang
{

namespace
{

using Nodes = std::vector<const lysc_node *>;

bool HasMessage(const lysc_node &node)
{
    return (node.nodetype & (LYS_CONTAINER | LYS_LIST | LYS_NOTIF | LYS_CASE)) != 0;
}

bool IsLeaf(const lysc_node &node)
{
    return (node.nodetype & (LYS_LEAF | LYS_LEAFLIST)) != 0;
}

std::string Text(const char *text)
{
    return text != nullptr ? text : "";
}

/** A module as it is named in the file: with its revision, where it has one. */
std::string Versioned(const lys_module &module)
{
    return module.revision != nullptr ? std::string(module.name) + "@" + module.revision : module.name;
}

/** The name that the library gives a case, of which its field is made. */
std::string CaseName(const lysc_node &node)
{
    return std::string(node.parent->name) + "_" + node.name;
}

class Builder
{
public:
    Builder(const Schema &schema, Decimals decimals, ProtoFile &file)
        : schema_(schema), decimals_(decimals), file_(file)
    {
    }

    void Build()
    {
        NameScope scope;
        AddTop(SchemaChildren(nullptr, schema_), scope);
    }

private:
    /** The nodes below a message that a field or oneof stands for, in their order. */
    struct Members
    {
        Nodes nodes;   /**< data nodes */
        Nodes choices; /**< choices that stand in the message itself */
        Nodes all;     /**< both */
    };

    void LeaveOut(const lysc_node &node, const std::string &reason)
    {
        file_.leftOut.push_back({SchemaPath(node), reason});
    }

    /** Nodes of the top level; the cases of a choice there are no more than its nodes. */
    void AddTop(const Nodes &nodes, NameScope &scope)
    {
        for (const lysc_node *node : nodes)
        {
            if ((node->nodetype & (LYS_CHOICE | LYS_CASE)) != 0)
            {
                AddTop(SchemaChildren(node, schema_), scope);
            }
            else if (HasMessage(*node))
            {
                auto message = std::make_unique<ProtoMessage>();
                message->name = scope.AddUnique(TopMessageName(node->name), "_", 1);
                Fill(*node, *message);
                SetJsonNames(*message);
                file_.messages.push_back(std::move(message));
            }
            else if (IsLeaf(*node))
            {
                LeaveOut(*node, "a document begins with a container, not with a leaf");
            }
            else
            {
                LeaveOut(*node, "data without a schema has no fields");
            }
        }
    }

    void Fill(const lysc_node &node, ProtoMessage &message)
    {
        message.node = &node;
        message.path = SchemaPath(node);
        const Members members = MembersOf(node, message.layer);
        NameScope scope;
        for (const lysc_node *choice : members.choices)
        {
            message.oneofs.push_back({scope.AddUnique(FieldName(choice->name), "_", 1), choice});
        }
        AddFields(members, message, scope);
        // Fields have their names by now, so that types make way for them and not the other way round.
        for (ProtoField &field : message.fields)
        {
            if (HasMessage(*field.node))
            {
                AddMessage(field, message, scope);
            }
        }
        for (ProtoField &field : message.fields)
        {
            if (IsLeaf(*field.node))
            {
                SetLeafType(field, message, scope);
            }
        }
    }

    Members MembersOf(const lysc_node &parent, unsigned int layer)
    {
        Members members;
        for (const lysc_node *node : SchemaChildren(&parent, schema_))
        {
            const bool isChoice = node->nodetype == LYS_CHOICE;
            if ((isChoice || HasMessage(*node)) && layer >= GPB_COMPILER_MAX_LAYERS)
            {
                LeaveOut(*node, "it lies below " + std::to_string(GPB_COMPILER_MAX_LAYERS) + " layers of messages");
                continue;
            }
            if (!isChoice && !HasMessage(*node) && !IsLeaf(*node))
            {
                LeaveOut(*node, "data without a schema has no fields");
                continue;
            }
            (isChoice ? members.choices : members.nodes).push_back(node);
            members.all.push_back(node);
        }
        return members;
    }

    void AddFields(const Members &members, ProtoMessage &message, NameScope &scope)
    {
        const std::set<const lysc_node *> plain = NamePlain(members.nodes, scope);
        const std::string depth = std::to_string(message.layer + 1);
        int oneof = 0;
        for (const lysc_node *node : members.all)
        {
            if (node->nodetype != LYS_CHOICE)
            {
                const std::string name = FieldName(node->name);
                AddField(*node, plain.count(node) > 0 ? name : Suffixed(name, depth, {}, scope), kNoOneof, message);
                continue;
            }
            std::set<std::string> looked;
            CollectNames(parentOf(*node), looked);
            for (const lysc_node *inner : SchemaChildren(node, schema_))
            {
                const std::string name = FieldName(CaseName(*inner));
                AddField(*inner, Suffixed(name, depth, looked, scope), oneof, message);
            }
            ++oneof;
        }
    }

    static const lysc_node &parentOf(const lysc_node &node) { return *node.parent; }

    /** Gives nodes their plain names, in their order; the others need their depth behind it. */
    static std::set<const lysc_node *> NamePlain(const Nodes &nodes, NameScope &scope)
    {
        std::set<const lysc_node *> named;
        for (const lysc_node *node : nodes)
        {
            if (scope.CanAddField(FieldName(node->name)))
            {
                scope.AddField(FieldName(node->name));
                named.insert(node);
            }
        }
        return named;
    }

    /**
     * The name, or the name with the depth behind it, under which the library looks next. What is taken even then gets
     * a number; the library does not find it.
     *
     * @param avoided  names under which nodes are looked for here: a case's field must not be taken for one
     */
    static std::string Suffixed(const std::string &name, const std::string &depth, const std::set<std::string> &avoided,
                                NameScope &scope)
    {
        std::string tried = name;
        for (unsigned int i = 0; avoided.count(tried) > 0 || !scope.CanAddField(tried); ++i)
        {
            tried = name + depth + (i > 0 ? "_" + std::to_string(i) : "");
        }
        scope.AddField(tried);
        return tried;
    }

    /** Names of the data nodes that stand in a document where those of `parent` stand. */
    void CollectNames(const lysc_node &parent, std::set<std::string> &names)
    {
        for (const lysc_node *node : SchemaChildren(&parent, schema_))
        {
            if ((node->nodetype & (LYS_CHOICE | LYS_CASE)) != 0)
            {
                CollectNames(*node, names);
            }
            else
            {
                names.insert(FieldName(node->name));
            }
        }
    }

    static void AddField(const lysc_node &node, const std::string &name, int oneof, ProtoMessage &message)
    {
        ProtoField &field = message.fields.emplace_back();
        field.node = &node;
        field.path = SchemaPath(node);
        field.name = name;
        field.oneof = oneof;
    }

    void AddMessage(ProtoField &field, ProtoMessage &parent, NameScope &scope)
    {
        const bool isCase = field.node->nodetype == LYS_CASE;
        // Cases of several choices may share their names.
        const std::string name = isCase ? TopMessageName(field.node->parent->name) + TopMessageName(field.node->name)
                                        : NestedMessageName(field.node->name);
        auto message = std::make_unique<ProtoMessage>();
        message->name = scope.AddUnique(name, "_", 1);
        message->layer = parent.layer + 1;
        Fill(*field.node, *message);
        field.type = message->name;
        field.label = field.node->nodetype == LYS_LIST ? ProtoLabel::Repeated : ProtoLabel::Message;
        field.message = message.get();
        parent.messages.push_back(std::move(message));
    }

    void SetLeafType(ProtoField &field, ProtoMessage &message, NameScope &scope)
    {
        ProtoEnum made;
        field.isEnum = MakeUniqueEnum(*field.node, scope, made);
        if (field.isEnum)
        {
            made.path = field.path;
            field.type = made.name;
            message.enums.push_back(std::move(made));
        }
        else
        {
            field.type = ScalarType(*LeafType(*field.node), decimals_);
        }
        const bool repeated = field.node->nodetype == LYS_LEAFLIST || (field.isEnum && IsBitsEnum(*field.node));
        field.label = repeated ? ProtoLabel::Repeated : ProtoLabel::Optional;
    }

    /** Enum values are names of the message around them: the enum's name is chosen so that all of them are new. */
    static bool MakeUniqueEnum(const lysc_node &leaf, NameScope &scope, ProtoEnum &made)
    {
        const std::string name = EnumTypeName(leaf.name);
        std::string tried = name;
        for (unsigned int i = 2; MakeEnum(leaf, tried, made); ++i)
        {
            bool isNew = !scope.Has(tried);
            for (const ProtoEnumValue &value : made.values)
            {
                isNew = isNew && !scope.Has(value.name);
            }
            if (isNew)
            {
                scope.Add(tried);
                for (const ProtoEnumValue &value : made.values)
                {
                    scope.Add(value.name);
                }
                return true;
            }
            tried = name + std::to_string(i);
        }
        return false;
    }

    const Schema &schema_;
    Decimals decimals_;
    ProtoFile &file_;
};

YangError NoData(const lys_module &module)
{
    std::string augmented;
    for (const std::string &name : AugmentedModules(module))
    {
        augmented += (augmented.empty() ? "" : ", ") + name;
    }
    std::string text = std::string("YANG module ") + module.name + " has no container, list or notification of its own";
    if (!augmented.empty())
    {
        text += "; it adds nodes to " + augmented;
    }
    return {Fault::NoData, text};
}

} // namespace

std::set<std::string> AugmentedModules(const lys_module &module)
{
    std::set<std::string> names;
    const lysp_node_augment *augment = module.parsed->augments;
    for (; augment != nullptr; augment = reinterpret_cast<const lysp_node_augment *>(augment->next))
    {
        const std::string target = augment->nodeid;
        const std::string prefix = target.substr(1, target.find(':') - 1);
        for (LY_ARRAY_COUNT_TYPE i = 0; i < LY_ARRAY_COUNT(module.parsed->imports); ++i)
        {
            if (prefix == module.parsed->imports[i].prefix)
            {
                names.insert(module.parsed->imports[i].name);
            }
        }
    }
    return names;
}

std::string SchemaPath(const lysc_node &node)
{
    const std::unique_ptr<char, decltype(&std::free)> path(lysc_path(&node, LYSC_PATH_LOG, nullptr, 0), &std::free);
    if (path == nullptr)
    {
        throw std::bad_alloc();
    }
    return path.get();
}

std::vector<const lysc_node *> SchemaChildren(const lysc_node *parent, const Schema &schema)
{
    const lysc_module *compiled = schema.Module().compiled;
    Nodes nodes;
    for (const lysc_node *node = parent != nullptr ? lysc_node_child(parent) : compiled->data; node != nullptr;
         node = node->next)
    {
        nodes.push_back(node);
    }
    for (const lysc_node_notif *node = parent != nullptr ? lysc_node_notifs(parent) : compiled->notifs; node != nullptr;
         node = node->next)
    {
        nodes.push_back(&node->node);
    }
    return nodes;
}

ProtoFile BuildProtoFile(const Schema &schema, Decimals decimals)
{
    const lys_module &module = schema.Module();
    ProtoFile file;
    file.module = module.name;
    file.package = PackageName(module.name);
    file.description = Text(module.dsc);
    file.sources.push_back(Versioned(module));
    for (const lys_module *augmenting : schema.Augmenting())
    {
        file.sources.push_back(Versioned(*augmenting));
    }
    Builder(schema, decimals, file).Build();
    if (file.messages.empty())
    {
        throw NoData(module);
    }
    return file;
}

} // namespace gpbyang
