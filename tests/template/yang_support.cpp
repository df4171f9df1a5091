#include "yang_support.h"

#include <cstdio>

#include <google/protobuf/descriptor.h>

namespace gpbtest
{

namespace
{

constexpr const char *kIfmProto = R"(
syntax = "proto3";
package ifm;
enum Status { STATUS_UP = 0; STATUS_DOWN = 1; }
message Ifm {
  string sys_name = 1;
  uint32 sys_index = 2;
  Interfaces interfaces = 3;
  string scalar = 4;
  message Interfaces {
    repeated Interface interface = 1;
    message Interface {
      string if_name = 1;
      uint32 if_index = 2;
      double f_double = 3;
      float f_float = 4;
      int32 f_int32 = 5;
      int64 f_int64 = 6;
      uint64 f_uint64 = 7;
      bool f_bool = 8;
      Status f_enum = 9;
      bytes f_bytes = 10;
      sint64 f_sint64 = 11;
      fixed32 f_fixed32 = 12;
      Empty f_message = 13;
      repeated string r_string = 14;
      repeated bytes r_bytes = 15;
      repeated uint32 r_uint32 = 16;
      repeated Status r_enum = 17;
      repeated double r_double = 18;
      uint32 big_number = 70000;
      oneof mode {
        ModeAccess mode_access = 20;
        ModeTrunk mode_trunk = 21;
        uint32 mode_scalar = 22;
      }
      message Empty {}
      message ModeAccess { uint32 vlan = 1; string note = 2; Inner inner = 3; }
      message ModeTrunk { uint32 pvid = 1; SubTagged sub_tagged = 2; message SubTagged { uint32 tag = 1; } }
      message Inner { uint32 depth = 1; }
    }
  }
}
)";

} // namespace

YangTree::~YangTree()
{
    clear();
}

void YangTree::clear()
{
    for (VecVector *vector : m_vectors)
    {
        VEC_VectorFree_F(vector, "test", 1);
    }
    m_vectors.clear();
}

GpbYangNode *YangTree::node(GpbYangNode *parent, const std::string &name, uint32_t classId, uint8_t kind)
{
    GpbYangNode record = {};
    record.pstParent = parent;
    record.pcName = m_names.emplace_back(name).c_str();
    record.uiClassId = classId;
    record.ucNodeKind = kind;
    GpbYangNode *added = &m_nodes.emplace_back(record);
    if (parent != nullptr)
    {
        GpbYangNode **link = &parent->pstFirstChild;
        while (*link != nullptr)
        {
            link = &(*link)->pstNextSibling;
        }
        *link = added;
    }
    return added;
}

GpbYangLeaf *YangTree::leaf(GpbYangNode *node, const std::string &name, uint32_t fieldId, uint32_t isKey,
                            uint32_t mapFieldId)
{
    if (node->pstLeafVec == nullptr)
    {
        emptyLeafVector(node);
    }
    m_leaves.push_back({m_names.emplace_back(name).c_str(), isKey, fieldId, mapFieldId});
    VEC_VectorSet(node->pstLeafVec, &m_leaves.back());
    return &m_leaves.back();
}

void YangTree::emptyLeafVector(GpbYangNode *node)
{
    node->pstLeafVec = VEC_VectorInit_F(1, 2, "test", 1);
    m_vectors.push_back(node->pstLeafVec);
}

MappingHost *MappingHost::s_current = nullptr;

MappingHost::MappingHost()
{
    s_current = this;
}

MappingHost::~MappingHost()
{
    s_current = nullptr;
}

uint32_t MappingHost::classMap(uint32_t arg, const GpbCidFid *indexKey, const GpbCidFid *domKey, GpbCidFid *out)
{
    EXPECT_EQ(kArg, arg);
    EXPECT_NE(indexKey == nullptr, domKey == nullptr) << "exactly one key is given";
    const GpbCidFid &key = indexKey != nullptr ? *indexKey : *domKey;
    EXPECT_EQ(0, key.ucEqual | key.aucReserved[0] | key.aucReserved[1]);
    EXPECT_EQ(0u, out->uiClassId);
    EXPECT_EQ(0, out->ucFieldId | out->ucEqual | out->aucReserved[0] | out->aucReserved[1]);
    char text[64];
    std::snprintf(text, sizeof(text), "%s 0x%x.%u", indexKey != nullptr ? "index" : "dom", key.uiClassId,
                  static_cast<unsigned int>(key.ucFieldId));
    s_current->asked.emplace_back(text);
    return s_current->onClass(indexKey != nullptr, key, out);
}

uint32_t MappingHost::nameMap(uint32_t arg, const char *name, GpbCidFid *out)
{
    EXPECT_EQ(kArg, arg);
    EXPECT_EQ(0u, out->uiClassId);
    s_current->asked.emplace_back(name != nullptr ? "name " + std::string(name) : "notification");
    return s_current->onName(name, out);
}

void TemplateFixture::SetUp()
{
    LibraryFixture::SetUp();
    load("ifm", kIfmProto);
    m_ifm = m_yang.node(nullptr, "ifm", 0x10);
    m_interfaces = m_yang.node(m_ifm, "interfaces", 0x20);
    m_interface = m_yang.node(m_interfaces, "interface", 0x30);
}

void TemplateFixture::TearDown()
{
    m_yang.clear(); // its vectors are held under the platform that is checked now
    LibraryFixture::TearDown();
}

void TemplateFixture::load(const std::string &module, const std::string &proto)
{
    writeProto(module, proto);
    EXPECT_EQ(0u, GPBLIB_ProtobufLoad(context(), module.c_str(), 0));
    log().clear();
}

const google::protobuf::FileDescriptor *TemplateFixture::file(const std::string &module) const
{
    return GPBLIB_GetProtoFdByFileName((module + ".proto").c_str(), context())->pstFileDesc;
}

const google::protobuf::Descriptor *TemplateFixture::message(const std::string &name) const
{
    return file("ifm")->pool()->FindMessageTypeByName(name);
}

const google::protobuf::FieldDescriptor *TemplateFixture::field(const std::string &name) const
{
    return message("ifm.Ifm.Interfaces.Interface")->FindFieldByName(name);
}

void TemplateFixture::useClassMap()
{
    GPBLIB_RegisterClassMapFunc(context(), MappingHost::kArg, MappingHost::classMap);
}

void TemplateFixture::useNameMap()
{
    GPBLIB_RegisterFieldNameMapFunc(context(), MappingHost::kArg, MappingHost::nameMap);
}

uint32_t TemplateFixture::update(const GpbYangNode *node) const
{
    return GPBLIB_UpdateProtoFileClassInfo(context(), "ifm", 0, "/p", node);
}

std::string TemplateFixture::stored(uint32_t classId) const
{
    const GpbTemplateInfo *info = GPBLIB_GetGpbTemplate(classId, context());
    return info == nullptr ? "none" : describe(info->pstObjTree);
}

} // namespace gpbtest
