/*
 * A host in C11: each mode is one way to use the compilers.
 *
 *     c_host xml      MODULE_DIRECTORY MODULE DOCUMENT.xml  OUTPUT.gpb
 *     c_host xml-json MODULE_DIRECTORY MODULE DOCUMENT.xml  OUTPUT.json
 *     c_host json     MODULE_DIRECTORY MODULE DOCUMENT.json OUTPUT.gpb [KEY...]
 *     c_host attrs    MODULE_DIRECTORY MODULE DOCUMENT.json OUTPUT.txt KEY...
 *
 * MODULE.proto is taken from MODULE_DIRECTORY. The keys lead from the top-level container to an item.
 */
#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include <gpb_templatelib/gpb_host.h>
#include <libxml/parser.h>

#include "host.h"

/* Names this host in the allocations that the library makes for it. */
#define MODULE_ID 1u

#define FIRST_KEY 6

typedef struct Mode
{
    const char *name;
    int (*run)(const Job *job);
    int leastKeys;
    int mostKeys;
} Mode;

static const Mode modes[] = {
    {"xml", EncodeXml, 0, 0},
    {"xml-json", ConvertXmlToJson, 0, 0},
    {"json", EncodeJson, 0, INT32_MAX},
    {"attrs", ListAttributes, 1, INT32_MAX},
};

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

int WriteFile(const char *path, const char *bytes, size_t length)
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

static const Mode *FindMode(int argc, char **argv)
{
    for (size_t i = 0; argc >= FIRST_KEY && i < sizeof(modes) / sizeof(modes[0]); ++i)
    {
        int keyCount = argc - FIRST_KEY;
        if (strcmp(argv[1], modes[i].name) == 0 && keyCount >= modes[i].leastKeys && keyCount <= modes[i].mostKeys)
        {
            return &modes[i];
        }
    }
    return NULL;
}

int main(int argc, char **argv)
{
    const Mode *mode = FindMode(argc, argv);
    if (mode == NULL)
    {
        fprintf(stderr, "usage: c_host xml|xml-json|json|attrs MODULE_DIRECTORY MODULE DOCUMENT OUTPUT [KEY...]\n");
        return 2;
    }
    Job job = {CreateContext(argv[2]), argv[3], argv[4], argv[5], argv + FIRST_KEY, argc - FIRST_KEY};
    int result = job.context == NULL ? 1 : mode->run(&job);
    GPBLIB_Uninitial(job.context);
    xmlCleanupParser();
    /* Everything that was allocated through the platform has been given back. */
    return GpbHost_PrintLive() == 0 ? result : 1;
}
