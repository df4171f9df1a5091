/* What the files of this host share. */
#ifndef C_HOST_HOST_H
#define C_HOST_HOST_H

#include <stddef.h>

#include <gpb_templatelib/gpb_lib.h>

/* What to do with which document: the command line. */
typedef struct Job
{
    GpbLibContext *context;
    const char *module;
    const char *documentPath;
    const char *outputPath;
    char **keys; /* the way from the top-level container to an item: names, and numbers of list entries */
    int keyCount;
} Job;

/* The modes; 0 on success. Failures have been reported. */
int EncodeXml(const Job *job);
int ConvertXmlToJson(const Job *job);
int EncodeJson(const Job *job);
int ListAttributes(const Job *job);

/* Writes the whole output or leaves none; 0 on success. */
int WriteFile(const char *path, const char *bytes, size_t length);

#endif
