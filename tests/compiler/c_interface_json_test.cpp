// The C interface with compilers that read or write JSON, and compilers asked for what they do not do.
#include "gpb_templatelib/gpb_compiler_c.h"

#include <new>

#include "compiler/json_fixture.h"
#include "platform/zmp.h"

namespace gpbtest
{
namespace
{

struct Destroy
{
    void operator()(GpbXmlCompilerBase *compiler) const { GpbXmlCompiler_Destory(compiler); }
};

using CompilerHandle = std::unique_ptr<GpbXmlCompilerBase, Destroy>;

constexpr unsigned int kUntouched = 0xDEAD;

/** Throws where a host's own compiler might. */
class ThrowingCompiler : public GpbXmlCompilerBase
{
public:
    using GpbXmlCompilerBase::GpbXmlCompilerBase;

    unsigned int EncodeJson(cJSON *, cJSON *) override { throw std::bad_alloc(); }
    unsigned int GetMdlAttr(const void *, cJSON *, cJSON *, void *) override { throw std::bad_alloc(); }
};

/** Succeeds, and throws when it is asked for the result. */
class ThrowingResultCompiler : public GpbXmlCompilerBase
{
public:
    using GpbXmlCompilerBase::GpbXmlCompilerBase;

    const char *GetResult(unsigned int *) override { throw std::bad_alloc(); }
};

class CInterfaceJsonTest : public JsonFixture
{
protected:
    void SetUp() override
    {
        JsonFixture::SetUp();
        addModule("plant", kPlantProto);
    }

    CompilerHandle xmlToJson(const char *module = "plant", unsigned char flag = 0)
    {
        return CompilerHandle(GpbXmlCompiler_CreateJsonCompiler(context(), module, flag));
    }

    CompilerHandle jsonToGpb(const char *module = "plant")
    {
        return CompilerHandle(GpbJsonCompiler_CreateJsonCompiler(context(), module));
    }

    CompilerHandle xmlToGpb(const char *module = "plant")
    {
        return CompilerHandle(GpbXmlCompiler_CreateCompiler(context(), module));
    }
};

TEST_F(CInterfaceJsonTest, LoadsTheModuleOfACompiler)
{
    GPBLIB_UnloadProtoFileAll(context(), 0);
    log().clear();
    EXPECT_NE(nullptr, xmlToJson());
    EXPECT_NE(nullptr, jsonToGpb());
    for (const LogLine &line : log().lines())
    {
        EXPECT_EQ(1u, line.level) << line.text;
    }
}

TEST_F(CInterfaceJsonTest, EncodesJson)
{
    const CompilerHandle compiler = jsonToGpb();
    log().clear();
    const JsonTree tree(R"({"plant":{"level":3,"box":{"label":"a"}}})");
    unsigned int length = kUntouched;
    const char *bytes = GpbXmlCompiler_EncodeJson(compiler.get(), tree.root(), tree.root(), &length);
    ASSERT_NE(nullptr, bytes);
    EXPECT_TRUE(judge().holds("plant.Plant", std::string(bytes, length), "level:3 box{label:'a'}"));
    EXPECT_LOG(log(), serializedLine(length));
    const char *part = GpbXmlCompiler_EncodeJson(compiler.get(), tree.root(), tree.at("box"), &length);
    ASSERT_NE(nullptr, part);
    EXPECT_TRUE(judge().holds("plant.Plant.Box", std::string(part, length), "label:'a'"));
}

TEST_F(CInterfaceJsonTest, ReportsAJsonTreeThatDoesNotEncode)
{
    const CompilerHandle compiler = jsonToGpb();
    log().clear();
    const JsonTree tree(R"({"plant":{"nothing":3}})");
    unsigned int length = kUntouched;
    EXPECT_EQ(nullptr, GpbXmlCompiler_EncodeJson(compiler.get(), tree.root(), tree.root(), &length));
    EXPECT_EQ(kUntouched, length);
    EXPECT_LOG(log(), "2: Gpb Compiler leaf node fail to find field [nothing] from [plant.Plant].", iterateLine(1),
               "0: Fail to encode, error code is 1.");
}

TEST_F(CInterfaceJsonTest, HasNoResultWithoutRequiredFields)
{
    addModule("must", R"(syntax = "proto2"; package must;
        message Top { required int32 id = 1; message Sub { optional int32 x = 1; } optional Sub sub = 2; })");
    const CompilerHandle compiler = jsonToGpb("must");
    log().clear();
    const JsonTree without(R"({"top":{"sub":{"x":1}}})");
    unsigned int length = kUntouched;
    EXPECT_EQ(nullptr, GpbXmlCompiler_EncodeJson(compiler.get(), without.root(), without.root(), &length));
    EXPECT_EQ(0u, length);
    EXPECT_LOG(log(), "0: Gpb compiler top message is not initialized.");
    const JsonTree with(R"({"top":{"id":0}})");
    const char *bytes = GpbXmlCompiler_EncodeJson(compiler.get(), with.root(), with.root(), &length);
    ASSERT_NE(nullptr, bytes);
    EXPECT_TRUE(judge().holds("must.Top", std::string(bytes, length), "id: 0"));
}

TEST_F(CInterfaceJsonTest, ReportsAFullStackWithAllBitsSet)
{
    addModule("nest", kNodeProto);
    const CompilerHandle compiler = jsonToGpb("nest");
    std::string text;
    for (unsigned int i = 0; i <= GPB_COMPILER_MAX_LAYERS; ++i)
    {
        text = "{\"node\":" + (text.empty() ? "{}" : text) + "}";
    }
    const JsonTree tree(text);
    log().clear();
    unsigned int length = kUntouched;
    EXPECT_EQ(nullptr, GpbXmlCompiler_EncodeJson(compiler.get(), tree.root(), tree.root(), &length));
    ASSERT_EQ(3u, log().lines().size());
    EXPECT_EQ("0: Fail to encode, error code is 4294967295.", log().lines().back().str());
}

TEST_F(CInterfaceJsonTest, TakesNullTreesAndNullLengths)
{
    const CompilerHandle compiler = jsonToGpb();
    log().clear();
    const JsonTree tree(R"({"plant":{}})");
    unsigned int length = kUntouched;
    EXPECT_EQ(nullptr, GpbXmlCompiler_EncodeJson(compiler.get(), nullptr, tree.root(), &length));
    EXPECT_EQ(nullptr, GpbXmlCompiler_EncodeJson(compiler.get(), tree.root(), nullptr, &length));
    EXPECT_EQ(kUntouched, length);
    EXPECT_EQ(1u, GpbXmlCompiler_GetMdlAttr(context(), compiler.get(), nullptr, tree.root(), nullptr));
    EXPECT_EQ(1u, GpbXmlCompiler_GetMdlAttr(context(), compiler.get(), tree.root(), nullptr, nullptr));
    EXPECT_EQ(nullptr, GpbXmlCompiler_EncodeJson(compiler.get(), tree.root(), tree.root(), nullptr));
    EXPECT_EQ("", log().take());
    GpbXmlCompiler_Destory(nullptr);
}

TEST_F(CInterfaceJsonTest, TellsModelAttributes)
{
    const CompilerHandle compiler = jsonToGpb();
    log().clear();
    const JsonTree tree(R"({"plant":{"box":{},"level":1}})");
    char *names[8] = {};
    uint32_t types[8] = {};
    GpbMdlAttr record = {names, types, 0, 0};
    EXPECT_EQ(0u, GpbXmlCompiler_GetMdlAttr(context(), compiler.get(), tree.root(), tree.at("box"), &record));
    ASSERT_EQ(3, record.ucCount);
    EXPECT_STREQ("label", names[0]);
    EXPECT_EQ(GPB_MDL_TYPE_STRING, types[0]);
    EXPECT_STREQ("size", names[1]);
    EXPECT_EQ(GPB_MDL_TYPE_INT, types[1]);
    EXPECT_STREQ("tags", names[2]);
    for (char *name : names)
    {
        if (name != nullptr)
        {
            ZMP_Free_F(name, "c_interface_json_test", 0);
        }
    }
    EXPECT_EQ("", log().take());
    EXPECT_EQ(1u, GpbXmlCompiler_GetMdlAttr(context(), compiler.get(), tree.root(), tree.at("box"), nullptr));
    EXPECT_LOG(log(), "0: Fail to encode, error code is 1.");
    EXPECT_EQ(1u, GpbXmlCompiler_GetMdlAttr(context(), compiler.get(), tree.root(), tree.at("level"), &record));
    EXPECT_LOG(log(), "0: Gpb Compiler fill layer message Field [level] type is not message, it is 5.",
               "0: Fail to encode, error code is 1.");
}

TEST_F(CInterfaceJsonTest, AFailureOfModelAttributesIsAlwaysOne)
{
    addModule("nest", kNodeProto);
    const CompilerHandle compiler = jsonToGpb("nest");
    std::string text = "{}";
    std::string path = "node";
    for (unsigned int i = 0; i <= GPB_COMPILER_MAX_LAYERS; ++i)
    {
        text = "{\"node\":" + text + "}";
    }
    for (unsigned int i = 1; i < GPB_COMPILER_MAX_LAYERS; ++i)
    {
        path += "/node";
    }
    const JsonTree tree(text);
    log().clear();
    GpbMdlAttr record = {nullptr, nullptr, 0, 0};
    EXPECT_EQ(1u, GpbXmlCompiler_GetMdlAttr(context(), compiler.get(), tree.root(), tree.at(path), &record));
    ASSERT_EQ(2u, log().lines().size());
    EXPECT_EQ("0: Fail to encode, error code is 4294967295.", log().lines().back().str());
}

TEST_F(CInterfaceJsonTest, WritesJson)
{
    const CompilerHandle compiler = xmlToJson("plant", 1);
    log().clear();
    const XmlDocument document("<plant><big>3</big></plant>");
    unsigned int length = kUntouched;
    unsigned int error = kUntouched;
    const char *text = GpbXmlCompiler_Encode(compiler.get(), document.get(), &length, &error);
    EXPECT_STREQ(R"({"plant":{"big":3}})", text);
    EXPECT_EQ(19u, length);
    EXPECT_EQ(0u, error);
    EXPECT_EQ("", log().take());
}

TEST_F(CInterfaceJsonTest, NamesTheClassOfTheCompilerThatFails)
{
    const CompilerHandle compiler = xmlToJson();
    log().clear();
    unsigned int length = kUntouched;
    unsigned int error = kUntouched;
    EXPECT_EQ(nullptr, GpbXmlCompiler_Encode(compiler.get(), nullptr, &length, &error));
    EXPECT_EQ(1u, error);
    EXPECT_EQ(kUntouched, length);
    EXPECT_LOG(log(), "0: [18GpbXmlCompilerJson]Fail to encode, error code is 1.");
    const auto subclass = open<OpenXmlToJsonCompiler>("plant", static_cast<unsigned char>(0));
    EXPECT_EQ(nullptr, GpbXmlCompiler_Encode(subclass.get(), nullptr, &length, &error));
    EXPECT_LOG(log(), "0: [N7gpbtest21OpenXmlToJsonCompilerE]Fail to encode, error code is 1.");
}

TEST_F(CInterfaceJsonTest, KeepsResultsUntilTheCompilerIsDestroyed)
{
    const CompilerHandle writer = xmlToJson();
    const XmlDocument document("<plant><level>3</level></plant>");
    unsigned int length = 0;
    unsigned int error = 0;
    const char *text = GpbXmlCompiler_Encode(writer.get(), document.get(), &length, &error);
    const CompilerHandle reader = jsonToGpb();
    const char *bytes = nullptr;
    {
        const JsonTree tree(text);
        bytes = GpbXmlCompiler_EncodeJson(reader.get(), tree.root(), tree.root(), &length);
    }
    EXPECT_TRUE(judge().holds("plant.Plant", std::string(bytes, length), "level:3"));
    EXPECT_STREQ(R"({"plant":{"level":3}})", text);
}

// ---- creation ----

TEST_F(CInterfaceJsonTest, CreatesNothingForAnUnknownModule)
{
    log().clear();
    EXPECT_EQ(nullptr, xmlToJson("missing"));
    EXPECT_EQ("[GpbXmlCompilerJson]Fail to load proto file missing.", log().textsOfLevel(0).back());
    EXPECT_EQ(1u, log().textsOfLevel(0).size());
    log().clear();
    EXPECT_EQ(nullptr, jsonToGpb("missing2"));
    EXPECT_EQ("Gpb json compiler fail to load proto file missing2.", log().textsOfLevel(0).back());
    EXPECT_EQ(1u, log().textsOfLevel(0).size());
}

TEST_F(CInterfaceJsonTest, CutsTheFileNameTo63Characters)
{
    const std::string fits(57, 'm');
    const std::string cut(58, 'm');
    const char *proto = "syntax = \"proto3\"; message Top { int32 x = 1; }";
    writeProto(fits, proto);
    writeProto(cut, "syntax = \"proto3\"; package other; message Top { int32 x = 1; }");
    EXPECT_NE(nullptr, xmlToJson(fits.c_str()));
    EXPECT_NE(nullptr, jsonToGpb(fits.c_str()));
    log().clear();
    EXPECT_EQ(nullptr, xmlToJson(cut.c_str()));
    EXPECT_EQ("[GpbXmlCompilerJson]Fail to get file descriptor " + cut + ".prot.", log().textsOfLevel(0).back());
    EXPECT_EQ(nullptr, jsonToGpb(cut.c_str()));
    EXPECT_EQ("Gpb json compiler fail to get file descriptor " + cut + ".prot.", log().textsOfLevel(0).back());
    EXPECT_EQ(2u, log().textsOfLevel(0).size());
}

TEST_F(CInterfaceJsonTest, TheCreateFunctionsDifferWhereTheFileNameCannotBeFormed)
{
    // The first such call is the load's.
    log().clear();
    GpbHost_FailCall(GPB_HOST_SNPRINTF_TRUNCATED, 2);
    EXPECT_EQ(nullptr, jsonToGpb());
    EXPECT_TRUE(log().textsOfLevel(0).empty());
    EXPECT_EQ("", takeAssertText());
    GpbHost_FailCall(GPB_HOST_SNPRINTF_TRUNCATED, 2);
    EXPECT_EQ(nullptr, xmlToJson());
    EXPECT_EQ(std::vector<std::string>{"[GpbXmlCompilerJson]Fail to get file descriptor ."}, log().textsOfLevel(0));
    EXPECT_EQ("gpb_xmlcompiler_wrapper.cpp:90\n", takeAssertText());
    GpbHost_FailCall(GPB_HOST_SNPRINTF_TRUNCATED, 2);
    EXPECT_EQ(nullptr, xmlToGpb());
    EXPECT_EQ("gpb_xmlcompiler_wrapper.cpp:52\n", takeAssertText());
}

TEST_F(CInterfaceJsonTest, ATableThatCannotBeZeroedIsAssertedUnderTheNameOfItsSource)
{
    const auto sourceOf = [&](const CompilerHandle &compiler)
    {
        EXPECT_NE(nullptr, compiler);
        const std::string text = takeAssertText();
        return text.substr(0, text.find(':'));
    };
    const XmlDocument document("<plant><level>1</level><box><label>a</label></box></plant>");
    GpbHost_FailCall(GPB_HOST_MEMSET, 1);
    EXPECT_EQ("gpb_jsoncompiler", sourceOf(jsonToGpb()));
    GpbHost_FailCall(GPB_HOST_MEMSET, 1);
    EXPECT_EQ("gpb_xmlcompilerjson", sourceOf(xmlToJson()));
    GpbHost_FailCall(GPB_HOST_MEMSET, 1);
    const CompilerHandle compiler = xmlToGpb();
    EXPECT_EQ("gpb_xmlcompiler.cpp", sourceOf(compiler));
    // The table is filled all the same.
    unsigned int length = 0;
    unsigned int error = 0;
    const char *bytes = GpbXmlCompiler_Encode(compiler.get(), document.get(), &length, &error);
    EXPECT_TRUE(judge().holds("plant.Plant", std::string(bytes, length), "level: 1 box { label: 'a' }"));
}

TEST_F(CInterfaceJsonTest, CreatesNothingWithoutContextOrName)
{
    EXPECT_EQ(nullptr, GpbXmlCompiler_CreateJsonCompiler(nullptr, "plant", 0));
    EXPECT_EQ(nullptr, GpbJsonCompiler_CreateJsonCompiler(nullptr, "plant"));
    EXPECT_EQ(nullptr, GpbXmlCompiler_CreateJsonCompiler(context(), nullptr, 0));
    EXPECT_EQ(nullptr, GpbJsonCompiler_CreateJsonCompiler(context(), nullptr));
}

// ---- compilers asked for what they do not do ----

TEST_F(CInterfaceJsonTest, AnXmlCompilerAskedForJsonHasNoResult)
{
    const CompilerHandle compiler = xmlToGpb();
    log().clear();
    const JsonTree tree(R"({"plant":{"level":1}})");
    unsigned int length = kUntouched;
    EXPECT_EQ(nullptr, GpbXmlCompiler_EncodeJson(compiler.get(), tree.root(), tree.root(), &length));
    EXPECT_EQ(0u, length);
    EXPECT_LOG(log(), "0: [GpbXmlCompiler][GetGpbBuffer]top message is null.");
    GpbMdlAttr record = {nullptr, nullptr, 1, 2};
    EXPECT_EQ(0u, GpbXmlCompiler_GetMdlAttr(context(), compiler.get(), tree.root(), tree.root(), &record));
    EXPECT_EQ(2, record.ucCount);
    EXPECT_EQ("", log().take());
}

TEST_F(CInterfaceJsonTest, AnXmlCompilerAskedForJsonStillHasItsEarlierResult)
{
    const CompilerHandle compiler = xmlToGpb();
    const XmlDocument document("<plant><level>1</level></plant>");
    const JsonTree tree(R"({"plant":{"level":2}})");
    unsigned int length = 0;
    unsigned int error = 0;
    EXPECT_NE(nullptr, GpbXmlCompiler_Encode(compiler.get(), document.get(), &length, &error));
    const char *bytes = GpbXmlCompiler_EncodeJson(compiler.get(), tree.root(), tree.root(), &length);
    ASSERT_NE(nullptr, bytes);
    EXPECT_TRUE(judge().holds("plant.Plant", std::string(bytes, length), "level:1"));
}

TEST_F(CInterfaceJsonTest, AJsonCompilerAskedForXmlHasNoResult)
{
    const CompilerHandle compiler = jsonToGpb();
    log().clear();
    const XmlDocument document("<plant><level>1</level></plant>");
    unsigned int length = kUntouched;
    unsigned int error = kUntouched;
    EXPECT_EQ(nullptr, GpbXmlCompiler_Encode(compiler.get(), document.get(), &length, &error));
    EXPECT_EQ(0u, length);
    EXPECT_EQ(0u, error);
    EXPECT_LOG(log(), "0: Gpb compiler top message is null.");
}

TEST_F(CInterfaceJsonTest, AnXmlToJsonCompilerAskedForJsonHasNoResult)
{
    const CompilerHandle compiler = xmlToJson();
    log().clear();
    const JsonTree tree(R"({"plant":{"level":1}})");
    unsigned int length = kUntouched;
    EXPECT_EQ(nullptr, GpbXmlCompiler_EncodeJson(compiler.get(), tree.root(), tree.root(), &length));
    EXPECT_EQ(0u, length);
    EXPECT_EQ("", log().take());
}

TEST_F(CInterfaceJsonTest, LetsNoExceptionThrough)
{
    const auto throwing = open<ThrowingCompiler>("plant");
    const JsonTree tree(R"({"plant":{}})");
    unsigned int length = kUntouched;
    EXPECT_EQ(nullptr, GpbXmlCompiler_EncodeJson(throwing.get(), tree.root(), tree.root(), &length));
    EXPECT_LOG(log(), "0: Fail to encode, error code is 1.");
    EXPECT_EQ(1u, GpbXmlCompiler_GetMdlAttr(context(), throwing.get(), tree.root(), tree.root(), nullptr));
    EXPECT_LOG(log(), "0: Fail to encode, error code is 1.");
    const auto throwingResult = open<ThrowingResultCompiler>("plant");
    EXPECT_EQ(nullptr, GpbXmlCompiler_EncodeJson(throwingResult.get(), tree.root(), tree.root(), &length));
    EXPECT_EQ("", log().take());
}

TEST_F(CInterfaceJsonTest, CompilersOfEachClassSurviveEachFailingPlatformCall)
{
    const JsonTree tree(R"({"plant":{"level":1,"box":{"label":"a"}}})");
    const XmlDocument document("<plant><level>1</level></plant>");
    failEachCall(
        [&](const FaultRun &run)
        {
            unsigned int length = 0;
            unsigned int error = 0;
            const CompilerHandle reader = jsonToGpb();
            if (reader != nullptr)
            {
                const char *bytes = GpbXmlCompiler_EncodeJson(reader.get(), tree.root(), tree.root(), &length);
                EXPECT_TRUE(bytes != nullptr || run.fails());
                char *names[8] = {};
                uint32_t types[8] = {};
                GpbMdlAttr record = {names, types, 0, 0};
                EXPECT_TRUE(GpbXmlCompiler_GetMdlAttr(context(), reader.get(), tree.root(), tree.at("box"), &record) ==
                                0 ||
                            run.fails());
                for (size_t i = 0; i < record.ucCount; ++i)
                {
                    ZMP_Free_F(names[i], "c_interface_json_test", 0);
                }
            }
            const CompilerHandle writer = xmlToJson();
            if (writer != nullptr)
            {
                const char *text = GpbXmlCompiler_Encode(writer.get(), document.get(), &length, &error);
                EXPECT_TRUE(text != nullptr || run.fails());
            }
        });
}

} // namespace
} // namespace gpbtest
