/**
 * A random schema with a random document of it, and what the document has to become.
 *
 * Only what the compilers place in an entry of its own is made: every name occurs once in a schema, and a choice lies
 * only where no list is above it, since the layers of a case are shared between the entries of a list.
 */
#ifndef GPB_FUZZ_SUPPORT_SCHEMA_H
#define GPB_FUZZ_SUPPORT_SCHEMA_H

#include <string>
#include <vector>

#include "support/bytes.h"

namespace gpbfuzz
{

/** Kinds of fields; the scalars first, in the order of their names in schema.cpp. */
enum class Kind : uint32_t
{
    DOUBLE,
    FLOAT,
    INT64,
    UINT64,
    INT32,
    FIXED64,
    FIXED32,
    BOOL,
    STRING,
    BYTES,
    UINT32,
    SFIXED32,
    SFIXED64,
    SINT32,
    SINT64,
    ENUM,
    MESSAGE,
    CHOICE, ///< no field of its own: its cases are messages of one oneof
    COUNT
};

struct Node
{
    Kind kind = Kind::MESSAGE;
    bool repeated = false;
    std::string name;    ///< of letters only, unique in the schema
    uint32_t number = 0; ///< field number in the parent's message; 0 for a choice
    std::vector<Node> children;
    std::vector<std::string> enumValues; ///< as YANG spells them
};

/** The schema: a top-level container of this name. */
Node makeSchema(Bytes &bytes);

std::string protoText(const Node &top);

/** A document in both forms, and the bytes that it has to become. */
struct Expectation
{
    std::string xml;
    bool isXmlEmpty; ///< the root has no content, so that XML stands for no message at all
    std::string json;
    std::string fromXml;
    std::string fromJson; ///< leaf-lists that are no enumerations are left out from JSON
};

Expectation makeDocument(const Node &top, Bytes &bytes);

} // namespace gpbfuzz

#endif
