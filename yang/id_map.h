/**
 * Ids from a map, a JSON text:
 *
 *     {
 *       "module": "example-interfaces",
 *       "classes": {
 *         "/interfaces/interface": { "class": 17, "fields": { "name": 1, "if-index": { "id": 6, "map": 2 } } },
 *         "/interfaces/group": { "skip": true }
 *       }
 *     }
 *
 * `class` is the node's `uiClassId`, 1 to 4294967295. A field's number is its leaf's `uiFieldId`, 1 to 65535, and `map`
 * its `uiMapFieldId`. What the map does not name keeps 0: such a leaf is left out of templates. `skip` marks a node
 * that has no message of its own in the .proto file (`ucSkip`); it has no class and no fields.
 *
 * The map is read strictly: unknown members, names or paths, what is named twice, numbers out of range and a choice as
 * a class are errors with line and column.
 */
#ifndef GPB_YANG_ID_MAP_H
#define GPB_YANG_ID_MAP_H

#include <string>

#include "yang/records.h"

namespace gpbyang
{

/**
 * Sets the ids of the records of a module.
 *
 * @param text    the map
 * @param source  names the map in errors
 * @throws YangError (Ids); some ids may be set by then
 */
void ApplyIdMap(const RecordTree &tree, const std::string &text, const std::string &source);

} // namespace gpbyang

#endif
