/** Names of fields in JSON: what tells the node of a field where the field's name does not. */
#ifndef GPB_YANG_JSON_NAMES_H
#define GPB_YANG_JSON_NAMES_H

#include "yang/proto_model.h"

namespace gpbyang
{

/**
 * Sets the JSON names of the fields of a message and of all messages in it: "MODULE:NODE" for each of several nodes
 * that stand beside each other in a document under one name, the node's name where it cannot be told from the field's
 * name.
 *
 * @param message  of a top-level node, with all its fields
 */
void SetJsonNames(ProtoMessage &message);

} // namespace gpbyang

#endif
