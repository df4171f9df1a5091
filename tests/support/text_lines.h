/** Lists of texts as one text, a line each, which GoogleTest compares with a line-by-line difference. */
#ifndef GPB_TESTS_SUPPORT_TEXT_LINES_H
#define GPB_TESTS_SUPPORT_TEXT_LINES_H

#include <string>
#include <vector>

namespace gpbtest
{

/** Each line followed by a line feed; an empty text for no lines. */
std::string joinLines(const std::vector<std::string> &lines);

} // namespace gpbtest

#endif
