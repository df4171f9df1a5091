/** Random documents that libyang finds valid. */
#ifndef GPB_TESTS_MODELS_INSTANCE_MAKER_H
#define GPB_TESTS_MODELS_INSTANCE_MAKER_H

#include <cstdint>

#include "models/document_forms.h"

struct lysc_node;

namespace gpbtest
{

/**
 * Makes a document of a top-level container or list: with random values, one case of each choice, and entries until
 * about `leaves` values are there. Other modules of the schema get data too, which references may lead to. What libyang
 * finds wrong, such as a missing reference or an unmet condition, is taken out again until all of it is valid.
 *
 * @return the data of all modules as libyang reads and validates its own print of them, without what it adds; null when
 *         nothing valid is left
 */
Data makeInstance(const lysc_node &top, std::uint64_t seed, std::size_t leaves);

} // namespace gpbtest

#endif
