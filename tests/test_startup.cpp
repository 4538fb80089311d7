// Start-up, memory and the assertion reporter.
#include "QuindleTest.h"

#include <csignal>
#include <cstring>
#include <string>

namespace {

// How the reporter's end looks from outside: killed by SIGABRT on Linux; on
// Windows the runtime's SIGABRT ends the process with status 3.
#if defined(_WIN32)
const auto kAborted = ::testing::ExitedWithCode(3);
#else
const auto kAborted = ::testing::KilledBySignal(SIGABRT);
#endif

using StartupTest = QuindleTest;

TEST_F(StartupTest, NullKernelIsReportedAfterTheStoreAndEndsTheProcess)
{
    // The report is exact, names the source relative to the root and ends with
    // the abort message; the test kernel records no further call.
    EXPECT_EXIT(
        {
            k.ClearCalls();
            DLLInit(nullptr);
        },
        kAborted,
        "^Assert Failed!\nAssertion failed in Source/Kdllfix\\.cpp\\(" QUINDLE_ANY_NUMBER "\\): kernel != 0\n"
        "abnormal program termination\n$");
    EXPECT_GL_ASSERT(GLDLLInit(nullptr), "Source/Gldllfix.cpp", "theGame != 0");
}

TEST_F(StartupTest, AllocationChecksItsArgumentsInOrderBeforeAskingTheKernel)
{
    EXPECT_GL_ASSERT(GLAllocMemory(0, nullptr, 0), "Source/Kdllfix.cpp", "size > 0");
    EXPECT_GL_ASSERT(GLAllocMemory(4, nullptr, 0), "Source/Kdllfix.cpp", "file != 0");
    EXPECT_GL_ASSERT(GLAllocMemory(4, "f", 0), "Source/Kdllfix.cpp", "line >= 1");
    EXPECT_GL_ASSERT(
        {
            kernel = nullptr;
            GLAllocMemory(4, "f", 1);
        },
        "Source/Kdllfix.cpp", "kernel != 0");
    EXPECT_GL_ASSERT(
        {
            kernel = nullptr;
            GLFreeMemory(nullptr);
        },
        "Source/Kdllfix.cpp", "kernel != 0");
}

TEST_F(StartupTest, MemoryGoesThroughTheKernelWithFileAndLine)
{
    void* block = GLAllocMemory(24, "Source/Example.cpp", 12);
    ASSERT_NE(block, nullptr);
    ASSERT_EQ(k.Ledger().LiveCount(), 1u);
    EXPECT_EQ(k.Ledger().LiveBlocks()[0].file, "Source/Example.cpp");
    EXPECT_EQ(k.Ledger().LiveBlocks()[0].line, 12);
    EXPECT_EQ(k.Ledger().LiveBlocks()[0].size, 24u);
    GLFreeMemory(block);
    EXPECT_EQ(k.Ledger().LiveCount(), 0u);
    // A null release reaches the kernel and reports nothing.
    GLFreeMemory(nullptr);
}

TEST_F(StartupTest, ReportIsCutToItsBufferAndAHostNoticeSeesExactlyIt)
{
    EXPECT_EXIT(
        {
            GLSetAssertNotice([](const char* text, const char* title) {
                // 255 characters and the terminator: the text never runs past the buffer.
                std::fprintf(stderr, "[%s|%zu|%s]", title, std::strlen(text), std::string(text, 20).c_str());
            });
            GLAssertFailed("Source/Long.cpp", 7, std::string(400, 'x').c_str());
        },
        kAborted, "^\\[Assert Failed!\\|255\\|Assertion failed in \\]");
}

TEST_F(StartupTest, RandomNumbersComeFromTheKernel)
{
    k.ticks = 77;
    GLSeedRandom();
    EXPECT_EQ(k.CallsNamed("SeedRandom"), std::vector<std::string>{"SeedRandom(77)"});
    const std::uint32_t first = GLRandom(0, 1000);
    const std::uint32_t second = GLRandom(0, 1000);
    GLSeedRandom(); // the clock has not moved: the same sequence again
    EXPECT_EQ(GLRandom(0, 1000), first);
    EXPECT_EQ(GLRandom(0, 1000), second);
    EXPECT_EQ(GLRandom(5, 5), 5u);
    k.randomAnswers = {42};
    EXPECT_EQ(GLRandom(9, 3), 42u); // the arguments are passed through unchecked, in order
    EXPECT_EQ(k.Calls().back(), "Random(9,3)");
}

} // namespace
