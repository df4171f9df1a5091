/** Templates, with each way to map ids: what comes of each failing call, and of each answer that is an error. */
#include "faults/fault_outcomes.h"
#include "gpb_templatelib/gpb_objtree.h"
#include "platform/zmp.h"

namespace
{

using gpbtest::FaultResult;

constexpr uint32_t kErrorAnswer = 0x77;

/** Questions to the callbacks so far, and the one that is answered with an error (0: none). */
uint64_t g_questions = 0;
uint64_t g_failing = 0;

uint32_t answer(uint32_t classId, uint8_t fieldId, GpbCidFid *out)
{
    *out = {classId, fieldId, 1, {}};
    return ++g_questions == g_failing ? kErrorAnswer : 0;
}

uint32_t mapClass(uint32_t, const GpbCidFid *index, const GpbCidFid *dom, GpbCidFid *out)
{
    const GpbCidFid &key = index != nullptr ? *index : *dom;
    return answer(key.uiClassId + 0x100, key.ucFieldId, out);
}

uint32_t mapName(uint32_t, const char *, GpbCidFid *out)
{
    return answer(0x500, 5, out);
}

class TemplateOutcomes : public gpbtest::FaultOutcomes
{
protected:
    void SetUp() override
    {
        FaultOutcomes::SetUp();
        writeProto(gpbtest::kFaultModule, gpbtest::kFaultProto);
        ASSERT_EQ(0u, GPBLIB_ProtobufLoad(context(), gpbtest::kFaultModule, 0));
    }

    /** The class id and the template of it, told by its length. */
    FaultResult generate(const gpbtest::FaultRecords &records)
    {
        FaultResult result;
        uint32_t classId = 0;
        result.code = GPBLIB_GetClassIdFromYangNode(context(), records.target(), &classId);
        if (result.code == 0)
        {
            result.code =
                GPBLIB_UpdateProtoFileClassInfo(context(), gpbtest::kFaultModule, 0, "/top/list", records.target());
        }
        const GpbTemplateInfo *const info = GPBLIB_GetGpbTemplate(classId, context());
        EXPECT_EQ(result.code == 0, info != nullptr) << "nothing half done is stored";
        result.isDone = info != nullptr;
        if (info != nullptr)
        {
            const uint32_t length = GPBLIB_ObjTree_GetWriteLen(info->pstObjTree);
            result.add(&length, sizeof(length));
        }
        gpbtest::forgetTemplates(context());
        return result;
    }

    /**
     * The outcomes of a generation, which differ little between the ways to map ids.
     *
     * @param storedClassId      under which the template would be stored, as it is logged
     * @param linesOfMappedLeaf  lines that are logged about each of the four leaves that lead to another class
     */
    static std::vector<std::string> outcomesOfGeneration(const std::string &storedClassId, unsigned linesOfMappedLeaf)
    {
        const auto gone = [=](unsigned lines, unsigned mappedLeaves)
        { return std::to_string(lines + mappedLeaves * linesOfMappedLeaf) + " lines gone"; };
        return {
            "MALLOC 1-2: none, code 1; " + gone(21, 4) +
                "; +1: failed to malloc stack; +0: failed to generate gpb template",
            "MALLOC 3: none, code 1; " + gone(21, 4) +
                "; +0: failed to malloc memory for saving gpb template; +1: failed to pop node from stack; +0: failed "
                "to generate gpb template",
            "MALLOC 4-9: none, code 1; " + gone(20, 4) +
                "; +0: failed to insert leaf node to root; +1: failed to pop node from stack; +0: failed to generate "
                "gpb template",
            "MALLOC 10-11,19,40-41,49,70-71,79-80: other bytes",
            "MALLOC 12-18: other bytes; +0: failed to AddFieldAttribute [fid=1, fname=name] of container[classid=16, "
            "nodename=top],",
            "MALLOC 20-26: other bytes; +0: failed to AddFieldAttribute [fid=2, fname=flag] of container[classid=16, "
            "nodename=top],",
            "MALLOC 27-32: none, code 1; " + gone(14, 3) +
                "; +0: failed to Create Container node[ClassId=20, ClassName=list].; +0: failed to fill Container "
                "fieldAttr; +1: failed to update Gpb template; +0: failed to generate gpb template",
            "MALLOC 33-39: none, code 1; " + gone(14, 3) +
                "; +0: failed to Create Container fieldAttr; +0: failed to fill Container fieldAttr; +1: failed to "
                "update Gpb template; +0: failed to generate gpb template",
            "MALLOC 42-48: other bytes; +0: failed to AddFieldAttribute [fid=3, fname=key] of container[classid=32, "
            "nodename=list],",
            "MALLOC 50-56: other bytes; +0: failed to AddFieldAttribute [fid=4, fname=number] of container[classid=32, "
            "nodename=list],",
            "MALLOC 57-62: none, code 1; " + gone(8, 2) +
                "; +0: failed to Create Container node[ClassId=40, ClassName=a].; +0: failed to fill Container "
                "fieldAttr; +0: Failed to insert case leaf node to sub container; +0: 2.failed to insert leaf node to "
                "sub container; +1: failed to update Gpb template; +0: failed to generate gpb template",
            "MALLOC 63-69: none, code 1; " + gone(8, 2) +
                "; +0: failed to Create Container fieldAttr; +0: failed to fill Container fieldAttr; +0: Failed to "
                "insert case leaf node to sub container; +0: 2.failed to insert leaf node to sub container; +1: failed "
                "to update Gpb template; +0: failed to generate gpb template",
            "MALLOC 72-78: other bytes; +0: failed to AddFieldAttribute [fid=5, fname=a-leaf] of container[classid=64, "
            "nodename=a],",
            "MALLOC 81-87: other bytes; +0: failed to AddFieldAttribute [fid=6, fname=a-bytes] of "
            "container[classid=64, nodename=a],",
            "VEC_SET 1: none, code 1; 2 lines gone; +0: failed to save gpb template, classid=" + storedClassId +
                "; +0: failed to generate gpb template",
            "STACK_CREATE 1: none, code 1; " + gone(21, 4) +
                "; +1: failed to malloc stack; +0: failed to generate gpb template",
            "STACK_PUSH 1-2: none, code 1; " + gone(21, 4) +
                "; +1: failed to push father node to stack; +0: failed to generate gpb template",
            "STACK_POP 1: none, code 1; " + gone(21, 4) +
                "; +1: failed to pop node from stack; +0: failed to generate gpb template",
            "STACK_POP 2: none, code 1; " + gone(14, 3) +
                "; +0: failed to pop container, ret = 0x1; +1: failed to update Gpb template; +0: failed to generate "
                "gpb template",
            "MEMCPY 1-15: same; gpb_template_rdmi_tree:335 asserted",
            "MEMSET 1: same; gpb_template:1260 asserted",
            "MEMSET 2-16: same; gpb_template_rdmi_tree:335 asserted",
            "STRCPY 1: none, code 1; gpb_template:1208 asserted; " + gone(21, 4) +
                "; +0: failed to get message from proto file, nodeName = top, uiMsgCnt = 1; +1: failed to pop node "
                "from stack; +0: failed to generate gpb template",
            "STRCPY 2: same; gpb_util asserted",
            "STRCPY 3: none, code 1; " + gone(14, 3) +
                "; +0: protofile has not this node = list; +0: protofile has not this node = list; +1: failed to "
                "update Gpb template; +0: failed to generate gpb template",
            "STRCPY 4: other bytes; " + gone(6, 2) + "; +0: failed to find gpb node kind_a",
            "STRNCPY 1: other bytes; gpb_template:1010 asserted; " + gone(2, 1) +
                "; +1: protofile has not this field = name",
            "STRNCPY 2: other bytes; gpb_template:1010 asserted; 2 lines gone; +1: protofile has not this field = flag",
            "STRNCPY 3: other bytes; gpb_template:1010 asserted; " + gone(2, 1) +
                "; +1: protofile has not this field = key",
            "STRNCPY 4: other bytes; gpb_template:1010 asserted; 2 lines gone; +1: protofile has not this field = "
            "number",
            "STRNCPY 5: other bytes; gpb_template:1010 asserted; " + gone(2, 1) +
                "; +1: protofile has not this field = a-leaf",
            "STRNCPY 6: other bytes; gpb_template:1010 asserted; " + gone(2, 1) +
                "; +1: protofile has not this field = a-bytes",
            "SPRINTF 1: none, code 1; " + gone(14, 3) +
                "; +0: Gpb switch name = list failed; +0: protofile has not this node = ; +0: protofile has not this "
                "node = list; +1: failed to update Gpb template; +0: failed to generate gpb template",
            "SPRINTF 2: none, code 1; " + gone(8, 2) +
                "; +0: Gpb switch name = a failed; +0: Failed to insert case leaf node to sub container; +0: 2.failed "
                "to insert leaf node to sub container; +1: failed to update Gpb template; +0: failed to generate gpb "
                "template",
            "SNPRINTF_TRUNCATED 1-4: other bytes; gpb_template:1152 asserted",
            "VSNPRINTF_TRUNCATED 1-" + std::to_string(25 + 4 * linesOfMappedLeaf) +
                ": same; gpb_template:112 asserted; a line is empty"};
    }

    /** The outcomes of each answer that is an error. */
    void expectOutcomesOfAnswers(const gpbtest::FaultRecords &records, const std::vector<std::string> &expected)
    {
        expectOutcomesOf(
            {{"ANSWER", [] { return g_questions; },
              [](uint64_t nth) { g_failing = nth == 0 ? 0 : g_questions + nth; }}},
            [&] { return generate(records); }, expected);
    }
};

TEST_F(TemplateOutcomes, OwnIds)
{
    const gpbtest::FaultRecords records;
    expectOutcomes([&] { return generate(records); }, outcomesOfGeneration("0x20", 0));
}

TEST_F(TemplateOutcomes, ClassMap)
{
    const gpbtest::FaultRecords records;
    GPBLIB_RegisterClassMapFunc(context(), 1, mapClass);
    expectOutcomes([&] { return generate(records); }, outcomesOfGeneration("0x120", 1));
    expectOutcomesOfAnswers(
        records, {"ANSWER 1: none, code 119; 29 lines gone; +0: failed to convert dom cid=0x20 to dim cid, ret=119, "
                  "nodename=list",
                  "ANSWER 2: none, code 119; 27 lines gone; +0: failed to convert dom cid=0x20 to dim cid, ret=119, "
                  "nodename=list; +1: [GPBLIB_GetClassIdFromYangNode] failed",
                  "ANSWER 3: none, code 1; 25 lines gone; +0: failed to convert dom cid=0x20 to dim cid, ret=119, "
                  "nodename=list; +1: [GPBLIB_GetClassIdFromYangNode] failed; +1: failed to pop node from stack; +0: "
                  "failed to generate gpb template",
                  "ANSWER 4: other bytes; -1: Field map (equal=1): Parent (0x10, 1) ==> App (0x110, 1); +0: failed to "
                  "convert Ifname cid=0x10, fid=1 to Ifindex cidfid, container nodename=top,leafname=name, ret=119",
                  "ANSWER 5: other bytes; +0: failed to convert index cid=0x10, fid=2 to subindex cidfid, container "
                  "nodename=top,leafname=flag, ret=119",
                  "ANSWER 6: other bytes; 3 lines gone; +1: failed to convert dom cid=0x20, fid=3 to dim cidfid, "
                  "container nodename=list, leafname=key, ret=119",
                  "ANSWER 7: other bytes; -1: Field map (equal=1): Parent (0x20, 9) ==> App (0x120, 9); +0: failed to "
                  "convert Ifname cid=0x20, fid=9 to Ifindex cidfid, container nodename=list,leafname=key, ret=119",
                  "ANSWER 8: other bytes; 2 lines gone; +1: failed to convert dom cid=0x20, fid=4 to dim cidfid, "
                  "container nodename=list, leafname=number, ret=119",
                  "ANSWER 9: other bytes; 3 lines gone; +1: failed to convert dom cid=0x40, fid=5 to dim cidfid, "
                  "container nodename=a, leafname=a-leaf, ret=119",
                  "ANSWER 10: other bytes; -1: Field map (equal=1): Parent (0x40, 5) ==> App (0x140, 5); +0: failed to "
                  "convert Ifname cid=0x40, fid=5 to Ifindex cidfid, container nodename=a,leafname=a-leaf, ret=119",
                  "ANSWER 11: other bytes; 3 lines gone; +1: failed to convert dom cid=0x40, fid=6 to dim cidfid, "
                  "container nodename=a, leafname=a-bytes, ret=119",
                  "ANSWER 12: other bytes; -1: Field map (equal=1): Parent (0x40, 2) ==> App (0x140, 2); +0: failed to "
                  "convert Ifname cid=0x40, fid=2 to Ifindex cidfid, container nodename=a,leafname=a-bytes, ret=119"});
}

TEST_F(TemplateOutcomes, FieldNameMap)
{
    const gpbtest::FaultRecords records;
    GPBLIB_RegisterFieldNameMapFunc(context(), 1, mapName);
    expectOutcomes([&] { return generate(records); }, outcomesOfGeneration("0x500", 0));
    expectOutcomesOfAnswers(
        records, {"ANSWER 1: none, code 119; 25 lines gone; +0: failed to convert notification: ret=119, nodename=list",
                  "ANSWER 2: none, code 119; 23 lines gone; +0: failed to convert notification: ret=119, "
                  "nodename=list; +1: [GPBLIB_GetClassIdFromYangNode] failed",
                  "ANSWER 3: none, code 1; 21 lines gone; +0: failed to convert notification: ret=119, nodename=list; "
                  "+1: [GPBLIB_GetClassIdFromYangNode] failed; +1: failed to pop node from stack; +0: failed to "
                  "generate gpb template",
                  "ANSWER 4: other bytes; 2 lines gone; +1: failed to convert event para, container nodename=list, "
                  "leafname=key, ret=119",
                  "ANSWER 5: other bytes; 2 lines gone; +1: failed to convert event para, container nodename=list, "
                  "leafname=number, ret=119",
                  "ANSWER 6: other bytes; 2 lines gone; +1: failed to convert event para, container nodename=a, "
                  "leafname=a-leaf, ret=119",
                  "ANSWER 7: other bytes; 2 lines gone; +1: failed to convert event para, container nodename=a, "
                  "leafname=a-bytes, ret=119"});
}

TEST_F(TemplateOutcomes, Dump)
{
    auto *const info =
        static_cast<GpbTemplateInfo *>(ZMP_Malloc_F(kModuleId, g_aucZmpMemPt[0], sizeof(GpbTemplateInfo), "faults", 1));
    *info = {7, GPBLIB_RDMI_CreateRoot(kModuleId, "root")};
    VEC_VectorSet(context()->pstTemplateVec, info);
    expectOutcomes(
        [&]
        {
            uint8_t *bytes = nullptr;
            uint16_t length = 0;
            FaultResult result;
            result.code = GPBLIB_DumpProtoFileData(context(), "/p", 7, &bytes, &length);
            result.isDone = result.code == 0;
            EXPECT_EQ(result.isDone, bytes != nullptr);
            result.add(bytes, length);
            ZMP_Free_F(bytes, "faults", 1);
            return result;
        },
        {"MALLOC 1: none, code 1; 13 lines gone",
         "MEMCPY 1: other bytes; gpb_template_rdmi_tree:60 asserted; -1: gpb(0x):06 0e fe ff 1f 0a 10 00 1a 04 72 6f "
         "6f 74 20 00; +1: gpb(0x):00 0e fe ff 1f 0a 10 00 1a 04 72 6f 6f 74 20 00",
         "MEMCPY 2: other bytes; gpb_template_rdmi_tree:60 asserted; -1: gpb(0x):06 0e fe ff 1f 0a 10 00 1a 04 72 6f "
         "6f 74 20 00; +1: gpb(0x):06 00 fe ff 1f 0a 10 00 1a 04 72 6f 6f 74 20 00",
         "MEMCPY 3: other bytes; gpb_template_rdmi_tree:60 asserted; -1: gpb(0x):06 0e fe ff 1f 0a 10 00 1a 04 72 6f "
         "6f 74 20 00; +1: gpb(0x):06 0e 00 00 00 0a 10 00 1a 04 72 6f 6f 74 20 00",
         "MEMCPY 4: other bytes; gpb_template_rdmi_tree:60 asserted; -1: gpb(0x):06 0e fe ff 1f 0a 10 00 1a 04 72 6f "
         "6f 74 20 00; +1: gpb(0x):06 0e fe ff 1f 00 10 00 1a 04 72 6f 6f 74 20 00",
         "MEMCPY 5: other bytes; gpb_template_rdmi_tree:60 asserted; -1: gpb(0x):06 0e fe ff 1f 0a 10 00 1a 04 72 6f "
         "6f 74 20 00; +1: gpb(0x):06 0e fe ff 1f 0a 00 00 1a 04 72 6f 6f 74 20 00",
         "MEMCPY 6,11: same; gpb_template_rdmi_tree:60 asserted",
         "MEMCPY 7: other bytes; gpb_template_rdmi_tree:60 asserted; -1: gpb(0x):06 0e fe ff 1f 0a 10 00 1a 04 72 6f "
         "6f 74 20 00; +1: gpb(0x):06 0e fe ff 1f 0a 10 00 00 04 72 6f 6f 74 20 00",
         "MEMCPY 8: other bytes; gpb_template_rdmi_tree:60 asserted; -1: gpb(0x):06 0e fe ff 1f 0a 10 00 1a 04 72 6f "
         "6f 74 20 00; +1: gpb(0x):06 0e fe ff 1f 0a 10 00 1a 00 72 6f 6f 74 20 00",
         "MEMCPY 9: other bytes; gpb_template_rdmi_tree:136 asserted; -1: gpb(0x):06 0e fe ff 1f 0a 10 00 1a 04 72 6f "
         "6f 74 20 00; +1: gpb(0x):06 0e fe ff 1f 0a 10 00 1a 04 00 00 00 00 20 00",
         "MEMCPY 10: other bytes; gpb_template_rdmi_tree:60 asserted; -1: gpb(0x):06 0e fe ff 1f 0a 10 00 1a 04 72 6f "
         "6f 74 20 00; +1: gpb(0x):06 0e fe ff 1f 0a 10 00 1a 04 72 6f 6f 74 00 00",
         "MEMSET 1: same; gpb_template:1618 asserted",
         "STRNCPY 1: same; gpb_template_rdmi_tree:915 asserted; -1:   StrLeaf: { id:3, gpbFlg:1, objLen:4, gpbSize:6, "
         "value:root }; +1:   StrLeaf: { id:3, gpbFlg:1, objLen:4, gpbSize:6, value: }",
         "SPRINTF 1-16: same; -1: gpb(0x):06 0e fe ff 1f 0a 10 00 1a 04 72 6f 6f 74 20 00",
         "SNPRINTF_TRUNCATED 1-2: same; gpb_template_rdmi_tree:902 asserted; a line is empty",
         "SNPRINTF_TRUNCATED 3: same; gpb_template_rdmi_tree:902 asserted; -1:  Contain: { id:65535, gpbFlg:1, "
         "objLen:10, gpbSize:14, value:0x0 }; +1:  ",
         "SNPRINTF_TRUNCATED 4: same; gpb_template_rdmi_tree:902 asserted; -1:   IntLeaf: { id:2, gpbFlg:1, objLen:0, "
         "gpbSize:2, value:0x0 }; +1:   ",
         "SNPRINTF_TRUNCATED 5: same; gpb_template_rdmi_tree:902 asserted; -1:   StrLeaf: { id:3, gpbFlg:1, objLen:4, "
         "gpbSize:6, value:root }; +1:   ",
         "SNPRINTF_TRUNCATED 6: same; gpb_template_rdmi_tree:902 asserted; -1:   IntLeaf: { id:4, gpbFlg:1, objLen:0, "
         "gpbSize:2, value:0x0 }; +1:   ",
         "VSNPRINTF_TRUNCATED 1-14: same; gpb_template:112 asserted; a line is empty"});
}

} // namespace
