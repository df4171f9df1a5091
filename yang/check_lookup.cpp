#include "yang/check_lookup.h"

#include <google/protobuf/descriptor.h>
#include <libyang/libyang.h>

#include <string>

#include "core/gpb_protobuf_compat.h"
#include "gpb_templatelib/gpb_descriptor.h"
#include "gpb_templatelib/gpb_limits.h"
#include "yang/proto_names.h"

namespace gpbyang
{

namespace
{

namespace pb = google::protobuf;

/** A data node with the field that it should have. */
struct Expected
{
    const ProtoField *field;
    const pb::FieldDescriptor *descriptor;
    bool inCase;
};

void Collect(const ProtoMessage &message, const pb::Descriptor &type, bool inCase, std::vector<Expected> &expected)
{
    for (const ProtoField &field : message.fields)
    {
        const pb::FieldDescriptor *descriptor = type.FindFieldByName(field.name);
        if (field.oneof != kNoOneof)
        {
            Collect(*field.message, *descriptor->message_type(), true, expected);
        }
        else
        {
            expected.push_back({&field, descriptor, inCase});
        }
    }
}

bool HasTooManyCaseFields(const pb::Descriptor &type)
{
    const pb::FieldDescriptor *fields[GPB_MAX_CASE_FIELDS] = {};
    std::uint32_t count = 0;
    return GPB_GetOneofCaseChilds(&type, fields, GPB_MAX_CASE_FIELDS, &count) != 0;
}

/** "goes to m.Top.field" */
std::string Destination(const pb::FieldDescriptor *found, const char *form)
{
    return (found != nullptr ? "goes to " + GpbPbFullName(*found) : "is not found") + std::string(form);
}

class LookupCheck
{
public:
    LookupCheck(const ProtoMessage &message, const pb::Descriptor &type, std::vector<CheckFinding> &findings)
        : type_(type), layer_(static_cast<std::int32_t>(message.layer) + 1), tooManyCases_(HasTooManyCaseFields(type)),
          findings_(findings)
    {
        if (tooManyCases_)
        {
            findings_.push_back({CheckKind::CaseFields, message.path, ""});
        }
    }

    void Check(const Expected &expected)
    {
        const lysc_node &node = *expected.field->node;
        const std::string name = node.name;
        if (name.size() >= GPB_NAME_SIZE)
        {
            Report(CheckKind::LongName, expected, std::to_string(name.size()) + " characters");
            return;
        }
        if (name.find('.') != std::string::npos)
        {
            Report(CheckKind::DottedName, expected, "");
            return;
        }
        if (tooManyCases_ && expected.inCase)
        {
            return;
        }
        const pb::FieldDescriptor *ignored = nullptr;
        const pb::FieldDescriptor *found = GPB_FindFieldDescByNodeName(&type_, node.name, layer_, &ignored);
        const bool isLeaf = expected.field->message == nullptr;
        const pb::FieldDescriptor *leaf =
            isLeaf ? GPB_GetLeafFieldDescByNodeName(node.name, &type_, layer_, &ignored) : found;
        if (leaf != expected.descriptor)
        {
            Report(KindOf(name, leaf), expected, Destination(leaf, ""));
        }
        else if (found != expected.descriptor)
        {
            Report(CheckKind::SharedName, expected, Destination(found, " from JSON, and as an empty element"));
        }
    }

private:
    void Report(CheckKind kind, const Expected &expected, const std::string &detail)
    {
        findings_.push_back({kind, expected.field->path, detail});
    }

    static CheckKind KindOf(const std::string &name, const pb::FieldDescriptor *found)
    {
        return found != nullptr && GpbPbLowercaseName(*found) != FieldName(name) ? CheckKind::DepthName
                                                                                 : CheckKind::SharedName;
    }

    const pb::Descriptor &type_;
    std::int32_t layer_;
    bool tooManyCases_;
    std::vector<CheckFinding> &findings_;
};

void CheckLeafPaths(const ProtoMessage &message, const pb::Descriptor &type, const std::string &path,
                    const pb::FileDescriptor &file, std::vector<CheckFinding> &findings)
{
    for (const ProtoField &field : message.fields)
    {
        const pb::FieldDescriptor *descriptor = type.FindFieldByName(field.name);
        if (field.message == nullptr)
        {
            if (Gpb_ModuleAdapt_GetFieldHandle(nullptr, &file, path.c_str(), field.node->name) != descriptor)
            {
                findings.push_back({CheckKind::Navigation, field.path, ""});
            }
        }
        else if (field.oneof == kNoOneof)
        {
            CheckLeafPaths(*field.message, *descriptor->message_type(), path + "/" + field.node->name, file, findings);
        }
    }
}

} // namespace

void CheckLookups(const ProtoMessage &message, const pb::Descriptor &type, std::vector<CheckFinding> &findings)
{
    std::vector<Expected> expected;
    Collect(message, type, false, expected);
    LookupCheck check(message, type, findings);
    for (const Expected &node : expected)
    {
        check.Check(node);
    }
}

void CheckNavigation(const ProtoMessage &top, const pb::FileDescriptor &file, std::vector<CheckFinding> &findings)
{
    std::string name = top.node->name;
    Gpb_Util_ConvertTopLayerName(name.data());
    if (name.c_str() != top.name)
    {
        findings.push_back({CheckKind::TopName, top.path, std::string(name.c_str()) + ", not " + top.name});
        return;
    }
    CheckLeafPaths(top, *file.FindMessageTypeByName(top.name), top.node->name, file, findings);
}

} // namespace gpbyang
