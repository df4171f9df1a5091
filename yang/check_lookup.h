/** Where the library looks for the nodes of a message, and what it finds. */
#ifndef GPB_YANG_CHECK_LOOKUP_H
#define GPB_YANG_CHECK_LOOKUP_H

#include <vector>

#include "yang/check.h"

namespace google::protobuf
{
class Descriptor;
}

namespace gpbyang
{

/**
 * Lets the library look for every node that stands in a document where those of a message stand, those of its cases
 * included, and reports what it does not find in its field.
 *
 * @param message  of a container, list or notification
 * @param type     the same message as protobuf reads it
 */
void CheckLookups(const ProtoMessage &message, const google::protobuf::Descriptor &type,
                  std::vector<CheckFinding> &findings);

/** Lets the library look for the leaves below a top-level message by their schema paths. */
void CheckNavigation(const ProtoMessage &top, const google::protobuf::FileDescriptor &file,
                     std::vector<CheckFinding> &findings);

} // namespace gpbyang

#endif
