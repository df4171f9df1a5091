#include "yang/json_text.h"

#include <algorithm>
#include <vector>

namespace gpbyang
{

namespace
{

constexpr const char *kByteOrderMark = "\xEF\xBB\xBF";
constexpr const char *kDelimiters = ",:]} \t\r\n";
constexpr const char *kDigits = "0123456789";

std::size_t EndOfString(const std::string &text, std::size_t quote)
{
    std::size_t at = quote + 1;
    while (at < text.size() && text[at] != '"')
    {
        at += text[at] == '\\' ? 2 : 1;
    }
    return at + 1;
}

} // namespace

JsonText::JsonText(std::string text, std::string source) : text_(std::move(text)), source_(std::move(source))
{
    const auto isControl = [](char c)
    { return static_cast<unsigned char>(c) < 0x20 && c != '\n' && c != '\t' && c != '\r'; };
    // cJSON passes over control characters, and a text ends for it at the first zero byte.
    const auto control = std::find_if(text_.begin(), text_.end(), isControl);
    if (control != text_.end())
    {
        throw YangError(Fault::Ids,
                        At(static_cast<std::size_t>(control - text_.begin())) + "a control character is no JSON");
    }
    const char *end = nullptr;
    root_.reset(cJSON_ParseWithLengthOpts(text_.c_str(), text_.size() + 1, &end, 1));
    if (root_ == nullptr)
    {
        const std::size_t offset = end != nullptr ? static_cast<std::size_t>(end - text_.c_str()) : 0;
        throw YangError(Fault::Ids, At(std::min(offset, text_.size())) + "this is no JSON");
    }
    Locate();
}

YangError JsonText::ErrorAt(const cJSON &value, const std::string &what) const
{
    return {Fault::Ids, At(places_.at(&value).name) + what};
}

std::optional<std::uint32_t> JsonText::Number(const cJSON &value, std::uint32_t most) const
{
    const std::size_t begin = places_.at(&value).value;
    const std::size_t end = std::min(text_.find_first_of(kDelimiters, begin), text_.size());
    const bool digitsOnly = text_.find_first_not_of(kDigits, begin) >= end && text_[begin] != '0';
    if (cJSON_IsNumber(&value) == 0 || !digitsOnly || value.valuedouble < 1 || value.valuedouble > most)
    {
        return std::nullopt;
    }
    return static_cast<std::uint32_t>(value.valuedouble);
}

std::string JsonText::At(std::size_t offset) const
{
    const auto begin = text_.begin();
    const auto here = begin + static_cast<std::ptrdiff_t>(offset);
    const auto line = 1 + std::count(begin, here, '\n');
    const std::size_t lineStart = offset == 0 ? std::string::npos : text_.rfind('\n', offset - 1);
    const std::size_t column = lineStart == std::string::npos ? offset + 1 : offset - lineStart;
    return source_ + ":" + std::to_string(line) + ":" + std::to_string(column) + ": ";
}

/** Values begin in the text in the order in which a walk of the tree, parents first, meets them. */
void JsonText::Locate()
{
    std::vector<const cJSON *> ahead = {root_.get()};
    std::vector<char> open;
    std::size_t name = std::string::npos;
    bool nameExpected = false;
    const auto valueAt = [&](std::size_t offset)
    {
        const cJSON *item = ahead.back();
        ahead.pop_back();
        places_[item] = {name != std::string::npos ? name : offset, offset};
        name = std::string::npos;
        const std::size_t firstChild = ahead.size();
        for (const cJSON *child = item->child; child != nullptr; child = child->next)
        {
            ahead.push_back(child);
        }
        std::reverse(ahead.begin() + static_cast<std::ptrdiff_t>(firstChild), ahead.end());
    };
    std::size_t at = text_.compare(0, 3, kByteOrderMark) == 0 ? 3 : 0;
    while (at < text_.size() && (!ahead.empty() || !open.empty()))
    {
        const char c = text_[at];
        if (c == '{' || c == '[')
        {
            valueAt(at++);
            open.push_back(c);
            nameExpected = c == '{';
        }
        else if (c == '}' || c == ']')
        {
            open.pop_back();
            nameExpected = false;
            ++at;
        }
        else if (c == ',')
        {
            nameExpected = open.back() == '{';
            ++at;
        }
        else if (c == '"')
        {
            if (nameExpected)
            {
                name = at;
                nameExpected = false;
            }
            else
            {
                valueAt(at);
            }
            at = EndOfString(text_, at);
        }
        else if (c == ':' || c == ' ' || c == '\t' || c == '\r' || c == '\n')
        {
            ++at;
        }
        else
        {
            valueAt(at);
            at = std::min(text_.find_first_of(kDelimiters, at), text_.size());
        }
    }
}

} // namespace gpbyang
