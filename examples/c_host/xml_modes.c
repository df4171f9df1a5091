/* XML documents: to a serialized message, and to JSON. */
#include <stdio.h>

#include <gpb_templatelib/gpb_compiler_c.h>
#include <libxml/parser.h>
#include <libxml/tree.h>

#include "host.h"

/* Both compilers that read XML are run alike; the result belongs to the compiler, so it is written before that goes. */
static int RunOnDocument(GpbXmlCompilerBase *compiler, xmlDoc *document, const char *outputPath)
{
    unsigned int length = 0;
    unsigned int error = 0;
    const char *bytes = GpbXmlCompiler_Encode(compiler, document, &length, &error);
    if (bytes == NULL)
    {
        fprintf(stderr, "c_host: the document cannot be encoded, code %u\n", error);
        return 1;
    }
    return WriteFile(outputPath, bytes, length);
}

/* Takes the compiler, which may be null. */
static int ReadAndRun(GpbXmlCompilerBase *compiler, const Job *job)
{
    int result = 1;
    if (compiler != NULL)
    {
        /* Entities stay unexpanded and the network stays out: documents come from elsewhere. */
        xmlDoc *document = xmlReadFile(job->documentPath, NULL, XML_PARSE_NONET);
        if (document != NULL)
        {
            result = RunOnDocument(compiler, document, job->outputPath);
            xmlFreeDoc(document);
        }
        GpbXmlCompiler_Destory(compiler);
    }
    return result;
}

int EncodeXml(const Job *job)
{
    return ReadAndRun(GpbXmlCompiler_CreateCompiler(job->context, job->module), job);
}

int ConvertXmlToJson(const Job *job)
{
    /* 0: integers of 64 bits become texts, which keep all their digits. */
    return ReadAndRun(GpbXmlCompiler_CreateJsonCompiler(job->context, job->module, 0), job);
}
