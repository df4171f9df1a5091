// What every compiler needs of its module before it can be constructed.
#ifndef GPB_COMPILER_GPB_MODULE_LOOKUP_H
#define GPB_COMPILER_GPB_MODULE_LOOKUP_H

#include <cstdint>

#include "gpb_templatelib/gpb_api.h"

/// The diagnostics of a create function: its name, and the lines and texts of its failures.
struct GpbModuleLookupLog
{
    const char *function;
    uint32_t loadLine;
    const char *loadText; ///< takes the module name
    uint32_t importerLine;
    const char *importerText;
    uint32_t nameAssertLine; ///< 0: a file name that cannot be formed is no assertion but a silent failure
    uint32_t fileLine;
    const char *fileText; ///< takes the file name
};

/// A module's proto file and the importer that holds it; no file when the look-up failed.
struct GpbModule
{
    const GpbPbFileDescriptor *file;
    GpbPbImporter *importer;
};

/// Loads a module by name and finds its file in the importer's pool; a failure is logged once.
GpbModule GpbLookUpModule(void *libHandle, const char *moduleName, const GpbModuleLookupLog &log);

#endif
