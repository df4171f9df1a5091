// How deep message types lie in each other.
#ifndef GPB_COMPILER_GPB_TYPE_CHAIN_H
#define GPB_COMPILER_GPB_TYPE_CHAIN_H

#include <cstddef>

#include "gpb_templatelib/gpb_descriptor.h"

/// An upper bound of the chains of types that begin at `top`, each the type of a field of the one before, no type
/// twice. A factory that makes any of these types calls itself once per link. Types that refer to each other in a
/// circle count as one chain of all of them; otherwise it is the length of the longest chain. Needs no stack, and looks
/// at each field once.
size_t GpbLongestTypeChain(const google::protobuf::Descriptor *top);

#endif
