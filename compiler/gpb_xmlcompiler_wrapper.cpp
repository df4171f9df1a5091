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

// The class name of a compiler as the type information stores it, a subclass's own name included.
const char *RunTimeName(const GpbXmlCompilerBase &compiler)
{
    const char *name = typeid(compiler).name();
    return *name == '*' ? name + 1 : name;
}

} // namespace

GpbXmlCompilerBase *GpbXmlCompiler_CreateCompiler(void *pvLibHandle, const char *pcModuleName)
{
    return GpbNoThrow<GpbXmlCompilerBase *>(nullptr,
                                            [&]() -> GpbXmlCompilerBase *
                                            {
                                                const GpbModule module =
                                                    GpbLookUpModule(pvLibHandle, pcModuleName, XML_COMPILER_LOG);
                                                if (module.file == nullptr)
                                                {
                                                    return nullptr;
                                                }
                                                return new GpbXmlCompiler(module.file, module.importer, pvLibHandle);
                                            });
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

void GpbXmlCompiler_Destory(GpbXmlCompilerBase *pstCompiler)
{
    delete pstCompiler;
}
