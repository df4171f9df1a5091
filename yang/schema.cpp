#include "yang/schema.h"

#include <libyang/libyang.h>

#include <filesystem>
#include <new>

#include "yang/schema_messages.h"
#include "yang/yang_error.h"

namespace gpbyang
{

namespace
{

/** Only what the caller names is searched, and libyang's own bookkeeping modules are not needed. */
constexpr std::uint16_t kContextOptions = LY_CTX_NO_YANGLIBRARY | LY_CTX_DISABLE_SEARCHDIR_CWD;

/** A template has room for every leaf that a device may have. */
const char *kAllFeatures[] = {"*", nullptr};

std::string Indented(const std::string &lines)
{
    std::string text = "  ";
    for (const char c : lines)
    {
        text += c;
        if (c == '\n')
        {
            text += "  ";
        }
    }
    return text;
}

void AddDirectory(ly_ctx &context, const std::string &directory)
{
    std::error_code ignored;
    if (!std::filesystem::is_directory(directory, ignored))
    {
        throw YangError(Fault::Module, directory + " is not a directory");
    }
    const LY_ERR result = ly_ctx_set_searchdir(&context, directory.c_str());
    // A directory that is named twice is searched once.
    if (result != LY_SUCCESS && result != LY_EEXIST)
    {
        throw YangError(Fault::Module, directory + " cannot be searched");
    }
}

} // namespace

void Schema::ContextDeleter::operator()(ly_ctx *context) const
{
    ly_ctx_destroy(context);
}

Schema::Schema(const std::vector<std::string> &directories, const std::string &module)
{
    const KeptMessages kept;
    ly_ctx *context = nullptr;
    if (ly_ctx_new(nullptr, kContextOptions, &context) != LY_SUCCESS)
    {
        throw std::bad_alloc();
    }
    context_.reset(context);
    for (const std::string &directory : directories)
    {
        AddDirectory(*context, directory);
    }
    const FileTrace trace(*context);
    module_ = ly_ctx_load_module(context, module.c_str(), nullptr, kAllFeatures);
    if (module_ == nullptr)
    {
        throw YangError(Fault::Module, "YANG module " + module + " does not load\n" + Indented(trace.Errors()));
    }
}

} // namespace gpbyang
