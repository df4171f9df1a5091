/** Any JSON document, whole and from each of its items, by the compiler of the module that knows its root, in
 * both settings. */
#include "gpb_templatelib/gpb_compiler_c.h"
#include "support/documents.h"
#include "support/guard.h"
#include "support/library.h"
#include "support/twin.h"

namespace
{

constexpr size_t kMaxSubTrees = 12;

void encodeWhole(const char *module, cJSON *root)
{
    const gpbfuzz::Compiler compiler(GpbJsonCompiler_CreateJsonCompiler(gpbfuzz::library(), module));
    gpbfuzz::require(compiler != nullptr, "no compiler");
    unsigned int length = 0;
    const char *const bytes = GpbXmlCompiler_EncodeJson(compiler.get(), root, root, &length);
    gpbfuzz::require(bytes != nullptr || length == 0, "a length without bytes");
    gpbfuzz::requireSameJson(gpbfuzz::library(), module, root, root);
}

/** Every sub-tree with one compiler, so that each result replaces another one, and each with one of its own. */
void encodeSubTrees(const char *module, cJSON *root)
{
    const gpbfuzz::Compiler shared(GpbJsonCompiler_CreateJsonCompiler(gpbfuzz::library(), module));
    for (cJSON *item : gpbfuzz::itemsOf(root, kMaxSubTrees))
    {
        const gpbfuzz::Compiler own(GpbJsonCompiler_CreateJsonCompiler(gpbfuzz::library(), module));
        unsigned int ownLength = 0;
        unsigned int sharedLength = 0;
        const char *const ownBytes = GpbXmlCompiler_EncodeJson(own.get(), root, item, &ownLength);
        const char *const sharedBytes = GpbXmlCompiler_EncodeJson(shared.get(), root, item, &sharedLength);
        gpbfuzz::requireSameJson(gpbfuzz::library(), module, root, item);
        // The entries of a map come in any order.
        gpbfuzz::require((ownBytes == nullptr) == (sharedBytes == nullptr) && ownLength == sharedLength,
                         "an earlier encode changes the result");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    gpbfuzz::library();
    // An enum value that is too long raises an assertion.
    const gpbfuzz::InputGuard guard(true);
    const gpbfuzz::JsonDocument document = gpbfuzz::parseJson(data, size);
    if (document == nullptr)
    {
        return 0;
    }
    cJSON *const root = document->child == nullptr ? document.get() : document->child;
    const char *const module = gpbfuzz::moduleOf(root->string == nullptr ? "" : root->string);
    encodeWhole(module, root);
    encodeSubTrees(module, root);
    const gpbfuzz::Lossless lossless(gpbfuzz::library());
    encodeWhole(module, root);
    encodeSubTrees(module, root);
    return 0;
}
