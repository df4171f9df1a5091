/** JSON text that nobody has checked: everything that JSON does not allow is refused with its place. */
#ifndef GPBTOOL_JSON_TEXT_H
#define GPBTOOL_JSON_TEXT_H

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace gpbtool
{

/** A place in a text; both count from 1, columns in characters. */
struct TextPlace
{
    long line = 1;
    long column = 1;
};

/** Finds places; quick as long as the offsets asked for do not go back. */
class PlaceFinder
{
public:
    explicit PlaceFinder(std::string_view text) : text_(text) {}

    TextPlace At(std::size_t offset);

private:
    std::string_view text_;
    std::size_t offset_ = 0;
    TextPlace place_;
};

/** What is wrong with a JSON text, and where. */
class JsonTextError : public std::runtime_error
{
public:
    JsonTextError(const std::string &what, std::size_t offset) : std::runtime_error(what), offset_(offset) {}

    std::size_t Offset() const { return offset_; }

private:
    std::size_t offset_;
};

/**
 * Tests a whole text against the grammar, which the parser takes more loosely: control characters, numbers such as 01,
 * and text that is no UTF-8 pass it, and \u0000 and \u without digits would cut texts short.
 *
 * @return the offset of each value in the order of the text, the outermost first; a member's is that of its name
 * @throws JsonTextError
 */
std::vector<std::size_t> CheckJsonText(std::string_view text);

} // namespace gpbtool

#endif
