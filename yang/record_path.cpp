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

/** The nodes of a name among some nodes; a level deeper through choices and cases only when there is none. */
Nodes Find(const RecordTree &tree, const Nodes &among, const std::string &name)
{
    Nodes found;
    for (GpbYangNode *node : among)
    {
        if (name == node->pcName)
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
            const Nodes inner = Find(tree, Children(tree, node), name);
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

/** Why a step is none: nothing of that name was found, or more than one node. */
std::string Problem(const std::string &name, const std::string &where, const Nodes &children, const Nodes &found)
{
    std::string text = where;
    if (found.empty())
    {
        text.insert(0, "no container, list or notification " + name + " in ");
        return text.append("; there is: ").append(Names(children));
    }
    text.append(" has more than one case ").append(name);
    return text.append("; name the choice too, as in ").append(PathOf(*found.front()));
}

} // namespace

GpbYangNode &FindNode(const RecordTree &tree, const std::string &path)
{
    GpbYangNode *at = nullptr;
    for (const Step &step : Split(path))
    {
        const Nodes children = Children(tree, at);
        const bool isHere = step.module.empty() || step.module == tree.Module();
        const Nodes found = isHere ? Find(tree, children, step.name) : Nodes();
        if (found.size() != 1)
        {
            const std::string where = at == nullptr ? "module " + tree.Module() : PathOf(*at);
            throw YangError(Fault::Path, path + ": " + Problem(step.name, where, children, found));
        }
        at = found.front();
    }
    // A path has at least one step.
    return *at; // NOLINT(clang-analyzer-core.uninitialized.UndefReturn)
}

} // namespace gpbyang
