// Overlay.cpp - see Overlay.h.
#include "Overlay.h"

#include "glcast.h"
#include "glcel.h"
#include "gldll.h"
#include "glevent.h"
#include "glgame.h"
#include "glmover.h"
#include "glplane.h"
#include "glplanes.h"
#include "glpoly.h"
#include "glrmmgr.h"
#include "glwalk.h"
#include "gluser.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr int kW = SoftKernel::kWidth;
constexpr int kH = SoftKernel::kHeight;
constexpr int kLine = 9;    // text line height: 7 rows of glyph, a row of band above and below
constexpr int kAdvance = 6; // 5 columns of glyph and a space

// A 5x7 font for the printable ASCII characters 32..126: five columns per
// glyph, the lowest bit the top row.
const std::uint8_t kFont[95][5] = {
    {0x00, 0x00, 0x00, 0x00, 0x00}, {0x00, 0x00, 0x5F, 0x00, 0x00}, {0x00, 0x07, 0x00, 0x07, 0x00},
    {0x14, 0x7F, 0x14, 0x7F, 0x14}, {0x24, 0x2A, 0x7F, 0x2A, 0x12}, {0x23, 0x13, 0x08, 0x64, 0x62},
    {0x36, 0x49, 0x55, 0x22, 0x50}, {0x00, 0x05, 0x03, 0x00, 0x00}, {0x00, 0x1C, 0x22, 0x41, 0x00},
    {0x00, 0x41, 0x22, 0x1C, 0x00}, {0x08, 0x2A, 0x1C, 0x2A, 0x08}, {0x08, 0x08, 0x3E, 0x08, 0x08},
    {0x00, 0x50, 0x30, 0x00, 0x00}, {0x08, 0x08, 0x08, 0x08, 0x08}, {0x00, 0x60, 0x60, 0x00, 0x00},
    {0x20, 0x10, 0x08, 0x04, 0x02}, {0x3E, 0x51, 0x49, 0x45, 0x3E}, {0x00, 0x42, 0x7F, 0x40, 0x00},
    {0x42, 0x61, 0x51, 0x49, 0x46}, {0x21, 0x41, 0x45, 0x4B, 0x31}, {0x18, 0x14, 0x12, 0x7F, 0x10},
    {0x27, 0x45, 0x45, 0x45, 0x39}, {0x3C, 0x4A, 0x49, 0x49, 0x30}, {0x01, 0x71, 0x09, 0x05, 0x03},
    {0x36, 0x49, 0x49, 0x49, 0x36}, {0x06, 0x49, 0x49, 0x29, 0x1E}, {0x00, 0x36, 0x36, 0x00, 0x00},
    {0x00, 0x56, 0x36, 0x00, 0x00}, {0x08, 0x14, 0x22, 0x41, 0x00}, {0x14, 0x14, 0x14, 0x14, 0x14},
    {0x00, 0x41, 0x22, 0x14, 0x08}, {0x02, 0x01, 0x51, 0x09, 0x06}, {0x32, 0x49, 0x79, 0x41, 0x3E},
    {0x7E, 0x11, 0x11, 0x11, 0x7E}, {0x7F, 0x49, 0x49, 0x49, 0x36}, {0x3E, 0x41, 0x41, 0x41, 0x22},
    {0x7F, 0x41, 0x41, 0x22, 0x1C}, {0x7F, 0x49, 0x49, 0x49, 0x41}, {0x7F, 0x09, 0x09, 0x09, 0x01},
    {0x3E, 0x41, 0x49, 0x49, 0x7A}, {0x7F, 0x08, 0x08, 0x08, 0x7F}, {0x00, 0x41, 0x7F, 0x41, 0x00},
    {0x20, 0x40, 0x41, 0x3F, 0x01}, {0x7F, 0x08, 0x14, 0x22, 0x41}, {0x7F, 0x40, 0x40, 0x40, 0x40},
    {0x7F, 0x02, 0x0C, 0x02, 0x7F}, {0x7F, 0x04, 0x08, 0x10, 0x7F}, {0x3E, 0x41, 0x41, 0x41, 0x3E},
    {0x7F, 0x09, 0x09, 0x09, 0x06}, {0x3E, 0x41, 0x51, 0x21, 0x5E}, {0x7F, 0x09, 0x19, 0x29, 0x46},
    {0x46, 0x49, 0x49, 0x49, 0x31}, {0x01, 0x01, 0x7F, 0x01, 0x01}, {0x3F, 0x40, 0x40, 0x40, 0x3F},
    {0x1F, 0x20, 0x40, 0x20, 0x1F}, {0x3F, 0x40, 0x38, 0x40, 0x3F}, {0x63, 0x14, 0x08, 0x14, 0x63},
    {0x07, 0x08, 0x70, 0x08, 0x07}, {0x61, 0x51, 0x49, 0x45, 0x43}, {0x00, 0x7F, 0x41, 0x41, 0x00},
    {0x02, 0x04, 0x08, 0x10, 0x20}, {0x00, 0x41, 0x41, 0x7F, 0x00}, {0x04, 0x02, 0x01, 0x02, 0x04},
    {0x40, 0x40, 0x40, 0x40, 0x40}, {0x00, 0x01, 0x02, 0x04, 0x00}, {0x20, 0x54, 0x54, 0x54, 0x78},
    {0x7F, 0x48, 0x44, 0x44, 0x38}, {0x38, 0x44, 0x44, 0x44, 0x20}, {0x38, 0x44, 0x44, 0x48, 0x7F},
    {0x38, 0x54, 0x54, 0x54, 0x18}, {0x08, 0x7E, 0x09, 0x01, 0x02}, {0x0C, 0x52, 0x52, 0x52, 0x3E},
    {0x7F, 0x08, 0x04, 0x04, 0x78}, {0x00, 0x44, 0x7D, 0x40, 0x00}, {0x20, 0x40, 0x44, 0x3D, 0x00},
    {0x7F, 0x10, 0x28, 0x44, 0x00}, {0x00, 0x41, 0x7F, 0x40, 0x00}, {0x7C, 0x04, 0x18, 0x04, 0x78},
    {0x7C, 0x08, 0x04, 0x04, 0x78}, {0x38, 0x44, 0x44, 0x44, 0x38}, {0x7C, 0x14, 0x14, 0x14, 0x08},
    {0x08, 0x14, 0x14, 0x18, 0x7C}, {0x7C, 0x08, 0x04, 0x04, 0x08}, {0x48, 0x54, 0x54, 0x54, 0x20},
    {0x04, 0x3F, 0x44, 0x40, 0x20}, {0x3C, 0x40, 0x40, 0x20, 0x7C}, {0x1C, 0x20, 0x40, 0x20, 0x1C},
    {0x3C, 0x40, 0x30, 0x40, 0x3C}, {0x44, 0x28, 0x10, 0x28, 0x44}, {0x0C, 0x50, 0x50, 0x50, 0x3C},
    {0x44, 0x64, 0x54, 0x4C, 0x44}, {0x00, 0x08, 0x36, 0x41, 0x00}, {0x00, 0x00, 0x7F, 0x00, 0x00},
    {0x00, 0x41, 0x36, 0x08, 0x00}, {0x08, 0x04, 0x08, 0x10, 0x08},
};

std::string Format(const char* format, ...) __attribute__((format(gnu_printf, 1, 2)));
std::string Format(const char* format, ...)
{
    char buffer[256];
    va_list args;
    va_start(args, format);
    std::vsnprintf(buffer, sizeof buffer, format, args);
    va_end(args);
    return buffer;
}


// What a target is called in the pointer's list.
std::string TargetName(GLTarget* target, int place)
{
    if (auto* cel = dynamic_cast<GLCel*>(target))
        return Format("cel %d v%d/%d/%d", static_cast<int>(cel->GetId()), cel->GetView(), cel->GetLoop(),
                      cel->GetCel());
    if (dynamic_cast<GLPoly*>(target))
        return Format("poly %d", place);
    return Format("target %d", place);
}

} // namespace

// The set is typed for targets but may hold any object (the cast takes
// GLObjects and keeps their address), so a member is read as the object it is
// and asked what it is.
GLTarget* EventMember(const GLSetAsArray<GLTarget>* events, int i)
{
    return dynamic_cast<GLTarget*>(static_cast<GLObject*>(static_cast<void*>(events->At(i))));
}

PlayerOverlay::PlayerOverlay() : mFrame(static_cast<std::size_t>(kW) * kH, 0) {}

void PlayerOverlay::PickColors(const SoftPalette& p)
{
    mColor = Colors{p.Nearest(0, 0, 0),   p.Nearest(255, 255, 255), p.Nearest(255, 255, 0), p.Nearest(0, 255, 255),
                    p.Nearest(255, 0, 255), p.Nearest(0, 255, 0),   p.Nearest(255, 140, 0), p.Nearest(255, 0, 0)};
}

const std::uint8_t* PlayerOverlay::Draw(SoftKernel& kernel, const Status& status)
{
    // What the overlay asks of the library (a walkable area it reads, a point
    // it copies) goes through the library's kernel, which may be a tape of
    // the game's calls: while the overlay draws, the library's kernel is the
    // soft kernel itself, so nothing of the overlay's reaches the game's.
    struct KernelSwap {
        KernelServices* game = ::kernel;
        ~KernelSwap() { ::kernel = game; }
    } swap;
    ::kernel = &kernel;
    std::copy(kernel.Frame(), kernel.Frame() + mFrame.size(), mFrame.begin());
    PickColors(kernel.Palette());
    kernel.Inspect(&mPlanes);
    mEventItems.clear();
    DrawPlanes();
    if (theGame) {
        DrawWalkArea(kernel);
        DrawLibrary();
    }
    DrawPointer(kernel);
    DrawStatus(kernel, status);
    return mFrame.data();
}

// ----- what is drawn -----

void PlayerOverlay::DrawPlanes()
{
    // The items that take events are the screen items among the targets of
    // the planes' event sets.
    if (theGame) {
        const GLSetAsArray<AbsGLPlane>& planes = theGame->mpPlaneManager->moPlanes;
        for (int i = 0; i < planes.NumElements(); i++) {
            const GLSetAsArray<GLTarget>* events = planes.At(i)->GetCast()->GetEventSet();
            for (int j = 0; j < events->NumElements(); j++)
                if (auto* item = dynamic_cast<GLScreenItem*>(EventMember(events, j)))
                    mEventItems.push_back(item->GetId());
        }
    }
    for (const auto& plane : mPlanes)
        Box(plane.rect, mColor.magenta);
    for (const auto& plane : mPlanes) {
        for (const auto& item : plane.items) {
            if (!item.hasRect)
                continue;
            const bool events =
                std::find(mEventItems.begin(), mEventItems.end(), item.id) != mEventItems.end();
            const std::uint8_t color = events ? mColor.yellow : mColor.cyan;
            Box(item.rect, color, !events);
            const std::string what = item.source.kind == kSourceMemBitmap
                                         ? Format("%d bmp%d p%d", static_cast<int>(item.id), item.source.memId,
                                                  item.priority)
                                         : Format("%d v%u/%d/%d p%d", static_cast<int>(item.id), item.source.view,
                                                  item.source.loop, item.source.cel, item.priority);
            // Above the box where there is room, else inside its top.
            const int y = item.rect.top - kLine >= kLine ? item.rect.top - kLine : item.rect.top + 1;
            Text(std::max(item.rect.left, 0), y, what, color);
        }
    }
    // Planes' labels stand in a column at their top right, below the status
    // line, over the items' labels.
    for (std::size_t i = 0; i < mPlanes.size(); i++) {
        const SoftKernel::InspectedPlane& plane = mPlanes[i];
        const std::string label = Format("plane %d p%d%s", static_cast<int>(plane.id), plane.priority,
                                         plane.hidden ? " hidden" : "");
        const int x = std::min(plane.rect.right, kW - 1) - static_cast<int>(label.size()) * kAdvance - 2;
        Text(std::max(x, 0), std::max(plane.rect.top, 0) + kLine + 1 + static_cast<int>(i) * kLine, label,
             mColor.magenta);
    }
}

void PlayerOverlay::DrawLibrary()
{
    const GLSetAsArray<AbsGLPlane>& planes = theGame->mpPlaneManager->moPlanes;
    for (int i = 0; i < planes.NumElements(); i++) {
        const ZOR_Rect& at = planes.At(i)->GetRect();
        const GLSetAsArray<GLTarget>* events = planes.At(i)->GetCast()->GetEventSet();
        for (int j = 0; j < events->NumElements(); j++) {
            const auto* poly = dynamic_cast<const GLPoly*>(EventMember(events, j));
            if (!poly || poly->GetPointCount() < 1)
                continue;
            const ZOR_Point* p = poly->GetPoints();
            const int n = poly->GetPointCount();
            for (int k = 0; k < n; k++) {
                const ZOR_Point& a = p[k];
                const ZOR_Point& b = p[(k + 1) % n];
                Line(at.left + a.x, at.top + a.y, at.left + b.x, at.top + b.y, mColor.green);
            }
            Text(at.left + p[0].x + 2, at.top + p[0].y + 2, Format("poly %d", j), mColor.green);
        }
    }

    // Movers: the actor's line to where the leg ends, then a path's points to come.
    const GLSetAsArray<GLObject>& objects = *theGame->mpObjects;
    for (int i = 0; i < objects.NumElements(); i++) {
        const auto* mover = dynamic_cast<const GLMover*>(objects.At(i));
        if (!mover || !mover->IsMoving() || !mover->GetDest() || !mover->GetActor())
            continue;
        GLCel* actor = mover->GetActor();
        const AbsGLPlane* plane = static_cast<GLScreenItem*>(actor)->GetPlane();
        const int ox = plane ? plane->GetRect().left : 0, oy = plane ? plane->GetRect().top : 0;
        int x = ox + actor->GetPos().GetX(), y = oy + actor->GetPos().GetY();
        int dx = ox + mover->GetDest()->GetX(), dy = oy + mover->GetDest()->GetY();
        Line(x, y, dx, dy, mColor.orange);
        Mark(dx, dy, mColor.orange);
        if (const auto* path = dynamic_cast<const GLPath*>(mover)) {
            const GLListAsArray<GLPoint>* points = path->GetPoints();
            for (int k = path->GetCurIndex() + 1; points && k < points->NumElements(); k++) {
                const int nx = ox + points->At(k)->GetX(), ny = oy + points->At(k)->GetY();
                Line(dx, dy, nx, ny, mColor.orange, true);
                Mark(nx, ny, mColor.orange);
                dx = nx;
                dy = ny;
            }
        }
    }
}

// The room's walkable area is the one its game folder names; it lies in the
// top plane's coordinates, where the room's actors walk.
void PlayerOverlay::DrawWalkArea(SoftKernel& kernel)
{
    const GLRoomManager* rooms = nullptr;
    for (int i = 0; i < theGame->mpObjects->NumElements() && !rooms; i++)
        rooms = dynamic_cast<const GLRoomManager*>(theGame->mpObjects->At(i));
    if (!rooms || !rooms->mLoaded)
        return;
    if (mWalkRoom != rooms->mRoomNumber) {
        mWalkRoom = rooms->mRoomNumber;
        mWalk.clear();
        const std::string path = kernel.Resources().PathOf("walk/" + std::to_string(mWalkRoom) + ".txt");
        // Copied out and given back at once: the overlay keeps nothing of the
        // library's beyond the frame.
        if (GLWalkArea* area = GLWalkArea::Load(path.c_str())) {
            for (int k = 0; k < area->GetPolygonCount(); k++)
                mWalk.emplace_back(area->GetPoints(k), area->GetPoints(k) + area->GetPointCount(k));
            mWalkClearance = area->GetClearance();
            delete area;
        }
    }
    const GLSetAsArray<AbsGLPlane>& planes = theGame->mpPlaneManager->moPlanes;
    if (mWalk.empty() || planes.NumElements() == 0)
        return;
    const ZOR_Rect& at = planes.At(0)->GetRect();
    for (std::size_t k = 0; k < mWalk.size(); k++) {
        const std::vector<ZOR_Point>& p = mWalk[k];
        for (std::size_t i = 0; i < p.size(); i++)
            Line(at.left + p[i].x, at.top + p[i].y, at.left + p[(i + 1) % p.size()].x,
                 at.top + p[(i + 1) % p.size()].y, k == 0 ? mColor.green : mColor.red);
    }
    Text(at.left + mWalk[0][0].x + 2, at.top + mWalk[0][0].y + 2,
         Format("walk %lld c%d", mWalkRoom, mWalkClearance), mColor.green);
}

void PlayerOverlay::DrawPointer(SoftKernel& kernel)
{
    const ZOR_Point at = kernel.CursorPos();
    std::string where = Format("pointer %d,%d", static_cast<int>(at.x), static_cast<int>(at.y));
    std::string under;
    if (theGame) {
        // The dispatch's order: hogs take every event alone; else the planes
        // whose rectangle holds the point, top first, each offering it to its
        // event set in order, localised to the plane.
        const int hogs = theGame->mpUser->mpHogs->NumElements();
        const GLSetAsArray<AbsGLPlane>& planes = theGame->mpPlaneManager->moPlanes;
        bool first = true;
        for (int i = 0; i < planes.NumElements(); i++) {
            AbsGLPlane* plane = planes.At(i);
            if (!plane->OnMe(GLPoint(at.x, at.y)))
                continue;
            const int lx = at.x - plane->GetRect().left, ly = at.y - plane->GetRect().top;
            if (first)
                where += Format(" = %d,%d in plane %d", lx, ly, static_cast<int>(plane->GetId()));
            first = false;
            under += Format("%s%d:", under.empty() ? "" : "  ", static_cast<int>(plane->GetId()));
            const std::size_t before = under.size();
            const GLSetAsArray<GLTarget>* events = plane->GetCast()->GetEventSet();
            for (int j = 0; j < events->NumElements(); j++) {
                GLTarget* target = EventMember(events, j);
                int hit;
                if (!target) {
                    hit = FALSE; // an object without a hit test: only its own handler knows
                } else if (auto* poly = dynamic_cast<GLPoly*>(target)) {
                    // The kernel's own test, asked of the soft kernel itself so
                    // that no call reaches the game's kernel.
                    std::vector<ZOR_Point> points(poly->GetPoints(), poly->GetPoints() + poly->GetPointCount());
                    hit = kernel.PointInPolygon(lx, ly, points.data(), poly->GetPointCount());
                } else {
                    hit = target->OnMe(GLPoint(lx, ly));
                }
                if (hit)
                    under += " " + TargetName(target, j);
            }
            if (under.size() == before)
                under += " -";
        }
        if (hogs)
            under = Format("%d hog%s take%s every event", hogs, hogs == 1 ? "" : "s", hogs == 1 ? "s" : "");
    } else {
        for (auto it = mPlanes.rbegin(); it != mPlanes.rend(); ++it)
            if (at.x >= it->rect.left && at.x <= it->rect.right && at.y >= it->rect.top && at.y <= it->rect.bottom)
                under += Format("%s%d", under.empty() ? "" : " ", static_cast<int>(it->id));
    }
    // A cross at the pointer: while the game is paused its own cursor stays
    // where the last frame drew it.
    Line(at.x - 6, at.y, at.x - 2, at.y, mColor.red);
    Line(at.x + 2, at.y, at.x + 6, at.y, mColor.red);
    Line(at.x, at.y - 6, at.x, at.y - 2, mColor.red);
    Line(at.x, at.y + 2, at.x, at.y + 6, mColor.red);
    Text(0, kH - 2 * kLine, where, mColor.white);
    Text(0, kH - kLine, "under: " + (under.empty() ? std::string("nothing") : under), mColor.white);
}

void PlayerOverlay::DrawStatus(SoftKernel& kernel, const Status& status)
{
    const std::uint32_t tick = kernel.GetTicks();
    std::size_t items = 0;
    for (const auto& plane : mPlanes)
        items += plane.items.size();
    std::string line = Format("tick %u  %u:%02u.%02u  %.1f ms  planes %zu  items %zu", tick, tick / 3600,
                              tick / 60 % 60, tick % 60 * 100 / 60, status.frameMillis, mPlanes.size(), items);
    if (theGame)
        line += Format("  objects %d  hogs %d", theGame->mpObjects->NumElements(),
                       theGame->mpUser->mpHogs->NumElements());
    if (status.paused)
        line += "  PAUSED (F2 go on, F3 step)";
    Text(0, 0, line, status.paused ? mColor.yellow : mColor.white);
}

// ----- drawing -----

void PlayerOverlay::Pixel(int x, int y, std::uint8_t color)
{
    if (x >= 0 && x < kW && y >= 0 && y < kH)
        mFrame[static_cast<std::size_t>(y) * kW + x] = color;
}

void PlayerOverlay::Line(int x0, int y0, int x1, int y1, std::uint8_t color, bool dashed)
{
    // Far-off ends are pulled in so that a stray point costs no long walk.
    const auto pull = [](int v) { return std::clamp(v, -kW, 2 * kW); };
    x0 = pull(x0), y0 = pull(y0), x1 = pull(x1), y1 = pull(y1);
    if (!dashed && (x0 == x1 || y0 == y1)) {
        // A box's edge: two runs, the shadow a pixel down and right. The same
        // pixels as the walk below, a good deal cheaper.
        Fill(std::min(x0, x1) + 1, std::min(y0, y1) + 1, std::max(x0, x1) + 1, std::max(y0, y1) + 1, mColor.black);
        Fill(std::min(x0, x1), std::min(y0, y1), std::max(x0, x1), std::max(y0, y1), color);
        return;
    }
    // The pulled-in ends keep every walk well below the walker's cut.
    int n = 0;
    soft::WalkLine(x0, y0, x1, y1, [&](int x, int y) {
        if (!dashed || n / 4 % 2 == 0) {
            Pixel(x + 1, y + 1, mColor.black);
            Pixel(x, y, color);
        }
        n++;
    });
}

void PlayerOverlay::Box(const ZOR_Rect& r, std::uint8_t color, bool dashed)
{
    Line(r.left, r.top, r.right, r.top, color, dashed);
    Line(r.right, r.top, r.right, r.bottom, color, dashed);
    Line(r.right, r.bottom, r.left, r.bottom, color, dashed);
    Line(r.left, r.bottom, r.left, r.top, color, dashed);
}

void PlayerOverlay::Fill(int left, int top, int right, int bottom, std::uint8_t color)
{
    left = std::max(left, 0), top = std::max(top, 0);
    right = std::min(right, kW - 1), bottom = std::min(bottom, kH - 1);
    for (int y = top; y <= bottom && left <= right; y++)
        std::fill_n(&mFrame[static_cast<std::size_t>(y) * kW + left], right - left + 1, color);
}

void PlayerOverlay::Mark(int x, int y, std::uint8_t color)
{
    Fill(x - 2, y - 2, x + 2, y + 2, mColor.black);
    Fill(x - 1, y - 1, x + 1, y + 1, color);
}

int PlayerOverlay::Text(int x, int y, const std::string& text, std::uint8_t color)
{
    const int width = static_cast<int>(text.size()) * kAdvance + 1;
    x = std::min(x, kW - width);
    y = std::clamp(y, 0, kH - kLine);
    Fill(x, y, x + width - 1, y + kLine - 1, mColor.black);
    for (std::size_t i = 0; i < text.size(); i++) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        const std::uint8_t* glyph = kFont[c >= 32 && c < 127 ? c - 32 : '?' - 32];
        const int gx = x + 1 + static_cast<int>(i) * kAdvance;
        const bool inside = gx >= 0 && gx + 5 <= kW; // the band is always inside vertically
        for (int col = 0; col < 5; col++)
            for (int row = 0; row < 7; row++)
                if (glyph[col] >> row & 1) {
                    if (inside)
                        mFrame[static_cast<std::size_t>(y + 1 + row) * kW + gx + col] = color;
                    else
                        Pixel(gx + col, y + 1 + row, color);
                }
    }
    return x + width;
}
