/**
 * @file
 * Document compilers: the layer stack, the leaf value translators and the compiler classes.
 *
 * A compiler walks an instance document depth first and fills a tree of protobuf messages through reflection. The
 * stack holds one layer per open message; a leaf's text is stored by the translator of its field's type.
 *
 * Threads: a compiler and its stack are used by one thread at a time.
 */
#ifndef GPB_TEMPLATELIB_GPB_COMPILER_H
#define GPB_TEMPLATELIB_GPB_COMPILER_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "gpb_api.h"
#include "gpb_compiler_c.h"
#include "gpb_limits.h"

namespace google::protobuf
{
class DynamicMessageFactory;
class Message;
} // namespace google::protobuf

class GpbExactJsonWalk;
class GpbExactXmlToJson;
class GpbExactXmlWalk;
class GpbFieldFinder;
struct GpbModulePlan;

/** Result codes of the compilers. */
#define GPB_COMPILER_OK 0U
#define GPB_COMPILER_ERR 1U             /**< null document, no reflection, presence container at the top, ancestors */
#define GPB_COMPILER_NO_ROOT 2U         /**< document without root element */
#define GPB_COMPILER_NO_MESSAGE_TYPE 3U /**< the module has no top message of the root's name */
#define GPB_COMPILER_NO_PROTOTYPE 4U    /**< also: more than GPB_COMPILER_MAX_TYPE_CHAIN message types in each other */
#define GPB_COMPILER_NO_MESSAGE 5U      /**< message not created */
#define GPB_COMPILER_NO_FIELD 6U        /**< a node that the message does not have */
#define GPB_COMPILER_NOT_A_MESSAGE 7U   /**< a container's field is no message */
#define GPB_COMPILER_NO_TRANSLATOR 8U   /**< a leaf's field is of a type that no text is converted to */
#define GPB_COMPILER_NO_ENUM_VALUE 9U   /**< the enumeration does not have the value */
#define GPB_COMPILER_STACK_FULL 10U     /**< more than GPB_COMPILER_MAX_LAYERS messages in each other */
#define GPB_COMPILER_ROOT_NAME_TOO_LONG 11U      /**< a root name that leaves no room for its terminator */
#define GPB_COMPILER_NO_JSON_ITEM 11U            /**< XML to JSON: an item cannot be made, or a root name too long */
#define GPB_COMPILER_JSON_STACK_FULL 0xFFFFFFFFU /**< JSON to GPB: a container beyond the last layer */

/** One open message. */
struct GpbCompilerStackLayer
{
    const google::protobuf::Descriptor *pstDescriptor = nullptr; /**< message type; null in an unused slot */
    google::protobuf::Message *pstMessage = nullptr;             /**< owned by its parent, at the top by the compiler */
    std::string strXPath;                                        /**< dotted path, for lookups and log lines */
};

/** The open messages, outermost first. Popping a layer only lowers `uiLayerNum`; the slot keeps its content. */
struct GpbCompilerStack
{
    GpbCompilerStackLayer astLayer[GPB_COMPILER_STACK_DEPTH]; /**< slots, the top message's first */
    uint32_t uiLayerNum = 0;                                  /**< open layers */
};

extern "C"
{

/**
 * Makes the protobuf enum value name of a YANG enum value: TYPE_VALUE in upper case, "X_" for each special
 * character and before a leading digit. `up-2` of `Status` gives `Status_UPX_2`.
 *
 * Writing an ordinary character respects `uiOutSize`; the two-character writes do not, so the buffer must have room
 * for `uiOutSize + 2 + 2 * strlen(value)` bytes where special characters may occur.
 *
 * @return `pcOut`, or null when the prefix cannot be written
 */
GPB_API const char *GpbXmlCompilerBase_EnumYang2Proto(const char *pcYangValue, const char *pcEnumTypeName, char *pcOut,
                                                      unsigned int uiOutSize);

/**
 * The chain of fields that leads from `pstTop` to the message type that contains `pstField`, innermost first.
 *
 * @param ppstAncestors  out: room for GPB_MAX_ANCESTOR_NUM entries; entry 0 is `pstField`
 * @param uiMaxNum       not used
 * @return number of entries, or 0 when `pstTop` is not reached
 */
GPB_API unsigned int GPB_GetDescriptorAncestors(const google::protobuf::FieldDescriptor *pstField,
                                                const google::protobuf::Descriptor *pstTop,
                                                const google::protobuf::FieldDescriptor **ppstAncestors,
                                                unsigned int uiMaxNum);

/* ---- JSON nodes: a thin layer over cJSON; the module id is accepted and not used ---- */

/**@{*/
/** Adds a member to an object; the new item, or null without memory or object. */
GPB_API struct cJSON *GpbLib_Json_ObjectAddTrue(uint32_t uiModuleId, struct cJSON *pstObject, const char *pcName);
GPB_API struct cJSON *GpbLib_Json_ObjectAddFalse(uint32_t uiModuleId, struct cJSON *pstObject, const char *pcName);
GPB_API struct cJSON *GpbLib_Json_ObjectAddNumber(uint32_t uiModuleId, struct cJSON *pstObject, const char *pcName,
                                                  double dValue);
GPB_API struct cJSON *GpbLib_Json_ObjectAddString(uint32_t uiModuleId, struct cJSON *pstObject, const char *pcName,
                                                  const char *pcText);
GPB_API struct cJSON *GpbLib_Json_ObjectAddRaw(uint32_t uiModuleId, struct cJSON *pstObject, const char *pcName,
                                               const char *pcText);
GPB_API struct cJSON *GpbLib_Json_ObjectAddObject(uint32_t uiModuleId, struct cJSON *pstObject, const char *pcName);
GPB_API struct cJSON *GpbLib_Json_ObjectAddArray(uint32_t uiModuleId, struct cJSON *pstObject, const char *pcName);
/**@}*/

/**@{*/
/** Makes an item of its own, freed with GpbLib_Json_NodeFree unless it is added to another one; null without
 * memory. */
GPB_API struct cJSON *GpbLib_Json_AllocObject(uint32_t uiModuleId);
GPB_API struct cJSON *GpbLib_Json_AllocArray(uint32_t uiModuleId);
GPB_API struct cJSON *GpbLib_Json_AllocTrue(uint32_t uiModuleId);
GPB_API struct cJSON *GpbLib_Json_AllocFalse(uint32_t uiModuleId);
GPB_API struct cJSON *GpbLib_Json_AllocNumber(uint32_t uiModuleId, double dValue);
GPB_API struct cJSON *GpbLib_Json_AllocString(uint32_t uiModuleId, const char *pcText);
/**@}*/

/**
 * Adds an item to an object or an array, which owns it from then on.
 *
 * @return non-zero when it was added, as cJSON reports it; 0 when it was not, and the item stays the caller's
 */
GPB_API uint32_t GpbLib_Json_AddItemToObject(uint32_t uiModuleId, struct cJSON *pstObject, const char *pcName,
                                             struct cJSON *pstItem);
/** The same for an array. */
GPB_API uint32_t GpbLib_Json_AddItemToArray(uint32_t uiModuleId, struct cJSON *pstArray, struct cJSON *pstItem);

/** Frees an item with all that is in it. Null does nothing. */
GPB_API void GpbLib_Json_NodeFree(struct cJSON *pstItem);

/** The name under which an item is a member of its object; null for a null item and for one without a name. */
GPB_API const char *GpbLib_Json_GetObjectName(const struct cJSON *pstItem);

/** Memory from cJSON's allocator, freed with GpbLib_Json_Free. */
GPB_API void *GpbLib_Json_Malloc(size_t uiSize);
/** Frees memory of GpbLib_Json_Malloc. Null does nothing. */
GPB_API void GpbLib_Json_Free(void *pvMem);

/** Prints an item without white space; freed by the caller with ZMP_Free_F. Null for null or without memory. */
GPB_API char *GpbLib_Json_EncodeUnformatted(uint32_t uiModuleId, struct cJSON *pstItem);

/* ---- XML to JSON: how the text of a leaf becomes an item ---- */

/**
 * Adders make the JSON item of a leaf's text; the item is the caller's. Null without memory and for a null text.
 *
 * AddNumber passes through a double. AddBool gives true for "true" in any case, else false. AddString and AddEnum
 * keep the text. AddMessage makes nothing for any message field of today's protobuf.
 */
typedef struct cJSON *(*GpbJsonAddFunc)(const google::protobuf::FieldDescriptor *pstField, const char *pcText,
                                        uint32_t uiModuleId);

/**@{*/
/** An adder; see GpbJsonAddFunc. */
GPB_API struct cJSON *GpbXmlCompilerJson_AddNumber(const google::protobuf::FieldDescriptor *pstField,
                                                   const char *pcText, uint32_t uiModuleId);
GPB_API struct cJSON *GpbXmlCompilerJson_AddString(const google::protobuf::FieldDescriptor *pstField,
                                                   const char *pcText, uint32_t uiModuleId);
GPB_API struct cJSON *GpbXmlCompilerJson_AddEnum(const google::protobuf::FieldDescriptor *pstField, const char *pcText,
                                                 uint32_t uiModuleId);
GPB_API struct cJSON *GpbXmlCompilerJson_AddBool(const google::protobuf::FieldDescriptor *pstField, const char *pcText,
                                                 uint32_t uiModuleId);
GPB_API struct cJSON *GpbXmlCompilerJson_AddMessage(const google::protobuf::FieldDescriptor *pstField,
                                                    const char *pcText, uint32_t uiModuleId);
/**@}*/

/** The member name of an element: its own name, not that of the field. Empty for an element without a name. */
GPB_API const char *GpbXmlCompilerJson_GetFieldName(const google::protobuf::FieldDescriptor *pstField,
                                                    struct _xmlNode *pstNode);

} // extern "C"

/**
 * Opens the layers from the top of the stack down to the message of `pstField`, a singular message field, itself.
 *
 * A slot just above the top that an earlier pop left behind is reused while it is of the same message type. Layers
 * pushed before a failure stay on the stack.
 *
 * @return 0 on success, 1 on failure
 */
GPB_API unsigned int GPB_PushAncesDescriptor(const google::protobuf::FieldDescriptor *pstField,
                                             GpbCompilerStack &stStack);

/**
 * Leaf value translators: convert a text and set it (or add it, for a repeated field) in the layer's message.
 *
 * Numbers are read in base 10 without any check: the document was validated against its YANG module. What is too large
 * is clamped to 64 bits, for 32-bit fields to the machine's `long`, and then cut to the field. ToBool stores
 * false for exactly "false". ToEnum takes a list of values separated by single blanks.
 *
 * @return 0; 1 when the layer has no message, or the field is not of that message or not of the translator's kind;
 *         9 (ToEnum) when the value is not found
 */
using GpbStrTransFunc = unsigned int (*)(const GpbCompilerStackLayer &stLayer,
                                         const google::protobuf::FieldDescriptor *pstField, const char *pcValue);

/**@{*/
/** A translator; see GpbStrTransFunc. */
GPB_API unsigned int GpbCompiler_StrTrans_ToDouble(const GpbCompilerStackLayer &stLayer,
                                                   const google::protobuf::FieldDescriptor *pstField,
                                                   const char *pcValue);
GPB_API unsigned int GpbCompiler_StrTrans_ToInt64(const GpbCompilerStackLayer &stLayer,
                                                  const google::protobuf::FieldDescriptor *pstField,
                                                  const char *pcValue);
GPB_API unsigned int GpbCompiler_StrTrans_ToUInt64(const GpbCompilerStackLayer &stLayer,
                                                   const google::protobuf::FieldDescriptor *pstField,
                                                   const char *pcValue);
GPB_API unsigned int GpbCompiler_StrTrans_ToInt32(const GpbCompilerStackLayer &stLayer,
                                                  const google::protobuf::FieldDescriptor *pstField,
                                                  const char *pcValue);
GPB_API unsigned int GpbCompiler_StrTrans_ToUInt32(const GpbCompilerStackLayer &stLayer,
                                                   const google::protobuf::FieldDescriptor *pstField,
                                                   const char *pcValue);
GPB_API unsigned int GpbCompiler_StrTrans_ToBool(const GpbCompilerStackLayer &stLayer,
                                                 const google::protobuf::FieldDescriptor *pstField,
                                                 const char *pcValue);
GPB_API unsigned int GpbCompiler_StrTrans_ToString(const GpbCompilerStackLayer &stLayer,
                                                   const google::protobuf::FieldDescriptor *pstField,
                                                   const char *pcValue);
GPB_API unsigned int GpbCompiler_StrTrans_ToEnum(const GpbCompilerStackLayer &stLayer,
                                                 const google::protobuf::FieldDescriptor *pstField,
                                                 const char *pcValue);
/**@}*/

/**
 * What every compiler owns, and the operations that the C interface calls. An operation that a compiler does not
 * override does nothing and returns 0.
 */
class GPB_API GpbXmlCompilerBase
{
public:
    /**
     * @param pstFile    the module's proto file
     * @param pstImport  importer whose pool holds the file; outlives the compiler
     * @param pvHandle   library context; outlives the compiler
     */
    GpbXmlCompilerBase(const google::protobuf::FileDescriptor *pstFile,
                       const google::protobuf::compiler::Importer *pstImport, void *pvHandle);
    virtual ~GpbXmlCompilerBase();

    /** Encodes an XML document; 0 or a GPB_COMPILER_ code. */
    virtual unsigned int Encode(struct _xmlDoc *pstDoc);

    /** Encodes a JSON document, or the part of it below an item; 0 or a GPB_COMPILER_ code. */
    virtual unsigned int EncodeJson(struct cJSON *pstRoot, struct cJSON *pstItem);

    /** Fills a GpbMdlAttr with the leaves of the message that holds an item; 0 or a GPB_COMPILER_ code. */
    virtual unsigned int GetMdlAttr(const void *pvHandle, struct cJSON *pstRoot, struct cJSON *pstItem,
                                    void *pvMdlAttr);

    /** What the last encode gave, and its length in bytes; the compiler's, until it encodes again or is destroyed. */
    virtual const char *GetResult(unsigned int *puiLen);

    GpbXmlCompilerBase(const GpbXmlCompilerBase &) = delete;
    GpbXmlCompilerBase &operator=(const GpbXmlCompilerBase &) = delete;

    /** 1 for a character that cannot stand in an enum value name; filled by the first compiler of the process. */
    static unsigned char aucSpecialCharTable[256];

    /** The library context whose print slots the compiler's log lines go to. */
    void *GetLibHandle() const { return pvLibHandle; }

protected:
    void *pvLibHandle;                                       /**< library context */
    const google::protobuf::FileDescriptor *pstFileDesc;     /**< the module's proto file */
    const google::protobuf::compiler::Importer *pstImporter; /**< importer whose pool holds the file */
    google::protobuf::Message *pstMessage = nullptr; /**< top message of the last successful encode, or null; owned */
    google::protobuf::DynamicMessageFactory *pstMsgFactory = nullptr; /**< makes the message types; owned */
    unsigned char ucStopOnError = 0; /**< non-zero: a walk stops at the first container or leaf that fails */

    /** What all compilers of the importer share: which field a node name stands for, and how messages are written. */
    std::shared_ptr<GpbModulePlan> pstPlan;

    /** Asks the plan for fields, and remembers where it asked last. */
    std::unique_ptr<GpbFieldFinder> pstFieldFinder;

    /** Non-zero: memory ran out while the factory may have been making a type; nothing more is encoded with it. */
    unsigned char ucFactoryBroken = 0;
};

/** Turns an XML document into a serialized GPB message. */
class GPB_API GpbXmlCompiler : public GpbXmlCompilerBase
{
public:
    /** As GpbXmlCompilerBase. */
    GpbXmlCompiler(const google::protobuf::FileDescriptor *pstFile,
                   const google::protobuf::compiler::Importer *pstImport, void *pvHandle);
    ~GpbXmlCompiler() override;

    /** Fills the top message from a document; 0 or a GPB_COMPILER_ code. */
    unsigned int Encode(struct _xmlDoc *pstDoc) override;

    /** GetGpbBuffer. */
    const char *GetResult(unsigned int *puiLen) override;

    /** Serializes the top message; null with length 0 when there is none or a required field is missing. */
    const char *GetGpbBuffer(unsigned int *puiLen);

    /** The top message in protobuf's text form, or "There is no valid encode message.". */
    std::string GetEncodeDebugString() const;

protected:
    /**@{*/
    /** A step of an encode; 0 or a GPB_COMPILER_ code. */
    unsigned int EncodeRoot(struct _xmlNode *pstRoot);
    unsigned int IterXmlDoc(struct _xmlNode *pstNode, GpbCompilerStack &stStack);
    unsigned int ProcXmlContainerNode(struct _xmlNode *pstNode, GpbCompilerStack &stStack);
    unsigned int PushXmlContainer(struct _xmlNode *pstNode, GpbCompilerStack &stStack);
    unsigned int PushContainerLayer(const google::protobuf::FieldDescriptor *pstField, const char *pcNodeName,
                                    GpbCompilerStack &stStack);
    unsigned int ProcXmlPresenceContainerNode(struct _xmlNode *pstNode, GpbCompilerStack &stStack);
    unsigned int AddContainer(const google::protobuf::FieldDescriptor *pstField, GpbCompilerStack &stStack);
    unsigned int ProcXmlLeafNode(struct _xmlNode *pstNode, GpbCompilerStack &stStack);
    unsigned int ProcXmlEmptyLeafNode(struct _xmlNode *pstNode, GpbCompilerStack &stStack);
    unsigned int ProcCompilerTopLayer(struct _xmlNode *pstRoot, GpbCompilerStack &stStack);
    unsigned int PushTopLayer(struct _xmlNode *pstRoot, GpbCompilerStack &stStack);
    unsigned int InitCompilerTopLayer(struct _xmlNode *pstRoot, GpbCompilerStackLayer &stLayer);
    unsigned int GenerateLayer(GpbCompilerStackLayer &stLayer, GpbCompilerStackLayer *pstUpper,
                               const google::protobuf::FieldDescriptor *pstField);
    void GenerateXPath(GpbCompilerStackLayer &stLayer, GpbCompilerStackLayer *pstUpper,
                       const google::protobuf::FieldDescriptor *pstField);

    /** GenerateLayer without the path, which its log lines take from `pcPath`, or make themselves when it is null. */
    unsigned int GenerateLayerType(GpbCompilerStackLayer &stLayer, GpbCompilerStackLayer *pstUpper,
                                   const google::protobuf::FieldDescriptor *pstField, const char *pcPath);
    unsigned int AddLayerToUpperLayer(const GpbCompilerStackLayer &stUpper, GpbCompilerStackLayer &stLayer,
                                      const google::protobuf::FieldDescriptor *pstField);
    unsigned int FillLeafField(const GpbCompilerStackLayer &stLayer, const google::protobuf::FieldDescriptor *pstField,
                               char *pcValue, char *pcNodeName);
    /**@}*/

    std::string strGpbBuffer;                             /**< serialized top message */
    unsigned int uiMemHandle;                             /**< module id of the library context */
    GpbStrTransFunc astStrTrans[GPB_FIELD_TYPE_NUM] = {}; /**< translators by field type, null for none */

    friend class GpbExactXmlWalk; /**< the walk of the lossless setting */
};

/**
 * Turns a JSON document into a serialized GPB message, as a whole or below one of its items, and tells the leaves of
 * the message that holds an item.
 *
 * The root is the item of the top-level container, with the container's name as its key; an item lies anywhere below
 * it. The trees are read only and stay the caller's.
 */
class GPB_API GpbJsonCompiler : public GpbXmlCompilerBase
{
public:
    /** As GpbXmlCompilerBase. */
    GpbJsonCompiler(const google::protobuf::FileDescriptor *pstFile,
                    const google::protobuf::compiler::Importer *pstImport, void *pvHandle);
    ~GpbJsonCompiler() override;

    /**
     * Fills the messages from `pstItem` and its later siblings; all of `pstRoot` when the two are the same.
     *
     * @return 0; GPB_COMPILER_ERR; GPB_COMPILER_JSON_STACK_FULL. A failure leaves the earlier result as it is
     */
    unsigned int EncodeJson(struct cJSON *pstRoot, struct cJSON *pstItem) override;

    /**
     * Fills a GpbMdlAttr with the leaves of the message that holds the values of `pstItem`.
     *
     * The names are allocated under the module id of `pvHandle` and freed by the caller with ZMP_Free_F. A failure
     * frees the names stored so far and sets their entries to null; the count stays as it was. The count wraps at 256,
     * and the record then starts over: the names of the first 256 leaves are freed.
     *
     * @return as EncodeJson
     */
    unsigned int GetMdlAttr(const void *pvHandle, struct cJSON *pstRoot, struct cJSON *pstItem,
                            void *pvMdlAttr) override;

    /** GetGpbBuffer. */
    const char *GetResult(unsigned int *puiLen) override;

    /** Serializes the message of the last encode's item; null with length 0 when there is none or a required field is
     * missing. */
    const char *GetGpbBuffer(unsigned int *puiLen);

    /** The top message in protobuf's text form, or "There is no valid encode message.". */
    std::string GetEncodeDebugString() const;

protected:
    /**@{*/
    /** A step of an encode. */
    unsigned int EncodeItem(struct cJSON *pstRoot, struct cJSON *pstItem);
    unsigned int FillMdlAttr(const void *pvHandle, struct cJSON *pstRoot, struct cJSON *pstItem, void *pvMdlAttr);
    unsigned int GPB_CompilerStackPrepare(struct cJSON *pstRoot, struct cJSON *pstItem, GpbCompilerStack &stStack);
    unsigned int GPB_CompilerStackInitTop(struct cJSON *pstRoot, GpbCompilerStackLayer &stLayer);
    unsigned int GPB_PushItemAncestors(struct cJSON *pstRoot, struct cJSON *pstItem, GpbCompilerStack &stStack);
    static struct cJSON *GPB_GetItemAncestors(struct cJSON *pstRoot, struct cJSON *pstItem,
                                              struct cJSON **ppstAncestors, unsigned int uiCapacity,
                                              unsigned int uiDepth);
    unsigned int GPB_PushItemDescriptor(const char *pcKey, GpbCompilerStack &stStack);
    static unsigned int GPB_GetItemSerializeLayer(const GpbCompilerStack &stStack, struct cJSON *pstRoot,
                                                  struct cJSON *pstItem);
    unsigned int GPB_FillLayerMessage(const GpbCompilerStackLayer &stUpper, GpbCompilerStackLayer &stLayer,
                                      const google::protobuf::FieldDescriptor *pstField);
    void GenerateXPath(GpbCompilerStackLayer &stLayer, const GpbCompilerStackLayer *pstUpper,
                       const google::protobuf::FieldDescriptor *pstField);
    /**@}*/

    /**@{*/
    /** The walk; `pstParent` holds the items and lends its key to those that have none, the members of an array. */
    unsigned int IterJson(struct cJSON *pstFirst, struct cJSON *pstParent, GpbCompilerStack &stStack);
    unsigned int ProcJsonContainerNode(struct cJSON *pstItem, struct cJSON *pstParent, GpbCompilerStack &stStack);
    unsigned int ProcJsonArrayNode(struct cJSON *pstArray, GpbCompilerStack &stStack);
    unsigned int ProcLeafListNode(struct cJSON *pstArray, struct cJSON *pstMember, GpbCompilerStack &stStack);
    unsigned int ProcJsonLeafNode(struct cJSON *pstItem, GpbCompilerStack &stStack);
    unsigned int ProcJsonEmptyLeafNode(struct cJSON *pstItem, GpbCompilerStack &stStack,
                                       const google::protobuf::FieldDescriptor *pstField);
    unsigned int FillLeafField(const GpbCompilerStackLayer &stLayer, const google::protobuf::FieldDescriptor *pstField,
                               struct cJSON *pstItem);
    /**@}*/

    /**@{*/
    /** A step of filling model attributes. */
    static unsigned int GPB_FillLeafMdlAttr(const void *pvHandle, const google::protobuf::Descriptor *pstDescriptor,
                                            GpbMdlAttr &stMdlAttr);
    static unsigned int GPB_ConvertDataType(unsigned int uiFieldType, uint32_t &uiDataType);
    static void GPB_ConvertGpbNameToJson(const google::protobuf::FieldDescriptor *pstField, char *pcName);
    /**@}*/

    /** The array whose member an item is; null for an item with a key, and for one that is not in the tree. */
    static struct cJSON *FindArrayOf(struct cJSON *pstRoot, struct cJSON *pstItem);

    /** Opens the message of a field of the top layer's message, and puts its layer on the stack. */
    unsigned int PushLayer(const google::protobuf::FieldDescriptor *pstField, GpbCompilerStack &stStack);

    /** Makes a message the top message, and frees the earlier ones that the compiler points to no longer. */
    void KeepTopMessage(google::protobuf::Message *pstTop);

    std::string strGpbBuffer; /**< serialized message of the last encode's item */
    google::protobuf::Message *pstLayerMessage =
        nullptr; /**< message of the last encode's item, a part of its top message */
    GpbStrTransFunc astStrTrans[GPB_FIELD_TYPE_NUM] = {}; /**< translators by field type, null for none */

    /** The last encode's top message, once model attributes have put another one in its place. */
    std::unique_ptr<google::protobuf::Message> pstEncodedMessage;

    friend class GpbExactJsonWalk; /**< the walk of the lossless setting */
};

/** Turns an XML document into a JSON document. */
class GPB_API GpbXmlCompilerJson : public GpbXmlCompilerBase
{
public:
    /**
     * As GpbXmlCompilerBase.
     *
     * @param pstFile    the module's proto file
     * @param pstImport  importer whose pool holds the file; outlives the compiler
     * @param pvHandle   library context; outlives the compiler
     * @param ucFlag     1: 64-bit integers become JSON numbers, else JSON strings
     */
    GpbXmlCompilerJson(const google::protobuf::FileDescriptor *pstFile,
                       const google::protobuf::compiler::Importer *pstImport, void *pvHandle, unsigned char ucFlag);
    ~GpbXmlCompilerJson() override;

    /**
     * Makes the JSON tree of a document, which takes the place of the earlier result.
     *
     * @return 0; GPB_COMPILER_ERR; GPB_COMPILER_NO_ROOT; what ended the walk
     */
    unsigned int Encode(struct _xmlDoc *pstDoc) override;

    /** Prints the tree without white space, once per encode; null with length 0 when there is none. */
    const char *GetResult(unsigned int *puiLen) override;

    /** Frees the tree and its text. */
    void ClearResult();

protected:
    /**@{*/
    /** A step of an encode. */
    void InitTransTbl(unsigned char ucFlag);
    unsigned int EncodeRoot(struct _xmlNode *pstRoot);
    unsigned int IterXmlDoc(const google::protobuf::Descriptor *pstDescriptor, struct _xmlNode *pstNode,
                            struct cJSON *pstParent);
    unsigned int ProcXmlContainerNode(const google::protobuf::Descriptor *pstDescriptor, struct _xmlNode *pstNode,
                                      struct cJSON *pstParent);
    unsigned int ProcXmlPresenceContainerNode(const google::protobuf::Descriptor *pstDescriptor,
                                              struct _xmlNode *pstNode, struct cJSON *pstParent);
    unsigned int ProcXmlLeafNode(const google::protobuf::Descriptor *pstDescriptor, struct _xmlNode *pstNode,
                                 struct cJSON *pstParent);
    unsigned int ProcXmlEmptyLeafNode(const google::protobuf::Descriptor *pstDescriptor, struct _xmlNode *pstNode,
                                      struct cJSON *pstParent);
    bool HasRoomFor(struct _xmlNode *pstNode);
    unsigned int OpenTopContainer(struct _xmlNode *pstNode, struct cJSON *pstParent, struct cJSON *&pstObject,
                                  const google::protobuf::Descriptor *&pstDescriptor) const;
    const google::protobuf::FieldDescriptor *FindField(const google::protobuf::Descriptor *pstDescriptor,
                                                       struct _xmlNode *pstNode);
    void ReportNoField(struct _xmlNode *pstNode);
    struct cJSON *CreateJsTopNode(struct _xmlNode *pstNode, struct cJSON *pstParent) const;
    struct cJSON *CreateJsObject(const google::protobuf::FieldDescriptor *pstField, struct _xmlNode *pstNode,
                                 struct cJSON *pstParent);
    struct cJSON *GetJsListNode(const google::protobuf::FieldDescriptor *pstField, struct _xmlNode *pstNode,
                                struct cJSON *pstParent);
    unsigned int FillLeafText(const google::protobuf::FieldDescriptor *pstField, struct _xmlNode *pstNode,
                              struct cJSON *pstParent, const char *pcText);
    unsigned int FillLeafField(const google::protobuf::FieldDescriptor *pstField, struct _xmlNode *pstNode,
                               struct cJSON *pstParent, const char *pcText);
    unsigned int CreateJsField(const google::protobuf::FieldDescriptor *pstField, struct _xmlNode *pstNode,
                               struct cJSON *pstParent, const char *pcText, GpbJsonAddFunc pfnAdd);
    static bool XmlNodeIsBitsType(const google::protobuf::FieldDescriptor *pstField, struct _xmlNode *pstNode);
    /**@}*/

    char *pcResult = nullptr;            /**< printed text, or null; allocated under the module id */
    struct cJSON *pstJsonRoot = nullptr; /**< tree of the last encode, or null */
    unsigned int uiResultLen = 0;        /**< length of pcResult */

    /** The array of each repeated field; one per field and document, whatever its parent. */
    std::map<const google::protobuf::FieldDescriptor *, struct cJSON *> mapListNode;
    unsigned int uiMemHandle;                          /**< module id of the library context */
    GpbJsonAddFunc apfnTrans[GPB_FIELD_TYPE_NUM] = {}; /**< adders by field type, null for none */
    unsigned int uiDepth = 0;                          /**< containers that are open in the walk */

    friend class GpbExactXmlToJson; /**< the walk of the lossless setting */
};

#endif
