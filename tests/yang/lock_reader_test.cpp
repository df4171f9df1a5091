/** A lock that is not one: every error has its line. */
#include <gmock/gmock.h>

#include "yang/number_lock.h"
#include "yang_fixture.h"

namespace
{

using gpbtest::errorOf;

class LockReading : public testing::Test
{
protected:
    /** The error of a text, which names the file x.lock. */
    static std::string failure(const std::string &text)
    {
        const auto [fault, what] = errorOf([&] { gpbyang::NumberLock::Read(text, "x.lock", "m"); });
        EXPECT_EQ(fault, gpbyang::Fault::Lock);
        return what;
    }

    /** The error of lines behind the head. */
    static std::string failureOf(const std::string &lines)
    {
        const std::string what = failure("gpb-numbers 1\nmodule m\n" + lines);
        const std::string begin = "x.lock:";
        EXPECT_EQ(what.substr(0, begin.size()), begin);
        return what.substr(begin.size());
    }
};

TEST_F(LockReading, WhatIsNoLock)
{
    EXPECT_EQ(failure(""), "x.lock: this is no lock file of gpbtool proto");
    EXPECT_EQ(failure("# only a comment\n\n"), "x.lock: this is no lock file of gpbtool proto");
    EXPECT_EQ(failure("gpb-numbers 1\n"), "x.lock: this is no lock file of gpbtool proto");
    const std::string other = "this is no lock file of gpbtool proto: it does not begin with \"gpb-numbers 1\"";
    EXPECT_EQ(failure("{}\n"), "x.lock:1: " + other);
    EXPECT_EQ(failure("\ngpb-numbers 2\nmodule m\n"), "x.lock:2: " + other);
    EXPECT_EQ(failure(std::string("\0\xff\n", 3)), "x.lock:1: " + other);
}

TEST_F(LockReading, OfAnotherModule)
{
    EXPECT_EQ(failure("gpb-numbers 1\nmodule other\n"), "x.lock:2: this is the lock file of module other, not of m");
    EXPECT_EQ(failure("gpb-numbers 1\nmessage /m:t\n"), "x.lock:2: \"module NAME\" is expected");
    EXPECT_EQ(failure("gpb-numbers 1\nmodule m n\n"), "x.lock:2: \"module NAME\" is expected");
}

TEST_F(LockReading, Sections)
{
    EXPECT_EQ(failureOf("message\n"), "3: \"message /PATH\" is expected");
    EXPECT_EQ(failureOf("enum m:t\n"), "3: \"enum /PATH\" is expected");
    EXPECT_EQ(failureOf("message /m:t x\n"), "3: \"message /PATH\" is expected");
    EXPECT_EQ(failureOf("message /m:t\n\nmessage /m:t\n"), "5: /m:t stands here for the second time");
    EXPECT_EQ(failureOf("1 a string a\n"), "3: \"message /PATH\" or \"enum /PATH\" is expected");
}

TEST_F(LockReading, Fields)
{
    const std::string head = "message /m:t\n";
    EXPECT_EQ(failureOf(head + "1 a string\n"), "4: \"NUMBER NODE TYPE FIELD\" is expected");
    EXPECT_EQ(failureOf(head + "1 a string a b\n"), "4: \"NUMBER NODE TYPE FIELD\" is expected");
    EXPECT_EQ(failureOf(head + "1 a string a\n1 b string b\n"), "5: the number 1 is taken already");
    EXPECT_EQ(failureOf(head + "1 a string a\n2 a string a\n"), "5: a has a number already");
    EXPECT_EQ(failureOf(head + "1 a string a\"\n"), "4: \"a\"\" is no name");
    for (const char *number :
         {"0", "-1", "x", "1x", "+1", "536870912", "19000", "19999", "99999999999", "123456789012", "-"})
    {
        EXPECT_EQ(failureOf(head + number + " a string a\n"),
                  "4: \"" + std::string(number) + "\" is no number of a field");
    }
}

TEST_F(LockReading, Values)
{
    const std::string head = "enum /m:t/s\n";
    EXPECT_EQ(failureOf(head + "1 A string a\n"), "4: \"NUMBER VALUE\" is expected");
    EXPECT_EQ(failureOf(head + "1 A-B\n"), "4: \"A-B\" is no name");
    EXPECT_EQ(failureOf(head + "1 A\n1 B\n"), "5: the number 1 is taken already");
    EXPECT_EQ(failureOf(head + "1 A\n2 A\n"), "5: A has a number already");
    EXPECT_EQ(failureOf(head + "2147483648 A\n"), "4: \"2147483648\" is no number of an enumeration value");
    EXPECT_EQ(failureOf(head + "- A\n"), "4: \"-\" is no number of an enumeration value");
    gpbyang::NumberLock::Read("gpb-numbers 1\nmodule m\n" + head + "-2147483648 A\n2147483647 B\n", "x.lock", "m");
}

TEST_F(LockReading, CommentsAndEmptyLinesArePassedOver)
{
    EXPECT_EQ(gpbyang::NumberLock::Read(
                  "# numbers\n\ngpb-numbers 1\n# m\nmodule m\n \nmessage /m:t\n# a\n1 a string a\n", "x.lock", "m")
                  .Text(),
              "gpb-numbers 1\nmodule m\n\nmessage /m:t\n  1 a string a\n");
}

} // namespace
