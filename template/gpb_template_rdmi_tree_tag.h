// The text under which the object tree's allocations and assertions are tagged.
#ifndef GPB_TEMPLATE_GPB_TEMPLATE_RDMI_TREE_TAG_H
#define GPB_TEMPLATE_GPB_TEMPLATE_RDMI_TREE_TAG_H

constexpr char GPB_RDMI_TREE_TAG[] = "gpb_template_rdmi_tree";

#endif
