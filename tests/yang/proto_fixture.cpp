#include "proto_fixture.h"

#include <cjson/cJSON.h>
#include <google/protobuf/compiler/importer.h>
#include <libyang/libyang.h>

#include <cstdlib>
#include <cstring>

#include "data_match.h"
#include "gpb_templatelib/gpb_compiler_c.h"
#include "support/xml_document.h"
#include "yang/proto_names.h"

namespace gpbtest
{

namespace
{

using Data = std::unique_ptr<lyd_node, decltype(&lyd_free_all)>;

Data parseData(const gpbyang::Schema &schema, const std::string &xml)
{
    lyd_node *data = nullptr;
    const LY_ERR result = lyd_parse_data_mem(schema.Module().ctx, xml.c_str(), LYD_XML, LYD_PARSE_STRICT,
                                             LYD_VALIDATE_PRESENT | LYD_VALIDATE_NO_STATE, &data);
    EXPECT_EQ(result, LY_SUCCESS) << ly_errmsg(schema.Module().ctx) << " in " << xml;
    return Data(data, &lyd_free_all);
}

/** The library knows no prefixes in names, and takes null for an empty leaf, which libyang writes as [null]. */
void adapt(cJSON &item)
{
    const char *colon = item.string != nullptr ? std::strchr(item.string, ':') : nullptr;
    if (colon != nullptr)
    {
        std::memmove(item.string, colon + 1, std::strlen(colon));
    }
    if (cJSON_IsArray(&item) != 0 && item.child != nullptr && cJSON_IsNull(item.child) != 0)
    {
        cJSON_Delete(item.child);
        item.child = nullptr;
        item.type = (item.type & ~0xFF) | cJSON_NULL;
    }
    for (cJSON *child = item.child; child != nullptr; child = child->next)
    {
        adapt(*child);
    }
}

std::unique_ptr<cJSON, decltype(&cJSON_Delete)> toJson(const lyd_node &data)
{
    char *text = nullptr;
    EXPECT_EQ(lyd_print_mem(&text, &data, LYD_JSON, LYD_PRINT_WITHSIBLINGS), LY_SUCCESS);
    std::unique_ptr<cJSON, decltype(&cJSON_Delete)> json(cJSON_Parse(text), &cJSON_Delete);
    std::free(text);
    EXPECT_NE(json, nullptr);
    adapt(*json);
    return json;
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
    unsigned int length = 0;
    GpbXmlCompilerBase *compiler =
        asJson ? GpbJsonCompiler_CreateJsonCompiler(context(), "m") : GpbXmlCompiler_CreateCompiler(context(), "m");
    EXPECT_NE(compiler, nullptr);
    const char *result = nullptr;
    if (asJson)
    {
        const auto json = toJson(*data);
        result = GpbXmlCompiler_EncodeJson(compiler, json->child, json->child, &length);
    }
    else
    {
        const XmlDocument document(xml);
        unsigned int code = 0;
        result = GpbXmlCompiler_Encode(compiler, document.get(), &length, &code);
    }
    EXPECT_NE(result, nullptr);
    const std::string bytes(result != nullptr ? result : "", length);
    GpbXmlCompiler_Destory(compiler);
    log().clear();

    ProtoJudge judge;
    judge.addFile("m.proto", m_text);
    const std::string type = "m." + gpbyang::TopMessageName(data->schema->name);
    google::protobuf::DynamicMessageFactory factory;
    const std::unique_ptr<google::protobuf::Message> message(factory.GetPrototype(judge.findType(type))->New());
    EXPECT_TRUE(message->ParseFromString(bytes));
    DataMatch match(m_file);
    match.compare(*data, *message);
    return {judge.toText(type, bytes), match.leaves(), match.differences()};
}

} // namespace gpbtest
