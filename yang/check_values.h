/** What becomes of the values of a leaf or leaf-list. */
#ifndef GPB_YANG_CHECK_VALUES_H
#define GPB_YANG_CHECK_VALUES_H

#include <vector>

#include "yang/check.h"

namespace gpbyang
{

/**
 * Reports what the library does with the values of a field.
 *
 * @param message  holds the field, which is a value's
 */
void CheckValues(const ProtoMessage &message, const ProtoField &field, std::vector<CheckFinding> &findings);

} // namespace gpbyang

#endif
