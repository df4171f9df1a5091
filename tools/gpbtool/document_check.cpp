#include "document_check.h"

#include <google/protobuf/descriptor.h>
#include <libxml/xmlmemory.h>

#include "core/gpb_protobuf_compat.h"
#include "document_checker.h"
#include "gpb_templatelib/gpb_compiler.h"
#include "gpb_templatelib/gpb_descriptor.h"

namespace gpbtool
{

namespace
{

namespace pb = google::protobuf;

/** An element that carries this attribute with a value beginning with "1" is passed over with all it holds. */
constexpr const char *kIgnoredAttribute = "__tlmtIgnored";

struct XmlCharDeleter
{
    void operator()(xmlChar *text) const { xmlFree(text); }
};
using XmlText = std::unique_ptr<xmlChar, XmlCharDeleter>;

const char *Chars(const xmlChar *text)
{
    return reinterpret_cast<const char *>(text);
}

/** The search by the library's default. */
class UsualChecker : public DocumentChecker
{
public:
    using DocumentChecker::DocumentChecker;

private:
    void Element(xmlNode &node, const OpenLevel &level) override
    {
        if (node.children == nullptr)
        {
            Empty(node, level);
            return;
        }
        const XmlText ignored(xmlGetProp(&node, reinterpret_cast<const xmlChar *>(kIgnoredAttribute)));
        if (ignored != nullptr && ignored.get()[0] == '1')
        {
            return;
        }
        const bool loneText = node.children->next == nullptr && node.children->children == nullptr &&
                              node.children->type == XML_TEXT_NODE;
        if (!loneText)
        {
            Container(node, level);
            return;
        }
        const XmlText text(xmlNodeGetContent(node.children));
        const char *value = text != nullptr ? Chars(text.get()) : "";
        if (value[0] == '\n')
        {
            Presence(node, level);
        }
        else
        {
            Leaf(node, level, value);
        }
    }

    const pb::FieldDescriptor *Find(const xmlNode &node, OpenLevel &level, bool leaf)
    {
        const pb::FieldDescriptor *caseField = nullptr;
        const auto layer = static_cast<std::int32_t>(level.layers + 1);
        const pb::FieldDescriptor *field =
            leaf ? GPB_GetLeafFieldDescByNodeName(Chars(node.name), level.type, layer, &caseField)
                 : GPB_FindFieldDescByNodeName(level.type, Chars(node.name), layer, &caseField);
        if (field == nullptr)
        {
            ReportUnknown(node, level);
            return nullptr;
        }
        if (caseField != nullptr)
        {
            const pb::FieldDescriptor *ancestors[GPB_MAX_ANCESTOR_NUM] = {};
            const std::uint32_t count =
                GPB_GetDescriptorAncestors(caseField, level.type, ancestors, GPB_MAX_ANCESTOR_NUM);
            if (count == 0)
            {
                Report(node, "its case cannot be reached from message " + GpbPbFullName(*level.type));
                return nullptr;
            }
            level.layers += count;
            level.type = caseField->message_type();
        }
        Test(node, *field);
        return field;
    }

    void Empty(const xmlNode &node, OpenLevel level)
    {
        const pb::FieldDescriptor *field = Find(node, level, false);
        if (field == nullptr)
        {
            return;
        }
        if (field->type() == pb::FieldDescriptor::TYPE_MESSAGE)
        {
            Report(node, "an empty container or list entry needs a line break as its text to be encoded");
        }
        else if (field->type() != pb::FieldDescriptor::TYPE_BOOL)
        {
            ReportEmpty(node, *field);
        }
    }

    void Leaf(const xmlNode &node, OpenLevel level, const char *value)
    {
        const pb::FieldDescriptor *field = Find(node, level, true);
        if (field == nullptr)
        {
            return;
        }
        TestValue(node, *field, value);
    }

    void Presence(const xmlNode &node, OpenLevel level)
    {
        const pb::FieldDescriptor *field = Find(node, level, false);
        if (field != nullptr)
        {
            TestMessage(node, *field);
        }
    }

    void Container(const xmlNode &node, OpenLevel level)
    {
        const pb::FieldDescriptor *field = Find(node, level, false);
        if (field != nullptr)
        {
            Enter(node, *field, level);
        }
    }
};

} // namespace

const pb::Descriptor *RootMessage(const std::string &container, const pb::FileDescriptor &module)
{
    // Room for the two characters that a conversion can add.
    std::string name = container;
    name.resize(name.size() + 3, '\0');
    Gpb_util_ConverContainerName(name.data(), 1);
    name.erase(name.find('\0'));
    return module.pool()->FindMessageTypeByName(GpbPbPackage(module) + "." + name);
}

std::vector<Finding> CheckDocument(const xmlNode &root, const pb::Descriptor &type, const CheckRules &rules)
{
    const std::unique_ptr<DocumentChecker> checker =
        rules.lossless ? MakeLosslessChecker(rules) : std::make_unique<UsualChecker>(rules);
    checker->Children(root, {&type, 1});
    return checker->findings;
}

} // namespace gpbtool
