#include "template_builder.h"

#include <algorithm>
#include <limits>
#include <memory>

#include "gpb_templatelib/gpb_template.h"
#include "input_file.h"
#include "platform/zmp.h"
#include "template_file.h"
#include "tool_error.h"
#include "yang/id_map.h"
#include "yang/numbering.h"
#include "yang/record_path.h"
#include "yang/records.h"
#include "yang/schema.h"
#include "yang/yang_error.h"
#include "yang_request.h"

namespace gpbtool
{

namespace
{

constexpr const char *kTag = "gpbtool_template";
constexpr std::uint32_t kLineFree = 1;

struct PlatformMemoryDeleter
{
    void operator()(std::uint8_t *bytes) const { ZMP_Free_F(bytes, kTag, kLineFree); }
};

/** The node of the request, with its ids set. */
const GpbYangNode &Target(const gpbyang::RecordTree &records, const TemplateRequest &request)
{
    const GpbYangNode &target = gpbyang::FindNode(records, request.path);
    if (target.ucNodeKind == GPB_YANG_CHOICE)
    {
        throw gpbyang::YangError(gpbyang::Fault::Path, request.path + ": a choice is no class; its cases can be");
    }
    if (request.idsFile.empty())
    {
        gpbyang::NumberByRule(records);
        return target;
    }
    gpbyang::ApplyIdMap(records, InputFile(request.idsFile).ReadAll(), request.idsFile);
    if (target.uiClassId == 0)
    {
        throw gpbyang::YangError(gpbyang::Fault::Ids, request.idsFile + ": no class id for " + gpbyang::PathOf(target));
    }
    return target;
}

std::string Dump(const Session &session, const TemplateRequest &request, std::uint32_t classId)
{
    std::uint8_t *buffer = nullptr;
    std::uint16_t shortLength = 0;
    if (GPBLIB_DumpProtoFileData(session.Context(), request.path.c_str(), classId, &buffer, &shortLength) != 0)
    {
        throw ToolError(ExitCode::Internal, "the template of " + request.path + " cannot be written",
                        "is there enough memory?");
    }
    const std::unique_ptr<std::uint8_t, PlatformMemoryDeleter> owned(buffer);
    // The length that the dump gives has 16 bits; the buffer is as long as the tree.
    const std::uint32_t length =
        GPBLIB_ObjTree_GetWriteLen(GPBLIB_GetGpbTemplate(classId, session.Context())->pstObjTree);
    return {reinterpret_cast<const char *>(buffer), length};
}

/** Finds the leaves that should be in a template and are not. */
class LeftOut
{
public:
    /** Goes down the path of the target, top node first, and the template with it. */
    std::vector<std::string> Find(const GpbYangNode &target, const TemplateNode &root)
    {
        std::vector<const GpbYangNode *> path;
        for (const GpbYangNode *node = &target; node != nullptr; node = node->pstParent)
        {
            if (node->pstParent == nullptr || (node->ucSkip == 0 && node->ucNodeKind != GPB_YANG_CHOICE))
            {
                path.insert(path.begin(), node);
            }
        }
        const TemplateNode *model = &root;
        for (std::size_t i = 0; i < path.size() && model != nullptr; ++i)
        {
            // A target that is the top node gives its keys only when it has child nodes.
            const bool all = path[i] == &target && (i > 0 || target.pstFirstChild == nullptr);
            CheckLeaves(*path[i], *model, all);
            if (all && i > 0)
            {
                CheckCases(path[i]->pstFirstChild, *model);
            }
            model = i + 1 < path.size() ? Container(*model, path[i + 1]->pcName) : nullptr;
        }
        return std::move(names_);
    }

private:
    static const TemplateNode *Container(const TemplateNode &parent, const std::string &name)
    {
        const auto found = std::find_if(parent.children.begin(), parent.children.end(),
                                        [&](const TemplateNode &child)
                                        { return child.managementClass && child.managementClass->name == name; });
        return found != parent.children.end() ? &*found : nullptr;
    }

    void CheckLeaves(const GpbYangNode &node, const TemplateNode &model, bool all)
    {
        for (std::uint32_t i = 0; i < VEC_VectorCount(node.pstLeafVec); ++i)
        {
            const auto &leaf = *static_cast<const GpbYangLeaf *>(node.pstLeafVec->ppvSlot[i]);
            const bool wanted = leaf.uiFieldId != 0 && (all || leaf.uiIsKey != 0);
            const bool there =
                std::any_of(model.children.begin(), model.children.end(),
                            [&](const TemplateNode &child)
                            { return child.field && !child.managementClass && child.field->name == leaf.pcName; });
            if (wanted && !there)
            {
                names_.push_back(gpbyang::PathOf(node) + "/" + leaf.pcName);
            }
        }
    }

    void CheckCases(const GpbYangNode *node, const TemplateNode &model)
    {
        for (; node != nullptr; node = node->pstNextSibling)
        {
            if (node->ucNodeKind == GPB_YANG_CHOICE)
            {
                CheckCases(node->pstFirstChild, model);
            }
            const TemplateNode *inner = node->ucNodeKind == GPB_YANG_CASE ? Container(model, node->pcName) : nullptr;
            if (inner != nullptr)
            {
                CheckLeaves(*node, *inner, true);
                CheckCases(node->pstFirstChild, *inner);
            }
        }
    }

    std::vector<std::string> names_;
};

void Warn(Console &console, const TemplateRequest &request, const GpbYangNode &target, const std::string &bytes)
{
    const OwnedTree tree = ReadTemplate(bytes, "the template of " + request.path);
    for (const std::string &name : LeftOut().Find(target, MakeModel(*tree)))
    {
        console.Warning(name + " is not in the template: " + request.module +
                        ".proto has no integer, enum, string or bytes field of that name there");
    }
    if (bytes.size() > std::numeric_limits<std::uint16_t>::max())
    {
        console.Warning("the template has " + std::to_string(bytes.size()) +
                        " bytes; a host that asks the library for it gets a length of 16 bits");
    }
}

} // namespace

std::string BuildTemplate(Session &session, Console &console, const TemplateRequest &request)
{
    try
    {
        const gpbyang::RecordTree records(gpbyang::Schema(request.yangPaths, request.module), kModuleId);
        const GpbYangNode &target = Target(records, request);
        session.Load(request.module);
        if (GPBLIB_UpdateProtoFileClassInfo(session.Context(), request.module.c_str(), 0, request.path.c_str(),
                                            &target) != 0)
        {
            throw ToolError(ExitCode::Encode, request.path + " does not fit " + request.module + ".proto",
                            "the library's messages above say what is missing there; -vv shows all of them");
        }
        std::string bytes = Dump(session, request, target.uiClassId);
        Warn(console, request, target, bytes);
        return bytes;
    }
    catch (const gpbyang::YangError &error)
    {
        throw AsToolError(error);
    }
}

} // namespace gpbtool
