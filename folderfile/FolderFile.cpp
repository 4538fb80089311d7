// FolderFile.cpp - see FolderFile.h.
#include "FolderFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#ifdef _WIN32
#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <io.h>
#include <windows.h>
#else
#include <elf.h>
#endif

namespace {

void Refuse(FolderFileError* error, int missing, const char* format, ...)
{
    error->missing = missing;
    std::va_list args;
    va_start(args, format);
    std::vsnprintf(error->text, sizeof error->text, format, args);
    va_end(args);
}

#ifndef _WIN32
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

#endif

} // namespace

#ifndef _WIN32

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

#else

void FolderFileSystemWords(unsigned long uError, char* pBuffer, std::size_t uSize)
{
    const DWORD uLength =
        ::FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, 0, static_cast<DWORD>(uError),
                         MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT), pBuffer, static_cast<DWORD>(uSize), 0);
    std::size_t n = uLength;
    while (n > 0 && (pBuffer[n - 1] == '\r' || pBuffer[n - 1] == '\n' || pBuffer[n - 1] == ' ' || pBuffer[n - 1] == '.'))
        n--;
    if (n == 0)
        std::snprintf(pBuffer, uSize, "error %lu", static_cast<unsigned long>(uError));
    else
        pBuffer[n] = '\0';
}


int FolderFileOpen(const char* path, FolderFileKind kind, std::uint64_t* size, FolderFileError* error)
{
    error->missing = 0;
    error->text[0] = '\0';
    char words[256];
    // Backup semantics let a directory be opened, so that it is named as one.
    // Opening never waits: a pipe without a free instance fails at once.
    HANDLE file = ::CreateFileA(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        const DWORD e = ::GetLastError();
        if (e == ERROR_FILE_NOT_FOUND || e == ERROR_PATH_NOT_FOUND || e == ERROR_INVALID_NAME ||
            e == ERROR_BAD_NETPATH) {
            Refuse(error, 1, "%s: no such file", path);
        } else {
            FolderFileSystemWords(e, words, sizeof words);
            Refuse(error, 0, "%s: cannot be read (%s)", path, words);
        }
        return -1;
    }
    const std::uint64_t limit = kFolderFileMaxBytes[kind];
    BY_HANDLE_FILE_INFORMATION info;
    if (::GetFileType(file) != FILE_TYPE_DISK) {
        Refuse(error, 0, "%s: is a FIFO, socket or device, not a file", path);
    } else if (!::GetFileInformationByHandle(file, &info)) {
        FolderFileSystemWords(::GetLastError(), words, sizeof words);
        Refuse(error, 0, "%s: cannot be read (%s)", path, words);
    } else if (info.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
        Refuse(error, 0, "%s: is a directory, not a file", path);
    } else if (info.dwFileAttributes & FILE_ATTRIBUTE_DEVICE) {
        Refuse(error, 0, "%s: is a FIFO, socket or device, not a file", path);
    } else {
        const std::uint64_t bytes = (static_cast<std::uint64_t>(info.nFileSizeHigh) << 32) | info.nFileSizeLow;
        if (bytes > limit) {
            Refuse(error, 0, "%s: %llu bytes, more than the %llu MiB a file may have", path,
                   static_cast<unsigned long long>(bytes), static_cast<unsigned long long>(limit >> 20));
        } else {
            // The runtime's descriptor owns the handle from here; bytes are
            // read as they are, never as text with its line ends changed.
            const int fd = ::_open_osfhandle(reinterpret_cast<std::intptr_t>(file), _O_RDONLY | _O_BINARY);
            if (fd >= 0) {
                *size = bytes;
                return fd;
            }
            Refuse(error, 0, "%s: cannot be read (%s)", path, std::strerror(errno));
        }
    }
    ::CloseHandle(file);
    return -1;
}

bool FolderFileIsLibrary(const char* path, FolderFileError* error)
{
    std::uint64_t size = 0;
    const int fd = FolderFileOpen(path, kFolderLibrary, &size, error);
    if (fd < 0)
        return false;
    // The old header's "MZ" and, at the offset it gives, "PE\0\0" followed by
    // the file header (machine, ..., characteristics) and the optional
    // header's magic number.
    unsigned char stub[64] = {};
    unsigned char pe[26] = {};
    int got = ::_read(fd, stub, sizeof stub);
    int gotPe = 0;
    if (got == static_cast<int>(sizeof stub) && stub[0] == 'M' && stub[1] == 'Z') {
        const long offset = static_cast<long>(stub[60] | stub[61] << 8 | stub[62] << 16 | (stub[63] & 0x7f) << 24);
        if (::_lseek(fd, offset, SEEK_SET) == offset)
            gotPe = ::_read(fd, pe, sizeof pe);
    }
    ::_close(fd);
    const unsigned machine = pe[4] | pe[5] << 8;
    const unsigned characteristics = pe[22] | pe[23] << 8;
    const unsigned magic = pe[24] | pe[25] << 8;
    const unsigned thisMachine = sizeof(void*) == 8 ? IMAGE_FILE_MACHINE_AMD64 : IMAGE_FILE_MACHINE_I386;
    const unsigned thisMagic = sizeof(void*) == 8 ? IMAGE_NT_OPTIONAL_HDR64_MAGIC : IMAGE_NT_OPTIONAL_HDR32_MAGIC;
    if (gotPe != static_cast<int>(sizeof pe) || std::memcmp(pe, "PE\0\0", 4) != 0)
        Refuse(error, 0, "%s: not a shared library (%s)", path,
               got < 0     ? std::strerror(errno)
               : size == 0 ? "an empty file"
                           : "no PE header");
    else if (machine != thisMachine || magic != thisMagic)
        Refuse(error, 0, "%s: not a library for this machine (made for PE machine 0x%x, %d-bit)", path, machine,
               magic == IMAGE_NT_OPTIONAL_HDR64_MAGIC ? 64 : 32);
    else if (!(characteristics & IMAGE_FILE_DLL))
        Refuse(error, 0, "%s: not a shared library (not a DLL)", path);
    else
        return true;
    return false;
}
#endif

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
