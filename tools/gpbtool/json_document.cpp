#include "json_document.h"

#include <cstring>
#include <functional>
#include <string_view>
#include <unordered_set>

#include "input_file.h"
#include "tool_error.h"

namespace gpbtool
{

namespace
{

constexpr const char *kCorrectHint = "correct the document at that place; a file that ends early was cut";
constexpr const char *kShapeHint = "a document is one object with one member: {\"CONTAINER\": {...}}";

/** Calls `visit` for an item and all below it, in the order of the text. */
void ForEach(cJSON &item, const std::function<void(cJSON &)> &visit)
{
    visit(item);
    for (cJSON *child = item.child; child != nullptr; child = child->next)
    {
        ForEach(*child, visit);
    }
}

/** The parts of a JSON pointer. */
std::vector<std::string> SplitPointer(const std::string &pointer)
{
    if (pointer.empty() || pointer[0] != '/')
    {
        throw ToolError(ExitCode::Usage, "--item: " + pointer + " does not begin with \"/\"",
                        "name the item from the top-level container on, as in /interfaces/interface/0");
    }
    std::vector<std::string> parts;
    for (std::size_t i = 0; i < pointer.size(); ++i)
    {
        if (pointer[i] == '/')
        {
            parts.emplace_back();
        }
        else if (pointer[i] != '~')
        {
            parts.back() += pointer[i];
        }
        else if (i + 1 < pointer.size() && (pointer[i + 1] == '0' || pointer[i + 1] == '1'))
        {
            parts.back() += pointer[++i] == '0' ? '~' : '/';
        }
        else
        {
            throw ToolError(ExitCode::Usage, "--item: " + pointer + R"(: "~" is written as ~0, "/" in a name as ~1)");
        }
    }
    return parts;
}

bool IsIndexOf(const std::string &part, int index)
{
    return part == std::to_string(index);
}

/** The child of that name, or at that place of an array; null when there is none. */
cJSON *FindChild(const cJSON &parent, const std::string &part)
{
    int index = 0;
    for (cJSON *child = parent.child; child != nullptr; child = child->next, ++index)
    {
        if (child->string != nullptr ? part == child->string : IsIndexOf(part, index))
        {
            return child;
        }
    }
    return nullptr;
}

void RemoveOthers(cJSON &parent, const cJSON &kept)
{
    for (cJSON *child = parent.child; child != nullptr;)
    {
        cJSON *next = child->next;
        if (child != &kept)
        {
            cJSON_Delete(cJSON_DetachItemViaPointer(&parent, child));
        }
        child = next;
    }
}

ToolError NoItemError(const std::string &path, const std::string &pointer, const std::string &part)
{
    return ToolError(ExitCode::Encode, path + ": no item " + pointer + ": nothing is at \"" + part + "\"",
                     "name members by their key and entries of a list by their number, the first is 0");
}

} // namespace

JsonDocument::JsonDocument(const std::string &path, bool stripPrefixes)
    : path_(path), text_(InputFile(path).ReadAll()), placeFinder_(text_)
{
    std::vector<std::size_t> offsets;
    try
    {
        offsets = CheckJsonText(text_);
    }
    catch (const JsonTextError &error)
    {
        Refuse(error.Offset(), std::string("no well-formed JSON: ") + error.what(), kCorrectHint);
    }
    tree_.reset(cJSON_ParseWithLength(text_.data(), text_.size()));
    if (tree_ == nullptr)
    {
        throw ToolError(ExitCode::Internal, path_ + ": the document cannot be parsed", "is there enough memory?");
    }
    TakeOffsets(offsets);
    RefuseDuplicates("the name stands twice in its object");
    if (cJSON_IsObject(tree_.get()) == 0 || cJSON_GetArraySize(tree_.get()) != 1)
    {
        Refuse(offsets.front(), "the document is no object with exactly one member", kShapeHint);
    }
    if (cJSON_IsObject(&Container()) == 0)
    {
        Refuse(offsets_.at(&Container()), "the top-level container is no object", kShapeHint);
    }
    if (stripPrefixes)
    {
        StripJsonPrefixes(*tree_);
        RefuseDuplicates("the name stands twice in its object, with different prefixes");
    }
}

void JsonDocument::Refuse(std::size_t offset, const std::string &what, const char *hint)
{
    const TextPlace place = placeFinder_.At(offset);
    throw ToolError(ExitCode::Input,
                    path_ + ":" + std::to_string(place.line) + ":" + std::to_string(place.column) + ": " + what, hint);
}

void JsonDocument::TakeOffsets(const std::vector<std::size_t> &offsets)
{
    auto next = offsets.begin();
    ForEach(*tree_, [&](const cJSON &item) { offsets_[&item] = *next++; });
}

void StripJsonPrefixes(cJSON &tree)
{
    ForEach(tree,
            [](cJSON &item)
            {
                const char *colon = item.string != nullptr ? std::strchr(item.string, ':') : nullptr;
                if (colon != nullptr)
                {
                    std::memmove(item.string, colon + 1, std::strlen(colon));
                }
            });
}

void JsonDocument::RefuseDuplicates(const char *why)
{
    ForEach(*tree_,
            [&](const cJSON &object)
            {
                std::unordered_set<std::string_view> names;
                for (const cJSON *child = object.child; child != nullptr; child = child->next)
                {
                    if (child->string != nullptr && !names.insert(child->string).second)
                    {
                        Refuse(offsets_.at(child), '"' + std::string(child->string) + "\": " + why,
                               "leave one of them; which one counts is not defined");
                    }
                }
            });
}

cJSON &JsonDocument::Keep(const std::string &pointer)
{
    cJSON *list = nullptr;
    cJSON *item = tree_.get();
    for (const std::string &part : SplitPointer(pointer))
    {
        cJSON *child = FindChild(*item, part);
        if (child == nullptr)
        {
            throw NoItemError(path_, pointer, part);
        }
        RemoveOthers(*item, *child);
        list = cJSON_IsArray(item) != 0 ? item : nullptr;
        item = child;
    }
    return list != nullptr ? *list : *item;
}

} // namespace gpbtool
