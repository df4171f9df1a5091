/** The documents that arguments of the command line stand for. */
#ifndef GPBTOOL_INPUT_DOCUMENTS_H
#define GPBTOOL_INPUT_DOCUMENTS_H

#include <string>
#include <vector>

namespace gpbtool
{

inline constexpr const char *kXmlSuffix = ".xml";
inline constexpr const char *kJsonSuffix = ".json";
inline constexpr const char *kXml = "xml";
inline constexpr const char *kJson = "json";

struct InputDocuments
{
    std::vector<std::string> paths;
    bool fromDirectory; /**< at least one argument was a directory */
};

/**
 * Replaces each directory by its documents: the files *.xml and *.json whose names begin with no ".", sorted by name.
 * Directories below it are not searched.
 *
 * @param format  kXml or kJson: take the files of that suffix only; empty: both
 * @throws ToolError (Input) for a directory that cannot be read or holds no documents
 */
InputDocuments FindDocuments(const std::vector<std::string> &arguments, const std::string &format);

/** Whether a document is read as JSON: what `format` says, or else its name. */
bool IsJson(const std::string &document, const std::string &format);

} // namespace gpbtool

#endif
