/**
 * Doubly linked lists. Links that lead to the head carry its address as that of a node; the head is recognised by its
 * address and never read or written through a node.
 */
#include "platform_exports.h"

namespace
{

bool isHead(const DllHead *list, const DllNode *node)
{
    return static_cast<const void *>(list) == static_cast<const void *>(node);
}

void setNext(DllHead *list, DllNode *of, DllNode *target)
{
    (isHead(list, of) ? list->pstFirst : of->pstNext) = target;
}

void setPrev(DllHead *list, DllNode *of, DllNode *target)
{
    (isHead(list, of) ? list->pstLast : of->pstPrev) = target;
}

} // namespace

DllNode *DLL_Find(DllHead *pstList, const void *pvKey, DllCompareFunc pfnCompare)
{
    if (pstList == nullptr || pfnCompare == nullptr)
    {
        return nullptr;
    }
    for (DllNode *node = pstList->pstFirst; node != nullptr && !isHead(pstList, node); node = node->pstNext)
    {
        if (pfnCompare(pvKey, node) == 0)
        {
            return node;
        }
    }
    return nullptr;
}

void DLL_Delete(DllHead *pstList, DllNode *pstNode)
{
    // A node without neighbours is in no list: deleting it a second time changes nothing.
    if (pstList == nullptr || pstNode == nullptr || isHead(pstList, pstNode) || pstNode->pstNext == nullptr ||
        pstNode->pstPrev == nullptr)
    {
        return;
    }
    setNext(pstList, pstNode->pstPrev, pstNode->pstNext);
    setPrev(pstList, pstNode->pstNext, pstNode->pstPrev);
    pstNode->pstNext = nullptr;
    pstNode->pstPrev = nullptr;
    --pstList->uiCount;
}

void DLL_Insert_In_Middle(DllHead *pstList, DllNode *pstPrev, DllNode *pstNext, DllNode *pstNode)
{
    if (pstList == nullptr || pstPrev == nullptr || pstNext == nullptr || pstNode == nullptr)
    {
        return;
    }
    pstNode->pstPrev = pstPrev;
    pstNode->pstNext = pstNext;
    setNext(pstList, pstPrev, pstNode);
    setPrev(pstList, pstNext, pstNode);
    ++pstList->uiCount;
}
