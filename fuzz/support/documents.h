/** Documents that free themselves. */
#ifndef GPB_FUZZ_SUPPORT_DOCUMENTS_H
#define GPB_FUZZ_SUPPORT_DOCUMENTS_H

#include <cjson/cJSON.h>
#include <cstddef>
#include <cstdint>
#include <libxml/parser.h>
#include <memory>
#include <string>
#include <vector>

#include "gpb_templatelib/gpb_compiler_c.h"

namespace gpbfuzz
{

struct DocumentFree
{
    void operator()(xmlDoc *document) const { xmlFreeDoc(document); }
    void operator()(cJSON *item) const { cJSON_Delete(item); }
    void operator()(GpbXmlCompilerBase *compiler) const { GpbXmlCompiler_Destory(compiler); }
};

using XmlDocument = std::unique_ptr<xmlDoc, DocumentFree>;
using JsonDocument = std::unique_ptr<cJSON, DocumentFree>;
using Compiler = std::unique_ptr<GpbXmlCompilerBase, DocumentFree>;

/** Parses quietly and without leaving the text; null when it is not well-formed. */
XmlDocument parseXml(const uint8_t *data, size_t size, int options = 0);
JsonDocument parseJson(const uint8_t *data, size_t size);

/** The name of the document's root element; empty without one. */
const char *rootName(xmlDoc *document);

/** Items of a JSON document in document order, the root not among them: at most `max`, spread over all of them. */
std::vector<cJSON *> itemsOf(cJSON *root, size_t max);

/** Ends the process unless the bytes are those of a message of the module's top-level container. */
void requireEncoding(const char *module, const char *containerName, const char *bytes, unsigned int length);

} // namespace gpbfuzz

#endif
