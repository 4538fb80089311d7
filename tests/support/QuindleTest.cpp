// QuindleTest.cpp - see QuindleTest.h.
#include "QuindleTest.h"

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
    const std::string where = line < 0 ? "[0-9]+" : std::to_string(line);
    return "Assert Failed!\nAssertion failed in " + EscapeForRegex(file) + "\\(" + where +
           "\\): " + EscapeForRegex(expression) + "\n";
}

KernelHolder::KernelHolder()
{
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
