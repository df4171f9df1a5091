// Creation and destruction of the library context, and the settings that are plain fields of it.
#include "core/gpb_extension.h"
#include "core/gpb_log.h"
#include "core/gpb_memory.h"
#include "core/gpb_template_tag.h"
#include "gpb_templatelib/gpb_lib.h"
#include "platform/vec.h"
#include "platform/zmp.h"

namespace
{

// Lines under which the platform's books know the context's memory.
constexpr uint32_t LINE_ALLOC_CONTEXT = 165;
constexpr uint32_t LINE_ZERO_CONTEXT = 170;
constexpr uint32_t LINE_FREE_NO_PRINT_SLOTS = 176;
constexpr uint32_t LINE_INIT_FILE_VECTOR = 182;
constexpr uint32_t LINE_FREE_NO_FILE_VECTOR = 184;
constexpr uint32_t LINE_INIT_TEMPLATE_VECTOR = 188;
constexpr uint32_t LINE_FREE_NO_TEMPLATE_VECTOR = 191;
constexpr uint32_t LINE_ALLOC_PATCH_DIR = 195;
constexpr uint32_t LINE_FREE_NO_PATCH_DIR = 199;
constexpr uint32_t LINE_FREE_FILE_VECTOR = 222;
constexpr uint32_t LINE_FREE_TEMPLATE_VECTOR = 223;
constexpr uint32_t LINE_FREE_PATCH_DIR = 225;
constexpr uint32_t LINE_FREE_CONTEXT = 226;

} // namespace

GpbLibContext *GPBLIB_Initial(const GpbLibInitParam *pstParam)
{
    if (pstParam == nullptr)
    {
        return nullptr;
    }
    const uint32_t moduleId = pstParam->uiModuleId;
    auto *context =
        static_cast<GpbLibContext *>(GpbMalloc(moduleId, sizeof(GpbLibContext), GPB_TEMPLATE_TAG, LINE_ALLOC_CONTEXT));
    if (context == nullptr)
    {
        return nullptr;
    }
    GpbZero(context, sizeof(*context), GPB_TEMPLATE_TAG, LINE_ZERO_CONTEXT);
    context->ulPrintHandle = pstParam->ulPrintHandle;
    context->uiModuleId = moduleId;
    if (memcpy_s(context->astPrint, sizeof(context->astPrint), pstParam->astPrint, sizeof(context->astPrint)) != 0)
    {
        ZMP_Free_F(context, GPB_TEMPLATE_TAG, LINE_FREE_NO_PRINT_SLOTS);
        return nullptr;
    }
    GPB_LOG(context, GPB_LOG_PROGRESS, __LINE__, "GPBLIB_Initial begin");

    context->pstProtoFileVec =
        VEC_VectorInit_F(moduleId, GPB_VECTOR_FIRST_SIZE, GPB_TEMPLATE_TAG, LINE_INIT_FILE_VECTOR);
    if (context->pstProtoFileVec == nullptr)
    {
        ZMP_Free_F(context, GPB_TEMPLATE_TAG, LINE_FREE_NO_FILE_VECTOR);
        return nullptr;
    }
    context->pstTemplateVec =
        VEC_VectorInit_F(moduleId, GPB_VECTOR_FIRST_SIZE, GPB_TEMPLATE_TAG, LINE_INIT_TEMPLATE_VECTOR);
    if (context->pstTemplateVec == nullptr)
    {
        VEC_VectorFree_F(context->pstProtoFileVec, GPB_TEMPLATE_TAG, LINE_FREE_NO_TEMPLATE_VECTOR);
        ZMP_Free_F(context, GPB_TEMPLATE_TAG, LINE_FREE_NO_TEMPLATE_VECTOR);
        return nullptr;
    }
    context->pcPatchDir =
        static_cast<char *>(GpbMalloc(moduleId, GPB_PATH_SIZE, GPB_TEMPLATE_TAG, LINE_ALLOC_PATCH_DIR));
    if (context->pcPatchDir == nullptr)
    {
        VEC_VectorFree_F(context->pstProtoFileVec, GPB_TEMPLATE_TAG, LINE_FREE_NO_PATCH_DIR);
        VEC_VectorFree_F(context->pstTemplateVec, GPB_TEMPLATE_TAG, LINE_FREE_NO_PATCH_DIR);
        ZMP_Free_F(context, GPB_TEMPLATE_TAG, LINE_FREE_NO_PATCH_DIR);
        return nullptr;
    }
    context->pcPatchDir[0] = '\0';
    (void)GPBLIB_SetPatchDir(context, nullptr);
    (void)GPBLIB_InitPkgSearchPath(context);
    GPB_LOG(context, GPB_LOG_PROGRESS, __LINE__, "GPBLIB_Initial end");
    return context;
}

void GPBLIB_Uninitial(GpbLibContext *pstCtx)
{
    if (pstCtx == nullptr)
    {
        return;
    }
    GpbForgetExtensions(pstCtx);
    GPBLIB_DeInitPkgSearchPath(pstCtx);
    GPBLIB_UnloadProtoFileAll(pstCtx, 0);
    VEC_VectorFree_F(pstCtx->pstProtoFileVec, GPB_TEMPLATE_TAG, LINE_FREE_FILE_VECTOR);
    VEC_VectorFree_F(pstCtx->pstTemplateVec, GPB_TEMPLATE_TAG, LINE_FREE_TEMPLATE_VECTOR);
    ZMP_Free_F(pstCtx->pcPatchDir, GPB_TEMPLATE_TAG, LINE_FREE_PATCH_DIR);
    ZMP_Free_F(pstCtx, GPB_TEMPLATE_TAG, LINE_FREE_CONTEXT);
}

uint32_t GPBLIB_GetMemHandle(const GpbLibContext *pstCtx)
{
    return pstCtx == nullptr ? 0 : pstCtx->uiModuleId;
}

void GPBLIB_RegisterClassMapFunc(GpbLibContext *pstCtx, uint32_t ulMapArg, GpbClassMapFunc pfnClassMap)
{
    if (pstCtx == nullptr)
    {
        return;
    }
    pstCtx->ulMapArg = ulMapArg;
    pstCtx->pfnClassMap = pfnClassMap;
    pstCtx->pfnFieldNameMap = nullptr;
}

void GPBLIB_RegisterFieldNameMapFunc(GpbLibContext *pstCtx, uint32_t ulMapArg, GpbFieldNameMapFunc pfnFieldNameMap)
{
    if (pstCtx == nullptr)
    {
        return;
    }
    pstCtx->ulMapArg = ulMapArg;
    pstCtx->pfnFieldNameMap = pfnFieldNameMap;
    pstCtx->pfnClassMap = nullptr;
}
