/**
 * The messages of a module: one for each container, list, notification and case. Rules and examples are in
 * docs/yang-to-proto.md.
 */
#ifndef GPB_YANG_PROTO_BUILDER_H
#define GPB_YANG_PROTO_BUILDER_H

#include <set>
#include <string>
#include <vector>

#include "yang/proto_model.h"
#include "yang/proto_types.h"

struct lys_module;

namespace gpbyang
{

class Schema;

/**
 * Makes the model of a module's .proto file. Numbers are 0 until they are given (number_lock.h).
 *
 * @param schema  lives longer than the result, which points into it
 * @throws YangError (NoData) when the module has no node that a document could begin with
 */
ProtoFile BuildProtoFile(const Schema &schema, Decimals decimals);

/** The schema path of a node, with choices and cases: "/m:top/choice/case/leaf". */
std::string SchemaPath(const lysc_node &node);

/** The child nodes of a node, notifications behind data; those of the module when it is null. */
std::vector<const lysc_node *> SchemaChildren(const lysc_node *parent, const Schema &schema);

/** Names of the modules to whose data a module adds nodes. */
std::set<std::string> AugmentedModules(const lys_module &module);

} // namespace gpbyang

#endif
