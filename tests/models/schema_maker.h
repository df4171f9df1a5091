/** Random modules full of what makes the library take one node for another. */
#ifndef GPB_TESTS_MODELS_SCHEMA_MAKER_H
#define GPB_TESTS_MODELS_SCHEMA_MAKER_H

#include <cstdint>
#include <string>

namespace gpbtest
{

struct MadeModules
{
    std::string base;       /**< text of module "m" */
    std::string augmenting; /**< text of module "z", which adds nodes to it */
};

/**
 * Makes a module with a top-level container "t" and one that augments it: choices in choices and in lists, few names
 * for many nodes, names that differ in nothing but case, "_" or depth, leaves that may be empty.
 *
 * @param space  namespace of the augmenting module
 */
MadeModules makeModules(std::uint64_t seed, const std::string &space);

} // namespace gpbtest

#endif
