// WindowKeys.cpp - see WindowKeys.h. Built only into a player with a window.
#ifdef QUINDLE_HAVE_WINDOW
#include "WindowKeys.h"

#include <sys/stat.h>

#include <chrono>
#include <cstdio>

namespace {

std::uint64_t Micros()
{
    using namespace std::chrono;
    return static_cast<std::uint64_t>(duration_cast<microseconds>(steady_clock::now().time_since_epoch()).count());
}

} // namespace

PlayerWindowKeys::PlayerWindowKeys(SoftKernel& kernel, SoftWindow& window, std::string shotDir, bool overlay)
    : mKernel(kernel), mWindow(window), mShotDir(std::move(shotDir)), mOverlayOn(overlay)
{
    mWindow.SetFunctionKeyHook([](int n, void* self) { static_cast<PlayerWindowKeys*>(self)->Key(n); }, this);
}

PlayerWindowKeys::~PlayerWindowKeys()
{
    mWindow.SetFunctionKeyHook(nullptr, nullptr);
}

void PlayerWindowKeys::Key(int n)
{
    if (n == 1) {
        mOverlayOn = !mOverlayOn;
    } else if (n == 2) {
        // Leaving the real clock stops the game's time where it is; taking it
        // up again goes on from there.
        mPaused = !mPaused;
        mKernel.UseRealClock(!mPaused);
        mWindow.Hold(mPaused);
    } else if (n == 3) {
        mStep = mPaused;
    } else if (n == 5 || n == 9) {
        mSaveKey = n;
    } else if (n == 12) {
        Shoot();
    }
}

void PlayerWindowKeys::OnFrame()
{
    const std::uint64_t now = Micros();
    if (mLastFrame)
        mFrameMillis = static_cast<double>(now - mLastFrame) / 1000.0;
    mLastFrame = now;
    Show();
    mWindow.Pump(mKernel);
    // Paused, the game's frame stays the one shown; the overlay is drawn
    // afresh, for the pointer moves and the keys still work.
    while (mPaused && !mStep && !mWindow.Closed()) {
        Show();
        mWindow.Pump(mKernel);
    }
    // One step: the hook returns with the clock still stopped, so the game's
    // next frame comes one frame's ticks later, and then waits here again.
    mStep = false;
    if (!mPaused)
        mLastFrame = Micros();
}

void PlayerWindowKeys::Show()
{
    mWindow.Present(mKernel, mOverlayOn ? DrawOverlay() : nullptr);
}

const std::uint8_t* PlayerWindowKeys::DrawOverlay()
{
    PlayerOverlay::Status status;
    status.frameMillis = mFrameMillis;
    status.paused = mPaused;
    return mOverlay.Draw(mKernel, status);
}

// The frame shown, with the overlay drawn afresh when it is on (it may have
// been turned on a moment ago).
void PlayerWindowKeys::Shoot()
{
    ::mkdir(mShotDir.c_str(), 0777);
    char name[64];
    std::snprintf(name, sizeof name, "/shot-%06u-%d.png", mKernel.GetTicks(), ++mShots);
    const std::string path = mShotDir + name;
    std::string error;
    const std::uint8_t* frame = mOverlayOn ? DrawOverlay() : mKernel.Frame();
    if (SoftWritePng(path, frame, SoftKernel::kWidth, SoftKernel::kHeight, mKernel.Palette(), &error)) {
        mLastShot = path;
        std::printf("quindle-player: wrote %s\n", path.c_str());
        std::fflush(stdout);
    } else {
        std::fprintf(stderr, "quindle-player: %s\n", error.c_str());
    }
}

#endif
