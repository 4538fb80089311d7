// The readers of a game folder, on inputs growing tenfold: each should grow
// tenfold too (or less), never a hundredfold.
//
//   BM_Messages/N       messages.txt of N messages, read and checked
//   BM_ViewManifest/N   a view manifest of N cels
//   BM_TextWidth/N      the width of one line of N characters
//   BM_DrawText/N       N characters wrapped into a 300-pixel balloon
//
// Run:  cmake --build --preset release --target bench_readers && build/release/bench/soft/bench_readers
#include "SoftKernel.h"
#include "SoftResources.h"

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

namespace {

void BM_Messages(benchmark::State& state)
{
    std::string text;
    for (int i = 0; i < state.range(0); i++)
        text += std::to_string(i % 97) + " " + std::to_string(i) + " 0 0 1 1 \"Where did I put that key?\"\n";
    std::vector<SoftMessage> messages;
    std::string error;
    for (auto _ : state)
        benchmark::DoNotOptimize(SoftParseMessages(text, "messages.txt", &messages, &error));
    state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_Messages)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond)->Complexity();

void BM_ViewManifest(benchmark::State& state)
{
    std::string text;
    for (int i = 0; i < state.range(0); i++)
        text += "cel " + std::to_string(i / 40) + " " + std::to_string(i % 40) + " walk.png 16 47\n";
    std::vector<SoftCelEntry> cels;
    std::string error;
    for (auto _ : state)
        benchmark::DoNotOptimize(SoftParseViewManifest(text, "views/1.txt", &cels, &error));
    state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_ViewManifest)->RangeMultiplier(10)->Range(40, 4000)->Unit(benchmark::kMillisecond)->Complexity();

std::string Words(std::int64_t length)
{
    std::string text;
    while (static_cast<std::int64_t>(text.size()) < length)
        text += "lorem ipsum dolor ";
    text.resize(static_cast<std::size_t>(length));
    return text;
}

void BM_TextWidth(benchmark::State& state)
{
    SoftKernel k;
    const std::string text = Words(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(k.TextWidth(text.c_str(), 14));
    state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_TextWidth)->RangeMultiplier(10)->Range(1000, 1000000)->Unit(benchmark::kMillisecond)->Complexity();

void BM_DrawText(benchmark::State& state)
{
    SoftKernel k;
    const std::uint16_t bitmap = k.CreateMemBitmap(320, 200, 0, 0);
    const std::string text = Words(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(k.DrawText(bitmap, 4, 4, text.c_str(), 1, 14, 300));
    k.FreeMemBitmap(bitmap);
    state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_DrawText)->RangeMultiplier(10)->Range(1000, 1000000)->Unit(benchmark::kMillisecond)->Complexity();

} // namespace

BENCHMARK_MAIN();
