// The wire format of object trees: varints, tags and wire types.
#ifndef GPB_TEMPLATE_GPB_TEMPLATE_RDMI_TREE_WIRE_H
#define GPB_TEMPLATE_GPB_TEMPLATE_RDMI_TREE_WIRE_H

#include <cstdint>

#include "gpb_templatelib/gpb_objtree.h"

constexpr uint32_t GPB_VARINT_MAX_SIZE = 10;
constexpr uint32_t GPB_VARINT_PAYLOAD_BITS = 7;
constexpr uint8_t GPB_VARINT_PAYLOAD = 0x7F;
constexpr uint8_t GPB_VARINT_CONTINUED = 0x80;

constexpr uint32_t GPB_WIRE_TYPE_BITS = 3;
constexpr uint64_t GPB_WIRE_TYPE_MASK = 7;
constexpr uint32_t GPB_WIRE_VARINT = 0;
constexpr uint32_t GPB_WIRE_FIXED64 = 1;
constexpr uint32_t GPB_WIRE_DELIMITED = 2;
constexpr uint32_t GPB_WIRE_FIXED32 = 5;

// No wire type of protobuf: the template format's mark of a container, which a reader without schema could otherwise
// not tell from a string.
constexpr uint32_t GPB_WIRE_CONTAINER = 6;

// For the compiler: what most nodes have, whose bytes are formed without a jump then. They are few, and a jump costs as
// much as several of them.
inline bool GpbLikely(bool condition)
{
    return __builtin_expect(static_cast<long>(condition), 1) != 0;
}

// Bytes of a varint. The number of the highest bit set tells, where it is not the one byte of most of them.
inline uint32_t GpbVarintSize(uint64_t value)
{
    if (value <= GPB_VARINT_PAYLOAD)
    {
        return 1;
    }
    const auto highestBit = static_cast<uint32_t>(63 - __builtin_clzll(value));
    return highestBit / GPB_VARINT_PAYLOAD_BITS + 1;
}

// Forms a varint, GPB_VARINT_MAX_SIZE bytes at most; their number.
inline uint32_t GpbFormVarint(uint64_t value, uint8_t *bytes)
{
    if (GpbLikely(value <= GPB_VARINT_PAYLOAD))
    {
        *bytes = static_cast<uint8_t>(value);
        return 1;
    }
    uint32_t size = 0;
    for (; value > GPB_VARINT_PAYLOAD; value >>= GPB_VARINT_PAYLOAD_BITS)
    {
        bytes[size++] = static_cast<uint8_t>(value | GPB_VARINT_CONTINUED);
    }
    bytes[size++] = static_cast<uint8_t>(value);
    return size;
}

// The tag of a node. The shift is 64 bits wide, so that ids above 2^29 - 1 keep their high bits.
inline uint64_t GpbWireTag(const ObjNode *node, uint32_t wireType)
{
    return (static_cast<uint64_t>(node->id) << GPB_WIRE_TYPE_BITS) | wireType;
}

#endif
