// SoftHost.h - what a service of the soft kernel may ask of the kernel.
//
// SoftKernel implements the kernel interface and hands each service (audio,
// messages, memory bitmaps and text, ...) to a class of its own. A service
// never calls another service, nor an operation of the kernel: it asks its
// host only for the clock and for places to put faults and trace lines, so
// that calls run one way, from the kernel into its services. The picture is
// the one place that reads services: the scene (SoftScene.h) looks cels up in
// the resources and memory bitmaps, and the compositor (SoftCompositor.h)
// draws the scene with the resources' pictures and the robot; neither calls
// back into the kernel.
#ifndef QUINDLE_SOFT_HOST_H
#define QUINDLE_SOFT_HOST_H

#include <cstdint>
#include <string>

class SoftServiceHost {
public:
    // The kernel's clock in ticks, 60 a second.
    virtual std::uint32_t Now() const = 0;
    // Keeps a fault ("<file>: <what is wrong>"); the kernel keeps the first.
    virtual void Report(const std::string& fault) = 0;
    // Writes a line of the host's trace (what a service did), when one is kept.
    __attribute__((format(printf, 2, 3))) virtual void Trace(const char* format, ...) = 0;

protected:
    ~SoftServiceHost() {}
};

#endif
