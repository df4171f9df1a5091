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
     * @param module       name of the module
     * @throws YangError (Module) with libyang's messages; where libyang names a line, with file and line
     */
    Schema(const std::vector<std::string> &directories, const std::string &module);

    /** The loaded module; valid as long as this object lives. */
    const lys_module &Module() const { return *module_; }

private:
    struct ContextDeleter
    {
        void operator()(ly_ctx *context) const;
    };

    std::unique_ptr<ly_ctx, ContextDeleter> context_;
    const lys_module *module_ = nullptr;
};

} // namespace gpbyang

#endif
