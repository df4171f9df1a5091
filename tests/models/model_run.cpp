#include "model_run.h"

#include <google/protobuf/compiler/importer.h>
#include <google/protobuf/dynamic_message.h>
#include <libyang/libyang.h>

#include <fstream>
#include <set>
#include <stdexcept>

#include "models/document_forms.h"
#include "models/instance_maker.h"
#include "yang/number_lock.h"
#include "yang/proto_builder.h"
#include "yang/proto_writer.h"

namespace gpbtest
{

namespace
{

namespace pb = google::protobuf;

/** Seeds that are tried for a document, since not each makes a valid one. */
constexpr std::uint64_t kTries = 20;

class Run
{
public:
    Run(GpbLibContext *context, const std::string &directory, const gpbyang::Schema &schema)
        : m_context(context), m_file(gpbyang::BuildProtoFile(schema, gpbyang::Decimals::Double)),
          m_importer(&m_tree, nullptr), m_factory(m_importer.pool())
    {
        gpbyang::NumberLock(m_file.module).Number(m_file);
        std::ofstream(directory + m_file.module + ".proto") << gpbyang::WriteProtoFile(m_file, false);
        m_tree.MapPath("", directory);
        m_descriptor = m_importer.Import(m_file.module + ".proto");
        if (m_descriptor == nullptr)
        {
            throw std::runtime_error(m_file.module + ".proto is refused by protobuf");
        }
        for (const gpbyang::CheckFinding &finding : gpbyang::CheckModule(m_file, *m_descriptor))
        {
            if (gpbyang::InfoOf(finding.kind).loss)
            {
                m_losses.push_back(finding);
            }
        }
        for (const auto &message : m_file.messages)
        {
            collectMessages(*message);
        }
    }

    RunResult run(const RunOptions &options)
    {
        m_result.losses = m_losses.size();
        std::uint64_t seed = options.seed;
        for (const auto &message : m_file.messages)
        {
            const bool hasDocuments = (message->node->nodetype & (LYS_CONTAINER | LYS_LIST)) != 0;
            for (std::size_t i = 0; i < options.documents && hasDocuments; ++i)
            {
                Data data;
                for (std::uint64_t tried = 0; tried < kTries && data == nullptr; ++tried)
                {
                    data = makeInstance(*message->node, seed++, options.leaves);
                }
                document(data.get(), *message);
            }
        }
        return std::move(m_result);
    }

private:
    void collectMessages(const gpbyang::ProtoMessage &message)
    {
        if (message.node->nodetype != LYS_CASE)
        {
            m_holders.insert(message.path);
        }
        for (const auto &nested : message.messages)
        {
            collectMessages(*nested);
        }
    }

    /** The top-level node of a message among the data of all modules; null when it is not there. */
    static const lyd_node *topOf(const lyd_node *data, const gpbyang::ProtoMessage &message)
    {
        while (data != nullptr && data->schema != message.node)
        {
            data = data->next;
        }
        return data;
    }

    void document(const lyd_node *data, const gpbyang::ProtoMessage &message)
    {
        const lyd_node *top = topOf(data, message);
        if (top == nullptr)
        {
            return;
        }
        // What libyang prints is read again, so that what is encoded has been validated as it stands.
        std::string all;
        for (const lyd_node *other = data; other != nullptr; other = other->next)
        {
            all += toXml(*other);
        }
        lyd_node *read = nullptr;
        const LY_ERR valid = lyd_parse_data_mem(top->schema->module->ctx, all.c_str(), LYD_XML, LYD_PARSE_STRICT,
                                                LYD_VALIDATE_PRESENT, &read);
        const Data again(read);
        if (valid != LY_SUCCESS || topOf(read, message) == nullptr)
        {
            m_result.xml.unexplained.push_back(message.path + ": libyang refuses the document that it printed");
            return;
        }
        ++m_result.documents;
        const lyd_node &validated = *topOf(read, message);
        judge(validated, message, encodeXml(m_context, m_file.module, toXml(*top)), m_result.xml, "XML");
        const Json json = toJson(*top);
        judge(validated, message, json != nullptr ? encodeJson(m_context, m_file.module, *json) : Encoded(),
              m_result.json, "JSON");
    }

    void judge(const lyd_node &top, const gpbyang::ProtoMessage &message, const Encoded &encoded, FormResult &result,
               const std::string &form)
    {
        const std::unique_ptr<pb::Message> read(
            m_factory.GetPrototype(m_descriptor->FindMessageTypeByName(message.name))->New());
        if (!encoded.made || !read->ParseFromString(encoded.bytes))
        {
            // A name that is not found makes JSON fail as a whole.
            const std::size_t leaves = countLeaves(top);
            result.leaves += leaves;
            result.lost += leaves;
            if (m_losses.empty())
            {
                result.unexplained.push_back(message.path + ": no message from " + form);
            }
            return;
        }
        DataMatch match(m_file);
        match.compare(top, *read);
        result.leaves += match.leaves();
        result.lost += match.lost();
        for (const Difference &difference : match.differences())
        {
            if (!isExplained(difference.path))
            {
                result.unexplained.push_back(difference.path + ": " + difference.text + ", from " + form);
            }
        }
    }

    static bool isBelow(const std::string &path, const std::string &above)
    {
        return path.compare(0, above.size(), above) == 0 && (path.size() == above.size() || path[above.size()] == '/');
    }

    /** What goes astray can be any node beside or below the one that the check names. */
    bool isExplained(const std::string &path) const
    {
        for (const gpbyang::CheckFinding &finding : m_losses)
        {
            std::string holder = finding.path;
            const bool alone =
                finding.kind == gpbyang::CheckKind::JsonLeafList || finding.kind == gpbyang::CheckKind::UnionEmpty;
            while (!alone && m_holders.count(holder) == 0 && holder.rfind('/') > 0)
            {
                holder.resize(holder.rfind('/'));
            }
            if (isBelow(path, holder))
            {
                return true;
            }
        }
        return false;
    }

    GpbLibContext *m_context;
    gpbyang::ProtoFile m_file;
    pb::compiler::DiskSourceTree m_tree;
    pb::compiler::Importer m_importer;
    pb::DynamicMessageFactory m_factory;
    const pb::FileDescriptor *m_descriptor = nullptr;
    std::vector<gpbyang::CheckFinding> m_losses;
    std::set<std::string> m_holders; /**< paths of containers, lists and notifications */
    RunResult m_result;
};

} // namespace

RunResult runModel(GpbLibContext *context, const std::string &protoDirectory, const gpbyang::Schema &schema,
                   const RunOptions &options)
{
    return Run(context, protoDirectory, schema).run(options);
}

} // namespace gpbtest
