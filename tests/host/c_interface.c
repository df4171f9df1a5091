#include "c_interface.h"

#include <stdarg.h>
#include <string.h>

#include "gpb_templatelib/gpb_host.h"
#include "platform/cmf_tree.h"
#include "platform/dll.h"
#include "platform/safe_string.h"
#include "platform/vec.h"
#include "platform/yos.h"
#include "platform/zmp.h"

/* Leaves the calling function with the line of a condition that does not hold. */
#define CHECK(condition)                                                                                               \
    do                                                                                                                 \
    {                                                                                                                  \
        if (!(condition))                                                                                              \
        {                                                                                                              \
            return __LINE__;                                                                                           \
        }                                                                                                              \
    } while (0)

enum
{
    MODULE_ID = 77,
    LINE = 1
};

static const char *const FILE_TAG = "c_interface";

static void countEvent(void *pvCount, const GpbHostEvent *pstEvent)
{
    if (pstEvent->eKind == GPB_HOST_EVENT_ASSERT)
    {
        ++*(int *)pvCount;
    }
}

static int callHost(void)
{
    int iAsserts = 0;
    GpbHostAllocation stAllocation;
    const uint64_t uiAssertsBefore = GpbHost_AssertCount();
    const uint64_t uiAllBefore = GpbHost_TotalCallCount();
    const uint64_t uiBefore = GpbHost_CallCount(GPB_HOST_MALLOC);
    void *pvMem = ZMP_Malloc_F(MODULE_ID, g_aucZmpMemPt[0], 5, FILE_TAG, LINE);

    CHECK(pvMem != NULL);
    CHECK(GpbHost_LiveCount() == 1);
    CHECK(GpbHost_LiveBytes() == 5);
    CHECK(GpbHost_LiveList(&stAllocation, 1) == 1);
    CHECK(stAllocation.pvMem == pvMem && stAllocation.uiModuleId == MODULE_ID);
    CHECK(GpbHost_PrintLive() == 1);
    ZMP_Free_F(pvMem, FILE_TAG, LINE);
    CHECK(GpbHost_CallCount(GPB_HOST_MALLOC) == uiBefore + 1);
    CHECK(GpbHost_TotalCallCount() == uiAllBefore + 1);

    GpbHost_FailCall(GPB_HOST_MALLOC, 1);
    CHECK(ZMP_Malloc_F(MODULE_ID, 1, 5, FILE_TAG, LINE) == NULL);
    GpbHost_FailAnyCall(1);
    CHECK(ZMP_Malloc_F(MODULE_ID, 1, 5, FILE_TAG, LINE) == NULL);
    GpbHost_FailAlways(GPB_HOST_MALLOC, 1);
    CHECK(ZMP_Malloc_F(MODULE_ID, 1, 5, FILE_TAG, LINE) == NULL);
    GpbHost_FailAlways(GPB_HOST_MALLOC, 0);

    GpbHost_FillMemory(0);
    GpbHost_SetObserver(countEvent, &iAsserts);
    GpbHost_SetAssertResult(3);
    CHECK(ZMP_Assert(FILE_TAG, LINE, 0) == 3);
    GpbHost_Reset();
    CHECK(ZMP_Assert(FILE_TAG, LINE, 0) == 0);
    CHECK(iAsserts == 1);
    CHECK(GpbHost_AssertCount() == uiAssertsBefore + 2);
    return 0;
}

static int callSystem(void)
{
    char acPath[16];
    void *pvItem = NULL;
    void *pvStack;

    GpbHost_SetWorkPath("/");
    CHECK(ZMP_GetSysWorkPath(acPath, sizeof(acPath)) == 0 && strcmp(acPath, "/") == 0);
    GpbHost_SetWorkPath(NULL);
    CHECK(YOS_VFS_IsDirExist("/") == 1);
    CHECK(YOS_VFS_IsFileExist("/") != 1);

    pvStack = YOS_CreateStackByHandle(ZMP_GetRelHandle(MODULE_ID), 1);
    CHECK(pvStack != NULL);
    CHECK(YOS_Push(pvStack, acPath) == 0);
    CHECK(YOS_GetSize(pvStack) == 1);
    CHECK(YOS_Pop(pvStack, &pvItem) == 0 && pvItem == acPath);
    YOS_DeleteStack(pvStack);
    return 0;
}

static int compareAlways(const void *pvKey, const void *pvNode)
{
    return pvKey == pvNode ? 0 : 1;
}

static int callContainers(void)
{
    int iItem = 0;
    DllHead stList;
    DllNode stNode;
    DllNode *pstHead = (DllNode *)(void *)&stList;
    VecVector *pstVector = VEC_VectorInit_F(MODULE_ID, 1, FILE_TAG, LINE);

    CHECK(pstVector != NULL);
    CHECK(VEC_VectorSet(pstVector, &iItem) == 0);
    CHECK(VEC_VectorCount(pstVector) == 1);
    VEC_VectorZipEmptySlot(pstVector);
    CHECK(pstVector->uiCount == 1 && pstVector->ppvSlot[0] == &iItem);
    VEC_VectorFree_F(pstVector, FILE_TAG, LINE);

    memset(&stList, 0, sizeof(stList));
    memset(&stNode, 0, sizeof(stNode));
    stList.pstFirst = pstHead;
    stList.pstLast = pstHead;
    DLL_Insert_In_Middle(&stList, pstHead, pstHead, &stNode);
    CHECK(stList.uiCount == 1 && stList.pstFirst == &stNode && stList.pstLast == &stNode);
    CHECK(DLL_Find(&stList, &stNode, compareAlways) == &stNode);
    DLL_Delete(&stList, &stNode);
    CHECK(stList.uiCount == 0 && stList.pstFirst == pstHead);
    return 0;
}

static int callTree(void)
{
    CmfTreeIter stIter;
    CmfTreeNode *pstTop = ZMP_Malloc_F(MODULE_ID, 1, sizeof(CmfTreeNode), FILE_TAG, LINE);
    CmfTreeNode *pstChild = ZMP_Malloc_F(MODULE_ID, 1, sizeof(CmfTreeNode), FILE_TAG, LINE);

    CHECK(pstTop != NULL && pstChild != NULL);
    memset(pstTop, 0, sizeof(*pstTop));
    memset(pstChild, 0, sizeof(*pstChild));
    CMF_TREE_AddChildLast(pstTop, pstChild, 0);
    CHECK(CMF_TREE_GetFirstChild(pstTop, 0) == pstChild);
    CHECK(CMF_TREE_GetNextSibling(pstChild, 0) == NULL);
    CHECK(CMF_TREE_GetParent(pstChild, 0) == pstTop);
    CHECK(CMF_TREE_GetPreOrderIter(pstTop, &stIter, 0) == pstTop);
    CHECK(CMF_TREE_GetNextByPreOrder(&stIter, 0) == pstChild);
    CMF_TREE_DetachNode(pstChild, 0);
    CHECK(pstTop->pstFirstChild == NULL);
    CMF_TREE_FreeTree(pstChild, NULL, 0);
    CMF_TREE_FreeTree(pstTop, NULL, 0);
    return 0;
}

static int formatList(char *pcOut, size_t uiSize, const char *pcFormat, ...) GPB_PRINTF_LIKE(3, 4);

static int formatList(char *pcOut, size_t uiSize, const char *pcFormat, ...)
{
    int iLength;
    va_list stArgs;
    va_start(stArgs, pcFormat);
    iLength = vsnprintf_truncated_s(pcOut, uiSize, pcFormat, stArgs);
    va_end(stArgs);
    return iLength;
}

static int callTexts(void)
{
    char acText[8];

    CHECK(YOS_StrCmp("a", "a") == 0);
    CHECK(YOS_StrICmp("a", "A") == 0);
    CHECK(YOS_StrLen("abc") == 3);
    CHECK(*YOS_StrChr("abc", 'b') == 'b');
    CHECK(*YOS_StrRChr("abc", 'c') == 'c');
    CHECK(*YOS_StrStr("abc", "bc") == 'b');
    CHECK(memset_s(acText, sizeof(acText), 0, sizeof(acText)) == 0 && acText[7] == 0);
    CHECK(memcpy_s(acText, sizeof(acText), "abc", 4) == 0 && strcmp(acText, "abc") == 0);
    CHECK(strcpy_s(acText, sizeof(acText), "def") == 0 && strcmp(acText, "def") == 0);
    CHECK(strncpy_s(acText, sizeof(acText), "ghi", 1) == 0 && strcmp(acText, "g") == 0);
    CHECK(sprintf_s(acText, sizeof(acText), "%d", 12) == 2 && strcmp(acText, "12") == 0);
    CHECK(snprintf_s(acText, sizeof(acText), 3, "%d", 34) == 2 && strcmp(acText, "34") == 0);
    CHECK(snprintf_truncated_s(acText, 2, "%d", 56) == 1 && strcmp(acText, "5") == 0);
    CHECK(formatList(acText, 2, "%d", 78) == 1 && strcmp(acText, "7") == 0);
    return 0;
}

int callPlatformFromC(void)
{
    int (*const apfnCall[])(void) = {callHost, callSystem, callContainers, callTree, callTexts};
    size_t uiIndex;

    for (uiIndex = 0; uiIndex < sizeof(apfnCall) / sizeof(apfnCall[0]); ++uiIndex)
    {
        const int iLine = apfnCall[uiIndex]();
        if (iLine != 0)
        {
            return iLine;
        }
    }
    return 0;
}
