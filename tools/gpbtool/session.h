/** One library context, set up from the command line's options, and the modules loaded into it. */
#ifndef GPBTOOL_SESSION_H
#define GPBTOOL_SESSION_H

#include <memory>
#include <string>
#include <vector>

#include "console.h"
#include "diagnostics.h"
#include "gpb_templatelib/gpb_extension.h"
#include "gpb_templatelib/gpb_lib.h"
#include "search_options.h"

namespace google::protobuf
{
class FileDescriptor;
}

namespace gpbtool
{

/** Under this module id the tool's allocations stand in the platform's books. */
inline constexpr std::uint32_t kModuleId = 0x47544F4CU;

class Session
{
public:
    /** Creates the context and gives it the search path. `options` are completed already. */
    Session(Console &console, const SearchOptions &options);

    GpbLibContext *Context() const { return context_.get(); }
    bool IsLossless() const { return GPBEXT_IsLossless(Context()) != 0; }
    Diagnostics &Log() { return diagnostics_; }
    const std::vector<SearchPlace> &Places() const { return places_; }

    /** Loads a module; a module that is not there or does not load is a ToolError that says why. */
    const google::protobuf::FileDescriptor &Load(const std::string &module);

private:
    struct ContextDeleter
    {
        void operator()(GpbLibContext *context) const { GPBLIB_Uninitial(context); }
    };

    Diagnostics diagnostics_;
    std::vector<SearchPlace> places_;
    std::unique_ptr<GpbLibContext, ContextDeleter> context_;
};

/** The error of a module that cannot be used. */
ToolError ModuleError(const std::vector<SearchPlace> &places, const std::string &module);

} // namespace gpbtool

#endif
