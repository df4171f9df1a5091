/** Compilers of the C interface, owned. */
#ifndef GPBTOOL_COMPILER_H
#define GPBTOOL_COMPILER_H

#include <memory>

#include "gpb_templatelib/gpb_compiler.h"

namespace gpbtool
{

struct CompilerDeleter
{
    void operator()(GpbXmlCompilerBase *compiler) const { GpbXmlCompiler_Destory(compiler); }
};
using Compiler = std::unique_ptr<GpbXmlCompilerBase, CompilerDeleter>;

} // namespace gpbtool

#endif
