/** What most calls do, for the compiler: it lays their way out without a jump, and jumps are what short services cost.
 */
#ifndef GPB_HOST_LIKELY_H
#define GPB_HOST_LIKELY_H

namespace host
{

[[gnu::always_inline]] inline bool isLikely(bool condition)
{
    return __builtin_expect(static_cast<long>(condition), 1) != 0;
}

[[gnu::always_inline]] inline bool isUnlikely(bool condition)
{
    return __builtin_expect(static_cast<long>(condition), 0) != 0;
}

} // namespace host

#endif
