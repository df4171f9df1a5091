/**
 * C interface of the document compilers.
 *
 * A host creates a compiler for a YANG module by name, runs it once, copies the result and destroys the compiler:
 *
 *     void *compiler = GpbXmlCompiler_CreateCompiler(context, "openconfig-telemetry");
 *     unsigned int length = 0, error = 0;
 *     const char *bytes = GpbXmlCompiler_Encode(compiler, document, &length, &error);
 *     ...
 *     GpbXmlCompiler_Destory(compiler);
 *
 * Results belong to the compiler and stay valid until it is destroyed. A compiler is used by one thread at a time;
 * the compilers of one context may be used by different threads once their modules are loaded and compilers created.
 * The compiler pointer is not checked for null, except by GpbXmlCompiler_Destory.
 */
#ifndef GPB_TEMPLATELIB_GPB_COMPILER_C_H
#define GPB_TEMPLATELIB_GPB_COMPILER_C_H

#include "gpb_api.h"

#ifdef __cplusplus
class GpbXmlCompilerBase;
extern "C"
{
#else
typedef struct GpbXmlCompilerBase GpbXmlCompilerBase;
#endif

    /**
     * Creates an XML to GPB compiler; the module's proto file is loaded if it is not yet.
     *
     * @param pvLibHandle   library context (GpbLibContext), which must outlive the compiler
     * @param pcModuleName  YANG module name; with ".proto" at most 63 characters
     * @return the compiler, or null with one level-0 message
     */
    GPB_API GpbXmlCompilerBase *GpbXmlCompiler_CreateCompiler(void *pvLibHandle, const char *pcModuleName);

    /**
     * Encodes an XML document.
     *
     * @param puiLen      out: bytes of the result
     * @param puiErrCode  out: 0, or the compiler's error code
     * @return the serialized message (protobuf wire format), or null: an encode failure with its code in
     *         `*puiErrCode`, a message that lacks a required field (code 0, length 0), or a null out argument (nothing
     * is touched then)
     */
    GPB_API const char *GpbXmlCompiler_Encode(GpbXmlCompilerBase *pstCompiler, struct _xmlDoc *pstDoc,
                                              unsigned int *puiLen, unsigned int *puiErrCode);

    /** Destroys a compiler with its messages and results. Null does nothing. */
    GPB_API void GpbXmlCompiler_Destory(GpbXmlCompilerBase *pstCompiler);

#ifdef __cplusplus
}
#endif

#endif
