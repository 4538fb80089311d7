// SoftHost.h - what a service of the soft kernel may ask of the kernel.
//
// SoftKernel implements the kernel interface and hands each service (audio,
// messages, memory bitmaps and text, ...) to a class of its own. A service
// never calls another service, nor an operation of the kernel: it asks its
// host for two things only, the clock and a place for faults, so that calls
// run one way, from the kernel into its services.
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

protected:
    ~SoftServiceHost() {}
};

#endif
