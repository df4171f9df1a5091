// The JSON tree of a compiler whose items nobody else can look at.
#ifndef GPB_COMPILER_GPB_JSON_DOCUMENT_H
#define GPB_COMPILER_GPB_JSON_DOCUMENT_H

#include <cjson/cJSON.h>
#include <cstddef>
#include <cstring>
#include <new>

/// A root object and all items below it, side by side in a few blocks of cJSON's memory: making them is cheap, and
/// releasing them one step for each block. The items hold what their text needs. They can be read as any cJSON tree,
/// but cJSON must neither change nor delete them.
///
/// What cannot be had without memory is null; a name, a text or a parent that is null gives null as well.
class GpbJsonDocument
{
public:
    /// The root of a new document; an empty object.
    static cJSON *New();

    /// The document of a root, null where the root is one of cJSON's own or null.
    static GpbJsonDocument *Of(cJSON *root)
    {
        const bool isDocument = root != nullptr && (root->type & DOCUMENT_FLAG) != 0;
        return isDocument ? reinterpret_cast<GpbJsonDocument *>(root) : nullptr;
    }

    /// Releases a root of either kind with everything below it.
    static void Delete(cJSON *root);

    GpbJsonDocument(const GpbJsonDocument &) = delete;
    GpbJsonDocument &operator=(const GpbJsonDocument &) = delete;

    /**@{*/
    /// A new item that has no parent yet.
    cJSON *NewItem(int type);
    cJSON *NewNumber(double value);
    cJSON *NewString(const char *text);
    /**@}*/

    /**@{*/
    /// Makes an item the last one of its parent; the item.
    cJSON *AddToObject(cJSON *object, const char *name, cJSON *item);
    static cJSON *AddToArray(cJSON *array, cJSON *item);
    /**@}*/

private:
    // Of the root's type: no flag of cJSON's.
    static constexpr int DOCUMENT_FLAG = 1 << 16;

    struct Block;

    GpbJsonDocument() = default;

    static constexpr size_t RoundedUp(size_t size)
    {
        return (size + alignof(cJSON) - 1) / alignof(cJSON) * alignof(cJSON);
    }

    bool AddBlock(size_t size);
    void *Take(size_t size);
    char *Copy(const char *text);

    cJSON root_ = {};
    Block *blocks_ = nullptr; // the newest first; the document lies in the oldest
    char *next_ = nullptr;    // what is not taken of the newest
    size_t left_ = 0;
    size_t blockSize_ = 0; // of the newest that was made for more than one large text
};

// A part of the walks: calls would take as long as the rest.

inline void *GpbJsonDocument::Take(size_t size)
{
    const size_t rounded = RoundedUp(size);
    if (rounded > left_ && !AddBlock(rounded))
    {
        return nullptr;
    }
    char *taken = next_;
    next_ += rounded;
    left_ -= rounded;
    return taken;
}

inline char *GpbJsonDocument::Copy(const char *text)
{
    if (text == nullptr)
    {
        return nullptr;
    }
    const size_t size = std::strlen(text) + 1;
    void *copy = Take(size);
    return copy == nullptr ? nullptr : static_cast<char *>(std::memcpy(copy, text, size));
}

inline cJSON *GpbJsonDocument::NewItem(int type)
{
    void *memory = Take(sizeof(cJSON));
    if (memory == nullptr)
    {
        return nullptr;
    }
    auto *item = new (memory) cJSON{};
    item->type = type;
    return item;
}

inline cJSON *GpbJsonDocument::NewNumber(double value)
{
    cJSON *item = NewItem(cJSON_Number);
    if (item != nullptr)
    {
        item->valuedouble = value;
    }
    return item;
}

inline cJSON *GpbJsonDocument::NewString(const char *text)
{
    char *copy = Copy(text);
    cJSON *item = copy == nullptr ? nullptr : NewItem(cJSON_String);
    if (item != nullptr)
    {
        item->valuestring = copy;
    }
    return item;
}

inline cJSON *GpbJsonDocument::AddToObject(cJSON *object, const char *name, cJSON *item)
{
    char *copy = item == nullptr ? nullptr : Copy(name);
    if (copy == nullptr)
    {
        return nullptr;
    }
    item->string = copy;
    return AddToArray(object, item);
}

inline cJSON *GpbJsonDocument::AddToArray(cJSON *array, cJSON *item)
{
    if (array == nullptr || item == nullptr)
    {
        return nullptr;
    }
    // As in any cJSON tree, the link to the one before leads from the first child to the last.
    cJSON *first = array->child;
    if (first == nullptr)
    {
        array->child = item;
        item->prev = item;
        return item;
    }
    item->prev = first->prev;
    first->prev->next = item;
    first->prev = item;
    return item;
}

#endif
