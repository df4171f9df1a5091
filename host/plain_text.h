/** Texts put together without the C library, which takes hundreds of instructions to set itself up for a format. */
#ifndef GPB_HOST_PLAIN_TEXT_H
#define GPB_HOST_PLAIN_TEXT_H

#include <cstddef>
#include <cstring>

#include "plain_number.h"

namespace host
{

/**
 * A text that fits its room. One that does not is left to vsnprintf, and so is one with a part that is not plain: all
 * functions that add something give false then.
 */
class PlainText
{
public:
    /** `room`: bytes of the destination, at least 1 */
    PlainText(char *destination, size_t room) : m_next(destination), m_last(destination + room - 1) {}

    [[nodiscard]] bool add(const char *characters, size_t count)
    {
        if (count > left())
        {
            return false;
        }
        m_next = static_cast<char *>(mempcpy(m_next, characters, count));
        return true;
    }

    [[nodiscard]] bool addArgument(const char *characters)
    {
        return characters != nullptr && add(characters, std::strlen(characters));
    }

    /** Asks for the room of the longest number, whatever this one takes. */
    template <typename Number>
    [[nodiscard]] bool addArgument(Number number)
    {
        char *const end = left() < kPlainNumberSize ? nullptr : writePlainNumber(number, m_next);
        if (end == nullptr)
        {
            return false;
        }
        m_next = end;
        return true;
    }

    /** Ends the text; returns where. */
    char *finish()
    {
        *m_next = '\0';
        return m_next;
    }

private:
    size_t left() const { return static_cast<size_t>(m_last - m_next); }

    char *m_next;
    char *const m_last;
};

} // namespace host

#endif
