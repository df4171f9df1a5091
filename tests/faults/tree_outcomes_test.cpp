/** Object trees and what is written of them: what comes of each failing call. */
#include "faults/fault_outcomes.h"
#include "gpb_templatelib/gpb_objtree.h"

namespace
{

using gpbtest::FaultResult;

class TreeOutcomes : public gpbtest::FaultOutcomes
{
protected:
    /** A tree with a container, its attributes, a text and a number; null when one of them cannot be made. */
    static ObjTree build()
    {
        ObjTree tree = GPBLIB_RDMI_CreateRoot(kModuleId, "root");
        const RdmiNodeAttr node = {1, "box", 3, 0};
        const RdmiFieldAttr field = {1, 2, "leaf", 4, 5, 6};
        ObjNode *const box = GPBLIB_RDMI_CreateNode(tree, nullptr, 1, &node);
        if (GPBLIB_RDMI_AddFieldAttribute(tree, box, &field) == nullptr ||
            GPBLIB_RDMI_CreateString(tree, box, 2, 2, "ab") == nullptr ||
            GPBLIB_RDMI_CreateInteger(tree, box, 3, 7) == nullptr)
        {
            GPBLIB_ObjTree_Delete(&tree);
        }
        return tree;
    }

    FaultResult write(ObjTree tree)
    {
        uint8_t bytes[GPB_PATH_SIZE] = {};
        FaultResult result;
        const uint32_t written = GPBLIB_ObjTree_Write(tree, bytes, sizeof(bytes), GPB_OBJTREE_MODE_TEMPLATE, context());
        result.isDone = written != 0;
        result.add(bytes, written);
        return result;
    }
};

TEST_F(TreeOutcomes, Build)
{
    expectOutcomes(
        [&]
        {
            ObjTree tree = build();
            const uint32_t length = GPBLIB_ObjTree_GetWriteLen(tree);
            FaultResult result;
            result.isDone = tree != nullptr;
            result.add(&length, sizeof(length));
            GPBLIB_ObjTree_Delete(&tree);
            return result;
        },
        {"MALLOC 1-22: none, code 0", "MEMCPY 1-4: same; gpb_template_rdmi_tree:335 asserted",
         "MEMSET 1-4: same; gpb_template_rdmi_tree:335 asserted"});
}

TEST_F(TreeOutcomes, WriteWithoutListeners)
{
    recreateContext({GPB_LOG_ERROR, GPB_LOG_PROGRESS});
    ObjTree tree = build();
    expectOutcomes([&] { return write(tree); },
                   {"MEMCPY 1-5,7-8,10,12-19,21,23-28,30-37,39-40: other bytes; gpb_template_rdmi_tree:60 asserted",
                    "MEMCPY 6,11,22: same; gpb_template_rdmi_tree:60 asserted",
                    "MEMCPY 9,20,29,38: other bytes; gpb_template_rdmi_tree:136 asserted"});
    GPBLIB_ObjTree_Delete(&tree);
}

TEST_F(TreeOutcomes, Print)
{
    ObjTree tree = build();
    expectOutcomes(
        [&]
        {
            GPBLIB_ObjTree_Print(tree, context());
            GPBLIB_DBG_PrintPath(tree, context());
            FaultResult result;
            result.isDone = true;
            return result;
        },
        {"STRCPY 1: same; -1: Node: 0.; +1: Node: ",
         "STRNCPY 1: same; gpb_template_rdmi_tree:915 asserted; -1:   StrLeaf: { id:3, gpbFlg:1, objLen:4, gpbSize:0, "
         "value:root }; +1:   StrLeaf: { id:3, gpbFlg:1, objLen:4, gpbSize:0, value: }",
         "STRNCPY 2: same; gpb_template_rdmi_tree:915 asserted; -1:    StrLeaf: { id:3, gpbFlg:1, objLen:3, gpbSize:0, "
         "value:box }; +1:    StrLeaf: { id:3, gpbFlg:1, objLen:3, gpbSize:0, value: }",
         "STRNCPY 3: same; gpb_template_rdmi_tree:915 asserted; -1:     StrLeaf: { id:2, gpbFlg:1, objLen:4, "
         "gpbSize:0, value:leaf }; +1:     StrLeaf: { id:2, gpbFlg:1, objLen:4, gpbSize:0, value: }",
         "STRNCPY 4: same; gpb_template_rdmi_tree:915 asserted; -1:   StrLeaf: { id:2, gpbFlg:1, objLen:2, gpbSize:0, "
         "value:ab }; +1:   StrLeaf: { id:2, gpbFlg:1, objLen:2, gpbSize:0, value: }",
         "SNPRINTF 1: same; -1: Node: 0.; +1: Node: ",
         "SNPRINTF_TRUNCATED 1-2: same; gpb_template_rdmi_tree:902 asserted; a line is empty",
         "SNPRINTF_TRUNCATED 3,8: same; gpb_template_rdmi_tree:902 asserted; -1:  Contain: { id:65535, gpbFlg:1, "
         "objLen:0, gpbSize:0, value:0x0 }; +1:  ",
         "SNPRINTF_TRUNCATED 4: same; gpb_template_rdmi_tree:902 asserted; -1:   IntLeaf: { id:2, gpbFlg:1, objLen:0, "
         "gpbSize:0, value:0x0 }; +1:   ",
         "SNPRINTF_TRUNCATED 5: same; gpb_template_rdmi_tree:902 asserted; -1:   StrLeaf: { id:3, gpbFlg:1, objLen:4, "
         "gpbSize:0, value:root }; +1:   ",
         "SNPRINTF_TRUNCATED 6: same; gpb_template_rdmi_tree:902 asserted; -1:   IntLeaf: { id:4, gpbFlg:1, objLen:0, "
         "gpbSize:0, value:0x0 }; +1:   ",
         "SNPRINTF_TRUNCATED 7: same; gpb_template_rdmi_tree:902 asserted; -1:  Contain: { id:1, gpbFlg:1, objLen:0, "
         "gpbSize:0, value:0x0 }; +1:  ",
         "SNPRINTF_TRUNCATED 9: same; gpb_template_rdmi_tree:902 asserted; -1:   Contain: { id:65535, gpbFlg:1, "
         "objLen:0, gpbSize:0, value:0x0 }; +1:   ",
         "SNPRINTF_TRUNCATED 10: same; gpb_template_rdmi_tree:902 asserted; -1:    IntLeaf: { id:2, gpbFlg:1, "
         "objLen:0, gpbSize:0, value:0x1 }; +1:    ",
         "SNPRINTF_TRUNCATED 11: same; gpb_template_rdmi_tree:902 asserted; -1:    StrLeaf: { id:3, gpbFlg:1, "
         "objLen:3, gpbSize:0, value:box }; +1:    ",
         "SNPRINTF_TRUNCATED 12: same; gpb_template_rdmi_tree:902 asserted; -1:    IntLeaf: { id:4, gpbFlg:1, "
         "objLen:0, gpbSize:0, value:0x0 }; +1:    ",
         "SNPRINTF_TRUNCATED 13: same; gpb_template_rdmi_tree:902 asserted; -1:    Contain: { id:1, gpbFlg:1, "
         "objLen:0, gpbSize:0, value:0x0 }; +1:    ",
         "SNPRINTF_TRUNCATED 14: same; gpb_template_rdmi_tree:902 asserted; -1:     IntLeaf: { id:1, gpbFlg:1, "
         "objLen:0, gpbSize:0, value:0x1 }; +1:     ",
         "SNPRINTF_TRUNCATED 15: same; gpb_template_rdmi_tree:902 asserted; -1:     StrLeaf: { id:2, gpbFlg:1, "
         "objLen:4, gpbSize:0, value:leaf }; +1:     ",
         "SNPRINTF_TRUNCATED 16: same; gpb_template_rdmi_tree:902 asserted; -1:     IntLeaf: { id:3, gpbFlg:1, "
         "objLen:0, gpbSize:0, value:0x2 }; +1:     ",
         "SNPRINTF_TRUNCATED 17: same; gpb_template_rdmi_tree:902 asserted; -1:     IntLeaf: { id:4, gpbFlg:1, "
         "objLen:0, gpbSize:0, value:0x5 }; +1:     ",
         "SNPRINTF_TRUNCATED 18: same; gpb_template_rdmi_tree:902 asserted; -1:     IntLeaf: { id:5, gpbFlg:1, "
         "objLen:0, gpbSize:0, value:0x6 }; +1:     ",
         "SNPRINTF_TRUNCATED 19: same; gpb_template_rdmi_tree:902 asserted; -1:   StrLeaf: { id:2, gpbFlg:1, objLen:2, "
         "gpbSize:0, value:ab }; +1:   ",
         "SNPRINTF_TRUNCATED 20: same; gpb_template_rdmi_tree:902 asserted; -1:   IntLeaf: { id:3, gpbFlg:1, objLen:0, "
         "gpbSize:0, value:0x7 }; +1:   ",
         "VSNPRINTF_TRUNCATED 1-23: same; gpb_template:112 asserted; a line is empty"});
    GPBLIB_ObjTree_Delete(&tree);
}

TEST_F(TreeOutcomes, Read)
{
    const uint8_t bytes[] = {0x06, 0x0C, 0xFE, 0xFF, 0x1F, 0x08, 0x10, 0x00, 0x1A, 0x02, 0x61, 0x62, 0x20, 0x00};
    expectOutcomes(
        [&]
        {
            ObjTree tree = GPBLIB_ObjTree_Read(bytes, sizeof(bytes), nullptr, kModuleId, context());
            uint8_t again[sizeof(bytes)] = {};
            FaultResult result;
            result.isDone = tree != nullptr;
            result.add(again, GPBLIB_ObjTree_Write(tree, again, sizeof(again), GPB_OBJTREE_MODE_TEMPLATE, nullptr));
            GPBLIB_ObjTree_Delete(&tree);
            return result;
        },
        {"MALLOC 1: none, code 0", "MALLOC 2-3: none, code 0; +1: RDMI ObjTree failed to alloc memory",
         "MALLOC 4: none, code 0; +1: RDMI ObjTree failed to read [mem]feff1f0810001a0261622000; +1: Node: 0.",
         "MALLOC 5: none, code 0; +1: RDMI ObjTree failed to read [mem]10001a0261622000; +1: Node: 0.",
         "MALLOC 6-7: none, code 0; +1: RDMI ObjTree failed to read [mem]1a0261622000; +1: Node: 0.",
         "MALLOC 8: none, code 0; +1: RDMI ObjTree failed to read [str] ; +1: Node: 0.",
         "MEMCPY 1: other bytes; gpb_template_rdmi_tree:479 asserted",
         "MEMCPY 2-6,8-9,11: other bytes; gpb_template_rdmi_tree:60 asserted",
         "MEMCPY 7,12: same; gpb_template_rdmi_tree:60 asserted",
         "MEMCPY 10: other bytes; gpb_template_rdmi_tree:136 asserted",
         "MEMSET 1: same; gpb_template_rdmi_tree:474 asserted"});
}

TEST_F(TreeOutcomes, MemoryTexts)
{
    const uint8_t bytes[] = {0x01, 0x02};
    expectOutcomes(
        [&]
        {
            char text[GPB_PATH_SIZE] = {};
            GPBLIB_DBG_DumpMemToString(bytes, sizeof(bytes), text, sizeof(text));
            FaultResult result;
            result.isDone = true;
            result.add(text);
            return result;
        },
        {"SPRINTF 1-2: other bytes; gpb_template_rdmi_tree:985 asserted",
         "SNPRINTF_TRUNCATED 1: other bytes; gpb_template_rdmi_tree:971 asserted"});
    expectOutcomes(
        [&]
        {
            FaultResult result;
            result.code = GPBLIB_PrintHexBuf_espm(bytes, sizeof(bytes), context());
            result.isDone = result.code == 0;
            return result;
        },
        {"SPRINTF 1-2: none, code 1; -1: gpb(0x):01 02",
         "VSNPRINTF_TRUNCATED 1: same; gpb_template:112 asserted; a line is empty"});
}

} // namespace
