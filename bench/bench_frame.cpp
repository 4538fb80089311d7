// The cost of one frame of the main loop, per cel, beside the floor: the same
// kernel calls made by a plain loop with no library around them.
//
// N cels stand on one plane; each has its own cycler and its own mover, and
// both step on every frame. The kernel answers in next to no time, so what is
// measured is the library's own work.
//
// Run:  cmake --preset release && cmake --build --preset release && build/release/bench/bench_frame
#include "RecordingKernel.h"
#include "glcel.h"
#include "glcycler.h"
#include "gldll.h"
#include "glgame.h"
#include "glmover.h"
#include "glplane.h"
#include "glplanes.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace {

// The recording kernel with recording off and the per-frame operations
// answered at once; planes, screen items and memory are the recording
// kernel's own.
class QuietKernel : public RecordingKernel {
public:
    QuietKernel() { recording = false; }
    int GetNowSeenRect(std::int32_t, std::int32_t, ZOR_Rect* pRect) override
    {
        calls++;
        *pRect = ZOR_Rect(0, 0, 31, 47);
        return 1;
    }
    int NumCels(std::uint32_t, int) override
    {
        calls++;
        return 8;
    }
    void UpdateScreenItem(KernelScreenItemRecord*) override { calls++; }
    std::uint32_t GetTicks() override
    {
        calls++;
        return ticks;
    }
    void UpdateScreen(int) override
    {
        calls++;
        ticks++;
    }
    void GetEvent(std::uint32_t, KernelEventRecord* pRecord) override
    {
        calls++;
        *pRecord = KernelEventRecord();
        pRecord->where = ZOR_Point(0, 0);
    }
    unsigned long long calls = 0;
};

// Counts the calls a frame makes, by operation, with a recording kernel.
std::map<std::string, int> CallsOfOneFrame(int n);

struct Scene {
    explicit Scene(QuietKernel& k, int n)
    {
        DLLInit(&k);
        game = new GLGame();
        GLDLLInit(game);
        plane = new GLColoredPlane(ZOR_Rect(0, 0, 639, 479), 0, 1, 0, ZOR_Point(0, 0));
        game->mpPlaneManager->Add(plane);
        for (int i = 0; i < n; i++) {
            GLCel* cel = new GLCel(plane, 10, 0, 0, GLPoint(i % 600, i % 400), 1, ScaleInfo{128, 128, 100, 0});
            cel->SetCycleSpeed(0);
            cel->SetMoveSpeed(0);
            cel->SetStepSize(GLPoint(1, 1));
            cel->Show();
            cels.push_back(cel);
            cyclers.push_back(new GLCycler(cel));
            movers.push_back(new GLMover(cel, GLPoint(1 << 22, i % 400)));
        }
    }
    ~Scene()
    {
        for (GLMover* mover : movers)
            delete mover;
        for (GLCycler* cycler : cyclers)
            delete cycler;
        for (GLCel* cel : cels)
            delete cel;
        game->mpPlaneManager->Remove(plane);
        delete plane;
        delete game;
    }
    GLGame* game;
    AbsGLPlane* plane;
    std::vector<GLCel*> cels;
    std::vector<GLCycler*> cyclers;
    std::vector<GLMover*> movers;
};

void BM_LibraryFrame(benchmark::State& state)
{
    const int n = static_cast<int>(state.range(0));
    QuietKernel k;
    Scene scene(k, n);
    scene.game->DoIt(); // every object is due from the second frame on
    for (auto _ : state)
        scene.game->DoIt();
    state.counters["ns_per_cel"] =
        benchmark::Counter(static_cast<double>(n), benchmark::Counter::kIsIterationInvariantRate |
                                                       benchmark::Counter::kInvert);
}

// The floor: for each cel the kernel calls one frame of the library makes
// (checked against a recorded frame before the measurement), in a plain loop.
void BM_FloorFrame(benchmark::State& state)
{
    const int n = static_cast<int>(state.range(0));
    const std::map<std::string, int> expected = CallsOfOneFrame(2);
    const std::map<std::string, int> perFrame = {{"GetTicks", 1}, {"UpdateScreen", 1}, {"GetEvent", 1}};
    const std::map<std::string, int> perCel = {{"NumCels", 1}, {"UpdateScreenItem", 2}, {"GetNowSeenRect", 2}};
    for (const auto& call : expected) {
        const int floor = (perFrame.count(call.first) ? perFrame.at(call.first) : 0) +
                          2 * (perCel.count(call.first) ? perCel.at(call.first) : 0);
        if (floor != call.second) {
            std::fprintf(stderr, "floor and library differ on %s: %d against %d\n", call.first.c_str(), floor,
                         call.second);
            std::abort();
        }
    }
    QuietKernel k;
    KernelServices* kernelServices = &k;
    // The library calls the kernel through a pointer it cannot see through;
    // so does the floor, or the compiler would inline the calls away.
    benchmark::DoNotOptimize(kernelServices);
    std::vector<KernelScreenItemRecord*> records;
    for (int i = 0; i < n; i++) {
        KernelScreenItemSource source{0, 10, 0, 0, 0, {0, 0}};
        records.push_back(kernelServices->NewScreenItem(20000, &source, ZOR_Point(i, i), ScaleInfo{128, 128, 100, 0}));
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(kernelServices->GetTicks());
        for (KernelScreenItemRecord* record : records) {
            const int cels = kernelServices->NumCels(10, 0);
            record->source.cel = (record->source.cel + 1) % cels;
            kernelServices->UpdateScreenItem(record);
            ZOR_Rect seen;
            kernelServices->GetNowSeenRect(20000, record->id, &seen);
            record->pos.x += 1;
            kernelServices->UpdateScreenItem(record);
            kernelServices->GetNowSeenRect(20000, record->id, &seen);
        }
        kernelServices->UpdateScreen(1);
        KernelEventRecord event;
        kernelServices->GetEvent(0x7FFF, &event);
        benchmark::ClobberMemory();
    }
    for (KernelScreenItemRecord* record : records)
        kernelServices->DisposeScreenItem(record);
    state.counters["ns_per_cel"] =
        benchmark::Counter(static_cast<double>(n), benchmark::Counter::kIsIterationInvariantRate |
                                                       benchmark::Counter::kInvert);
}

std::map<std::string, int> CallsOfOneFrame(int n)
{
    QuietKernel quiet;
    RecordingKernel k;
    std::map<std::string, int> counts;
    {
        DLLInit(&k);
        GLGame* game = new GLGame();
        GLDLLInit(game);
        AbsGLPlane* plane = new GLColoredPlane(ZOR_Rect(0, 0, 639, 479), 0, 1, 0, ZOR_Point(0, 0));
        game->mpPlaneManager->Add(plane);
        k.SetView(10, {8});
        std::vector<GLCel*> cels;
        std::vector<GLCycler*> cyclers;
        std::vector<GLMover*> movers;
        for (int i = 0; i < n; i++) {
            GLCel* cel = new GLCel(plane, 10, 0, 0, GLPoint(i, i), 1, ScaleInfo{128, 128, 100, 0});
            cel->SetCycleSpeed(0);
            cel->SetMoveSpeed(0);
            cel->SetStepSize(GLPoint(1, 1));
            cel->Show();
            cels.push_back(cel);
            cyclers.push_back(new GLCycler(cel));
            movers.push_back(new GLMover(cel, GLPoint(1 << 22, i)));
        }
        game->DoIt();
        const std::size_t mark = k.Mark();
        game->DoIt();
        for (const std::string& name : k.NamesSince(mark))
            counts[name]++;
        for (GLMover* mover : movers)
            delete mover;
        for (GLCycler* cycler : cyclers)
            delete cycler;
        for (GLCel* cel : cels)
            delete cel;
        game->mpPlaneManager->Remove(plane);
        delete plane;
        delete game;
    }
    return counts;
}

} // namespace

BENCHMARK(BM_LibraryFrame)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_FloorFrame)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
