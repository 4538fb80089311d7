// Glrandom.cpp - random numbers, which come from the kernel's generator.
#include "gldll.h"

void GLSeedRandom()
{
    kernel->SeedRandom(kernel->GetTicks());
}

std::uint32_t GLRandom(std::uint32_t uLow, std::uint32_t uHigh)
{
    return kernel->Random(uLow, uHigh);
}
