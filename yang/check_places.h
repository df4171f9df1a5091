/** Where the library puts the nodes of a message, and what it does to their neighbours. */
#ifndef GPB_YANG_CHECK_PLACES_H
#define GPB_YANG_CHECK_PLACES_H

#include <map>
#include <vector>

#include "yang/check.h"

namespace google::protobuf
{
class Descriptor;
class FieldDescriptor;
} // namespace google::protobuf

namespace gpbyang
{

/** The fields of a module as protobuf reads them, with what they have been made from. */
using FieldNodes = std::map<const google::protobuf::FieldDescriptor *, const ProtoField *>;

/** Adds the fields of a message and of all messages in it. */
void MapFields(const ProtoMessage &message, const google::protobuf::Descriptor &type, FieldNodes &nodes);

/**
 * Lets the library look for every node that stands in a document where those of a message stand, those of its cases
 * included, and reports what does not get into its field, be it for its own name or for what other nodes leave behind.
 *
 * @param message  of a container, list or notification
 * @param type     the same message as protobuf reads it
 * @param inEntry  whether a document may have several of the message, each in a list entry of its own
 * @param nodes    of the whole module
 */
void CheckPlaces(const ProtoMessage &message, const google::protobuf::Descriptor &type, bool inEntry,
                 const FieldNodes &nodes, std::vector<CheckFinding> &findings);

} // namespace gpbyang

#endif
