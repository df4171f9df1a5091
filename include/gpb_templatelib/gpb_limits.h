/**
 * @file
 * Every fixed buffer and limit of the library. Sizes of text buffers include the terminator.
 */
#ifndef GPB_TEMPLATELIB_GPB_LIMITS_H
#define GPB_TEMPLATELIB_GPB_LIMITS_H

/* ---- core ---- */

#define GPB_LOG_TEXT_SIZE 1024U    /**< a diagnostic message */
#define GPB_LOG_LEVELS 4U          /**< print slots of a context */
#define GPB_PATH_SIZE 256U         /**< paths and file names */
#define GPB_PROTO_MAX_NESTING 256U /**< braces in each other in a proto file; messages nest 31 deep at most */
#define GPB_VECTOR_FIRST_SIZE 32U  /**< first slots of the context's vectors */

/* ---- names ---- */

#define GPB_NAME_SIZE 128U        /**< node, field and enum names */
#define GPB_ENUM_NAME_SIZE 129U   /**< a YANG enum name in the enum list */
#define GPB_SCHEMA_PATH_SIZE 512U /**< a schema path with its leaf name */
#define GPB_MAX_CASE_FIELDS                                                                                            \
    256U                      /**< case fields that a oneof search collects; it is given up when this many are found */
#define GPB_MAX_NODE_PATH 32U /**< elements of an XML node path */

/* ---- compilers ---- */

#define GPB_COMPILER_STACK_DEPTH 32U      /**< slots of a layer stack */
#define GPB_COMPILER_MAX_LAYERS 31U       /**< slots that can be in use */
#define GPB_MAX_ANCESTOR_NUM 32U          /**< entries of an ancestor array */
#define GPB_FIELD_TYPE_NUM 19U            /**< entries of a translator table: field types 1 to 18, entry 0 unused */
#define GPB_PROTO_FILE_NAME_SIZE 64U      /**< MODULE.proto as the compiler interface looks it up */
#define GPB_JSON_NUMBER_SIZE 64U          /**< a JSON number as the translators read it */
#define GPB_JSON_MAX_DEPTH 1000U          /**< containers in each other that XML to JSON walks into */
#define GPB_COMPILER_MAX_TYPE_CHAIN 1000U /**< message types in each other that a top message may have */

/* ---- object tree ---- */

#define GPB_OBJTREE_READ_STACK 256U      /**< entries of the reader's stack of open containers */
#define GPB_OBJTREE_MAX_NESTING 253U     /**< nested containers below the root that the reader accepts */
#define GPB_OBJNODE_VALUE_TEXT_SIZE 200U /**< a string leaf's content in a printout */
#define GPB_MEMORY_TEXT_SIZE 256U        /**< bytes that could not be read, in a log line */

/* ---- templates ---- */

#define GPB_TEMPLATE_STACK_DEPTH 16U     /**< first depth of the stack that holds a path; it grows */
#define GPB_TEMPLATE_NODE_NAME_SIZE 255U /**< the protobuf name of a YANG node */
#define GPB_TEMPLATE_ID_TEXT_SIZE 65U    /**< the ids that a string leaf carries */
#define GPB_HEX_LINE_SIZE 601U           /**< a line of the hexadecimal trace: 200 bytes */

#endif
