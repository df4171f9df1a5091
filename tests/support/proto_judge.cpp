#include "support/proto_judge.h"

#include <google/protobuf/compiler/parser.h>
#include <google/protobuf/descriptor.pb.h>
#include <google/protobuf/io/tokenizer.h>
#include <google/protobuf/io/zero_copy_stream_impl_lite.h>
#include <google/protobuf/text_format.h>
#include <google/protobuf/util/json_util.h>
#include <google/protobuf/util/message_differencer.h>

namespace gpbtest
{

namespace pb = google::protobuf;

namespace
{

/** Collects protobuf's errors, a line each. */
class ErrorCollector : public pb::io::ErrorCollector, public pb::DescriptorPool::ErrorCollector
{
public:
    void AddError(int line, int column, const std::string &message) override
    {
        m_text += std::to_string(line + 1) + ":" + std::to_string(column + 1) + ": " + message + "\n";
    }

    void AddError(const std::string &, const std::string &element, const pb::Message *, ErrorLocation,
                  const std::string &message) override
    {
        m_text += element + ": " + message + "\n";
    }

    const std::string &text() const { return m_text; }

private:
    std::string m_text;
};

} // namespace

void ProtoJudge::addFile(const std::string &name, const std::string &text)
{
    ErrorCollector errors;
    pb::io::ArrayInputStream input(text.data(), static_cast<int>(text.size()));
    pb::io::Tokenizer tokenizer(&input, &errors);
    pb::compiler::Parser parser;
    parser.RecordErrorsTo(&errors);
    pb::FileDescriptorProto file;
    const bool isParsed = parser.Parse(&tokenizer, &file);
    file.set_name(name);
    if (!isParsed || m_pool.BuildFileCollectingErrors(file, &errors) == nullptr)
    {
        ADD_FAILURE() << name << ": " << errors.text();
    }
}

const pb::Descriptor *ProtoJudge::findType(const std::string &type) const
{
    return m_pool.FindMessageTypeByName(type);
}

std::unique_ptr<pb::Message> ProtoJudge::newMessage(const std::string &type)
{
    const pb::Descriptor *const descriptor = findType(type);
    return std::unique_ptr<pb::Message>(descriptor == nullptr ? nullptr : m_factory.GetPrototype(descriptor)->New());
}

std::unique_ptr<pb::Message> ProtoJudge::parseBytes(const std::string &type, const std::string &bytes,
                                                    std::string &error)
{
    std::unique_ptr<pb::Message> message = newMessage(type);
    if (message == nullptr)
    {
        error = "no message type " + type;
    }
    else if (!message->ParsePartialFromString(bytes))
    {
        error = "not valid bytes of " + type;
        message.reset();
    }
    return message;
}

std::unique_ptr<pb::Message> ProtoJudge::parseText(const std::string &type, const std::string &textForm,
                                                   std::string &error)
{
    std::unique_ptr<pb::Message> message = newMessage(type);
    if (message == nullptr)
    {
        error = "no message type " + type;
        return message;
    }
    ErrorCollector errors;
    pb::TextFormat::Parser parser;
    parser.RecordErrorsTo(&errors);
    parser.AllowPartialMessage(true);
    if (!parser.ParseFromString(textForm, message.get()))
    {
        error = "not a text form of " + type + ": " + errors.text();
        message.reset();
    }
    return message;
}

::testing::AssertionResult ProtoJudge::holds(const std::string &type, const std::string &bytes,
                                             const std::string &textForm)
{
    std::string error;
    const std::unique_ptr<pb::Message> expected = parseText(type, textForm, error);
    const std::unique_ptr<pb::Message> actual = expected == nullptr ? nullptr : parseBytes(type, bytes, error);
    if (actual == nullptr)
    {
        return ::testing::AssertionFailure() << error;
    }
    std::string difference;
    pb::util::MessageDifferencer differencer;
    differencer.ReportDifferencesToString(&difference);
    if (!differencer.Compare(*expected, *actual))
    {
        return ::testing::AssertionFailure() << difference << "the bytes hold: " << actual->ShortDebugString();
    }
    return ::testing::AssertionSuccess();
}

std::string ProtoJudge::toText(const std::string &type, const std::string &bytes)
{
    std::string error;
    const std::unique_ptr<pb::Message> message = parseBytes(type, bytes, error);
    return message == nullptr ? error : message->ShortDebugString();
}

std::string ProtoJudge::toJson(const std::string &type, const std::string &bytes)
{
    std::string error;
    const std::unique_ptr<pb::Message> message = parseBytes(type, bytes, error);
    if (message == nullptr)
    {
        return error;
    }
    pb::util::JsonPrintOptions options;
    options.preserve_proto_field_names = true;
    std::string json;
    const auto status = pb::util::MessageToJsonString(*message, &json, options);
    return status.ok() ? json : status.ToString();
}

std::string ProtoJudge::encode(const std::string &type, const std::string &textForm)
{
    std::string error;
    const std::unique_ptr<pb::Message> message = parseText(type, textForm, error);
    if (message == nullptr)
    {
        ADD_FAILURE() << error;
        return std::string();
    }
    return message->SerializePartialAsString();
}

} // namespace gpbtest
