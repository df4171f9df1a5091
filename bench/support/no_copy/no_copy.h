// A call into another library that does nothing.
#ifndef GPB_BENCH_SUPPORT_NO_COPY_NO_COPY_H
#define GPB_BENCH_SUPPORT_NO_COPY_NO_COPY_H

#include <cstddef>

/// Takes what memcpy_s takes, copies nothing and gives 0. In a library of its own, as the platform is to those who copy
/// by it.
extern "C" __attribute__((visibility("default"))) int gpb_bench_no_copy(void *dest, size_t destSize, const void *source,
                                                                        size_t count);

#endif
