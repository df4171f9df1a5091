// How the characters of a YANG value become those of a protobuf enum value name.
#ifndef GPB_COMPILER_GPB_ENUM_TEXT_H
#define GPB_COMPILER_GPB_ENUM_TEXT_H

#include "gpb_templatelib/gpb_compiler.h"

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
