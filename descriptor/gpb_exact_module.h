// Names of modules.
#ifndef GPB_DESCRIPTOR_GPB_EXACT_MODULE_H
#define GPB_DESCRIPTOR_GPB_EXACT_MODULE_H

#include <string>
#include <string_view>

#include "core/gpb_protobuf_compat.h"

/// What stands between a module's name and that of its node.
constexpr char GPB_MODULE_NAME_END = ':';

/// The module that a proto file stands for, whose name it carries.
inline std::string GpbModuleOf(const google::protobuf::FileDescriptor &file)
{
    const std::string name(GpbPbName(file));
    return name.substr(0, name.rfind(".proto"));
}

/// The module that a namespace stands for: what it ends with. Published modules name theirs so (RFC 6020 section 14),
/// and vendors with addresses of the web do, too.
inline std::string_view GpbModuleOfNamespace(std::string_view space)
{
    const size_t separator = space.find_last_of(":/");
    return separator == std::string_view::npos ? space : space.substr(separator + 1);
}

/// A node's name and the module in front of it.
struct GpbQualifiedName
{
    std::string_view module;
    std::string_view name;
};

/// Takes a name apart; one without a prefix belongs to the module around it.
inline GpbQualifiedName GpbSplitName(std::string_view whole, std::string_view around)
{
    const size_t end = whole.find(GPB_MODULE_NAME_END);
    return end == std::string_view::npos ? GpbQualifiedName{around, whole}
                                         : GpbQualifiedName{whole.substr(0, end), whole.substr(end + 1)};
}

#endif
