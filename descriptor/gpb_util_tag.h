// The text under which the unit's allocations and assertions are tagged.
#ifndef GPB_DESCRIPTOR_GPB_UTIL_TAG_H
#define GPB_DESCRIPTOR_GPB_UTIL_TAG_H

constexpr char GPB_UTIL_TAG[] = "gpb_util";

#endif
