// How the characters of a YANG value become those of a protobuf enum value name.
#ifndef GPB_COMPILER_GPB_ENUM_TEXT_H
#define GPB_COMPILER_GPB_ENUM_TEXT_H

#include <cstring>

#include "gpb_templatelib/gpb_compiler.h"

/// Each of these becomes "X_" in an enum value name. The terminator is marked too: the conversion ends before it asks.
inline constexpr char GPB_SPECIAL_CHARS[] = "!\"#\\$%&,-()*+/:<>=.?[]{}|^~`@'; ";
static_assert(sizeof(GPB_SPECIAL_CHARS) == 33, "32 special characters and the terminator");

/// The table of them as the first compiler of a process fills it.
struct GpbSpecialCharTable
{
    constexpr GpbSpecialCharTable()
    {
        for (const char c : GPB_SPECIAL_CHARS)
        {
            marks[static_cast<unsigned char>(c)] = 1;
        }
    }

    unsigned char marks[sizeof(GpbXmlCompilerBase::aucSpecialCharTable)] = {};
};
inline constexpr GpbSpecialCharTable GPB_SPECIAL_CHAR_TABLE;

/// Whether nobody has changed the table, which hosts can write to.
inline bool GpbAreSpecialCharsAsMade()
{
    return std::memcmp(GpbXmlCompilerBase::aucSpecialCharTable, GPB_SPECIAL_CHAR_TABLE.marks,
                       sizeof(GPB_SPECIAL_CHAR_TABLE.marks)) == 0;
}

/// What stands before a leading digit, and for each special character.
constexpr char GPB_ENUM_ESCAPE[] = {'X', '_'};

inline bool GpbIsDigit(char c)
{
    return c >= '0' && c <= '9';
}

inline bool GpbIsSpecial(char c)
{
    return GpbXmlCompilerBase::aucSpecialCharTable[static_cast<unsigned char>(c)] != 0;
}

inline char GpbToUpper(char c)
{
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

inline char GpbToLower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Writes the escape; returns where the text goes on.
inline char *GpbWriteEnumEscape(char *out)
{
    *out++ = GPB_ENUM_ESCAPE[0];
    *out++ = GPB_ENUM_ESCAPE[1];
    return out;
}

#endif
