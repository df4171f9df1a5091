#include "proto_text.h"

#include <google/protobuf/io/zero_copy_stream_impl_lite.h>

#include "proto_collector.h"
#include "tool_error.h"

namespace gpbtool
{

namespace
{

namespace pbc = google::protobuf::compiler;

/** A tree of one file. */
class OneFile : public pbc::SourceTree
{
public:
    OneFile(std::string name, const std::string &text) : name_(std::move(name)), text_(text) {}

    google::protobuf::io::ZeroCopyInputStream *Open(const std::string &name) override
    {
        return name == name_ ? new google::protobuf::io::ArrayInputStream(text_.data(), static_cast<int>(text_.size()))
                             : nullptr;
    }

private:
    std::string name_;
    const std::string &text_;
};

} // namespace

struct ProtoText::Reader
{
    Reader(const std::string &module, const std::string &text)
        : name(module + ".proto"), tree(name, text), importer(&tree, &collector), file(importer.Import(name))
    {
    }

    std::string name;
    OneFile tree;
    ProtoCollector collector;
    pbc::Importer importer;
    const google::protobuf::FileDescriptor *file;
};

ProtoText::ProtoText(const std::string &module, const std::string &text)
    : reader_(std::make_unique<Reader>(module, text))
{
    if (reader_->file == nullptr)
    {
        const std::vector<std::string> &problems = reader_->collector.problems;
        throw ToolError(ExitCode::Internal,
                        "protobuf refuses what was made of " + module + ":\n  " +
                            (problems.empty() ? "it gives no reason" : problems.front()),
                        "this is a fault of gpbtool; please report it with the module");
    }
}

ProtoText::~ProtoText() = default;

const google::protobuf::FileDescriptor &ProtoText::File() const
{
    return *reader_->file;
}

} // namespace gpbtool
