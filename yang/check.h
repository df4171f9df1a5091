/** What of a module the library does not carry, or carries with a loss, found out before a document is. */
#ifndef GPB_YANG_CHECK_H
#define GPB_YANG_CHECK_H

#include <string>
#include <vector>

#include "yang/proto_model.h"

namespace google::protobuf
{
class FileDescriptor;
}

namespace gpbyang
{

/** In the order in which they are reported; those of kinds with a loss come first. */
enum class CheckKind
{
    ModuleName,
    LeftOut,
    LongName,
    DottedName,
    CaseFields,
    DepthName,
    SharedName,
    CaseInList,
    CasePresence,
    UnionEmpty,
    JsonLeafList,

    TopList,
    TextEnum,
    Decimal,
    EmptyText,
    ValuePrefix,
    JsonNumber,
    JsonEmpty,
    JsonNestedList,
    JsonBits,
    TopName,
    Navigation,
    EnumList,
    LongPath,
    ManyLeaves,

    Count, /**< no kind: their number */
};

struct CheckKindInfo
{
    CheckKind kind;
    const char *name; /**< "case-in-list" */
    bool loss;        /**< whether encoding a valid document can lose or misplace data */
    const char *text; /**< what the library does, in a sentence or two */
};

const CheckKindInfo &InfoOf(CheckKind kind);

struct CheckFinding
{
    CheckKind kind;
    std::string path;   /**< schema path of the node */
    std::string detail; /**< what is particular about it; may be empty */
};

/**
 * Checks a module.
 *
 * @param file        the module's model
 * @param descriptor  the same file as protobuf reads it; the library's own functions look for each node in it
 * @return findings by kind, those of a kind in the order of the schema
 */
std::vector<CheckFinding> CheckModule(const ProtoFile &file, const google::protobuf::FileDescriptor &descriptor);

} // namespace gpbyang

#endif
