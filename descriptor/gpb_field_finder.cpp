#include "descriptor/gpb_field_finder.h"

#include "descriptor/gpb_field_search.h"

using google::protobuf::Descriptor;

namespace
{

// A search in the cases that goes through the index and leaves the case field in `found`.
auto SearchIndexed(GpbCaseIndex &cases, GpbFoundField &found)
{
    return [&cases, &found](const char *name)
    {
        const GpbFoundField inCase = cases.Find(name);
        if (inCase.field != nullptr)
        {
            found.caseField = inCase.caseField;
        }
        return inCase.field;
    };
}

} // namespace

GpbFieldFinder::Found GpbFieldFinder::FindNode(const Descriptor *message, const char *nodeName, uint32_t layer)
{
    if (message == nullptr || nodeName == nullptr)
    {
        return {};
    }
    Answers &answers = AnswersOf(message, layer);
    return Remembered(answers.nodes, answers, nodeName,
                      [&]
                      {
                          Found found;
                          found.field = GpbSearchNode(message, GpbFieldName(nodeName), static_cast<int32_t>(layer),
                                                      SearchIndexed(answers.cases, found));
                          return found;
                      });
}

GpbFieldFinder::Found GpbFieldFinder::FindLeaf(const Descriptor *message, const char *nodeName, uint32_t layer)
{
    if (message == nullptr || nodeName == nullptr)
    {
        return {};
    }
    Answers &answers = AnswersOf(message, layer);
    return Remembered(answers.leaves, answers, nodeName,
                      [&]
                      {
                          Found found;
                          found.field = GpbSearchLeaf(message, GpbFieldName(nodeName), static_cast<int32_t>(layer),
                                                      SearchIndexed(answers.cases, found));
                          return found;
                      });
}

GpbFieldFinder::Answers &GpbFieldFinder::AnswersOf(const Descriptor *message, uint32_t layer)
{
    return places_.try_emplace({message, layer}, message, static_cast<int32_t>(layer)).first->second;
}

template <typename Search>
GpbFieldFinder::Found GpbFieldFinder::Remembered(std::unordered_map<std::string_view, Found> &known, Answers &answers,
                                                 const char *nodeName, const Search &search)
{
    const auto answer = known.find(nodeName);
    if (answer != known.end())
    {
        return answer->second;
    }
    const Found found = search();
    answers.names.emplace_back(nodeName);
    known.emplace(answers.names.back(), found);
    return found;
}
