// XML to JSON in the lossless setting: the walk over the document.
#ifndef GPB_COMPILER_EXACT_GPB_EXACT_XML_TO_JSON_H
#define GPB_COMPILER_EXACT_GPB_EXACT_XML_TO_JSON_H

#include <cjson/cJSON.h>
#include <cstdint>
#include <libxml/tree.h>
#include <string>
#include <string_view>

#include "descriptor/gpb_exact_names.h"
#include "gpb_templatelib/gpb_compiler.h"

/// Makes the tree of one encode as IterXmlDoc does, but with an array for each list of each object, and with every
/// value; what GpbExactJsonWalk makes of it is what GpbExactXmlWalk makes of the document. Codes and log lines are the
/// default's.
class GpbExactXmlToJson
{
public:
    /// @param compiler  whose tree is filled; outlives the walk
    explicit GpbExactXmlToJson(GpbXmlCompilerJson &compiler);

    /// Adds the root, and what stands beside it, to the root object; 0 or a GPB_COMPILER_ code.
    unsigned int WalkDocument(xmlNode *root);

private:
    /// An object that is being filled.
    struct Holder
    {
        const google::protobuf::Descriptor *type; ///< null when nobody knows it
        cJSON *object;
        uint32_t layer;          ///< number of its members' layer, as names of fields carry it behind them
        std::string_view module; ///< which readers take its members for, unless these have a prefix
    };

    unsigned int WalkSiblings(xmlNode *first, const Holder &holder);

    /// Nothing is known below an unknown type, which is why the default's steps find there what is to be found.
    unsigned int WalkUnknown(xmlNode *node, const Holder &holder, bool &stops);

    unsigned int WalkNode(xmlNode *node, const Holder &holder, bool &stops);
    unsigned int AddContainer(xmlNode *node, const Holder &holder);
    unsigned int AddText(xmlNode *node, const char *text, const Holder &holder);
    unsigned int AddEmpty(xmlNode *node, const Holder &holder);

    /// Adds an object, as an entry of its list where the field is one; the object is null without memory.
    Holder AddObject(xmlNode *node, const GpbExactField &field, const Holder &holder);
    unsigned int AddLeaf(xmlNode *node, const GpbExactField &field, const char *text, const Holder &holder);

    /// The field of a node, or null.
    const GpbExactField *Find(xmlNode *node, GpbExactKind kind, const Holder &holder);

    /// Puts a prefix before the name of the last member if readers would take that for another field without one; only
    /// when it is new, which it is unless it is `last`. False without memory, and then the member is gone.
    bool QualifyNew(const cJSON *last, xmlNode *node, const GpbExactField &field, const Holder &holder);

    GpbXmlCompilerJson &compiler_;
    GpbTableMemory<GpbExactNames> tables_;
    std::string moduleName_; ///< of the module that is encoded
};

#endif
