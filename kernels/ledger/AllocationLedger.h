// AllocationLedger.h - the memory ledger both kernels keep: every live block
// with the size, file and line of the allocation that made it, so that a leak
// is reported by name and a release of a block the kernel never gave out is
// caught at the release.
#ifndef QUINDLE_ALLOCATION_LEDGER_H
#define QUINDLE_ALLOCATION_LEDGER_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <unordered_map>
#include <vector>

class AllocationLedger {
public:
    struct Block {
        const void* address;
        std::uint32_t size;
        std::string file;
        int line;
        std::uint64_t serial; // allocation order, for a stable report
    };

    AllocationLedger() = default;
    ~AllocationLedger();
    AllocationLedger(const AllocationLedger&) = delete;
    AllocationLedger& operator=(const AllocationLedger&) = delete;

    // A fresh zero-filled block, recorded under its file and line.
    void* Allocate(std::uint32_t size, const char* file, int line);
    // Null is accepted and ignored. A pointer the ledger did not give out (or
    // gave out and took back already) ends the process with a report on the
    // error stream: that is a library fault, never something to paper over.
    void Release(void* block);

    std::size_t LiveCount() const { return mLive.size(); }
    std::uint64_t LiveBytes() const;
    std::uint64_t TotalAllocations() const { return mSerial; }
    // The live blocks in allocation order.
    std::vector<Block> LiveBlocks() const;
    // Writes one line per live block ("leaked 24 bytes from Source/Glcast.cpp(37)")
    // and returns how many there were.
    std::size_t ReportLeaks(std::FILE* stream) const;
    // Where a block came from: "from <file>(<line>)"; for an object made by a
    // plain new, which the library records at line 1 of its class's header,
    // the object's class when its type information can be read ("by a plain
    // new of Pip (write GL_NEW for the file and line)"), or else the header.
    static std::string Describe(const Block& block);
    // True when the block is live in this ledger.
    bool Owns(const void* block) const { return mLive.count(block) != 0; }

private:
    std::unordered_map<const void*, Block> mLive;
    std::uint64_t mSerial = 0;
};

#endif
