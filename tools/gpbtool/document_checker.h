/** What the searches for losses in XML documents share: the way through the document and what is said about it. */
#ifndef GPBTOOL_DOCUMENT_CHECKER_H
#define GPBTOOL_DOCUMENT_CHECKER_H

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "document_check.h"

namespace gpbtool
{

/** An open message: its type, and how many layers are open with it. */
struct OpenLevel
{
    const google::protobuf::Descriptor *type;
    std::uint32_t layers;
};

class DocumentChecker
{
public:
    explicit DocumentChecker(const CheckRules &rules) : rules_(rules) {}
    virtual ~DocumentChecker() = default;
    DocumentChecker(const DocumentChecker &) = delete;
    DocumentChecker &operator=(const DocumentChecker &) = delete;

    void Children(const xmlNode &parent, const OpenLevel &level);

    std::vector<Finding> findings;

protected:
    virtual void Element(xmlNode &node, const OpenLevel &level) = 0;

    /** "<name>: what" */
    void Report(const xmlNode &node, const std::string &what);
    void ReportUnknown(const xmlNode &node, const OpenLevel &level);
    void ReportEmpty(const xmlNode &node, const google::protobuf::FieldDescriptor &field);

    /** Tests an element that has a field in any form. */
    void Test(const xmlNode &node, const google::protobuf::FieldDescriptor &field);
    void TestValue(const xmlNode &node, const google::protobuf::FieldDescriptor &field, const char *value);
    /** Whether an element that holds more than a text may do so. */
    bool TestMessage(const xmlNode &node, const google::protobuf::FieldDescriptor &field);
    /** Goes on in an element whose message is that of a field, found in a level. */
    void Enter(const xmlNode &node, const google::protobuf::FieldDescriptor &field, const OpenLevel &level);

private:
    const CheckRules &rules_;
};

/** The search with the lossless setting. */
std::unique_ptr<DocumentChecker> MakeLosslessChecker(const CheckRules &rules);

} // namespace gpbtool

#endif
