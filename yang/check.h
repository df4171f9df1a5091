/** What of a module the library does not carry, or carries with a loss, found out before a document is. */
#ifndef GPB_YANG_CHECK_H
#define GPB_YANG_CHECK_H

#include <string>
#include <utility>
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
    RootName,
    LeftOut,
    LongName,
    DottedName,
    CaseFields,
    DepthName,
    SharedName,
    CaseInList,
    BehindEmpty,
    UnionEmpty,
    JsonLeafList,

    TopList,
    TextEnum,
    Decimal,
    EmptyText,
    EmptyElement,
    LineBreak,
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
    bool loss;            /**< whether encoding a valid document can lose or misplace data */
    bool kept;            /**< whether nothing of it is lost with the lossless setting */
    const char *name;     /**< "case-in-list" */
    const char *text;     /**< what the library does, in a sentence or two */
    const char *lossless; /**< what it does with the lossless setting, where that differs and is no better; else null */
};

const CheckKindInfo &InfoOf(CheckKind kind);

/** Where a node is lost. */
struct CheckForms
{
    bool xml = true;
    bool json = true;
    bool refusedJson = false; /**< JSON that has the node is refused as a whole */
    bool refusedXml = false;  /**< XML may be, too */
};

struct CheckFinding
{
    explicit CheckFinding(CheckKind theKind, std::string thePath, std::string theDetail = "", CheckForms theForms = {})
        : kind(theKind), path(std::move(thePath)), detail(std::move(theDetail)), forms(theForms)
    {
        if (!InfoOf(theKind).kept)
        {
            lossless = CheckForms();
        }
    }

    /** Whether nothing of it is lost with the lossless setting. */
    bool IsKept() const { return !lossless.xml && !lossless.json; }

    CheckKind kind;
    std::string path;                            /**< schema path of the node; what is below it shares its fate */
    std::string detail;                          /**< what is particular about it; may be empty */
    CheckForms forms;                            /**< for kinds with a loss */
    CheckForms lossless = {false, false, false}; /**< the same with the lossless setting */
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
