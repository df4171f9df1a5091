// The JSON tree of a compiler whose items nobody else can look at.
#ifndef GPB_COMPILER_GPB_JSON_DOCUMENT_H
#define GPB_COMPILER_GPB_JSON_DOCUMENT_H

#include <cjson/cJSON.h>
#include <cstddef>

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
    static GpbJsonDocument *Of(cJSON *root);

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
    struct Block;

    GpbJsonDocument() = default;

    bool AddBlock(size_t size);
    void *Take(size_t size);
    char *Copy(const char *text);

    cJSON root_ = {};
    Block *blocks_ = nullptr; // the newest first; the document lies in the oldest
    char *next_ = nullptr;    // what is not taken of the newest
    size_t left_ = 0;
    size_t blockSize_ = 0; // of the newest that was made for more than one large text
};

#endif
