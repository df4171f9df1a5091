/** Reading JSON documents that nobody has checked, and choosing an item of them. */
#ifndef GPBTOOL_JSON_DOCUMENT_H
#define GPBTOOL_JSON_DOCUMENT_H

#include <cjson/cJSON.h>

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "json_text.h"

namespace gpbtool
{

struct JsonTreeDeleter
{
    void operator()(cJSON *tree) const { cJSON_Delete(tree); }
};
using JsonTree = std::unique_ptr<cJSON, JsonTreeDeleter>;

/** Takes "MODULE:" off all names of a tree. */
void StripJsonPrefixes(cJSON &tree);

class JsonDocument
{
public:
    /**
     * Reads a document: one object with one member, the top-level container.
     *
     * @param path           a file name; "-" is standard input
     * @param stripPrefixes  take "MODULE:" off all names
     * @throws ToolError (Input) with file, line and column
     */
    JsonDocument(const std::string &path, bool stripPrefixes);

    /** Length of the text in bytes. */
    std::size_t Size() const { return text_.size(); }

    /** The top-level container, with its name as key. */
    cJSON &Container() const { return *tree_->child; }

    /**
     * The item of a JSON pointer, such as /interfaces/interface/0/statistics; the top-level container is /interfaces.
     *
     * Everything beside the way to the item leaves the tree: the library would take in the item's later siblings, and
     * its result would be theirs. The entry of a list stands for the list then, of which it is the only one.
     *
     * @throws ToolError (Usage) for what is no pointer, (Encode) for an item that is not there
     */
    cJSON &Keep(const std::string &pointer);

    /** Where an item of the tree stands in the text. */
    TextPlace PlaceOf(const cJSON &item) { return placeFinder_.At(offsets_.at(&item)); }

private:
    void TakeOffsets(const std::vector<std::size_t> &offsets);
    void RefuseDuplicates(const char *why);
    [[noreturn]] void Refuse(std::size_t offset, const std::string &what, const char *hint);

    std::string path_;
    std::string text_;
    PlaceFinder placeFinder_;
    JsonTree tree_;
    std::unordered_map<const cJSON *, std::size_t> offsets_;
};

} // namespace gpbtool

#endif
