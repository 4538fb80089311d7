// SoftCompositor.cpp - composing the soft kernel's frame.
#include "SoftCompositor.h"

#include <algorithm>
#include <cstring>

namespace {

using soft::ClampScale;
using soft::Intersect;
using soft::kScreen;

// Scaled length of `n` pixels at scale s/128; never below one pixel.
int Scaled(int n, int s)
{
    const long long v = static_cast<long long>(n) * s / kScaleFull;
    return v < 1 ? 1 : static_cast<int>(v);
}

long long Area(const ZOR_Rect& r)
{
    return r.IsEmpty() ? 0 : static_cast<long long>(r.right - r.left + 1) * (r.bottom - r.top + 1);
}

bool Contains(const ZOR_Rect& outer, const ZOR_Rect& inner)
{
    return inner.left >= outer.left && inner.top >= outer.top && inner.right <= outer.right &&
           inner.bottom <= outer.bottom;
}

// Copies a run of a row. Most runs of a cel are short, where a call of memcpy
// with a variable length costs more than the copy: two overlapping moves of a
// fixed width do it.
inline void CopyRun(std::uint8_t* dst, const std::uint8_t* src, std::size_t n)
{
    if (n >= 64) {
        std::memcpy(dst, src, n);
    } else if (n >= 16) {
        for (std::size_t i = 0; i + 16 < n; i += 16)
            std::memcpy(dst + i, src + i, 16);
        std::memcpy(dst + n - 16, src + n - 16, 16);
    } else if (n >= 8) {
        std::memcpy(dst, src, 8);
        std::memcpy(dst + n - 8, src + n - 8, 8);
    } else if (n >= 4) {
        std::memcpy(dst, src, 4);
        std::memcpy(dst + n - 4, src + n - 4, 4);
    } else {
        dst[0] = src[0];
        dst[n / 2] = src[n / 2];
        dst[n - 1] = src[n - 1];
    }
}

// Sixteen pixels at a time, as the compiler's portable vector type.
using Block = std::uint8_t __attribute__((vector_size(16)));

// Draws `rows` rows of a bitmap `width` pixels wide (16 to 16 * kBlocks) whole:
// each row is read, merged with the frame by the bitmap's mask and written
// back, 16 pixels at a time, the last block overlapping the one before when
// the width is not a multiple of 16. A row then costs the same few
// instructions whatever its runs, with no branch on their lengths. All blocks
// of a row are read before any is written, so the overlap sees the frame as it
// was (both blocks write the same pixels there).
template <int kBlocks>
void BlendRows(std::uint8_t* dst, const std::uint8_t* src, const std::uint8_t* opaque, int width, int rows)
{
    int at[kBlocks];
    for (int b = 0; b < kBlocks; b++)
        at[b] = std::min(16 * b, width - 16);
    for (int r = 0; r < rows; r++) {
        Block out[kBlocks];
        for (int b = 0; b < kBlocks; b++) {
            Block d, s, o;
            std::memcpy(&d, dst + at[b], 16);
            std::memcpy(&s, src + at[b], 16);
            std::memcpy(&o, opaque + at[b], 16);
            const Block keep = reinterpret_cast<Block>(o == 0);
            out[b] = (d & keep) | (s & ~keep);
        }
        for (int b = 0; b < kBlocks; b++)
            std::memcpy(dst + at[b], &out[b], 16);
        dst += SoftCompositor::kWidth;
        src += width;
        opaque += width;
    }
}

} // namespace

SoftCompositor::SoftCompositor(SoftServiceHost& host, SoftScene& scene, SoftResources& resources,
                               const SoftRobots& robots)
    : mHost(host), mScene(scene), mResources(resources), mRobots(robots), mFrame(static_cast<std::size_t>(kWidth) * kHeight, 0)
{
}

// ----- the drawing order -----

void SoftCompositor::Placed(Item& item)
{
    if (!item.onScreen) {
        Removed(item);
        return;
    }
    const long long priority = SoftScene::EffectivePriority(item);
    if (item.filed == Item::kInOrder && item.filedPlane == item.planeId && item.filedPriority == priority &&
        item.filedSerial == item.serial) {
        // Same place in the order; what it shows or where may have changed.
        if (Entry* e = FindEntry(mLayers[item.filedPlane], item))
            e->epoch = 0;
        return;
    }
    if (item.filed == Item::kWaiting && item.filedPlane == item.planeId)
        return; // its place is found when the order is mended
    Removed(item);
    mLayers[item.planeId].waiting.push_back(&item);
    item.filed = Item::kWaiting;
    item.filedPlane = item.planeId;
}

void SoftCompositor::Removed(Item& item)
{
    if (item.filed == Item::kInOrder) {
        Layer& layer = mLayers[item.filedPlane];
        if (Entry* e = FindEntry(layer, item)) {
            e->item = nullptr;
            layer.holes++;
        }
    } else if (item.filed == Item::kWaiting) {
        std::vector<Item*>& waiting = mLayers[item.filedPlane].waiting;
        auto found = std::find(waiting.rbegin(), waiting.rend(), &item);
        if (found != waiting.rend())
            waiting.erase(std::next(found).base());
    }
    item.filed = Item::kNotFiled;
}

SoftCompositor::Entry* SoftCompositor::FindEntry(Layer& layer, const Item& item)
{
    auto found = std::lower_bound(layer.order.begin(), layer.order.end(), item,
                                  [](const Entry& e, const Item& i) {
                                      return e.priority != i.filedPriority ? e.priority < i.filedPriority
                                                                           : e.serial < i.filedSerial;
                                  });
    if (found == layer.order.end() || found->item != &item)
        return nullptr;
    return &*found;
}

void SoftCompositor::MendOrder(Layer& layer)
{
    if (layer.holes) {
        layer.order.erase(std::remove_if(layer.order.begin(), layer.order.end(),
                                         [](const Entry& e) { return e.item == nullptr; }),
                          layer.order.end());
        layer.holes = 0;
    }
    if (layer.waiting.empty())
        return;
    const auto before = [](const Entry& a, const Entry& b) {
        return a.priority != b.priority ? a.priority < b.priority : a.serial < b.serial;
    };
    const std::size_t kept = layer.order.size();
    for (Item* item : layer.waiting) {
        item->filed = Item::kInOrder;
        item->filedPriority = SoftScene::EffectivePriority(*item);
        item->filedSerial = item->serial;
        layer.order.push_back(Entry{item->filedPriority, item->serial, item, nullptr, 0, 0, 0, kScaleFull, kScaleFull, nullptr});
    }
    layer.waiting.clear();
    std::sort(layer.order.begin() + static_cast<std::ptrdiff_t>(kept), layer.order.end(), before);
    std::inplace_merge(layer.order.begin(), layer.order.begin() + static_cast<std::ptrdiff_t>(kept),
                       layer.order.end(), before);
}

// Works out an entry's bitmap and corner again; false when it has none (the
// fault is reported, and it is tried again next time).
bool SoftCompositor::Refresh(Entry& e)
{
    Item& item = *e.item;
    const SoftBitmap* bmp = mScene.ItemBitmap(item);
    e.bitmap = bmp;
    e.epoch = item.bitmapEpoch;
    if (!bmp)
        return false;
    e.scaleX = ClampScale(item.scale.scaleX);
    e.scaleY = ClampScale(item.scale.scaleY);
    const ZOR_Point corner = SoftScene::Corner(item, *bmp);
    e.left = corner.x;
    e.top = corner.y;
    e.inset = item.useInsetRect ? &item.insetRect : nullptr;
    return true;
}

// ----- composing -----

void SoftCompositor::Fill(const ZOR_Rect& r, std::uint8_t color)
{
    if (r.IsEmpty())
        return;
    for (int y = r.top; y <= r.bottom; y++)
        std::memset(&mFrame[static_cast<std::size_t>(y) * kWidth + r.left], color,
                    static_cast<std::size_t>(r.right - r.left + 1));
}

// Fills `area` except the part of it that `hole` covers.
void SoftCompositor::FillAround(const ZOR_Rect& area, const ZOR_Rect& hole, std::uint8_t color)
{
    const ZOR_Rect h = Intersect(area, hole);
    if (h.IsEmpty()) {
        Fill(area, color);
        return;
    }
    Fill(ZOR_Rect(area.left, area.top, area.right, h.top - 1), color);
    Fill(ZOR_Rect(area.left, h.bottom + 1, area.right, area.bottom), color);
    Fill(ZOR_Rect(area.left, h.top, h.left - 1, h.bottom), color);
    Fill(ZOR_Rect(h.right + 1, h.top, area.right, h.bottom), color);
}

void SoftCompositor::ComposePlanes()
{
    std::vector<Plane*> planes;
    for (auto& entry : mScene.Planes())
        if (entry.second->added)
            planes.push_back(entry.second.get());
    std::sort(planes.begin(), planes.end(), [](const Plane* a, const Plane* b) {
        return a->priority != b->priority ? a->priority < b->priority : a->serial < b->serial;
    });
    // Transitions first, so that it is known which planes are shown whole.
    struct Pass {
        Plane* plane;
        int percent;
        bool covers; // an opaque plane shown whole: every pixel of its clip is written
        ZOR_Rect clip;
    };
    std::vector<Pass> passes;
    for (Plane* plane : planes) {
        if (plane->hidden)
            continue;
        const int percent = mScene.ShowStylePercent(*plane);
        if (plane->styleActive && percent >= 100) {
            plane->styleActive = false;
            plane->hidden = plane->styleToFrom == 1;
            if (plane->hidden)
                continue;
        }
        const ZOR_Rect clip = Intersect(plane->rect, kScreen);
        const bool opaque = plane->type == kPlaneColored || plane->type == kPlaneOpaque || plane->type == kPlanePicture;
        passes.push_back(Pass{plane, percent, opaque && !plane->styleActive && !clip.IsEmpty(), clip});
    }
    // The frame starts black only where no opaque plane will be drawn.
    ZOR_Rect widest(0, 0, -1, -1);
    for (const Pass& p : passes)
        if (p.covers && Area(p.clip) > Area(widest))
            widest = p.clip;
    FillAround(kScreen, widest, 0);

    for (std::size_t n = 0; n < passes.size(); n++) {
        Plane* plane = passes[n].plane;
        bool hidden = false; // wholly under a later opaque plane
        for (std::size_t j = n + 1; j < passes.size() && !hidden; j++)
            hidden = passes[j].covers && Contains(passes[j].clip, passes[n].clip);
        if (!plane->styleActive || hidden) {
            DrawPlane(*plane, hidden);
            continue;
        }
        // A transition: draw the plane, then put back what lies below (or the
        // transition's colour) where the plane is not shown yet.
        const int percent = passes[n].percent;
        mScratch = mFrame;
        DrawPlane(*plane, false);
        const ZOR_Rect r = Intersect(plane->rect, kScreen);
        const int w = plane->rect.right - plane->rect.left + 1, h = plane->rect.bottom - plane->rect.top + 1;
        // Styles 1, 2, 3, 4 (and again from 5): a wipe from the left, a wipe
        // from the top, a box from the middle, a dissolve.
        enum { kWipeLeft = 0, kWipeTop = 1, kBoxOut = 2 };
        const int kind = (plane->style - 1) % 4;
        for (int y = r.top; y <= r.bottom; y++) {
            for (int x = r.left; x <= r.right; x++) {
                const int lx = x - plane->rect.left, ly = y - plane->rect.top;
                bool revealed;
                if (kind == kWipeLeft)
                    revealed = lx * 100 < w * percent;
                else if (kind == kWipeTop)
                    revealed = ly * 100 < h * percent;
                else if (kind == kBoxOut)
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

void SoftCompositor::DrawBitmap(const SoftBitmap& bmp, int left, int top, int scaleX, int scaleY,
                                const ZOR_Rect* inset, const ZOR_Rect& clip, bool mirror)
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
    if (sx == kScaleFull && sy == kScaleFull) {
        const ZOR_Rect area = Intersect(ZOR_Rect(left + x0, top + y0, left + x1, top + y1), clip);
        if (area.IsEmpty())
            return;
        const std::size_t w = static_cast<std::size_t>(area.right - area.left + 1);
        std::uint8_t* const frame = mFrame.data();
        const std::uint8_t* const pixels = bmp.pixels.data();
        if (!mirror && bmp.WhollyOpaque()) {
            for (int y = area.top; y <= area.bottom; y++)
                std::memcpy(frame + static_cast<std::size_t>(y) * kWidth + area.left,
                            pixels + static_cast<std::size_t>(y - top) * bmp.width + (area.left - left), w);
            return;
        }
        // The bitmap's columns that land in the area: screen x shows column
        // x - left, or width - 1 - (x - left) when mirrored.
        const int c0 = mirror ? bmp.width - 1 - (area.right - left) : area.left - left;
        const int c1 = mirror ? bmp.width - 1 - (area.left - left) : area.right - left;
        const SoftBitmap::RunTable table = bmp.Runs();
        const bool whole = c0 == 0 && c1 == bmp.width - 1; // no run needs cutting
        // Rows above the first opaque one and below the last cost nothing.
        const int rowTop = std::max(area.top, top + table.firstRow);
        const int rowBottom = std::min(area.bottom, top + table.lastRow);
        if (whole && !mirror && bmp.width >= 16 && bmp.width <= 64 && rowTop <= rowBottom) {
            const std::size_t row = static_cast<std::size_t>(rowTop - top) * bmp.width;
            std::uint8_t* const dst = frame + static_cast<std::size_t>(rowTop) * kWidth + left;
            const int rows = rowBottom - rowTop + 1;
            switch ((bmp.width + 15) / 16) {
            case 1: BlendRows<1>(dst, pixels + row, bmp.opaque.data() + row, bmp.width, rows); break;
            case 2: BlendRows<2>(dst, pixels + row, bmp.opaque.data() + row, bmp.width, rows); break;
            case 3: BlendRows<3>(dst, pixels + row, bmp.opaque.data() + row, bmp.width, rows); break;
            default: BlendRows<4>(dst, pixels + row, bmp.opaque.data() + row, bmp.width, rows); break;
            }
            return;
        }
        for (int y = rowTop; y <= rowBottom; y++) {
            const SoftRun* run = table.runs + table.rowStart[y - top];
            const SoftRun* const end = table.runs + table.rowStart[y - top + 1];
            const std::uint8_t* src = pixels + static_cast<std::size_t>(y - top) * bmp.width;
            std::uint8_t* dst = frame + static_cast<std::size_t>(y) * kWidth + left;
            if (whole && !mirror) {
                for (; run != end; ++run)
                    CopyRun(dst + run->x, src + run->x, run->length);
                continue;
            }
            for (; run != end; ++run) {
                const int s = std::max(static_cast<int>(run->x), c0);
                const int e = std::min(static_cast<int>(run->x + run->length) - 1, c1);
                if (s > e) {
                    if (static_cast<int>(run->x) > c1)
                        break;
                    continue;
                }
                if (!mirror) {
                    CopyRun(dst + s, src + s, static_cast<std::size_t>(e - s + 1));
                } else {
                    std::uint8_t* out = dst + (bmp.width - 1 - s);
                    for (int c = s; c <= e; c++)
                        *out-- = src[c];
                }
            }
        }
        return;
    }
    // Scaled: every screen pixel takes the cel pixel it falls on.
    const int sl = left + static_cast<int>(static_cast<long long>(x0) * sx / kScaleFull);
    const int st = top + static_cast<int>(static_cast<long long>(y0) * sy / kScaleFull);
    const int sr = left + Scaled(x1 + 1, sx) - 1;
    const int sb = top + Scaled(y1 + 1, sy) - 1;
    const ZOR_Rect area = Intersect(ZOR_Rect(sl, st, sr, sb), clip);
    const SoftBitmap::RunTable table = bmp.Runs();
    for (int y = area.top; y <= area.bottom; y++) {
        const int by = std::min(y1, static_cast<int>(static_cast<long long>(y - top) * kScaleFull / sy));
        if (by < y0 || table.rowStart[by] == table.rowStart[by + 1]) // below the inset, or transparent
            continue;
        for (int x = area.left; x <= area.right; x++) {
            int bx = std::min(x1, static_cast<int>(static_cast<long long>(x - left) * kScaleFull / sx));
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
        const ZOR_Point& a = poly.points[e];
        const ZOR_Point& b = poly.points[(e + 1) % n];
        soft::WalkLine(a.x + plane.rect.left, a.y + plane.rect.top, b.x + plane.rect.left, b.y + plane.rect.top,
                       [&](int x, int y) {
                           bool on = true;
                           if (poly.style == ZOR_Line::tDashed)
                               on = (stepCount / 4) % 2 == 0;
                           else if (poly.style == ZOR_Line::tPattern)
                               on = ((poly.pattern >> (stepCount % 16)) & 1) != 0;
                           stepCount++;
                           if (!on)
                               return;
                           for (int py = y - half; py < y - half + poly.thickness; py++)
                               for (int px = x - half; px < x - half + poly.thickness; px++)
                                   if (px >= clip.left && px <= clip.right && py >= clip.top && py <= clip.bottom)
                                       mFrame[static_cast<std::size_t>(py) * kWidth + px] =
                                           static_cast<std::uint8_t>(poly.color);
                       });
    }
}

// Draws a plane; a hidden one (wholly under a later opaque plane) is only
// brought up to date: its scroll advances and missing pictures and bitmaps are
// reported as when drawn.
void SoftCompositor::DrawPlane(Plane& plane, bool hidden)
{
    const ZOR_Rect clip = Intersect(plane.rect, kScreen);
    if (clip.IsEmpty())
        return;
    const int ox = plane.rect.left, oy = plane.rect.top;
    if (plane.type == kPlaneColored || plane.type == kPlaneOpaque) {
        if (!hidden)
            Fill(clip, static_cast<std::uint8_t>(plane.color & 0xFF));
    } else if (plane.type == kPlanePicture) {
        // The pictures to draw, in order: the one scrolling in, the current
        // one, those added to it.
        struct Shown {
            const SoftBitmap* bmp;
            int left, top;
            bool mirror;
        };
        std::vector<Shown> shown;
        const auto show = [&](const SoftBitmap* bmp, int left, int top, bool mirror) {
            shown.push_back(Shown{bmp, left, top, mirror});
        };
        std::string error;
        int shiftX = 0, shiftY = 0; // the current picture's shift by a scroll
        if (plane.scrolling) {
            const int w = plane.rect.right - plane.rect.left + 1, h = plane.rect.bottom - plane.rect.top + 1;
            const long long steps = (mHost.Now() - plane.scrollStart) / static_cast<std::uint32_t>(plane.scrollTicks);
            const long long total = plane.scrollStepX ? w : h;
            const long long step = std::abs(plane.scrollStepX ? plane.scrollStepX : plane.scrollStepY);
            const long long moved = std::min(total, steps * step);
            if (moved >= total) {
                mScene.FinishScroll(plane);
            } else {
                const int sign = (plane.scrollStepX ? plane.scrollStepX : plane.scrollStepY) > 0 ? 1 : -1;
                if (plane.scrollStepX)
                    shiftX = static_cast<int>(-sign * moved);
                else
                    shiftY = static_cast<int>(-sign * moved);
                if (const SoftBitmap* next = mResources.Picture(plane.scrollPicture, &error)) {
                    const int nx = shiftX + (plane.scrollStepX ? sign * w : 0);
                    const int ny = shiftY + (plane.scrollStepY ? sign * h : 0);
                    show(next, ox + plane.picOffsetX + nx, oy + plane.picOffsetY + ny, plane.scrollMirror != 0);
                }
            }
        }
        if (plane.picture >= 0) {
            if (const SoftBitmap* pic = mResources.Picture(plane.picture, &error))
                show(pic, ox + plane.picOffsetX + shiftX, oy + plane.picOffsetY + shiftY, plane.mirror != 0);
            else
                mHost.Report(error);
        }
        for (const auto& pic : plane.extraPics)
            if (const SoftBitmap* b = mResources.Picture(pic.picture, &error))
                show(b, ox + plane.picOffsetX + shiftX + pic.x, oy + plane.picOffsetY + shiftY + pic.y,
                     pic.mirror != 0);
        if (!hidden) {
            // The plane's colour shows only around the widest wholly opaque picture.
            ZOR_Rect covered(0, 0, -1, -1);
            for (const Shown& s : shown) {
                const ZOR_Rect r = Intersect(
                    ZOR_Rect(s.left, s.top, s.left + s.bmp->width - 1, s.top + s.bmp->height - 1), clip);
                if (s.bmp->WhollyOpaque() && Area(r) > Area(covered))
                    covered = r;
            }
            FillAround(clip, covered, static_cast<std::uint8_t>(plane.color & 0xFF));
            for (const Shown& s : shown)
                DrawBitmap(*s.bmp, s.left, s.top, kScaleFull, kScaleFull, nullptr, clip, s.mirror);
        }
    }

    // Items, polygons and the robot, lowest priority first: the items in the
    // order the plane keeps, the few others sorted in beside them.
    auto layerFound = mLayers.find(plane.id);
    Layer* layer = layerFound == mLayers.end() ? nullptr : &layerFound->second;
    if (layer)
        MendOrder(*layer);
    struct Other {
        long long priority;
        std::uint64_t serial;
        const Polygon* poly; // null: the robot
    };
    std::vector<Other> others;
    const SoftRobots::Robot* robot = mRobots.Current();
    const bool robotShown =
        robot && robot->data && robot->started && !robot->terminated && robot->planeId == plane.id;
    if (!hidden) {
        const long long topItem =
            layer && !layer->order.empty() ? std::max(-1LL, layer->order.back().priority) : -1LL;
        for (const auto& poly : plane.polygons)
            others.push_back(Other{poly.priority == kPriorityOnTop ? topItem + 1 : poly.priority, poly.serial, &poly});
        if (robotShown)
            others.push_back(Other{robot->priority, robot->serial, nullptr});
        std::sort(others.begin(), others.end(), [](const Other& a, const Other& b) {
            return a.priority != b.priority ? a.priority < b.priority : a.serial < b.serial;
        });
    }
    const std::uint64_t epoch = mScene.BitmapEpoch();
    const std::size_t items = layer ? layer->order.size() : 0;
    std::size_t next = 0;
    for (std::size_t i = 0; i <= items; i++) {
        Entry* e = i < items ? &layer->order[i] : nullptr;
        // The others that come before this item (all that are left after the last).
        while (next < others.size() &&
               (!e || others[next].priority < e->priority ||
                (others[next].priority == e->priority && others[next].serial < e->serial))) {
            const Other& o = others[next++];
            if (o.poly) {
                DrawPolygon(*o.poly, plane, clip);
            } else {
                const std::uint32_t elapsed = mRobots.Elapsed();
                const SoftRobot& r = *robot->data;
                const std::size_t frame = std::min<std::size_t>(
                    r.frames.size() - 1, elapsed / static_cast<std::uint32_t>(r.ticksPerFrame));
                const SoftBitmap& bmp = r.frames[frame].bitmap;
                DrawBitmap(bmp, ox + robot->x - bmp.originX, oy + robot->y - bmp.originY, kScaleFull, kScaleFull, nullptr, clip,
                           false);
            }
        }
        if (!e)
            break;
        if (e->epoch != epoch && !Refresh(*e))
            continue;
        if (!hidden)
            DrawBitmap(*e->bitmap, ox + e->left, oy + e->top, e->scaleX, e->scaleY, e->inset, clip, false);
    }
}
