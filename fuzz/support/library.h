/** The library with modules loaded, once per process, and contexts that read every text they are given. */
#ifndef GPB_FUZZ_SUPPORT_LIBRARY_H
#define GPB_FUZZ_SUPPORT_LIBRARY_H

#include <string>

#include "gpb_templatelib/gpb_lib.h"

namespace gpbfuzz
{

/** A new context with all levels open; the caller destroys it. */
GpbLibContext *newContext();

/** The context with the modules of the targets loaded. It lives as long as the process. */
GpbLibContext *library();

/** Puts a context into the lossless setting while it lives. */
class Lossless
{
public:
    explicit Lossless(GpbLibContext *context);
    ~Lossless();
    Lossless(const Lossless &) = delete;
    Lossless &operator=(const Lossless &) = delete;

private:
    GpbLibContext *m_context;
};

/** The module with a top message for a container of this name; one of them all when there is none. */
const char *moduleOf(const char *containerName);

/** The proto file of a loaded module. */
const GpbPbFileDescriptor *fileOf(const char *module);

/** A work path of the process's own, ending with "/", removed at the end; proto files go below "reslink/protobuf/". */
const std::string &workPath();

/** Makes the next lookups look below the process's own work path, or below that of the loaded modules again. */
void useOwnWorkPath(bool own);

/** Writes a proto file where the library looks for it below workPath(). */
void writeProto(const std::string &module, const std::string &text);

} // namespace gpbfuzz

#endif
