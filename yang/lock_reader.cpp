#include "yang/lock_reader.h"

#include <algorithm>
#include <limits>
#include <sstream>

namespace gpbyang
{

namespace
{

constexpr std::size_t kFieldWords = 4; /**< number, node, type, name */
constexpr std::size_t kValueWords = 2; /**< number, value */
constexpr std::size_t kMostDigits = 11;
constexpr const char *kDigits = "0123456789";
constexpr const char *kNameCharacters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_0123456789";

} // namespace

void LockReader::Read(const std::string &text)
{
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
    {
        ++line_;
        Line(line);
    }
    if (meaningful_ < 2)
    {
        throw YangError(Fault::Lock, source_ + ": this is no lock file of gpbtool proto");
    }
}

void LockReader::Line(const std::string &line)
{
    std::istringstream stream(line);
    Words words;
    for (std::string word; stream >> word;)
    {
        words.push_back(word);
    }
    if (words.empty() || words.front().front() == '#')
    {
        return;
    }
    ++meaningful_;
    if (meaningful_ == 1)
    {
        if (line != kLockHeading)
        {
            throw Error(std::string("this is no lock file of gpbtool proto: it does not begin with \"") + kLockHeading +
                        "\"");
        }
    }
    else if (meaningful_ == 2)
    {
        if (words.size() != 2 || words[0] != "module")
        {
            throw Error("\"module NAME\" is expected");
        }
        if (words[1] != lock_.module_)
        {
            throw Error("this is the lock file of module " + words[1] + ", not of " + lock_.module_);
        }
    }
    else if (words[0] == "message" || words[0] == "enum")
    {
        OpenSection(words);
    }
    else
    {
        AddEntry(words);
    }
}

void LockReader::OpenSection(const Words &words)
{
    if (words.size() != 2 || words[1].front() != '/')
    {
        throw Error("\"" + words[0] + " /PATH\" is expected");
    }
    ofEnum_ = words[0] == "enum";
    const auto [section, isNew] = (ofEnum_ ? lock_.enums_ : lock_.messages_).try_emplace(words[1]);
    if (!isNew)
    {
        throw Error(words[1] + " stands here for the second time");
    }
    section_ = &section->second;
}

void LockReader::AddEntry(const Words &words)
{
    if (section_ == nullptr)
    {
        throw Error("\"message /PATH\" or \"enum /PATH\" is expected");
    }
    if (words.size() != (ofEnum_ ? kValueWords : kFieldWords))
    {
        throw Error(ofEnum_ ? "\"NUMBER VALUE\" is expected" : "\"NUMBER NODE TYPE FIELD\" is expected");
    }
    if (words.back().find_first_not_of(kNameCharacters) != std::string::npos)
    {
        throw Error("\"" + words.back() + "\" is no name");
    }
    const NumberLock::Entry entry = {Number(words[0]), words[1], ofEnum_ ? "" : words[2], ofEnum_ ? "" : words[3]};
    for (const NumberLock::Entry &other : *section_)
    {
        if (other.number == entry.number)
        {
            throw Error("the number " + words[0] + " is taken already");
        }
        if (other.node == entry.node && other.type == entry.type)
        {
            throw Error(entry.node + " has a number already");
        }
    }
    section_->push_back(entry);
}

std::int32_t LockReader::Number(const std::string &word) const
{
    const std::size_t first = ofEnum_ && word.front() == '-' ? 1 : 0;
    const bool digits = word.size() > first && word.size() <= kMostDigits &&
                        word.find_first_not_of(kDigits, first) == std::string::npos;
    const std::int64_t number = digits ? std::stoll(word) : 0;
    const bool fits =
        ofEnum_
            ? number >= std::numeric_limits<std::int32_t>::min() && number <= std::numeric_limits<std::int32_t>::max()
            : number >= 1 && number <= kMostFieldNumber && (number < kFirstKeptNumber || number > kLastKeptNumber);
    if (!digits || !fits)
    {
        throw Error("\"" + word + "\" is no number of " + (ofEnum_ ? "an enumeration value" : "a field"));
    }
    return static_cast<std::int32_t>(number);
}

YangError LockReader::Error(const std::string &what) const
{
    return {Fault::Lock, source_ + ":" + std::to_string(line_) + ": " + what};
}

} // namespace gpbyang
