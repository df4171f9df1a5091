// Dumping stored templates, and the hexadecimal trace.
#include <cstdio>

#include "platform/zmp.h"
#include "yang_support.h"

namespace gpbtest
{
namespace
{

class DumpTest : public TemplateFixture
{
protected:
    // Stores a tree as the template of a class; the context owns both from then on.
    void store(uint32_t classId, ObjTree tree)
    {
        auto *info = static_cast<GpbTemplateInfo *>(
            ZMP_Malloc_F(kModuleId, g_aucZmpMemPt[0], sizeof(GpbTemplateInfo), "test", 1));
        *info = {classId, tree};
        VEC_VectorSet(context()->pstTemplateVec, info);
    }

    // A tree whose template takes exactly `size` bytes, at least 64: one string leaf fills it up.
    static ObjTree treeOfSize(uint32_t size)
    {
        for (uint32_t length = size - 20; length < size; ++length)
        {
            ObjTree tree = GPBLIB_ObjTree_Create(0, kModuleId);
            const std::string content(length, 'x');
            GPBLIB_RDMI_CreateString(tree, nullptr, 1, length, content.data());
            if (GPBLIB_ObjTree_GetWriteLen(tree) == size)
            {
                return tree;
            }
            GPBLIB_ObjTree_Delete(&tree);
        }
        ADD_FAILURE() << "no tree of " << size << " bytes";
        return nullptr;
    }

    // Expects a failure that leaves the out arguments alone.
    void expectFailure(uint32_t classId)
    {
        uint8_t marker = 0;
        uint8_t *buffer = &marker;
        uint16_t length = 0xBEEF;
        EXPECT_EQ(1u, GPBLIB_DumpProtoFileData(context(), "/p", classId, &buffer, &length));
        EXPECT_EQ(&marker, buffer);
        EXPECT_EQ(0xBEEF, length);
    }

    // The trace of bytes that count up from 0.
    uint32_t trace(uint32_t length)
    {
        Bytes bytes(length + 1); // never without memory, even for no bytes
        for (uint32_t i = 0; i < length; ++i)
        {
            bytes[i] = static_cast<uint8_t>(i);
        }
        return GPBLIB_PrintHexBuf_espm(bytes.data(), length, context());
    }

    // The bytes from..to-1 of such a trace, each followed by a blank.
    static std::string digits(uint32_t from, uint32_t to)
    {
        std::string text;
        for (uint32_t i = from; i < to; ++i)
        {
            char byte[8];
            std::snprintf(byte, sizeof(byte), "%02x ", i & 0xFF);
            text += byte;
        }
        return text;
    }

    static std::string cut(std::string text)
    {
        text.pop_back();
        return text;
    }
};

TEST_F(DumpTest, ATemplateIsHandedOutAndTraced)
{
    load("ab", "syntax = \"proto3\"; message Ab { uint32 leaf = 1; }");
    const GpbYangNode *top = m_yang.node(nullptr, "ab", 0x50);
    ASSERT_EQ(0u, GPBLIB_UpdateProtoFileClassInfo(context(), "ab", 0, "/ab", top));
    log().clear();
    uint8_t *buffer = nullptr;
    uint16_t length = 0;
    EXPECT_EQ(0u, GPBLIB_DumpProtoFileData(context(), "/ab", 0x50, &buffer, &length));
    ASSERT_EQ(14u, length);
    EXPECT_EQ("06 0C FE FF 1F 08 10 00 1A 02 61 62 20 00", toHex(Bytes(buffer, buffer + length)));
    const PlatformEvent allocation = events().ofKind(GPB_HOST_EVENT_MALLOC).back();
    EXPECT_EQ(buffer, allocation.memory);
    EXPECT_EQ(14u, allocation.size);
    EXPECT_EQ(kModuleId, allocation.moduleId);
    ZMP_Free_F(buffer, "test", 1);
    const std::string attr = "Contain: { id:65535, gpbFlg:1, objLen:8, gpbSize:12, value:0x0 }";
    EXPECT_LOG(
        log(), "1: gpblib dump template begin (path=/ab, class=0x50)", "1: gpb obj tree write begin",
        "1: gpb obj tree output begin:", "1: RootDoc: { id:0, gpbFlg:0, objLen:12, gpbSize:14, value:0x5a0102f3 }",
        "1: " + attr, "1:  " + attr, "1:   IntLeaf: { id:2, gpbFlg:1, objLen:0, gpbSize:2, value:0x0 }",
        "1:   StrLeaf: { id:3, gpbFlg:1, objLen:2, gpbSize:4, value:ab }",
        "1:   IntLeaf: { id:4, gpbFlg:1, objLen:0, gpbSize:2, value:0x0 }", "1: gpb obj tree output end",
        "1: gpb obj tree write end", "1: dump gpb template len = 14, classid=0x50",
        "1: gpb(0x):06 0c fe ff 1f 08 10 00 1a 02 61 62 20 00", "1: gpblib dump template end (path=/ab, class=0x50)");
}

TEST_F(DumpTest, TheExampleOfTheFormatsDescriptionHasItsBytes)
{
    load("ab", "syntax = \"proto3\"; message Ab { uint32 leaf = 1; }");
    GpbYangNode *top = m_yang.node(nullptr, "ab", 0x1234);
    m_yang.leaf(top, "leaf", 3);
    ASSERT_EQ(0u, GPBLIB_UpdateProtoFileClassInfo(context(), "ab", 0, "/ab", top));
    EXPECT_EQ("06 22 FE FF 1F 18 10 00 1A 02 61 62 20 00 0E 0E 08 03 12 04 6C 65 61 66 18 01 20 0D 28 00"
              " 08 B4 A4 80 80 30",
              toHex(write(GPBLIB_GetGpbTemplate(0x1234, context())->pstObjTree, GPB_OBJTREE_MODE_TEMPLATE)));
}

TEST_F(DumpTest, ADumpIsReadBack)
{
    m_yang.leaf(m_interface, "if-name", 1, 1);
    m_yang.leaf(m_interface, "if-index", 2);
    ASSERT_EQ(0u, update(m_interface));
    uint8_t *buffer = nullptr;
    uint16_t length = 0;
    ASSERT_EQ(0u, GPBLIB_DumpProtoFileData(context(), "/p", 0x30, &buffer, &length));
    const ReadResult result = read(Bytes(buffer, buffer + length), kModuleId);
    ZMP_Free_F(buffer, "test", 1);
    ASSERT_NE(nullptr, result.tree);
    EXPECT_EQ(stored(0x30), describe(result.tree.get()));
}

TEST_F(DumpTest, AClassWithoutTemplateFailsAfterTheBeginLine)
{
    expectFailure(0x99);
    EXPECT_LOG(log(), "1: gpblib dump template begin (path=/p, class=0x99)",
               "0: failed to get gpb template from gpb local when dump it, classid = 0x99");
}

TEST_F(DumpTest, ATemplateWithoutTreeHasNoLength)
{
    store(0x51, nullptr);
    expectFailure(0x51);
    EXPECT_LOG(log(), "1: gpblib dump template begin (path=/p, class=0x51)", "0: gpblib template len is 0");
}

TEST_F(DumpTest, WithoutMemoryTheDumpFailsInSilence)
{
    store(0x52, treeOfSize(100));
    GpbHost_FailCall(GPB_HOST_MALLOC, 1);
    expectFailure(0x52);
    EXPECT_LOG(log(), "1: gpblib dump template begin (path=/p, class=0x52)");
}

TEST_F(DumpTest, ATreeThatCannotBeWrittenIsReportedAndItsBufferFreed)
{
    ObjTree tree = treeOfSize(100);
    childAt(tree, 0)->objLen = 200; // the remembered sizes no longer hold
    store(0x53, tree);
    expectFailure(0x53);
    EXPECT_EQ("0: failed to serialize the gpb template, writelen = 0", log().texts().back());
}

TEST_F(DumpTest, NullArgumentsFail)
{
    uint8_t *buffer = nullptr;
    uint16_t length = 0;
    store(0x54, treeOfSize(100));
    EXPECT_EQ(1u, GPBLIB_DumpProtoFileData(nullptr, "/p", 0x54, &buffer, &length));
    EXPECT_EQ("", log().take());
    EXPECT_EQ(1u, GPBLIB_DumpProtoFileData(context(), nullptr, 0x54, nullptr, &length));
    EXPECT_LOG(log(), "1: gpblib dump template begin (path=(null), class=0x54)");
    EXPECT_EQ(1u, GPBLIB_DumpProtoFileData(context(), "/p", 0x54, &buffer, nullptr));
    EXPECT_EQ(nullptr, buffer);
}

TEST_F(DumpTest, WhateverFailsNothingIsLeft)
{
    store(0x55, treeOfSize(300));
    failEachCall(
        [this](const FaultRun &run)
        {
            uint8_t *buffer = nullptr;
            uint16_t length = 0;
            const uint32_t ret = GPBLIB_DumpProtoFileData(context(), "/p", 0x55, &buffer, &length);
            EXPECT_EQ(ret == 0, buffer != nullptr);
            EXPECT_TRUE(run.fails() || ret == 0);
            ZMP_Free_F(buffer, "test", 1);
            log().clear();
        });
}

TEST_F(DumpTest, ATraceHas200BytesALine)
{
    EXPECT_EQ(0u, trace(0));
    EXPECT_EQ("", log().take());
    EXPECT_EQ(0u, trace(1));
    EXPECT_LOG(log(), "1: gpb(0x):00");
    EXPECT_EQ(0u, trace(199));
    EXPECT_LOG(log(), "1: gpb(0x):" + cut(digits(0, 199)));
    EXPECT_EQ(0u, trace(200));
    EXPECT_LOG(log(), "1: gpb(0x):" + cut(digits(0, 200)));
    EXPECT_EQ(0u, trace(400));
    EXPECT_LOG(log(), "1: gpb(0x):" + digits(0, 200), "1: gpb(0x):" + cut(digits(200, 400)));
}

TEST_F(DumpTest, ATraceNeedsBytesAndContext)
{
    const uint8_t byte = 0;
    EXPECT_EQ(1u, GPBLIB_PrintHexBuf_espm(nullptr, 1, context()));
    EXPECT_EQ(1u, GPBLIB_PrintHexBuf_espm(nullptr, 0, context()));
    EXPECT_EQ(1u, GPBLIB_PrintHexBuf_espm(&byte, 1, nullptr));
    EXPECT_EQ(0u, GPBLIB_PrintHexBuf_espm(&byte, 0, context()));
    EXPECT_EQ("", log().take());
}

TEST_F(DumpTest, AFailingFormatterStopsTheTraceWithoutTheOpenLine)
{
    GpbHost_FailCall(GPB_HOST_SPRINTF, 201);
    EXPECT_EQ(1u, trace(300));
    EXPECT_LOG(log(), "1: gpb(0x):" + digits(0, 200));
    GpbHost_FailCall(GPB_HOST_SPRINTF, 3);
    EXPECT_EQ(1u, trace(10));
    EXPECT_EQ("", log().take());
}

TEST_F(DumpTest, WithoutListenersATraceFormatsNothing)
{
    recreateContext({GPB_LOG_PROGRESS});
    const uint64_t before = GpbHost_CallCount(GPB_HOST_SPRINTF);
    EXPECT_EQ(0u, trace(100000));
    EXPECT_EQ(before, GpbHost_CallCount(GPB_HOST_SPRINTF));
}

using DumpDeliberateOddityTest = DumpTest;

TEST_F(DumpDeliberateOddityTest, AFullLineThatOthersFollowKeepsItsTrailingBlank)
{
    // Who joins the lines of a trace gets its bytes with a blank between them.
    EXPECT_EQ(0u, trace(201));
    EXPECT_LOG(log(), "1: gpb(0x):" + digits(0, 200), "1: gpb(0x):c8");
}

TEST_F(DumpDeliberateOddityTest, ALengthAboveSixteenBitsIsCut)
{
    // The length is 16 bits wide in the interface; the buffer holds the whole template all the same.
    recreateContext({GPB_LOG_PROGRESS});
    store(0x56, treeOfSize(65535));
    store(0x57, treeOfSize(65536 + 300));
    uint8_t *buffer = nullptr;
    uint16_t length = 0;
    EXPECT_EQ(0u, GPBLIB_DumpProtoFileData(context(), "/p", 0x56, &buffer, &length));
    EXPECT_EQ(65535u, length);
    ZMP_Free_F(buffer, "test", 1);
    EXPECT_EQ(0u, GPBLIB_DumpProtoFileData(context(), "/p", 0x57, &buffer, &length));
    EXPECT_EQ(300u, length);
    EXPECT_EQ('x', buffer[65536 + 299]);
    ZMP_Free_F(buffer, "test", 1);
}

} // namespace
} // namespace gpbtest
