// SoftKernel.cpp - the operations the soft kernel does not hand on whole to
// one service: composing a frame and handing it out, what ties the scene
// (SoftScene: planes, screen items, polygons) to the robot, what ties the
// movies to the screen, the input and the palette, the cursor, random
// numbers and the clock. The frame is composed in SoftCompositor.cpp.
#include "SoftKernel.h"

#include "SoftCompositor.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>

using soft::kScreen;
using soft::Safe;

SoftKernel::SoftKernel()
    : mPalette(SoftPalette::Default()),
      mCompositor(std::make_unique<SoftCompositor>(static_cast<SoftServiceHost&>(*this), mScene, mResources, mRobots))
{
    mResources.SetPaletteForImages(mPalette);
    mScene.SetWatcher(mCompositor.get());
}

SoftKernel::~SoftKernel() = default;

void SoftKernel::Report(const std::string& fault)
{
    if (mFault.empty())
        mFault = fault;
}

void SoftKernel::Trace(const char* format, ...)
{
    if (!mTraceHook)
        return;
    char line[256];
    va_list args;
    va_start(args, format);
    std::vsnprintf(line, sizeof line, format, args);
    va_end(args);
    mTraceHook(line, mTraceHookData);
}

bool SoftKernel::SetGameFolder(const std::string& folder)
{
    mResources.SetFolder(folder);
    SoftPalette palette;
    std::string error;
    if (!mResources.LoadPalette(&palette, &error)) {
        Report(error);
        return false;
    }
    SetPalette(palette);
    return true;
}

void SoftKernel::SetPalette(const SoftPalette& palette)
{
    mPalette = palette;
    mResources.SetPaletteForImages(palette);
}

void SoftKernel::SetScript(const std::vector<SoftInputEvent>& events)
{
    mInput.SetScript(events);
}

void SoftKernel::PushInput(const SoftInputEvent& event)
{
    mInput.Push(event);
}

std::uint32_t SoftKernel::Now() const
{
    return mInput.Now();
}

// ----- memory -----

void* SoftKernel::AllocMemory(std::uint32_t uSize, const char* pFile, int iLine)
{
    return mLedger.Allocate(uSize, pFile, iLine);
}

void SoftKernel::FreeMemory(void* pBlock)
{
    mLedger.Release(pBlock);
}

// ----- planes: the scene keeps them; the robot goes with its plane -----

void SoftKernel::DeletePlane(std::int32_t lPlaneId)
{
    if (mScene.DeletePlane(lPlaneId) && mRobots.Current() && mRobots.Current()->planeId == lPlaneId)
        mRobots.Terminate();
}

void SoftKernel::MovePlaneItems(std::int32_t lPlaneId, int iDeltaX, int iDeltaY, int fMovePictures)
{
    if (!mScene.MovePlaneItems(lPlaneId, iDeltaX, iDeltaY, fMovePictures != 0))
        return;
    if (SoftRobots::Robot* robot = mRobots.Current(); robot && robot->planeId == lPlaneId) {
        robot->x = Safe(static_cast<long long>(robot->x) + iDeltaX);
        robot->y = Safe(static_cast<long long>(robot->y) + iDeltaY);
    }
}

void SoftKernel::Inspect(std::vector<InspectedPlane>* planes)
{
    // The fault of a cel that cannot be drawn is already the kernel's first
    // fault or comes after it: asking again adds nothing.
    const std::string fault = mFault;
    mScene.Inspect(planes);
    mFault = fault;
}

// ----- views -----

int SoftKernel::NumLoops(int iView)
{
    std::string error;
    const SoftView* view = mResources.View(iView, &error);
    if (!view) {
        Report(error);
        return 0;
    }
    return static_cast<int>(view->loops.size());
}

int SoftKernel::NumCels(std::uint32_t uView, int iLoop)
{
    std::string error;
    const SoftView* view = mResources.View(static_cast<int>(uView), &error);
    if (!view) {
        Report(error);
        return 0;
    }
    if (iLoop < 0 || iLoop >= static_cast<int>(view->loops.size())) {
        Report(mResources.PathOf("views/" + std::to_string(uView) + ".txt") + ": has no loop " +
               std::to_string(iLoop));
        return 0;
    }
    return static_cast<int>(view->loops[iLoop].size());
}

// ----- composition -----

const std::uint8_t* SoftKernel::Frame() const
{
    return mCompositor->Frame();
}

void SoftKernel::Compose()
{
    mCompositor->ComposePlanes();
    mMovies.Draw(*mCompositor, mPalette);
    bool cursorShown = mCursorVisible && mCursorView >= 0;
    if (mMovies.HidesCursor())
        cursorShown = false;
    if (cursorShown) {
        std::string error;
        const SoftView* view = mResources.View(mCursorView, &error);
        if (!view) {
            Report(error);
        } else if (mCursorLoop >= 0 && mCursorLoop < static_cast<int>(view->loops.size()) && mCursorCel >= 0 &&
                   mCursorCel < static_cast<int>(view->loops[mCursorLoop].size())) {
            const SoftBitmap& bmp = view->loops[mCursorLoop][mCursorCel];
            mCompositor->DrawBitmap(bmp, mInput.CursorX() - bmp.originX, mInput.CursorY() - bmp.originY, kScaleFull, kScaleFull, nullptr, kScreen, false);
        }
    }
    mFramesComposed++;
}

void SoftKernel::UpdateScreen(int /*fFlag*/)
{
    Compose();
    if (mFrameHook) {
        if (mInput.HasSeam())
            Now(); // the hook sees the clock as the frame was composed
        mInput.SetInFrameHook(true);
        mFrameHook(*this, mFrameHookData);
        mInput.SetInFrameHook(false);
    }
    mInput.AdvanceClock();
    mEmptyLookups = 0;
}

// ----- input and cursor -----

void SoftKernel::GetEvent(std::uint32_t uMask, KernelEventRecord* pRecord)
{
    if (pRecord && mInput.NextEvent(uMask, pRecord)) {
        mMovies.InputArrived();
        mEmptyLookups = 0;
    } else if (mIdleHook && ++mEmptyLookups >= kIdleLookups) {
        mEmptyLookups = 0;
        mIdleHook(*this, mIdleHookData);
    }
}

void SoftKernel::ShowCursor()
{
    mCursorVisible = true;
}

void SoftKernel::HideCursor()
{
    mCursorVisible = false;
}

void SoftKernel::SetCursorPos(ZOR_Point* pPoint)
{
    if (!pPoint)
        return;
    mInput.SetCursor(std::max(0, std::min(kWidth - 1, static_cast<int>(pPoint->x))),
                     std::max(0, std::min(kHeight - 1, static_cast<int>(pPoint->y))));
}

void SoftKernel::SetCursorView(std::uint32_t uView, int iLoop, int iCel)
{
    std::string error;
    if (!mResources.View(static_cast<int>(uView), &error)) {
        Report(error);
        return;
    }
    mCursorView = static_cast<int>(uView);
    mCursorLoop = iLoop;
    mCursorCel = iCel;
}

// ----- random numbers and clocks -----

std::uint32_t SoftKernel::Random(std::uint32_t uLow, std::uint32_t uHigh)
{
    if (uLow > uHigh)
        std::swap(uLow, uHigh);
    // xorshift64*: fast, and the same sequence on every platform.
    mRandom ^= mRandom >> 12;
    mRandom ^= mRandom << 25;
    mRandom ^= mRandom >> 27;
    const std::uint64_t r = mRandom * 2685821657736338717ull;
    const std::uint64_t span = static_cast<std::uint64_t>(uHigh) - uLow + 1;
    return uLow + static_cast<std::uint32_t>((r >> 11) % span);
}

void SoftKernel::SeedRandom(std::uint32_t uSeed)
{
    mRandom = (static_cast<std::uint64_t>(uSeed) << 1) ^ 0x9E3779B97F4A7C15ull;
    if (mRandom == 0)
        mRandom = 1;
}

std::uint32_t SoftKernel::GetTime(int /*iSelector*/)
{
    return Now() / 60;
}

std::uint32_t SoftKernel::GetTicks()
{
    return Now();
}

// ----- messages -----

// Speech belongs to a message: looked up by the messages, played by the audio.
int SoftKernel::PlayMessageAudio(int iKey1, int iKey2, int iKey3, int iKey4, int iSequence, int /*iUnused1*/,
                                 int /*iVolume*/, int /*iUnused2*/)
{
    const int keys[5] = {iKey1, iKey2, iKey3, iKey4, iSequence};
    return mAudio.PlaySpeech(keys, mMessages.Find(keys));
}

// ----- robots -----

void SoftKernel::InitRobot(std::uint32_t uRobot, std::int32_t lPlaneId, int iPriority, int x, int y, int /*iValue*/)
{
    mRobots.Init(uRobot, lPlaneId, mScene.FindPlane(lPlaneId) != nullptr, iPriority, Safe(x), Safe(y),
                 mScene.NextSerial());
}

void SoftKernel::PrepareRobot(int, int, int, int)
{
    mRobots.Prepare();
}

void SoftKernel::PlayRobot()
{
    mRobots.Play();
}

void SoftKernel::PauseRobot()
{
    mRobots.Pause();
}

void SoftKernel::SetRobotPriority(int iPriority)
{
    mRobots.SetPriority(iPriority);
}

int SoftKernel::IsRobotDone()
{
    return mRobots.IsDone();
}

int SoftKernel::IsRobotPlaying()
{
    return mRobots.IsPlaying();
}

void SoftKernel::TerminateRobot()
{
    mRobots.Terminate();
}

std::uint32_t SoftKernel::GetRobotSignal()
{
    return mRobots.Signal();
}

// ----- movies: the kernel drives what needs the screen, the input or the palette -----

unsigned SoftKernel::PlayVmd(int iEventFlags, int, int)
{
    const int ticksPerFrame = mMovies.BeginVmd();
    if (ticksPerFrame == 0)
        return 0;
    unsigned result = 0;
    // The movie plays to its end before the call returns; every tick is a frame
    // of output, so a headless run records it as it would be seen.
    while (mMovies.VmdHasFrame()) {
        for (int t = 0; t < ticksPerFrame; t++) {
            if ((iEventFlags & 2) && mInput.TakeEnding()) {
                result = 1;
                break;
            }
            UpdateScreen(1);
        }
        if (result)
            break;
        mMovies.NextVmdFrame();
    }
    mMovies.EndVmd();
    return result;
}

unsigned SoftKernel::ResumeVmd()
{
    return mMovies.CanResumeVmd() ? PlayVmd(3, -1, -1) : 0;
}

void SoftKernel::SetVmdPalette()
{
    SoftPalette palette;
    if (mMovies.VmdPalette(mPalette, &palette))
        SetPalette(palette);
}

unsigned SoftKernel::PauseAvi(int iMovie)
{
    if (!mMovies.IsAviPlaying(iMovie))
        return 1;
    Compose(); // brings the frame number up to the clock
    return mMovies.PauseAvi(iMovie);
}

void SoftKernel::SetAviPalette(int iMovie)
{
    if (const SoftPalette* palette = mMovies.AviPalette(iMovie))
        SetPalette(*palette);
}
