// One frame of the soft kernel beside its floors. The scene: a full-screen
// picture plane and N cels of 32x48 pixels (a circle of radius 16, so rows at
// the top and bottom and the corners are transparent) on a transparent plane
// above. The same frame is timed three ways at N = 0, 10, 100, 1,000 and
// 10,000:
//   - Compose: the soft kernel composing it;
//   - Memcpy: a copy of the 307,200-byte frame, the least any frame costs;
//   - Sdl: SDL2's software blits of the same scene into an 8-bit surface (the
//     picture copied, each cel blitted with an RLE colour key), when SDL2 was
//     found at build time.
// Before timing, the SDL2 frame is checked pixel for pixel against the soft
// kernel's (all cels are of one colour, so the order they are drawn in, by
// position for the kernel and as made for SDL2, does not change the frame). The run ends with a table of the ratios.
//
// Run:  cmake --preset release && cmake --build --preset release --target bench_soft_compose &&
//       build/release/bench/soft/bench_soft_compose
#include "SoftKernel.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <map>
#include <vector>

#ifdef QUINDLE_BENCH_SDL2
#include <SDL.h>
#endif

namespace {

constexpr int kW = SoftKernel::kWidth;
constexpr int kH = SoftKernel::kHeight;
constexpr int kCelW = 32, kCelH = 48, kOriginX = 16, kOriginY = 47;

std::uint8_t PicturePixel(std::size_t i)
{
    return static_cast<std::uint8_t>(i * 7 % 251);
}

bool CelOpaque(int x, int y)
{
    return (x - 16) * (x - 16) + (y - 24) * (y - 24) <= 16 * 16;
}

ZOR_Point CelPosition(int i)
{
    return ZOR_Point(20 + (i * 61) % 600, 60 + (i * 37) % 400);
}

void Scene(SoftKernel& k, int cels)
{
    SoftBitmap picture;
    picture.Resize(kW, kH, 0, 1);
    for (std::size_t i = 0; i < picture.pixels.size(); i++)
        picture.pixels[i] = PicturePixel(i);
    k.Resources().PutPicture(1, picture);
    SoftView view;
    view.loops.resize(1);
    view.loops[0].resize(1);
    SoftBitmap& cel = view.loops[0][0];
    cel.Resize(kCelW, kCelH, 9, 1);
    cel.originX = kOriginX;
    cel.originY = kOriginY;
    for (int y = 0; y < kCelH; y++)
        for (int x = 0; x < kCelW; x++)
            if (!CelOpaque(x, y))
                cel.opaque[static_cast<std::size_t>(y) * kCelW + x] = 0;
    k.Resources().PutView(50, view);

    ZOR_Point vanish(0, 0);
    ZOR_Rect screen(0, 0, kW - 1, kH - 1);
    KernelPlaneRecord* back = k.NewPlane(kPlanePicture, 0, &screen, 0, 0, &vanish, 1, 0);
    k.AddPlane(back);
    k.PlaneCreated(back);
    KernelPlaneRecord* front = k.NewPlane(kPlaneTransparent, 0, &screen, 0, 1, &vanish, 0, 0);
    k.AddPlane(front);
    k.PlaneCreated(front);
    for (int i = 0; i < cels; i++) {
        KernelScreenItemSource src{0, 50, 0, 0, 0, {0, 0}};
        KernelScreenItemRecord* r = k.NewScreenItem(front->id, &src, CelPosition(i), kFullSizeScale);
        k.AddScreenItem(r);
    }
}

void BM_Compose(benchmark::State& state)
{
    SoftKernel k;
    Scene(k, static_cast<int>(state.range(0)));
    for (auto _ : state) {
        k.Compose();
        benchmark::DoNotOptimize(k.Frame()[1000]);
        benchmark::ClobberMemory();
    }
    if (!k.Fault().empty())
        state.SkipWithError(k.Fault().c_str());
}

void BM_Memcpy(benchmark::State& state)
{
    std::vector<std::uint8_t> from(static_cast<std::size_t>(kW) * kH), to(from.size());
    for (std::size_t i = 0; i < from.size(); i++)
        from[i] = PicturePixel(i);
    for (auto _ : state) {
        std::memcpy(to.data(), from.data(), to.size());
        benchmark::DoNotOptimize(to.data());
        benchmark::ClobberMemory();
    }
}

#ifdef QUINDLE_BENCH_SDL2
// The scene as SDL2 surfaces; colour 0 is the cel's colour key (the cel itself is colour 9).
struct SdlScene {
    SDL_Palette* palette = nullptr;
    SDL_Surface* frame = nullptr;
    SDL_Surface* picture = nullptr;
    SDL_Surface* cel = nullptr;
    std::vector<SDL_Rect> places;

    explicit SdlScene(int cels)
    {
        palette = SDL_AllocPalette(256);
        frame = SDL_CreateRGBSurfaceWithFormat(0, kW, kH, 8, SDL_PIXELFORMAT_INDEX8);
        picture = SDL_CreateRGBSurfaceWithFormat(0, kW, kH, 8, SDL_PIXELFORMAT_INDEX8);
        cel = SDL_CreateRGBSurfaceWithFormat(0, kCelW, kCelH, 8, SDL_PIXELFORMAT_INDEX8);
        for (SDL_Surface* s : {frame, picture, cel})
            SDL_SetSurfacePalette(s, palette);
        for (int y = 0; y < kH; y++)
            for (int x = 0; x < kW; x++)
                static_cast<std::uint8_t*>(picture->pixels)[y * picture->pitch + x] =
                    PicturePixel(static_cast<std::size_t>(y) * kW + x);
        for (int y = 0; y < kCelH; y++)
            for (int x = 0; x < kCelW; x++)
                static_cast<std::uint8_t*>(cel->pixels)[y * cel->pitch + x] = CelOpaque(x, y) ? 9 : 0;
        SDL_SetColorKey(cel, SDL_TRUE, 0);
        SDL_SetSurfaceRLE(cel, 1);
        for (int i = 0; i < cels; i++) {
            const ZOR_Point p = CelPosition(i);
            places.push_back(SDL_Rect{p.x - kOriginX, p.y - kOriginY, kCelW, kCelH});
        }
    }
    ~SdlScene()
    {
        SDL_FreeSurface(cel);
        SDL_FreeSurface(picture);
        SDL_FreeSurface(frame);
        SDL_FreePalette(palette);
    }
    void Draw()
    {
        SDL_BlitSurface(picture, nullptr, frame, nullptr);
        for (SDL_Rect r : places)
            SDL_BlitSurface(cel, nullptr, frame, &r);
    }
};

void BM_Sdl(benchmark::State& state)
{
    SdlScene scene(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        scene.Draw();
        benchmark::DoNotOptimize(scene.frame->pixels);
        benchmark::ClobberMemory();
    }
}

// The number of pixels where SDL2's frame and the soft kernel's differ.
long long FramesDiffer(int cels)
{
    SoftKernel k;
    Scene(k, cels);
    k.Compose();
    SdlScene scene(cels);
    scene.Draw();
    long long differ = 0;
    for (int y = 0; y < kH; y++)
        for (int x = 0; x < kW; x++)
            differ += static_cast<const std::uint8_t*>(scene.frame->pixels)[y * scene.frame->pitch + x] !=
                      k.Frame()[y * kW + x];
    return differ;
}
#endif

const std::vector<int> kCounts = {0, 10, 100, 1000, 10000};

// The console report, then per N the three times (medians when repeated) and
// the ratios the targets are stated in. The times are processor time: on a
// shared machine the wall time also counts the waits for a core.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs)
            if (run.run_type != Run::RT_Aggregate || run.aggregate_name == "median")
                mTimes[{run.run_name.function_name, std::atoi(run.run_name.args.c_str())}].push_back(
                    run.GetAdjustedCPUTime());
    }
    void PrintTable() const
    {
        const double copy = Time("BM_Memcpy", 0);
        std::printf("\n%6s %12s %12s %12s %12s %12s %14s\n", "N", "compose us", "memcpy us", "SDL2 us",
                    "x memcpy", "x SDL2", "compose ns/cel");
        for (int n : kCounts) {
            const double compose = Time("BM_Compose", n), sdl = Time("BM_Sdl", n);
            const double perCel = n ? (compose - Time("BM_Compose", 0)) * 1000 / n : 0;
            std::printf("%6d %12.2f %12.2f %12s %12.2f %12s %14s\n", n, compose, copy,
                        sdl > 0 ? std::to_string(sdl).substr(0, 8).c_str() : "-", compose / copy,
                        sdl > 0 ? std::to_string(compose / sdl).substr(0, 5).c_str() : "-",
                        n ? std::to_string(perCel).substr(0, 8).c_str() : "-");
        }
        const double c0 = Time("BM_Compose", 0);
        const double at1000 = (Time("BM_Compose", 1000) - c0) / 1000;
        const double at10000 = (Time("BM_Compose", 10000) - c0) / 10000;
        std::printf("per cel, N = 10,000 against N = 1,000: %.2f\n", at10000 / at1000);
        std::printf("targets: N = 0 at most 1.5x memcpy; N = 100 at most 3x; N = 1,000 and 10,000 at most 1x "
                    "SDL2; per cel growth at most 1.15\n");
#ifndef QUINDLE_BENCH_SDL2
        std::printf("SDL2 was not found at build time: no SDL2 column.\n");
#endif
    }

private:
    double Time(const std::string& name, int n) const
    {
        auto found = mTimes.find({name, n});
        if (found == mTimes.end())
            return 0;
        std::vector<double> v = found->second;
        std::sort(v.begin(), v.end());
        return v.size() % 2 ? v[v.size() / 2] : (v[v.size() / 2 - 1] + v[v.size() / 2]) / 2;
    }
    std::map<std::pair<std::string, int>, std::vector<double>> mTimes;
};

} // namespace

int main(int argc, char** argv)
{
    for (int n : kCounts) {
        benchmark::RegisterBenchmark("BM_Compose", BM_Compose)->Arg(n)->Unit(benchmark::kMicrosecond);
#ifdef QUINDLE_BENCH_SDL2
        benchmark::RegisterBenchmark("BM_Sdl", BM_Sdl)->Arg(n)->Unit(benchmark::kMicrosecond);
#endif
    }
    benchmark::RegisterBenchmark("BM_Memcpy", BM_Memcpy)->Arg(0)->Unit(benchmark::kMicrosecond);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
#ifdef QUINDLE_BENCH_SDL2
    for (int n : kCounts) {
        const long long differ = FramesDiffer(n);
        if (differ) {
            std::fprintf(stderr, "N = %d: SDL2's frame differs from the soft kernel's in %lld pixels\n", n, differ);
            return 1;
        }
    }
    std::printf("SDL2's frames and the soft kernel's agree pixel for pixel at every N.\n");
#endif
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.PrintTable();
    benchmark::Shutdown();
    return 0;
}
