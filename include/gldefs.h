// gldefs.h - the few definitions every quindle header stands on: the export
// macro, the two spellings of the boolean constants, the assertion macro and
// the routines through which every block of library memory passes.
#ifndef QUINDLE_GLDEFS_H
#define QUINDLE_GLDEFS_H

#include <cstddef>
#include <cstdint>

// One export macro. The library is built with hidden visibility; only what is
// marked with QUINDLE_API is visible to games and room libraries. On Windows
// the mark is the DLL's export table: exported building quindle.dll, imported
// by whoever links against it.
#if defined(_WIN32)
#if defined(QUINDLE_BUILDING_LIBRARY)
#define QUINDLE_API __declspec(dllexport)
#else
#define QUINDLE_API __declspec(dllimport)
#endif
#elif defined(QUINDLE_BUILDING_LIBRARY)
#define QUINDLE_API __attribute__((visibility("default")))
#else
#define QUINDLE_API
#endif

// Booleans are ints. Both spellings exist because both are in use; they are
// guarded because other libraries (X11 among them) define some of them too.
#ifndef TRUE
#define TRUE 1
#endif
#ifndef FALSE
#define FALSE 0
#endif
#ifndef True
#define True 1
#endif
#ifndef False
#define False 0
#endif

// The assertion reporter. Formats "Assertion failed in %s(%d): %s\n" into a
// 256-byte buffer (cut to fit), shows it as a blocking notice titled
// "Assert Failed!", then ends the process abnormally: it writes
// "abnormal program termination" to the error stream, raises SIGABRT and, if
// that returns, exits with status 3. Nothing is cleaned up. Never returns.
[[noreturn]] __attribute__((cold)) QUINDLE_API void GLAssertFailed(const char* file, int line, const char* expression);

// The notice shown by the reporter before the process ends. The default writes
// the title and the text to the error stream (on Windows it shows them in a
// message box, MessageBoxA); a windowed host installs one that
// shows a dialog and blocks until the user dismisses it. Passing null restores
// the default. The notice must not return control to game code by any other
// path than returning normally.
typedef void (*GLAssertNotice)(const char* text, const char* title);
QUINDLE_API void GLSetAssertNotice(GLAssertNotice notice);

// The host notice: how the library tells its host of a problem that does not
// end the game, naming the file and line it comes from (line 0: the file as a
// whole), or of a step a host may want to follow. The kind is
// GL_NOTICE_ERROR (the game will not work as written), GL_NOTICE_WARNING (a
// surprise the game survives) or GL_NOTICE_TRACE (no problem: a room library
// was loaded or unloaded). The default writes errors and warnings to the
// error stream as "<file>:<line>: warning: <text>" and drops traces; passing
// null restores it. Whatever the notice does, the library goes on exactly as
// it would without it.
enum { GL_NOTICE_ERROR = 1, GL_NOTICE_WARNING = 2, GL_NOTICE_TRACE = 3 };
typedef void (*GLHostNotice)(int kind, const char* file, int line, const char* text);
QUINDLE_API void GLSetHostNotice(GLHostNotice notice);
// Hands a notice to the host notice installed now.
QUINDLE_API void GLNotify(int kind, const char* file, int line, const char* text);

// Checks a condition in every build. The condition's text is what the report
// prints, so each check is written exactly as it is documented, to the space.
// The condition is expected to hold, and the reporter is cold, so optimised
// code keeps the failure path out of the way of the work.
#define GL_ASSERT(expr) (__builtin_expect(!!(expr), 1) ? (void)0 : GLAssertFailed(__FILE__, __LINE__, #expr))

// The library's allocation and release routines. Every block the library uses
// comes from the kernel's AllocMemory with the size, file and line of the
// allocating expression, and goes back through FreeMemory. Allocation checks,
// in order, "size > 0", "file != 0", "line >= 1" and "kernel != 0", and returns
// the kernel's pointer untested (callers assert on it). Release checks
// "kernel != 0" and passes even a null pointer on to the kernel.
QUINDLE_API void* GLAllocMemory(std::uint32_t size, const char* file, int line);
QUINDLE_API void GLFreeMemory(void* pointer);

// Class-scope allocation for the library's class hierarchies: objects are
// allocated and released through the kernel whoever writes the new or the
// delete, without replacing the process's global operators. Library code writes
// GL_NEW so that the block carries its own file and line; a plain new from game
// code is recorded under the name of the class's header. The allocation
// functions are noexcept so that a null block from the kernel skips the
// constructor and reaches the caller's own check of the pointer.
#define GL_DECLARE_ALLOCATION(header)                                                     \
    static void* operator new(std::size_t size) noexcept                                 \
    {                                                                                     \
        return GLAllocMemory(static_cast<std::uint32_t>(size), header, 1);               \
    }                                                                                     \
    static void* operator new(std::size_t size, const char* file, int line) noexcept     \
    {                                                                                     \
        return GLAllocMemory(static_cast<std::uint32_t>(size), file, line);              \
    }                                                                                     \
    static void operator delete(void* pointer) { GLFreeMemory(pointer); }                 \
    static void operator delete(void* pointer, const char*, int) { GLFreeMemory(pointer); }

#define GL_NEW new (__FILE__, __LINE__)

// Raw blocks (pointer arrays, kernel points, event records) use these.
#define GL_ALLOC(size) GLAllocMemory(static_cast<std::uint32_t>(size), __FILE__, __LINE__)
#define GL_FREE(pointer) GLFreeMemory(pointer)

#endif
