/* JSON documents: to a serialized message, and to the attributes of a message's leaves. */
#include <inttypes.h>
#include <stdio.h>
#include <stdlib.h>

#include <cjson/cJSON.h>
#include <gpb_templatelib/gpb_compiler_c.h>
#include <gpb_templatelib/platform/zmp.h>

#include "host.h"

/* Leaves that a record of attributes counts, and one entry more: the library may touch it. */
#define MAX_LEAVES 256

#define MAX_ATTRIBUTE_LINE 300

/* A whole file as a string, or null; freed with free. */
static char *ReadText(const char *path)
{
    FILE *file = fopen(path, "rb");
    long size = -1;
    char *text = NULL;
    if (file != NULL && fseek(file, 0, SEEK_END) == 0 && (size = ftell(file)) >= 0 && fseek(file, 0, SEEK_SET) == 0)
    {
        text = calloc(1, (size_t)size + 1);
    }
    if (text != NULL && fread(text, 1, (size_t)size, file) != (size_t)size)
    {
        free(text);
        text = NULL;
    }
    if (text == NULL)
    {
        perror(path);
    }
    if (file != NULL)
    {
        fclose(file);
    }
    return text;
}

/* The tree of a document that has one member, the top-level container, or null. */
static cJSON *ReadDocument(const char *path)
{
    char *text = ReadText(path);
    if (text == NULL)
    {
        return NULL;
    }
    cJSON *tree = cJSON_ParseWithOpts(text, NULL, 1);
    free(text);
    if (!cJSON_IsObject(tree) || cJSON_GetArraySize(tree) != 1)
    {
        fprintf(stderr, "c_host: %s is no JSON object with one member\n", path);
        cJSON_Delete(tree);
        tree = NULL;
    }
    return tree;
}

/* The item that the keys lead to, or null. */
static cJSON *FindItem(cJSON *container, const Job *job)
{
    cJSON *item = container;
    for (int i = 0; i < job->keyCount && item != NULL; ++i)
    {
        const char *key = job->keys[i];
        item = cJSON_IsArray(item) ? cJSON_GetArrayItem(item, atoi(key)) : cJSON_GetObjectItemCaseSensitive(item, key);
    }
    if (item == NULL)
    {
        fprintf(stderr, "c_host: there is no such item in the document\n");
    }
    return item;
}

static int EncodeItem(GpbXmlCompilerBase *compiler, cJSON *container, cJSON *item, const Job *job)
{
    unsigned int length = 0;
    const char *bytes = GpbXmlCompiler_EncodeJson(compiler, container, item, &length);
    return bytes == NULL ? 1 : WriteFile(job->outputPath, bytes, length);
}

/* One line for each leaf: its name and the code of its type. */
static int WriteAttributes(const GpbMdlAttr *record, const char *outputPath)
{
    static char text[MAX_LEAVES * MAX_ATTRIBUTE_LINE];
    size_t length = 0;
    for (int i = 0; i < record->ucCount; ++i)
    {
        int written =
            snprintf(text + length, sizeof(text) - length, "%s %" PRIu32 "\n", record->ppcName[i], record->puiType[i]);
        if (written < 0 || (size_t)written >= sizeof(text) - length)
        {
            fprintf(stderr, "c_host: the names of the leaves are too long\n");
            return 1;
        }
        length += (size_t)written;
    }
    return WriteFile(outputPath, text, length);
}

static int ListItem(GpbXmlCompilerBase *compiler, cJSON *container, cJSON *item, const Job *job)
{
    char *names[MAX_LEAVES] = {NULL};
    uint32_t types[MAX_LEAVES] = {0};
    GpbMdlAttr record = {names, types, 0, 0};
    if (GpbXmlCompiler_GetMdlAttr(job->context, compiler, container, item, &record) != 0)
    {
        return 1;
    }
    int result = WriteAttributes(&record, job->outputPath);
    /* The names are the host's. */
    for (int i = 0; i < record.ucCount; ++i)
    {
        ZMP_Free_F(names[i], __FILE__, __LINE__);
    }
    return result;
}

/* Reads the document, creates a compiler and uses it; the trees stay this host's. */
static int Run(const Job *job, int (*use)(GpbXmlCompilerBase *, cJSON *, cJSON *, const Job *))
{
    cJSON *tree = ReadDocument(job->documentPath);
    if (tree == NULL)
    {
        return 1;
    }
    int result = 1;
    cJSON *item = FindItem(tree->child, job);
    GpbXmlCompilerBase *compiler = item == NULL ? NULL : GpbJsonCompiler_CreateJsonCompiler(job->context, job->module);
    if (compiler != NULL)
    {
        result = use(compiler, tree->child, item, job);
    }
    GpbXmlCompiler_Destory(compiler);
    cJSON_Delete(tree);
    return result;
}

int EncodeJson(const Job *job)
{
    return Run(job, EncodeItem);
}

int ListAttributes(const Job *job)
{
    return Run(job, ListItem);
}
