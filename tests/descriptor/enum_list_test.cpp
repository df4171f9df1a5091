/** The values of an enumeration leaf under their YANG names. */
#include <google/protobuf/descriptor.h>
#include <string>
#include <vector>

#include "gpb_templatelib/gpb_descriptor.h"
#include "platform/zmp.h"
#include "support/library_fixture.h"

namespace
{

using gpbtest::joinLines;

constexpr char kModule[] = "m";
constexpr size_t kMaxName = 128;
constexpr uint32_t kNotFound = 3;
constexpr uint32_t kNotAnEnum = 4;
constexpr uint32_t kUntouched = 0xAAAAAAAA;
constexpr uint32_t kTestLine = 1;

class EnumList : public gpbtest::LibraryFixture
{
protected:
    /** Loads a module of that text. */
    void load(const std::string &text)
    {
        writeProto(kModule, "syntax = 'proto3'; " + text);
        ASSERT_EQ(0u, GPBLIB_ProtobufLoad(context(), kModule, 0));
        log().clear();
        events().clear();
    }

    uint32_t list(const char *path, const char *leaf)
    {
        return Gpb_ModuleAdapt_GetEnumList(context(), Gpb_ModuleAdapt_GetFileHandle(context(), kModule), path, leaf,
                                           &items, &count);
    }

    /** Expects a failure that leaves the out arguments and no memory. */
    void expectFailure(uint32_t result, const char *path, const char *leaf)
    {
        EXPECT_EQ(result, list(path, leaf)) << path << " " << leaf;
        EXPECT_EQ(&marker, items);
        EXPECT_EQ(kUntouched, count);
        EXPECT_NO_LOG(log());
    }

    /** The items as "NUMBER NAME" lines; frees them. */
    std::string take()
    {
        std::vector<std::string> texts;
        for (uint32_t i = 0; i < count; ++i)
        {
            texts.push_back(std::to_string(items[i].iValue) + " " + items[i].acName);
        }
        ZMP_Free_F(items, "enum_list", kTestLine);
        items = &marker;
        count = kUntouched;
        return joinLines(texts);
    }

    GpbYangEnumItem marker = {};
    GpbYangEnumItem *items = &marker;
    uint32_t count = kUntouched;
};

static_assert(sizeof(GpbYangEnumItem::acName) == kMaxName + 1, "128 characters and the terminator");
static_assert(offsetof(GpbYangEnumItem, iValue) == 0 && offsetof(GpbYangEnumItem, acName) == sizeof(int32_t),
              "the value comes first");

TEST_F(EnumList, GivesNumbersAndYangNamesInTheOrderOfDeclaration)
{
    load("enum State { STATE_UP = 0; STATE_DOWN = -5; STATE_A_B = 2147483647; State_4x = 1; }"
         "message Top { State state = 1; repeated State states = 2; Child child = 3;"
         "  message Child { State deep_state = 1; } }");
    ASSERT_EQ(0u, list("top", "state"));
    EXPECT_EQ(joinLines({"0 UP", "-5 DOWN", "2147483647 A_B", "1 4x"}), take());
    ASSERT_EQ(0u, list("m:top", "states"));
    EXPECT_EQ(4u, count);
    take();
    ASSERT_EQ(0u, list("m:top/m:child", "deep-state"));
    EXPECT_EQ(4u, count);
    take();
    EXPECT_NO_LOG(log());
}

TEST_F(EnumList, NamesNumbersThatAreUsedTwice)
{
    load("enum E { option allow_alias = true; E_A = 0; E_B = 0; } message Top { E e = 1; }");
    ASSERT_EQ(0u, list("top", "e"));
    EXPECT_EQ(joinLines({"0 A", "0 B"}), take());
}

TEST_F(EnumList, IsOneAllocationThatTheCallerOwns)
{
    load("enum E { E_A = 0; E_B = 1; E_C = 2; } message Top { E e = 1; }");
    ASSERT_EQ(0u, list("top", "e"));
    const std::vector<gpbtest::PlatformEvent> &made = events().events();
    ASSERT_EQ(1u, made.size());
    EXPECT_EQ(GPB_HOST_EVENT_MALLOC, made[0].kind);
    EXPECT_EQ("gpb_module_adapt", made[0].file);
    EXPECT_EQ(items, made[0].memory);
    EXPECT_EQ(3 * sizeof(GpbYangEnumItem), made[0].size);
    EXPECT_EQ(kModuleId, made[0].moduleId);
    EXPECT_EQ(g_aucZmpMemPt[0], made[0].partition);
    take();
}

TEST_F(EnumList, TakesANameOf128CharactersAndFailsForOneOf129)
{
    const std::string longest(kMaxName, 'N');
    load("enum Fits { F_A = 0; F_" + longest + " = 1; } enum TooLong { T_A = 0; T_" + longest +
         "N = 1; } message Top { Fits fits = 1; TooLong too_long = 2; }");
    ASSERT_EQ(0u, list("top", "fits"));
    EXPECT_EQ(joinLines({"0 A", "1 " + longest}), take());
    expectFailure(1, "top", "too-long");
}

TEST_F(EnumList, FailsAsAWholeForAValueWithoutUnderline)
{
    load("enum E { E_A = 0; PLAIN = 1; E_C = 2; } message Top { E e = 1; }");
    expectFailure(1, "top", "e");
    const std::vector<gpbtest::PlatformEvent> &seen = events().events();
    ASSERT_EQ(2u, seen.size());
    EXPECT_EQ(GPB_HOST_EVENT_MALLOC, seen[0].kind);
    EXPECT_EQ(GPB_HOST_EVENT_FREE, seen[1].kind);
    EXPECT_EQ("gpb_module_adapt", seen[1].file);
}

TEST_F(EnumList, FailsForAFieldThatIsNotThere)
{
    load("enum E { E_A = 0; } message Top { E e = 1; }");
    expectFailure(kNotFound, "top", "none");
    expectFailure(kNotFound, "none", "e");
    expectFailure(kNotFound, "/top", "e");
    expectFailure(kNotFound, "", "e");
    expectFailure(kNotFound, "top/e", "e");
    EXPECT_EQ("", joinLines(events().texts()));
}

TEST_F(EnumList, FailsForAFieldThatIsNoEnum)
{
    load("message Top { string text = 1; int32 number = 2; Sub sub = 3; bool flag = 4; message Sub { } }");
    for (const char *const leaf : {"text", "number", "sub", "flag"})
    {
        expectFailure(kNotAnEnum, "top", leaf);
    }
    EXPECT_EQ("", joinLines(events().texts()));
}

TEST_F(EnumList, FailsWithoutMemory)
{
    load("enum E { E_A = 0; } message Top { E e = 1; }");
    GpbHost_FailCall(GPB_HOST_MALLOC, 1);
    expectFailure(1, "top", "e");
    EXPECT_EQ(1u, events().ofKind(GPB_HOST_EVENT_MALLOC_FAILED).size());
}

TEST_F(EnumList, LeavesNothingBehindWhicheverCallFails)
{
    load("enum E { E_A = 0; E_B = 1; } message Top { E e = 1; }");
    failEachCall(
        [this](const gpbtest::FaultRun &run)
        {
            const uint32_t result = list("top", "e");
            EXPECT_TRUE(run.fails() || result == 0);
            if (result == 0)
            {
                EXPECT_EQ(joinLines({"0 A", "1 B"}), take());
            }
            EXPECT_EQ(&marker, items);
            EXPECT_EQ(kUntouched, count);
        });
}

TEST_F(EnumList, FailsWithoutItsArguments)
{
    load("enum E { E_A = 0; } message Top { E e = 1; }");
    const google::protobuf::FileDescriptor *const file = Gpb_ModuleAdapt_GetFileHandle(context(), kModule);
    EXPECT_EQ(kNotFound, Gpb_ModuleAdapt_GetEnumList(context(), nullptr, "top", "e", &items, &count));
    EXPECT_EQ(kNotFound, Gpb_ModuleAdapt_GetEnumList(context(), file, nullptr, "e", &items, &count));
    EXPECT_EQ(kNotFound, Gpb_ModuleAdapt_GetEnumList(context(), file, "top", nullptr, &items, &count));
    EXPECT_EQ(1u, Gpb_ModuleAdapt_GetEnumList(context(), file, "top", "e", nullptr, &count));
    EXPECT_EQ(1u, Gpb_ModuleAdapt_GetEnumList(context(), file, "top", "e", &items, nullptr));
    EXPECT_EQ(&marker, items);
    EXPECT_EQ(kUntouched, count);
    ASSERT_EQ(0u, Gpb_ModuleAdapt_GetEnumList(nullptr, file, "top", "e", &items, &count));
    EXPECT_EQ("0 A\n", take());
}

} // namespace
