#include "faults/fault_life.h"

#include "gpb_templatelib/gpb_objtree.h"
#include "platform/vec.h"
#include "platform/zmp.h"

namespace gpbtest
{

const char *const kFaultModule = "life-of-a-host";
const char *const kFaultProto = R"(
syntax = "proto3";
package life;
message Top {
  enum Color { Color_RED = 0; Color_GREEN = 1; }
  string name = 1;
  repeated Color colors = 2;
  repeated List list = 3;
  Box box = 4;
  oneof mode { ModeA mode_a = 5; ModeB mode_b = 6; }
  repeated string words = 7;
  bool flag = 8;
  message List {
    string key = 1;
    uint32 number = 2;
    oneof kind { KindA kind_a = 3; KindB kind_b = 4; }
    message KindA { string a_leaf = 1; bytes a_bytes = 2; }
    message KindB { repeated Item item = 1; message Item { sint64 n = 1; } }
  }
  message Box { Box box = 1; string label = 2; }
  message ModeA { string m_leaf = 1; oneof deep { Deep deep_case = 2; } message Deep { double deep_leaf = 1; } }
  message ModeB { uint64 mb_leaf = 1; }
}
)";
const char *const kFaultXml =
    "<top><name>a name that does not fit into a string itself</name><colors>red green</colors>"
    "<list><key>k</key><a-leaf>a leaf that does not fit into a string itself</a-leaf></list>"
    "<list><number>2</number><item><n>-1</n></item><item><n>1</n></item></list>"
    "<box><box><label>label</label></box></box><deep-leaf>1.5</deep-leaf><mb-leaf>7</mb-leaf>"
    "<words>one</words><words>two words that do not fit into a string itself</words><flag/></top>";
const char *const kFaultJson =
    R"({"top":{"name":"a name that does not fit into a string itself","colors":["red","green"],)"
    R"("list":[{"key":"k","a-leaf":"a leaf that does not fit into a string itself"},)"
    R"({"number":2,"item":[{"n":-1},{"n":1}]}],"box":{"box":{"label":"label"}},"deep-leaf":1.5,"mb-leaf":7,)"
    R"("flag":null}})";

const char *const kIdentityModule = "identity";
const char *const kIdentityProto = R"(
syntax = "proto3";
package identity;
message TelemetrySystem {
  Subscriptions subscriptions = 1;
  message Subscriptions {
    Persistent persistent = 1;
    message Persistent { repeated Subscription subscription = 1; message Subscription { string encoding = 1; } }
  }
}
)";
const char *const kIdentityXml = "<telemetry-system><subscriptions><persistent><subscription>"
                                 "<encoding xmlns:t='urn:t'>oc-telemetry-types:GPB</encoding>"
                                 "</subscription></persistent></subscriptions></telemetry-system>";

namespace
{

constexpr uint64_t kDigestPrime = 0x100000001B3;

FaultResult resultOf(const char *bytes, unsigned int length, unsigned int code)
{
    FaultResult result;
    result.isDone = bytes != nullptr;
    result.code = code;
    if (bytes != nullptr)
    {
        result.add(bytes, length);
    }
    return result;
}

} // namespace

void FaultResult::add(const void *bytes, size_t size)
{
    const auto *const first = static_cast<const unsigned char *>(bytes);
    for (const unsigned char *byte = first; byte != first + size; ++byte)
    {
        digest = (digest ^ *byte) * kDigestPrime + 1;
    }
    length += size;
}

std::string faultXmlWithoutTexts()
{
    std::string text = kFaultXml;
    const size_t begin = text.find("<words>");
    const std::string end = "</words>";
    text.erase(begin, text.rfind(end) + end.size() - begin);
    return text;
}

FaultResult encodeXml(GpbXmlCompilerBase *compiler, _xmlDoc *document)
{
    if (compiler == nullptr)
    {
        return {};
    }
    unsigned int length = 0;
    unsigned int code = 0;
    const char *const bytes = GpbXmlCompiler_Encode(compiler, document, &length, &code);
    const FaultResult result = resultOf(bytes, length, code);
    GpbXmlCompiler_Destory(compiler);
    return result;
}

FaultResult encodeJson(GpbXmlCompilerBase *compiler, cJSON *root, cJSON *item)
{
    if (compiler == nullptr)
    {
        return {};
    }
    unsigned int length = 0;
    const char *const bytes = GpbXmlCompiler_EncodeJson(compiler, root, item, &length);
    const FaultResult result = resultOf(bytes, length, 0);
    GpbXmlCompiler_Destory(compiler);
    return result;
}

FaultResult listAttributes(GpbLibContext *context, GpbXmlCompilerBase *compiler, cJSON *root, cJSON *item)
{
    if (compiler == nullptr)
    {
        return {};
    }
    constexpr size_t kRoom = 16;
    char *names[kRoom] = {};
    uint32_t types[kRoom] = {};
    GpbMdlAttr attributes = {names, types, 0, 0};
    FaultResult result;
    result.code = GpbXmlCompiler_GetMdlAttr(context, compiler, root, item, &attributes);
    result.isDone = result.code == 0;
    for (uint8_t i = 0; i < attributes.ucCount; ++i)
    {
        result.add(names[i]);
        result.add(&types[i], sizeof(types[i]));
        ZMP_Free_F(names[i], "faults", 1);
    }
    GpbXmlCompiler_Destory(compiler);
    return result;
}

cJSON *findItem(cJSON *root, const std::string &key)
{
    for (cJSON *child = root->child; child != nullptr; child = child->next)
    {
        if (child->string != nullptr && key == child->string)
        {
            return child;
        }
        cJSON *const found = findItem(child, key);
        if (found != nullptr)
        {
            return found;
        }
    }
    return nullptr;
}

FaultRecords::FaultRecords()
    : m_leaves{{"name", 1, 1, 0},   {"flag", 1, 2, 0},   {"key", 1, 3, 9},
               {"number", 0, 4, 0}, {"a-leaf", 0, 5, 0}, {"a-bytes", 0, 6, 2}}
{
    m_nodes[0] = {nullptr, &m_nodes[1], nullptr, "top", 0x10, nullptr, 0, 0};
    m_nodes[1] = {&m_nodes[0], &m_nodes[2], nullptr, "list", 0x20, nullptr, 0, 0};
    m_nodes[2] = {&m_nodes[1], &m_nodes[3], nullptr, "kind", 0x30, nullptr, 0, GPB_YANG_CHOICE};
    m_nodes[3] = {&m_nodes[2], nullptr, nullptr, "a", 0x40, nullptr, 0, GPB_YANG_CASE};
    const size_t owners[] = {0, 0, 1, 1, 3, 3};
    for (size_t i = 0; i < m_leaves.size(); ++i)
    {
        GpbYangNode &node = m_nodes[owners[i]];
        if (node.pstLeafVec == nullptr)
        {
            node.pstLeafVec = VEC_VectorInit_F(1, 2, "faults", 1);
        }
        VEC_VectorSet(node.pstLeafVec, &m_leaves[i]);
    }
}

FaultRecords::~FaultRecords()
{
    for (const GpbYangNode &node : m_nodes)
    {
        VEC_VectorFree_F(node.pstLeafVec, "faults", 1);
    }
}

void forgetTemplates(GpbLibContext *context)
{
    for (uint32_t i = 0; i < VEC_VectorCount(context->pstTemplateVec); ++i)
    {
        auto *const info = static_cast<GpbTemplateInfo *>(context->pstTemplateVec->ppvSlot[i]);
        GPBLIB_ObjTree_Delete(&info->pstObjTree);
        ZMP_Free_F(info, "faults", 1);
        context->pstTemplateVec->ppvSlot[i] = nullptr;
    }
    VEC_VectorZipEmptySlot(context->pstTemplateVec);
}

FaultResult generateTemplate(GpbLibContext *context, const char *module, const FaultRecords &records)
{
    FaultResult result;
    uint32_t classId = 0;
    result.code = GPBLIB_GetClassIdFromYangNode(context, records.target(), &classId);
    if (result.code == 0)
    {
        result.code = GPBLIB_UpdateProtoFileClassInfo(context, module, 0, "/top/list", records.target());
    }
    if (result.code != 0)
    {
        return result;
    }
    uint8_t *bytes = nullptr;
    uint16_t length = 0;
    result.code = GPBLIB_DumpProtoFileData(context, "/top/list", classId, &bytes, &length);
    if (result.code == 0)
    {
        ObjTree tree = GPBLIB_ObjTree_Read(bytes, length, nullptr, 1, context);
        result.isDone = tree != nullptr;
        result.add(bytes, length);
        GPBLIB_ObjTree_Delete(&tree);
        ZMP_Free_F(bytes, "faults", 1);
    }
    forgetTemplates(context);
    return result;
}

} // namespace gpbtest
