// A walk written by hand for the telemetry module, from an XML document to JSON text by way of a cJSON tree.
#ifndef GPB_BENCH_SUPPORT_JSON_WALK_H
#define GPB_BENCH_SUPPORT_JSON_WALK_H

#include <memory>

#include <cjson/cJSON.h>
#include <libxml/tree.h>

namespace gpbbench
{

struct JsonTextFree
{
    void operator()(char *text) const { cJSON_free(text); }
};
using JsonText = std::unique_ptr<char, JsonTextFree>;

/// The JSON of a telemetry document, printed by cJSON: numbers of 32 bits and less as numbers, wider ones as texts,
/// and all entries of a list in the array that its first entry made.
JsonText WriteTelemetryJson(const xmlNode *root);

} // namespace gpbbench

#endif
