#include "yang_fixture.h"

namespace gpbtest
{

std::string YangTest::writeModule(const std::string &module, const std::string &body) const
{
    return workDirectory().writeFile("yang/" + module + ".yang", "module " + module + " { namespace \"urn:" + module +
                                                                     "\"; prefix " + module + ";\n" + body + "\n}\n");
}

std::unique_ptr<gpbyang::RecordTree> YangTest::records(const std::string &body) const
{
    writeModule("m", body);
    return std::make_unique<gpbyang::RecordTree>(schema("m"), kModuleId);
}

std::vector<std::string> YangTest::describe(const gpbyang::RecordTree &tree)
{
    std::vector<std::string> lines;
    for (const GpbYangNode *node : tree.Nodes())
    {
        std::string line = gpbyang::PathOf(*node) + " kind=" + std::to_string(node->ucNodeKind) +
                           " class=" + std::to_string(node->uiClassId) + (node->ucSkip != 0 ? " skip" : "");
        // Read as the library reads them: slot by slot.
        for (uint32_t i = 0; i < VEC_VectorCount(node->pstLeafVec); ++i)
        {
            const auto *leaf = static_cast<const GpbYangLeaf *>(node->pstLeafVec->ppvSlot[i]);
            line += std::string(" ") + leaf->pcName + (leaf->uiIsKey != 0 ? "*" : "") + "=" +
                    std::to_string(leaf->uiFieldId) + "/" + std::to_string(leaf->uiMapFieldId);
        }
        lines.push_back(line);
    }
    return lines;
}

} // namespace gpbtest
