// The compilers' C interface: by module name, through an opaque pointer.
#include "gpb_templatelib/gpb_compiler_c.h"

#include <google/protobuf/compiler/importer.h>
#include <libxml/tree.h>
#include <typeinfo>

#include "compiler/gpb_module_lookup.h"
#include "core/gpb_barrier.h"
#include "core/gpb_log.h"
#include "gpb_templatelib/gpb_compiler.h"

namespace
{

constexpr uint32_t LINE_ENCODE_FAILED = 160;
constexpr uint32_t LINE_ENCODE_JSON_FAILED = 185;
constexpr uint32_t LINE_MDL_ATTR_FAILED = 204;

constexpr GpbModuleLookupLog XML_COMPILER_LOG = {
    "GpbXmlCompiler_CreateCompiler",
    39,
    "[GpbXmlCompiler]Fail to load proto file %s.",
    45,
    "[GpbXmlCompiler]Fail to get importer.",
    52,
    56,
    "[GpbXmlCompiler]Fail to get file descriptor %s.",
};

constexpr GpbModuleLookupLog XML_TO_JSON_COMPILER_LOG = {
    "GpbXmlCompiler_CreateJsonCompiler",
    77,
    "[GpbXmlCompilerJson]Fail to load proto file %s.",
    83,
    "[GpbXmlCompilerJson]Fail to get importer.",
    90,
    94,
    "[GpbXmlCompilerJson]Fail to get file descriptor %s.",
};

// A file name that cannot be formed ends this one silently, which the other two deliberately do not do.
constexpr GpbModuleLookupLog JSON_COMPILER_LOG = {
    "GpbJsonCompiler_CreateJsonCompiler",
    115,
    "Gpb json compiler fail to load proto file %s.",
    121,
    "Gpb json compiler fail to get importer.",
    0,
    134,
    "Gpb json compiler fail to get file descriptor %s.",
};

// Looks a module up and makes a compiler for it; null when either cannot be done.
template <typename Compiler, typename... Argument>
GpbXmlCompilerBase *Create(void *libHandle, const char *moduleName, const GpbModuleLookupLog &log, Argument... argument)
{
    return GpbNoThrow<GpbXmlCompilerBase *>(nullptr,
                                            [&]() -> GpbXmlCompilerBase *
                                            {
                                                const GpbModule module = GpbLookUpModule(libHandle, moduleName, log);
                                                if (module.file == nullptr)
                                                {
                                                    return nullptr;
                                                }
                                                return new Compiler(module.file, module.importer, libHandle,
                                                                    argument...);
                                            });
}

// The class name of a compiler as the type information stores it, a subclass's own name included.
const char *RunTimeName(const GpbXmlCompilerBase &compiler)
{
    const char *name = typeid(compiler).name();
    return *name == '*' ? name + 1 : name;
}

} // namespace

GpbXmlCompilerBase *GpbXmlCompiler_CreateCompiler(void *pvLibHandle, const char *pcModuleName)
{
    return Create<GpbXmlCompiler>(pvLibHandle, pcModuleName, XML_COMPILER_LOG);
}

GpbXmlCompilerBase *GpbXmlCompiler_CreateJsonCompiler(void *pvLibHandle, const char *pcModuleName, unsigned char ucFlag)
{
    return Create<GpbXmlCompilerJson>(pvLibHandle, pcModuleName, XML_TO_JSON_COMPILER_LOG, ucFlag);
}

GpbXmlCompilerBase *GpbJsonCompiler_CreateJsonCompiler(void *pvLibHandle, const char *pcModuleName)
{
    return Create<GpbJsonCompiler>(pvLibHandle, pcModuleName, JSON_COMPILER_LOG);
}

const char *GpbXmlCompiler_Encode(GpbXmlCompilerBase *pstCompiler, xmlDoc *pstDoc, unsigned int *puiLen,
                                  unsigned int *puiErrCode)
{
    if (puiErrCode == nullptr || puiLen == nullptr)
    {
        return nullptr;
    }
    const unsigned int result = GpbNoThrow(GPB_COMPILER_NO_MESSAGE, [&] { return pstCompiler->Encode(pstDoc); });
    *puiErrCode = result;
    if (result != 0)
    {
        GPB_LOG(pstCompiler->GetLibHandle(), GPB_LOG_ERROR, LINE_ENCODE_FAILED, "[%s]Fail to encode, error code is %u.",
                RunTimeName(*pstCompiler), result);
        return nullptr;
    }
    return GpbNoThrow<const char *>(nullptr, [&] { return pstCompiler->GetResult(puiLen); });
}

const char *GpbXmlCompiler_EncodeJson(GpbXmlCompilerBase *pstCompiler, cJSON *pstRoot, cJSON *pstItem,
                                      unsigned int *puiLen)
{
    if (pstRoot == nullptr || pstItem == nullptr)
    {
        return nullptr;
    }
    const unsigned int result = GpbNoThrow(GPB_COMPILER_ERR, [&] { return pstCompiler->EncodeJson(pstRoot, pstItem); });
    if (result != 0)
    {
        GPB_LOG(pstCompiler->GetLibHandle(), GPB_LOG_ERROR, LINE_ENCODE_JSON_FAILED,
                "Fail to encode, error code is %u.", result);
        return nullptr;
    }
    return GpbNoThrow<const char *>(nullptr, [&] { return pstCompiler->GetResult(puiLen); });
}

unsigned int GpbXmlCompiler_GetMdlAttr(const void *pvLibHandle, GpbXmlCompilerBase *pstCompiler, cJSON *pstRoot,
                                       cJSON *pstItem, void *pvMdlAttr)
{
    if (pstRoot == nullptr || pstItem == nullptr)
    {
        return GPB_COMPILER_ERR;
    }
    const unsigned int result =
        GpbNoThrow(GPB_COMPILER_ERR, [&] { return pstCompiler->GetMdlAttr(pvLibHandle, pstRoot, pstItem, pvMdlAttr); });
    if (result != 0)
    {
        // Deliberately worded as for an encode, by which hosts recognise it.
        GPB_LOG(pstCompiler->GetLibHandle(), GPB_LOG_ERROR, LINE_MDL_ATTR_FAILED, "Fail to encode, error code is %u.",
                result);
        return GPB_COMPILER_ERR;
    }
    return 0;
}

void GpbXmlCompiler_Destory(GpbXmlCompilerBase *pstCompiler)
{
    delete pstCompiler;
}
