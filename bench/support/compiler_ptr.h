// A compiler of the library's C interface that is destroyed at the end of its scope.
#ifndef GPB_BENCH_SUPPORT_COMPILER_PTR_H
#define GPB_BENCH_SUPPORT_COMPILER_PTR_H

#include <memory>

#include "gpb_templatelib/gpb_compiler_c.h"

namespace gpbbench
{

struct CompilerDestroy
{
    void operator()(GpbXmlCompilerBase *compiler) const { GpbXmlCompiler_Destory(compiler); }
};
using CompilerPtr = std::unique_ptr<GpbXmlCompilerBase, CompilerDestroy>;

} // namespace gpbbench

#endif
