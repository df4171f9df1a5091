/** Encoded messages made readable: the judge here is protobuf's own reader, not this project's code. */
#ifndef GPBTOOL_MESSAGE_VIEW_H
#define GPBTOOL_MESSAGE_VIEW_H

#include <google/protobuf/dynamic_message.h>

#include <memory>
#include <string>
#include <string_view>

namespace gpbtool
{

class MessageView
{
public:
    /** @throws ToolError (Input) when the bytes are no message of that type; `source` names them in the text. */
    MessageView(const google::protobuf::Descriptor &type, std::string_view bytes, const std::string &source);

    /** protobuf's text format. */
    std::string Text() const;

    /** Protobuf's JSON form, with the field names of the module. @throws ToolError (Input) */
    std::string Json() const;

    /** Fields of the outermost message that the module does not know. */
    int UnknownFields() const;

    /** The required fields that are missing, as a list; empty when there are none. */
    std::string MissingFields() const { return message_->InitializationErrorString(); }

private:
    google::protobuf::DynamicMessageFactory factory_;
    std::unique_ptr<google::protobuf::Message> message_;
    std::string source_;
};

} // namespace gpbtool

#endif
