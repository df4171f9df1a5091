#include "yang/numbering.h"

namespace gpbyang
{

void NumberByRule(const RecordTree &tree)
{
    std::uint32_t lastClass = 0;
    for (GpbYangNode *node : tree.Nodes())
    {
        if (node->ucNodeKind == GPB_YANG_CHOICE)
        {
            continue;
        }
        node->uiClassId = ++lastClass;
        std::uint32_t lastField = 0;
        for (GpbYangLeaf *leaf : tree.Leaves(*node))
        {
            leaf->uiFieldId = ++lastField;
        }
    }
}

} // namespace gpbyang
