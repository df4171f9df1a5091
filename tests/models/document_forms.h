/** Documents of libyang in the forms that the library takes, and what it makes of them. */
#ifndef GPB_TESTS_MODELS_DOCUMENT_FORMS_H
#define GPB_TESTS_MODELS_DOCUMENT_FORMS_H

#include <cjson/cJSON.h>

#include <memory>
#include <string>

#include "gpb_templatelib/gpb_lib.h"

struct lyd_node;

namespace gpbtest
{

struct DataDeleter
{
    void operator()(lyd_node *data) const;
};
using Data = std::unique_ptr<lyd_node, DataDeleter>;

struct JsonDeleter
{
    void operator()(cJSON *item) const { cJSON_Delete(item); }
};
using Json = std::unique_ptr<cJSON, JsonDeleter>;

/** A top-level node without added defaults as XML, in which an empty container has a line feed. */
std::string toXml(const lyd_node &top);

/** A top-level node as JSON without prefixes in names, and with null for empty leaves. Null when libyang fails. */
Json toJson(const lyd_node &top);

/** What a compiler makes of a document; `made` is false when it makes nothing. */
struct Encoded
{
    bool made = false;
    std::string bytes;
};

Encoded encodeXml(GpbLibContext *context, const std::string &module, const std::string &xml);
Encoded encodeJson(GpbLibContext *context, const std::string &module, cJSON &document);

} // namespace gpbtest

#endif
