#include "input_documents.h"

#include <algorithm>
#include <filesystem>

#include "tool_error.h"

namespace gpbtool
{

namespace
{

namespace fs = std::filesystem;

constexpr const char *kStdin = "-";

bool IsDocumentName(const fs::path &name, const std::string &format)
{
    if (name.native().front() == '.')
    {
        return false;
    }
    return (format != kJson && name.extension() == kXmlSuffix) || (format != kXml && name.extension() == kJsonSuffix);
}

/** A link that leads nowhere is a document too, one that cannot be read; pipes and devices are none. */
bool IsDocumentFile(const fs::directory_entry &entry)
{
    std::error_code ignored;
    const fs::file_type type = entry.status(ignored).type();
    return type == fs::file_type::regular || type == fs::file_type::not_found;
}

std::vector<std::string> DocumentsIn(const std::string &directory, const std::string &format)
{
    std::vector<std::string> paths;
    std::error_code failed;
    for (fs::directory_iterator entry(directory, failed), end; !failed && entry != end; entry.increment(failed))
    {
        if (IsDocumentName(entry->path().filename(), format) && IsDocumentFile(*entry))
        {
            paths.push_back(entry->path().string());
        }
    }
    if (failed)
    {
        throw ToolError(ExitCode::Input, directory + ": cannot be read: " + failed.message(),
                        "give a directory that can be read");
    }
    if (paths.empty())
    {
        const std::string names = format.empty() ? "*.xml or *.json" : "*." + format;
        throw ToolError(ExitCode::Input, directory + ": no documents in this directory",
                        "they are files named " + names + "; directories below it are not searched");
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

} // namespace

InputDocuments FindDocuments(const std::vector<std::string> &arguments, const std::string &format)
{
    InputDocuments documents = {{}, false};
    for (const std::string &argument : arguments)
    {
        std::error_code ignored;
        if (argument == kStdin || !fs::is_directory(argument, ignored))
        {
            documents.paths.push_back(argument);
            continue;
        }
        documents.fromDirectory = true;
        const std::vector<std::string> found = DocumentsIn(argument, format);
        documents.paths.insert(documents.paths.end(), found.begin(), found.end());
    }
    return documents;
}

bool IsJson(const std::string &document, const std::string &format)
{
    return format.empty() ? fs::path(document).extension() == kJsonSuffix : format == kJson;
}

} // namespace gpbtool
