#include "yang/check_navigation.h"

#include <google/protobuf/descriptor.h>
#include <libyang/libyang.h>

#include <cstring>
#include <string>

#include "gpb_templatelib/gpb_descriptor.h"

namespace gpbyang
{

namespace
{

namespace pb = google::protobuf;

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
                findings.emplace_back(CheckKind::Navigation, field.path);
            }
        }
        else if (field.oneof == kNoOneof)
        {
            CheckLeafPaths(*field.message, *descriptor->message_type(), path + "/" + field.node->name, file, findings);
        }
    }
}

} // namespace

void CheckNavigation(const ProtoMessage &top, const pb::FileDescriptor &file, std::vector<CheckFinding> &findings)
{
    std::string name = top.node->name;
    Gpb_Util_ConvertTopLayerName(name.data());
    name.resize(std::strlen(name.c_str()));
    if (name != top.name)
    {
        findings.emplace_back(CheckKind::TopName, top.path, name + ", not " + top.name);
        return;
    }
    CheckLeafPaths(top, *file.FindMessageTypeByName(top.name), top.node->name, file, findings);
}

} // namespace gpbyang
