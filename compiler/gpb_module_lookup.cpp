#include "compiler/gpb_module_lookup.h"

#include <google/protobuf/compiler/importer.h>

#include "core/gpb_log.h"
#include "gpb_templatelib/gpb_lib.h"
#include "platform/safe_string.h"
#include "platform/zmp.h"

namespace
{

constexpr char WRAPPER_TAG[] = "gpb_xmlcompiler_wrapper.cpp";

constexpr GpbModule NO_MODULE = {nullptr, nullptr};

} // namespace

GpbModule GpbLookUpModule(void *libHandle, const char *moduleName, const GpbModuleLookupLog &log)
{
    auto *context = static_cast<GpbLibContext *>(libHandle);
    if (context == nullptr)
    {
        return NO_MODULE;
    }
    if (GPBLIB_ProtobufLoad(context, moduleName, 0) != 0)
    {
        GPBLIB_DebugPrint(context, GPB_LOG_ERROR, log.function, log.loadLine, log.loadText,
                          moduleName == nullptr ? "" : moduleName);
        return NO_MODULE;
    }
    GpbPbImporter *importer = GPBLIB_GetImporter(context);
    if (importer == nullptr)
    {
        GPBLIB_DebugPrint(context, GPB_LOG_ERROR, log.function, log.importerLine, "%s", log.importerText);
        return NO_MODULE;
    }
    // A long module name is cut here, and may then name another file.
    char fileName[GPB_PROTO_FILE_NAME_SIZE] = {};
    if (snprintf_truncated_s(fileName, sizeof(fileName), "%s.proto", moduleName) < 0)
    {
        if (log.nameAssertLine == 0)
        {
            return NO_MODULE;
        }
        ZMP_Assert(WRAPPER_TAG, log.nameAssertLine, 0);
    }
    const GpbPbFileDescriptor *file = importer->pool()->FindFileByName(fileName);
    if (file == nullptr)
    {
        GPBLIB_DebugPrint(context, GPB_LOG_ERROR, log.function, log.fileLine, log.fileText, fileName);
    }
    return {file, importer};
}
