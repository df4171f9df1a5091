#include "compiler/gpb_json_document.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <new>
#include <type_traits>

#include "gpb_templatelib/gpb_compiler.h"

namespace
{

// Of the root's type: no flag of cJSON's.
constexpr int DOCUMENT_FLAG = 1 << 16;

// The first block holds small documents as a whole; each one doubles, up to what the C library still keeps for reuse.
constexpr size_t FIRST_BLOCK_SIZE = 4096;
constexpr size_t LARGEST_BLOCK_SIZE = size_t{1} << 16;

constexpr size_t RoundedUp(size_t size)
{
    return (size + alignof(cJSON) - 1) / alignof(cJSON) * alignof(cJSON);
}

} // namespace

struct GpbJsonDocument::Block
{
    Block *older;

    static constexpr size_t HEADER_SIZE = RoundedUp(sizeof(void *));
    char *Content() { return reinterpret_cast<char *>(this) + HEADER_SIZE; }
};

cJSON *GpbJsonDocument::New()
{
    static_assert(std::is_standard_layout_v<GpbJsonDocument>, "the root is where its document is");
    static_assert(Block::HEADER_SIZE + sizeof(GpbJsonDocument) < FIRST_BLOCK_SIZE, "the document lies in its block");
    auto *block = static_cast<Block *>(GpbLib_Json_Malloc(FIRST_BLOCK_SIZE));
    if (block == nullptr)
    {
        return nullptr;
    }
    block->older = nullptr;
    auto *document = new (block->Content()) GpbJsonDocument;
    document->root_.type = cJSON_Object | DOCUMENT_FLAG;
    document->blocks_ = block;
    document->blockSize_ = FIRST_BLOCK_SIZE;
    document->next_ = block->Content() + RoundedUp(sizeof(GpbJsonDocument));
    document->left_ = FIRST_BLOCK_SIZE - Block::HEADER_SIZE - RoundedUp(sizeof(GpbJsonDocument));
    return &document->root_;
}

GpbJsonDocument *GpbJsonDocument::Of(cJSON *root)
{
    const bool isDocument = root != nullptr && (root->type & DOCUMENT_FLAG) != 0;
    return isDocument ? reinterpret_cast<GpbJsonDocument *>(root) : nullptr;
}

void GpbJsonDocument::Delete(cJSON *root)
{
    const GpbJsonDocument *document = Of(root);
    if (document == nullptr)
    {
        GpbLib_Json_NodeFree(root);
        return;
    }
    for (Block *block = document->blocks_; block != nullptr;)
    {
        Block *older = block->older;
        GpbLib_Json_Free(block);
        block = older;
    }
}

cJSON *GpbJsonDocument::NewItem(int type)
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

cJSON *GpbJsonDocument::NewNumber(double value)
{
    cJSON *item = NewItem(cJSON_Number);
    if (item != nullptr)
    {
        item->valuedouble = value;
    }
    return item;
}

cJSON *GpbJsonDocument::NewString(const char *text)
{
    char *copy = Copy(text);
    cJSON *item = copy == nullptr ? nullptr : NewItem(cJSON_String);
    if (item != nullptr)
    {
        item->valuestring = copy;
    }
    return item;
}

cJSON *GpbJsonDocument::AddToObject(cJSON *object, const char *name, cJSON *item)
{
    char *copy = item == nullptr ? nullptr : Copy(name);
    if (copy == nullptr)
    {
        return nullptr;
    }
    item->string = copy;
    return AddToArray(object, item);
}

cJSON *GpbJsonDocument::AddToArray(cJSON *array, cJSON *item)
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

// Adds a block with at least so much content.
bool GpbJsonDocument::AddBlock(size_t size)
{
    const size_t doubled = std::min(blockSize_ * 2, LARGEST_BLOCK_SIZE);
    const size_t blockSize = std::max(doubled, Block::HEADER_SIZE + size);
    auto *block = static_cast<Block *>(GpbLib_Json_Malloc(blockSize));
    if (block == nullptr)
    {
        return false;
    }
    block->older = blocks_;
    blocks_ = block;
    blockSize_ = doubled;
    next_ = block->Content();
    left_ = blockSize - Block::HEADER_SIZE;
    return true;
}

void *GpbJsonDocument::Take(size_t size)
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

char *GpbJsonDocument::Copy(const char *text)
{
    if (text == nullptr)
    {
        return nullptr;
    }
    const size_t size = std::strlen(text) + 1;
    void *copy = Take(size);
    return copy == nullptr ? nullptr : static_cast<char *>(std::memcpy(copy, text, size));
}
