/**
 * @file
 * Library core: the context, diagnostics, search paths and the registry of proto files.
 *
 * Every service of the library runs against one context, which the host creates with GPBLIB_Initial and destroys
 * with GPBLIB_Uninitial. The context carries the module id under which all memory is allocated, the four print slots
 * through which every diagnostic leaves the library, the places where `.proto` files are looked for, the protobuf
 * importer that reads them, and the files and templates made from them.
 *
 * Threads: a context has no lock. All calls on one context are made by one thread at a time; different contexts are
 * independent.
 *
 * Errors: numeric results are 0 on success. No function throws, and none ends the process, with one exception:
 * protobuf's parser of `.proto` files may end it when memory runs out while a file is loaded.
 */
#ifndef GPB_TEMPLATELIB_GPB_LIB_H
#define GPB_TEMPLATELIB_GPB_LIB_H

#include <stdint.h>

#include "gpb_api.h"
#include "gpb_limits.h"
#include "platform/dll.h"
#include "platform/safe_string.h"
#include "platform/vec.h"

#ifdef __cplusplus
extern "C"
{
#endif

/** Print levels, the index into the print slots. */
#define GPB_LOG_ERROR 0U    /**< failure of a library operation */
#define GPB_LOG_PROGRESS 1U /**< progress, notable success, most lookup misses of the core */
#define GPB_LOG_SKIP 2U     /**< a document that does not match the descriptor */
#define GPB_LOG_DUMP 3U     /**< a successfully encoded message as text */

/**
 * Print callback of the host.
 *
 * @param ulPrintHandle  the context's handle, as given to GPBLIB_Initial
 * @param ulPrintArg     the slot's argument
 * @param pcTag          always the text "NULL"
 * @param pcText         the message, at most 1023 characters, valid during the call
 * @return ignored
 */
typedef uint32_t (*GpbLibPrintFunc)(uint32_t ulPrintHandle, uint32_t ulPrintArg, const char *pcTag, const char *pcText);

/** One print slot; a null callback closes its level. */
typedef struct GpbLibPrintEntry
{
    uint32_t ulPrintArg;      /**< handed to the callback */
    GpbLibPrintFunc pfnPrint; /**< null: nobody listens at this level */
} GpbLibPrintEntry;

/** What the host hands to GPBLIB_Initial; read during that call only. */
typedef struct GpbLibInitParam
{
    uint32_t uiModuleId;                       /**< module id under which the library allocates */
    uint32_t ulPrintHandle;                    /**< handed to every print callback */
    GpbLibPrintEntry astPrint[GPB_LOG_LEVELS]; /**< print slots, by level */
} GpbLibInitParam;

/** Record exchanged with the mapping callbacks; see gpb_template.h. */
typedef struct GpbCidFid GpbCidFid;

/**
 * Class-map callback: exactly one of the two keys is given.
 *
 * @return 0 on success, any other value is a failure that the library reports with the value
 */
typedef uint32_t (*GpbClassMapFunc)(uint32_t ulMapArg, const GpbCidFid *pstIndexKey, const GpbCidFid *pstDomKey,
                                    GpbCidFid *pstOut);

/** Field-name-map callback: a null leaf name asks for the id of the whole notification. Result as GpbClassMapFunc.
 */
typedef uint32_t (*GpbFieldNameMapFunc)(uint32_t ulMapArg, const char *pcLeafName, GpbCidFid *pstOut);

/** One package install path; a list node (see platform/dll.h) with its text in the same allocation. */
typedef struct GpbPkgPathNode
{
    DllNode *pstNext;   /**< next path, the list's head after the last */
    DllNode *pstPrev;   /**< previous path, the list's head before the first */
    uintptr_t ulHandle; /**< left to the platform */
    char *pcPath;       /**< the path as it was added; behind the node in its allocation */
} GpbPkgPathNode;

/** One `.proto` file that was loaded, or that failed to load. */
typedef struct GpbProtoFileInfo
{
    char acFileName[GPB_PATH_SIZE];         /**< MODULE.proto */
    const GpbPbFileDescriptor *pstFileDesc; /**< owned by the importer's pool; null when the import failed */
    uint8_t ucLoadState;                    /**< GPB_PROTO_LOADED or GPB_PROTO_LOAD_FAILED */
} GpbProtoFileInfo;

#define GPB_PROTO_LOADED 0U      /**< the file is in the importer's pool */
#define GPB_PROTO_LOAD_FAILED 1U /**< the import failed; it is not tried again */

/** The library context. Hosts pass it around; its fields are the library's. */
typedef struct GpbLibContext
{
    uint32_t uiModuleId;                       /**< module id under which the library allocates */
    GpbPbSourceTree *pstSourceTree;            /**< null until the first load */
    GpbPbImporter *pstImporter;                /**< null until the first load */
    VecVector *pstTemplateVec;                 /**< of GpbTemplateInfo */
    VecVector *pstProtoFileVec;                /**< of GpbProtoFileInfo */
    GpbClassMapFunc pfnClassMap;               /**< null until it is registered */
    GpbFieldNameMapFunc pfnFieldNameMap;       /**< null until it is registered */
    uint32_t ulMapArg;                         /**< handed to both mapping callbacks */
    GpbLibPrintEntry astPrint[GPB_LOG_LEVELS]; /**< print slots, by level */
    uint32_t ulPrintHandle;                    /**< handed to every print callback */
    char *pcPatchDir;                          /**< buffer of GPB_PATH_SIZE bytes; empty: no patch directory */
    DllHead stPkgPathList;                     /**< of GpbPkgPathNode */
} GpbLibContext;

/* ---- context and diagnostics ---- */

/**
 * Creates a context.
 *
 * @param pstParam  module id, print handle and print slots; copied
 * @return the context, released with GPBLIB_Uninitial; null when memory or a vector cannot be had, or for null
 *
 * Logs "GPBLIB_Initial begin" and "GPBLIB_Initial end" at level 1.
 */
GPB_API GpbLibContext *GPBLIB_Initial(const GpbLibInitParam *pstParam);

/** Destroys a context with all its proto files, templates and paths. Null does nothing. Logs nothing. */
GPB_API void GPBLIB_Uninitial(GpbLibContext *pstCtx);

/** The module id of a context, under which the library allocates; 0 for null. */
GPB_API uint32_t GPBLIB_GetMemHandle(const GpbLibContext *pstCtx);

/**
 * Formats a message and hands it to the print slot of its level; a closed slot costs one test.
 *
 * Messages are cut to 1023 characters. The function name and the line are not passed on to the host.
 *
 * @param pstCtx   context, not null
 * @param uiLevel  GPB_LOG_ERROR to GPB_LOG_DUMP
 */
GPB_API void GPBLIB_DebugPrint(const GpbLibContext *pstCtx, uint32_t uiLevel, const char *pcFunction, uint32_t uiLine,
                               const char *pcFormat, ...) GPB_PRINTF_LIKE(5, 6);

/** Registers the class-map callback and clears the field-name-map callback. A null context does nothing. */
GPB_API void GPBLIB_RegisterClassMapFunc(GpbLibContext *pstCtx, uint32_t ulMapArg, GpbClassMapFunc pfnClassMap);

/** Registers the field-name-map callback and clears the class-map callback. A null context does nothing. */
GPB_API void GPBLIB_RegisterFieldNameMapFunc(GpbLibContext *pstCtx, uint32_t ulMapArg,
                                             GpbFieldNameMapFunc pfnFieldNameMap);

/** Overwrites every `cFrom` of a text with `cTo`, in place. Returns 0, or 1 for a null text. */
GPB_API uint32_t GPBLIB_ChrReplace(char *pcText, char cFrom, char cTo);

/** The name under which a field appears in templates: the given name itself. The context is not used. */
GPB_API const char *GPBLIB_GetJsonFieldName(const GpbLibContext *pstCtx, const char *pcName);

/* ---- search paths, source tree and importer ---- */

/**
 * Sets the patch directory, a directory below the system work path that is searched before "reslink/protobuf".
 *
 * The directory is used as a prefix and must end with "/". Files are found there at once; the importer follows when
 * its source tree is built next, which is at the first load after creation or after GPBLIB_UnloadProtoFileAll.
 *
 * @param pcDir  at most 255 characters; null clears it
 * @return 0 on success and for a null context; the assertion hook's result when the text is too long; non-zero
 *         when a null text's fill fails
 */
GPB_API uint32_t GPBLIB_SetPatchDir(GpbLibContext *pstCtx, const char *pcDir);

/** The patch directory buffer of a context (GPB_PATH_SIZE bytes), or null for a null context. */
GPB_API char *GPBLIB_GetPatchDir(GpbLibContext *pstCtx);

/** Makes the package path list empty without freeing anything; part of GPBLIB_Initial. Returns 0. */
GPB_API uint32_t GPBLIB_InitPkgSearchPath(GpbLibContext *pstCtx);

/** Removes and frees every package install path. */
GPB_API void GPBLIB_DeInitPkgSearchPath(GpbLibContext *pstCtx);

/**
 * Adds a package install path, searched after those added before and ahead of the patch directory.
 *
 * The path is used as a prefix and must end with "/".
 *
 * @return 0 when added, and also, with a level-1 message, when it was there already or is no existing directory;
 *         1 when memory cannot be had
 */
GPB_API uint32_t GPBLIB_PkgAddInstallPath(GpbLibContext *pstCtx, const char *pcPath);

/** Removes a package install path; a path that is not there is logged at level 1. Returns 0. */
GPB_API uint32_t GPBLIB_PkgDelUnInstallPath(GpbLibContext *pstCtx, const char *pcPath);

/** Compares a path text with a GpbPkgPathNode; 0 when equal. */
GPB_API int GPBLIB_PkgDllCompare(const void *pvKey, const void *pvNode);

/**
 * Finds the first package install path that holds MODULE.proto.
 *
 * @param pcOut  GPB_PATH_SIZE bytes; receives the install path, not the file name
 * @return 0 found, 1 not found
 */
GPB_API uint32_t GPBLIB_GetProtoAppPath(GpbLibContext *pstCtx, const char *pcModuleName, char *pcOut);

/**
 * Finds MODULE.proto in the patch directory or in "reslink/protobuf" of the system work path.
 *
 * @param pcOut  GPB_PATH_SIZE bytes; receives the directory
 * @return 0 found; 1 not found or no work path, with a level-1 message
 */
GPB_API uint32_t GPBLIB_GetProtoFilePath(GpbLibContext *pstCtx, char *pcOut, const char *pcModuleName);

/** Creates the source tree (with its mappings) and the importer where they are missing. Returns 0; 1 for null and
 * without memory, a tree without all of its mappings being deleted again. */
GPB_API uint32_t GPBLIB_ProtoTreeInitial_(GpbLibContext *pstCtx);

/** Maps every search place into the source tree, in search order. */
GPB_API void GPBLIB_AddDiskTreeMapPath(GpbLibContext *pstCtx);

/** Maps the package install paths into the source tree, in the order in which they were added. */
GPB_API void GPBLIB_AddAppPathToDiskTree(GpbLibContext *pstCtx);

/** Deletes the importer, then the source tree. */
GPB_API void GPBLIB_ProtoTreeUninitial_(GpbLibContext *pstCtx);

/** The context's importer, null until the first load; owned by the context. */
GPB_API GpbPbImporter *GPBLIB_GetImporter(const GpbLibContext *pstCtx);

/* ---- registry of proto files ---- */

/**
 * Loads MODULE.proto from the first place that holds it, unless it is loaded already.
 *
 * A failed import is remembered: later loads fail at once until the file is unloaded. A load that fails for want of
 * memory is not. Load while memory is to be had: protobuf's parser of `.proto` files, which runs here, is the one
 * place where lack of memory can end the process.
 *
 * @param uiArg  passed through, not read
 * @return 0 loaded (now or before), 1 not found or failed
 */
GPB_API uint32_t GPBLIB_ProtobufLoad(GpbLibContext *pstCtx, const char *pcModuleName, uint32_t uiArg);

/** As GPBLIB_ProtobufLoad, for a file whose directory is known; the importer still finds it by its own search. */
GPB_API uint32_t GPBLIB_LoadProtoFile(GpbLibContext *pstCtx, const char *pcModuleName, uint32_t uiArg,
                                      const char *pcDirectory);

/** Names a record, sets its load state and stores it. 0 stored, 1 not stored (the record stays the caller's). */
GPB_API uint32_t GPBLIB_AddProtoFile_(GpbLibContext *pstCtx, GpbProtoFileInfo *pstInfo, const char *pcFileName,
                                      uint8_t ucState);

/** The record of a file name MODULE.proto, or null; owned by the context. Note: name first, context second. */
GPB_API GpbProtoFileInfo *GPBLIB_GetProtoFdByFileName(const char *pcFileName, const GpbLibContext *pstCtx);

/**
 * Forgets the record of MODULE.proto, so that it can be loaded again.
 *
 * The importer keeps what it has read, and templates stay: a file that changed on disk is read anew only after
 * GPBLIB_UnloadProtoFileAll. A file that failed to load is tried again at the next load.
 */
GPB_API void GPBLIB_UnloadProtoFile(GpbLibContext *pstCtx, const char *pcModuleName);

/** Frees all records and templates, the importer and the source tree. No compiler may be in use. `uiArg` is not
 * read. */
GPB_API void GPBLIB_UnloadProtoFileAll(GpbLibContext *pstCtx, uint32_t uiArg);

/**
 * Copies all records, failed ones included, into a new array.
 *
 * @param ppstInfo  out: the array, freed by the caller with ZMP_Free_F; untouched when there are no records
 * @param puiCount  out: number of records
 * @return 0 on success, 1 when the context has no registry or memory cannot be had
 */
GPB_API uint32_t GPBLIB_GetAllProtoFileInfo(GpbLibContext *pstCtx, GpbProtoFileInfo **ppstInfo, uint32_t *puiCount);

#ifdef __cplusplus
}
#endif

#endif
