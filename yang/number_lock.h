/**
 * Numbers of fields and enumeration values that stay what they are while a module grows and changes. They are kept in a
 * text with a section for each message and each enumeration, in the order of their schema paths:
 *
 *     gpb-numbers 1
 *     module example-interfaces
 *
 *     message /example-interfaces:interfaces/interface
 *       1 name string name
 *       2 mode/switched message mode_switched
 *     enum /example-interfaces:interfaces/interface/type
 *       0 ETHERNET
 *
 * A field is known by its path below the message and its type; its protobuf name stands behind them. What the module no
 * longer has stays in the text: its number is reserved, and it gets it back when it returns. A node that has another
 * type in a later revision is another field. Empty lines and lines that begin with "#" are passed over.
 */
#ifndef GPB_YANG_NUMBER_LOCK_H
#define GPB_YANG_NUMBER_LOCK_H

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "yang/proto_model.h"

namespace gpbyang
{

class NumberLock
{
public:
    /** No numbers yet. */
    explicit NumberLock(std::string module) : module_(std::move(module)) {}

    /**
     * Reads the text of a lock.
     *
     * @param source  names the text in errors
     * @param module  the module that it has to belong to
     * @throws YangError (Lock), "SOURCE:LINE: ..."
     */
    static NumberLock Read(const std::string &text, const std::string &source, const std::string &module);

    /**
     * Gives every field and enumeration value its number: the known one, or a new one behind all that are known; a new
     * enumeration value gets the number that the model wants where that is free. Sets what is reserved.
     *
     * @throws YangError (Lock) when a message or enumeration has no numbers left
     */
    void Number(ProtoFile &file);

    /** The lock as it is to be kept. */
    std::string Text() const;

private:
    struct Entry
    {
        std::int32_t number;
        std::string node; /**< path below the message; of an enumeration's value, its name without the enum's */
        std::string type; /**< empty for an enumeration's value */
        std::string name; /**< of the field; empty for an enumeration's value */
        bool present = false;
    };
    using Entries = std::vector<Entry>;

    void NumberMessage(ProtoMessage &message);
    static void NumberEnum(ProtoEnum &made, Entries &entries);

    std::string module_;
    std::map<std::string, Entries> messages_; /**< by schema path */
    std::map<std::string, Entries> enums_;    /**< by schema path of the leaf */

    friend class LockReader;
};

} // namespace gpbyang

#endif
