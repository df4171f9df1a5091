// JSON items as the compilers handle them.
#ifndef GPB_COMPILER_GPB_JSON_NODE_H
#define GPB_COMPILER_GPB_JSON_NODE_H

#include <cjson/cJSON.h>
#include <memory>

#include "gpb_templatelib/gpb_compiler.h"

/// Frees an item that nothing has taken.
struct GpbJsonItemFree
{
    void operator()(cJSON *item) const { GpbLib_Json_NodeFree(item); }
};

/// An item that belongs to no tree yet.
using GpbJsonItem = std::unique_ptr<cJSON, GpbJsonItemFree>;

/// An item's type without its flags; cJSON_Invalid for no item. cJSON's own tests are a call for each type.
inline int GpbJsonType(const cJSON *item)
{
    constexpr int TYPE_BITS = 0xFF;
    return item == nullptr ? cJSON_Invalid : item->type & TYPE_BITS;
}

/// Calls for the memory that the walk over the siblings of an item needs soon: what the next one points to, and the one
/// behind it. The items of a large tree lie all over the heap. Always inline, since GCC takes a call that does nothing
/// else for one that can be left out.
[[gnu::always_inline]] inline void GpbJsonPrefetchBehind(const cJSON *item)
{
    const cJSON *next = item->next;
    if (next == nullptr)
    {
        return;
    }
    __builtin_prefetch(next->string);
    __builtin_prefetch(next->valuestring);
    __builtin_prefetch(next->child);
    if (next->next != nullptr)
    {
        // An item has the size of a cache line, and most lie on two of them.
        __builtin_prefetch(&next->next->next);
        __builtin_prefetch(&next->next->string);
    }
}

/// The item's key for a log line; members of arrays have none.
inline const char *GpbJsonLogKey(const cJSON *item)
{
    const char *key = GpbLib_Json_GetObjectName(item);
    return key == nullptr ? "" : key;
}

/// Adds an item to an object, which owns it then; the item, or null, and then it is gone.
inline cJSON *GpbJsonAddToObject(unsigned int moduleId, cJSON *object, const char *name, GpbJsonItem item)
{
    return GpbLib_Json_AddItemToObject(moduleId, object, name, item.get()) == 0 ? nullptr : item.release();
}

/// As above for an array.
inline cJSON *GpbJsonAddToArray(unsigned int moduleId, cJSON *array, GpbJsonItem item)
{
    return GpbLib_Json_AddItemToArray(moduleId, array, item.get()) == 0 ? nullptr : item.release();
}

#endif
