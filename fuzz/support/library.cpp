#include "support/library.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <google/protobuf/descriptor.h>

#include "gpb_templatelib/gpb_descriptor.h"
#include "gpb_templatelib/gpb_extension.h"
#include "gpb_templatelib/gpb_host.h"
#include "support/guard.h"

namespace gpbfuzz
{

namespace
{

namespace fs = std::filesystem;

constexpr uint32_t kModuleId = 0x46555A5A;
constexpr const char *kModules[] = {"everything-three", "everything-two", "example-interfaces", "openconfig-telemetry"};

volatile uint32_t g_textsRead = 0;

/** Reads what it is given to its end, as a host that writes its log would. */
uint32_t print(uint32_t, uint32_t, const char *, const char *text)
{
    uint32_t sum = 0;
    for (; *text != '\0'; ++text)
    {
        sum += static_cast<unsigned char>(*text);
    }
    g_textsRead = g_textsRead + sum;
    return 0;
}

GpbLibContext *loadModules()
{
    GpbLibContext *context = newContext();
    require(context != nullptr, "no context");
    for (const char *directory : {GPB_FUZZ_MODULE_DIR "/", GPB_FUZZ_EXAMPLE_DIR "/"})
    {
        require(GPBLIB_PkgAddInstallPath(context, directory) == 0, "install path refused");
    }
    for (const char *module : kModules)
    {
        require(GPBLIB_ProtobufLoad(context, module, 0) == 0, module);
    }
    return context;
}

/** The process's own directory; removed when the process ends by itself. */
class WorkDirectory
{
public:
    WorkDirectory()
    {
        std::string path = (fs::temp_directory_path() / "gpb-fuzz-XXXXXX").string();
        require(mkdtemp(path.data()) != nullptr, "no work directory");
        m_path = path + "/";
        fs::create_directories(m_path + "reslink/protobuf");
    }
    ~WorkDirectory()
    {
        std::error_code ignored;
        fs::remove_all(m_path, ignored);
    }
    WorkDirectory(const WorkDirectory &) = delete;
    WorkDirectory &operator=(const WorkDirectory &) = delete;

    const std::string &path() const { return m_path; }

private:
    std::string m_path;
};

} // namespace

GpbLibContext *newContext()
{
    GpbLibInitParam param = {};
    param.uiModuleId = kModuleId;
    for (GpbLibPrintEntry &slot : param.astPrint)
    {
        slot.pfnPrint = print;
    }
    return GPBLIB_Initial(&param);
}

Lossless::Lossless(GpbLibContext *context) : m_context(context)
{
    require(GPBEXT_SetLossless(context, 1) == 0, "the lossless setting cannot be switched on");
}

Lossless::~Lossless()
{
    GPBEXT_SetLossless(m_context, 0);
}

GpbLibContext *library()
{
    static GpbLibContext *const context = loadModules();
    return context;
}

const char *moduleOf(const char *containerName)
{
    char name[GPB_NAME_SIZE] = {};
    if (std::string(containerName).copy(name, sizeof(name) - 1) != 0)
    {
        Gpb_util_ConverContainerName(name, 1);
    }
    for (const char *module : kModules)
    {
        if (fileOf(module)->FindMessageTypeByName(name) != nullptr)
        {
            return module;
        }
    }
    return kModules[0];
}

const GpbPbFileDescriptor *fileOf(const char *module)
{
    return Gpb_ModuleAdapt_GetFileHandle(library(), module);
}

const std::string &workPath()
{
    static const WorkDirectory directory;
    return directory.path();
}

void useOwnWorkPath(bool own)
{
    GpbHost_SetWorkPath(own ? workPath().c_str() : nullptr);
}

void writeProto(const std::string &module, const std::string &text)
{
    std::ofstream file(workPath() + "reslink/protobuf/" + module + ".proto", std::ios::binary);
    file << text;
    file.close();
    require(!file.fail(), "cannot write the proto file");
}

} // namespace gpbfuzz
