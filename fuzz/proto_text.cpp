/** Any text as a module's proto file; what loads is then used by every compiler and by the helpers. */
#include <google/protobuf/descriptor.h>
#include <string>

#include "gpb_templatelib/gpb_compiler_c.h"
#include "gpb_templatelib/gpb_descriptor.h"
#include "platform/zmp.h"
#include "support/documents.h"
#include "support/guard.h"
#include "support/library.h"

namespace
{

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;

constexpr const char *kModule = "m";
constexpr int kMaxDepth = 4;
constexpr int kMaxMessages = 4;
constexpr int kMaxFields = 12;

/** A document with every field of a message, as XML. */
void appendXml(const Descriptor *message, int depth, std::string &xml)
{
    for (int i = 0; i < message->field_count() && i < kMaxFields; ++i)
    {
        const FieldDescriptor *field = message->field(i);
        xml += "<" + field->name() + ">";
        if (field->message_type() == nullptr)
        {
            xml += field->enum_type() == nullptr ? "1" : field->enum_type()->value(0)->name();
        }
        else if (depth < kMaxDepth)
        {
            appendXml(field->message_type(), depth + 1, xml);
        }
        xml += "</" + field->name() + ">";
    }
}

/** The same as JSON, without the members' braces. */
void appendJson(const Descriptor *message, int depth, std::string &json)
{
    for (int i = 0; i < message->field_count() && i < kMaxFields; ++i)
    {
        const FieldDescriptor *field = message->field(i);
        json += (i == 0 ? "\"" : ",\"") + field->name() + "\":";
        if (field->message_type() == nullptr)
        {
            json += field->is_repeated() ? "[1]" : "\"1\"";
            continue;
        }
        json += "{";
        if (depth < kMaxDepth)
        {
            appendJson(field->message_type(), depth + 1, json);
        }
        json += "}";
    }
}

void encodeXml(GpbXmlCompilerBase *created, const std::string &xml)
{
    const gpbfuzz::Compiler compiler(created);
    gpbfuzz::require(compiler != nullptr, "no compiler for a loaded module");
    const gpbfuzz::XmlDocument document = gpbfuzz::parseXml(reinterpret_cast<const uint8_t *>(xml.data()), xml.size());
    gpbfuzz::require(document != nullptr, "the document is not well-formed");
    unsigned int length = 0;
    unsigned int code = 0;
    GpbXmlCompiler_Encode(compiler.get(), document.get(), &length, &code);
}

void encodeJson(GpbLibContext *context, const std::string &json)
{
    const gpbfuzz::Compiler compiler(GpbJsonCompiler_CreateJsonCompiler(context, kModule));
    gpbfuzz::require(compiler != nullptr, "no compiler for a loaded module");
    const gpbfuzz::JsonDocument document =
        gpbfuzz::parseJson(reinterpret_cast<const uint8_t *>(json.data()), json.size());
    gpbfuzz::require(document != nullptr, "the JSON text cannot be parsed");
    unsigned int length = 0;
    for (cJSON *item : gpbfuzz::itemsOf(document.get(), 4))
    {
        GpbXmlCompiler_EncodeJson(compiler.get(), document->child, item, &length);
    }
}

void listEnums(GpbLibContext *context, const Descriptor *message)
{
    for (int i = 0; i < message->field_count() && i < kMaxFields; ++i)
    {
        GpbYangEnumItem *items = nullptr;
        uint32_t count = 0;
        Gpb_ModuleAdapt_GetEnumList(context, message->file(), message->name().c_str(),
                                    message->field(i)->name().c_str(), &items, &count);
        ZMP_Free_F(items, "fuzz", 1);
    }
}

void use(GpbLibContext *context)
{
    const google::protobuf::FileDescriptor *file = Gpb_ModuleAdapt_GetFileHandle(context, kModule);
    gpbfuzz::require(file != nullptr, "a loaded module without descriptor");
    for (int i = 0; i < file->message_type_count() && i < kMaxMessages; ++i)
    {
        const Descriptor *message = file->message_type(i);
        std::string xml = "<" + message->name() + ">";
        appendXml(message, 0, xml);
        xml += "</" + message->name() + ">";
        encodeXml(GpbXmlCompiler_CreateCompiler(context, kModule), xml);
        encodeXml(GpbXmlCompiler_CreateJsonCompiler(context, kModule, 1), xml);
        std::string json = "{\"" + message->name() + "\":{";
        appendJson(message, 0, json);
        encodeJson(context, json + "}}");
        listEnums(context, message);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    gpbfuzz::library();
    // Names that are too long raise assertions.
    const gpbfuzz::InputGuard guard(true);
    gpbfuzz::useOwnWorkPath(true);
    gpbfuzz::writeProto(kModule, std::string(reinterpret_cast<const char *>(data), size));
    GpbLibContext *const context = gpbfuzz::newContext();
    gpbfuzz::require(context != nullptr, "no context");
    const uint32_t result = GPBLIB_ProtobufLoad(context, kModule, 0);
    gpbfuzz::require(GPBLIB_ProtobufLoad(context, kModule, 0) == result, "the second load ends otherwise");
    if (result == 0)
    {
        use(context);
    }
    GPBLIB_UnloadProtoFile(context, kModule);
    GPBLIB_Uninitial(context);
    gpbfuzz::useOwnWorkPath(false);
    return 0;
}
