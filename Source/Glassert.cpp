// Glassert.cpp - the assertion reporter, the end of every failed check.
#include "gldefs.h"
#include "glplatfm.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace {

// The platform's own notice until the host installs one.
GLAssertNotice gNotice = GLPlatformDefaultNotice;

void StandardErrorHostNotice(int kind, const char* file, int line, const char* text)
{
    if (kind == GL_NOTICE_TRACE)
        return;
    const char* what = kind == GL_NOTICE_ERROR ? "error" : "warning";
    if (line > 0)
        std::fprintf(stderr, "%s:%d: %s: %s\n", file, line, what, text);
    else
        std::fprintf(stderr, "%s: %s: %s\n", file, what, text);
}

GLHostNotice gHostNotice = StandardErrorHostNotice;

} // namespace

void GLSetAssertNotice(GLAssertNotice notice)
{
    gNotice = notice ? notice : GLPlatformDefaultNotice;
}

void GLSetHostNotice(GLHostNotice notice)
{
    gHostNotice = notice ? notice : StandardErrorHostNotice;
}

void GLNotify(int kind, const char* file, int line, const char* text)
{
    gHostNotice(kind, file ? file : "", line, text ? text : "");
}

// The library's other notices are shown through the same routine.
GLAssertNotice GLCurrentAssertNotice()
{
    return gNotice;
}

void GLAssertFailed(const char* file, int line, const char* expression)
{
    char buffer[256];
    // snprintf cuts the text to the buffer and always terminates it.
    std::snprintf(buffer, sizeof buffer, "Assertion failed in %s(%d): %s\n", file, line, expression);
    gNotice(buffer, "Assert Failed!");

    // The abnormal end: no destructors, no atexit handlers, no kernel calls.
    std::fputs("abnormal program termination\n", stderr);
    std::fflush(stderr);
    std::raise(SIGABRT);
    std::_Exit(3);
}
