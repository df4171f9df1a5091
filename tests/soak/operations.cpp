#include "soak/operations.h"

#include "support/documents.h"

// The fuzz targets, each compiled here under a name of its own.
extern "C"
{
int soak_xml_to_gpb(const uint8_t *data, size_t size);
int soak_xml_to_json(const uint8_t *data, size_t size);
int soak_json_to_gpb(const uint8_t *data, size_t size);
int soak_model_attributes(const uint8_t *data, size_t size);
int soak_object_tree(const uint8_t *data, size_t size);
int soak_names(const uint8_t *data, size_t size);
int soak_proto_text(const uint8_t *data, size_t size);
int soak_random_schema(const uint8_t *data, size_t size);
int soak_template_records(const uint8_t *data, size_t size);
}

namespace gpbsoak
{

namespace
{

const uint8_t *bytesOf(const std::string &input)
{
    return reinterpret_cast<const uint8_t *>(input.data());
}

/** What is not well-formed never reaches the library. */
uint64_t isXml(const std::string &input)
{
    return gpbfuzz::parseXml(bytesOf(input), input.size()) == nullptr ? 0 : 1;
}

uint64_t isJson(const std::string &input)
{
    return gpbfuzz::parseJson(bytesOf(input), input.size()) == nullptr ? 0 : 1;
}

uint64_t threeInBothForms(const std::string &)
{
    return 6;
}

uint64_t none(const std::string &)
{
    return 0;
}

} // namespace

Operations::Operations(uint64_t seed)
    : m_targets{{"xml_to_gpb", soak_xml_to_gpb, isXml, 0, 0, Inputs("xml_to_gpb")},
                {"xml_to_json", soak_xml_to_json, isXml, 0, 0, Inputs("xml_to_json")},
                {"json_to_gpb", soak_json_to_gpb, isJson, 0, 0, Inputs("json_to_gpb")},
                {"model_attributes", soak_model_attributes, isJson, 0, 0, Inputs("model_attributes")},
                {"random_schema", soak_random_schema, threeInBothForms, 1, 0, Inputs("random_schema")},
                {"proto_text", soak_proto_text, none, 1, 0, Inputs("proto_text")},
                {"template_records", soak_template_records, none, 0, 4, Inputs("template_records")},
                {"object_tree", soak_object_tree, none, 0, 0, Inputs("object_tree")},
                {"names", soak_names, none, 0, 0, Inputs("names")}},
      m_random(seed)
{
}

void Operations::run(Target &target, const std::string &input)
{
    ++target.runs;
    target.documents += target.countDocuments(input);
    target.run(bytesOf(input), input.size());
}

void Operations::runLife(FaultLives::Use use)
{
    if (m_random() % 2 == 0)
    {
        m_lives.failPlatform(use, m_random);
    }
    else
    {
        m_lives.failMemory(use, m_random);
    }
}

void Operations::runAll()
{
    for (Target &target : m_targets)
    {
        for (const std::string &file : target.inputs.files())
        {
            run(target, file);
        }
    }
    for (uint32_t use = 0; use < FaultLives::kUseCount; ++use)
    {
        m_lives.failPlatform(static_cast<FaultLives::Use>(use), m_random);
        m_lives.failMemory(static_cast<FaultLives::Use>(use), m_random);
    }
}

void Operations::runOne()
{
    // As many lives with faults as inputs of one target and a half: most of the time goes to documents.
    const uint64_t choice = m_random() % (2 * m_targets.size() + 3);
    if (choice < 2 * m_targets.size())
    {
        Target &target = m_targets[static_cast<size_t>(choice / 2)];
        run(target, target.inputs.next(m_random));
    }
    else
    {
        runLife(static_cast<FaultLives::Use>(m_random() % FaultLives::kUseCount));
    }
}

} // namespace gpbsoak
