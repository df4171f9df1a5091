/** What of a JSON document does not reach the message, or keeps all of it from being encoded. */
#ifndef GPBTOOL_JSON_CHECK_H
#define GPBTOOL_JSON_CHECK_H

#include <cjson/cJSON.h>

#include <string>
#include <vector>

namespace google::protobuf
{
class Descriptor;
}

namespace gpbtool
{

struct JsonFinding
{
    cJSON *item;
    cJSON *parent;
    std::string text; /**< "name": what is wrong */
    bool blocks;      /**< the library refuses the document, or mistakes its structure, as long as the item is there */
};

struct JsonCheckResult
{
    std::vector<JsonFinding> findings; /**< in the order of the document */

    /** Type of the message that the chosen item stands for; null when it has none. */
    const google::protobuf::Descriptor *itemType = nullptr;
};

/**
 * Follows a document through the module by the library's own lookups.
 *
 * Needs the process's first compiler to exist, which prepares the conversion of enumeration values.
 *
 * @param container  top-level container
 * @param type       its message
 * @param item       the container or an item below it
 */
JsonCheckResult CheckJson(cJSON &container, const google::protobuf::Descriptor &type, const cJSON &item);

/** The same as the library does it with the lossless setting. @param module  that the document is encoded for */
JsonCheckResult CheckLosslessJson(cJSON &container, const google::protobuf::Descriptor &type, const cJSON &item,
                                  const std::string &module);

} // namespace gpbtool

#endif
