/** The text of a .proto file, read by protobuf itself before anybody else gets to see it. */
#ifndef GPBTOOL_PROTO_TEXT_H
#define GPBTOOL_PROTO_TEXT_H

#include <memory>
#include <string>

namespace google::protobuf
{
class FileDescriptor;
}

namespace gpbtool
{

class ProtoText
{
public:
    /**
     * Reads `text`, made of a YANG module, as the file MODULE.proto.
     *
     * @throws ToolError (Internal) when protobuf refuses it
     */
    ProtoText(const std::string &module, const std::string &text);
    ~ProtoText();
    ProtoText(const ProtoText &) = delete;
    ProtoText &operator=(const ProtoText &) = delete;

    /** Valid as long as this object lives. */
    const google::protobuf::FileDescriptor &File() const;

private:
    struct Reader;

    std::unique_ptr<Reader> reader_;
};

} // namespace gpbtool

#endif
