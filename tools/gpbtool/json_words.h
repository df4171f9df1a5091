/** What is said of members of JSON documents, and what is wrong with their values. */
#ifndef GPBTOOL_JSON_WORDS_H
#define GPBTOOL_JSON_WORDS_H

#include <cjson/cJSON.h>

#include <string>

namespace google::protobuf
{
class FieldDescriptor;
}

namespace gpbtool
{

bool IsJsonContainer(const cJSON &item);

/** "an object" */
const char *JsonKindOf(const cJSON &item);

/** "a leaf-list of type string" */
std::string JsonWanted(const google::protobuf::FieldDescriptor &field);

/** "\"name\": " */
std::string JsonQuoted(const cJSON &item);

/** What is wrong with a text, a number or a truth value for a leaf; an empty text for nothing. */
std::string JsonScalarProblem(const google::protobuf::FieldDescriptor &field, const cJSON &item, bool lossless);

} // namespace gpbtool

#endif
