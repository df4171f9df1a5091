#include "yang/check.h"

#include <google/protobuf/descriptor.h>
#include <libyang/libyang.h>

#include <algorithm>
#include <cstring>

#include "gpb_templatelib/gpb_descriptor.h"
#include "gpb_templatelib/gpb_limits.h"
#include "yang/check_navigation.h"
#include "yang/check_places.h"
#include "yang/check_values.h"
#include "yang/proto_builder.h"
#include "yang/schema_messages.h"

namespace gpbyang
{

namespace
{

namespace pb = google::protobuf;

/** The counter of model attributes has 8 bits. */
constexpr std::size_t kMostLeaves = 255;

/** MODULE.proto with its terminator has to fit. */
const std::size_t kMostModuleName = GPB_PROTO_FILE_NAME_SIZE - std::string(".proto").size() - 1;

class ModuleCheck
{
public:
    ModuleCheck(const ProtoFile &file, const pb::FileDescriptor &descriptor, std::vector<CheckFinding> &findings)
        : findings_(findings)
    {
        for (const std::unique_ptr<ProtoMessage> &message : file.messages)
        {
            MapFields(*message, *descriptor.FindMessageTypeByName(message->name), nodes_);
        }
    }

    void Top(const ProtoMessage &message, const pb::FileDescriptor &file)
    {
        CheckRootName(message);
        if (message.node->nodetype == LYS_LIST)
        {
            Report(CheckKind::TopList, message.path);
        }
        CheckNavigation(message, file, findings_);
        Message(message, *file.FindMessageTypeByName(message.name), std::string("/") + message.node->name, false);
    }

private:
    void Report(CheckKind kind, const std::string &path, const std::string &detail = "")
    {
        findings_.emplace_back(kind, path, detail);
    }

    void CheckRootName(const ProtoMessage &message)
    {
        std::string name = message.node->name;
        if (name.size() >= GPB_NAME_SIZE)
        {
            Report(CheckKind::RootName, message.path, std::to_string(name.size()) + " characters");
            return;
        }
        // Room for what the conversion adds.
        name.resize(GPB_NAME_SIZE + GPB_NAME_SIZE);
        Gpb_util_ConverContainerName(name.data(), 1);
        name.resize(std::strlen(name.c_str()));
        if (name != message.name)
        {
            Report(CheckKind::RootName, message.path, "the library looks for " + name + ", not for " + message.name);
        }
    }

    /**
     * @param element  path of the message's element in a document
     * @param inEntry  whether a list lies around the message, or the message is a list's, so that there are several
     */
    void Message(const ProtoMessage &message, const pb::Descriptor &type, const std::string &element, bool inEntry)
    {
        const bool isCase = message.node->nodetype == LYS_CASE;
        if (!isCase)
        {
            CheckPlaces(message, type, inEntry, nodes_, findings_);
        }
        CountLeaves(message);
        for (const ProtoField &field : message.fields)
        {
            const bool fieldIsCase = field.oneof != kNoOneof;
            const std::string inner = fieldIsCase ? element : element + "/" + field.node->name;
            if (!fieldIsCase)
            {
                Node(message, field, inner, inEntry);
            }
            if (field.message != nullptr)
            {
                Message(*field.message, *type.FindFieldByName(field.name)->message_type(), inner,
                        inEntry || field.node->nodetype == LYS_LIST);
            }
        }
    }

    void Node(const ProtoMessage &message, const ProtoField &field, const std::string &element, bool inEntry)
    {
        if (field.message != nullptr && MayStandEmpty(*field.node))
        {
            Report(CheckKind::EmptyElement, field.path);
        }
        if (inEntry && field.label == ProtoLabel::Repeated)
        {
            Report(CheckKind::JsonNestedList, field.path);
        }
        if (element.size() >= GPB_PATH_SIZE)
        {
            Report(CheckKind::LongPath, field.path, std::to_string(element.size()) + " characters");
        }
        if (field.message == nullptr)
        {
            CheckValues(message, field, findings_);
        }
    }

    void CountLeaves(const ProtoMessage &message)
    {
        const auto leaves =
            std::count_if(message.fields.begin(), message.fields.end(),
                          [](const ProtoField &field) { return field.message == nullptr && field.type != "double"; });
        if (static_cast<std::size_t>(leaves) > kMostLeaves)
        {
            Report(CheckKind::ManyLeaves, message.path, std::to_string(leaves) + " leaves");
        }
    }

    FieldNodes nodes_;
    std::vector<CheckFinding> &findings_;
};

} // namespace

std::vector<CheckFinding> CheckModule(const ProtoFile &file, const pb::FileDescriptor &descriptor)
{
    // Values are tried that libyang refuses.
    const KeptMessages quiet;
    std::vector<CheckFinding> findings;
    if (file.module.size() > kMostModuleName)
    {
        findings.emplace_back(CheckKind::ModuleName, "/" + file.module,
                              std::to_string(file.module.size()) + " characters");
    }
    for (const LeftOutNode &node : file.leftOut)
    {
        findings.emplace_back(CheckKind::LeftOut, node.path, node.reason, CheckForms{true, true, true});
    }
    ModuleCheck check(file, descriptor, findings);
    for (const std::unique_ptr<ProtoMessage> &message : file.messages)
    {
        check.Top(*message, descriptor);
    }
    std::stable_sort(findings.begin(), findings.end(),
                     [](const CheckFinding &a, const CheckFinding &b)
                     { return a.kind != b.kind ? a.kind < b.kind : a.IsKept() && !b.IsKept(); });
    return findings;
}

} // namespace gpbyang
