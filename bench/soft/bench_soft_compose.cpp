// One frame of the soft kernel: a full-screen picture plane and 100 cels of
// 32x48 pixels (a quarter of each transparent) on a transparent plane above.
// The budget is 0.5 ms a frame in the release build.
#include "SoftKernel.h"

#include <benchmark/benchmark.h>

namespace {

void Scene(SoftKernel& k, int cels)
{
    SoftBitmap picture;
    picture.Resize(640, 480, 0, 1);
    for (std::size_t i = 0; i < picture.pixels.size(); i++)
        picture.pixels[i] = static_cast<std::uint8_t>(i * 7 % 251);
    k.Resources().PutPicture(1, picture);
    SoftView view;
    view.loops.resize(1);
    view.loops[0].resize(1);
    SoftBitmap& cel = view.loops[0][0];
    cel.Resize(32, 48, 9, 1);
    cel.originX = 16;
    cel.originY = 47;
    for (int y = 0; y < 48; y++)
        for (int x = 0; x < 32; x++)
            if ((x - 16) * (x - 16) + (y - 24) * (y - 24) > 16 * 16)
                cel.opaque[static_cast<std::size_t>(y) * 32 + x] = 0;
    k.Resources().PutView(50, view);

    ZOR_Point vanish(0, 0);
    ZOR_Rect screen(0, 0, 639, 479);
    KernelPlaneRecord* back = k.NewPlane(kPlanePicture, 0, &screen, 0, 0, &vanish, 1, 0);
    k.AddPlane(back);
    k.PlaneCreated(back);
    KernelPlaneRecord* front = k.NewPlane(kPlaneTransparent, 0, &screen, 0, 1, &vanish, 0, 0);
    k.AddPlane(front);
    k.PlaneCreated(front);
    for (int i = 0; i < cels; i++) {
        KernelScreenItemSource src{0, 50, 0, 0, 0, {0, 0}};
        KernelScreenItemRecord* r = k.NewScreenItem(front->id, &src, ZOR_Point(20 + (i * 61) % 600, 60 + (i * 37) % 400),
                                                    kFullSizeScale);
        k.AddScreenItem(r);
    }
}

void BM_ComposeFrame(benchmark::State& state)
{
    SoftKernel k;
    Scene(k, static_cast<int>(state.range(0)));
    for (auto _ : state) {
        k.Compose();
        benchmark::DoNotOptimize(k.Frame()[1000]);
    }
    if (!k.Fault().empty())
        state.SkipWithError(k.Fault().c_str());
}
BENCHMARK(BM_ComposeFrame)->Arg(100)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
