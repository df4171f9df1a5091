#include "template_file.h"

#include <algorithm>
#include <limits>
#include <vector>

#include "input_file.h"
#include "session.h"
#include "tool_error.h"

namespace gpbtool
{

namespace
{

ToolError NoTemplate(const std::string &source, const std::string &why)
{
    return {ExitCode::Input, source + ": no template: " + why,
            "give a file that \"gpbtool template build\" or the library's template dump wrote"};
}

const std::uint8_t *AsBytes(const std::string &text)
{
    return reinterpret_cast<const std::uint8_t *>(text.data());
}

/** Whether the first tag, whose low three bits are its wire type, is that of a container. */
bool BeginsWithContainer(const std::string &bytes)
{
    constexpr unsigned int kWireTypeMask = 7;
    constexpr unsigned int kContainerWireType = 6;
    return (static_cast<unsigned char>(bytes.front()) & kWireTypeMask) == kContainerWireType;
}

/** The bytes of a tree as the library writes them. */
std::vector<std::uint8_t> Written(ObjNode &tree)
{
    std::vector<std::uint8_t> bytes(GPBLIB_ObjTree_GetWriteLen(&tree));
    const auto room = static_cast<std::uint32_t>(bytes.size());
    bytes.resize(GPBLIB_ObjTree_Write(&tree, bytes.data(), room, GPB_OBJTREE_MODE_TEMPLATE, nullptr));
    return bytes;
}

} // namespace

OwnedTree ReadTemplate(const std::string &bytes, const std::string &source)
{
    if (bytes.empty())
    {
        throw NoTemplate(source, "it is empty");
    }
    if (bytes.size() > std::numeric_limits<std::uint32_t>::max())
    {
        throw NoTemplate(source, "it is larger than a template can be");
    }
    std::uint32_t consumed = 0;
    OwnedTree tree(
        GPBLIB_ObjTree_Read(AsBytes(bytes), static_cast<std::uint32_t>(bytes.size()), &consumed, kModuleId, nullptr));
    if (tree == nullptr)
    {
        throw NoTemplate(source, consumed == 0 || !BeginsWithContainer(bytes)
                                     ? "it does not begin with the root of one"
                                     : "unreadable at byte " + std::to_string(consumed) + " of " +
                                           std::to_string(bytes.size()) + ", or nested too deeply there");
    }
    if (consumed < bytes.size())
    {
        throw NoTemplate(source, std::to_string(bytes.size() - consumed) + " bytes follow its end at byte " +
                                     std::to_string(consumed));
    }
    const std::vector<std::uint8_t> written = Written(*tree);
    const auto [difference, other] =
        std::mismatch(AsBytes(bytes), AsBytes(bytes) + bytes.size(), written.begin(), written.end());
    if (difference != AsBytes(bytes) + bytes.size() || other != written.end())
    {
        throw NoTemplate(source, "cut off or damaged; byte " + std::to_string(difference - AsBytes(bytes)) +
                                     " does not fit the rest");
    }
    return tree;
}

TemplateFile::TemplateFile(const std::string &path)
    : bytes_(InputFile(path).ReadAll()), tree_(ReadTemplate(bytes_, path))
{
}

} // namespace gpbtool
