/** Any bytes as a tree: reading, writing and reading again must end at the same bytes. */
#include <vector>

#include "gpb_templatelib/gpb_objtree.h"
#include "support/guard.h"
#include "support/library.h"

namespace
{

constexpr uint32_t kModuleId = 0x54524545;

std::vector<uint8_t> write(ObjTree tree, uint32_t mode)
{
    const uint32_t size = GPBLIB_ObjTree_GetWriteLen(tree);
    std::vector<uint8_t> bytes(size);
    const uint32_t written = GPBLIB_ObjTree_Write(tree, bytes.data(), size, mode, gpbfuzz::library());
    gpbfuzz::require(written <= size, "more bytes than room");
    gpbfuzz::require(mode != GPB_OBJTREE_MODE_TEMPLATE || written == size, "fewer bytes than the tree takes");
    std::vector<uint8_t> tooSmall(size - 1);
    gpbfuzz::require(GPBLIB_ObjTree_Write(tree, tooSmall.data(), size - 1, mode, gpbfuzz::library()) == 0,
                     "a tree fits where it cannot");
    bytes.resize(written);
    return bytes;
}

/** Deletes one subtree: what is left must still be measured and written. */
void deleteSubTree(ObjTree tree, uint8_t which)
{
    ObjNode *node = reinterpret_cast<ObjNode *>(tree->stTree.pstFirstChild);
    for (; node != nullptr && which > 0; --which)
    {
        CmfTreeNode *const next = which % 2 == 0 ? node->stTree.pstFirstChild : node->stTree.pstNextSibling;
        node = next == nullptr ? node : reinterpret_cast<ObjNode *>(next);
    }
    GPBLIB_ObjTree_Delete(&node);
    write(tree, GPB_OBJTREE_MODE_TEMPLATE);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    GpbLibContext *const context = gpbfuzz::library();
    const gpbfuzz::InputGuard guard;
    const std::vector<uint8_t> exact(data, data + size); // its end is the memory's end
    uint32_t consumed = 0;
    ObjTree tree = GPBLIB_ObjTree_Read(exact.data(), static_cast<uint32_t>(size), &consumed, kModuleId, context);
    gpbfuzz::require(consumed <= size, "more consumed than there is");
    if (tree == nullptr)
    {
        return 0;
    }
    const std::vector<uint8_t> first = write(tree, GPB_OBJTREE_MODE_TEMPLATE);
    write(tree, GPB_OBJTREE_MODE_PLAIN);
    uint32_t consumedAgain = 0;
    ObjTree again =
        GPBLIB_ObjTree_Read(first.data(), static_cast<uint32_t>(first.size()), &consumedAgain, kModuleId, context);
    gpbfuzz::require(again != nullptr && consumedAgain == first.size(), "what was written cannot be read");
    gpbfuzz::require(write(again, GPB_OBJTREE_MODE_TEMPLATE) == first, "a read of what was written differs");
    deleteSubTree(again, size == 0 ? 0 : data[size - 1]);
    GPBLIB_ObjTree_Delete(&tree);
    GPBLIB_ObjTree_Delete(&again);
    return 0;
}
