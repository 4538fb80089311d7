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
#include <cstdio>
#include <random>
#include <string>
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

// The walkable area of a file (the reader's work) whose holes are squares of
// side 4 in rows 12 pixels apart, and the first walk across it from one
// corner to the other (the graph is made, then one route). The holes grow
// tenfold; the largest is near the most corners an area file may have.
void BM_WalkGrid(benchmark::State& state)
{
    RecordingKernel k;
    k.recording = false;
    DLLInit(&k);
    const int holes = static_cast<int>(state.range(0));
    int side = 1;
    while (side * side < holes)
        side++;
    const int size = side * 12 + 12;
    const std::string file = "bench_walk_grid.txt";
    if (std::FILE* out = std::fopen(file.c_str(), "w")) {
        std::fprintf(out, "clearance 1\nboundary 0 0  %d 0  %d %d  0 %d\n", size, size, size, size);
        for (int h = 0; h < holes; h++) {
            const int x = 10 + h % side * 12, y = 10 + h / side * 12;
            std::fprintf(out, "hole %d %d  %d %d  %d %d  %d %d\n", x, y, x + 4, y, x + 4, y + 4, x, y + 4);
        }
        std::fclose(out);
    }
    GLListAsArray<GLPoint> route(16, 16);
    for (auto _ : state) {
        GLWalkArea* area = GLWalkArea::Load(file.c_str());
        if (!area) {
            state.SkipWithError("the area was refused");
            break;
        }
        benchmark::DoNotOptimize(area->FindPath(GLPoint(3, 3), GLPoint(size - 3, size - 3), route));
        DeleteWalkPoints(route);
        delete area;
    }
    std::remove(file.c_str());
    state.counters["corners"] = 4.0 * holes + 4;
}
// One route across the largest grid an area file may hold (127 holes, 512
// corners), the graph made.
void BM_WalkGridRoute(benchmark::State& state)
{
    RecordingKernel k;
    k.recording = false;
    DLLInit(&k);
    const int side = 12, size = side * 12 + 12;
    GLListAsArray<GLPoint> boundary(4, 4), route(16, 16);
    WalkPoints({{0, 0}, {size, 0}, {size, size}, {0, size}}, boundary);
    GLWalkArea area(boundary, 1);
    DeleteWalkPoints(boundary);
    for (int h = 0; h < GLWalkArea::kMaxLoadedHoles - 1; h++) {
        const int x = 10 + h % side * 12, y = 10 + h / side * 12;
        GLListAsArray<GLPoint> hole(4, 4);
        WalkPoints({{x, y}, {x + 4, y}, {x + 4, y + 4}, {x, y + 4}}, hole);
        area.AddHole(hole);
        DeleteWalkPoints(hole);
    }
    area.Prepare();
    for (auto _ : state) {
        benchmark::DoNotOptimize(area.FindPath(GLPoint(3, 3), GLPoint(size - 3, size - 3), route));
        DeleteWalkPoints(route);
    }
}
BENCHMARK(BM_WalkGridRoute)->Unit(benchmark::kMillisecond);

BENCHMARK(BM_WalkGrid)->Arg(1)->Arg(10)->Arg(100)->Arg(GLWalkArea::kMaxLoadedHoles - 1)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
