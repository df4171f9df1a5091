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

/** Files come from FileSource alone, and libyang's own bookkeeping modules are not needed. */
constexpr std::uint16_t kContextOptions = LY_CTX_NO_YANGLIBRARY | LY_CTX_DISABLE_SEARCHDIRS;

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

} // namespace

void Schema::ContextDeleter::operator()(ly_ctx *context) const
{
    ly_ctx_destroy(context);
}

Schema::Schema(const std::vector<std::string> &directories, const std::string &module)
{
    for (const std::string &directory : directories)
    {
        std::error_code ignored;
        if (!std::filesystem::is_directory(directory, ignored))
        {
            throw YangError(Fault::Module, directory + " is not a directory");
        }
    }
    const KeptMessages kept;
    ly_ctx *context = nullptr;
    if (ly_ctx_new(nullptr, kContextOptions, &context) != LY_SUCCESS)
    {
        throw std::bad_alloc();
    }
    context_.reset(context);
    const FileSource source(*context, directories);
    module_ = ly_ctx_load_module(context, module.c_str(), nullptr, kAllFeatures);
    if (module_ == nullptr)
    {
        throw YangError(Fault::Module, "YANG module " + module + " does not load\n" + Indented(source.Errors()));
    }
}

} // namespace gpbyang
