// The cost of a walkable area: building one, and one shortest-route query.
//
// The room has a boundary of 40 corners (every other one reflex) and 20
// octagonal obstacles, made from a fixed seed (tests/support/WalkRooms.h).
// The kernel is the recording kernel with recording off, so the figures are
// the library's own work and the ledger's bookkeeping of its blocks.
//
// Run:  cmake --preset release && cmake --build --preset release --target bench_walk && build/release/bench/bench_walk
//
// BM_WalkBuild is the time to build the area, all holes added and the graph
// made. BM_WalkQuery runs 10,000 queries between random points of the room
// (points where an actor may stand, and, with the argument 1, any points of
// the screen, which are first moved into the area) and reports the median and
// the 99th percentile of one query, each timed alone, route points made and
// deleted included.
#include "../tests/support/WalkRooms.h"
#include "RecordingKernel.h"
#include "gldll.h"
#include "glwalk.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <random>
#include <vector>

namespace {

const unsigned kSeed = 17;

GLWalkArea* Build(const WalkRoom& room)
{
    GLWalkArea* area = MakeWalkArea(room, 0);
    area->Prepare();
    return area;
}

void BM_WalkBuild(benchmark::State& state)
{
    RecordingKernel k;
    k.recording = false;
    DLLInit(&k);
    const WalkRoom room = MakeWalkRoom(kSeed, 40, 20, 8);
    for (auto _ : state)
        delete Build(room);
    state.counters["holes"] = double(room.polygons.size() - 1);
}
BENCHMARK(BM_WalkBuild)->Unit(benchmark::kMillisecond);

void BM_WalkQuery(benchmark::State& state)
{
    RecordingKernel k;
    k.recording = false;
    DLLInit(&k);
    const WalkRoom room = MakeWalkRoom(kSeed, 40, 20, 8);
    GLWalkArea* area = Build(room);
    std::mt19937 random(kSeed);
    std::vector<GLPoint> ends;
    while (ends.size() < 20000) {
        GLPoint p(int(random() % 640), int(random() % 480));
        if (state.range(0) || area->Contains(p))
            ends.push_back(p);
    }
    std::vector<double> times;
    GLListAsArray<GLPoint> route(16, 16);
    for (auto _ : state) {
        times.clear();
        for (std::size_t q = 0; q < ends.size(); q += 2) {
            const auto start = std::chrono::steady_clock::now();
            benchmark::DoNotOptimize(area->FindPath(ends[q], ends[q + 1], route));
            DeleteWalkPoints(route);
            times.push_back(std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count());
        }
    }
    std::sort(times.begin(), times.end());
    state.counters["median_us"] = times[times.size() / 2];
    state.counters["p99_us"] = times[times.size() * 99 / 100];
    delete area;
}
BENCHMARK(BM_WalkQuery)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace

BENCHMARK_MAIN();
