// AllocationLedger.cpp - see AllocationLedger.h.
#include "AllocationLedger.h"

#include <cxxabi.h>
#if defined(_WIN32)
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#else
#include <dlfcn.h>
#ifndef __EMSCRIPTEN__
#include <sys/uio.h>
#endif
#include <unistd.h>
#endif

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <typeinfo>

AllocationLedger::~AllocationLedger()
{
    // Blocks still live when the kernel goes are reported by their owner (the
    // test fixture or the player); the memory itself is given back here so
    // that the host process stays clean under leak checkers.
    for (auto& entry : mLive)
        std::free(const_cast<void*>(entry.first));
}

void* AllocationLedger::Allocate(std::uint32_t size, const char* file, int line)
{
    void* block = std::calloc(1, size == 0 ? 1 : size);
    if (!block)
        return nullptr;
    mLive.emplace(block, Block{block, size, file ? file : "(null)", line, ++mSerial});
    return block;
}

void AllocationLedger::Release(void* block)
{
    if (!block)
        return;
    auto found = mLive.find(block);
    if (found == mLive.end()) {
        std::fprintf(stderr, "AllocationLedger: release of %p, which is not a live block of this kernel\n", block);
        std::abort();
    }
    mLive.erase(found);
    std::free(block);
}

std::uint64_t AllocationLedger::LiveBytes() const
{
    std::uint64_t total = 0;
    for (const auto& entry : mLive)
        total += entry.second.size;
    return total;
}

std::vector<AllocationLedger::Block> AllocationLedger::LiveBlocks() const
{
    std::vector<Block> blocks;
    blocks.reserve(mLive.size());
    for (const auto& entry : mLive)
        blocks.push_back(entry.second);
    std::sort(blocks.begin(), blocks.end(), [](const Block& a, const Block& b) { return a.serial < b.serial; });
    return blocks;
}

namespace {

// Copies n bytes from an address that may not be readable; false when it is
// not (the system reports the fault instead of raising a signal).
bool ReadMemory(const void* address, void* out, std::size_t n)
{
#if defined(_WIN32)
    SIZE_T read = 0;
    return ::ReadProcessMemory(::GetCurrentProcess(), address, out, n, &read) && read == n;
#elif defined(__EMSCRIPTEN__)
    // One linear memory, readable wherever it reaches; nothing past its end.
    const std::uintptr_t at = reinterpret_cast<std::uintptr_t>(address);
    const std::uintptr_t end = __builtin_wasm_memory_size(0) * 65536u;
    if (at == 0 || at > end || n > end - at)
        return false;
    std::memcpy(out, address, n);
    return true;
#else
    iovec local{out, n};
    iovec remote{const_cast<void*>(address), n};
    return ::process_vm_readv(::getpid(), &local, 1, &remote, 1, 0) == static_cast<ssize_t>(n);
#endif
}

#if defined(_WIN32)
// The runtime's three classes of type information, known by the table of a
// type_info of each: a class without bases, with one, and with several. The
// runtime has no symbol lookup here to name a table by.
struct NoBase {
    virtual ~NoBase() = default;
};
struct OneBase : NoBase {};
struct OtherBase {
    virtual ~OtherBase() = default;
};
struct TwoBases : NoBase, OtherBase {};

const void* TableOf(const std::type_info& info)
{
    return *reinterpret_cast<const void* const*>(&info);
}

bool IsClassTypeInfo(const void* typeInfoVtable)
{
    return typeInfoVtable == TableOf(typeid(NoBase)) || typeInfoVtable == TableOf(typeid(OneBase)) ||
           typeInfoVtable == TableOf(typeid(TwoBases));
}
#else
bool IsClassTypeInfo(const void* typeInfoVtable)
{
    Dl_info info;
    return ::dladdr(typeInfoVtable, &info) && info.dli_sname && std::strstr(info.dli_sname, "__cxxabiv1") &&
           std::strstr(info.dli_sname, "class_type_info");
}
#endif

// The class of the object in a block, read from its type information when
// its first word leads to some: the vtable's slot before the first holds the
// type_info, whose own vtable is one of the runtime's type_info classes.
// Empty when the block holds no polymorphic object.
std::string ClassOf(const void* block, std::uint32_t size)
{
    const void* vtable = nullptr;
    const void* typeInfo = nullptr;
    const void* typeInfoVtable = nullptr;
    if (size < sizeof(void*) || !ReadMemory(block, &vtable, sizeof vtable) || !vtable ||
        !ReadMemory(static_cast<const void* const*>(vtable) - 1, &typeInfo, sizeof typeInfo) || !typeInfo ||
        !ReadMemory(typeInfo, &typeInfoVtable, sizeof typeInfoVtable))
        return "";
    if (!IsClassTypeInfo(typeInfoVtable))
        return "";
    const char* mangled = static_cast<const std::type_info*>(typeInfo)->name();
    int status = 0;
    char* plain = abi::__cxa_demangle(mangled, nullptr, nullptr, &status);
    std::string name = status == 0 && plain ? plain : mangled;
    std::free(plain);
    return name;
}

// The library's class-scope allocation records a plain new, which has no file
// and line of its own, at line 1 of the class's header.
bool FromPlainNew(const AllocationLedger::Block& block)
{
    return block.line == 1 && block.file.compare(0, 8, "include/") == 0 && block.file.size() > 10 &&
           block.file.compare(block.file.size() - 2, 2, ".h") == 0;
}

} // namespace

std::string AllocationLedger::Describe(const Block& block)
{
    if (!FromPlainNew(block))
        return "from " + block.file + "(" + std::to_string(block.line) + ")";
    const std::string name = ClassOf(block.address, block.size);
    if (!name.empty())
        return "by a plain new of " + name + " (write GL_NEW for the file and line)";
    return "by game code with a plain new of a class declared in " + block.file +
           " (write GL_NEW for the file and line)";
}

std::size_t AllocationLedger::ReportLeaks(std::FILE* stream) const
{
    const auto blocks = LiveBlocks();
    for (const auto& block : blocks)
        std::fprintf(stream, "leaked %u bytes %s\n", block.size, Describe(block).c_str());
    return blocks.size();
}
