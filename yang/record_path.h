/** Finding a record by schema path. */
#ifndef GPB_YANG_RECORD_PATH_H
#define GPB_YANG_RECORD_PATH_H

#include <string>

#include "yang/records.h"

namespace gpbyang
{

/**
 * The node of a path such as "/interfaces/interface".
 *
 * A step is a node's name, with or without the name of the module, as in "/example-interfaces:interfaces". Choices and
 * cases may be named, as in "/interfaces/interface/Mode/switched", or left out, as they are in documents.
 *
 * @throws YangError (Path) when the path is malformed, leads nowhere, or leads to cases of several choices
 */
GpbYangNode &FindNode(const RecordTree &tree, const std::string &path);

} // namespace gpbyang

#endif
