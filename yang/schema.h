/** A YANG module, read and checked by libyang together with everything that it imports and includes. */
#ifndef GPB_YANG_SCHEMA_H
#define GPB_YANG_SCHEMA_H

#include <memory>
#include <string>
#include <vector>

struct ly_ctx;
struct lys_module;

namespace gpbyang
{

class Schema
{
public:
    /**
     * Loads a module with all its features.
     *
     * @param directories  where MODULE.yang, MODULE@REVISION.yang and their imports are looked for, with what is below
     *                     them; the first one that has a module wins
     * @param module       name of the module, or NAME@REVISION
     * @param augmenting   modules of the same form that augment the module or deviate from it; their order does not
     * count
     * @throws YangError (Module) with libyang's messages; where libyang names a line, with file and line
     */
    Schema(const std::vector<std::string> &directories, const std::string &module,
           const std::vector<std::string> &augmenting = {});

    /** The loaded module; valid as long as this object lives. */
    const lys_module &Module() const { return *module_; }

    /** The augmenting modules, sorted by name; valid as long as this object lives. */
    const std::vector<const lys_module *> &Augmenting() const { return augmenting_; }

private:
    struct ContextDeleter
    {
        void operator()(ly_ctx *context) const;
    };

    std::unique_ptr<ly_ctx, ContextDeleter> context_;
    const lys_module *module_ = nullptr;
    std::vector<const lys_module *> augmenting_;
};

} // namespace gpbyang

#endif
