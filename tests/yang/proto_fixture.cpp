#include "proto_fixture.h"

#include <libyang/libyang.h>

#include "models/data_match.h"
#include "models/document_forms.h"
#include "yang/proto_names.h"

namespace gpbtest
{

namespace
{

Data parseData(const gpbyang::Schema &schema, const std::string &xml)
{
    lyd_node *data = nullptr;
    const LY_ERR result = lyd_parse_data_mem(schema.Module().ctx, xml.c_str(), LYD_XML, LYD_PARSE_STRICT,
                                             LYD_VALIDATE_PRESENT | LYD_VALIDATE_NO_STATE, &data);
    EXPECT_EQ(result, LY_SUCCESS) << ly_errmsg(schema.Module().ctx) << " in " << xml;
    return Data(data);
}

} // namespace

std::string ProtoTest::write(const std::string &body, gpbyang::Decimals decimals, gpbyang::NumberLock &lock)
{
    writeModule("m", body);
    m_schema = std::make_unique<gpbyang::Schema>(std::vector<std::string>{directory()}, "m", m_augmenting);
    m_file = gpbyang::BuildProtoFile(*m_schema, decimals);
    lock.Number(m_file);
    m_text = gpbyang::WriteProtoFile(m_file, false);
    ProtoJudge().addFile("m.proto", m_text);
    return m_text;
}

std::string ProtoTest::proto(const std::string &body, gpbyang::Decimals decimals)
{
    gpbyang::NumberLock lock("m");
    return write(body, decimals, lock);
}

std::string ProtoTest::messages(const std::string &body, gpbyang::Decimals decimals)
{
    const std::string text = proto(body, decimals);
    const std::string last = "package m;\n\n";
    return text.substr(text.find(last) + last.size());
}

std::string ProtoTest::locked(const std::string &body, std::string &lock)
{
    gpbyang::NumberLock numbers =
        lock.empty() ? gpbyang::NumberLock("m") : gpbyang::NumberLock::Read(lock, "m.lock", "m");
    const std::string text = write(body, gpbyang::Decimals::Double, numbers);
    lock = numbers.Text();
    const std::string last = "package m;\n\n";
    return text.substr(text.find(last) + last.size());
}

Carried ProtoTest::fromXml(const std::string &xml)
{
    return carry(xml, false);
}

Carried ProtoTest::fromJson(const std::string &xml)
{
    return carry(xml, true);
}

Carried ProtoTest::carry(const std::string &xml, bool asJson)
{
    const Data data = parseData(*m_schema, xml);
    GPBLIB_UnloadProtoFileAll(context(), 0);
    writeProto("m", m_text);
    const Encoded encoded =
        asJson ? encodeJson(context(), "m", *toJsonWithoutPrefixes(*data)) : encodeXml(context(), "m", xml);
    EXPECT_TRUE(encoded.made);
    log().clear();

    ProtoJudge judge;
    judge.addFile("m.proto", m_text);
    const std::string type = "m." + gpbyang::TopMessageName(data->schema->name);
    google::protobuf::DynamicMessageFactory factory;
    const std::unique_ptr<google::protobuf::Message> message(factory.GetPrototype(judge.findType(type))->New());
    EXPECT_TRUE(message->ParseFromString(encoded.bytes));
    DataMatch match(m_file);
    match.compare(*data, *message);
    std::vector<std::string> differences;
    for (const Difference &difference : match.differences())
    {
        differences.push_back(difference.text);
    }
    return {judge.toText(type, encoded.bytes), match.leaves(), differences};
}

} // namespace gpbtest
