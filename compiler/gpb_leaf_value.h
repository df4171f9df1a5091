// What the text of a leaf means to a field.
#ifndef GPB_COMPILER_GPB_LEAF_VALUE_H
#define GPB_COMPILER_GPB_LEAF_VALUE_H

#include <cstdint>
#include <cstdlib>

#include "compiler/gpb_number_text.h"
#include "platform/yos.h"

// Numbers are read as far as the C library does, and nothing is checked: a document is validated against its YANG
// module before it gets here. Out-of-range texts are clamped by the C library, then cut to the field's width.

inline int64_t GpbToInt64(const char *text)
{
    return static_cast<int64_t>(GpbReadInteger(text, std::strtoll));
}

inline uint64_t GpbToUInt64(const char *text)
{
    return static_cast<uint64_t>(GpbReadInteger(text, std::strtoull));
}

inline int32_t GpbToInt32(const char *text)
{
    return static_cast<int32_t>(GpbReadInteger(text, std::strtol));
}

inline uint32_t GpbToUInt32(const char *text)
{
    return static_cast<uint32_t>(GpbReadInteger(text, std::strtoul));
}

/// Exactly "false" is false; anything else, the empty text and "FALSE" included, deliberately is true.
inline bool GpbToBool(const char *text)
{
    return YOS_StrCmp("false", text) != 0;
}

#endif
