/**
 * @file
 * GPB templates: which protobuf field carries which field of a management class.
 *
 * A host numbers its management classes and their fields; a `.proto` file numbers messages and fields of its own. A
 * template ties the two together for one class. The host hands over its YANG tree (GpbYangNode, GpbYangLeaf), from a
 * top-level container down to the node that stands for the class. The library finds the matching messages in the loaded
 * proto file, asks the host's mapping callback for class ids and field ids, and builds an object tree (gpb_objtree.h)
 * that mirrors the path: the ancestors with their key leaves, the class's own node with all its leaves and cases. The
 * context keeps it under the class id.
 *
 * With a class-map callback the templates describe configuration classes, with a field-name-map callback
 * notifications, and with neither the YANG tree's own ids are used.
 *
 * Results: 0 on success, 1 on failure, unless said otherwise; null for what is not found or cannot be made. Null
 * arguments are failures. Failures and progress are logged, at levels 0 and 1.
 *
 * Threads: as for the context. The depth of recursion is that of the choices and cases of the host's YANG tree.
 */
#ifndef GPB_TEMPLATELIB_GPB_TEMPLATE_H
#define GPB_TEMPLATELIB_GPB_TEMPLATE_H

#include <stdint.h>

#include "gpb_api.h"
#include "gpb_lib.h"
#include "gpb_limits.h"
#include "gpb_objtree.h"
#include "platform/vec.h"

#ifdef __cplusplus
extern "C"
{
#endif

/** Kinds of YANG nodes; any other value is an ordinary container or list. */
#define GPB_YANG_CHOICE 1U /**< transparent: its children count as children of its parent */
#define GPB_YANG_CASE 2U   /**< its protobuf name is the parent's name, "_" and its own */

/** What GPBLIB_CheckYangLeafInProtobuf returns for a leaf that is not in the message. */
#define GPB_YANG_LEAF_NOT_IN_MESSAGE 2U

/** One stored template; owned by the context, as is its tree, which is null when its root could not be made. */
typedef struct GpbTemplateInfo
{
    uint32_t uiClassId; /**< class as the host's data model numbers it */
    ObjTree pstObjTree; /**< the template; null when its root could not be made */
} GpbTemplateInfo;

/** The record exchanged with the mapping callbacks; zeroed before the library fills and passes it. */
struct GpbCidFid
{
    uint32_t uiClassId;     /**< class as the host's data model numbers it */
    uint8_t ucFieldId;      /**< field in that class */
    uint8_t ucEqual;        /**< set by the callback: 1 the mapping is an equality, 0 a choice among several */
    uint8_t aucReserved[2]; /**< zero */
};

/** A node of the host's YANG tree; read only. */
typedef struct GpbYangNode
{
    struct GpbYangNode *pstParent;      /**< null at the top */
    struct GpbYangNode *pstFirstChild;  /**< null without children */
    struct GpbYangNode *pstNextSibling; /**< null at the last */
    const char *pcName;                 /**< YANG name */
    uint32_t uiClassId;                 /**< class id as the host's data model numbers it */
    VecVector *pstLeafVec;              /**< of GpbYangLeaf; null without leaves */
    uint8_t ucSkip;                     /**< 1: no message of its own, passed over on a path */
    uint8_t ucNodeKind;                 /**< GPB_YANG_CHOICE, GPB_YANG_CASE, or ordinary */
} GpbYangNode;

/** A leaf of a YANG node; read only. */
typedef struct GpbYangLeaf
{
    const char *pcName;    /**< YANG name */
    uint32_t uiIsKey;      /**< non-zero for a key leaf */
    uint32_t uiFieldId;    /**< field id in the host's class; 0: not in templates, except in notifications */
    uint32_t uiMapFieldId; /**< field id for index and interface-name conversions; 0: uiFieldId */
} GpbYangLeaf;

/** What the leaves of a node are filled into. */
typedef struct GpbLeafFill
{
    const GpbPbDescriptor *pstMessage; /**< message of the node */
    uint32_t uiUnused1;                /**< not read */
    ObjTree pstTree;                   /**< the template */
    ObjNode *pstObjNode;               /**< object node of the node, parent of its leaves' nodes */
    uint32_t uiUnused2;                /**< not read */
    uint32_t uiAllLeaves;              /**< 1 for the target node, 0 for its ancestors, which give their keys only */
} GpbLeafFill;

/* ---- templates of a context ---- */

/**
 * Makes the template of a class and stores it, unless the class has one already.
 *
 * @param pcModuleName  module whose proto file is loaded
 * @param uiArg         not used
 * @param pcPath        text for the log lines
 * @param pstNode       the node that stands for the class
 * @return 0 stored, or known already; 1 on failure; the code of the mapping callback when that refuses the class.
 *         Nothing is stored on failure
 */
GPB_API uint32_t GPBLIB_UpdateProtoFileClassInfo(GpbLibContext *pstCtx, const char *pcModuleName, uint32_t uiArg,
                                                 const char *pcPath, const GpbYangNode *pstNode);

/** The template of a class id, or null; owned by the context until its proto files are unloaded. Logs nothing. */
GPB_API GpbTemplateInfo *GPBLIB_GetGpbTemplate(uint32_t uiClassId, const GpbLibContext *pstCtx);

/**
 * Writes the template of a class id in template mode into a new buffer, and traces it in the log.
 *
 * @param pcPath   text for the log lines
 * @param ppucBuf  out: the buffer, freed by the caller with ZMP_Free_F; untouched on failure
 * @param pusLen   out: bytes in the buffer, cut to 16 bits; untouched on failure
 */
GPB_API uint32_t GPBLIB_DumpProtoFileData(GpbLibContext *pstCtx, const char *pcPath, uint32_t uiClassId,
                                          uint8_t **ppucBuf, uint16_t *pusLen);

/** Logs bytes as hexadecimal digits at level 1, 200 bytes a line. 1 for null and when a line cannot be formatted.
 */
GPB_API uint32_t GPBLIB_PrintHexBuf_espm(const uint8_t *pucBytes, uint32_t uiLen, const GpbLibContext *pstCtx);

/* ---- steps of the generation ---- */

/** Makes and stores the template of a target node from a proto file. 0, 1, or the update step's code. */
GPB_API uint32_t GRBLIB_ProcSubTreeNode(GpbLibContext *pstCtx, const GpbYangNode *pstNode,
                                        const GpbPbFileDescriptor *pstFileDesc);

/** The message of a top-level node. */
GPB_API const GpbPbDescriptor *GPBLIB_ProcSubTreeNodeGetDestriptor(const GpbLibContext *pstCtx,
                                                                   const GpbPbFileDescriptor *pstFileDesc,
                                                                   const GpbYangNode *pstTop);

/**
 * Makes a template that holds the top node: its leaves when it has no child, else its key leaves.
 *
 * @param pstTarget  gives the class id
 * @param pstTop     gives the name and the leaves
 * @return the template with its tree, both the caller's (GPBLIB_ObjTree_Delete, ZMP_Free_F); the tree is null when its
 *         root could not be made and the top node has no leaf vector
 */
GPB_API GpbTemplateInfo *GPBLIB_ProcSubTreeNodeCreateGpbTemplate(GpbLibContext *pstCtx, const GpbYangNode *pstTarget,
                                                                 const GpbYangNode *pstTop,
                                                                 const GpbPbDescriptor *pstTopMessage);

/**
 * Adds the nodes on a path to a template.
 *
 * @param pvStack  platform stack of the path below the top node, the target at its bottom; emptied on success
 */
GPB_API uint32_t GPBLIB_ProcSubTreeNodeUpdateGpbTemplate(GpbLibContext *pstCtx, GpbTemplateInfo *pstInfo,
                                                         const GpbYangNode *pstTarget, void *pvStack,
                                                         const GpbPbDescriptor *pstTopMessage);

/** The class id of a node as the mapping callback gives it. 0, 1 for null, or the callback's code. */
GPB_API uint32_t GPBLIB_GetClassIdFromYangNode(const GpbLibContext *pstCtx, const GpbYangNode *pstNode,
                                               uint32_t *puiClassId);

/** The field of a container in its parent's message. */
GPB_API const GpbPbFieldDescriptor *GPBLIB_FindCntrFieldDesc(const GpbLibContext *pstCtx, const GpbYangNode *pstNode,
                                                             const GpbPbDescriptor *pstMessage);

/**
 * The protobuf name of a node and its depth.
 *
 * @param pcName   out: GPB_TEMPLATE_NODE_NAME_SIZE bytes
 * @param pucDepth out: 1 plus the number of ancestors, in 8 bits
 */
GPB_API uint32_t GPBLIB_YangContainerNodeName2Protobuf(const GpbLibContext *pstCtx, const GpbYangNode *pstNode,
                                                       char *pcName, uint8_t *pucDepth);

/** Makes the object node of a container, with its node attribute and its field attribute. */
GPB_API ObjNode *GPBLIB_CreateGpbChildObjNode(const GpbLibContext *pstCtx, ObjTree pstTree, ObjNode *pstParent,
                                              const GpbPbFieldDescriptor *pstField, const GpbYangNode *pstNode);

/** Inserts the leaves of a node, and for the target node those of the cases among its children. */
GPB_API uint32_t GPBLIB_FillLeafAttr(const GpbLibContext *pstCtx, const GpbYangNode *pstNode,
                                     const GpbLeafFill *pstFill);

/** Inserts the cases among a node's children, given the first of them; null has none. */
GPB_API uint32_t GPBLIB_FillCaseLeafAttr(const GpbLibContext *pstCtx, const GpbYangNode *pstFirstChild,
                                         const GpbLeafFill *pstFill);

/** Inserts the leaves of a node. A leaf that the message does not have, or that cannot be mapped, is left out. */
GPB_API uint32_t GPBLIB_InsertLeafNodeInfo(const GpbYangNode *pstNode, const GpbPbDescriptor *pstMessage,
                                           ObjTree pstTree, ObjNode *pstParent, uint32_t uiAllLeaves,
                                           const GpbLibContext *pstCtx);

/** Finds the field of a leaf. 0, GPB_YANG_LEAF_NOT_IN_MESSAGE, or 1 for null. */
GPB_API uint32_t GPBLIB_CheckYangLeafInProtobuf(const GpbPbDescriptor *pstMessage, const GpbYangLeaf *pstLeaf,
                                                const GpbPbFieldDescriptor **ppstField, const GpbLibContext *pstCtx);

/** The class id and field id of a leaf as the mapping callback gives them. */
GPB_API uint32_t GPBLIB_ConvertField(const GpbYangNode *pstNode, const GpbYangLeaf *pstLeaf, uint32_t uiAllLeaves,
                                     GpbCidFid *pstOut, const GpbLibContext *pstCtx);

/**
 * Makes the object node of a leaf by the type of its field; none for messages and floating-point numbers.
 *
 * @param pstIds  converted ids of the leaf, from GPBLIB_ConvertField
 * @return the field attribute of the new node, null when there is none
 */
GPB_API ObjNode *GPBLIB_CreateNode(const GpbYangNode *pstNode, ObjTree pstTree, const GpbPbFieldDescriptor *pstField,
                                   const GpbCidFid *pstIds, ObjNode *pstParent, uint32_t uiAllLeaves,
                                   const GpbYangLeaf *pstLeaf, const GpbLibContext *pstCtx);

/** As GPBLIB_CreateNode for an integer leaf, whose value is field id x 2^32 + class id. */
GPB_API ObjNode *GPBLIB_CreateIntegerNode(const GpbYangNode *pstNode, ObjTree pstTree,
                                          const GpbPbFieldDescriptor *pstField, const GpbCidFid *pstIds,
                                          ObjNode *pstParent, uint32_t uiAllLeaves, const GpbYangLeaf *pstLeaf,
                                          const GpbLibContext *pstCtx);

/** As GPBLIB_CreateNode for a string leaf, whose content is the text of its ids. */
GPB_API ObjNode *GPBLIB_CreateStrNode(const GpbYangNode *pstNode, ObjTree pstTree, const GpbPbFieldDescriptor *pstField,
                                      const GpbCidFid *pstIds, ObjNode *pstParent, uint32_t uiAllLeaves,
                                      const GpbYangLeaf *pstLeaf, const GpbLibContext *pstCtx);

/** Writes the ids of a string leaf as text, cut to the buffer. 0, 1 for null, or the callback's code. */
GPB_API uint32_t GPBLIB_FillFidCidOfStrNode_(const GpbYangNode *pstNode, uint32_t uiAllLeaves,
                                             const GpbYangLeaf *pstLeaf, char *pcOut, uint32_t uiSize,
                                             const GpbLibContext *pstCtx);

/**
 * Adds a field attribute to the node attribute of `pstParent` and remembers it in the `pFieldAttr` of `pstNode`.
 *
 * @param uiFieldId  id in the host's class, cut to 16 bits
 * @param uiIsKey    1 marks a key
 */
GPB_API ObjNode *GPBLIB_FieldAttributeAdd(const GpbLibContext *pstCtx, ObjTree pstTree, ObjNode *pstParent,
                                          ObjNode *pstNode, const GpbPbFieldDescriptor *pstField, const char *pcName,
                                          uint32_t uiFieldId, uint32_t uiIsKey);

#ifdef __cplusplus
}
#endif

#endif
