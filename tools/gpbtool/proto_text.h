/** The text of a .proto file, read by protobuf itself before anybody else gets to see it. */
#ifndef GPBTOOL_PROTO_TEXT_H
#define GPBTOOL_PROTO_TEXT_H

#include <memory>
#include <string>
#include <vector>

namespace google::protobuf
{
class FileDescriptor;
}

namespace gpbtool
{

class ProtoText
{
public:
    /** Reads `text` as the file MODULE.proto. */
    ProtoText(const std::string &module, const std::string &text);
    ~ProtoText();
    ProtoText(const ProtoText &) = delete;
    ProtoText &operator=(const ProtoText &) = delete;

    /** Null when protobuf refuses the text; valid as long as this object lives. */
    const google::protobuf::FileDescriptor *File() const;

    /** "file:line:column: message" for each problem. */
    const std::vector<std::string> &Problems() const;

private:
    struct Reader;

    std::unique_ptr<Reader> reader_;
};

} // namespace gpbtool

#endif
