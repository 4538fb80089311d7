// SoftGeometry.h - the plane geometry kernels share: the screen's size,
// rectangles, scales, walking a line and whether a point is in a polygon.
// It needs kernel.h only, so any kernel may include it.
#ifndef QUINDLE_SOFT_GEOMETRY_H
#define QUINDLE_SOFT_GEOMETRY_H

#include "kernel.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace soft {

constexpr int kScreenWidth = 640;
constexpr int kScreenHeight = 480;
inline const ZOR_Rect kScreen(0, 0, kScreenWidth - 1, kScreenHeight - 1);

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

// Calls plot(x, y) for each point of the line from (x0, y0) to (x1, y1), both
// ends included, one step at a time (Bresenham). A line longer than anything
// drawn is cut short after 8192 points rather than walked.
template <class Plot>
void WalkLine(int x0, int y0, int x1, int y1, Plot plot)
{
    const int dx = std::abs(x1 - x0), dy = -std::abs(y1 - y0);
    const int sx = x0 < x1 ? 1 : -1, sy = y0 < y1 ? 1 : -1;
    int err = dx + dy;
    for (int guard = 0; guard < 8192; guard++) {
        plot(x0, y0);
        if (x0 == x1 && y0 == y1)
            break;
        const int e2 = 2 * err;
        if (e2 >= dy) {
            err += dy;
            x0 += sx;
        }
        if (e2 <= dx) {
            err += dx;
            y0 += sy;
        }
    }
}

// Coordinates the kernel computes with are kept within +-2^24, far outside
// anything drawn, so that no sum of them can overflow.
constexpr std::int32_t kFar = 1 << 24;
inline std::int32_t Safe(long long v)
{
    return static_cast<std::int32_t>(v < -kFar ? -kFar : v > kFar ? kFar : v);
}
inline ZOR_Point Safe(const ZOR_Point& p)
{
    return ZOR_Point(Safe(p.x), Safe(p.y));
}
inline ZOR_Rect Safe(const ZOR_Rect& r)
{
    return ZOR_Rect(Safe(r.left), Safe(r.top), Safe(r.right), Safe(r.bottom));
}

// Whether (x, y) lies in the polygon of `count` points; on an edge or a
// vertex counts as inside, and otherwise the even-odd rule decides.
inline bool PointInPolygon(int x, int y, const ZOR_Point* points, int count)
{
    if (!points || count < 1)
        return false;
    for (int i = 0; i < count; i++) {
        const ZOR_Point& a = points[i];
        const ZOR_Point& b = points[(i + 1) % count];
        const long long cross = (static_cast<long long>(b.x) - a.x) * (static_cast<long long>(y) - a.y) -
                                (static_cast<long long>(b.y) - a.y) * (static_cast<long long>(x) - a.x);
        if (cross == 0 && x >= std::min(a.x, b.x) && x <= std::max(a.x, b.x) && y >= std::min(a.y, b.y) &&
            y <= std::max(a.y, b.y))
            return true;
    }
    bool inside = false;
    for (int i = 0, j = count - 1; i < count; j = i++) {
        const ZOR_Point& a = points[i];
        const ZOR_Point& b = points[j];
        if ((a.y > y) != (b.y > y)) {
            // x of the edge at height y, compared without division.
            const long long lhs = (static_cast<long long>(x) - a.x) * (static_cast<long long>(b.y) - a.y);
            const long long rhs = (static_cast<long long>(b.x) - a.x) * (static_cast<long long>(y) - a.y);
            if ((static_cast<long long>(b.y) - a.y > 0) ? lhs < rhs : lhs > rhs)
                inside = !inside;
        }
    }
    return inside;
}

} // namespace soft

#endif
