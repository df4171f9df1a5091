/** Enum value names before and after the first compiler of the process, which is why this is a program of its own. */
#include "compiler/compiler_fixture.h"

namespace
{

class FirstCompilerTest : public gpbtest::CompilerFixture
{
protected:
    static std::string convert(const char *value, unsigned int size)
    {
        char out[128] = {};
        EXPECT_EQ(out, GpbXmlCompilerBase_EnumYang2Proto(value, "T", out, size));
        return out;
    }
};

using FirstCompilerOddities = FirstCompilerTest;

// The table is filled by the first compiler; until then no character is special, and each respects the bound.
TEST_F(FirstCompilerOddities, FillsTheTableOnceForTheProcess)
{
    for (const unsigned char entry : GpbXmlCompilerBase::aucSpecialCharTable)
    {
        ASSERT_EQ(0, entry);
    }
    EXPECT_EQ("T_UP-2 .", convert("up-2 .", 128));
    EXPECT_EQ("T_X_1-", convert("1-", 128)); // the digit needs no table
    EXPECT_EQ("T_-", convert("----", 4));

    addModule("m", "syntax='proto3'; package m; message Top { string v = 1; }");
    const auto create = [&] { GpbXmlCompiler_Destory(GpbXmlCompiler_CreateCompiler(context(), "m")); };
    const auto mark = [](char c) -> unsigned char &
    { return GpbXmlCompilerBase::aucSpecialCharTable[static_cast<unsigned char>(c)]; };
    for (const unsigned char entry : GpbXmlCompilerBase::aucSpecialCharTable)
    {
        ASSERT_EQ(0, entry);
    }
    create();

    EXPECT_EQ(1, mark('!'));
    EXPECT_EQ("T_UPX_2X_X_", convert("up-2 .", 128));

    // The mark of the exclamation mark tells whether the table is filled; no other mark is looked at.
    mark('-') = 0;
    create();
    EXPECT_EQ("T_UP-2X_X_", convert("up-2 .", 128));
    mark('!') = 0;
    create();
    EXPECT_EQ(1, mark('!'));
    EXPECT_EQ("T_UPX_2X_X_", convert("up-2 .", 128));

    destroyContext();
    EXPECT_EQ("T_UPX_2X_X_", convert("up-2 .", 128)); // never reset
}

} // namespace
