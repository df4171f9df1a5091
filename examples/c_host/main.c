/*
 * A host in C11: turns one XML instance document of a YANG module into a serialized message.
 *
 *     c_host MODULE_DIRECTORY MODULE DOCUMENT.xml OUTPUT.gpb
 *
 * MODULE.proto is taken from MODULE_DIRECTORY.
 */
#include <stdint.h>
#include <stdio.h>

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <gpb_templatelib/gpb_compiler_c.h>
#include <gpb_templatelib/gpb_host.h>
#include <gpb_templatelib/gpb_lib.h>

/* Names this host in the allocations that the library makes for it. */
#define MODULE_ID 1u

static uint32_t PrintError(uint32_t ulPrintHandle, uint32_t ulPrintArg, const char *pcTag, const char *pcText)
{
    (void)ulPrintHandle;
    (void)ulPrintArg;
    (void)pcTag;
    fprintf(stderr, "c_host: %s\n", pcText);
    return 0;
}

/* A context that reports failures only and finds modules in one directory, or null. */
static GpbLibContext *CreateContext(const char *moduleDirectory)
{
    char installPath[GPB_PATH_SIZE];
    int length = snprintf(installPath, sizeof(installPath), "%s/", moduleDirectory);
    if (length < 0 || (size_t)length >= sizeof(installPath))
    {
        fprintf(stderr, "c_host: the module directory's name is too long\n");
        return NULL;
    }
    GpbLibInitParam param = {0};
    param.uiModuleId = MODULE_ID;
    param.astPrint[GPB_LOG_ERROR].pfnPrint = PrintError;
    GpbLibContext *context = GPBLIB_Initial(&param);
    if (context != NULL && GPBLIB_PkgAddInstallPath(context, installPath) != 0)
    {
        GPBLIB_Uninitial(context);
        context = NULL;
    }
    return context;
}

/* Writes the whole output or leaves none; 0 on success. */
static int WriteFile(const char *path, const char *bytes, size_t length)
{
    FILE *file = fopen(path, "wb");
    if (file == NULL)
    {
        perror(path);
        return 1;
    }
    size_t written = fwrite(bytes, 1, length, file);
    if (fclose(file) != 0 || written != length)
    {
        perror(path);
        remove(path);
        return 1;
    }
    return 0;
}

/* The result belongs to the compiler, so it is written before the compiler goes. */
static int EncodeDocument(GpbLibContext *context, const char *module, xmlDoc *document, const char *outputPath)
{
    GpbXmlCompilerBase *compiler = GpbXmlCompiler_CreateCompiler(context, module);
    if (compiler == NULL)
    {
        return 1;
    }
    unsigned int length = 0;
    unsigned int error = 0;
    const char *bytes = GpbXmlCompiler_Encode(compiler, document, &length, &error);
    int result = 1;
    if (bytes == NULL)
    {
        fprintf(stderr, "c_host: the document cannot be encoded, code %u\n", error);
    }
    else
    {
        result = WriteFile(outputPath, bytes, length);
    }
    GpbXmlCompiler_Destory(compiler);
    return result;
}

int main(int argc, char **argv)
{
    if (argc != 5)
    {
        fprintf(stderr, "usage: c_host MODULE_DIRECTORY MODULE DOCUMENT.xml OUTPUT.gpb\n");
        return 2;
    }
    /* Entities stay unexpanded and the network stays out: documents come from elsewhere. */
    xmlDoc *document = xmlReadFile(argv[3], NULL, XML_PARSE_NONET);
    if (document == NULL)
    {
        return 1;
    }
    int result = 1;
    GpbLibContext *context = CreateContext(argv[1]);
    if (context != NULL)
    {
        result = EncodeDocument(context, argv[2], document, argv[4]);
    }
    GPBLIB_Uninitial(context);
    xmlFreeDoc(document);
    xmlCleanupParser();
    /* Everything that was allocated through the platform has been given back. */
    return GpbHost_PrintLive() == 0 ? result : 1;
}
