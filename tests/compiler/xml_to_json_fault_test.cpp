// XML to JSON without memory: each allocation of items and each platform call fails once.
#include <cstdlib>

#include "compiler/json_fixture.h"

namespace gpbtest
{
namespace
{

/** cJSON's allocator while one of these lives: counts what is held, and fails the n-th call. */
class ItemMemory
{
public:
    explicit ItemMemory(size_t failingCall)
    {
        s_calls = 0;
        s_held = 0;
        s_failingCall = failingCall;
        cJSON_Hooks hooks = {allocate, release};
        cJSON_InitHooks(&hooks);
    }

    ~ItemMemory() { cJSON_InitHooks(nullptr); }

    ItemMemory(const ItemMemory &) = delete;
    ItemMemory &operator=(const ItemMemory &) = delete;

    static size_t calls() { return s_calls; }
    static size_t held() { return s_held; }

private:
    static void *allocate(size_t size)
    {
        if (++s_calls == s_failingCall)
        {
            return nullptr;
        }
        ++s_held;
        return std::malloc(size);
    }

    static void release(void *memory)
    {
        s_held -= memory == nullptr ? 0 : 1;
        std::free(memory);
    }

    static size_t s_calls;
    static size_t s_held;
    static size_t s_failingCall;
};

size_t ItemMemory::s_calls = 0;
size_t ItemMemory::s_held = 0;
size_t ItemMemory::s_failingCall = 0;

class XmlToJsonFaultTest : public JsonFixture
{
protected:
    void SetUp() override
    {
        JsonFixture::SetUp();
        addModule("plant", kPlantProto);
    }

    /** Encodes with the n-th allocation of items failing; returns the number of allocations. */
    template <typename Compiler = OpenXmlToJsonCompiler>
    size_t encodeFailing(const XmlDocument &document, size_t failingCall, CompilerResult &result)
    {
        const ItemMemory memory(failingCall);
        {
            const auto compiler = open<Compiler>("plant", static_cast<unsigned char>(0));
            result = takeResult(*compiler, compiler->Encode(document.get()));
        }
        EXPECT_EQ(0u, ItemMemory::held());
        return ItemMemory::calls();
    }
};

TEST_F(XmlToJsonFaultTest, LosesNothingWhicheverItemCannotBeMade)
{
    const XmlDocument document("<plant><level>1</level><first-name>x</first-name><on/><names>a</names><names>b</names>"
                               "<box><size>1</size></box><boxes><label>l</label></boxes><boxes>\n</boxes></plant>");
    CompilerResult whole;
    const size_t calls = encodeFailing(document, 0, whole);
    EXPECT_EQ(R"({"plant":{"level":1,"first-name":"x","on":true,"names":["a","b"],"box":{"size":1},)"
              R"("boxes":[{"label":"l"},{}]}})",
              whole.bytes);
    EXPECT_GT(calls, 20u);
    for (size_t failing = 1; failing <= calls; ++failing)
    {
        SCOPED_TRACE(failing);
        log().clear();
        CompilerResult result;
        encodeFailing(document, failing, result);
        EXPECT_TRUE(result.code == 0 || result.code == 11) << result.code;
        EXPECT_NE(whole.bytes, result.bytes);
        if (result.code == 11 && failing > 1)
        {
            EXPECT_EQ("[GpbXmlCompilerJson][Encode]Fail to iterate xml doc, return 11.", log().lines().back().text);
        }
    }
}

// A compiler that is no subclass has its items in blocks of cJSON's memory; here in several, one of them for a long
// text and one with a place left that is too small for an item.
TEST_F(XmlToJsonFaultTest, LosesNothingWhicheverBlockOfItemsCannotBeMade)
{
    const std::string longText(100000, 'x');
    std::string content = "<first-name>" + longText + "</first-name>";
    std::string members = R"("first-name":")" + longText + "\"";
    std::string names;
    for (int i = 0; i < 4000; ++i)
    {
        content += "<names>" + std::to_string(i) + "</names>";
        names += (i == 0 ? "\"" : ",\"") + std::to_string(i) + "\"";
    }
    const XmlDocument document("<plant>" + content + "<box><size>1</size></box></plant>");
    CompilerResult whole;
    const size_t calls = encodeFailing<GpbXmlCompilerJson>(document, 0, whole);
    EXPECT_EQ("{\"plant\":{" + members + R"(,"names":[)" + names + R"(],"box":{"size":1}}})", whole.bytes);
    EXPECT_GT(calls, 5u);
    EXPECT_LT(calls, 20u);
    for (size_t failing = 1; failing <= calls; ++failing)
    {
        SCOPED_TRACE(failing);
        CompilerResult result;
        encodeFailing<GpbXmlCompilerJson>(document, failing, result);
        EXPECT_EQ(failing == 1 ? 11u : 0u, result.code);
        EXPECT_EQ(failing == 1, result.isNull);
        EXPECT_NE(whole.bytes, result.bytes);
        const std::vector<LogLine> lines = log().lines();
        EXPECT_EQ(failing == 1, lines.empty());
        EXPECT_TRUE(failing == 1 || lines.back().str().rfind("0: Fail to translator node [", 0) == 0);
        log().clear();
    }
}

TEST_F(XmlToJsonFaultTest, FailsWithoutTheRootObject)
{
    const XmlDocument document("<plant><level>1</level></plant>");
    CompilerResult result;
    encodeFailing(document, 1, result);
    EXPECT_EQ(11u, result.code);
    EXPECT_TRUE(result.isNull);
    EXPECT_EQ("", log().take());
}

TEST_F(XmlToJsonFaultTest, ReportsALeafWithoutItem)
{
    // The calls: root object; plant's object and name; the number.
    const XmlDocument document("<plant><level>1</level><count>2</count></plant>");
    CompilerResult result;
    encodeFailing(document, 4, result);
    EXPECT_EQ(0u, result.code);
    EXPECT_EQ(R"({"plant":{"count":2}})", result.bytes);
    EXPECT_LOG(log(), "0: Fail to translator node [level] value [1].");
}

TEST_F(XmlToJsonFaultTest, EndsAtAnEmptyLeafWithoutItem)
{
    const XmlDocument document("<plant><on/><count>2</count></plant>");
    CompilerResult result;
    encodeFailing(document, 4, result);
    // Inside a container that is passed over, as any failing one is.
    EXPECT_EQ(0u, result.code);
    EXPECT_EQ(R"({"plant":{}})", result.bytes);
    EXPECT_LOG(log(), "0: Fail to translator node [on] value [true].");
}

TEST_F(XmlToJsonFaultTest, StopsAtEachItemThatCannotBeMadeWhenAsked)
{
    const XmlDocument document("<plant><level>1</level><on/><names>a</names><names>b</names><box>\n</box>"
                               "<boxes><label>l</label></boxes><boxes>\n</boxes></plant>");
    const auto encodeOnly = [&](size_t failing)
    {
        const auto compiler = open<OpenXmlToJsonCompiler>("plant", static_cast<unsigned char>(0));
        compiler->ucStopOnError = 1;
        const ItemMemory memory(failing);
        const unsigned int code = compiler->Encode(document.get());
        compiler->ClearResult();
        EXPECT_EQ(0u, ItemMemory::held());
        return code;
    };
    EXPECT_EQ(0u, encodeOnly(0));
    const size_t calls = ItemMemory::calls();
    EXPECT_GT(calls, 20u);
    EXPECT_EQ("", log().take());
    for (size_t failing = 1; failing <= calls; ++failing)
    {
        SCOPED_TRACE(failing);
        EXPECT_EQ(11u, encodeOnly(failing));
        const std::vector<LogLine> lines = log().lines();
        EXPECT_EQ(failing == 1, lines.empty());
        EXPECT_TRUE(failing == 1 ||
                    lines.back().str() == "0: [GpbXmlCompilerJson][Encode]Fail to iterate xml doc, return 11.");
        log().clear();
    }
}

TEST_F(XmlToJsonFaultTest, KeepsAnIdentityThatCannotBeRewritten)
{
    addModule("telemetry", R"(syntax = "proto3"; package t;
        message TelemetrySystem { message Subscriptions { message Persistent { message Subscription {
          string encoding = 1; } repeated Subscription subscription = 1; } Persistent persistent = 1; }
          Subscriptions subscriptions = 1; })");
    const XmlDocument document("<telemetry-system><subscriptions><persistent><subscription>"
                               "<encoding xmlns:o='urn:o'>oc-telemetry-types:GPB</encoding>"
                               "</subscription></persistent></subscriptions></telemetry-system>");
    const auto encoding = [&]
    {
        const auto compiler = open<OpenXmlToJsonCompiler>("telemetry", static_cast<unsigned char>(0));
        compiler->ucStopOnError = 1;
        EXPECT_EQ(0u, compiler->Encode(document.get()));
        const std::string text = takeResult(*compiler, 0).bytes;
        const size_t begin = text.find("\"encoding\":");
        return text.substr(begin, text.find('}', begin) - begin);
    };
    EXPECT_EQ(R"("encoding":"openconfig-telemetry-types:GPB")", encoding());
    events().clear();
    GpbHost_FailCall(GPB_HOST_MALLOC, 1);
    EXPECT_EQ(R"("encoding":"oc-telemetry-types:GPB")", encoding());
    EXPECT_EQ(std::vector<std::string>{"gpb_xmlcompilerjson:138"}, events().sites(GPB_HOST_EVENT_FREE));
    // A text that cannot be written is released again.
    events().clear();
    const uint64_t formats = GpbHost_CallCount(GPB_HOST_SPRINTF);
    EXPECT_EQ(R"("encoding":"openconfig-telemetry-types:GPB")", encoding());
    GpbHost_FailCall(GPB_HOST_SPRINTF, GpbHost_CallCount(GPB_HOST_SPRINTF) - formats);
    EXPECT_EQ(R"("encoding":"oc-telemetry-types:GPB")", encoding());
    EXPECT_EQ("", log().take());
}

TEST_F(XmlToJsonFaultTest, HasNoResultThatCannotBeCopied)
{
    const auto compiler = open<OpenXmlToJsonCompiler>("plant", static_cast<unsigned char>(0));
    const XmlDocument document("<plant><level>1</level></plant>");
    EXPECT_EQ(0u, compiler->Encode(document.get()));
    GpbHost_FailCall(GPB_HOST_MALLOC, 1);
    EXPECT_TRUE(takeResult(*compiler, 0).isNull);
    EXPECT_EQ(R"({"plant":{"level":1}})", takeResult(*compiler, 0).bytes) << "the next call prints again";
}

TEST_F(XmlToJsonFaultTest, SurvivesEachFailingPlatformCall)
{
    const XmlDocument document(
        "<plant><level>1</level><names>a</names><boxes><label>l</label></boxes>"
        "<left-leaf>x</left-leaf><on/><no-leaf>1</no-leaf><no>1</no><no-box><a/><b/></no-box></plant>");
    const uint64_t calls = failEachCall(
        [&](const FaultRun &run)
        {
            const auto compiler = open<OpenXmlToJsonCompiler>("plant", static_cast<unsigned char>(0));
            const CompilerResult result = takeResult(*compiler, compiler->Encode(document.get()));
            EXPECT_EQ(0u, result.code);
            if (!run.fails())
            {
                EXPECT_EQ(R"({"plant":{"level":1,"names":["a"],"boxes":[{"label":"l"}],"left-leaf":"x","on":true}})",
                          result.bytes);
            }
        });
    EXPECT_GT(calls, 8u);
}

} // namespace
} // namespace gpbtest
