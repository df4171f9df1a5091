#include "yang/schema_messages.h"

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>
#include <new>
#include <utility>

namespace gpbyang
{

namespace
{

constexpr const char *kLine = "Line number ";

bool Read(const std::string &path, std::string &content)
{
    std::ifstream file(path, std::ios::binary);
    content.assign(std::istreambuf_iterator<char>(file), {});
    return file.good() || file.eof();
}

/** The digits at the start of a text. */
std::string Digits(const char *text)
{
    return {text, std::strspn(text, "0123456789")};
}

} // namespace

FileSource::FileSource(ly_ctx &context, std::vector<std::string> directories)
    : context_(context), directories_(std::move(directories))
{
    for (std::string &directory : directories_)
    {
        while (directory.size() > 1 && directory.back() == '/')
        {
            directory.pop_back();
        }
    }
    ly_ctx_set_module_imp_clb(&context_, &FileSource::Give, this);
}

FileSource::~FileSource()
{
    ly_ctx_set_module_imp_clb(&context_, nullptr, nullptr);
}

LY_ERR FileSource::Give(const char *module, const char *revision, const char *submodule, const char *subRevision,
                        void *self, LYS_INFORMAT *format, const char **text, ly_module_imp_data_free_clb *freeText)
{
    // No exception may pass through libyang.
    try
    {
        auto &source = *static_cast<FileSource *>(self);
        const std::string name = submodule != nullptr ? submodule : module;
        const File file = source.Find(name, submodule != nullptr ? subRevision : revision);
        std::string content;
        if (file.path.empty() || !Read(file.path, content))
        {
            source.missing_ = name;
            return LY_ENOT;
        }
        char *copy = strdup(content.c_str());
        if (copy == nullptr)
        {
            return LY_EMEM;
        }
        source.latest_ = file.path;
        *format = file.format;
        *text = copy;
        *freeText = [](void *given, void *) { std::free(given); };
        return LY_SUCCESS;
    }
    catch (const std::bad_alloc &)
    {
        return LY_EMEM;
    }
}

FileSource::File FileSource::Find(const std::string &module, const char *revision) const
{
    for (const std::string &directory : directories_)
    {
        const char *const searched[] = {directory.c_str(), nullptr};
        char *path = nullptr;
        File file;
        const LY_ERR result = lys_search_localfile(searched, 0, module.c_str(), revision, &path, &file.format);
        const std::unique_ptr<char, decltype(&std::free)> owned(path, &std::free);
        if (result == LY_SUCCESS && path != nullptr)
        {
            file.path = path;
            return file;
        }
    }
    return {};
}

std::string FileSource::Errors() const
{
    std::string text;
    for (const ly_err_item *error = ly_err_first(&context_); error != nullptr; error = error->next)
    {
        if (error->level == LY_LLERR)
        {
            text += (text.empty() ? "" : "\n") + Describe(*error);
        }
    }
    // libyang also asks in vain for newer revisions of what it has itself.
    if (!missing_.empty() && text.find('"' + missing_ + '"') != std::string::npos)
    {
        std::string places;
        for (const std::string &directory : directories_)
        {
            places += (places.empty() ? "" : ", ") + directory;
        }
        text.insert(0, "no " + missing_ + ".yang in " + (places.empty() ? "no directory" : places) + "\n");
    }
    return text;
}

std::string FileSource::Describe(const ly_err_item &error) const
{
    std::string message = error.msg != nullptr ? error.msg : "unknown error";
    const char *path = error.path;
    if (path == nullptr || *path == '\0')
    {
        return message;
    }
    if (std::strncmp(path, kLine, std::strlen(kLine)) == 0)
    {
        return latest_ + ":" + Digits(path + std::strlen(kLine)) + ": " + message;
    }
    // A path of the schema, "/module:node/...".
    const char *colon = *path == '/' ? std::strchr(path, ':') : nullptr;
    const File file = colon != nullptr ? Find(std::string(path + 1, colon), nullptr) : File();
    return (file.path.empty() ? latest_ : file.path) + ": " + message + " (at " + path + ")";
}

} // namespace gpbyang
