#include "yang/schema.h"

#include <libyang/libyang.h>

#include <filesystem>
#include <new>
#include <set>

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

/** Loads NAME or NAME@REVISION. */
const lys_module &Load(ly_ctx &context, const FileSource &source, const std::string &module)
{
    const std::size_t at = module.find('@');
    const std::string name = module.substr(0, at);
    const std::string revision = at != std::string::npos ? module.substr(at + 1) : "";
    const lys_module *loaded =
        ly_ctx_load_module(&context, name.c_str(), revision.empty() ? nullptr : revision.c_str(), kAllFeatures);
    if (loaded == nullptr)
    {
        throw YangError(Fault::Module, "YANG module " + module + " does not load\n" + Indented(source.Errors()));
    }
    return *loaded;
}

} // namespace

void Schema::ContextDeleter::operator()(ly_ctx *context) const
{
    ly_ctx_destroy(context);
}

Schema::Schema(const std::vector<std::string> &directories, const std::string &module,
               const std::vector<std::string> &augmenting)
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
    module_ = &Load(*context, source, module);
    // Augments are part of the schema in the order in which they are loaded.
    for (const std::string &name : std::set<std::string>(augmenting.begin(), augmenting.end()))
    {
        augmenting_.push_back(&Load(*context, source, name));
    }
}

} // namespace gpbyang
