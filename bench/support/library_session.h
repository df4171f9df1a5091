// A library context on modules that a benchmark makes, with all print slots closed.
#ifndef GPB_BENCH_SUPPORT_LIBRARY_SESSION_H
#define GPB_BENCH_SUPPORT_LIBRARY_SESSION_H

#include <memory>
#include <string>

#include <google/protobuf/descriptor.h>

#include "gpb_templatelib/gpb_lib.h"

namespace gpbbench
{

/// Failures throw std::runtime_error. The modules lie in a temporary directory that goes with the session.
class LibrarySession
{
public:
    LibrarySession();
    ~LibrarySession();
    LibrarySession(const LibrarySession &) = delete;
    LibrarySession &operator=(const LibrarySession &) = delete;

    /// Writes MODULE.proto and loads it, unless it is loaded.
    void AddModule(const std::string &name, const std::string &protoText);

    /// Where the file of a module lies.
    std::string FileOf(const std::string &module) const { return directory_ + module + ".proto"; }

    /// The pool that the library has read its modules into.
    const google::protobuf::DescriptorPool *Pool() const;

    GpbLibContext *Context() const { return context_; }

private:
    std::string directory_; ///< ends with "/"
    GpbLibContext *context_ = nullptr;
};

} // namespace gpbbench

#endif
