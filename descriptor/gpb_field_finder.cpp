#include "descriptor/gpb_field_finder.h"

#include <cstring>

#include "descriptor/gpb_field_search.h"

using google::protobuf::Descriptor;

GpbFoundField GpbFieldFinder::FindNode(const Descriptor *message, const char *nodeName, uint32_t layer)
{
    if (message == nullptr || nodeName == nullptr)
    {
        return {};
    }
    Answers &answers = AnswersOf(message, layer);
    const auto searchCases = [&](const char *name) { return answers.cases.Find(name); };
    return Remembered(answers.nodes, answers, nodeName,
                      [&] { return GpbSearchNode(message, nodeName, static_cast<int32_t>(layer), searchCases); });
}

GpbFoundField GpbFieldFinder::FindLeaf(const Descriptor *message, const char *nodeName, uint32_t layer)
{
    if (message == nullptr || nodeName == nullptr)
    {
        return {};
    }
    Answers &answers = AnswersOf(message, layer);
    const auto searchCases = [&](const char *name) { return answers.cases.Find(name); };
    return Remembered(answers.leaves, answers, nodeName,
                      [&] { return GpbSearchLeaf(message, nodeName, static_cast<int32_t>(layer), searchCases); });
}

GpbFieldFinder::Answers &GpbFieldFinder::AnswersOf(const Descriptor *message, uint32_t layer)
{
    return places_.try_emplace({message, layer}, message, static_cast<int32_t>(layer)).first->second;
}

template <typename Search>
GpbFoundField GpbFieldFinder::Remembered(std::unordered_map<std::string_view, GpbFoundField> &known, Answers &answers,
                                         const char *nodeName, const Search &search)
{
    const auto answer = known.find(nodeName);
    if (answer != known.end())
    {
        return answer->second;
    }
    const GpbFoundField found = search();
    size_t &count = found.field == nullptr ? answers.missCount : answers.hitCount;
    if (!found.isCertain || count == MAX_REMEMBERED || std::strlen(nodeName) >= GPB_NAME_SIZE)
    {
        return found;
    }
    ++count;
    answers.names.emplace_back(nodeName);
    known.emplace(answers.names.back(), found);
    return found;
}
