// The text under which the unit's allocations and assertions are tagged.
#ifndef GPB_CORE_GPB_TEMPLATE_TAG_H
#define GPB_CORE_GPB_TEMPLATE_TAG_H

constexpr char GPB_TEMPLATE_TAG[] = "gpb_template";

#endif
