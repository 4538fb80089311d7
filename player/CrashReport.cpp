// CrashReport.cpp - see CrashReport.h.
#include "CrashReport.h"

#include "SoftKernel.h"

#include <cxxabi.h>
#include <execinfo.h>
#include <signal.h>
#include <sys/wait.h>
#include <ucontext.h>
#include <unistd.h>

#ifdef QUINDLE_HAVE_LIBDW
#include <elfutils/libdwfl.h>
#endif

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace {

constexpr int kMaxFrames = 64;
constexpr int kHelperSeconds = 10; // the forked helper's time for the trace and the tape
constexpr int kInterruptSeconds = 2;

struct State {
    CrashHooks hooks;
    char tape[1024] = "";
    volatile sig_atomic_t room = -1;
    volatile sig_atomic_t interrupted = 0;
    volatile sig_atomic_t checkFailed = 0;
    volatile sig_atomic_t ending = 0;
    volatile sig_atomic_t done = 0;
};
State gState;
void* gFrames[kMaxFrames];

// ----- writing with async-signal-safe calls only -----

void Put(int fd, const char* text)
{
    std::size_t n = std::strlen(text);
    while (n > 0) {
        const ssize_t w = ::write(fd, text, n);
        if (w < 0 && errno == EINTR)
            continue;
        if (w <= 0)
            return;
        text += w;
        n -= static_cast<std::size_t>(w);
    }
}

void PutNumber(int fd, unsigned long long value)
{
    char digits[24];
    int at = sizeof digits - 1;
    digits[at] = '\0';
    do {
        digits[--at] = static_cast<char>('0' + value % 10);
        value /= 10;
    } while (value && at > 0);
    Put(fd, digits + at);
}

const char* SignalName(int sig)
{
    switch (sig) {
    case SIGSEGV:
        return "segmentation fault (SIGSEGV)";
    case SIGBUS:
        return "bus error (SIGBUS)";
    case SIGILL:
        return "illegal instruction (SIGILL)";
    case SIGFPE:
        return "floating-point trap (SIGFPE)";
    case SIGABRT:
        return "abort (SIGABRT)";
    case SIGINT:
        return "SIGINT";
    case SIGTERM:
        return "SIGTERM";
    }
    return "a signal";
}

// "at tick T, frame F, room R" (or "no room").
void PutWhere(int fd)
{
    if (SoftKernel* k = gState.hooks.kernel) {
        Put(fd, " at tick ");
        PutNumber(fd, k->TicksSeen());
        Put(fd, ", frame ");
        PutNumber(fd, k->FramesComposed() + 1ull);
    }
    const long room = gState.room;
    if (room >= 0) {
        Put(fd, ", room ");
        PutNumber(fd, static_cast<unsigned long long>(room));
    } else {
        Put(fd, ", no room loaded");
    }
}

// ----- the stack, symbolised in a forked child -----

#ifdef QUINDLE_HAVE_LIBDW
// The file as the source tree names it: builds name sources relative to the
// build directory ("../../Source/Glgame.cpp"), and the report shows them
// relative to the tree they come from.
const char* ShortFile(const char* file)
{
    while (std::strncmp(file, "../", 3) == 0 || std::strncmp(file, "./", 2) == 0)
        file += file[0] == '.' && file[1] == '/' ? 2 : 3;
    return file;
}
#endif

// Writes frames[first..count) symbolised; with `after`, starts past the last
// frame of the function of that name (the library's reporter, say).
void Symbolise(int fd, void* const* frames, int count, int first, const char* after)
{
#ifdef QUINDLE_HAVE_LIBDW
    static char* debuginfoPath = nullptr;
    static const Dwfl_Callbacks callbacks = {dwfl_linux_proc_find_elf, dwfl_standard_find_debuginfo, nullptr,
                                             &debuginfoPath};
    Dwfl* dwfl = dwfl_begin(&callbacks);
    if (dwfl && dwfl_linux_proc_report(dwfl, ::getpid()) == 0 && dwfl_report_end(dwfl, nullptr, nullptr) == 0) {
        for (int i = first; after && i < count; i++) {
            const Dwarf_Addr pc = reinterpret_cast<Dwarf_Addr>(frames[i]) - 1;
            Dwfl_Module* module = dwfl_addrmodule(dwfl, pc);
            const char* name = module ? dwfl_module_addrname(module, pc) : nullptr;
            if (name && std::strstr(name, after))
                first = i + 1;
        }
        for (int i = first; i < count; i++) {
            // A return address points after its call: its line is the call's.
            const Dwarf_Addr pc = reinterpret_cast<Dwarf_Addr>(frames[i]) - (i == first ? 0 : 1);
            Dwfl_Module* module = dwfl_addrmodule(dwfl, pc);
            const char* name = module ? dwfl_module_addrname(module, pc) : nullptr;
            const char* file = nullptr;
            const char* moduleName = module ? dwfl_module_info(module, nullptr, nullptr, nullptr, nullptr, nullptr,
                                                               nullptr, nullptr)
                                            : nullptr;
            int line = 0;
            if (Dwfl_Line* l = module ? dwfl_module_getsrc(module, pc) : nullptr)
                file = dwfl_lineinfo(l, nullptr, &line, nullptr, nullptr, nullptr);
            int status = -1;
            char* readable = name ? abi::__cxa_demangle(name, nullptr, nullptr, &status) : nullptr;
            std::string text = "  #" + std::to_string(i - first) + " ";
            text += status == 0 && readable ? readable : name ? name : "??";
            std::free(readable);
            if (file)
                text += std::string(" at ") + ShortFile(file) + ":" + std::to_string(line);
            if (moduleName) {
                const char* slash = std::strrchr(moduleName, '/');
                text += std::string(" (") + (slash ? slash + 1 : moduleName) + ")";
            }
            text += "\n";
            Put(fd, text.c_str());
        }
        dwfl_end(dwfl);
        return;
    }
    if (dwfl)
        dwfl_end(dwfl);
#endif
    // Without the symboliser: the names the dynamic symbols give.
    (void)after;
    backtrace_symbols_fd(frames + first, count - first, fd);
}

// Runs `work` in a forked child and waits for it at most kHelperSeconds; the
// child's exit status, or -1 when it did not finish in time.
int InHelper(int (*work)(void*), void* data)
{
#if defined(__GLIBC__) && (__GLIBC__ > 2 || (__GLIBC__ == 2 && __GLIBC_MINOR__ >= 34))
    const pid_t child = _Fork();
#else
    const pid_t child = ::fork();
#endif
    if (child == 0)
        _exit(work(data));
    if (child < 0)
        return -1;
    for (int waited = 0; waited < kHelperSeconds * 100; waited++) {
        int status = 0;
        const pid_t got = ::waitpid(child, &status, WNOHANG);
        if (got == child)
            return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        if (got < 0 && errno != EINTR)
            return -1;
        const timespec pause = {0, 10 * 1000 * 1000};
        ::nanosleep(&pause, nullptr);
    }
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    return -1;
}

struct Trace {
    int count;
    int first;
    int signal;
    bool finishTape;
    const char* after;
};

int TraceAndTape(void* data)
{
    const Trace& t = *static_cast<Trace*>(data);
    std::fflush(stdout); // what the game printed before it crashed
    int verdict = 0;
    if (t.finishTape && gState.hooks.finishTape)
        verdict = gState.hooks.finishTape(t.signal, SignalName(t.signal), gState.hooks.data);
    if (t.count > t.first) {
        Put(2, "quindle-player: stack trace:\n");
        Symbolise(2, gFrames, t.count, t.first, nullptr);
    }
    return verdict;
}

// The frame the signal interrupted, among those backtrace() found.
int FirstFrame(int count, void* context)
{
    const ucontext_t* uc = static_cast<const ucontext_t*>(context);
    void* pc = nullptr;
#if defined(__x86_64__)
    pc = reinterpret_cast<void*>(uc->uc_mcontext.gregs[REG_RIP]);
#elif defined(__aarch64__)
    pc = reinterpret_cast<void*>(uc->uc_mcontext.pc);
#else
    (void)uc;
#endif
    for (int i = 0; i < count; i++)
        if (gFrames[i] == pc)
            return i;
    return count > 2 ? 2 : count; // the handler and the kernel's return path
}

// Ends the process after a report: the tape finished, the trace written, the
// tape named. `status` is the exit status unless a replay diverged here.
[[noreturn]] void EndWithReport(int sig, void* context, bool trace, int status)
{
    Trace t{0, 0, sig, true, nullptr};
    if (trace) {
        t.count = backtrace(gFrames, kMaxFrames);
        t.first = FirstFrame(t.count, context);
    }
    const int verdict = InHelper(&TraceAndTape, &t);
    if (verdict < 0)
        Put(2, "quindle-player: the stack trace and the tape could not be finished in time\n");
    if (gState.tape[0]) {
        Put(2, "quindle-player: the run's tape: ");
        Put(2, gState.tape);
        Put(2, " (replay it with --replay)\n");
    }
    _exit(verdict == 4 ? 4 : status);
}

void OnCrash(int sig, siginfo_t*, void* context)
{
    if (sig == SIGABRT && gState.checkFailed) {
        // The library's check has been reported: its abort ends the process
        // as documented (the handler is reset: raised again, it is the default).
        ::raise(sig);
        return;
    }
    if (gState.ending)
        _exit(6);
    gState.ending = 1;
    Put(2, "quindle-player: the game crashed: ");
    Put(2, SignalName(sig));
    PutWhere(2);
    Put(2, "\n");
    EndWithReport(sig, context, true, 6);
}

void OnInterrupt(int sig, siginfo_t*, void* context)
{
    if (gState.done)
        return;
    if (gState.interrupted == 0 && sig != SIGALRM) {
        gState.interrupted = sig;
        ::alarm(kInterruptSeconds);
        return;
    }
    if (gState.ending)
        return;
    gState.ending = 1;
    const int stopped = gState.interrupted ? gState.interrupted : sig;
    Put(2, "quindle-player: stopped by ");
    Put(2, SignalName(stopped));
    PutWhere(2);
    Put(2, ": the game did not come back to the player; it was here:\n");
    EndWithReport(stopped, context, true, 128 + stopped);
}

int StackOnly(void* data)
{
    const Trace& t = *static_cast<Trace*>(data);
    Put(2, "quindle-player: stack trace:\n");
    Symbolise(2, gFrames, t.count, t.first, t.after);
    return 0;
}

} // namespace

void InstallCrashReport(const CrashHooks& hooks)
{
    gState.hooks = hooks;
    std::snprintf(gState.tape, sizeof gState.tape, "%s", hooks.tapePath.c_str());
    // The first backtrace loads the unwinder: in a handler it must not.
    void* warm[2];
    backtrace(warm, 2);

    // Room for the forked helper too, which symbolises on this stack.
    static char alternate[1024 * 1024];
    stack_t stack{};
    stack.ss_sp = alternate;
    stack.ss_size = sizeof alternate;
    ::sigaltstack(&stack, nullptr);

    struct sigaction crash {};
    crash.sa_sigaction = &OnCrash;
    crash.sa_flags = SA_SIGINFO | SA_ONSTACK | SA_RESETHAND;
    sigemptyset(&crash.sa_mask);
    for (int sig : {SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT})
        ::sigaction(sig, &crash, nullptr);

    struct sigaction stop {};
    stop.sa_sigaction = &OnInterrupt;
    stop.sa_flags = SA_SIGINFO | SA_ONSTACK | SA_RESTART;
    sigemptyset(&stop.sa_mask);
    for (int sig : {SIGINT, SIGTERM, SIGALRM})
        ::sigaction(sig, &stop, nullptr);
}

void CrashReportRoom(long room)
{
    gState.room = room;
}

void CrashReportCheckFailed()
{
    gState.checkFailed = 1;
    Put(2, "quindle-player: the check failed");
    PutWhere(2);
    Put(2, "\n");
    WriteStackTrace(2, "GLAssertFailed");
}

int Interrupted()
{
    return gState.interrupted;
}

void CrashReportDone()
{
    gState.done = 1;
    ::alarm(0);
}

void WriteStackTrace(int skip, const char* after)
{
    Trace t{backtrace(gFrames, kMaxFrames), 0, 0, false, after};
    t.first = skip < t.count ? skip : t.count;
    if (InHelper(&StackOnly, &t) < 0)
        Put(2, "quindle-player: the stack trace could not be written in time\n");
}
