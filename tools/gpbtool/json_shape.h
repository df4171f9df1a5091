/** What an XML document holds that JSON, as the library makes it, does not: beyond what fits no module. */
#ifndef GPBTOOL_JSON_SHAPE_H
#define GPBTOOL_JSON_SHAPE_H

#include <libxml/tree.h>

#include <map>
#include <set>
#include <string>
#include <utility>

namespace google::protobuf
{
class FieldDescriptor;
}

namespace gpbtool
{

/** The text of a document of which nothing got through. */
inline constexpr const char *kEmptyJson = "{}";

class JsonShape
{
public:
    JsonShape(bool numbers64, bool lossless) : numbers64_(numbers64), lossless_(lossless) {}

    /** What is lost of an element; an empty text for nothing. Elements come in the order of the document. */
    std::string Problem(const xmlNode &node, const google::protobuf::FieldDescriptor &field);

private:
    std::string StructureProblem(const xmlNode &node, const google::protobuf::FieldDescriptor &field);
    std::string NumberProblem(const std::string &text, const google::protobuf::FieldDescriptor &field) const;

    bool numbers64_;
    bool lossless_;
    std::map<const google::protobuf::FieldDescriptor *, const xmlNode *> firstParents_;
    std::set<std::pair<const xmlNode *, std::string>> members_;
    std::set<std::pair<const xmlNode *, const google::protobuf::FieldDescriptor *>> losslessMembers_;
};

} // namespace gpbtool

#endif
