#include "compiler/gpb_layer.h"

#include <cstring>
#include <google/protobuf/compiler/importer.h>
#include <google/protobuf/descriptor.h>
#include <google/protobuf/dynamic_message.h>
#include <google/protobuf/message.h>
#include <memory>
#include <utility>

#include "compiler/gpb_record.h"
#include "compiler/gpb_record_plan.h"
#include "compiler/gpb_record_writer.h"
#include "compiler/gpb_sub_message.h"
#include "core/gpb_barrier.h"
#include "core/gpb_log.h"
#include "core/gpb_protobuf_compat.h"
#include "gpb_templatelib/gpb_descriptor.h"
#include "platform/safe_string.h"

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;
using google::protobuf::FileDescriptor;
using google::protobuf::Message;

namespace
{

constexpr uint32_t NO_SUFFIX = 1;

// The most bytes that protobuf serializes a message into.
constexpr size_t MAX_MESSAGE_SIZE = INT32_MAX;

bool IsWhole(const Message &message)
{
    const GpbRecord *record = GpbRecordOf(&message);
    return record == nullptr ? message.IsInitialized() : record->IsWhole();
}

// Makes the bytes of a message; false when there are too many of them.
bool Serialize(const Message &message, std::string &buffer)
{
    const GpbRecord *record = GpbRecordOf(&message);
    if (record == nullptr)
    {
        return message.SerializeToString(&buffer);
    }
    GpbBackwardWriter writer(MAX_MESSAGE_SIZE, record->ExpectedBytes());
    GpbWriteRecord(*record, writer);
    buffer = writer.Take();
    return true;
}

} // namespace

bool GpbTopTypeName(const FileDescriptor &file, const char *containerName, std::string &typeName)
{
    char name[GPB_NAME_SIZE] = {};
    if (containerName == nullptr || strcpy_s(name, sizeof(name), containerName) != 0)
    {
        return false;
    }
    (void)Gpb_util_ConverContainerName(name, NO_SUFFIX);
    typeName.reserve(GpbPbPackage(file).size() + 1 + std::strlen(name));
    typeName.append(GpbPbPackage(file)).append(".").append(name);
    return true;
}

unsigned int GpbSetUpTopLayer(const GpbTopLayerSource &source, const char *containerName, const GpbTopLayerLog &log,
                              GpbCompilerStackLayer &layer)
{
    if (!GpbTopTypeName(*source.file, containerName, layer.strXPath))
    {
        return GPB_COMPILER_ROOT_NAME_TOO_LONG;
    }
    const char *path = layer.strXPath.c_str();
    layer.pstDescriptor = source.importer->pool()->FindMessageTypeByName(layer.strXPath);
    if (layer.pstDescriptor == nullptr)
    {
        GPB_LOG_AS(source.libHandle, GPB_LOG_SKIP, log.function, log.typeLine, "Fail to find message type for path %s.",
                   path);
        return GPB_COMPILER_NO_MESSAGE_TYPE;
    }
    const GpbTopType type = source.plan->TopTypeOf(layer.pstDescriptor);
    if (type.record != nullptr && !source.needsMessage)
    {
        layer.pstMessage = GpbRecord::NewTop(*type.record).release();
        return GPB_COMPILER_OK;
    }
    // A factory makes the types of the fields by calling itself. The types that it makes later on, for lists and
    // choices, are all reached from the top, so they need no look of their own.
    const Message *prototype = type.fitsFactory ? source.factory->GetPrototype(layer.pstDescriptor) : nullptr;
    if (prototype == nullptr)
    {
        GPB_LOG_AS(source.libHandle, GPB_LOG_ERROR, log.function, log.prototypeLine,
                   "Fail to get proto type for path %s.", path);
        return GPB_COMPILER_NO_PROTOTYPE;
    }
    layer.pstMessage = prototype->New();
    if (layer.pstMessage == nullptr)
    {
        GPB_LOG_AS(source.libHandle, GPB_LOG_ERROR, log.function, log.messageLine, "Fail to new message for path %s",
                   path);
        return GPB_COMPILER_NO_MESSAGE;
    }
    return GPB_COMPILER_OK;
}

void GpbAppendXPath(GpbCompilerStackLayer &layer, const GpbCompilerStackLayer *upper, const FileDescriptor &file,
                    const FieldDescriptor &field)
{
    const std::string &before = upper == nullptr ? GpbPbPackage(file) : upper->strXPath;
    std::string &path = layer.strXPath;
    path.reserve(path.size() + before.size() + 1 + GpbPbName(field).size());
    path.append(before).append(".").append(GpbPbName(field));
}

GpbCompilerStackLayer &GpbPushLayer(GpbCompilerStack &stack, Message *message, const Descriptor *type)
{
    GpbCompilerStackLayer &layer = stack.astLayer[stack.uiLayerNum];
    layer.strXPath.clear();
    layer.pstDescriptor = type;
    layer.pstMessage = message;
    ++stack.uiLayerNum;
    return layer;
}

bool GpbPushRecordLayer(const void *libHandle, GpbCompilerStack &stack, const FieldDescriptor *field)
{
    GpbRecord *record = GpbRecordOf(GpbTopLayer(stack).pstMessage);
    const GpbRecordField *container = record == nullptr ? nullptr : record->Type().FieldOf(field);
    if (container == nullptr || container->type == nullptr || container->choice != 0 ||
        stack.uiLayerNum == GPB_COMPILER_MAX_LAYERS || GpbArePathsLogged(libHandle))
    {
        return false;
    }
    GpbPushLayer(stack, record->Open(*container), container->type->Descriptor());
    return true;
}

std::string GpbXPathOf(const GpbCompilerStackLayer &upper, const FieldDescriptor &field)
{
    return upper.strXPath + "." + std::string(GpbPbName(field));
}

Message *GpbOpenLayerMessage(Message *upper, const FieldDescriptor *field)
{
    if (upper == nullptr || upper->GetDescriptor() != field->containing_type())
    {
        return nullptr;
    }
    if (GpbRecord *record = GpbRecordOf(upper))
    {
        return record->Open(*record->Type().FieldOf(field));
    }
    if (upper->GetReflection() == nullptr)
    {
        return nullptr;
    }
    return field->is_repeated() ? GpbAddSubMessage(upper, field) : GpbMutableSubMessage(upper, field);
}

GpbTopMessage::~GpbTopMessage()
{
    delete top_.pstMessage;
    top_.pstDescriptor = nullptr;
    top_.pstMessage = nullptr;
}

Message *GpbTopMessage::Release()
{
    return std::exchange(top_.pstMessage, nullptr);
}

const char *GpbSerialize(void *libHandle, const Message *message, const GpbSerializeLog &log, std::string &buffer,
                         unsigned int *length)
{
    if (length == nullptr)
    {
        return nullptr;
    }
    *length = 0;
    if (message == nullptr)
    {
        GPB_LOG_AS(libHandle, GPB_LOG_ERROR, log.function, log.noMessageLine, "%s", log.noMessageText);
        return nullptr;
    }
    // The look for required fields allocates, too: a failure of it is one to serialize.
    bool isInitialized = true;
    const bool isDone = GpbNoThrow(false,
                                   [&]
                                   {
                                       isInitialized = IsWhole(*message);
                                       return isInitialized && Serialize(*message, buffer);
                                   });
    if (!isInitialized)
    {
        GPB_LOG_AS(libHandle, GPB_LOG_ERROR, log.function, log.notInitializedLine, "%s", log.notInitializedText);
        return nullptr;
    }
    if (!isDone)
    {
        GPB_LOG_AS(libHandle, GPB_LOG_ERROR, log.function, log.failedLine, "%s", log.failedText);
        return nullptr;
    }
    *length = static_cast<unsigned int>(buffer.size());
    GPB_LOG_AS(libHandle, GPB_LOG_PROGRESS, log.function, log.doneLine, log.doneText, *length);
    return buffer.data();
}

std::string GpbDebugText(const Message *message)
{
    if (message == nullptr)
    {
        return "There is no valid encode message.";
    }
    const GpbRecord *record = GpbRecordOf(message);
    if (record == nullptr)
    {
        return message->DebugString();
    }
    // A factory of its own: one that memory has run out on is of no more use, and the compiler's must stay of use.
    google::protobuf::DynamicMessageFactory factory(message->GetDescriptor()->file()->pool());
    const std::unique_ptr<Message> copy(factory.GetPrototype(message->GetDescriptor())->New());
    GpbCopyRecord(*record, *copy);
    return copy->DebugString();
}
