#include "message_view.h"

#include <google/protobuf/text_format.h>
#include <google/protobuf/util/json_util.h>

#include <limits>

#include "core/gpb_protobuf_compat.h"
#include "tool_error.h"

namespace gpbtool
{

namespace pb = google::protobuf;

MessageView::MessageView(const pb::Descriptor &type, std::string_view bytes, const std::string &source)
    : factory_(type.file()->pool()), message_(factory_.GetPrototype(&type)->New()), source_(source)
{
    const bool fits = bytes.size() <= static_cast<std::size_t>(std::numeric_limits<int>::max());
    if (!fits || !message_->ParsePartialFromArray(bytes.data(), static_cast<int>(bytes.size())))
    {
        throw ToolError(ExitCode::Input, source + ": no encoded message of type " + GpbPbFullName(type),
                        "is it the right module and message, and is the file complete?");
    }
}

std::string MessageView::Text() const
{
    std::string text;
    pb::TextFormat::PrintToString(*message_, &text);
    return text;
}

std::string MessageView::Json() const
{
    pb::util::JsonPrintOptions options;
    options.add_whitespace = true;
    options.preserve_proto_field_names = true;
    std::string json;
    const auto status = pb::util::MessageToJsonString(*message_, &json, options);
    if (!status.ok())
    {
        throw ToolError(ExitCode::Input, source_ + ": cannot be shown as JSON: " + std::string(status.message()),
                        "leave --json out to see the text form");
    }
    return json;
}

int MessageView::UnknownFields() const
{
    return message_->GetReflection()->GetUnknownFields(*message_).field_count();
}

} // namespace gpbtool
