/**
 * The protobuf type of a leaf or leaf-list: the one that the compilers fill without loss.
 *
 * | YANG                                | protobuf                                                              |
 * |-------------------------------------|-----------------------------------------------------------------------|
 * | int8, int16, int32                  | int32                                                                 |
 * | uint8, uint16, uint32               | uint32                                                                |
 * | int64, uint64                       | int64, uint64                                                         |
 * | decimal64                           | double, or string on request                                          |
 * | boolean, empty                      | bool                                                                  |
 * | binary                              | bytes, which hold the text of the document                            |
 * | enumeration                         | an enum; string when the library cannot tell its values apart         |
 * | bits                                | repeated enum; string as above, repeated string for a leaf-list        |
 * | leafref                             | as the leaf that it refers to                                         |
 * | union                               | what all members have in common, as long as it is no enum; else string |
 * | string, identityref, instance-identifier | string                                                           |
 */
#ifndef GPB_YANG_PROTO_TYPES_H
#define GPB_YANG_PROTO_TYPES_H

#include <string>

#include "yang/proto_model.h"

struct lysc_node;
struct lysc_type;

namespace gpbyang
{

enum class Decimals
{
    Double, /**< 15 digits are kept for sure */
    String, /**< all digits are kept */
};

/** The type of a leaf or leaf-list, null for other nodes; leafrefs and unions of one member are followed. */
const lysc_type *LeafType(const lysc_node &node);

/** Name of the scalar type that holds any value of a type; "string" for enumerations and bits. */
std::string ScalarType(const lysc_type &type, Decimals decimals);

/**
 * Makes the enumeration of a leaf's type.
 *
 * @param result  gets name and values, without descriptions unless the model has them
 * @return whether the leaf is of an enumeration or bits, and the library can tell all values apart
 */
bool MakeEnum(const lysc_node &leaf, const std::string &name, ProtoEnum &result);

/** Why a leaf of an enumeration or bits has no enum; empty when it has one, or is of another type. */
std::string NoEnumReason(const lysc_node &leaf);

/** Whether a leaf's values are bits that become a repeated enum. */
bool IsBitsEnum(const lysc_node &leaf);

} // namespace gpbyang

#endif
