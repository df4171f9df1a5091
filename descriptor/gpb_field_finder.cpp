#include "descriptor/gpb_field_finder.h"

using google::protobuf::Descriptor;

GpbFieldFinder::Found GpbFieldFinder::FindNode(const Descriptor *message, const char *nodeName, uint32_t layer)
{
    if (message == nullptr || nodeName == nullptr)
    {
        return {};
    }
    Answers &answers = places_[{message, layer}];
    const Search search = [](const Descriptor *in, const char *name, uint32_t at)
    {
        Found found;
        found.field = GPB_FindFieldDescByNodeName(in, name, static_cast<int32_t>(at), &found.caseField);
        return found;
    };
    return Remembered(answers.nodes, answers.names, search, message, nodeName, layer);
}

GpbFieldFinder::Found GpbFieldFinder::FindLeaf(const Descriptor *message, const char *nodeName, uint32_t layer)
{
    if (message == nullptr || nodeName == nullptr)
    {
        return {};
    }
    Answers &answers = places_[{message, layer}];
    const Search search = [](const Descriptor *in, const char *name, uint32_t at)
    {
        Found found;
        found.field = GPB_GetLeafFieldDescByNodeName(name, in, static_cast<int32_t>(at), &found.caseField);
        return found;
    };
    return Remembered(answers.leaves, answers.names, search, message, nodeName, layer);
}

GpbFieldFinder::Found GpbFieldFinder::Remembered(std::unordered_map<std::string_view, Found> &answers,
                                                 std::deque<std::string> &names, Search search,
                                                 const Descriptor *message, const char *nodeName, uint32_t layer)
{
    const auto known = answers.find(nodeName);
    if (known != answers.end())
    {
        return known->second;
    }
    const Found found = search(message, nodeName, layer);
    names.emplace_back(nodeName);
    answers.emplace(names.back(), found);
    return found;
}
