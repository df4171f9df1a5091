/** Texts for the patterns of YANG, which are regular expressions of XML Schema. */
#ifndef GPB_TESTS_MODELS_PATTERN_TEXT_H
#define GPB_TESTS_MODELS_PATTERN_TEXT_H

#include <string>

#include "models/random.h"

namespace gpbtest
{

/**
 * Makes a text that a pattern matches, of ASCII characters. What is not understood, such as differences of classes, may
 * give a text that does not match: the caller asks libyang.
 */
std::string patternText(const std::string &pattern, Random &random);

} // namespace gpbtest

#endif
