// SoftTestSupport.h - what the soft kernel's tests stand on: a scratch game
// folder whose files are made in code, and frame comparison with a diff image.
#ifndef QUINDLE_SOFT_TEST_SUPPORT_H
#define QUINDLE_SOFT_TEST_SUPPORT_H

#include "SoftKernel.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace soft_test {

// A game folder in a fresh temporary directory, removed with the object.
class TempGame {
public:
    TempGame();
    ~TempGame();
    const std::string& Dir() const { return mDir; }
    std::string Path(const std::string& relative) const { return mDir + "/" + relative; }
    void Write(const std::string& relative, const std::string& text) const;
    // A PNG whose pixel (x, y) has palette colour pixel(x, y) of the default
    // palette, or is transparent where pixel answers -1.
    void WritePng(const std::string& relative, int width, int height,
                  const std::function<int(int, int)>& pixel) const;
    // A solid w x h cel of one colour.
    void WriteSolidPng(const std::string& relative, int width, int height, int color) const;
    // A 16-bit mono PCM WAV of `frames` frames at `rate` Hz.
    void WriteWav(const std::string& relative, int rate, int frames) const;

private:
    std::string mDir;
};

// A frame a test builds by hand: starts black (index 0).
struct Expected {
    std::vector<std::uint8_t> pixels = std::vector<std::uint8_t>(640 * 480, 0);
    void Fill(int left, int top, int right, int bottom, int color);
    void Set(int x, int y, int color) { pixels[static_cast<std::size_t>(y) * 640 + x] = static_cast<std::uint8_t>(color); }
};

std::uint64_t FrameHash(const std::uint8_t* pixels, std::size_t size);
// Compares the kernel's last frame with the expected one by hash; on a
// mismatch writes <name>.actual.png, <name>.expected.png and <name>.diff.png
// (differing pixels red over a grey copy of the expected frame) into the
// working directory and names them in the failure.
::testing::AssertionResult FrameMatches(const SoftKernel& k, const Expected& expected, const std::string& name);
// The same for any two frames in one palette.
::testing::AssertionResult FramesMatch(const std::uint8_t* actual, const std::uint8_t* expected,
                                       const SoftPalette& palette, const std::string& name);

// A shell command's exit status and its output and error streams together.
struct Result {
    int status = -1;
    std::string output;
};
Result Shell(const std::string& command);

// A rectangle's edges as "left,top,right,bottom", to compare in one line.
template <typename Rect> std::string Edges(const Rect& r)
{
    return std::to_string(r.left) + "," + std::to_string(r.top) + "," + std::to_string(r.right) + "," +
           std::to_string(r.bottom);
}

// Helpers that do what the library does to put planes and items up.
KernelPlaneRecord* MakePlane(SoftKernel& k, int type, int color, ZOR_Rect rect, int priority, int picture = 0,
                             int mirror = 0);
KernelScreenItemRecord* MakeItem(SoftKernel& k, KernelPlaneRecord* plane, int view, int loop, int cel, int x, int y,
                                 int priority = -1);

} // namespace soft_test

#endif
