// The text under which the unit's releases are tagged.
#ifndef GPB_COMPILER_GPB_XMLCOMPILERJSON_TAG_H
#define GPB_COMPILER_GPB_XMLCOMPILERJSON_TAG_H

constexpr char GPB_XML_TO_JSON_TAG[] = "gpb_xmlcompilerjson";

#endif
