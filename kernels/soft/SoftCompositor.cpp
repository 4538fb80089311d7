// SoftCompositor.cpp - composing the soft kernel's frame.
#include "SoftCompositor.h"

#include "SoftKernelParts.h"

#include <algorithm>
#include <cstring>

namespace {

using soft::ClampScale;
using soft::Intersect;
using soft::kScreen;

// Scaled length of `n` pixels at scale s/128; never below one pixel.
int Scaled(int n, int s)
{
    const long long v = static_cast<long long>(n) * s / 128;
    return v < 1 ? 1 : static_cast<int>(v);
}

} // namespace

SoftCompositor::SoftCompositor(SoftKernel& kernel)
    : mKernel(kernel), mFrame(static_cast<std::size_t>(kWidth) * kHeight, 0)
{
}

void SoftCompositor::ComposePlanes()
{
    std::fill(mFrame.begin(), mFrame.end(), 0);
    std::vector<Plane*> planes;
    for (auto& entry : mKernel.mPlanes)
        if (entry.second->added)
            planes.push_back(entry.second.get());
    std::sort(planes.begin(), planes.end(), [](const Plane* a, const Plane* b) {
        return a->priority != b->priority ? a->priority < b->priority : a->serial < b->serial;
    });
    for (Plane* plane : planes) {
        if (plane->hidden)
            continue;
        const int percent = mKernel.ShowStylePercent(*plane);
        if (!plane->styleActive || percent >= 100) {
            if (plane->styleActive) {
                plane->styleActive = false;
                plane->hidden = plane->styleToFrom == 1;
                if (plane->hidden)
                    continue;
            }
            DrawPlane(*plane);
            continue;
        }
        // A transition: draw the plane, then put back what lies below (or the
        // transition's colour) where the plane is not shown yet.
        mScratch = mFrame;
        DrawPlane(*plane);
        const ZOR_Rect r = Intersect(plane->rect, kScreen);
        const int w = plane->rect.right - plane->rect.left + 1, h = plane->rect.bottom - plane->rect.top + 1;
        const int kind = (plane->style - 1) % 4;
        for (int y = r.top; y <= r.bottom; y++) {
            for (int x = r.left; x <= r.right; x++) {
                const int lx = x - plane->rect.left, ly = y - plane->rect.top;
                bool revealed;
                if (kind == 0)
                    revealed = lx * 100 < w * percent;
                else if (kind == 1)
                    revealed = ly * 100 < h * percent;
                else if (kind == 2)
                    revealed = std::abs(2 * lx - w) * 100 < w * percent && std::abs(2 * ly - h) * 100 < h * percent;
                else
                    revealed = static_cast<int>((static_cast<unsigned>(lx) * 37u + static_cast<unsigned>(ly) * 91u +
                                                 (static_cast<unsigned>(lx * ly) % 7u)) % 100u) < percent;
                if (plane->styleToFrom == 1)
                    revealed = !revealed;
                if (!revealed) {
                    const std::size_t i = static_cast<std::size_t>(y) * kWidth + x;
                    mFrame[i] = plane->styleColor >= 0 ? static_cast<std::uint8_t>(plane->styleColor) : mScratch[i];
                }
            }
        }
    }
}

void SoftCompositor::DrawBitmap(const SoftBitmap& bmp, int left, int top, int scaleX, int scaleY, const ZOR_Rect* inset,
                            const ZOR_Rect& clip, bool mirror)
{
    const int sx = ClampScale(scaleX), sy = ClampScale(scaleY);
    int x0 = 0, y0 = 0, x1 = bmp.width - 1, y1 = bmp.height - 1;
    if (inset) {
        x0 = std::max(x0, inset->left);
        y0 = std::max(y0, inset->top);
        x1 = std::min(x1, inset->right);
        y1 = std::min(y1, inset->bottom);
        if (x1 < x0 || y1 < y0)
            return;
    }
    if (sx == 128 && sy == 128) {
        const ZOR_Rect area = Intersect(ZOR_Rect(left + x0, top + y0, left + x1, top + y1), clip);
        if (area.IsEmpty())
            return;
        const int w = area.right - area.left + 1;
        for (int y = area.top; y <= area.bottom; y++) {
            const int by = y - top;
            std::uint8_t* dst = &mFrame[static_cast<std::size_t>(y) * kWidth + area.left];
            const std::size_t row = static_cast<std::size_t>(by) * bmp.width;
            if (!mirror) {
                const std::uint8_t* src = &bmp.pixels[row + (area.left - left)];
                const std::uint8_t* op = &bmp.opaque[row + (area.left - left)];
                if (!std::memchr(op, 0, static_cast<std::size_t>(w))) {
                    std::memcpy(dst, src, static_cast<std::size_t>(w));
                } else {
                    // A select written as masks, so the compiler turns it into vector code.
                    for (int i = 0; i < w; i++) {
                        const std::uint8_t m = static_cast<std::uint8_t>(-(op[i] != 0));
                        dst[i] = static_cast<std::uint8_t>((src[i] & m) | (dst[i] & ~m));
                    }
                }
            } else {
                for (int i = 0; i < w; i++) {
                    const int bx = bmp.width - 1 - (area.left + i - left);
                    if (bmp.opaque[row + bx])
                        dst[i] = bmp.pixels[row + bx];
                }
            }
        }
        return;
    }
    // Scaled: every screen pixel takes the cel pixel it falls on.
    const int sl = left + static_cast<int>(static_cast<long long>(x0) * sx / 128);
    const int st = top + static_cast<int>(static_cast<long long>(y0) * sy / 128);
    const int sr = left + Scaled(x1 + 1, sx) - 1;
    const int sb = top + Scaled(y1 + 1, sy) - 1;
    const ZOR_Rect area = Intersect(ZOR_Rect(sl, st, sr, sb), clip);
    for (int y = area.top; y <= area.bottom; y++) {
        const int by = std::min(y1, static_cast<int>(static_cast<long long>(y - top) * 128 / sy));
        if (by < y0)
            continue;
        for (int x = area.left; x <= area.right; x++) {
            int bx = std::min(x1, static_cast<int>(static_cast<long long>(x - left) * 128 / sx));
            if (bx < x0)
                continue;
            if (mirror)
                bx = bmp.width - 1 - bx;
            const std::size_t i = static_cast<std::size_t>(by) * bmp.width + bx;
            if (bmp.opaque[i])
                mFrame[static_cast<std::size_t>(y) * kWidth + x] = bmp.pixels[i];
        }
    }
}

void SoftCompositor::DrawPolygon(const Polygon& poly, const Plane& plane, const ZOR_Rect& clip)
{
    const std::size_t n = poly.points.size();
    if (n < 2 || poly.color < 0 || poly.color > 255)
        return;
    const std::size_t edges = poly.closed ? n : n - 1;
    int stepCount = 0; // dashes and patterns run on along the whole outline
    const int half = (poly.thickness - 1) / 2;
    for (std::size_t e = 0; e < edges; e++) {
        int x = poly.points[e].x + plane.rect.left, y = poly.points[e].y + plane.rect.top;
        const int x2 = poly.points[(e + 1) % n].x + plane.rect.left, y2 = poly.points[(e + 1) % n].y + plane.rect.top;
        const int dx = std::abs(x2 - x), dy = -std::abs(y2 - y);
        const int sxs = x < x2 ? 1 : -1, sys = y < y2 ? 1 : -1;
        int err = dx + dy;
        // A line longer than the plane can show is cut short rather than walked.
        for (int guard = 0; guard < 8192; guard++) {
            bool on = true;
            if (poly.style == ZOR_Line::tDashed)
                on = (stepCount / 4) % 2 == 0;
            else if (poly.style == ZOR_Line::tPattern)
                on = ((poly.pattern >> (stepCount % 16)) & 1) != 0;
            stepCount++;
            if (on) {
                for (int py = y - half; py < y - half + poly.thickness; py++)
                    for (int px = x - half; px < x - half + poly.thickness; px++)
                        if (px >= clip.left && px <= clip.right && py >= clip.top && py <= clip.bottom)
                            mFrame[static_cast<std::size_t>(py) * kWidth + px] = static_cast<std::uint8_t>(poly.color);
            }
            if (x == x2 && y == y2)
                break;
            const int e2 = 2 * err;
            if (e2 >= dy) {
                err += dy;
                x += sxs;
            }
            if (e2 <= dx) {
                err += dx;
                y += sys;
            }
        }
    }
}

void SoftCompositor::DrawPlane(Plane& plane)
{
    const ZOR_Rect clip = Intersect(plane.rect, kScreen);
    if (clip.IsEmpty())
        return;
    const int ox = plane.rect.left, oy = plane.rect.top;
    if (plane.type == -1 || plane.type == -3 || plane.type == -4) {
        const std::uint8_t color = static_cast<std::uint8_t>(plane.color & 0xFF);
        for (int y = clip.top; y <= clip.bottom; y++)
            std::memset(&mFrame[static_cast<std::size_t>(y) * kWidth + clip.left], color,
                        static_cast<std::size_t>(clip.right - clip.left + 1));
    }
    if (plane.type == -4) {
        std::string error;
        int shiftX = 0, shiftY = 0; // the current picture's shift by a scroll
        if (plane.scrolling) {
            const int w = plane.rect.right - plane.rect.left + 1, h = plane.rect.bottom - plane.rect.top + 1;
            const long long steps = (mKernel.Now() - plane.scrollStart) / static_cast<std::uint32_t>(plane.scrollTicks);
            const long long total = plane.scrollStepX ? w : h;
            const long long step = std::abs(plane.scrollStepX ? plane.scrollStepX : plane.scrollStepY);
            const long long moved = std::min(total, steps * step);
            if (moved >= total) {
                mKernel.FinishScroll(plane);
            } else {
                const int sign = (plane.scrollStepX ? plane.scrollStepX : plane.scrollStepY) > 0 ? 1 : -1;
                if (plane.scrollStepX)
                    shiftX = static_cast<int>(-sign * moved);
                else
                    shiftY = static_cast<int>(-sign * moved);
                if (const SoftBitmap* next = mKernel.mResources.Picture(plane.scrollPicture, &error)) {
                    const int nx = shiftX + (plane.scrollStepX ? sign * w : 0);
                    const int ny = shiftY + (plane.scrollStepY ? sign * h : 0);
                    DrawBitmap(*next, ox + plane.picOffsetX + nx, oy + plane.picOffsetY + ny, 128, 128, nullptr, clip,
                               plane.scrollMirror != 0);
                }
            }
        }
        if (plane.picture >= 0) {
            if (const SoftBitmap* pic = mKernel.mResources.Picture(plane.picture, &error))
                DrawBitmap(*pic, ox + plane.picOffsetX + shiftX, oy + plane.picOffsetY + shiftY, 128, 128, nullptr,
                           clip, plane.mirror != 0);
            else
                mKernel.Report(error);
        }
        for (const auto& pic : plane.extraPics)
            if (const SoftBitmap* b = mKernel.mResources.Picture(pic.picture, &error))
                DrawBitmap(*b, ox + plane.picOffsetX + shiftX + pic.x, oy + plane.picOffsetY + shiftY + pic.y, 128, 128,
                           nullptr, clip, pic.mirror != 0);
    }

    // Items, polygons and the robot, lowest priority first.
    struct Drawable {
        long long priority;
        std::uint64_t serial;
        int kind; // 0 item, 1 polygon, 2 robot
        const void* what;
    };
    std::vector<Drawable> list;
    int topItem = -1;
    for (auto& entry : mKernel.mItems) {
        const Item& item = *entry.second;
        if (item.onScreen && item.planeId == plane.id) {
            const int p = mKernel.EffectivePriority(item);
            topItem = std::max(topItem, p);
            list.push_back(Drawable{p, item.serial, 0, &item});
        }
    }
    for (const auto& poly : plane.polygons)
        list.push_back(Drawable{poly.priority == -9999 ? static_cast<long long>(topItem) + 1 : poly.priority,
                                poly.serial, 1, &poly});
    if (mKernel.mRobot && mKernel.mRobot->data && mKernel.mRobot->started && !mKernel.mRobot->terminated && mKernel.mRobot->planeId == plane.id)
        list.push_back(Drawable{mKernel.mRobot->priority, mKernel.mRobot->serial, 2, mKernel.mRobot.get()});
    std::sort(list.begin(), list.end(), [](const Drawable& a, const Drawable& b) {
        return a.priority != b.priority ? a.priority < b.priority : a.serial < b.serial;
    });
    for (const auto& d : list) {
        if (d.kind == 0) {
            Item& item = *const_cast<Item*>(static_cast<const Item*>(d.what));
            const SoftBitmap* bmp = mKernel.ItemBitmap(item);
            if (!bmp)
                continue;
            const int sx = ClampScale(item.scale.scaleX), sy = ClampScale(item.scale.scaleY);
            const int left = ox + item.pos.x - static_cast<int>(static_cast<long long>(bmp->originX) * sx / 128);
            const int top = oy + item.pos.y - static_cast<int>(static_cast<long long>(bmp->originY) * sy / 128);
            DrawBitmap(*bmp, left, top, sx, sy, item.useInsetRect ? &item.insetRect : nullptr, clip, false);
        } else if (d.kind == 1) {
            DrawPolygon(*static_cast<const Polygon*>(d.what), plane, clip);
        } else {
            const std::uint32_t elapsed = mKernel.RobotElapsed();
            const SoftRobot& r = *mKernel.mRobot->data;
            const std::size_t frame =
                std::min<std::size_t>(r.frames.size() - 1, elapsed / static_cast<std::uint32_t>(r.ticksPerFrame));
            const SoftBitmap& bmp = r.frames[frame].bitmap;
            DrawBitmap(bmp, ox + mKernel.mRobot->x - bmp.originX, oy + mKernel.mRobot->y - bmp.originY, 128, 128, nullptr, clip, false);
        }
    }
}

