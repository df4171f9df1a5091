/** What the library's functions that go by schema path find. */
#ifndef GPB_YANG_CHECK_NAVIGATION_H
#define GPB_YANG_CHECK_NAVIGATION_H

#include <vector>

#include "yang/check.h"

namespace gpbyang
{

/** Lets the library look for the leaves below a top-level message by their schema paths. */
void CheckNavigation(const ProtoMessage &top, const google::protobuf::FileDescriptor &file,
                     std::vector<CheckFinding> &findings);

} // namespace gpbyang

#endif
