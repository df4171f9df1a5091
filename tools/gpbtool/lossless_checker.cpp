/** Follows a document through the module as the library does with the lossless setting. */
#include <google/protobuf/descriptor.h>

#include "compiler/exact/gpb_exact_xml_node.h"
#include "descriptor/gpb_exact_names.h"
#include "document_checker.h"

namespace gpbtool
{

namespace
{

class LosslessChecker : public DocumentChecker
{
public:
    using DocumentChecker::DocumentChecker;

private:
    void Element(xmlNode &node, const OpenLevel &level) override
    {
        std::string joined;
        char *text = nullptr;
        switch (GpbReadExactContent(&node, text, joined))
        {
        case GpbXmlNodeKind::IGNORED:
            break;
        case GpbXmlNodeKind::EMPTY:
            Empty(node, level);
            break;
        case GpbXmlNodeKind::LEAF:
            Text(node, level, text);
            break;
        case GpbXmlNodeKind::CONTAINER:
            Container(node, level);
            break;
        }
    }

    const GpbExactField *Find(const xmlNode &node, const OpenLevel &level, GpbExactKind kind)
    {
        return names_.TableOf(level.type, level.layers + 1)
            .Find(reinterpret_cast<const char *>(node.name), kind, GpbExactModuleOf(node.ns));
    }

    void Empty(const xmlNode &node, const OpenLevel &level)
    {
        const GpbExactField *found = Find(node, level, GpbExactKind::ANY);
        if (found == nullptr)
        {
            ReportUnknown(node, level);
            return;
        }
        Test(node, *found->field);
        const bool isMessage = found->field->type() == google::protobuf::FieldDescriptor::TYPE_MESSAGE;
        if (!isMessage && GpbEmptyValueOf(*found->field) == nullptr)
        {
            ReportEmpty(node, *found->field);
        }
    }

    void Text(const xmlNode &node, const OpenLevel &level, const char *text)
    {
        const GpbExactField *leaf = Find(node, level, GpbExactKind::LEAF);
        if (leaf != nullptr)
        {
            Test(node, *leaf->field);
            TestValue(node, *leaf->field, text);
            return;
        }
        const GpbExactField *container = GpbIsFormatting(text) ? Find(node, level, GpbExactKind::MESSAGE) : nullptr;
        if (container == nullptr)
        {
            ReportUnknown(node, level);
            return;
        }
        Test(node, *container->field);
    }

    void Container(const xmlNode &node, const OpenLevel &level)
    {
        const GpbExactField *found = Find(node, level, GpbExactKind::MESSAGE);
        if (found == nullptr)
        {
            found = Find(node, level, GpbExactKind::LEAF);
        }
        if (found == nullptr)
        {
            ReportUnknown(node, level);
            return;
        }
        Test(node, *found->field);
        Enter(node, *found->field, {level.type, level.layers + static_cast<std::uint32_t>(found->cases.size())});
    }

    GpbExactNamePlan names_;
};

} // namespace

std::unique_ptr<DocumentChecker> MakeLosslessChecker(const CheckRules &rules)
{
    return std::make_unique<LosslessChecker>(rules);
}

} // namespace gpbtool
