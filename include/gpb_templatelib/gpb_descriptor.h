/**
 * @file
 * Descriptor and name services: protobuf descriptors by YANG node name, and YANG names and values in protobuf form.
 *
 * The `.proto` files are generated from YANG modules (RFC 7950) by fixed rules: a top-level container becomes a
 * top-level message named in CamelCase; a node becomes a field named in lower case with "_" for "-"; a choice becomes
 * a oneof whose members are messages that hold the nodes of a case; a node whose name would clash carries its nesting
 * depth as a decimal suffix. The functions here undo these rules.
 *
 * All functions are stateless, log nothing, and may be called from several threads at once as long as each buffer is
 * used by one thread. Descriptors are borrowed, never owned. A null descriptor is accepted everywhere and finds
 * nothing; in-place functions do nothing for null and for the empty text.
 */
#ifndef GPB_TEMPLATELIB_GPB_DESCRIPTOR_H
#define GPB_TEMPLATELIB_GPB_DESCRIPTOR_H

#include <cstdint>

#include "gpb_api.h"
#include "gpb_lib.h"

/** One value of an enumeration, as Gpb_ModuleAdapt_GetEnumList returns it. */
struct GpbYangEnumItem
{
    int32_t iValue;                  /**< protobuf value number */
    char acName[GPB_ENUM_NAME_SIZE]; /**< protobuf value name */
};

extern "C"
{

/* ---- descriptor navigation ---- */

/**
 * Finds the field of a YANG node: by its name, by its name with the layer number, then among the oneof cases.
 *
 * @param iLayer         layer number of the message, the suffix that tells clashing names apart
 * @param ppstCaseField  out: the case field that leads to the field; written only when it was found in a case
 * @return the field, or null
 */
GPB_API const google::protobuf::FieldDescriptor *
GPB_FindFieldDescByNodeName(const google::protobuf::Descriptor *pstMessage, const char *pcNodeName, int32_t iLayer,
                            const google::protobuf::FieldDescriptor **ppstCaseField);

/** As GPB_FindFieldDescByNodeName for a leaf: a leaf of that name inside a case wins over a container. */
GPB_API const google::protobuf::FieldDescriptor *
GPB_GetLeafFieldDescByNodeName(const char *pcNodeName, const google::protobuf::Descriptor *pstMessage, int32_t iLayer,
                               const google::protobuf::FieldDescriptor **ppstCaseField);

/** Finds the field whose lower-case name is `pcName` followed by the layer number in decimal; null if there is
 * none. */
GPB_API const google::protobuf::FieldDescriptor *
GPB_GetDescFieldByRepeateName(const google::protobuf::Descriptor *pstMessage, const char *pcName, int32_t iLayer);

/**
 * Finds a field inside the oneof cases of a message.
 *
 * @param pcName  lower-case field name
 * @return the field, with its case field in `*ppstCaseField`; null when there is none, when the cases fill the
 *         collection of GPB_MAX_CASE_FIELDS, or when a case message that is not nested in the message is met first
 */
GPB_API const google::protobuf::FieldDescriptor *
GPB_GetFieldDescByOneof(const char *pcName, const google::protobuf::Descriptor *pstMessage, int32_t iLayer,
                        const google::protobuf::FieldDescriptor **ppstCaseField);

/**
 * Collects the message-typed members of a message's oneofs, and what lies in them, depth first.
 *
 * @param ppstFields  out: room for `uiCapacity` fields
 * @param puiCount    in: fields already collected; out: the new count, untouched when the result is 1
 * @return 0 done, 1 the array is full
 */
GPB_API uint32_t GPB_GetOneofCaseChilds(const google::protobuf::Descriptor *pstMessage,
                                        const google::protobuf::FieldDescriptor **ppstFields, uint32_t uiCapacity,
                                        uint32_t *puiCount);

/** The descent of GPB_GetOneofCaseChilds: the message-typed fields of a case message. Same arguments and results.
 */
GPB_API uint32_t GPB_GetEachOneofCaseChilds(const google::protobuf::Descriptor *pstMessage,
                                            const google::protobuf::FieldDescriptor **ppstFields, uint32_t uiCapacity,
                                            uint32_t *puiCount);

/** Layer number of a message: 1 for a top-level message, one more per enclosing message; 0 for null. */
GPB_API uint32_t GPB_GetDescriptorLayerNum(const google::protobuf::Descriptor *pstMessage);

/** Layer number of a message nested in another one of layer `iLayer`; 0 when it is not nested there. */
GPB_API uint32_t GPB_GetSubDescriptorLayerNum(const google::protobuf::Descriptor *pstSubMessage,
                                              const google::protobuf::Descriptor *pstMessage, int32_t iLayer);

/** The file descriptor of a loaded module, or null. The module name is used as given. */
GPB_API const google::protobuf::FileDescriptor *Gpb_ModuleAdapt_GetFileHandle(const GpbLibContext *pstCtx,
                                                                              const char *pcModuleName);

/**
 * Finds the field of a leaf by schema path.
 *
 * @param pstCtx       not used
 * @param pcPath       "top/child/...", module prefixes allowed, without a leading "/"
 * @param pcLeafName   name of the leaf
 * @return the field, or null
 */
GPB_API const google::protobuf::FieldDescriptor *
Gpb_ModuleAdapt_GetFieldHandle(const GpbLibContext *pstCtx, const google::protobuf::FileDescriptor *pstFile,
                               const char *pcPath, const char *pcLeafName);

/** The message type of the field of exactly that name, or null. */
GPB_API const google::protobuf::Descriptor *
Gpb_ModuleAdapt_GetMessageDescOfField_(const google::protobuf::Descriptor *pstMessage, const char *pcFieldName);

/**
 * Lists the values of an enumeration leaf under their YANG names.
 *
 * @param ppstItems  out: array in declaration order, freed by the caller with ZMP_Free_F
 * @param puiCount   out: number of items
 * @return 0; 1 no enum type, no memory, or a value name without "_"; 3 no such field; 4 the field is no enum.
 *         The out arguments stay untouched on every failure
 */
GPB_API uint32_t Gpb_ModuleAdapt_GetEnumList(const GpbLibContext *pstCtx,
                                             const google::protobuf::FileDescriptor *pstFile, const char *pcPath,
                                             const char *pcLeafName, GpbYangEnumItem **ppstItems, uint32_t *puiCount);

/* ---- names and values ---- */

/**
 * Copies a path, dropping in each segment everything up to and including its last ":".
 *
 * Copying stops as soon as `uiSize - 1` characters stand in the destination, even where a later ":" would have
 * removed some of them. Null pointers and a size of 0 write nothing.
 */
GPB_API void Gpb_Util_RemoveModuleName(char *pcDest, uint32_t uiSize, const char *pcSrc);

/** Every "-" becomes "_", in place. */
GPB_API void Gpb_Util_ConverDashToUnderline(char *pcText);

/** Every "_" becomes "-", in place. */
GPB_API void Gpb_Util_ConverUnderlineToDash(char *pcText);

/** ASCII letters become lower case, in place. */
GPB_API void Gpb_Util_StrToLowcase(char *pcText);

/** Removes the first character, in place. */
GPB_API void Gpb_Util_CutFirstChar(char *pcText);

/** Copies what follows the first "_" of an enum value name. 0; 1 for null, no "_", or too little room. */
GPB_API uint32_t Gpb_Util_ConvertProtoEnumToYangEnum(const char *pcProtoName, char *pcDest, uint32_t uiSize);

/** A top-level container name becomes its message name, in place: "ipv4-address" gives "Ipv4Address". */
GPB_API void Gpb_Util_ConvertTopLayerName(char *pcName);

/**
 * A container name becomes its nested message name, in place; only "-" separates, "_" is kept.
 *
 * A name that comes out as its field's spelling, which is the name with "_" for "-", gets "_1" appended unless
 * `uiNoSuffix` is non-zero, so the buffer needs room for two more characters: "A-B" gives "A_B_1".
 *
 * @return 0 when the name came out as its field's spelling, else the comparison of the new name with that spelling
 */
GPB_API int Gpb_util_ConverContainerName(char *pcName, uint32_t uiNoSuffix);

/** Copies a text under a module id; freed by the caller with ZMP_Free_F. Null for null or without memory. */
GPB_API char *Gpb_util_StrDup(uint32_t uiModuleId, const char *pcSrc, uint32_t *puiLen);

/** Makes the lower-case field name of a node name. 0; 1 when it does not fit, the destination being empty then. */
GPB_API uint32_t GPB_ConvertXmlNodeName(const char *pcSrc, char *pcDest, uint32_t uiSize);

/**
 * Writes the path of an XML element, "/root/.../element", into a zeroed buffer.
 *
 * @return 0, also for null and the document node, which write nothing; 1 when more than 32 elements would take
 * part, the path does not fit, or an element has no destination
 */
GPB_API uint32_t GPB_BuildXmlNodePath(struct _xmlNode *pstNode, char *pcDest, uint32_t uiSize);

/** Looks an identity leaf and its value up in the identity-prefix table. 0 found, with the module name; 1 not. */
GPB_API uint32_t GPB_GetXmlNodeLeafIdtType(struct _xmlNode *pstNode, const char *pcValue, const char **ppcModuleName);

/** 0 when the element is a leaf of a bits type (RFC 7950, section 9.7) known to the library, 1 otherwise. */
GPB_API uint32_t GPB_GetXmlNodeLeafBitsType(struct _xmlNode *pstNode);

/**
 * Replaces the prefix of an identity value by its module name: "oc-telemetry-types:GRPC" gives
 * "openconfig-telemetry-types:GRPC".
 *
 * @return a new text, freed by the caller with ZMP_Free_F; null when nothing is to be replaced: the element
 * declares no namespace itself, the leaf or value is not in the table, the value has no ":", or memory cannot be
 * had
 */
GPB_API char *GPB_IdentityNodeValueUpdate(uint32_t uiModuleId, struct _xmlNode *pstNode, const char *pcValue);

} // extern "C"

#endif
