// QuindleTest.cpp - see QuindleTest.h.
#include "QuindleTest.h"

#include <cstdio>

namespace quindle_test {

namespace {

std::string EscapeForRegex(const std::string& text)
{
    std::string escaped;
    for (char c : text) {
        if (std::string("\\.^$|()[]{}*+?").find(c) != std::string::npos)
            escaped += '\\';
        escaped += c;
    }
    return escaped;
}

} // namespace

std::string AssertPattern(const std::string& file, const std::string& expression, int line)
{
    const std::string where = line < 0 ? kAnyNumber : std::to_string(line);
    return "Assert Failed!\nAssertion failed in " + EscapeForRegex(file) + "\\(" + where +
           "\\): " + EscapeForRegex(expression) + "\n";
}

KernelHolder::KernelHolder()
{
#if defined(_WIN32)
    // Windows shows a failed check in a message box, which would wait for a
    // click: the tests read the report from the error stream, as on Linux.
    GLSetAssertNotice([](const char* text, const char* title) {
        std::fprintf(stderr, "%s\n%s", title, text);
        std::fflush(stderr);
    });
#endif
    DLLInit(&k);
    theGame = nullptr;
}

KernelHolder::~KernelHolder()
{
    if (k.Ledger().LiveCount() != 0) {
        std::string blocks;
        for (const auto& block : k.Ledger().LiveBlocks())
            blocks += "  " + std::to_string(block.size) + " bytes from " + block.file + "(" +
                      std::to_string(block.line) + ")\n";
        ADD_FAILURE() << "the library left " << k.Ledger().LiveCount() << " block(s) allocated:\n" << blocks;
    }
    theGame = nullptr;
}

} // namespace quindle_test
