// The names under which the compilers' units tag their releases and assertions.
#ifndef GPB_COMPILER_GPB_SOURCE_TAG_H
#define GPB_COMPILER_GPB_SOURCE_TAG_H

constexpr char GPB_XML_COMPILER_TAG[] = "gpb_xmlcompiler.cpp";
constexpr char GPB_JSON_COMPILER_TAG[] = "gpb_jsoncompiler";

#endif
