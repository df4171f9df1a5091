/** Whether JSON that was made of a document holds its data, leaf by leaf, as libyang sees them. */
#ifndef GPB_TESTS_MODELS_JSON_MATCH_H
#define GPB_TESTS_MODELS_JSON_MATCH_H

#include <cjson/cJSON.h>

#include <map>
#include <string>
#include <vector>

#include "models/data_match.h"

namespace gpbtest
{

class JsonMatch
{
public:
    /** @param file  made from the schema that the data belong to */
    explicit JsonMatch(const gpbyang::ProtoFile &file);

    /** Compares a top-level node with the document that was made of it; both have to have the same number of values. */
    void compare(const lyd_node &top, const cJSON &document);

    std::size_t leaves() const { return m_leaves; }
    /** Values that the document does not have in their places. */
    std::size_t lost() const { return m_lost; }
    const std::vector<Difference> &differences() const { return m_differences; }

private:
    void mapFields(const gpbyang::ProtoMessage &message);
    void children(const lyd_node &parent, const cJSON &object);
    void node(const lyd_node &node, const cJSON &value);
    void missing(const lyd_node &node);
    void report(const lyd_node &node, const std::string &text);

    const gpbyang::ProtoFile &m_file;
    std::map<const void *, const gpbyang::ProtoField *> m_fields; /**< by schema node */
    std::size_t m_leaves = 0;
    std::size_t m_lost = 0;
    std::vector<Difference> m_differences;
};

} // namespace gpbtest

#endif
