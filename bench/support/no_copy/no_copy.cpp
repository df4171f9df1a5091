#include "support/no_copy/no_copy.h"

extern "C" int gpb_bench_no_copy(void * /*dest*/, size_t /*destSize*/, const void * /*source*/, size_t /*count*/)
{
    return 0;
}
