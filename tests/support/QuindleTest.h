// QuindleTest.h - what every library test stands on: a recording kernel handed
// to the library before the test and checked for leaked blocks after it, and a
// one-line check of an assertion's exact report.
#ifndef QUINDLE_TEST_H
#define QUINDLE_TEST_H

#include "RecordingKernel.h"
#include "gldll.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

namespace quindle_test {

// One or more digits in a death test's expected output: GoogleTest reads
// POSIX regular expressions on Linux and its own simple ones on Windows.
#if defined(_WIN32)
#define QUINDLE_ANY_NUMBER "\\d+"
#else
#define QUINDLE_ANY_NUMBER "[0-9]+"
#endif
const char kAnyNumber[] = QUINDLE_ANY_NUMBER;

// The exact report of a failed check, as a regular expression: the notice's
// title, then "Assertion failed in <file>(<line>): <condition>". A line of -1
// accepts any line.
std::string AssertPattern(const std::string& file, const std::string& expression, int line = -1);

// Holds the kernel and, when it goes, checks that every block the library took
// was given back. It is the fixture's first base, so it outlives every member
// of the fixture and every local of the test.
class KernelHolder {
public:
    KernelHolder();
    virtual ~KernelHolder();
    RecordingKernel k;
};

#if defined(__x86_64__) || defined(__i386__)
// The slot of a virtual member in its class's table, read from the member
// pointer (on these targets it holds the slot's byte offset plus one).
template <class F>
std::ptrdiff_t VirtualSlot(F f)
{
    struct {
        std::uintptr_t ptr;
        std::ptrdiff_t adj;
    } rep;
    static_assert(sizeof(rep) == sizeof(f), "member pointer layout");
    std::memcpy(&rep, &f, sizeof(rep));
    return static_cast<std::ptrdiff_t>((rep.ptr - 1) / sizeof(void*));
}
#endif

} // namespace quindle_test

// The fixture of library tests: DLLInit has run with `k`; theGame is null.
class QuindleTest : public quindle_test::KernelHolder, public ::testing::Test {
};

// The statement must end the process with exactly this report.
#define EXPECT_GL_ASSERT(statement, file, expression) \
    EXPECT_DEATH(statement, quindle_test::AssertPattern(file, expression))
#define EXPECT_GL_ASSERT_AT(statement, file, line, expression) \
    EXPECT_DEATH(statement, quindle_test::AssertPattern(file, expression, line))

#endif
