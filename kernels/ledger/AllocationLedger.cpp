// AllocationLedger.cpp - see AllocationLedger.h.
#include "AllocationLedger.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

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

std::size_t AllocationLedger::ReportLeaks(std::FILE* stream) const
{
    const auto blocks = LiveBlocks();
    for (const auto& block : blocks)
        std::fprintf(stream, "leaked %u bytes from %s(%d)\n", block.size, block.file.c_str(), block.line);
    return blocks.size();
}
