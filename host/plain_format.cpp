#include "plain_format.h"

#include <algorithm>
#include <climits>
#include <cstring>

#include "plain_number.h"

namespace
{

/** A text that is cut at the end of its room, and counted to its own end. */
class Text
{
public:
    Text(char *destination, size_t room) : m_next(destination), m_left(room - 1) {}

    void add(const char *characters, size_t count)
    {
        const size_t fitting = std::min(count, m_left);
        std::memcpy(m_next, characters, fitting);
        m_next += fitting;
        m_left -= fitting;
        m_length += count;
    }

    /** False for a text that is left to vsnprintf, and so is a number below. */
    [[nodiscard]] bool addArgument(const char *characters)
    {
        if (characters == nullptr)
        {
            return false;
        }
        add(characters, std::strlen(characters));
        return true;
    }

    template <typename Number>
    [[nodiscard]] bool addArgument(Number number)
    {
        char digits[host::kPlainNumberSize];
        const char *const end = host::writePlainNumber(number, digits);
        if (end == nullptr)
        {
            return false;
        }
        add(digits, static_cast<size_t>(end - digits));
        return true;
    }

    int finish()
    {
        *m_next = '\0';
        return m_length <= INT_MAX ? static_cast<int>(m_length) : host::kNotPlain;
    }

private:
    char *m_next;
    size_t m_left;
    size_t m_length = 0;
};

/** Whether this stands behind the point of "%.14g". */
bool isFourteenDigits(const char *precision)
{
    return precision[0] == '1' && precision[1] == '4' && precision[2] == 'g';
}

/** Characters before the next conversion or the end. */
size_t plainLength(const char *formatText)
{
    size_t length = 0;
    while (formatText[length] != '\0' && formatText[length] != '%')
    {
        ++length;
    }
    return length;
}

} // namespace

namespace host
{

int formatPlainly(char *destination, size_t room, const char *formatText, va_list args)
{
    Text text(destination, room);
    for (;;)
    {
        const char *const conversion = formatText + plainLength(formatText);
        if (conversion != formatText)
        {
            text.add(formatText, static_cast<size_t>(conversion - formatText));
        }
        if (*conversion == '\0')
        {
            return text.finish();
        }
        bool isDone = false;
        formatText = conversion + 2;
        switch (conversion[1])
        {
        case 's':
            isDone = text.addArgument(va_arg(args, const char *));
            break;
        case 'd':
            isDone = text.addArgument(va_arg(args, int));
            break;
        case 'u':
            isDone = text.addArgument(va_arg(args, unsigned));
            break;
        case '.':
            if (isFourteenDigits(formatText))
            {
                isDone = text.addArgument(va_arg(args, double));
                formatText += std::strlen("14g");
            }
            break;
        default:
            break;
        }
        if (!isDone)
        {
            return kNotPlain;
        }
    }
}

} // namespace host
