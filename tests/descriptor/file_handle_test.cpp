/** File descriptors by module name. */
#include <google/protobuf/descriptor.h>

#include "gpb_templatelib/gpb_descriptor.h"
#include "support/library_fixture.h"

namespace
{

constexpr char kProto[] = "syntax = 'proto3'; message Top { string name = 1; }";

class FileHandle : public gpbtest::LibraryFixture
{
};

TEST_F(FileHandle, IsThatOfTheLoadedModule)
{
    writeProto("My-Module", kProto);
    EXPECT_EQ(nullptr, Gpb_ModuleAdapt_GetFileHandle(context(), "My-Module")) << "not loaded yet";
    ASSERT_EQ(0u, GPBLIB_ProtobufLoad(context(), "My-Module", 0));
    log().clear();
    const google::protobuf::FileDescriptor *const file = Gpb_ModuleAdapt_GetFileHandle(context(), "My-Module");
    ASSERT_NE(nullptr, file);
    EXPECT_EQ("My-Module.proto", file->name());
    EXPECT_EQ(nullptr, Gpb_ModuleAdapt_GetFileHandle(context(), "my-module")) << "the name is taken as given";
    EXPECT_EQ(nullptr, Gpb_ModuleAdapt_GetFileHandle(context(), "My_Module"));
    EXPECT_EQ(nullptr, Gpb_ModuleAdapt_GetFileHandle(context(), "My-Module.proto"));
    EXPECT_NO_LOG(log());
}

TEST_F(FileHandle, IsNullForAModuleThatFailedToLoadOrWasUnloaded)
{
    writeProto("bad", "syntax = 'proto3'; nonsense");
    writeProto("good", kProto);
    ASSERT_EQ(1u, GPBLIB_ProtobufLoad(context(), "bad", 0));
    ASSERT_EQ(0u, GPBLIB_ProtobufLoad(context(), "good", 0));
    EXPECT_EQ(nullptr, Gpb_ModuleAdapt_GetFileHandle(context(), "bad"));
    EXPECT_NE(nullptr, Gpb_ModuleAdapt_GetFileHandle(context(), "good"));
    GPBLIB_UnloadProtoFile(context(), "good");
    EXPECT_EQ(nullptr, Gpb_ModuleAdapt_GetFileHandle(context(), "good"));
}

TEST_F(FileHandle, NeedsContextAndModule)
{
    EXPECT_EQ(nullptr, Gpb_ModuleAdapt_GetFileHandle(nullptr, "m"));
    EXPECT_EQ(nullptr, Gpb_ModuleAdapt_GetFileHandle(context(), nullptr));
    EXPECT_EQ(nullptr, Gpb_ModuleAdapt_GetFileHandle(context(), ""));
    EXPECT_NO_LOG(log());
}

} // namespace
