// The name under which the file of a module is known.
#ifndef GPB_CORE_GPB_TEMPLATE_PROTO_FILE_H
#define GPB_CORE_GPB_TEMPLATE_PROTO_FILE_H

#include <cstring>
#include <string>

#include "gpb_templatelib/gpb_limits.h"

/// MODULE.proto. Each new compiler asks for one, so names of usual length need no memory of their own.
class GpbProtoFileName
{
public:
    /// A lack of memory for a longer one is thrown.
    explicit GpbProtoFileName(const char *moduleName)
    {
        const size_t length = std::strlen(moduleName);
        if (length > sizeof(usual_) - sizeof(EXTENSION))
        {
            longer_.assign(moduleName).append(EXTENSION);
            return;
        }
        std::memcpy(usual_, moduleName, length);
        std::memcpy(usual_ + length, EXTENSION, sizeof(EXTENSION));
    }

    const char *Text() const { return longer_.empty() ? usual_ : longer_.c_str(); }

private:
    static constexpr char EXTENSION[] = ".proto";

    char usual_[GPB_PROTO_FILE_NAME_SIZE];
    std::string longer_; ///< empty for a name of usual length
};

#endif
