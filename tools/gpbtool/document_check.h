/** What of a document does not reach the message: each place with its line, which the library's messages lack. */
#ifndef GPBTOOL_DOCUMENT_CHECK_H
#define GPBTOOL_DOCUMENT_CHECK_H

#include <libxml/tree.h>

#include <functional>
#include <string>
#include <vector>

#include "completeness.h"

namespace google::protobuf
{
class Descriptor;
class FieldDescriptor;
class FileDescriptor;
} // namespace google::protobuf

namespace gpbtool
{

/** What a document is turned into, as far as the search for losses needs to know. */
struct CheckRules
{
    /** A container's layer is that of its type, and there is no limit; else open layers count, up to the limit. */
    bool layersByType;

    bool lossless; /**< the session's setting */

    /** A further test of each element that has a field; what is wrong, or an empty text. */
    std::function<std::string(const xmlNode &, const google::protobuf::FieldDescriptor &)> extraTest;
};

/**
 * Follows a document through the module by the library's own lookups.
 *
 * Reported are elements and texts that have no place in the module, elements nested too deep, and values that the
 * library takes without a test but that would be stored as something else, such as "abc" in a number.
 *
 * Needs the process's first compiler to exist, which prepares the conversion of enumeration values.
 */
std::vector<Finding> CheckDocument(const xmlNode &root, const google::protobuf::Descriptor &type,
                                   const CheckRules &rules);

/** The message type of a top-level container, or null when the module has none. */
const google::protobuf::Descriptor *RootMessage(const std::string &container,
                                                const google::protobuf::FileDescriptor &module);

} // namespace gpbtool

#endif
