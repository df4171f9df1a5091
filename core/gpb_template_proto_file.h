// The name under which the file of a module is known.
#ifndef GPB_CORE_GPB_TEMPLATE_PROTO_FILE_H
#define GPB_CORE_GPB_TEMPLATE_PROTO_FILE_H

#include <string>

/// MODULE.proto
inline std::string GpbProtoFileName(const char *moduleName)
{
    return std::string(moduleName) + ".proto";
}

#endif
