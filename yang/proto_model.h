/**
 * A .proto file as it will be written: messages with their fields, choices and enumerations. Made by proto_builder.h,
 * numbered by number_lock.h, written by proto_writer.h.
 */
#ifndef GPB_YANG_PROTO_MODEL_H
#define GPB_YANG_PROTO_MODEL_H

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

struct lysc_node;

namespace gpbyang
{

struct ProtoMessage;

/** What earlier revisions of the model had: nothing new may take it. */
struct ProtoReserved
{
    std::vector<std::int32_t> numbers; /**< ascending */
    std::vector<std::string> names;    /**< sorted */
};

struct ProtoEnumValue
{
    std::string name;        /**< "Speed_X_10G" */
    std::string description; /**< of the YANG value; may be empty */
    std::int32_t wanted = 0; /**< the value that the model gives it, or the bit's position */
    std::int32_t number = 0;
};

struct ProtoEnum
{
    std::string name; /**< without "_", so that what follows the first "_" of a value is the value */
    std::string path; /**< schema path of the leaf */
    std::vector<ProtoEnumValue> values;
    ProtoReserved reserved;
};

enum class ProtoLabel
{
    Message,  /**< a singular message; it has presence anyway */
    Optional, /**< a singular value with presence */
    Repeated,
};

constexpr int kNoOneof = -1;

struct ProtoField
{
    const lysc_node *node = nullptr; /**< leaf, leaf-list, container, list, notification or case */
    std::string path;                /**< schema path of the node */
    std::string name;
    std::string type; /**< name of a scalar type, of an enum or of a message, both nested in the field's message */
    ProtoLabel label = ProtoLabel::Optional;
    const ProtoMessage *message = nullptr; /**< null for a value */
    bool isEnum = false;
    int oneof = kNoOneof; /**< index of the oneof that a case belongs to */
    std::string jsonName; /**< where the name does not tell the node (json_names.h); else empty */
    std::int32_t number = 0;
};

struct ProtoOneof
{
    std::string name;
    const lysc_node *node = nullptr; /**< the choice */
};

struct ProtoMessage
{
    const lysc_node *node = nullptr; /**< container, list, notification or case */
    std::string path;                /**< schema path of the node */
    std::string name;
    unsigned int layer = 1; /**< 1 for a top-level message, one more for each message around it */
    std::vector<ProtoOneof> oneofs;
    std::vector<ProtoField> fields; /**< those of a oneof stand together */
    std::vector<std::unique_ptr<ProtoMessage>> messages;
    std::vector<ProtoEnum> enums;
    ProtoReserved reserved;
};

/** A node of the schema that no message has a place for. */
struct LeftOutNode
{
    std::string path;
    std::string reason;
};

struct ProtoFile
{
    std::string module;
    std::string package;
    std::vector<std::string> sources; /**< "module" or "module@revision", the module itself first */
    std::string description;          /**< of the module; may be empty */
    std::vector<std::unique_ptr<ProtoMessage>> messages;
    std::vector<LeftOutNode> leftOut;
};

} // namespace gpbyang

#endif
