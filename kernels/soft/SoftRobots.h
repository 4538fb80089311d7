// SoftRobots.h - the soft kernel's robot: one animation at a time, read from
// robots/<n>.txt, shown on a plane at a position and a priority of its own.
//
// A robot shows frame n during ticks n*rate to (n+1)*rate-1 after Play, with
// the time it spent paused left out. Signal hands out each cue point once, in
// frame order, then kRobotEnded once the last frame's time is over. Playing is
// true from Play until the robot ends or is terminated (also while paused).
// The kernel checks the plane and draws the frame; this class keeps the time.
#ifndef QUINDLE_SOFT_ROBOTS_H
#define QUINDLE_SOFT_ROBOTS_H

#include "SoftHost.h"
#include "SoftResources.h"

#include <cstdint>
#include <memory>

class SoftRobots {
public:
    struct Robot {
        std::uint32_t number = 0;
        const SoftRobot* data = nullptr;
        std::int32_t planeId = 0;
        int priority = 0;
        int x = 0, y = 0;
        bool started = false;
        bool paused = false;
        bool terminated = false;
        std::uint32_t start = 0, pausedAt = 0, pausedTotal = 0;
        int lastSignalled = -1; // the last frame whose cue was handed out
        bool endSignalled = false;
        std::uint64_t serial = 0;
    };

    SoftRobots(SoftServiceHost& host, SoftResources& resources) : mHost(host), mResources(resources) {}
    SoftRobots(const SoftRobots&) = delete;
    SoftRobots& operator=(const SoftRobots&) = delete;

    // Replaces the robot; a robot that cannot be read is a fault, and so is a
    // plane that does not exist (`planeExists`), reported after it.
    void Init(std::uint32_t number, std::int32_t planeId, bool planeExists, int priority, int x, int y,
              std::uint64_t serial);
    void Prepare();
    void Play();
    void Pause();
    void SetPriority(int priority);
    int IsDone() const;
    int IsPlaying() const;
    void Terminate();
    std::uint32_t Signal();

    // Ticks played since Play, pauses left out; 0 before.
    std::uint32_t Elapsed() const;
    // The robot, or null before the first Init.
    Robot* Current() { return mRobot.get(); }
    const Robot* Current() const { return mRobot.get(); }

private:
    SoftServiceHost& mHost;
    SoftResources& mResources;
    std::unique_ptr<Robot> mRobot;
};

#endif
