// FolderFile.cpp - see FolderFile.h.
#include "FolderFile.h"

#include <elf.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace {

void Refuse(FolderFileError* error, int missing, const char* format, ...)
{
    error->missing = missing;
    std::va_list args;
    va_start(args, format);
    std::vsnprintf(error->text, sizeof error->text, format, args);
    va_end(args);
}

// The machine this program was built for, as an ELF header names it; 0 where
// this file does not know it (then any machine is let through to the loader).
constexpr unsigned kThisMachine =
#if defined(__x86_64__)
    EM_X86_64;
#elif defined(__i386__)
    EM_386;
#elif defined(__aarch64__)
    EM_AARCH64;
#elif defined(__arm__)
    EM_ARM;
#elif defined(__riscv)
    EM_RISCV;
#else
    0;
#endif

} // namespace

int FolderFileOpen(const char* path, FolderFileKind kind, std::uint64_t* size, FolderFileError* error)
{
    error->missing = 0;
    error->text[0] = '\0';
    // Non-blocking, so that opening a FIFO does not wait for a writer.
    const int fd = ::open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (fd < 0) {
        const int e = errno;
        if (e == ENOENT || e == ENOTDIR)
            Refuse(error, 1, "%s: no such file", path);
        else
            Refuse(error, 0, "%s: cannot be read (%s)", path, std::strerror(e));
        return -1;
    }
    struct stat st;
    const std::uint64_t limit = kFolderFileMaxBytes[kind];
    if (::fstat(fd, &st) != 0)
        Refuse(error, 0, "%s: cannot be read (%s)", path, std::strerror(errno));
    else if (S_ISDIR(st.st_mode))
        Refuse(error, 0, "%s: is a directory, not a file", path);
    else if (!S_ISREG(st.st_mode))
        Refuse(error, 0, "%s: is a FIFO, socket or device, not a file", path);
    else if (static_cast<std::uint64_t>(st.st_size) > limit)
        Refuse(error, 0, "%s: %llu bytes, more than the %llu MiB a file may have", path,
               static_cast<unsigned long long>(st.st_size), static_cast<unsigned long long>(limit >> 20));
    else {
        // A regular file never blocks; the reader gets an ordinary descriptor.
        ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) & ~O_NONBLOCK);
        *size = static_cast<std::uint64_t>(st.st_size);
        return fd;
    }
    ::close(fd);
    return -1;
}

bool FolderFileRead(const std::string& path, FolderFileKind kind, std::string* bytes, std::string* error, bool* missing)
{
    FolderFileError refusal;
    std::uint64_t size = 0;
    bytes->clear();
    if (missing)
        *missing = false;
    const int fd = FolderFileOpen(path.c_str(), kind, &size, &refusal);
    if (fd < 0) {
        if (error)
            *error = refusal.text;
        if (missing)
            *missing = refusal.missing != 0;
        return false;
    }
    bytes->resize(static_cast<std::size_t>(size));
    std::size_t got = 0;
    bool ok = true;
    while (got < bytes->size()) {
        const ssize_t n = ::read(fd, &(*bytes)[got], bytes->size() - got);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0) {
            // A read error, or the file shrank while it was read.
            ok = false;
            if (error)
                *error = path + ": cannot be read (" + (n < 0 ? std::strerror(errno) : "it ended early") + ")";
            break;
        }
        got += static_cast<std::size_t>(n);
    }
    ::close(fd);
    if (!ok)
        bytes->clear();
    return ok;
}

bool FolderFileIsLibrary(const char* path, FolderFileError* error)
{
    std::uint64_t size = 0;
    const int fd = FolderFileOpen(path, kFolderLibrary, &size, error);
    if (fd < 0)
        return false;
    unsigned char header[EI_NIDENT + 4] = {};
    ssize_t got;
    do
        got = ::read(fd, header, sizeof header);
    while (got < 0 && errno == EINTR);
    ::close(fd);
    const bool wide = sizeof(void*) == 8;
    const bool little = __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__;
    const unsigned type =
        little ? header[EI_NIDENT] | header[EI_NIDENT + 1] << 8 : header[EI_NIDENT] << 8 | header[EI_NIDENT + 1];
    const unsigned machine = little ? header[EI_NIDENT + 2] | header[EI_NIDENT + 3] << 8
                                    : header[EI_NIDENT + 2] << 8 | header[EI_NIDENT + 3];
    if (got != static_cast<ssize_t>(sizeof header) || std::memcmp(header, ELFMAG, SELFMAG) != 0)
        Refuse(error, 0, "%s: not a shared library (%s)", path,
               got < 0     ? std::strerror(errno)
               : size == 0 ? "an empty file"
                           : "no ELF header");
    else if (header[EI_CLASS] != (wide ? ELFCLASS64 : ELFCLASS32) ||
             header[EI_DATA] != (little ? ELFDATA2LSB : ELFDATA2MSB) || (kThisMachine && machine != kThisMachine))
        Refuse(error, 0, "%s: not a library for this machine (made for ELF machine %u, %d-bit)", path, machine,
               header[EI_CLASS] == ELFCLASS64 ? 64 : 32);
    else if (type != ET_DYN)
        Refuse(error, 0, "%s: not a shared library (ELF type %u)", path, type);
    else
        return true;
    return false;
}
