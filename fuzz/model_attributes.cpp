/** The model attributes of every item of any JSON document. */
#include <cstring>
#include <set>

#include "gpb_templatelib/gpb_compiler_c.h"
#include "platform/zmp.h"
#include "support/documents.h"
#include "support/guard.h"
#include "support/library.h"

namespace
{

constexpr size_t kMaxItems = 24;
constexpr size_t kMaxLeaves = 256;

void ask(const char *module, cJSON *root, cJSON *item)
{
    const gpbfuzz::Compiler compiler(GpbJsonCompiler_CreateJsonCompiler(gpbfuzz::library(), module));
    gpbfuzz::require(compiler != nullptr, "no compiler");
    char *names[kMaxLeaves] = {};
    uint32_t types[kMaxLeaves] = {};
    GpbMdlAttr attributes = {names, types, 0x5A, 0};
    const unsigned int result = GpbXmlCompiler_GetMdlAttr(gpbfuzz::library(), compiler.get(), root, item, &attributes);
    gpbfuzz::require(result == 0 || (result == 1 && attributes.ucCount == 0), "a failure left names behind");
    gpbfuzz::require(attributes.ucReserved == 0x5A, "the reserved byte was touched");
    const std::set<uint32_t> known = {7, 8, 13, 25, 54};
    for (uint8_t i = 0; i < attributes.ucCount; ++i)
    {
        gpbfuzz::require(names[i] != nullptr && std::strlen(names[i]) != 0, "a leaf without name");
        gpbfuzz::require(known.count(types[i]) == 1, "an unknown data type");
        ZMP_Free_F(names[i], "fuzz", 1);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    gpbfuzz::library();
    const gpbfuzz::InputGuard guard;
    const gpbfuzz::JsonDocument document = gpbfuzz::parseJson(data, size);
    if (document == nullptr)
    {
        return 0;
    }
    cJSON *const root = document->child == nullptr ? document.get() : document->child;
    const char *const module = gpbfuzz::moduleOf(root->string == nullptr ? "" : root->string);
    ask(module, root, root);
    for (cJSON *item : gpbfuzz::itemsOf(root, kMaxItems))
    {
        ask(module, root, item);
    }
    return 0;
}
