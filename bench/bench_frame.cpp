// The cost of one frame of the main loop, per cel, beside the floor: the same
// kernel calls made by a plain loop with no library around them.
//
// N cels stand on one plane; each has its own cycler and its own mover, and
// both step on every frame. The kernel answers in next to no time, so what is
// measured is the library's own work.
//
// Run:  cmake --preset release && cmake --build --preset release && build/release/bench/bench_frame
//
// After the runs it prints, for each N, both costs per cel and their ratio, and
// how the library's cost per cel grows from N = 1,000 to N = 10,000. With
// --benchmark_repetitions the summary uses the median of the repetitions.
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
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

// Blocks the way engines hand out small blocks: one free list per size class
// of 16 bytes, refilled from large slabs, a released block going back to the
// head of its list. Larger blocks come from the C heap. Every block is zeroed.
class SmallBlockHeap {
public:
    SmallBlockHeap() = default;
    SmallBlockHeap(const SmallBlockHeap&) = delete;
    SmallBlockHeap& operator=(const SmallBlockHeap&) = delete;
    ~SmallBlockHeap()
    {
        for (void* slab : mSlabs)
            std::free(slab);
    }

    void* Allocate(std::uint32_t size)
    {
        const std::size_t cls = (size + kGrain - 1) / kGrain;
        if (cls >= kClasses) {
            void* block = std::calloc(1, kHeader + size);
            *static_cast<std::size_t*>(block) = 0;
            return static_cast<char*>(block) + kHeader;
        }
        if (!mFree[cls])
            Refill(cls);
        Node* node = mFree[cls];
        mFree[cls] = node->next;
        char* block = reinterpret_cast<char*>(node);
        std::memset(block, 0, cls * kGrain + kHeader);
        *reinterpret_cast<std::size_t*>(block) = cls;
        return block + kHeader;
    }

    void Release(void* pointer)
    {
        if (!pointer)
            return;
        char* block = static_cast<char*>(pointer) - kHeader;
        const std::size_t cls = *reinterpret_cast<std::size_t*>(block);
        if (cls == 0) {
            std::free(block);
            return;
        }
        Node* node = reinterpret_cast<Node*>(block);
        node->next = mFree[cls];
        mFree[cls] = node;
    }

private:
    struct Node {
        Node* next;
    };
    static constexpr std::size_t kGrain = 16;
    static constexpr std::size_t kHeader = 16; // the size class; keeps blocks 16-byte aligned
    static constexpr std::size_t kClasses = 65; // up to 1,024 bytes
    static constexpr std::size_t kSlab = 64 * 1024;

    void Refill(std::size_t cls)
    {
        const std::size_t stride = cls * kGrain + kHeader;
        char* slab = static_cast<char*>(std::malloc(kSlab));
        mSlabs.push_back(slab);
        // Threaded so that the first block handed out is the lowest.
        for (std::size_t offset = (kSlab / stride - 1) * stride;; offset -= stride) {
            Node* node = reinterpret_cast<Node*>(slab + offset);
            node->next = mFree[cls];
            mFree[cls] = node;
            if (offset == 0)
                break;
        }
    }

    Node* mFree[kClasses] = {};
    std::vector<void*> mSlabs;
};

// The recording kernel with recording off and the per-frame operations
// answered at once; planes and screen items are the recording kernel's own.
// Memory comes from a small-block heap rather than the recording kernel's
// ledger, which keeps a hash entry and a copy of the file name beside every
// block: work no engine's allocator does, and which would spread the
// library's blocks over several times the memory.
class QuietKernel : public RecordingKernel {
public:
    QuietKernel() { recording = false; }
    void* AllocMemory(std::uint32_t size, const char*, int) override { return mHeap.Allocate(size); }
    void FreeMemory(void* block) override { mHeap.Release(block); }
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

private:
    SmallBlockHeap mHeap;
};

// Counts the calls a frame makes, by operation, with a recording kernel.
std::map<std::string, int> CallsOfOneFrame(int n);

// N cels on one plane, each with its own cycler and mover stepping every
// frame, on the kernel given (the quiet one to measure, a recording one to
// count the calls).
struct Scene {
    explicit Scene(RecordingKernel& k, int n)
    {
        DLLInit(&k);
        game = new GLGame();
        GLDLLInit(game);
        plane = new GLColoredPlane(ZOR_Rect(0, 0, 639, 479), 0, 1, 0, ZOR_Point(0, 0));
        game->mpPlaneManager->Add(plane);
        for (int i = 0; i < n; i++) {
            GLCel* cel = new GLCel(plane, 10, 0, 0, GLPoint(i % 600, i % 400), 1, kFullSizeScale);
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
        records.push_back(kernelServices->NewScreenItem(20000, &source, ZOR_Point(i, i), kFullSizeScale));
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
        kernelServices->GetEvent(kEventMaskAll, &event);
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
    RecordingKernel k;
    k.SetView(10, {8});
    std::map<std::string, int> counts;
    Scene scene(k, n);
    scene.game->DoIt();
    const std::size_t mark = k.Mark();
    scene.game->DoIt();
    for (const std::string& name : k.NamesSince(mark))
        counts[name]++;
    return counts;
}

} // namespace

BENCHMARK(BM_LibraryFrame)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_FloorFrame)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);

namespace {

// The console report, plus the figures the targets are stated in: nanoseconds
// per cel for the library and the floor at each N, and their ratio.
class SummaryReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            auto counter = run.counters.find("ns_per_cel");
            if (counter == run.counters.end())
                continue;
            // Single runs, or only the medians when the runs themselves are
            // not reported (--benchmark_report_aggregates_only).
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name != "median")
                continue;
            const std::string& name = run.run_name.function_name;
            const int n = std::atoi(run.run_name.args.c_str());
            auto& samples = run.run_type == Run::RT_Aggregate ? mMedians : mSamples;
            // The counter is kept in seconds per cel.
            samples[{name, n}].push_back(counter->second.value * 1e9);
        }
    }

    void PrintSummary() const
    {
        std::printf("\n%8s %16s %16s %8s\n", "N", "library ns/cel", "floor ns/cel", "ratio");
        for (int n : {100, 1000, 10000}) {
            const double library = Median("BM_LibraryFrame", n);
            const double floor = Median("BM_FloorFrame", n);
            if (library > 0 && floor > 0)
                std::printf("%8d %16.1f %16.1f %8.2f\n", n, library, floor, library / floor);
        }
        const double at1000 = Median("BM_LibraryFrame", 1000);
        const double at10000 = Median("BM_LibraryFrame", 10000);
        if (at1000 > 0 && at10000 > 0)
            std::printf("library per cel, N = 10,000 against N = 1,000: %.2f\n", at10000 / at1000);
        std::printf("targets: ratio at N = 1,000 at most 3; growth from 1,000 to 10,000 at most 1.5\n");
    }

private:
    double Median(const std::string& name, int n) const
    {
        auto found = mMedians.find({name, n});
        if (found == mMedians.end()) {
            found = mSamples.find({name, n});
            if (found == mSamples.end())
                return 0;
        }
        std::vector<double> values = found->second;
        std::sort(values.begin(), values.end());
        const std::size_t middle = values.size() / 2;
        return values.size() % 2 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
    }

    std::map<std::pair<std::string, int>, std::vector<double>> mSamples;
    std::map<std::pair<std::string, int>, std::vector<double>> mMedians;
};

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    SummaryReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.PrintSummary();
    benchmark::Shutdown();
    return 0;
}
