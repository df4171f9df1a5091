/** Names of the .proto files: what the library's compilers make of a YANG name when they look for its field. */
#ifndef GPB_YANG_PROTO_NAMES_H
#define GPB_YANG_PROTO_NAMES_H

#include <optional>
#include <set>
#include <string>

namespace gpbyang
{

/** "example-interfaces" -> "example_interfaces" */
std::string PackageName(const std::string &module);

/** Field of a node: "If-Name" -> "if_name". A "." becomes "_" too; the library does not find such a node. */
std::string FieldName(const std::string &node);

/** Message of a top-level node: "ipv4-address" -> "Ipv4Address" */
std::string TopMessageName(const std::string &node);

/** Nested message: as above, and "ABC" -> "ABC_1" where it would not differ from the node's name. */
std::string NestedMessageName(const std::string &node);

/** Enumeration of a leaf: "oper_status" -> "OperStatus", never with a "_". */
std::string EnumTypeName(const std::string &leaf);

/**
 * Value of an enumeration: "10g" of "Speed" -> "Speed_X_10G".
 *
 * @return nothing when the library would not find the value: it has a blank, 128 characters or more, or characters
 *         that neither stand in names nor are written as "X_"
 */
std::optional<std::string> EnumValueName(const std::string &value, const std::string &type);

/** The name that a field has as a member of JSON: letters and digits, where case does not count. */
std::string JsonForm(const std::string &field);

/** What a message has named already; its fields, oneofs, messages, enums and their values share one set of names. */
class NameScope
{
public:
    bool Has(const std::string &name) const { return names_.count(name) > 0; }
    void Add(const std::string &name) { names_.insert(name); }

    /** Whether a field may be added: protobuf also refuses names that are one in JSON. */
    bool CanAddField(const std::string &name) const;
    void AddField(const std::string &name);

    /** Adds `name`, or `name` followed by `joint` and the first number from `first` on with which it is new. */
    std::string AddUnique(const std::string &name, const std::string &joint, unsigned int first);

private:
    std::set<std::string> names_;
    std::set<std::string> jsonForms_;
};

} // namespace gpbyang

#endif
