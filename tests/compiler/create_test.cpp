/** The C interface: creating by module name, encoding, destroying. */
#include <libxml/tree.h>

#include "compiler/compiler_fixture.h"

class NamedCompiler : public GpbXmlCompilerBase
{
public:
    NamedCompiler(const NamedCompiler &) = delete;
    using GpbXmlCompilerBase::GpbXmlCompilerBase;
    unsigned int Encode(struct _xmlDoc *) override { return m_result; }
    unsigned int m_result = 0;
};

namespace
{

class LocalCompiler : public NamedCompiler
{
public:
    using NamedCompiler::NamedCompiler;
};

class CreateTest : public gpbtest::CompilerFixture
{
protected:
    static constexpr const char *kProto = "syntax='proto3'; package m; message Top { string v = 1; }";

    GpbXmlCompilerBase *create(const std::string &module)
    {
        return GpbXmlCompiler_CreateCompiler(context(), module.c_str());
    }

    /** A module name of that length. */
    static std::string name(size_t length) { return std::string(length, 'm'); }
};

TEST_F(CreateTest, LoadsTheModuleAndEncodes)
{
    writeProto("m", kProto);
    GpbXmlCompilerBase *const compiler = create("m");
    ASSERT_NE(nullptr, compiler);
    EXPECT_LOG(log(), "1: GPBLIB_LoadProtoFile begin ", "1: protofile name = m.proto", "1: GPBLIB_LoadProtoFile end ");
    EXPECT_EQ(context(), compiler->GetLibHandle());
    const gpbtest::XmlDocument document("<top><v>1</v></top>");
    unsigned int length = 0;
    unsigned int error = 9;
    const char *const bytes = GpbXmlCompiler_Encode(compiler, document.get(), &length, &error);
    EXPECT_EQ(0u, error);
    judge().addFile("m.proto", kProto);
    EXPECT_TRUE(judge().holds("m.Top", std::string(bytes, length), "v: '1'"));
    GpbXmlCompiler_Destory(compiler);
    // The file stays loaded.
    log().clear();
    GpbXmlCompiler_Destory(create("m"));
    EXPECT_LOG(log(), "1: GPBLIB_LoadProtoFile begin ", "1: protofile name = m.proto",
               "1: this protofile has been loaded");
}

TEST_F(CreateTest, ConstructorTakesOverItsArguments)
{
    addModule("m", kProto);
    const gpbtest::OpenCompiler &compiler = open("m");
    EXPECT_EQ(context(), compiler.pvLibHandle);
    EXPECT_EQ(GPBLIB_GetImporter(context()), compiler.pstImporter);
    EXPECT_EQ("m.proto", compiler.pstFileDesc->name());
    EXPECT_EQ(kModuleId, compiler.uiMemHandle);
    EXPECT_EQ(0, compiler.ucStopOnError);
    EXPECT_EQ(nullptr, compiler.pstMessage);
    EXPECT_NE(nullptr, compiler.pstMsgFactory);
    EXPECT_EQ("", compiler.strGpbBuffer);
}

TEST_F(CreateTest, ModuleThatIsNotThere)
{
    EXPECT_EQ(nullptr, create("nowhere"));
    EXPECT_LOG(log(), "1: File (nowhere.proto) not exists!", "0: [GpbXmlCompiler]Fail to load proto file nowhere.");
    EXPECT_EQ(nullptr, create(""));
    EXPECT_LOG(log(), "1: File (.proto) not exists!", "0: [GpbXmlCompiler]Fail to load proto file .");
}

TEST_F(CreateTest, ModuleThatDoesNotParse)
{
    writeProto("bad", "syntax = 'proto3'; message {");
    EXPECT_EQ(nullptr, create("bad"));
    EXPECT_LOG(log(), "1: GPBLIB_LoadProtoFile begin ", "1: protofile name = bad.proto", "0: load protofile failed",
               "1: GPBLIB_LoadProtoFile end ", "0: [GpbXmlCompiler]Fail to load proto file bad.");
    EXPECT_EQ(nullptr, create("bad"));
    EXPECT_LOG(log(), "1: GPBLIB_LoadProtoFile begin ", "1: protofile name = bad.proto",
               "1: this protofile has been load failed", "0: [GpbXmlCompiler]Fail to load proto file bad.");
}

TEST_F(CreateTest, ModuleThatImportsWhatIsNotThere)
{
    writeProto("lonely", "syntax = 'proto3'; import 'nowhere.proto'; message Top {}");
    EXPECT_EQ(nullptr, create("lonely"));
    EXPECT_EQ("[GpbXmlCompiler]Fail to load proto file lonely.", log().textsOfLevel(0).back());
}

TEST_F(CreateTest, NameOf57CharactersIsFound)
{
    writeProto(name(57), kProto);
    GpbXmlCompilerBase *const compiler = create(name(57));
    EXPECT_NE(nullptr, compiler);
    EXPECT_TRUE(log().textsOfLevel(0).empty());
    GpbXmlCompiler_Destory(compiler);
}

TEST_F(CreateTest, LongerNameIsLoadedAndThenNotFound)
{
    for (const size_t length : {58u, 60u, 63u, 64u, 100u})
    {
        writeProto(name(length), "syntax='proto3'; package m" + std::to_string(length) + "; message Top {}");
        log().clear();
        EXPECT_EQ(nullptr, create(name(length)));
        EXPECT_LOG(log(), "1: GPBLIB_LoadProtoFile begin ", "1: protofile name = " + name(length) + ".proto",
                   "1: GPBLIB_LoadProtoFile end ",
                   "0: [GpbXmlCompiler]Fail to get file descriptor " + (name(length) + ".proto").substr(0, 63) + ".");
    }
}

using CreateOddities = CreateTest;

// The name is cut to 63 characters, and what is left may be the name of another file.
TEST_F(CreateOddities, CutNameMayFindAnotherFile)
{
    const std::string longName = name(57) + ".protoAndMore";
    writeProto(longName, "syntax='proto3'; package longer; message Top {}");
    writeProto(name(57), kProto);
    ASSERT_EQ(0u, GPBLIB_ProtobufLoad(context(), name(57).c_str(), 0));
    GpbXmlCompilerBase *const compiler = create(longName);
    ASSERT_NE(nullptr, compiler);
    const gpbtest::XmlDocument document("<top><v>1</v></top>");
    unsigned int length = 0;
    unsigned int error = 9;
    EXPECT_NE(nullptr, GpbXmlCompiler_Encode(compiler, document.get(), &length, &error));
    EXPECT_EQ("\x0a\x01"
              "1",
              std::string(compiler->GetResult(&length), length));
    GpbXmlCompiler_Destory(compiler);
}

TEST_F(CreateTest, FileNameThatCannotBeFormedIsAnAssertionAndThenNotFound)
{
    addModule("m", kProto);
    // The look-up of the module formats names as well; the last one is the compiler's own.
    const uint64_t before = GpbHost_CallCount(GPB_HOST_SNPRINTF_TRUNCATED);
    GpbXmlCompiler_Destory(create("m"));
    const uint64_t calls = GpbHost_CallCount(GPB_HOST_SNPRINTF_TRUNCATED) - before;
    log().clear();
    GpbHost_FailCall(GPB_HOST_SNPRINTF_TRUNCATED, calls);
    EXPECT_EQ(nullptr, create("m"));
    EXPECT_EQ("gpb_xmlcompiler_wrapper.cpp:52\n", takeAssertText());
    EXPECT_EQ("[GpbXmlCompiler]Fail to get file descriptor .", log().textsOfLevel(0).back());
}

TEST_F(CreateTest, NullArgumentGivesNull)
{
    EXPECT_EQ(nullptr, GpbXmlCompiler_CreateCompiler(nullptr, "m"));
    EXPECT_LOG(log(), );
    EXPECT_EQ(nullptr, GpbXmlCompiler_CreateCompiler(context(), nullptr));
    EXPECT_LOG(log(), "0: [GpbXmlCompiler]Fail to load proto file .");
}

TEST_F(CreateTest, NullOutArgumentTouchesNothing)
{
    addModule("m", kProto);
    open("m");
    const gpbtest::XmlDocument document("<top><v>1</v></top>");
    unsigned int length = 7;
    unsigned int error = 8;
    EXPECT_EQ(nullptr, GpbXmlCompiler_Encode(&compiler(), document.get(), nullptr, &error));
    EXPECT_EQ(8u, error);
    EXPECT_EQ(nullptr, GpbXmlCompiler_Encode(&compiler(), document.get(), &length, nullptr));
    EXPECT_EQ(7u, length);
    EXPECT_EQ(nullptr, GpbXmlCompiler_Encode(&compiler(), document.get(), nullptr, nullptr));
    EXPECT_EQ(nullptr, compiler().pstMessage); // nothing was encoded
    EXPECT_LOG(log(), );
}

TEST_F(CreateTest, DestroyingNullDoesNothing)
{
    GpbXmlCompiler_Destory(nullptr);
    EXPECT_LOG(log(), );
}

TEST_F(CreateTest, CompilerOutlivesTheRegistryEntryOfItsModule)
{
    writeProto("m", kProto);
    GpbXmlCompilerBase *const compiler = create("m");
    GPBLIB_UnloadProtoFile(context(), "m");
    const gpbtest::XmlDocument document("<top><v>1</v></top>");
    unsigned int length = 0;
    unsigned int error = 9;
    EXPECT_NE(nullptr, GpbXmlCompiler_Encode(compiler, document.get(), &length, &error));
    EXPECT_EQ(3u, length);
    GpbXmlCompiler_Destory(compiler);
}

// ---- the class name in the failure line ----

TEST_F(CreateTest, FailureLineNamesTheCompiler)
{
    writeProto("m", kProto);
    GpbXmlCompilerBase *const compiler = create("m");
    log().clear();
    unsigned int length = 0;
    unsigned int error = 0;
    EXPECT_EQ(nullptr, GpbXmlCompiler_Encode(compiler, nullptr, &length, &error));
    EXPECT_LOG(log(), "0: [14GpbXmlCompiler]Fail to encode, error code is 1.");
    GpbXmlCompiler_Destory(compiler);
}

TEST_F(CreateTest, FailureLineNamesTheRunTimeClass)
{
    addModule("m", kProto);
    open("m");
    NamedCompiler named(compiler().pstFileDesc, compiler().pstImporter, context());
    LocalCompiler local(compiler().pstFileDesc, compiler().pstImporter, context());
    named.m_result = 77;
    local.m_result = 0xFFFFFFFF;
    unsigned int length = 7;
    unsigned int error = 0;
    EXPECT_EQ(nullptr, GpbXmlCompiler_Encode(&named, nullptr, &length, &error));
    EXPECT_EQ(77u, error);
    EXPECT_LOG(log(), "0: [13NamedCompiler]Fail to encode, error code is 77.");
    // The name of a class that is local to a file begins with an asterisk, which is left out.
    EXPECT_EQ(nullptr, GpbXmlCompiler_Encode(&local, nullptr, &length, &error));
    EXPECT_EQ(0xFFFFFFFFu, error);
    EXPECT_LOG(log(), "0: [N12_GLOBAL__N_113LocalCompilerE]Fail to encode, error code is 4294967295.");
    EXPECT_EQ(7u, length);
}

// ---- the base class ----

TEST_F(CreateTest, OperationsThatAreNotOverriddenDoNothing)
{
    addModule("m", kProto);
    open("m");
    GpbXmlCompilerBase base(compiler().pstFileDesc, compiler().pstImporter, context());
    unsigned int length = 7;
    unsigned int error = 8;
    EXPECT_EQ(0u, base.Encode(nullptr));
    EXPECT_EQ(0u, base.EncodeJson(nullptr, nullptr));
    EXPECT_EQ(0u, base.GetMdlAttr(context(), nullptr, nullptr, nullptr));
    EXPECT_EQ(nullptr, base.GetResult(&length));
    EXPECT_EQ(nullptr, GpbXmlCompiler_Encode(&base, nullptr, &length, &error));
    EXPECT_EQ(7u, length);
    EXPECT_EQ(0u, error);
    EXPECT_EQ(0u, compiler().EncodeJson(nullptr, nullptr));
    EXPECT_EQ(0u, compiler().GetMdlAttr(context(), nullptr, nullptr, nullptr));
    EXPECT_LOG(log(), );
}

} // namespace
