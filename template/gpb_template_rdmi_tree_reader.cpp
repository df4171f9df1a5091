// Reading a whole object tree, iteratively: the depth of a tree is the sender's choice, the stack is not.
#include <cstddef>

#include "core/gpb_log.h"
#include "gpb_templatelib/gpb_objtree.h"
#include "platform/zmp.h"
#include "template/gpb_template_rdmi_tree_tag.h"

namespace
{

constexpr uint32_t LINE_FREE_STACKS = 655;

// Open containers that make a tree too deep: the root and GPB_OBJTREE_MAX_NESTING containers are accepted.
constexpr uint32_t TOO_DEEP = GPB_OBJTREE_MAX_NESTING + 2;
static_assert(TOO_DEEP <= GPB_OBJTREE_READ_STACK, "the container that is one too many has its place on the stack");

// The two stacks of a read, allocated from the tree as arrays of their own, released whatever becomes of it.
class ReadStacks
{
public:
    explicit ReadStacks(const ObjNode *tree)
        : nodes_(static_cast<ObjNode **>(GPBLIB_ObjTree_Malloc(tree, GPB_OBJTREE_READ_STACK * sizeof(ObjNode *)))),
          counters_(static_cast<uint32_t *>(GPBLIB_ObjTree_Malloc(tree, GPB_OBJTREE_READ_STACK * sizeof(uint32_t))))
    {
    }
    ~ReadStacks()
    {
        Free(nodes_);
        Free(counters_);
    }
    ReadStacks(const ReadStacks &) = delete;
    ReadStacks &operator=(const ReadStacks &) = delete;

    bool Ready() const { return nodes_ != nullptr && counters_ != nullptr; }
    ObjNode **Nodes() const { return nodes_; }
    uint32_t *Counters() const { return counters_; }

private:
    static void Free(void *stack)
    {
        if (stack != nullptr)
        {
            ZMP_Free_F(stack, GPB_RDMI_TREE_TAG, LINE_FREE_STACKS);
        }
    }

    ObjNode **nodes_;
    uint32_t *counters_;
};

// Opens a container.
void Push(GpbObjTreeReadState *state, ObjNode *node)
{
    state->ppstStack[state->uiStackNum] = node;
    state->puiCounter[state->uiStackNum] = 0;
    ++state->uiStackNum;
}

bool IsTopComplete(const GpbObjTreeReadState *state)
{
    const uint32_t top = state->uiStackNum - 1;
    // More than it should hold is complete, too: a child may be longer than its container promised.
    return state->puiCounter[top] >= state->ppstStack[top]->objLen;
}

// Closes the containers that have all their bytes; true when that goes for the root as well.
bool CloseComplete(GpbObjTreeReadState *state)
{
    while (state->uiStackNum > 1 && IsTopComplete(state))
    {
        const uint32_t closed = --state->uiStackNum;
        state->puiCounter[closed - 1] += state->puiCounter[closed];
    }
    return state->uiStackNum == 1 && IsTopComplete(state);
}

// The next node, a child of the innermost open container; 0 when it cannot be had.
uint32_t ReadChild(GpbObjTreeReadState *state, const uint8_t *bytes, uint32_t length)
{
    const uint32_t top = state->uiStackNum - 1;
    ObjNode *node = GPBLIB_ObjTree_CreateNode(state->pstTree, state->ppstStack[top], 0, 0);
    const uint32_t count = GPBLIB_ObjNode_Read(state->pstTree, node, bytes, length);
    if (count == 0)
    {
        return 0;
    }
    state->puiCounter[top] += count;
    if (node->nodeType == GPB_OBJNODE_CONTAIN)
    {
        Push(state, node);
    }
    return count;
}

void FailRead(GpbObjTreeReadState *state, const uint8_t *bytes, uint32_t length, const GpbLibContext *context)
{
    if (GpbLogOpen(context, GPB_LOG_PROGRESS))
    {
        char text[GPB_MEMORY_TEXT_SIZE] = {};
        GPBLIB_DBG_DumpMemToString(bytes, length, text, sizeof(text));
        GPB_LOG(context, GPB_LOG_PROGRESS, __LINE__, "RDMI ObjTree failed to read %s", text);
        GPBLIB_DBG_PrintPath(state->pstTree, context);
    }
    GPBLIB_ObjTree_Delete(&state->pstTree);
}

// What follows the root's header. Returns the bytes read, of a failed read too.
uint32_t ReadBelowRoot(ObjTree *tree, const uint8_t *bytes, uint32_t length, const GpbLibContext *context)
{
    const uint8_t *end = bytes;
    bool keep = false;
    {
        // The stacks go before the tree does: they belong to its module.
        const ReadStacks stacks(*tree);
        if (stacks.Ready())
        {
            GpbObjTreeReadState state = {*tree, stacks.Nodes(), stacks.Counters(), 0};
            end = GPBLIB_ObjTree_ReadContent_(&state, bytes, length, context);
            keep = state.uiStackNum < TOO_DEEP;
            *tree = state.pstTree;
        }
        else
        {
            GPB_LOG(context, GPB_LOG_PROGRESS, __LINE__, "RDMI ObjTree failed to alloc memory");
        }
    }
    if (!keep)
    {
        GPBLIB_ObjTree_Delete(tree);
    }
    return static_cast<uint32_t>(end - bytes);
}

} // namespace

const uint8_t *GPBLIB_ObjTree_ReadContent_(GpbObjTreeReadState *pstState, const uint8_t *pucBytes, uint32_t uiLen,
                                           const GpbLibContext *pstCtx)
{
    if (pstState == nullptr || pstState->pstTree == nullptr || pstState->ppstStack == nullptr ||
        pstState->puiCounter == nullptr || pucBytes == nullptr)
    {
        return pucBytes;
    }
    pstState->uiStackNum = 0;
    Push(pstState, pstState->pstTree);
    const uint8_t *cursor = pucBytes;
    uint32_t left = uiLen;
    while (left != 0 && pstState->uiStackNum < TOO_DEEP && !CloseComplete(pstState))
    {
        const uint32_t count = ReadChild(pstState, cursor, left);
        if (count == 0)
        {
            FailRead(pstState, cursor, left, pstCtx);
            break;
        }
        cursor += count;
        left -= count;
    }
    return cursor;
}

ObjTree GPBLIB_ObjTree_Read(const uint8_t *pucBytes, uint32_t uiLen, uint32_t *puiConsumed, uint32_t uiModuleId,
                            const GpbLibContext *pstCtx)
{
    uint32_t ignored = 0;
    uint32_t *consumed = puiConsumed != nullptr ? puiConsumed : &ignored;
    *consumed = 0;
    if (pucBytes == nullptr || uiLen == 0)
    {
        return nullptr;
    }
    ObjTree tree = GPBLIB_ObjTree_Create(0, uiModuleId);
    if (tree == nullptr)
    {
        return nullptr;
    }
    const uint32_t header = GPBLIB_ObjNode_Read(tree, tree, pucBytes, uiLen);
    *consumed = header;
    if (header == 0 || tree->nodeType != GPB_OBJNODE_ROOTDOC)
    {
        GPBLIB_DBG_PrintPath(tree, pstCtx);
        GPBLIB_ObjTree_Delete(&tree);
        return nullptr;
    }
    if (tree->objLen != 0)
    {
        *consumed += ReadBelowRoot(&tree, pucBytes + header, uiLen - header, pstCtx);
    }
    return tree;
}
