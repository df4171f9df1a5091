/**
 * Object tree: the in-memory form of a GPB template.
 *
 * A tree is made of nodes of one record type, ObjNode; its handle, ObjTree, is its RootDoc node. Every node and every
 * string content is allocated under the module id that the root carries, and released with the tree.
 *
 * Threads: a tree belongs to one caller at a time.
 */
#ifndef GPB_TEMPLATELIB_GPB_OBJTREE_H
#define GPB_TEMPLATELIB_GPB_OBJTREE_H

#include <stdint.h>

#include "gpb_api.h"
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
        struct ObjNode *pNodeAttr; /**< node-attribute container of this node, owned by the tree, or null */
        struct ObjNode
            *pFieldAttr; /**< field-attribute container that describes this node, owned by the tree, or null */
    } ObjNode;

    typedef ObjNode *ObjTree;

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
