#include "yang/record_path.h"

#include "yang/yang_error.h"

namespace gpbyang
{

namespace
{

using Nodes = std::vector<GpbYangNode *>;

struct Step
{
    std::string module; /**< empty: any */
    std::string name;
};

bool IsTransparent(const GpbYangNode &node)
{
    return node.ucNodeKind == GPB_YANG_CHOICE || node.ucNodeKind == GPB_YANG_CASE;
}

Nodes Children(const RecordTree &tree, const GpbYangNode *parent)
{
    Nodes children;
    if (parent == nullptr)
    {
        for (GpbYangNode *node : tree.Nodes())
        {
            if (node->pstParent == nullptr)
            {
                children.push_back(node);
            }
        }
        return children;
    }
    for (GpbYangNode *node = parent->pstFirstChild; node != nullptr; node = node->pstNextSibling)
    {
        children.push_back(node);
    }
    return children;
}

std::vector<Step> Split(const std::string &path)
{
    std::vector<Step> steps;
    std::size_t begin = 0;
    while (begin < path.size() && path[begin] == '/')
    {
        const std::size_t end = std::min(path.find('/', begin + 1), path.size());
        const std::string text = path.substr(begin + 1, end - begin - 1);
        const std::size_t colon = text.find(':');
        Step step;
        step.module = colon == std::string::npos ? "" : text.substr(0, colon);
        step.name = colon == std::string::npos ? text : text.substr(colon + 1);
        if (step.name.empty() || colon == 0)
        {
            break;
        }
        steps.push_back(step);
        begin = end;
    }
    if (steps.empty() || begin != path.size())
    {
        throw YangError(Fault::Path, "\"" + path + "\" is no path; it should look like /top/list or /module:top/list");
    }
    return steps;
}

bool Matches(const RecordTree &tree, const GpbYangNode &node, const Step &step)
{
    return step.name == node.pcName && (step.module.empty() || step.module == tree.ModuleOf(node));
}

/** The nodes of a step among some nodes; a level deeper through choices and cases only when there is none. */
Nodes Find(const RecordTree &tree, const Nodes &among, const Step &step)
{
    Nodes found;
    for (GpbYangNode *node : among)
    {
        if (Matches(tree, *node, step))
        {
            found.push_back(node);
        }
    }
    if (!found.empty())
    {
        return found;
    }
    for (const GpbYangNode *node : among)
    {
        if (IsTransparent(*node))
        {
            const Nodes inner = Find(tree, Children(tree, node), step);
            found.insert(found.end(), inner.begin(), inner.end());
        }
    }
    return found;
}

std::string Names(const Nodes &nodes)
{
    std::string names;
    for (const GpbYangNode *node : nodes)
    {
        names += (names.empty() ? "" : ", ") + std::string(node->pcName);
    }
    return names.empty() ? "none" : names;
}

} // namespace

GpbYangNode &FindNode(const RecordTree &tree, const std::string &path)
{
    GpbYangNode *at = nullptr;
    for (const Step &step : Split(path))
    {
        const Nodes children = Children(tree, at);
        const Nodes found = Find(tree, children, step);
        if (found.size() != 1)
        {
            const std::string where = at == nullptr ? "module " + tree.Module() : PathOf(*at);
            throw YangError(
                Fault::Path,
                path + ": " +
                    (found.empty() ? "no container, list or notification " : "more than one module has a node ") +
                    step.name + " in " + where +
                    (found.empty() ? "; there is: " + Names(children)
                                   : "; name the module, as in " + tree.ModuleOf(*found.front()) + ":" + step.name));
        }
        at = found.front();
    }
    return *at;
}

} // namespace gpbyang
