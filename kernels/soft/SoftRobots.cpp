// SoftRobots.cpp - the soft kernel's robot and its time.
#include "SoftRobots.h"

#include "kernel.h"

#include <algorithm>
#include <string>

std::uint32_t SoftRobots::Elapsed() const
{
    if (!mRobot || !mRobot->started)
        return 0;
    const std::uint32_t until = mRobot->paused ? mRobot->pausedAt : mHost.Now();
    return until - mRobot->start - mRobot->pausedTotal;
}

void SoftRobots::Init(std::uint32_t uRobot, std::int32_t lPlaneId, bool planeExists, int iPriority, int x, int y,
                      std::uint64_t serial)
{
    std::string error;
    const SoftRobot* data = mResources.Robot(uRobot, &error);
    if (!data)
        mHost.Report(error);
    if (!planeExists)
        mHost.Report("InitRobot: robot " + std::to_string(uRobot) + " names plane " + std::to_string(lPlaneId) +
                     ", which does not exist");
    mRobot = std::make_unique<Robot>();
    mRobot->number = uRobot;
    mRobot->data = data;
    mRobot->planeId = lPlaneId;
    mRobot->priority = iPriority;
    mRobot->x = x;
    mRobot->y = y;
    mRobot->serial = serial;
}

void SoftRobots::Prepare()
{
    // Frames are read whole at Init; preparing resets play to the start.
    if (!mRobot)
        return;
    mRobot->started = false;
    mRobot->paused = false;
    mRobot->terminated = false;
    mRobot->lastSignalled = -1;
    mRobot->endSignalled = false;
}

void SoftRobots::Play()
{
    if (!mRobot || mRobot->terminated)
        return;
    if (!mRobot->started) {
        mHost.Trace("robot %u starts", mRobot->number);
        mRobot->started = true;
        mRobot->start = mHost.Now();
        mRobot->pausedTotal = 0;
        mRobot->paused = false;
    } else if (mRobot->paused) {
        mRobot->pausedTotal += mHost.Now() - mRobot->pausedAt;
        mRobot->paused = false;
    }
}

void SoftRobots::Pause()
{
    if (!mRobot || !mRobot->started || mRobot->paused || mRobot->terminated)
        return;
    mRobot->paused = true;
    mRobot->pausedAt = mHost.Now();
}

void SoftRobots::SetPriority(int iPriority)
{
    if (mRobot)
        mRobot->priority = iPriority;
}

int SoftRobots::IsDone() const
{
    if (!mRobot)
        return 1;
    if (mRobot->terminated || !mRobot->data)
        return 1;
    if (!mRobot->started)
        return 0;
    const std::uint64_t total =
        static_cast<std::uint64_t>(mRobot->data->frames.size()) * static_cast<std::uint32_t>(mRobot->data->ticksPerFrame);
    return Elapsed() >= total ? 1 : 0;
}

int SoftRobots::IsPlaying() const
{
    if (!mRobot || !mRobot->started || mRobot->terminated)
        return 0;
    return IsDone() ? 0 : 1;
}

void SoftRobots::Terminate()
{
    if (mRobot)
        mRobot->terminated = true;
}

std::uint32_t SoftRobots::Signal()
{
    if (!mRobot || !mRobot->started)
        return 0;
    if (!mRobot->data || mRobot->terminated)
        return kRobotEnded;
    const SoftRobot& r = *mRobot->data;
    const std::uint32_t elapsed = Elapsed();
    const std::size_t reached =
        std::min<std::size_t>(r.frames.size() - 1, elapsed / static_cast<std::uint32_t>(r.ticksPerFrame));
    for (std::size_t f = static_cast<std::size_t>(mRobot->lastSignalled + 1); f <= reached; f++) {
        mRobot->lastSignalled = static_cast<int>(f);
        if (r.frames[f].cue != 0)
            return r.frames[f].cue;
    }
    if (IsDone())
        return kRobotEnded;
    return 0;
}
