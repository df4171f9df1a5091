#include "compiler/gpb_json_document.h"

#include <algorithm>
#include <cstdint>
#include <new>
#include <type_traits>

#include "gpb_templatelib/gpb_compiler.h"

namespace
{

// The first block holds small documents as a whole; each one doubles, up to what the C library still keeps for reuse.
constexpr size_t FIRST_BLOCK_SIZE = 4096;
constexpr size_t LARGEST_BLOCK_SIZE = size_t{1} << 16;

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
