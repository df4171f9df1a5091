#include "plain_number.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <langinfo.h>

namespace
{

/** The first number that has more than fourteen digits before the point. */
constexpr double kFifteenDigits = 1e14;

/** Whether the locale has a point in numbers, and nothing else. */
bool isPointDot()
{
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nothing of the answer is kept
    return std::strcmp(nl_langinfo(RADIXCHAR), ".") == 0;
}

char *writeDigit(uint32_t digit, char *out)
{
    *out = static_cast<char>('0' + digit);
    return out + 1;
}

/** Exactly two digits, as the two functions behind write four and eight. */
char *writeTwoDigits(uint32_t number, char *out)
{
    static constexpr char kPairs[] = "00010203040506070809"
                                     "10111213141516171819"
                                     "20212223242526272829"
                                     "30313233343536373839"
                                     "40414243444546474849"
                                     "50515253545556575859"
                                     "60616263646566676869"
                                     "70717273747576777879"
                                     "80818283848586878889"
                                     "90919293949596979899";
    std::memcpy(out, &kPairs[size_t{number} * 2], 2);
    return out + 2;
}

char *writeFourDigits(uint32_t number, char *out)
{
    return writeTwoDigits(number % 100, writeTwoDigits(number / 100, out));
}

char *writeEightDigits(uint32_t number, char *out)
{
    return writeFourDigits(number % 10000, writeFourDigits(number / 10000, out));
}

/** A number of one or two digits without a zero in front, as the three functions behind write larger ones. */
char *writeUpToTwoDigits(uint32_t number, char *out)
{
    return number < 10 ? writeDigit(number, out) : writeTwoDigits(number, out);
}

char *writeUpToFourDigits(uint32_t number, char *out)
{
    return number < 100 ? writeUpToTwoDigits(number, out)
                        : writeTwoDigits(number % 100, writeUpToTwoDigits(number / 100, out));
}

char *writeUpToEightDigits(uint32_t number, char *out)
{
    return number < 10000 ? writeUpToFourDigits(number, out)
                          : writeFourDigits(number % 10000, writeUpToFourDigits(number / 10000, out));
}

char *writeUpToSixteenDigits(uint64_t number, char *out)
{
    constexpr uint32_t kNineDigits = 100000000;
    if (number < kNineDigits)
    {
        return writeUpToEightDigits(static_cast<uint32_t>(number), out);
    }
    char *const next = writeUpToEightDigits(static_cast<uint32_t>(number / kNineDigits), out);
    return writeEightDigits(static_cast<uint32_t>(number % kNineDigits), next);
}

char *writeSign(bool isNegative, char *out)
{
    if (isNegative)
    {
        *out++ = '-';
    }
    return out;
}

/**
 * Writes a positive number that is not whole, if it has at most ten digits before the point and four behind it; null
 * for any other. Of all decimals of fourteen digits, only one is read as this number: that is the one which printf
 * writes, too. Not in line, since whole numbers, which are more, need none of its registers.
 *
 * @param whole  the number without what is behind its point
 */
[[gnu::noinline]] char *writeShortDecimal(double number, uint64_t whole, char *out)
{
    constexpr uint32_t kScale = 10000;
    const double scaled = number * kScale;
    if (!(scaled < kFifteenDigits - 1))
    {
        return nullptr;
    }
    const auto digits = static_cast<int64_t>(scaled + 1.0 / 2);
    if (static_cast<double>(digits) / kScale != number || !isPointDot())
    {
        return nullptr;
    }
    const auto fraction = static_cast<uint32_t>(static_cast<uint64_t>(digits) - whole * kScale);
    // Two digits at a time, with a zero too many at times.
    char *end = writeUpToSixteenDigits(whole, out);
    *end++ = '.';
    end = writeTwoDigits(fraction / 100, end);
    if (fraction % 100 != 0)
    {
        end = writeTwoDigits(fraction % 100, end);
    }
    return end[-1] == '0' ? end - 1 : end;
}

} // namespace

namespace host
{

char *writePlainNumber(unsigned number, char *out)
{
    return writeUpToSixteenDigits(number, out);
}

char *writePlainNumber(int number, char *out)
{
    const auto bits = static_cast<unsigned>(number);
    return writePlainNumber(number < 0 ? 0 - bits : bits, writeSign(number < 0, out));
}

char *writePlainNumber(double number, char *out)
{
    const double size = std::fabs(number);
    if (!(size < kFifteenDigits))
    {
        return nullptr;
    }
    const auto whole = static_cast<int64_t>(size);
    char *const digits = writeSign(std::signbit(number), out);
    return static_cast<double>(whole) == size ? writeUpToSixteenDigits(static_cast<uint64_t>(whole), digits)
                                              : writeShortDecimal(size, static_cast<uint64_t>(whole), digits);
}

} // namespace host
