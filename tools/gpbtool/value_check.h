/** Whether a leaf's text is a value of its field: the library converts without a test. */
#ifndef GPBTOOL_VALUE_CHECK_H
#define GPBTOOL_VALUE_CHECK_H

#include <string>

namespace google::protobuf
{
class FieldDescriptor;
}

namespace gpbtool
{

/** What is wrong with the text, or an empty text. */
std::string ValueProblem(const google::protobuf::FieldDescriptor &field, const std::string &value);

} // namespace gpbtool

#endif
