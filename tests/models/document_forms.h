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

/** A top-level node without added defaults, as libyang prints it. */
std::string toXml(const lyd_node &top);

/** The same with a line feed in each empty container and list entry, which tells them from empty leaves. */
std::string toXmlWithLineFeeds(const lyd_node &top);

/** A top-level container or entry without added defaults, as libyang prints it. Null when it fails. */
Json toJson(const lyd_node &top);

/** The same without prefixes in names, and with null for empty leaves. */
Json toJsonWithoutPrefixes(const lyd_node &top);

/** What a compiler makes of a document; `made` is false when it makes nothing. */
struct Encoded
{
    bool made = false;
    std::string bytes;
};

Encoded encodeXml(GpbLibContext *context, const std::string &module, const std::string &xml);
Encoded encodeJson(GpbLibContext *context, const std::string &module, cJSON &document);

/** The JSON document that the library makes of an XML one; null when it makes none. */
Json convertXml(GpbLibContext *context, const std::string &module, const std::string &xml);

} // namespace gpbtest

#endif
