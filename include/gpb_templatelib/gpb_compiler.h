/**
 * Document compilers: the layer stack, the leaf value translators and the compiler classes.
 *
 * A compiler walks an instance document depth first and fills a tree of protobuf messages through reflection. The
 * stack holds one layer per open message; a leaf's text is stored by the translator of its field's type.
 *
 * Threads: a compiler and its stack are used by one thread at a time.
 */
#ifndef GPB_TEMPLATELIB_GPB_COMPILER_H
#define GPB_TEMPLATELIB_GPB_COMPILER_H

#include <cstdint>
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

class GpbFieldFinder;

/** Result codes of the compilers. */
#define GPB_COMPILER_OK 0U
#define GPB_COMPILER_ERR 1U     /**< null document, no reflection, presence container at the top, ancestors */
#define GPB_COMPILER_NO_ROOT 2U /**< document without root element */
#define GPB_COMPILER_NO_MESSAGE_TYPE 3U
#define GPB_COMPILER_NO_PROTOTYPE 4U
#define GPB_COMPILER_NO_MESSAGE 5U /**< message not created */
#define GPB_COMPILER_NO_FIELD 6U
#define GPB_COMPILER_NOT_A_MESSAGE 7U /**< a container's field is no message */
#define GPB_COMPILER_NO_TRANSLATOR 8U
#define GPB_COMPILER_NO_ENUM_VALUE 9U
#define GPB_COMPILER_STACK_FULL 10U
#define GPB_COMPILER_ROOT_NAME_TOO_LONG 11U

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
    GpbCompilerStackLayer astLayer[GPB_COMPILER_STACK_DEPTH];
    uint32_t uiLayerNum = 0;
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
    GPB_API const char *GpbXmlCompilerBase_EnumYang2Proto(const char *pcYangValue, const char *pcEnumTypeName,
                                                          char *pcOut, unsigned int uiOutSize);

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
 * Numbers are read in base 10 without any check: the document was validated against its YANG module. ToBool stores
 * false for exactly "false". ToEnum takes a list of values separated by single blanks.
 *
 * @return 0; 1 when the layer has no message, or the field is not of that message or not of the translator's kind;
 *         9 (ToEnum) when the value is not found
 */
using GpbStrTransFunc = unsigned int (*)(const GpbCompilerStackLayer &stLayer,
                                         const google::protobuf::FieldDescriptor *pstField, const char *pcValue);

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

    virtual unsigned int Encode(struct _xmlDoc *pstDoc);
    virtual unsigned int EncodeJson(struct cJSON *pstRoot, struct cJSON *pstItem);
    virtual unsigned int GetMdlAttr(const void *pvHandle, struct cJSON *pstRoot, struct cJSON *pstItem,
                                    void *pvMdlAttr);
    virtual const char *GetResult(unsigned int *puiLen);

    GpbXmlCompilerBase(const GpbXmlCompilerBase &) = delete;
    GpbXmlCompilerBase &operator=(const GpbXmlCompilerBase &) = delete;

    /** 1 for a character that cannot stand in an enum value name; filled by the first compiler of the process. */
    static unsigned char aucSpecialCharTable[256];

    /** The library context whose print slots the compiler's log lines go to. */
    void *GetLibHandle() const { return pvLibHandle; }

protected:
    void *pvLibHandle;
    const google::protobuf::FileDescriptor *pstFileDesc;
    const google::protobuf::compiler::Importer *pstImporter;
    google::protobuf::Message *pstMessage = nullptr; /**< top message of the last successful encode, or null; owned */
    google::protobuf::DynamicMessageFactory *pstMsgFactory = nullptr;
    unsigned char ucStopOnError = 0; /**< non-zero: a walk stops at the first container or leaf that fails */

    /** Remembers which field a node name stands for, so that a name is searched once per message type. */
    std::unique_ptr<GpbFieldFinder> pstFieldFinder;

    /** Non-zero: memory ran out while the factory may have been making a type; nothing more is encoded with it. */
    unsigned char ucFactoryBroken = 0;
};

/** Turns an XML document into a serialized GPB message. */
class GPB_API GpbXmlCompiler : public GpbXmlCompilerBase
{
public:
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
    unsigned int EncodeRoot(struct _xmlNode *pstRoot);
    unsigned int IterXmlDoc(struct _xmlNode *pstNode, GpbCompilerStack &stStack);
    unsigned int ProcXmlContainerNode(struct _xmlNode *pstNode, GpbCompilerStack &stStack);
    unsigned int ProcXmlPresenceContainerNode(struct _xmlNode *pstNode, GpbCompilerStack &stStack);
    unsigned int ProcXmlLeafNode(struct _xmlNode *pstNode, GpbCompilerStack &stStack);
    unsigned int ProcXmlEmptyLeafNode(struct _xmlNode *pstNode, GpbCompilerStack &stStack);
    unsigned int ProcCompilerTopLayer(struct _xmlNode *pstRoot, GpbCompilerStack &stStack);
    unsigned int InitCompilerTopLayer(struct _xmlNode *pstRoot, GpbCompilerStackLayer &stLayer);
    unsigned int GenerateLayer(GpbCompilerStackLayer &stLayer, GpbCompilerStackLayer *pstUpper,
                               const google::protobuf::FieldDescriptor *pstField);
    void GenerateXPath(GpbCompilerStackLayer &stLayer, GpbCompilerStackLayer *pstUpper,
                       const google::protobuf::FieldDescriptor *pstField);
    unsigned int AddLayerToUpperLayer(const GpbCompilerStackLayer &stUpper, GpbCompilerStackLayer &stLayer,
                                      const google::protobuf::FieldDescriptor *pstField);
    unsigned int FillLeafField(const GpbCompilerStackLayer &stLayer, const google::protobuf::FieldDescriptor *pstField,
                               char *pcValue, char *pcNodeName);

    std::string strGpbBuffer; /**< serialized top message */
    unsigned int uiMemHandle; /**< module id of the library context */
    GpbStrTransFunc astStrTrans[GPB_FIELD_TYPE_NUM] = {};
};

#endif
