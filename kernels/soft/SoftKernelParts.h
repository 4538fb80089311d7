// SoftKernelParts.h - the soft kernel's private records, shared by its sources.
#ifndef QUINDLE_SOFT_KERNEL_PARTS_H
#define QUINDLE_SOFT_KERNEL_PARTS_H

#include "SoftKernel.h"

#include <algorithm>
#include <vector>

// Geometry the kernel and its compositor share.
namespace soft {

inline const ZOR_Rect kScreen(0, 0, SoftKernel::kWidth - 1, SoftKernel::kHeight - 1);

inline ZOR_Rect Intersect(const ZOR_Rect& a, const ZOR_Rect& b)
{
    return ZOR_Rect(std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
                    std::min(a.bottom, b.bottom));
}

// An item's scale as drawn: 128 is 100 percent; none or a negative one draws
// at 100 percent, and nothing grows beyond 16 times.
inline int ClampScale(int s)
{
    return s <= 0 ? kScaleFull : (s > kScaleFull * 16 ? kScaleFull * 16 : s);
}

} // namespace soft

struct SoftKernel::Item {
    KernelScreenItemRecord* record = nullptr;
    bool onScreen = false;
    std::uint64_t serial = 0;
    // The values taken over at the last AddScreenItem / UpdateScreenItem.
    std::int32_t id = 0;
    std::int32_t planeId = 0;
    KernelScreenItemSource source{};
    ZOR_Point pos{0, 0};
    ScaleInfo scale = kFullSizeScale;
    std::int32_t z = 0;
    std::int32_t priority = 0;
    std::int32_t fixedPriority = 0;
    std::int32_t useInsetRect = 0;
    ZOR_Rect insetRect{0, 0, 0, 0};
    std::string lastFault; // a bitmap fault is reported once per item
    // The bitmap it shows, worked out after each take-over (ItemBitmap); good
    // while `bitmapEpoch` is the kernel's bitmap epoch (0: not worked out).
    const SoftBitmap* bitmap = nullptr;
    std::uint64_t bitmapEpoch = 0;
    // Where the compositor keeps it in its plane's drawing order.
    enum { kNotFiled, kInOrder, kWaiting };
    int filed = kNotFiled;
    std::int32_t filedPlane = 0;
    long long filedPriority = 0;
    std::uint64_t filedSerial = 0;
};

struct SoftKernel::Polygon {
    std::int32_t id = 0;
    std::vector<ZOR_Point> points;
    int priority = 0;
    int color = 0;
    int style = 0;
    int pattern = 0;
    int thickness = 1;
    int closed = 1;
    std::uint64_t serial = 0;
};

struct SoftKernel::Plane {
    KernelPlaneRecord* record = nullptr;
    bool added = false;
    std::uint64_t serial = 0;
    std::int32_t id = 0;
    std::int32_t type = -1;
    std::int32_t color = 0;
    ZOR_Rect rect{0, 0, 639, 479};
    std::int32_t mirror = 0;
    std::int32_t picture = 0;
    std::int32_t priority = 0;
    ZOR_Point vanishingPoint{0, 0};
    struct Pic {
        int picture;
        int x;
        int y;
        int mirror;
    };
    std::vector<Pic> extraPics;
    int picOffsetX = 0; // the pictures' shift by MovePlaneItems
    int picOffsetY = 0;
    std::vector<Polygon> polygons;
    // A transition.
    bool styleActive = false;
    bool hidden = false; // a disappearing transition has ended
    int style = 0, styleSpeed = 1, styleColor = -1, styleToFrom = 0, styleDivisions = 10;
    std::uint32_t styleStart = 0;
    // A scroll.
    bool scrolling = false;
    int scrollStepX = 0, scrollStepY = 0, scrollPicture = 0, scrollMirror = 0, scrollTicks = 1;
    std::uint32_t scrollStart = 0;
};

#endif
