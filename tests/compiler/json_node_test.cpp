// The thin layer over cJSON.
#include <cjson/cJSON.h>

#include "gpb_templatelib/gpb_compiler.h"
#include "platform/zmp.h"
#include "support/platform_fixture.h"

namespace gpbtest
{
namespace
{

class JsonNodeTest : public PlatformFixture
{
protected:
    std::string printed(cJSON *item)
    {
        char *text = GpbLib_Json_EncodeUnformatted(kModuleId, item);
        EXPECT_NE(nullptr, text);
        if (text == nullptr)
        {
            return "";
        }
        const std::string copy(text);
        ZMP_Free_F(text, "json_node_test", 0);
        return copy;
    }
};

TEST_F(JsonNodeTest, AddsMembersToAnObject)
{
    cJSON *object = GpbLib_Json_AllocObject(kModuleId);
    EXPECT_NE(nullptr, GpbLib_Json_ObjectAddTrue(kModuleId, object, "t"));
    EXPECT_NE(nullptr, GpbLib_Json_ObjectAddFalse(kModuleId, object, "f"));
    EXPECT_NE(nullptr, GpbLib_Json_ObjectAddNumber(kModuleId, object, "n", 1.5));
    EXPECT_NE(nullptr, GpbLib_Json_ObjectAddString(kModuleId, object, "s", "a\"b"));
    EXPECT_NE(nullptr, GpbLib_Json_ObjectAddRaw(kModuleId, object, "r", "[1, 2]"));
    EXPECT_NE(nullptr, GpbLib_Json_ObjectAddObject(kModuleId, object, "o"));
    EXPECT_NE(nullptr, GpbLib_Json_ObjectAddArray(kModuleId, object, "a"));
    EXPECT_EQ(R"({"t":true,"f":false,"n":1.5,"s":"a\"b","r":[1, 2],"o":{},"a":[]})", printed(object));
    GpbLib_Json_NodeFree(object);
}

TEST_F(JsonNodeTest, MakesItemsAndAddsThem)
{
    cJSON *object = GpbLib_Json_AllocObject(kModuleId);
    cJSON *array = GpbLib_Json_AllocArray(kModuleId);
    EXPECT_EQ(1u, GpbLib_Json_AddItemToArray(kModuleId, array, GpbLib_Json_AllocTrue(kModuleId)));
    EXPECT_EQ(1u, GpbLib_Json_AddItemToArray(kModuleId, array, GpbLib_Json_AllocFalse(kModuleId)));
    EXPECT_EQ(1u, GpbLib_Json_AddItemToArray(kModuleId, array, GpbLib_Json_AllocNumber(kModuleId, -3)));
    EXPECT_EQ(1u, GpbLib_Json_AddItemToArray(kModuleId, array, GpbLib_Json_AllocString(kModuleId, "x")));
    EXPECT_EQ(1u, GpbLib_Json_AddItemToObject(kModuleId, object, "list", array));
    EXPECT_EQ(R"({"list":[true,false,-3,"x"]})", printed(object));
    EXPECT_STREQ("list", GpbLib_Json_GetObjectName(array));
    EXPECT_EQ(nullptr, GpbLib_Json_GetObjectName(object));
    EXPECT_EQ(nullptr, GpbLib_Json_GetObjectName(array->child));
    GpbLib_Json_NodeFree(object);
}

TEST_F(JsonNodeTest, TakesNull)
{
    GpbLib_Json_NodeFree(nullptr);
    GpbLib_Json_Free(nullptr);
    EXPECT_EQ(nullptr, GpbLib_Json_GetObjectName(nullptr));
    EXPECT_EQ(nullptr, GpbLib_Json_EncodeUnformatted(kModuleId, nullptr));
    EXPECT_EQ(nullptr, GpbLib_Json_AllocString(kModuleId, nullptr));
    EXPECT_EQ(nullptr, GpbLib_Json_ObjectAddObject(kModuleId, nullptr, "x"));
    cJSON *object = GpbLib_Json_AllocObject(kModuleId);
    EXPECT_EQ(nullptr, GpbLib_Json_ObjectAddTrue(kModuleId, object, nullptr));
    EXPECT_EQ(0u, GpbLib_Json_AddItemToObject(kModuleId, object, "x", nullptr));
    EXPECT_EQ(0u, GpbLib_Json_AddItemToArray(kModuleId, nullptr, object));
    GpbLib_Json_NodeFree(object);
}

TEST_F(JsonNodeTest, TakesMemoryFromTheAllocatorOfTheItems)
{
    static size_t calls = 0;
    cJSON_Hooks hooks = {[](size_t size)
                         {
                             ++calls;
                             return std::malloc(size);
                         },
                         [](void *memory)
                         {
                             --calls;
                             std::free(memory);
                         }};
    cJSON_InitHooks(&hooks);
    void *memory = GpbLib_Json_Malloc(16);
    EXPECT_NE(nullptr, memory);
    EXPECT_EQ(1u, calls);
    GpbLib_Json_Free(memory);
    EXPECT_EQ(0u, calls);
    cJSON_InitHooks(nullptr);
}

TEST_F(JsonNodeTest, PrintsIntoPlatformMemoryOfTheModule)
{
    cJSON *object = GpbLib_Json_AllocObject(kModuleId);
    events().clear();
    char *text = GpbLib_Json_EncodeUnformatted(kModuleId, object);
    const std::vector<PlatformEvent> allocations = events().ofKind(GPB_HOST_EVENT_MALLOC);
    ASSERT_EQ(1u, allocations.size());
    EXPECT_EQ(text, allocations[0].memory);
    EXPECT_EQ(kModuleId, allocations[0].moduleId);
    EXPECT_EQ(3u, allocations[0].size);
    ZMP_Free_F(text, "json_node_test", 0);
    GpbHost_FailCall(GPB_HOST_MALLOC, 1);
    EXPECT_EQ(nullptr, GpbLib_Json_EncodeUnformatted(kModuleId, object));
    GpbLib_Json_NodeFree(object);
}

} // namespace
} // namespace gpbtest
