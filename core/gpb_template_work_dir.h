// Directories of proto files below the system work path: the buffer that they are put together in, and the fixed one.
#ifndef GPB_CORE_GPB_TEMPLATE_WORK_DIR_H
#define GPB_CORE_GPB_TEMPLATE_WORK_DIR_H

#include <cstddef>
#include <cstdint>

#include "core/gpb_template_tag.h"
#include "gpb_templatelib/gpb_limits.h"
#include "platform/safe_string.h"
#include "platform/zmp.h"

// The fixed place of proto files, below the work path; copied with its terminator.
inline constexpr char GPB_FIXED_PROTO_DIR[] = "reslink/protobuf";

// Bytes behind those that the platform may fill: a text that fills its room is terminated by them, and a platform that
// writes a little too much overwrites nothing else.
inline constexpr size_t GPB_WORK_DIR_SLACK = 8;

struct GpbWorkDir
{
    char text[GPB_PATH_SIZE + GPB_WORK_DIR_SLACK] = {};
};

inline void GpbAssertIf(bool failed, uint32_t line)
{
    if (failed)
    {
        ZMP_Assert(GPB_TEMPLATE_TAG, line, 0);
    }
}

inline void GpbAppendFixedDir(GpbWorkDir &directory, uint32_t workLength, uint32_t line)
{
    GpbAssertIf(strncpy_s(directory.text + workLength, GPB_PATH_SIZE - workLength, GPB_FIXED_PROTO_DIR,
                          sizeof(GPB_FIXED_PROTO_DIR)) != 0,
                line);
}

#endif
