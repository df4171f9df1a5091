/** Layout of the records that hosts share with the library: which field follows which, with no other padding than
 * theirs. */
#include <cstddef>
#include <vector>

#include <gtest/gtest.h>

#include "gpb_templatelib/gpb_template.h"

namespace
{

struct FieldPlace
{
    const char *name;
    size_t offset;
    size_t size;
    size_t alignment;
};

#define FIELD(type, field)                                                                                             \
    FieldPlace                                                                                                         \
    {                                                                                                                  \
#field, offsetof(type, field), sizeof(type::field), alignof(decltype(type::field))                             \
    }

size_t alignedUp(size_t offset, size_t alignment)
{
    return (offset + alignment - 1) / alignment * alignment;
}

/** Expects these fields, in this order, to make up a record. */
void expectLayout(const std::vector<FieldPlace> &fields, size_t size, size_t alignment)
{
    size_t end = 0;
    for (const FieldPlace &field : fields)
    {
        EXPECT_EQ(alignedUp(end, field.alignment), field.offset) << field.name;
        end = field.offset + field.size;
    }
    EXPECT_EQ(alignedUp(end, alignment), size) << "fields behind " << fields.back().name;
}

#define EXPECT_LAYOUT(type, ...) expectLayout({__VA_ARGS__}, sizeof(type), alignof(type))

TEST(Layout, PrintSlot)
{
    EXPECT_LAYOUT(GpbLibPrintEntry, FIELD(GpbLibPrintEntry, ulPrintArg), FIELD(GpbLibPrintEntry, pfnPrint));
    EXPECT_EQ(4u, sizeof(GpbLibPrintEntry::ulPrintArg));
}

TEST(Layout, InitRecord)
{
    EXPECT_LAYOUT(GpbLibInitParam, FIELD(GpbLibInitParam, uiModuleId), FIELD(GpbLibInitParam, ulPrintHandle),
                  FIELD(GpbLibInitParam, astPrint));
    EXPECT_EQ(4 * sizeof(GpbLibPrintEntry), sizeof(GpbLibInitParam::astPrint));
}

TEST(Layout, Context)
{
    EXPECT_LAYOUT(GpbLibContext, FIELD(GpbLibContext, uiModuleId), FIELD(GpbLibContext, pstSourceTree),
                  FIELD(GpbLibContext, pstImporter), FIELD(GpbLibContext, pstTemplateVec),
                  FIELD(GpbLibContext, pstProtoFileVec), FIELD(GpbLibContext, pfnClassMap),
                  FIELD(GpbLibContext, pfnFieldNameMap), FIELD(GpbLibContext, ulMapArg), FIELD(GpbLibContext, astPrint),
                  FIELD(GpbLibContext, ulPrintHandle), FIELD(GpbLibContext, pcPatchDir),
                  FIELD(GpbLibContext, stPkgPathList));
    EXPECT_EQ(4 * sizeof(GpbLibPrintEntry), sizeof(GpbLibContext::astPrint));
}

TEST(Layout, InstallPath)
{
    EXPECT_LAYOUT(GpbPkgPathNode, FIELD(GpbPkgPathNode, pstNext), FIELD(GpbPkgPathNode, pstPrev),
                  FIELD(GpbPkgPathNode, ulHandle), FIELD(GpbPkgPathNode, pcPath));
    EXPECT_EQ(4 * sizeof(void *), sizeof(GpbPkgPathNode));
}

TEST(Layout, ProtoFile)
{
    EXPECT_LAYOUT(GpbProtoFileInfo, FIELD(GpbProtoFileInfo, acFileName), FIELD(GpbProtoFileInfo, pstFileDesc),
                  FIELD(GpbProtoFileInfo, ucLoadState));
    EXPECT_EQ(256u, sizeof(GpbProtoFileInfo::acFileName));
    EXPECT_EQ(1u, sizeof(GpbProtoFileInfo::ucLoadState));
    EXPECT_EQ(256u + 2 * sizeof(void *), sizeof(GpbProtoFileInfo));
}

TEST(Layout, ClassAndFieldId)
{
    EXPECT_EQ(0u, offsetof(GpbCidFid, uiClassId));
    EXPECT_EQ(4u, offsetof(GpbCidFid, ucFieldId));
    EXPECT_EQ(5u, offsetof(GpbCidFid, ucEqual));
    EXPECT_EQ(8u, sizeof(GpbCidFid));
}

TEST(Layout, Template)
{
    EXPECT_LAYOUT(GpbTemplateInfo, FIELD(GpbTemplateInfo, uiClassId), FIELD(GpbTemplateInfo, pstObjTree));
    EXPECT_EQ(4u, sizeof(GpbTemplateInfo::uiClassId));
}

TEST(Layout, ObjectNode)
{
    EXPECT_LAYOUT(ObjNode, FIELD(ObjNode, stTree), FIELD(ObjNode, nodeType), FIELD(ObjNode, gpbSize),
                  FIELD(ObjNode, gpbFlg), FIELD(ObjNode, id), FIELD(ObjNode, objLen), FIELD(ObjNode, value),
                  FIELD(ObjNode, pNodeAttr), FIELD(ObjNode, pFieldAttr));
    EXPECT_EQ(offsetof(ObjNode, value), offsetof(ObjNode, pucString));
    EXPECT_EQ(8u, sizeof(ObjNode::value));
}

} // namespace
