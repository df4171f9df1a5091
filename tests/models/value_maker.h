/** Random values that a leaf may have. */
#ifndef GPB_TESTS_MODELS_VALUE_MAKER_H
#define GPB_TESTS_MODELS_VALUE_MAKER_H

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "models/random.h"

struct lys_module;
struct lysc_node;
struct lysc_type;

namespace gpbtest
{

/** A value as it stands in XML. */
struct MadeValue
{
    std::string text;
    const lys_module *prefix = nullptr; /**< whose name stands in it as a prefix; else null */
};

class ValueMaker
{
public:
    explicit ValueMaker(Random &random) : m_random(random) {}

    /** A value that libyang accepts; nothing when none is found. References take values of nodes made before. */
    std::optional<MadeValue> make(const lysc_node &leaf);

private:
    std::optional<MadeValue> rareText(const lysc_node &leaf, const lysc_type &type);
    std::optional<MadeValue> ofType(const lysc_type &type);
    std::string string(const lysc_type &type);
    std::string decimal(const lysc_type &type);
    std::string binary(const lysc_type &type);
    std::optional<MadeValue> identity(const lysc_type &type);
    std::optional<MadeValue> reference(const lysc_type &type);

    Random &m_random;
    std::map<std::string, std::vector<MadeValue>> m_made; /**< by name of the leaf */
};

} // namespace gpbtest

#endif
