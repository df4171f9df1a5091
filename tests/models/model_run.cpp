#include "model_run.h"

#include <google/protobuf/compiler/importer.h>
#include <google/protobuf/dynamic_message.h>
#include <libyang/libyang.h>

#include <fstream>
#include <stdexcept>

#include "gpb_templatelib/gpb_extension.h"
#include "models/document_forms.h"
#include "models/excuses.h"
#include "models/instance_maker.h"
#include "models/json_match.h"
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
        m_findings = gpbyang::CheckModule(m_file, *m_descriptor);
    }

    RunResult run(const RunOptions &options)
    {
        for (const gpbyang::CheckFinding &finding : m_findings)
        {
            const bool isLoss = gpbyang::InfoOf(finding.kind).loss;
            m_result.usual.losses += isLoss ? 1 : 0;
            m_result.lossless.losses += isLoss && !finding.IsKept() ? 1 : 0;
        }
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
        ++m_result.documents;
        const Json plain = toJsonWithoutPrefixes(*top);
        carry(*top, message, toXmlWithLineFeeds(*top), plain.get(), Setting::Usual, m_result.usual);
        const Json json = toJson(*top);
        carry(*top, message, toXml(*top), json.get(), Setting::Lossless, m_result.lossless);
    }

    void carry(const lyd_node &top, const gpbyang::ProtoMessage &message, const std::string &xml, cJSON *json,
               Setting setting, SettingResult &result)
    {
        GPBEXT_SetLossless(m_context, setting == Setting::Lossless ? 1 : 0);
        judge(top, message, encodeXml(m_context, m_file.module, xml), Excuses(m_findings, setting, Form::FromXml),
              result.xml);
        judge(top, message, json != nullptr ? encodeJson(m_context, m_file.module, *json) : Encoded(),
              Excuses(m_findings, setting, Form::FromJson), result.json);
        judgeJson(top, convertXml(m_context, m_file.module, xml).get(), Excuses(m_findings, setting, Form::XmlToJson),
                  result.toJson);
    }

    void judgeJson(const lyd_node &top, const cJSON *document, const Excuses &excuses, FormResult &result)
    {
        JsonMatch match(m_file);
        match.compare(top, document != nullptr ? *document : cJSON());
        add(match, excuses, result);
    }

    void judge(const lyd_node &top, const gpbyang::ProtoMessage &message, const Encoded &encoded,
               const Excuses &excuses, FormResult &result)
    {
        const std::unique_ptr<pb::Message> read(
            m_factory.GetPrototype(m_descriptor->FindMessageTypeByName(message.name))->New());
        if (!encoded.made || !read->ParseFromString(encoded.bytes))
        {
            const std::size_t leaves = countLeaves(top);
            result.leaves += leaves;
            if (excuses.explainRefusal(top))
            {
                result.lost += leaves;
            }
            else
            {
                result.unexplained.push_back(message.path + ": no message from " + excuses.name());
            }
            return;
        }
        DataMatch match(m_file);
        match.compare(top, *read);
        add(match, excuses, result);
    }

    template <typename Match>
    static void add(const Match &match, const Excuses &excuses, FormResult &result)
    {
        result.leaves += match.leaves();
        result.lost += match.lost();
        for (const Difference &difference : match.differences())
        {
            if (!excuses.explain(difference))
            {
                result.unexplained.push_back(difference.path + ": " + difference.text + ", from " + excuses.name());
            }
        }
    }

    GpbLibContext *m_context;
    gpbyang::ProtoFile m_file;
    pb::compiler::DiskSourceTree m_tree;
    pb::compiler::Importer m_importer;
    pb::DynamicMessageFactory m_factory;
    const pb::FileDescriptor *m_descriptor = nullptr;
    std::vector<gpbyang::CheckFinding> m_findings;
    RunResult m_result;
};

} // namespace

RunResult runModel(GpbLibContext *context, const std::string &protoDirectory, const gpbyang::Schema &schema,
                   const RunOptions &options)
{
    return Run(context, protoDirectory, schema).run(options);
}

} // namespace gpbtest
