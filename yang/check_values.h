/** What becomes of the values of a leaf or leaf-list. */
#ifndef GPB_YANG_CHECK_VALUES_H
#define GPB_YANG_CHECK_VALUES_H

#include <string>
#include <vector>

#include "yang/check.h"

struct lysc_node;

namespace gpbyang
{

/** Whether a leaf may have a value; where that depends on other nodes, it may. */
bool MayBeText(const lysc_node &leaf, const std::string &text);

/** Whether a leaf may have a text that begins with a line break. */
bool MayBeginWithLineBreak(const lysc_node &leaf);

/** Whether an element of a container, list or notification without content means something. */
bool MayStandEmpty(const lysc_node &node);

/**
 * Reports what the library does with the values of a field.
 *
 * @param message  holds the field, which is a value's
 */
void CheckValues(const ProtoMessage &message, const ProtoField &field, std::vector<CheckFinding> &findings);

} // namespace gpbyang

#endif
