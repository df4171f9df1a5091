// Building, sizing, writing and reading object trees, beside protobuf's own streams and field sets on the same content.
//
// Ways:
//   tree        the library, with a context whose print slots are closed
//   no_context  the library without a context: what closed slots cost is the difference
//   calls       write: for each copy that the tree makes, a call into another library that does nothing
//   malloc      build: the same record linked by hand, one malloc for each with its text, measured in one walk
//   protobuf    build and read: UnknownFieldSet; size and write: CodedOutputStream from flat, measured records
//
// Building is making the tree, measuring it and deleting it. Nodes are the leaves of these tables.
//
// The library makes what its interface says it does: a second allocation for the content of every string, which is
// zeroed first, and a checked copy for every tag, length, value and content. The reference platform watches and keeps
// books of every allocation, and counts every call; it fills no memory here.
#include <deque>
#include <memory>
#include <stdexcept>

#include <google/protobuf/io/coded_stream.h>
#include <google/protobuf/io/zero_copy_stream_impl_lite.h>
#include <google/protobuf/unknown_field_set.h>

#include "gpb_templatelib/gpb_host.h"
#include "gpb_templatelib/gpb_objtree.h"
#include "support/bench_run.h"
#include "support/library_session.h"
#include "support/linked_nodes.h"
#include "support/no_copy/no_copy.h"

namespace
{

using google::protobuf::UnknownFieldSet;
using google::protobuf::io::ArrayOutputStream;
using google::protobuf::io::CodedOutputStream;

constexpr uint32_t MODULE_ID = 7;
constexpr size_t LEAVES_PER_CONTAINER = 9;
constexpr uint32_t WIRE_VARINT = 0;
constexpr uint32_t WIRE_DELIMITED = 2;
constexpr uint32_t WIRE_CONTAINER = 6;

struct DeleteTree
{
    void operator()(ObjNode *tree) const { GPBLIB_ObjTree_Delete(&tree); }
};
using TreePtr = std::unique_ptr<ObjNode, DeleteTree>;

// A field as a stream needs it: nothing to look up, nothing to measure.
struct FlatRecord
{
    uint64_t tag;
    uint64_t value; // or the length of what follows
    const std::string *text;
};

// One content in all the forms that take part.
class Subject
{
public:
    Subject(const GpbLibContext *context, size_t nodes) : context_(context), nodes_(nodes)
    {
        for (size_t made = 1; made < nodes; made += 1 + LEAVES_PER_CONTAINER)
        {
            containers_.push_back(std::min(LEAVES_PER_CONTAINER, nodes - made - 1));
        }
        for (size_t i = 0; i < LEAVES_PER_CONTAINER; ++i)
        {
            texts_.push_back("leaf-text-" + std::to_string(i * 1000));
        }
        tree_ = Build();
        bytes_.resize(GPBLIB_ObjTree_GetWriteLen(tree_.get()));
        buffer_.resize(bytes_.size());
        const auto room = static_cast<uint32_t>(bytes_.size());
        if (GPBLIB_ObjTree_Write(tree_.get(), bytes_.data(), room, GPB_OBJTREE_MODE_TEMPLATE, nullptr) != room)
        {
            throw std::runtime_error("the tree is not written");
        }
        Flatten();
        WriteStream();
        if (buffer_ != bytes_)
        {
            throw std::runtime_error("stream and tree write different bytes");
        }
        if (LinkedSize() != bytes_.size())
        {
            throw std::runtime_error("linked nodes and tree have different sizes");
        }
        CheckCalls();
        UnknownFieldSet fields;
        BuildFields(&fields);
        fields.SerializeToString(&groups_);
    }

    size_t Nodes() const { return nodes_; }

    TreePtr Build() const
    {
        TreePtr tree(GPBLIB_ObjTree_Create(0, MODULE_ID));
        for (const size_t leaves : containers_)
        {
            ObjNode *node = GPBLIB_ObjTree_CreateNode(tree.get(), nullptr, 1, 1);
            for (size_t i = 0; i < leaves; ++i)
            {
                const auto id = static_cast<uint32_t>(i + 1);
                if (i % 2 == 0)
                {
                    GPBLIB_ObjTree_CreateInteger(tree.get(), node, id, IntegerOf(i), 1);
                    continue;
                }
                const std::string &text = texts_[i];
                GPBLIB_ObjTree_CreateString(tree.get(), node, id, static_cast<uint32_t>(text.size()), text.data(), 1);
            }
        }
        return tree;
    }

    void BuildAndSize() const
    {
        const TreePtr tree = Build();
        benchmark::DoNotOptimize(GPBLIB_ObjTree_GetWriteLen(tree.get()));
    }

    uint32_t LinkedSize() const
    {
        const gpbbench::LinkedNodesPtr root(gpbbench::AddLinkedNode(nullptr, GPB_OBJNODE_ROOTDOC, 0));
        for (const size_t leaves : containers_)
        {
            ObjNode *node = gpbbench::AddLinkedNode(root.get(), GPB_OBJNODE_CONTAIN, 1);
            for (size_t i = 0; i < leaves; ++i)
            {
                const auto id = static_cast<uint32_t>(i + 1);
                if (i % 2 == 0)
                {
                    gpbbench::AddLinkedInteger(node, id, IntegerOf(i));
                    continue;
                }
                gpbbench::AddLinkedString(node, id, texts_[i]);
            }
        }
        return gpbbench::MeasureLinkedNodes(root.get());
    }

    // The same content for protobuf's field sets, which know nesting as groups.
    void BuildFields(UnknownFieldSet *fields) const
    {
        for (const size_t leaves : containers_)
        {
            UnknownFieldSet *node = fields->AddGroup(1);
            for (size_t i = 0; i < leaves; ++i)
            {
                const int id = static_cast<int>(i + 1);
                if (i % 2 == 0)
                {
                    node->AddVarint(id, IntegerOf(i));
                    continue;
                }
                node->AddLengthDelimited(id, texts_[i]);
            }
        }
    }

    void BuildFieldsAnew() const
    {
        UnknownFieldSet fields;
        BuildFields(&fields);
        benchmark::DoNotOptimize(fields.field_count());
    }

    void Size() const { GPBLIB_ObjTree_RefreshBufLen(tree_.get()); }

    // What measuring comes to when the order of the fields and the lengths of containers are given.
    void SizeFlat() const
    {
        size_t size = 0;
        for (const FlatRecord &record : records_)
        {
            size += CodedOutputStream::VarintSize64(record.tag) + CodedOutputStream::VarintSize64(record.value);
            size += record.text != nullptr ? record.text->size() : 0;
        }
        benchmark::DoNotOptimize(size);
    }

    void Write(const GpbLibContext *context)
    {
        const auto room = static_cast<uint32_t>(buffer_.size());
        benchmark::DoNotOptimize(
            GPBLIB_ObjTree_Write(tree_.get(), buffer_.data(), room, GPB_OBJTREE_MODE_TEMPLATE, context));
    }
    void WriteClosed() { Write(context_); }
    void WriteWithoutContext() { Write(nullptr); }

    void WriteStream()
    {
        ArrayOutputStream array(buffer_.data(), static_cast<int>(buffer_.size()));
        CodedOutputStream stream(&array);
        for (const FlatRecord &record : records_)
        {
            stream.WriteVarint64(record.tag);
            stream.WriteVarint64(record.value);
            if (record.text != nullptr)
            {
                stream.WriteRaw(record.text->data(), static_cast<int>(record.text->size()));
            }
        }
    }

    // The least that checked copies by the platform can cost: their calls. Gives the number of calls.
    uint64_t CallForEachCopy()
    {
        uint64_t calls = 0;
        for (const FlatRecord &record : records_)
        {
            gpb_bench_no_copy(buffer_.data(), buffer_.size(), &record.tag, sizeof(record.tag));
            gpb_bench_no_copy(buffer_.data(), buffer_.size(), &record.value, sizeof(record.value));
            calls += 2;
            if (record.text != nullptr)
            {
                gpb_bench_no_copy(buffer_.data(), buffer_.size(), record.text->data(), record.text->size());
                ++calls;
            }
        }
        return calls;
    }

    void Read() const
    {
        const TreePtr tree(
            GPBLIB_ObjTree_Read(bytes_.data(), static_cast<uint32_t>(bytes_.size()), nullptr, MODULE_ID, context_));
        benchmark::DoNotOptimize(tree.get());
    }

    void ReadFields() const
    {
        UnknownFieldSet fields;
        benchmark::DoNotOptimize(fields.ParseFromString(groups_));
    }

private:
    // The way that only calls has to call as often as the library copies.
    void CheckCalls()
    {
        const uint64_t before = GpbHost_CallCount(GPB_HOST_MEMCPY);
        WriteClosed();
        if (GpbHost_CallCount(GPB_HOST_MEMCPY) - before != CallForEachCopy())
        {
            throw std::runtime_error("the tree is not written by as many copies as are called for");
        }
    }

    static uint64_t IntegerOf(size_t index) { return (0x300001234ULL << index) | index; }

    void Flatten()
    {
        records_.push_back({WIRE_CONTAINER, tree_->objLen, nullptr});
        CmfTreeIter iter;
        CMF_TREE_GetPreOrderIter(&tree_->stTree, &iter, 0);
        while (const CmfTreeNode *link = CMF_TREE_GetNextByPreOrder(&iter, 0))
        {
            const auto *node = reinterpret_cast<const ObjNode *>(link);
            const uint64_t field = static_cast<uint64_t>(node->id) << 3;
            switch (node->nodeType)
            {
            case GPB_OBJNODE_INTLEAF:
                records_.push_back({field | WIRE_VARINT, node->value, nullptr});
                break;
            case GPB_OBJNODE_STRLEAF:
                records_.push_back({field | WIRE_DELIMITED, node->objLen, &texts_[node->id - 1]});
                break;
            default:
                records_.push_back({field | WIRE_CONTAINER, node->objLen, nullptr});
            }
        }
    }

    const GpbLibContext *context_;
    size_t nodes_;
    std::vector<size_t> containers_; // leaves in each
    std::vector<std::string> texts_;
    TreePtr tree_;
    std::vector<uint8_t> bytes_;
    std::vector<uint8_t> buffer_;
    std::vector<FlatRecord> records_;
    std::string groups_;
};

std::vector<gpbbench::Table> Prepare(const GpbLibContext *context, std::deque<Subject> *subjects)
{
    const std::vector<size_t> sizes = {10, 1000, 100000};
    std::vector<gpbbench::Table> tables = {
        {{{"build", {}, 1}}, {"tree", "malloc", "protobuf"}},
        {{{"size", {}, 1}}, {"tree", "protobuf"}},
        {{{"write", {}, 1}}, {"tree", "no_context", "calls", "protobuf"}},
        {{{"read", {}, 1}}, {"tree", "protobuf"}},
    };
    for (const size_t nodes : sizes)
    {
        Subject *subject = &subjects->emplace_back(context, nodes);
        const std::string suffix = ":" + std::to_string(nodes);
        for (gpbbench::Table &table : tables)
        {
            table.series[0].names.push_back(table.series[0].title + suffix);
        }
        gpbbench::Register("build" + suffix, "tree", nodes, [=] { subject->BuildAndSize(); });
        gpbbench::Register("build" + suffix, "malloc", nodes, [=] { benchmark::DoNotOptimize(subject->LinkedSize()); });
        gpbbench::Register("build" + suffix, "protobuf", nodes, [=] { subject->BuildFieldsAnew(); });
        gpbbench::Register("size" + suffix, "tree", nodes, [=] { subject->Size(); });
        gpbbench::Register("size" + suffix, "protobuf", nodes, [=] { subject->SizeFlat(); });
        gpbbench::Register("write" + suffix, "tree", nodes, [=] { subject->WriteClosed(); });
        gpbbench::Register("write" + suffix, "no_context", nodes, [=] { subject->WriteWithoutContext(); });
        gpbbench::Register("write" + suffix, "calls", nodes,
                           [=] { benchmark::DoNotOptimize(subject->CallForEachCopy()); });
        gpbbench::Register("write" + suffix, "protobuf", nodes, [=] { subject->WriteStream(); });
        gpbbench::Register("read" + suffix, "tree", nodes, [=] { subject->Read(); });
        gpbbench::Register("read" + suffix, "protobuf", nodes, [=] { subject->ReadFields(); });
    }
    return tables;
}

} // namespace

int main(int argc, char **argv)
{
    gpbbench::LibrarySession session;
    std::deque<Subject> subjects;
    return gpbbench::RunTables(argc, argv, [&] { return Prepare(session.Context(), &subjects); });
}
