/** Ids by rule, for modules whose host has no numbers of its own. */
#ifndef GPB_YANG_NUMBERING_H
#define GPB_YANG_NUMBERING_H

#include "yang/records.h"

namespace gpbyang
{

/**
 * Numbers the classes of a module 1, 2, 3, ... and the fields of each class 1, 2, 3, ...
 *
 * Classes are the containers, lists, cases and notifications of the whole module in the order of RecordTree::Nodes;
 * choices are no classes and keep 0. Fields are the leaves of a class in their order. The numbers do not depend on the
 * path that is asked for, but they do change with the module: a host that keeps them uses a map.
 */
void NumberByRule(const RecordTree &tree);

} // namespace gpbyang

#endif
