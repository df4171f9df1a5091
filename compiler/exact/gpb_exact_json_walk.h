// JSON to GPB in the lossless setting: the walk over the tree.
#ifndef GPB_COMPILER_EXACT_GPB_EXACT_JSON_WALK_H
#define GPB_COMPILER_EXACT_GPB_EXACT_JSON_WALK_H

#include <cjson/cJSON.h>
#include <string>
#include <string_view>

#include "descriptor/gpb_exact_names.h"
#include "gpb_templatelib/gpb_compiler.h"

/// Fills the messages of one encode, each node in the message of its own entry and case. Unlike the default walk, this
/// one takes arrays of any kind, numbers with all their digits, keys with a module's prefix, and parts of a document
/// that lie in arrays or in cases; and it passes over what the message does not have. What a failure is, and what is
/// logged of it, is the default's.
class GpbExactJsonWalk
{
public:
    /// @param compiler  whose steps are used; outlives the walk
    /// @param item      what is encoded; an object is encoded by itself, anything else with its later siblings
    GpbExactJsonWalk(GpbJsonCompiler &compiler, cJSON *root, cJSON *item);

    /// Opens the top layer and those of the objects around the item, on an empty stack; 0 or a GPB_COMPILER_ code.
    unsigned int Prepare(GpbCompilerStack &stack);

    /// Fills the messages; 0 or a GPB_COMPILER_ code. Afterwards the slot of the result's layer holds its message.
    unsigned int Run(GpbCompilerStack &stack);

    /// The layer of the item's own message, or of the one that holds the item when it is no object.
    unsigned int ResultLayer() const { return resultLayer_; }

private:
    /// What the document calls a node. The members of an array go by the name of their array.
    struct Name
    {
        const char *key;         ///< as the document spells it; never null
        std::string_view text;   ///< without the prefix
        std::string_view module; ///< from the prefix here or, if there is none, around
    };

    /// The name of an item that lies in a node of the name `around`.
    static Name NameOf(const cJSON *item, const Name &around);

    unsigned int OpenAncestors(GpbCompilerStack &stack);
    unsigned int WalkSiblings(const cJSON *first, const Name &around, GpbCompilerStack &stack);
    unsigned int WalkItem(const cJSON *item, const Name &around, GpbCompilerStack &stack);
    unsigned int WalkArray(const cJSON *array, const Name &name, GpbCompilerStack &stack);
    unsigned int WalkObject(const cJSON *object, const Name &name, GpbCompilerStack &stack);
    unsigned int FillLeaf(const cJSON *item, const Name &name, GpbCompilerStack &stack);

    /// Opens the message that an object of this name fills; `field` is what the name stands for.
    unsigned int OpenObject(const GpbExactField &field, const Name &name, GpbCompilerStack &stack);

    const GpbExactField *Find(const Name &name, GpbExactKind kind, const GpbCompilerStack &stack);

    /// A leaf, too, when nothing else has the name: opening it fails, and says why.
    const GpbExactField *FindForObject(const Name &name, const GpbCompilerStack &stack);

    GpbJsonCompiler &compiler_;
    cJSON *root_;
    cJSON *item_;
    GpbTableMemory<GpbExactNames> names_;
    std::string moduleName_; ///< of the module that is encoded
    Name around_;            ///< of the innermost node around the item
    unsigned int resultLayer_ = 0;
    unsigned int arrays_ = 0; ///< arrays that are open in each other
};

#endif
