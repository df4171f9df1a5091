/**
 * @file
 * C interface of the document compilers.
 *
 * A host creates a compiler for a YANG module by name, runs it once, copies the result and destroys the compiler:
 *
 *     GpbXmlCompilerBase *compiler = GpbXmlCompiler_CreateCompiler(context, "openconfig-telemetry");
 *     unsigned int length = 0, error = 0;
 *     const char *bytes = GpbXmlCompiler_Encode(compiler, document, &length, &error);
 *     ...
 *     GpbXmlCompiler_Destory(compiler);
 *
 * Results belong to the compiler and stay valid until it is destroyed. A compiler is used by one thread at a time;
 * compilers of one context may be made, used and destroyed by different threads while their modules stay loaded.
 * The compiler pointer is not checked for null, except by GpbXmlCompiler_Destory.
 */
#ifndef GPB_TEMPLATELIB_GPB_COMPILER_C_H
#define GPB_TEMPLATELIB_GPB_COMPILER_C_H

#include <stdint.h>

#include "gpb_api.h"

#ifdef __cplusplus
class GpbXmlCompilerBase;
extern "C"
{
#else
typedef struct GpbXmlCompilerBase GpbXmlCompilerBase;
#endif

/** Names and data types of the leaves of a message. The host allocates the two arrays, one entry per leaf. */
typedef struct GpbMdlAttr
{
    char **ppcName;     /**< out: names, each freed by the host with ZMP_Free_F */
    uint32_t *puiType;  /**< out: data-type codes GPB_MDL_TYPE_ */
    uint8_t ucReserved; /**< not touched */
    uint8_t ucCount;    /**< out: number of entries; messages of more than 255 leaves are not supported */
} GpbMdlAttr;

/** Data-type codes of leaves. */
#define GPB_MDL_TYPE_INT 7U     /**< signed, 32 or 64 bits */
#define GPB_MDL_TYPE_UINT 8U    /**< unsigned, 32 or 64 bits */
#define GPB_MDL_TYPE_BOOL 13U   /**< boolean */
#define GPB_MDL_TYPE_STRING 25U /**< string, bytes, enumeration */
#define GPB_MDL_TYPE_FLOAT 54U  /**< float; a double has no code and is left out */

/**
 * Creates an XML to GPB compiler; the module's proto file is loaded if it is not yet.
 *
 * @param pvLibHandle   library context (GpbLibContext), which must outlive the compiler
 * @param pcModuleName  YANG module name; with ".proto" at most 63 characters
 * @return the compiler, or null with one level-0 message; without memory and for a null context null without a
 *         message
 */
GPB_API GpbXmlCompilerBase *GpbXmlCompiler_CreateCompiler(void *pvLibHandle, const char *pcModuleName);

/**
 * Creates an XML to JSON compiler; see GpbXmlCompiler_CreateCompiler.
 *
 * @param ucFlag  1: 64-bit integers become JSON numbers, of which 15 digits are kept for sure; else JSON strings
 */
GPB_API GpbXmlCompilerBase *GpbXmlCompiler_CreateJsonCompiler(void *pvLibHandle, const char *pcModuleName,
                                                              unsigned char ucFlag);

/** Creates a JSON to GPB compiler; see GpbXmlCompiler_CreateCompiler. */
GPB_API GpbXmlCompilerBase *GpbJsonCompiler_CreateJsonCompiler(void *pvLibHandle, const char *pcModuleName);

/**
 * Encodes an XML document.
 *
 * A compiler that does not read XML reports code 0 and has no result.
 *
 * @param puiLen      out: bytes of the result
 * @param puiErrCode  out: 0, or the compiler's error code
 * @return the serialized message (protobuf wire format) or the JSON text, or null: an encode failure with its code
 * in
 *         `*puiErrCode`, a message that lacks a required field (code 0, length 0), or a null out argument (nothing
 * is touched then)
 */
GPB_API const char *GpbXmlCompiler_Encode(GpbXmlCompilerBase *pstCompiler, struct _xmlDoc *pstDoc, unsigned int *puiLen,
                                          unsigned int *puiErrCode);

/**
 * Encodes a JSON tree, or the part of it that begins at an item.
 *
 * A compiler that does not read JSON has no result. The trees stay the host's.
 *
 * @param pstRoot  the top-level container, with its name as key
 * @param pstItem  `pstRoot`, or an item below it: the item and its later siblings are encoded, and the result is
 *                 the message that the item stands for
 * @param puiLen   out: bytes of the result
 * @return the serialized message (protobuf wire format); null for a null tree, for an encode failure (logged with
 *         its code at level 0), and for a message that lacks a required field
 */
GPB_API const char *GpbXmlCompiler_EncodeJson(GpbXmlCompilerBase *pstCompiler, struct cJSON *pstRoot,
                                              struct cJSON *pstItem, unsigned int *puiLen);

/**
 * Tells names and data types of the leaves of the message that an item of a JSON tree stands for.
 *
 * A compiler that does not read JSON touches nothing and reports success.
 *
 * @param pvLibHandle  library context under whose module id the names are allocated
 * @param pstItem      an item below `pstRoot`, with a key: a container, a list, or a leaf-list for the message that
 *                     holds it
 * @param pvMdlAttr    GpbMdlAttr; on failure nothing is left allocated in it
 * @return 0 success, 1 failure (logged with the compiler's code at level 0, except for null items)
 */
GPB_API unsigned int GpbXmlCompiler_GetMdlAttr(const void *pvLibHandle, GpbXmlCompilerBase *pstCompiler,
                                               struct cJSON *pstRoot, struct cJSON *pstItem, void *pvMdlAttr);

/** Destroys a compiler with its messages and results. Null does nothing. */
GPB_API void GpbXmlCompiler_Destory(GpbXmlCompilerBase *pstCompiler);

#ifdef __cplusplus
}
#endif

#endif
