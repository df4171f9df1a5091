#include "support/text_lines.h"

namespace gpbtest
{

std::string joinLines(const std::vector<std::string> &lines)
{
    std::string text;
    for (const std::string &line : lines)
    {
        text += line;
        text += '\n';
    }
    return text;
}

} // namespace gpbtest
