#include "yang/schema_messages.h"

#include <cstdlib>
#include <cstring>
#include <memory>

namespace gpbyang
{

namespace
{

constexpr const char *kLine = "Line number ";

/** The digits at the start of a text. */
std::string Digits(const char *text)
{
    return std::string(text, std::strspn(text, "0123456789"));
}

} // namespace

FileTrace::FileTrace(ly_ctx &context) : context_(context)
{
    ly_ctx_set_module_imp_clb(&context_, &FileTrace::Asked, this);
}

FileTrace::~FileTrace()
{
    ly_ctx_set_module_imp_clb(&context_, nullptr, nullptr);
}

LY_ERR FileTrace::Asked(const char *module, const char *, const char *submodule, const char *, void *self,
                        LYS_INFORMAT *, const char **, ly_module_imp_data_free_clb *) noexcept
{
    try
    {
        static_cast<FileTrace *>(self)->lastAsked_ = submodule != nullptr ? submodule : module;
    }
    catch (const std::bad_alloc &)
    {
        return LY_EMEM;
    }
    // Not ours to give: libyang goes on with its search directories.
    return LY_ENOT;
}

std::string FileTrace::Errors() const
{
    std::string text;
    for (const ly_err_item *error = ly_err_first(&context_); error != nullptr; error = error->next)
    {
        if (error->level == LY_LLERR)
        {
            text += (text.empty() ? "" : "\n") + Describe(*error);
        }
    }
    return text;
}

std::string FileTrace::Describe(const ly_err_item &error) const
{
    const std::string message = error.msg != nullptr ? error.msg : "unknown error";
    const char *path = error.path;
    if (path == nullptr || *path == '\0')
    {
        return message;
    }
    if (std::strncmp(path, kLine, std::strlen(kLine)) == 0)
    {
        return FileOf(lastAsked_) + ":" + Digits(path + std::strlen(kLine)) + ": " + message;
    }
    // A path of the schema, "/module:node/...".
    const char *colon = *path == '/' ? std::strchr(path, ':') : nullptr;
    const std::string module = colon != nullptr ? std::string(path + 1, colon) : lastAsked_;
    return FileOf(module) + ": " + message + " (at " + path + ")";
}

std::string FileTrace::FileOf(const std::string &module) const
{
    char *found = nullptr;
    LYS_INFORMAT format = LYS_IN_UNKNOWN;
    if (lys_search_localfile(ly_ctx_get_searchdirs(&context_), 0, module.c_str(), nullptr, &found, &format) !=
            LY_SUCCESS ||
        found == nullptr)
    {
        return module;
    }
    const std::unique_ptr<char, decltype(&std::free)> owned(found, &std::free);
    return owned.get();
}

} // namespace gpbyang
