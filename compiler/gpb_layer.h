// What the compilers that fill messages do alike: making layers, owning the top message, serializing.
#ifndef GPB_COMPILER_GPB_LAYER_H
#define GPB_COMPILER_GPB_LAYER_H

#include <cstdint>
#include <string>

#include "compiler/gpb_record.h"
#include "core/gpb_log.h"
#include "gpb_templatelib/gpb_compiler.h"

class GpbRecordPlan;

/// The top layer, or the unused first slot of an empty stack, in which nothing is found.
inline GpbCompilerStackLayer &GpbTopLayer(GpbCompilerStack &stack)
{
    return stack.astLayer[stack.uiLayerNum - (stack.uiLayerNum == 0 ? 0 : 1)];
}

/// The full name of the message type of a top-level container; false when the container's name is null or too long.
bool GpbTopTypeName(const google::protobuf::FileDescriptor &file, const char *containerName, std::string &typeName);

/// What a top layer is made from.
struct GpbTopLayerSource
{
    void *libHandle;
    const google::protobuf::FileDescriptor *file;
    const google::protobuf::compiler::Importer *importer;
    google::protobuf::DynamicMessageFactory *factory;
    GpbRecordPlan *plan;
    bool needsMessage; ///< somebody may look at the message, so it must not be a record
};

/// The function and the lines under which a compiler reports that its top layer cannot be made.
struct GpbTopLayerLog
{
    const char *function;
    uint32_t typeLine;
    uint32_t prototypeLine;
    uint32_t messageLine;
};

/// Fills the layer of a top-level container, with a new message that the caller owns; 0 or a GPB_COMPILER_ code. The
/// message is a record where that will do.
unsigned int GpbSetUpTopLayer(const GpbTopLayerSource &source, const char *containerName, const GpbTopLayerLog &log,
                              GpbCompilerStackLayer &layer);

/// Appends the path of the layer of `field` below `upper`; without an upper layer, below the file's package.
void GpbAppendXPath(GpbCompilerStackLayer &layer, const GpbCompilerStackLayer *upper,
                    const google::protobuf::FileDescriptor &file, const google::protobuf::FieldDescriptor &field);

/// Whether anybody listens to what cannot be encoded, which is told with the paths of layers.
inline bool GpbArePathsLogged(const void *libHandle)
{
    return GpbLogOpen(libHandle, GPB_LOG_ERROR) || GpbLogOpen(libHandle, GPB_LOG_SKIP);
}

/// Whether anybody can read the path of a layer below the top: one who listens, or a class that is derived from a
/// compiler, whose messages are no records.
inline bool GpbIsPathRead(const void *libHandle, const GpbCompilerStackLayer &layer)
{
    return GpbArePathsLogged(libHandle) || GpbRecordOf(layer.pstMessage) == nullptr;
}

/// Puts a layer for a message on a stack that has a top layer and room for another one. Its path is empty: a slot keeps
/// the memory of its path, so that the entries of a list need it once.
GpbCompilerStackLayer &GpbPushLayer(GpbCompilerStack &stack, google::protobuf::Message *message,
                                    const google::protobuf::Descriptor *type);

/// Opens the layer of a container in a record, and puts it on the stack. False, and nothing is done, when that takes
/// more steps: below other messages, for a case of a choice, for what is no container, on a full stack, and while
/// somebody reads the paths.
bool GpbPushRecordLayer(const void *libHandle, GpbCompilerStack &stack, const google::protobuf::FieldDescriptor *field);

/// The path of the layer of `field` below `upper`, for a log line.
std::string GpbXPathOf(const GpbCompilerStackLayer &upper, const google::protobuf::FieldDescriptor &field);

/// The message that a layer of a message field fills: a new entry of a list, the one message of a container. Null when
/// the field is none of `upper`'s, which protobuf would not survive.
google::protobuf::Message *GpbOpenLayerMessage(google::protobuf::Message *upper,
                                               const google::protobuf::FieldDescriptor *field);

/// Owns the message of layer 0 until a compiler takes it.
class GpbTopMessage
{
public:
    explicit GpbTopMessage(GpbCompilerStack &stack) : top_(stack.astLayer[0]) {}
    ~GpbTopMessage();

    GpbTopMessage(const GpbTopMessage &) = delete;
    GpbTopMessage &operator=(const GpbTopMessage &) = delete;

    google::protobuf::Message *Release();

private:
    GpbCompilerStackLayer &top_;
};

/// The lines and texts with which a compiler reports on its result.
struct GpbSerializeLog
{
    const char *function;
    uint32_t noMessageLine;
    const char *noMessageText;
    uint32_t notInitializedLine;
    const char *notInitializedText;
    uint32_t failedLine;
    const char *failedText;
    uint32_t doneLine;
    const char *doneText; ///< takes the length
};

/// Serializes a message into a compiler's buffer; null with length 0 when there is no message, when it lacks a required
/// field, or when it cannot be serialized. A null length does nothing.
const char *GpbSerialize(void *libHandle, const google::protobuf::Message *message, const GpbSerializeLog &log,
                         std::string &buffer, unsigned int *length);

/// A compiler's top message in protobuf's text form, or what stands for none.
std::string GpbDebugText(const google::protobuf::Message *message);

#endif
