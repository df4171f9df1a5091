// XML to GPB in the lossless setting.
#ifndef GPB_COMPILER_EXACT_GPB_EXACT_XML_WALK_H
#define GPB_COMPILER_EXACT_GPB_EXACT_XML_WALK_H

#include <libxml/tree.h>
#include <string_view>

#include "descriptor/gpb_exact_names.h"
#include "gpb_templatelib/gpb_compiler.h"

/// Fills the messages of a compiler from a document as IterXmlDoc does, but with each node in the message of its own
/// list entry and case, and with every value. Codes and log lines are those of IterXmlDoc, except that the path of a
/// case in a case is the plain one.
class GpbExactXmlWalk
{
public:
    /// @param compiler  outlives the walk
    explicit GpbExactXmlWalk(GpbXmlCompiler &compiler);

    /// Walks a node and its later siblings; with an empty stack the root, whose layer stays on the stack.
    unsigned int WalkSiblings(xmlNode *first, GpbCompilerStack &stack);

private:
    const GpbExactField *Find(xmlNode *node, GpbExactKind kind, const GpbCompilerStack &stack);

    unsigned int WalkRoot(xmlNode *root, GpbCompilerStack &stack, bool &stops);
    unsigned int WalkNode(xmlNode *node, GpbCompilerStack &stack, bool &stops);
    unsigned int WalkContainer(xmlNode *node, GpbCompilerStack &stack);
    unsigned int StoreText(xmlNode *node, char *text, GpbCompilerStack &stack);
    unsigned int StoreEmpty(xmlNode *node, GpbCompilerStack &stack);
    unsigned int AddContainer(xmlNode *node, const GpbExactField &container, GpbCompilerStack &stack);

    GpbXmlCompiler &compiler_;
    GpbTableMemory<GpbExactNames> tables_;
    const xmlNs *space_ = nullptr; ///< of the last element
    std::string_view module_;      ///< that it stands for; lies in the document
};

#endif
