/** What of a document does not reach the message: each place with its line, which the library's messages lack. */
#ifndef GPBTOOL_DOCUMENT_CHECK_H
#define GPBTOOL_DOCUMENT_CHECK_H

#include <libxml/tree.h>

#include <string>
#include <vector>

namespace google::protobuf
{
class Descriptor;
class FileDescriptor;
} // namespace google::protobuf

namespace gpbtool
{

struct Finding
{
    long line;
    std::string text; /**< "<element>: what is wrong" */
};

/**
 * Follows a document through the module by the library's own lookups.
 *
 * Reported are elements and texts that have no place in the module, elements nested too deep, and values that the
 * library takes without a test but that would be stored as something else, such as "abc" in a number.
 *
 * Needs the process's first compiler to exist, which prepares the conversion of enumeration values.
 */
std::vector<Finding> CheckDocument(const xmlNode &root, const google::protobuf::Descriptor &type);

/** The message type of a root element, or null when the module has none. */
const google::protobuf::Descriptor *RootMessage(const xmlNode &root, const google::protobuf::FileDescriptor &module);

} // namespace gpbtool

#endif
