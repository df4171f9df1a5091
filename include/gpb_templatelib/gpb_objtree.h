/**
 * @file
 * Object tree: the in-memory form of a GPB template.
 *
 * A tree is made of nodes of one record type, ObjNode; its handle, ObjTree, is its RootDoc node. Every node and every
 * string content is allocated under the module id that the root carries, and released with the tree.
 *
 * A template names, per container, what the container and its fields stand for in the host's class. That description
 * is itself part of the tree: the first child of a container is its node attribute, field number 65535, which holds the
 * class id (2), the name (3) and the flag (4) of the container, and one field attribute (1) per field.
 *
 * Trees are written in the protobuf wire format, https://protobuf.dev/programming-guides/encoding/. Template mode marks
 * containers with wire type 6, which protobuf does not use, so that a reader without schema can tell them from strings.
 *
 * Results: functions that make something return null on failure, functions that count bytes return 0. Null arguments
 * are failures. Only GPBLIB_ObjTree_Write, GPBLIB_ObjTree_Read and the debug output log, all of it at level 1.
 *
 * Threads: a tree belongs to one caller at a time.
 */
#ifndef GPB_TEMPLATELIB_GPB_OBJTREE_H
#define GPB_TEMPLATELIB_GPB_OBJTREE_H

#include <stdint.h>

#include "gpb_api.h"
#include "gpb_lib.h"
#include "platform/cmf_tree.h"

#ifdef __cplusplus
extern "C"
{
#endif

/** Node types. */
#define GPB_OBJNODE_INVALID 0U /**< never created */
#define GPB_OBJNODE_INTLEAF 1U /**< integer leaf, a varint field */
#define GPB_OBJNODE_STRLEAF 2U /**< string or bytes leaf, a length-delimited field */
#define GPB_OBJNODE_CONTAIN 3U /**< container: a length-delimited header followed by its children */
#define GPB_OBJNODE_ROOTDOC 4U /**< root of a tree, exactly one per tree */

/** A node of a tree. */
typedef struct ObjNode
{
    CmfTreeNode stTree; /**< links of the tree service */
    uint32_t nodeType;  /**< one of the node types */
    uint32_t gpbSize;   /**< bytes of the whole node on the wire; at the root the cached write length, 0: unknown */
    uint32_t gpbFlg;    /**< encode flag: 1 the node is part of the output */
    uint32_t id;        /**< protobuf field number */
    uint32_t objLen;    /**< StrLeaf: content bytes; Contain and RootDoc: sum of the children's gpbSize */
    union
    {
        uint64_t value;     /**< IntLeaf: the value; RootDoc: the module id */
        uint8_t *pucString; /**< StrLeaf: the node's own copy of the content, without terminator */
    };
    struct ObjNode *pNodeAttr;  /**< node-attribute container of this node, owned by the tree, or null */
    struct ObjNode *pFieldAttr; /**< field-attribute container that describes this node, owned by the tree, or null */
} ObjNode;

/** Handle of a tree: its RootDoc node. */
typedef ObjNode *ObjTree;

/** Field numbers of the descriptions in a template. */
#define GPB_RDMI_ID_NODE_ATTR 65535U /**< node attribute, below the container that it describes */
#define GPB_RDMI_ID_FIELD_ATTR 1U    /**< field attribute, below the node attribute */
#define GPB_RDMI_ID_CLASS_ID 2U      /**< in a node attribute: class id */
#define GPB_RDMI_ID_NAME 3U          /**< in a node attribute: name */
#define GPB_RDMI_ID_NODE_FLAG 4U     /**< in a node attribute: kind of the YANG node */
#define GPB_RDMI_ID_FIELD_ID 1U      /**< in a field attribute: field id in the host's class */
#define GPB_RDMI_ID_FIELD_NAME 2U    /**< in a field attribute: name */
#define GPB_RDMI_ID_FIELD_NUMBER 3U  /**< in a field attribute: protobuf field number */
#define GPB_RDMI_ID_FIELD_TYPE 4U    /**< in a field attribute: protobuf field type */
#define GPB_RDMI_ID_FIELD_FLAG 5U    /**< in a field attribute: GPB_RDMI_FLAG_ bits */

/** Bits of a field flag. */
#define GPB_RDMI_FLAG_REPEATED 1U
#define GPB_RDMI_FLAG_PACKABLE 2U /**< repeated, and of a type other than string, group, message and bytes */
#define GPB_RDMI_FLAG_KEY 4U      /**< set by the caller: a key leaf */

/** Writing modes; any value but GPB_OBJTREE_MODE_TEMPLATE is plain. */
#define GPB_OBJTREE_MODE_PLAIN 0U    /**< a plain protobuf message: nodes with encode flag 0 are passed over */
#define GPB_OBJTREE_MODE_TEMPLATE 1U /**< every node, containers in wire type 6 */

/** What a node attribute says; read during the call only. */
typedef struct RdmiNodeAttr
{
    uint32_t uiClassId;  /**< class id of the container, 0 at the root */
    const char *pcName;  /**< name, not necessarily terminated */
    uint32_t uiNameLen;  /**< bytes of the name */
    uint32_t uiNodeFlag; /**< kind of the YANG node, 0 at the root */
} RdmiNodeAttr;

/** What a field attribute says; read during the call only. */
typedef struct RdmiFieldAttr
{
    uint16_t usFieldId;      /**< id in the host's class, 0 for a container's own field */
    uint16_t usFieldNumber;  /**< protobuf field number */
    const char *pcFieldName; /**< name, not necessarily terminated */
    uint32_t uiFieldNameLen; /**< bytes of the name */
    uint32_t uiFieldType;    /**< protobuf field type, 1 (double) to 18 (sint64) */
    uint32_t uiFieldFlag;    /**< GPB_RDMI_FLAG_ bits */
} RdmiFieldAttr;

/** State of a read: the open containers, the root first. */
typedef struct GpbObjTreeReadState
{
    ObjTree pstTree;      /**< the tree that is read; null when a failed read has deleted it */
    ObjNode **ppstStack;  /**< open containers, room for GPB_OBJTREE_READ_STACK */
    uint32_t *puiCounter; /**< bytes read so far inside each of them, room for GPB_OBJTREE_READ_STACK */
    uint32_t uiStackNum;  /**< open containers when the read ended */
} GpbObjTreeReadState;

/* ---- making nodes ---- */

/**
 * Makes an empty tree.
 *
 * @param uiId        field number of the root, 0 for templates
 * @param uiModuleId  module id under which the whole tree is allocated
 * @return the tree, deleted with GPBLIB_ObjTree_Delete; null without memory
 */
GPB_API ObjTree GPBLIB_ObjTree_Create(uint32_t uiId, uint32_t uiModuleId);

/** Allocates under the module id of a tree; freed with ZMP_Free_F. Null when `pstTree` is not a RootDoc. */
GPB_API void *GPBLIB_ObjTree_Malloc(const ObjNode *pstTree, uint32_t uiSize);

/**
 * Makes a node, the last child of its parent, with encode flag 0; the tree's write length is then unknown.
 *
 * @param pstParent  Contain or RootDoc; null for the root of the tree
 * @param uiType     one of the node types
 */
GPB_API ObjNode *GPBLIB_ObjTree_MallocNode(ObjTree pstTree, ObjNode *pstParent, uint32_t uiType, uint32_t uiId);

/** Makes a container. */
GPB_API ObjNode *GPBLIB_ObjTree_CreateNode(ObjTree pstTree, ObjNode *pstParent, uint32_t uiId, uint32_t uiGpbFlg);

/** Makes an integer leaf. */
GPB_API ObjNode *GPBLIB_ObjTree_CreateInteger(ObjTree pstTree, ObjNode *pstParent, uint32_t uiId, uint64_t ulValue,
                                              uint32_t uiGpbFlg);

/** Makes a string leaf with a copy of `uiLen` bytes, at least one; no terminator is added. */
GPB_API ObjNode *GPBLIB_ObjTree_CreateString(ObjTree pstTree, ObjNode *pstParent, uint32_t uiId, uint32_t uiLen,
                                             const void *pvContent, uint32_t uiGpbFlg);

/* ---- builders of templates; their nodes have encode flag 1 ---- */

/** GPBLIB_ObjTree_CreateInteger with encode flag 1. */
GPB_API ObjNode *GPBLIB_RDMI_CreateInteger(ObjTree pstTree, ObjNode *pstParent, uint32_t uiId, uint64_t ulValue);

/** GPBLIB_ObjTree_CreateString with encode flag 1. */
GPB_API ObjNode *GPBLIB_RDMI_CreateString(ObjTree pstTree, ObjNode *pstParent, uint32_t uiId, uint32_t uiLen,
                                          const void *pvContent);

/**
 * Makes the node attribute of a container and remembers it in `pNodeAttr`.
 *
 * @return the attribute container; null as soon as a step fails, what was made until then stays in the tree
 */
GPB_API ObjNode *GPBLIB_RDMI_CreateNodeAttribute(ObjTree pstTree, ObjNode *pstNode, const RdmiNodeAttr *pstAttr);

/** Makes a tree whose root (id 0) has a node attribute of class id 0, flag 0 and the given, non-empty name. */
GPB_API ObjTree GPBLIB_RDMI_CreateRoot(uint32_t uiModuleId, const char *pcName);

/**
 * Makes a container with its node attribute.
 *
 * @param uiId  protobuf field number
 * @return the container; null when a step fails, a container without attribute may then stay in the tree
 */
GPB_API ObjNode *GPBLIB_RDMI_CreateNode(ObjTree pstTree, ObjNode *pstParent, uint32_t uiId,
                                        const RdmiNodeAttr *pstAttr);

/**
 * Adds a field attribute to the node attribute of a container.
 *
 * @return the field attribute; null when the container has no node attribute or a step fails
 */
GPB_API ObjNode *GPBLIB_RDMI_AddFieldAttribute(ObjTree pstTree, ObjNode *pstNode, const RdmiFieldAttr *pstAttr);

/* ---- sizes ---- */

/** Bytes of the base-128 varint of a value, 1 to 10. */
GPB_API uint32_t GPBLIB_Encoding_GetValueSizeOfInteger(uint64_t ulValue);

/**
 * Bytes of a node on the wire; the root counts with its own tag and length.
 *
 * A container first adds the `gpbSize` of its children to its `objLen`, without clearing it: GPBLIB_ObjTree_
 * RefreshBufLen does that. Sizes are 32 bits wide and wrap.
 */
GPB_API uint32_t GPBLIB_ObjNode_GetEncodingSize(ObjNode *pstNode);

/** From a node without next sibling upwards, measures each container whose last child is now measured. */
GPB_API void GPBLIB_ObjTree_CalcParentBufLen(ObjNode *pstNode);

/** Measures every node of a tree anew. Does nothing unless given a RootDoc. */
GPB_API void GPBLIB_ObjTree_RefreshBufLen(ObjTree pstTree);

/**
 * Bytes of a tree in template mode, and the room that writing it takes in either mode.
 *
 * The length is remembered until a node is made or a subtree deleted; a value that is changed in place does not
 * make it be computed anew.
 */
GPB_API uint32_t GPBLIB_ObjTree_GetWriteLen(ObjTree pstTree);

/* ---- writing ---- */

/** Writes a varint; returns its length, or 0 and writes nothing when the room is smaller. */
GPB_API uint32_t GPBLIB_Encoding_WriteVarInt(uint64_t ulValue, uint8_t *pucDest, uint32_t uiRoom);

/** Writes an integer leaf: tag with wire type 0, value. Returns the bytes written, 0 when they do not fit. */
GPB_API uint32_t GPBLIB_ObjNode_WriteVarint(const ObjNode *pstNode, uint8_t *pucDest, uint32_t uiRoom);

/** Writes a string leaf: tag with wire type 2, length, content. */
GPB_API uint32_t GPBLIB_ObjNode_WriteString(const ObjNode *pstNode, uint8_t *pucDest, uint32_t uiRoom);

/** Writes the header of a container: tag with wire type 2, length. */
GPB_API uint32_t GPBLIB_ObjNode_WriteNode(const ObjNode *pstNode, uint8_t *pucDest, uint32_t uiRoom);

/** Writes the header of a container in template mode: tag with wire type 6, length. */
GPB_API uint32_t GPBLIB_ObjNode_WriteNodeTemplate(const ObjNode *pstNode, uint8_t *pucDest, uint32_t uiRoom);

/** Writes a node's own bytes in plain mode: nothing for a root and for a node with encode flag 0. */
GPB_API uint32_t GPBLIB_ObjNode_Write(const ObjNode *pstNode, uint8_t *pucDest, uint32_t uiRoom);

/** Writes a node's own bytes in template mode, whatever its encode flag. */
GPB_API uint32_t GPBLIB_ObjNode_TemplateWrite(const ObjNode *pstNode, uint8_t *pucDest, uint32_t uiRoom);

/**
 * Writes a tree.
 *
 * Plain mode leaves out the root's own header and passes over nodes with encode flag 0, but not their children;
 * the lengths of containers count such nodes all the same.
 *
 * @param uiRoom  bytes at `pucDest`, at least GPBLIB_ObjTree_GetWriteLen in either mode
 * @param uiMode  GPB_OBJTREE_MODE_TEMPLATE, or plain
 * @param pstCtx  context whose print slots get the tree's printout; null: nothing is logged
 * @return bytes written; 0 on failure (the destination may then hold a part) and for a plain tree without output.
 *         A room that is too small at the start is not logged
 */
GPB_API uint32_t GPBLIB_ObjTree_Write(ObjTree pstTree, uint8_t *pucDest, uint32_t uiRoom, uint32_t uiMode,
                                      const GpbLibContext *pstCtx);

/* ---- reading ---- */

/** Reads a varint of at most 10 bytes; returns its length, 0 when it does not end in time. */
GPB_API uint32_t GPBLIB_Encoding_ReadVarInt(uint64_t *pulValue, const uint8_t *pucBytes, uint32_t uiLen);

/** Reads what follows the tag of a varint field: the node becomes an integer leaf. */
GPB_API uint32_t GPBLIB_ObjNode_Read_VARINT(ObjNode *pstNode, const uint8_t *pucBytes, uint32_t uiLen);

/** Reads eight bytes, little-endian: the node becomes an integer leaf. */
GPB_API uint32_t GPBLIB_ObjNode_Read_FIXED64(ObjNode *pstNode, const uint8_t *pucBytes, uint32_t uiLen);

/** Reads four bytes, little-endian: the node becomes an integer leaf. */
GPB_API uint32_t GPBLIB_ObjNode_Read_FIXED32(ObjNode *pstNode, const uint8_t *pucBytes, uint32_t uiLen);

/** Reads a length and as many bytes: the node becomes a string leaf with a copy of them. */
GPB_API uint32_t GPBLIB_ObjNode_Read_LENGTH_DELIMITED(const ObjNode *pstTree, ObjNode *pstNode, const uint8_t *pucBytes,
                                                      uint32_t uiLen);

/** Reads the length of a container: the node becomes a Contain, the tree's root stays a RootDoc. */
GPB_API uint32_t GPBLIB_ObjNode_Read_NODE(const ObjNode *pstTree, ObjNode *pstNode, const uint8_t *pucBytes,
                                          uint32_t uiLen);

/**
 * Reads one node, tag included, without the children of a container.
 *
 * @param pstNode  a new node without content
 * @return bytes consumed, 0 on failure
 */
GPB_API uint32_t GPBLIB_ObjNode_Read(const ObjNode *pstTree, ObjNode *pstNode, const uint8_t *pucBytes, uint32_t uiLen);

/**
 * Reads what follows the root's header, until the root's length is reached or no bytes are left.
 *
 * A failure deletes the tree and logs the bytes that were not read and the path of the root.
 *
 * @param pstState  tree and stacks; gets the number of open containers
 * @return just past the last byte read
 */
GPB_API const uint8_t *GPBLIB_ObjTree_ReadContent_(GpbObjTreeReadState *pstState, const uint8_t *pucBytes,
                                                   uint32_t uiLen, const GpbLibContext *pstCtx);

/**
 * Reads a tree that was written in template mode. All its nodes have encode flag 0.
 *
 * @param puiConsumed  out: where reading stopped, also after a failure; may be null
 * @param uiModuleId   module id under which the tree is allocated
 * @param pstCtx       context whose print slots hear of failures; null: nothing is logged
 * @return the tree, deleted with GPBLIB_ObjTree_Delete; null when the first field is no container, a field is
 *         malformed, more than GPB_OBJTREE_MAX_NESTING containers are nested, or without memory
 */
GPB_API ObjTree GPBLIB_ObjTree_Read(const uint8_t *pucBytes, uint32_t uiLen, uint32_t *puiConsumed, uint32_t uiModuleId,
                                    const GpbLibContext *pstCtx);

/* ---- debug output ---- */

/** Prints a tree or a subtree, a line per node; attribute containers come once more after the node they describe.
 */
GPB_API void GPBLIB_ObjTree_Print(ObjNode *pstNode, const GpbLibContext *pstCtx);

/** Prints a node, then its attribute containers, each indented by one blank per ancestor of the node. */
GPB_API void GPBLIB_OutputObjNodeContent(const GpbLibContext *pstCtx, const ObjNode *pstNode);

/** Writes one blank per ancestor, as many as fit; returns their number. */
GPB_API uint32_t GPBLIB_OutputObjNodePrefixSpace(char *pcOut, uint32_t uiRoom, const ObjNode *pstNode);

/** Writes the text of a node, cut to the room. */
GPB_API void GPBLIB_OutputObjNodeBaseContent(char *pcOut, uint32_t uiRoom, const ObjNode *pstNode);

/** Prints the ids from the root down to a node, "Node: 0.65535.3.". */
GPB_API void GPBLIB_DBG_PrintPath(const ObjNode *pstNode, const GpbLibContext *pstCtx);

/** Writes bytes as "[str]text" when they are a terminated printable text, else as "[mem]" and hexadecimal digits.
 */
GPB_API void GPBLIB_DBG_DumpMemToString(const uint8_t *pucBytes, uint32_t uiLen, char *pcOut, uint32_t uiRoom);

/** 1 when the bytes are printable characters (32 to 127) followed by at least one zero byte and nothing else. */
GPB_API uint32_t GPBLIB_DBG_CheckIsString_(const uint8_t *pucBytes, uint32_t uiLen);

/* ---- deleting ---- */

/**
 * Deletes a tree, or a subtree, which is taken out of its tree first; the tree's write length is then computed
 * anew.
 *
 * @param ppstNode  the node; set to null. A null pointer, or a pointer to null, does nothing
 */
GPB_API void GPBLIB_ObjTree_Delete(ObjNode **ppstNode);

/** Release callback for the tree service: frees the content of a StrLeaf, and nothing else. */
GPB_API void GPBLIB_ObjNode_FreeCallback(void *pvNode);

#ifdef __cplusplus
}
#endif

#endif
