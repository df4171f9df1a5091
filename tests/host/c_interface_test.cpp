/** The platform's headers serve C hosts. */
#include "c_interface.h"

#include <gtest/gtest.h>

#include "gpb_templatelib/gpb_host.h"

namespace
{

TEST(CInterfaceTest, EveryFunctionCanBeCalledFromC)
{
    ASSERT_EQ(0u, GpbHost_LiveCount());
    EXPECT_EQ(0, callPlatformFromC()) << "line of c_interface.c";
    EXPECT_EQ(0u, GpbHost_LiveCount());
}

} // namespace
