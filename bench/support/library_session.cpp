#include "support/library_session.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include <google/protobuf/compiler/importer.h>

#include "gpb_templatelib/gpb_host.h"

namespace gpbbench
{

namespace
{

constexpr uint32_t MODULE_ID = 1;

std::string MakeTemporaryDirectory()
{
    std::string path = (std::filesystem::temp_directory_path() / "gpb-bench-XXXXXX").string();
    if (mkdtemp(path.data()) == nullptr)
    {
        throw std::runtime_error("cannot make a temporary directory");
    }
    return path + "/";
}

} // namespace

LibrarySession::LibrarySession() : directory_(MakeTemporaryDirectory())
{
    // The memory that the peers use is filled by nobody either.
    GpbHost_FillMemory(0);
    GpbLibInitParam param = {};
    param.uiModuleId = MODULE_ID;
    context_ = GPBLIB_Initial(&param);
    if (context_ == nullptr || GPBLIB_PkgAddInstallPath(context_, directory_.c_str()) != 0)
    {
        throw std::runtime_error("cannot make a library context");
    }
}

LibrarySession::~LibrarySession()
{
    GPBLIB_Uninitial(context_);
    std::error_code ignored;
    std::filesystem::remove_all(directory_, ignored);
}

void LibrarySession::AddModule(const std::string &name, const std::string &protoText)
{
    std::ofstream file(FileOf(name));
    file << protoText;
    file.close();
    if (!file || GPBLIB_ProtobufLoad(context_, name.c_str(), 0) != 0)
    {
        throw std::runtime_error("cannot load module " + name);
    }
}

const google::protobuf::DescriptorPool *LibrarySession::Pool() const
{
    return GPBLIB_GetImporter(context_)->pool();
}

} // namespace gpbbench
