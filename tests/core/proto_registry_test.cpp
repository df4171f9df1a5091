/** The registry of proto files: storing, finding, unloading. */
#include <google/protobuf/compiler/importer.h>
#include <google/protobuf/descriptor.h>
#include <string>
#include <vector>

#include "gpb_templatelib/gpb_template.h"
#include "platform/zmp.h"
#include "support/library_fixture.h"

namespace
{

using gpbtest::joinLines;

constexpr size_t kMaxName = 255;
constexpr uint8_t kState = 9;
constexpr uint32_t kTestLine = 1;
constexpr uint32_t kFirstSlots = 32;

class ProtoRegistry : public gpbtest::LibraryFixture
{
protected:
    /** Writes and loads a module whose message is named after it. */
    void loadModule(const std::string &module)
    {
        writeProto(module, "syntax = 'proto3'; message Top_" + module + " { string name = 1; }");
        ASSERT_EQ(0u, GPBLIB_ProtobufLoad(context(), module.c_str(), 0));
        log().clear();
    }

    /** File names of the vector's slots, in order; "(empty)" for an empty slot. */
    std::vector<std::string> names() const
    {
        std::vector<std::string> found;
        const VecVector &files = *context()->pstProtoFileVec;
        for (uint32_t i = 0; i < VEC_VectorCount(&files); ++i)
        {
            const auto *const info = static_cast<const GpbProtoFileInfo *>(files.ppvSlot[i]);
            found.emplace_back(info == nullptr ? "(empty)" : info->acFileName);
        }
        return found;
    }

    static void *allocate(size_t size)
    {
        return ZMP_Malloc_F(kModuleId, g_aucZmpMemPt[0], size, "proto_registry", kTestLine);
    }

    /** Stores a new record by name; null when that fails. */
    GpbProtoFileInfo *store(const std::string &name, uint8_t state = kState)
    {
        auto *const info = static_cast<GpbProtoFileInfo *>(allocate(sizeof(GpbProtoFileInfo)));
        *info = {};
        if (GPBLIB_AddProtoFile_(context(), info, name.c_str(), state) != 0)
        {
            ZMP_Free_F(info, "proto_registry", kTestLine);
            return nullptr;
        }
        return info;
    }
};

class ProtoRegistryDeliberateOddities : public ProtoRegistry
{
};

TEST_F(ProtoRegistry, StoresNameStateAndRecord)
{
    GpbProtoFileInfo *const info = store("m.proto");
    ASSERT_NE(nullptr, info);
    EXPECT_STREQ("m.proto", info->acFileName);
    EXPECT_EQ(kState, info->ucLoadState);
    EXPECT_EQ(info, GPBLIB_GetProtoFdByFileName("m.proto", context()));
    EXPECT_NO_LOG(log());
}

TEST_F(ProtoRegistry, KeepsANameOf255Characters)
{
    const std::string name(kMaxName, 'n');
    ASSERT_NE(nullptr, store(name));
    EXPECT_EQ((std::vector<std::string>{name}), names());
}

TEST_F(ProtoRegistry, AssertsAndCutsANameOf256Characters)
{
    const std::string name(kMaxName + 1, 'n');
    ASSERT_NE(nullptr, store(name));
    EXPECT_EQ("gpb_template:394\n", takeAssertText());
    EXPECT_EQ((std::vector<std::string>{name.substr(0, kMaxName)}), names());
    EXPECT_EQ(nullptr, GPBLIB_GetProtoFdByFileName(name.c_str(), context()));
}

TEST_F(ProtoRegistry, GoesOnWithANameThatCannotBeCopied)
{
    GpbHost_FailAlways(GPB_HOST_STRNCPY, 1);
    ASSERT_NE(nullptr, store("m.proto"));
    GpbHost_FailAlways(GPB_HOST_STRNCPY, 0);
    EXPECT_EQ("gpb_template:394\n", takeAssertText());
    EXPECT_EQ((std::vector<std::string>{""}), names());
}

TEST_F(ProtoRegistry, SaysWhenARecordCannotBeStored)
{
    GpbHost_FailCall(GPB_HOST_VEC_SET, 1);
    GpbProtoFileInfo info = {};
    EXPECT_EQ(1u, GPBLIB_AddProtoFile_(context(), &info, "m.proto", kState));
    EXPECT_LOG(log(), "0: failed to save protofile fd to local");
    EXPECT_STREQ("m.proto", info.acFileName) << "named and marked before it is stored";
    EXPECT_EQ(kState, info.ucLoadState);
    EXPECT_TRUE(names().empty());
}

TEST_F(ProtoRegistry, SaysWhenTheVectorCannotGrow)
{
    for (uint32_t i = 0; i < kFirstSlots; ++i)
    {
        ASSERT_NE(nullptr, store("m" + std::to_string(i)));
    }
    GpbProtoFileInfo info = {};
    GpbHost_FailCall(GPB_HOST_MALLOC, 1);
    EXPECT_EQ(1u, GPBLIB_AddProtoFile_(context(), &info, "one too many", kState));
    EXPECT_LOG(log(), "0: failed to save protofile fd to local");
    EXPECT_NE(nullptr, store("last"));
    EXPECT_EQ(kFirstSlots + 1, names().size());
}

TEST_F(ProtoRegistry, FindsByTheExactNameOnly)
{
    EXPECT_EQ(nullptr, GPBLIB_GetProtoFdByFileName("m.proto", context()));
    GpbProtoFileInfo *const first = store("m.proto");
    GpbProtoFileInfo *const other = store("n.proto");
    GpbProtoFileInfo *const twin = store("m.proto");
    EXPECT_EQ(first, GPBLIB_GetProtoFdByFileName("m.proto", context()));
    EXPECT_EQ(other, GPBLIB_GetProtoFdByFileName("n.proto", context()));
    EXPECT_NE(first, twin);
    EXPECT_EQ(nullptr, GPBLIB_GetProtoFdByFileName("m", context()));
    EXPECT_EQ(nullptr, GPBLIB_GetProtoFdByFileName("M.proto", context()));
    EXPECT_EQ(nullptr, GPBLIB_GetProtoFdByFileName("", context()));
    EXPECT_NO_LOG(log());
}

TEST_F(ProtoRegistry, UnloadForgetsTheRecord)
{
    loadModule("m");
    events().clear();
    GPBLIB_UnloadProtoFile(context(), "m");
    EXPECT_LOG(log(), "1: find protofile m.proto, unload from vector");
    EXPECT_EQ("FREE gpb_template:505\n", joinLines(events().texts()));
    EXPECT_TRUE(names().empty());
    EXPECT_EQ(nullptr, GPBLIB_GetProtoFdByFileName("m.proto", context()));
}

TEST_F(ProtoRegistry, UnloadKeepsTheOrderOfTheOthers)
{
    loadModule("a");
    loadModule("b");
    loadModule("c");
    GPBLIB_UnloadProtoFile(context(), "a");
    EXPECT_EQ((std::vector<std::string>{"b.proto", "c.proto"}), names());
    EXPECT_NE(nullptr, context()->pstProtoFileVec->ppvSlot[0]);
    EXPECT_EQ(nullptr, context()->pstProtoFileVec->ppvSlot[2]);
    loadModule("d");
    EXPECT_EQ((std::vector<std::string>{"b.proto", "c.proto", "d.proto"}), names());
    GPBLIB_UnloadProtoFile(context(), "c");
    EXPECT_EQ((std::vector<std::string>{"b.proto", "d.proto"}), names());
}

TEST_F(ProtoRegistry, UnloadTakesTheFirstOfSeveral)
{
    GpbProtoFileInfo *const first = store("m.proto");
    GpbProtoFileInfo *const second = store("m.proto");
    ASSERT_EQ(first, GPBLIB_GetProtoFdByFileName("m.proto", context()));
    GPBLIB_UnloadProtoFile(context(), "m");
    EXPECT_EQ(second, GPBLIB_GetProtoFdByFileName("m.proto", context()));
    EXPECT_LOG(log(), "1: find protofile m.proto, unload from vector");
}

TEST_F(ProtoRegistry, UnloadOfAnUnknownModuleIsSilent)
{
    loadModule("m");
    events().clear();
    GPBLIB_UnloadProtoFile(context(), "never");
    GPBLIB_UnloadProtoFile(context(), "");
    GPBLIB_UnloadProtoFile(context(), "m.proto");
    EXPECT_NO_LOG(log());
    EXPECT_EQ("", joinLines(events().texts()));
    EXPECT_EQ((std::vector<std::string>{"m.proto"}), names());
}

TEST_F(ProtoRegistry, UnloadNeedsContextAndModule)
{
    GPBLIB_UnloadProtoFile(nullptr, "m");
    GPBLIB_UnloadProtoFile(nullptr, nullptr);
    EXPECT_NO_LOG(log());
    GPBLIB_UnloadProtoFile(context(), nullptr);
    EXPECT_LOG(log(), "0: unload protofile err, param pcModuleName is null");
}

TEST_F(ProtoRegistry, UnloadOfAllFreesRecordsThenTemplatesAndDropsTheImporter)
{
    loadModule("a");
    loadModule("b");
    for (uint32_t classId = 1; classId <= 2; ++classId)
    {
        auto *const root = static_cast<ObjNode *>(allocate(sizeof(ObjNode)));
        *root = {};
        root->nodeType = GPB_OBJNODE_ROOTDOC;
        auto *const info = static_cast<GpbTemplateInfo *>(allocate(sizeof(GpbTemplateInfo)));
        *info = {classId, classId == 1 ? root : nullptr};
        if (classId != 1)
        {
            ZMP_Free_F(root, "proto_registry", kTestLine);
        }
        ASSERT_EQ(classId - 1, VEC_VectorSet(context()->pstTemplateVec, info));
    }
    events().clear();
    GPBLIB_UnloadProtoFileAll(context(), 0xFFFFFFFF);
    EXPECT_EQ(joinLines({"FREE gpb_template:1500", "FREE gpb_template:1500", "FREE cmf_tree:1",
                         "FREE gpb_template:1511", "FREE gpb_template:1511"}),
              joinLines(events().texts()));
    EXPECT_NO_LOG(log());
    EXPECT_EQ(0u, context()->pstProtoFileVec->uiCount);
    EXPECT_EQ(0u, context()->pstTemplateVec->uiCount);
    EXPECT_EQ(nullptr, context()->pstImporter);
    EXPECT_EQ(nullptr, context()->pstSourceTree);

    events().clear();
    GPBLIB_UnloadProtoFileAll(context(), 0);
    GPBLIB_UnloadProtoFileAll(nullptr, 0);
    EXPECT_EQ("", joinLines(events().texts()));
    loadModule("a");
}

TEST_F(ProtoRegistry, UnloadOfAllPassesOverEmptySlots)
{
    loadModule("a");
    auto *const info = static_cast<GpbTemplateInfo *>(allocate(sizeof(GpbTemplateInfo)));
    *info = {1, nullptr};
    GpbTemplateInfo gone = {};
    ASSERT_EQ(0u, VEC_VectorSet(context()->pstTemplateVec, &gone));
    ASSERT_EQ(1u, VEC_VectorSet(context()->pstTemplateVec, info));
    context()->pstTemplateVec->ppvSlot[0] = nullptr;
    events().clear();
    GPBLIB_UnloadProtoFileAll(context(), 0);
    EXPECT_EQ(joinLines({"FREE gpb_template:1500", "FREE gpb_template:1511"}), joinLines(events().texts()));
    EXPECT_EQ(0u, context()->pstTemplateVec->uiCount);
}

TEST_F(ProtoRegistry, UnloadOfAllPassesOverEmptyRecordSlots)
{
    ASSERT_NE(nullptr, store("a"));
    GpbProtoFileInfo gone = {};
    ASSERT_EQ(0u, GPBLIB_AddProtoFile_(context(), &gone, "gone", kState));
    ASSERT_NE(nullptr, store("b"));
    context()->pstProtoFileVec->ppvSlot[1] = nullptr;
    events().clear();
    GPBLIB_UnloadProtoFileAll(context(), 0);
    EXPECT_EQ(joinLines({"FREE gpb_template:1500", "FREE gpb_template:1500"}), joinLines(events().texts()));
    EXPECT_EQ(0u, context()->pstProtoFileVec->uiCount);
}

TEST_F(ProtoRegistry, UnloadOfAllFreesWhatTheLeavesOfATemplateHold)
{
    ObjTree tree = GPBLIB_ObjTree_Create(0, kModuleId);
    ASSERT_NE(nullptr, tree);
    const uint8_t content[] = {'t', 'e', 'x', 't'};
    ASSERT_NE(nullptr, GPBLIB_ObjTree_CreateString(tree, tree, 1, sizeof(content), content, 1));
    auto *const info = static_cast<GpbTemplateInfo *>(allocate(sizeof(GpbTemplateInfo)));
    *info = {1, tree};
    ASSERT_EQ(0u, VEC_VectorSet(context()->pstTemplateVec, info));
    events().clear();
    GPBLIB_UnloadProtoFileAll(context(), 0);
    EXPECT_EQ(
        joinLines({"FREE gpb_template_rdmi_tree:214", "FREE cmf_tree:1", "FREE cmf_tree:1", "FREE gpb_template:1511"}),
        joinLines(events().texts()));
    EXPECT_EQ(0u, context()->pstTemplateVec->uiCount);
}

TEST_F(ProtoRegistry, NullArgumentsStoreAndFindNothing)
{
    GpbProtoFileInfo info = {};
    EXPECT_EQ(1u, GPBLIB_AddProtoFile_(nullptr, &info, "m.proto", kState));
    EXPECT_EQ(1u, GPBLIB_AddProtoFile_(context(), nullptr, "m.proto", kState));
    EXPECT_EQ(1u, GPBLIB_AddProtoFile_(context(), &info, nullptr, kState));
    EXPECT_EQ(nullptr, GPBLIB_GetProtoFdByFileName(nullptr, context()));
    EXPECT_EQ(nullptr, GPBLIB_GetProtoFdByFileName("m.proto", nullptr));
    EXPECT_TRUE(names().empty());
}

TEST_F(ProtoRegistryDeliberateOddities, UnloadOfOneFileKeepsItInTheImportersPool)
{
    loadModule("m");
    GpbPbImporter *const importer = GPBLIB_GetImporter(context());
    GpbPbSourceTree *const tree = context()->pstSourceTree;
    const GpbPbFileDescriptor *const file = GPBLIB_GetProtoFdByFileName("m.proto", context())->pstFileDesc;
    GPBLIB_UnloadProtoFile(context(), "m");
    EXPECT_EQ(importer, GPBLIB_GetImporter(context()));
    EXPECT_EQ(tree, context()->pstSourceTree);
    EXPECT_NE(nullptr, importer->pool()->FindMessageTypeByName("Top_m"));

    writeProto("m", "syntax = 'proto3'; message Changed { string name = 1; }");
    ASSERT_EQ(0u, GPBLIB_ProtobufLoad(context(), "m", 0));
    EXPECT_EQ(file, GPBLIB_GetProtoFdByFileName("m.proto", context())->pstFileDesc) << "not read anew";
    GPBLIB_UnloadProtoFileAll(context(), 0);
    ASSERT_EQ(0u, GPBLIB_ProtobufLoad(context(), "m", 0));
    EXPECT_EQ("Changed", GPBLIB_GetProtoFdByFileName("m.proto", context())->pstFileDesc->message_type(0)->name());
}

TEST_F(ProtoRegistryDeliberateOddities, UnloadOfOneFileKeepsTemplates)
{
    loadModule("m");
    auto *const info = static_cast<GpbTemplateInfo *>(allocate(sizeof(GpbTemplateInfo)));
    *info = {1, nullptr};
    ASSERT_EQ(0u, VEC_VectorSet(context()->pstTemplateVec, info));
    GPBLIB_UnloadProtoFile(context(), "m");
    EXPECT_EQ(1u, VEC_VectorCount(context()->pstTemplateVec));
}

TEST_F(ProtoRegistryDeliberateOddities, NameTooLongForARecordIsLoadedAnewEachTime)
{
    // 256 characters with a directory in front, so that the file system takes the name.
    const std::string module = std::string(100, 'd') + "/" + std::string(kMaxName + 1 - 101 - 6, 'm');
    writeProto(module, "syntax = 'proto3'; message Top { string name = 1; }");
    for (size_t count = 1; count <= 2; ++count)
    {
        EXPECT_EQ(0u, GPBLIB_LoadProtoFile(context(), module.c_str(), 0, ""));
        EXPECT_EQ("gpb_template:394\n", takeAssertText());
        EXPECT_LOG(log(), "1: GPBLIB_LoadProtoFile begin ", "1: protofile name = " + module + ".proto",
                   "1: GPBLIB_LoadProtoFile end ");
        EXPECT_EQ(std::vector<std::string>(count, (module + ".proto").substr(0, kMaxName)), names());
    }
    GPBLIB_UnloadProtoFile(context(), module.c_str());
    EXPECT_NO_LOG(log());
}

} // namespace
