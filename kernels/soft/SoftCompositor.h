// SoftCompositor.h - the soft kernel's compositor: it owns the 640x480 frame
// of palette indices and draws the kernel's planes, their pictures, screen
// items, polygons and robot into it, with transitions and scrolls.
#ifndef QUINDLE_SOFT_COMPOSITOR_H
#define QUINDLE_SOFT_COMPOSITOR_H

#include "SoftKernel.h"

#include <cstdint>
#include <vector>

class SoftCompositor {
public:
    static constexpr int kWidth = SoftKernel::kWidth;
    static constexpr int kHeight = SoftKernel::kHeight;

    // The compositor reads the planes, items and robot of this kernel.
    explicit SoftCompositor(SoftKernel& kernel);
    SoftCompositor(const SoftCompositor&) = delete;
    SoftCompositor& operator=(const SoftCompositor&) = delete;

    // The frame: kWidth x kHeight palette indices, row by row.
    const std::uint8_t* Frame() const { return mFrame.data(); }
    std::uint8_t* Frame() { return mFrame.data(); }

    // Draws every added plane from the lowest priority up, each with its
    // transition, over a cleared frame.
    void ComposePlanes();
    // Draws a bitmap with its top-left corner at (left, top): scaled by
    // scaleX/128 and scaleY/128 (nearest pixel), limited to the inset (in the
    // bitmap's own pixels) when given, mirrored left to right when asked, and
    // clipped to `clip`. Transparent pixels leave the frame as it is.
    void DrawBitmap(const SoftBitmap& bmp, int left, int top, int scaleX, int scaleY, const ZOR_Rect* inset,
                    const ZOR_Rect& clip, bool mirror);

private:
    using Plane = SoftKernel::Plane;
    using Polygon = SoftKernel::Polygon;
    using Item = SoftKernel::Item;

    void DrawPlane(Plane& plane);
    void DrawPolygon(const Polygon& poly, const Plane& plane, const ZOR_Rect& clip);

    SoftKernel& mKernel;
    std::vector<std::uint8_t> mFrame;
    std::vector<std::uint8_t> mScratch;
};

#endif
