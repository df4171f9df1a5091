// A host in C++17: turns one XML instance document of a YANG module into a serialized message, and prints the message
// as text.
//
//     cpp_host MODULE_DIRECTORY MODULE DOCUMENT.xml OUTPUT.gpb
//
// MODULE.proto is taken from MODULE_DIRECTORY. Unlike the host in C this one uses the compiler class, which also gives
// the text.
#include <cstdint>
#include <cstdio>
#include <exception>
#include <fstream>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <gpb_templatelib/gpb_compiler.h>
#include <gpb_templatelib/gpb_descriptor.h>
#include <gpb_templatelib/gpb_lib.h>

namespace
{

// Names this host in the allocations that the library makes for it.
constexpr uint32_t MODULE_ID = 2;

struct ContextDelete
{
    void operator()(GpbLibContext *context) const { GPBLIB_Uninitial(context); }
};
using Context = std::unique_ptr<GpbLibContext, ContextDelete>;

struct DocumentFree
{
    void operator()(xmlDoc *document) const { xmlFreeDoc(document); }
};
using Document = std::unique_ptr<xmlDoc, DocumentFree>;

uint32_t PrintError(uint32_t /*printHandle*/, uint32_t /*printArg*/, const char * /*tag*/, const char *text)
{
    std::cerr << "cpp_host: " << text << '\n';
    return 0;
}

Context CreateContext(const std::string &moduleDirectory)
{
    GpbLibInitParam param = {};
    param.uiModuleId = MODULE_ID;
    param.astPrint[GPB_LOG_ERROR].pfnPrint = PrintError;
    Context context(GPBLIB_Initial(&param));
    if (context == nullptr || GPBLIB_PkgAddInstallPath(context.get(), (moduleDirectory + "/").c_str()) != 0)
    {
        throw std::runtime_error("no library context");
    }
    return context;
}

Document ReadDocument(const char *path)
{
    // Entities stay unexpanded and the network stays out: documents come from elsewhere.
    Document document(xmlReadFile(path, nullptr, XML_PARSE_NONET));
    if (document == nullptr)
    {
        throw std::runtime_error(std::string(path) + " is not a readable XML document");
    }
    return document;
}

// Writes the whole output or leaves none.
void WriteFile(const std::string &path, const char *bytes, unsigned int length)
{
    std::ofstream file(path, std::ios::binary);
    file.write(bytes, length);
    file.close();
    if (!file)
    {
        (void)std::remove(path.c_str());
        throw std::runtime_error("cannot write " + path);
    }
}

void Run(const std::string &moduleDirectory, const char *module, const char *documentPath, const char *outputPath)
{
    const Context context = CreateContext(moduleDirectory);
    if (GPBLIB_ProtobufLoad(context.get(), module, 0) != 0)
    {
        throw std::runtime_error(std::string("cannot load module ") + module);
    }
    const Document document = ReadDocument(documentPath);
    GpbXmlCompiler compiler(Gpb_ModuleAdapt_GetFileHandle(context.get(), module), GPBLIB_GetImporter(context.get()),
                            context.get());
    const unsigned int error = compiler.Encode(document.get());
    if (error != GPB_COMPILER_OK)
    {
        throw std::runtime_error("the document cannot be encoded, code " + std::to_string(error));
    }
    unsigned int length = 0;
    const char *bytes = compiler.GetResult(&length);
    if (bytes == nullptr)
    {
        throw std::runtime_error("the message cannot be serialized");
    }
    WriteFile(outputPath, bytes, length);
    std::cout << compiler.GetEncodeDebugString();
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 5)
    {
        std::cerr << "usage: cpp_host MODULE_DIRECTORY MODULE DOCUMENT.xml OUTPUT.gpb\n";
        return 2;
    }
    int result = 0;
    try
    {
        Run(argv[1], argv[2], argv[3], argv[4]);
    }
    catch (const std::exception &error)
    {
        std::cerr << "cpp_host: " << error.what() << '\n';
        result = 1;
    }
    xmlCleanupParser();
    return result;
}
