// Art.cpp - the demo's drawings, made of rectangles, ellipses and lines.
#include "Art.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

SoftPalette gPalette;

namespace {

struct RampEnds {
    int r0, g0, b0, r1, g1, b1;
};

// Dark and light end of every ramp, in the order of enum Ramp.
const RampEnds kRamps[15] = {
    {20, 40, 90, 190, 225, 255}, // sky
    {38, 34, 32, 225, 215, 195}, // stone
    {40, 20, 8, 215, 160, 95},   // wood
    {10, 40, 12, 150, 225, 110}, // grass
    {90, 50, 30, 255, 225, 195}, // skin
    {50, 6, 8, 255, 130, 110},   // red
    {60, 40, 0, 255, 245, 150},  // gold
    {6, 10, 55, 130, 170, 255},  // blue
    {30, 6, 42, 225, 170, 255},  // purple
    {0, 0, 0, 255, 255, 255},    // grey
    {0, 32, 34, 130, 245, 225},  // teal
    {60, 20, 60, 255, 190, 120}, // dusk
    {0, 25, 60, 90, 200, 230},   // sea
    {20, 50, 0, 200, 240, 60},   // leaf
    {70, 20, 40, 255, 200, 220}, // pink
};

} // namespace

SoftPalette MakePalette()
{
    SoftPalette p = SoftPalette::Default();
    for (int r = 0; r < 15; r++) {
        for (int s = 0; s < 16; s++) {
            const RampEnds& e = kRamps[r];
            auto mix = [s](int a, int b) { return static_cast<std::uint8_t>(a + (b - a) * s / 15); };
            p.colors[16 + r * 16 + s] = SoftColor{mix(e.r0, e.r1), mix(e.g0, e.g1), mix(e.b0, e.b1)};
        }
    }
    return p;
}

std::string PaletteText(const SoftPalette& palette)
{
    std::string text = "# index red green blue: fifteen ramps of sixteen shades from 16 on\n";
    for (int i = 16; i < 256; i++)
        text += std::to_string(i) + " " + std::to_string(palette.colors[i].r) + " " +
                std::to_string(palette.colors[i].g) + " " + std::to_string(palette.colors[i].b) + "\n";
    return text;
}

// ----- the canvas -----

Canvas::Canvas(int width, int height) : clipLeft(0), clipTop(0), clipRight(width - 1), clipBottom(height - 1)
{
    bitmap.Resize(width, height, 0, 0);
}

void Canvas::Clip(int left, int top, int right, int bottom)
{
    clipLeft = std::max(0, left);
    clipTop = std::max(0, top);
    clipRight = std::min(bitmap.width - 1, right);
    clipBottom = std::min(bitmap.height - 1, bottom);
}

void Canvas::Pixel(int x, int y, std::uint8_t color)
{
    if (x < clipLeft || y < clipTop || x > clipRight || y > clipBottom)
        return;
    const std::size_t i = static_cast<std::size_t>(y) * bitmap.width + x;
    bitmap.pixels[i] = color;
    bitmap.opaque[i] = 1;
}

void Canvas::Rect(int left, int top, int right, int bottom, std::uint8_t color)
{
    for (int y = top; y <= bottom; y++)
        for (int x = left; x <= right; x++)
            Pixel(x, y, color);
}

void Canvas::Ellipse(int cx, int cy, int rx, int ry, std::uint8_t color)
{
    for (int y = -ry; y <= ry; y++)
        for (int x = -rx; x <= rx; x++)
            if (static_cast<double>(x) * x / (rx * rx + 0.5) + static_cast<double>(y) * y / (ry * ry + 0.5) <= 1.0)
                Pixel(cx + x, cy + y, color);
}

void Canvas::Line(int x0, int y0, int x1, int y1, std::uint8_t color)
{
    const int n = std::max(std::abs(x1 - x0), std::abs(y1 - y0));
    for (int i = 0; i <= n; i++)
        Pixel(x0 + (n ? (x1 - x0) * i / n : 0), y0 + (n ? (y1 - y0) * i / n : 0), color);
}

void Canvas::VerticalRamp(int left, int top, int right, int bottom, Ramp ramp, int from, int to)
{
    for (int y = top; y <= bottom; y++) {
        const int shade = from + (to - from) * (y - top) / std::max(1, bottom - top);
        Rect(left, y, right, y, Px(ramp, shade));
    }
}

void Canvas::Bricks(int left, int top, int right, int bottom, std::uint8_t mortar)
{
    for (int y = top; y <= bottom; y += 12) {
        Rect(left, y, right, y, mortar);
        const int shift = ((y - top) / 12) % 2 ? 14 : 0;
        for (int x = left + shift; x <= right; x += 28)
            Rect(x, y, x, std::min(bottom, y + 11), mortar);
    }
}

void Canvas::Cobbles(int left, int top, int right, int bottom, std::uint8_t joint)
{
    int row = 0;
    for (int y = top, h = 8; y <= bottom; y += h, h += 2, row++) {
        Rect(left, y, right, y, joint);
        const int w = 2 * h + 8;
        for (int x = left + (row % 2) * w / 2; x <= right; x += w)
            Rect(x, y, x, std::min(bottom, y + h), joint);
    }
}

void Canvas::Arch(int left, int top, int right, int bottom, std::uint8_t color)
{
    const int half = (right - left) / 2, cx = left + half, spring = top + half;
    for (int y = top; y <= bottom; y++) {
        int w = half;
        if (y < spring) // the pointed part: two arcs meeting at the top
            w = static_cast<int>(half * std::sqrt(1.0 - std::pow(double(spring - y) / half, 2.0)) * 0.9);
        Rect(cx - w, y, cx + w, y, color);
    }
}

// ----- Pip -----

Canvas DrawPip(int loop, int cel)
{
    Canvas c(29, 56);
    const int stride[4] = {0, 3, 0, -3}; // the legs' swing through the cycle
    const int s = stride[cel];
    const std::uint8_t trousers = Px(kBlue, 4), coat = Px(kRed, 8), skin = Px(kSkin, 11);
    const std::uint8_t hair = Px(kWood, 4), boot = Px(kWood, 2);
    const int bob = cel % 2; // the body bobs on the passing steps
    if (loop < 2) {
        // Profile: legs apart along the way of walking.
        c.Line(14, 38, 14 + s * 2, 53, trousers);
        c.Line(15, 38, 15 + s * 2, 53, trousers);
        c.Line(14, 38, 14 - s * 2, 53, trousers);
        c.Line(13, 38, 13 - s * 2, 53, trousers);
        c.Rect(12 + s * 2, 53, 17 + s * 2, 55, boot);
        c.Rect(11 - s * 2, 53, 16 - s * 2, 55, boot);
    } else {
        // Front or back: the legs lift in turn.
        c.Rect(10, 38, 13, 53 - std::max(0, s), trousers);
        c.Rect(16, 38, 19, 53 - std::max(0, -s), trousers);
        c.Rect(9, 53 - std::max(0, s), 13, 55 - std::max(0, s), boot);
        c.Rect(16, 53 - std::max(0, -s), 20, 55 - std::max(0, -s), boot);
    }
    c.Rect(8, 20 - bob, 20, 39 - bob, coat);         // the coat
    c.Rect(8, 36 - bob, 20, 38 - bob, Px(kGold, 9)); // its belt
    c.Ellipse(14, 11 - bob, 7, 8, skin);             // the head
    if (loop == 3) {
        c.Ellipse(14, 9 - bob, 7, 7, hair); // seen from behind: all hair
    } else {
        c.Rect(7, 2 - bob, 21, 6 - bob, hair);
        if (loop == 2) {
            c.Pixel(11, 11 - bob, 0);
            c.Pixel(17, 11 - bob, 0);
            c.Line(12, 15 - bob, 16, 15 - bob, Px(kRed, 4));
        } else {
            const int eye = loop == 0 ? 18 : 10;
            c.Pixel(eye, 10 - bob, 0);
            c.Pixel(loop == 0 ? 22 : 6, 12 - bob, skin); // the nose
        }
    }
    // The arms swing against the legs.
    const int arm = loop < 2 ? -s : 0;
    c.Line(14, 22 - bob, 14 + arm * 2, 34 - bob, Px(kRed, 5));
    return c;
}

// ----- the courtyard's things -----

Canvas DrawGate(int cel)
{
    Canvas c(91, 131);
    const std::uint8_t iron = Px(kGrey, 9), rust = Px(kRed, 6);
    // Shut (cel 0) the bars fill the arch; each cel slides them further apart.
    const int gap = cel * 14;
    for (int x = 4; x < 88; x += 9) {
        const int bx = x < 45 ? x - gap : x + gap;
        if (bx < 0 || bx > 90)
            continue;
        const int half = 45, spring = half;
        const int dx = std::abs(bx - 45);
        const int top = dx < half ? spring - static_cast<int>(std::sqrt(double(half * half - dx * dx)) * 0.9) : spring;
        c.Rect(bx, std::max(0, top), bx + 2, 130, iron);
    }
    c.Rect(0, 60, 44 - gap, 63, rust);
    c.Rect(46 + gap, 60, 90, 63, rust);
    return c;
}

Canvas DrawBell(int swing)
{
    Canvas c(31, 40);
    const std::uint8_t brass = Px(kGold, 10), dark = Px(kGold, 5);
    c.Line(15, 0, 15 + swing * 3, 12, Px(kGrey, 6));
    const int cx = 15 + swing * 4;
    for (int y = 12; y < 34; y++) {
        const int w = 3 + (y - 12) * 9 / 22;
        c.Rect(cx - w, y, cx + w, y, y > 30 ? dark : brass);
    }
    c.Ellipse(cx, 36, 3, 3, dark);
    return c;
}

// Button icons: a speech bubble (Talk), a bell (Ring), an arrow (Back).
Canvas DrawButton(const char* label, int face)
{
    Canvas c(64, 32);
    // Faces: 0 enabled, 1 depressed (sunk, darker), 2 disabled (grey), 3 highlighted (bright rim).
    const Ramp ramp = face == 2 ? kGrey : kGold;
    const int base = face == 1 ? 6 : face == 3 ? 12 : 9;
    const std::uint8_t rim = face == 3 ? Px(kGold, 15) : Px(ramp, base - 4);
    c.Rect(0, 0, 63, 31, rim);
    c.Rect(2, 2, 61, 29, Px(ramp, base));
    c.Rect(2, face == 1 ? 2 : 27, 61, face == 1 ? 4 : 29, Px(ramp, base - 3)); // shadow on the sunk side
    const int dy = face == 1 ? 2 : 0;
    const std::uint8_t ink = face == 2 ? Px(kGrey, 7) : Px(kWood, 2);
    const std::string name = label;
    if (name == "Talk") {
        c.Ellipse(32, 14 + dy, 16, 8, ink);
        c.Ellipse(32, 14 + dy, 14, 6, Px(kGrey, 15));
        c.Line(24, 20 + dy, 20, 26 + dy, ink);
        for (int x = 25; x <= 39; x += 7)
            c.Rect(x, 13 + dy, x + 1, 15 + dy, ink);
    } else if (name == "Ring") {
        for (int y = 6; y < 22; y++)
            c.Rect(32 - 2 - (y - 6) / 2, y + dy, 32 + 2 + (y - 6) / 2, y + dy, ink);
        c.Ellipse(32, 24 + dy, 2, 2, ink);
    } else {
        c.Rect(26, 13 + dy, 46, 17 + dy, ink);
        for (int i = 0; i < 9; i++)
            c.Rect(18 + i, 15 - i + dy, 18 + i, 15 + i + dy, ink);
    }
    return c;
}

Canvas DrawTelevision(int cel)
{
    Canvas c(180, 140);
    c.Rect(0, 0, 179, 139, Px(kWood, 4));
    c.Rect(4, 4, 175, 135, Px(kWood, 6));
    c.Rect(10, 10, 169, 129, Px(kGrey, 1));
    if (cel == 1) { // a glow that says "click me"
        c.VerticalRamp(12, 12, 167, 127, kTeal, 6, 2);
        c.Ellipse(90, 70, 30, 20, Px(kTeal, 9));
    }
    return c;
}

// ----- the cursor -----

Canvas DrawArrow()
{
    Canvas c(12, 18);
    for (int y = 0; y < 12; y++)
        c.Rect(0, y, y, y, Px(kGrey, 0));
    for (int y = 1; y < 11; y++)
        c.Rect(1, y, y - 1, y, Px(kGrey, 15));
    c.Rect(4, 11, 6, 17, Px(kGrey, 0));
    c.Rect(5, 11, 5, 16, Px(kGrey, 15));
    return c;
}

Canvas DrawHourglass()
{
    Canvas c(15, 21);
    c.Rect(0, 0, 14, 1, Px(kWood, 3));
    c.Rect(0, 19, 14, 20, Px(kWood, 3));
    for (int y = 2; y < 19; y++) {
        const int w = std::abs(10 - y) * 6 / 8;
        c.Rect(7 - w, y, 7 + w, y, Px(kGrey, 13));
        if (y > 13)
            c.Rect(7 - w + 1, y, 7 + w - 1, y, Px(kGold, 11));
    }
    return c;
}

Canvas DrawBarred()
{
    Canvas c(17, 17);
    c.Ellipse(8, 8, 8, 8, Px(kRed, 7));
    c.Ellipse(8, 8, 5, 5, Px(kGrey, 15));
    c.Rect(2, 7, 14, 9, Px(kRed, 7));
    return c;
}

Canvas DrawHand()
{
    Canvas c(14, 18);
    c.Rect(4, 0, 7, 10, Px(kSkin, 13));
    c.Rect(1, 7, 12, 17, Px(kSkin, 13));
    c.Line(4, 0, 4, 10, Px(kSkin, 5));
    c.Line(1, 17, 12, 17, Px(kSkin, 5));
    return c;
}

// ----- the robot and the film -----

Canvas DrawSwallow(int wing)
{
    Canvas c(30, 20);
    const std::uint8_t blue = Px(kBlue, 2);
    c.Ellipse(15, 10, 7, 3, blue);
    c.Ellipse(21, 9, 3, 3, blue);
    c.Pixel(24, 9, Px(kRed, 9));
    c.Line(8, 10, 1, 6, blue); // forked tail
    c.Line(8, 10, 1, 14, blue);
    const int tip = wing == 0 ? 0 : wing == 1 ? 6 : wing == 2 ? 19 : 6;
    c.Line(14, 9, 10, tip, blue);
    c.Line(15, 9, 11, tip, blue);
    c.Line(16, 9, 12, tip, blue);
    return c;
}

Canvas DrawFilmFrame(int frame)
{
    Canvas c(160, 120);
    const int sunY = 110 - frame * 2;
    c.VerticalRamp(0, 0, 159, 79, kDusk, frame / 4, 6 + frame / 5);
    c.Ellipse(80, sunY, 18, 18, Px(kGold, 12 + frame / 14));
    c.VerticalRamp(0, 80, 159, 119, kSea, 4 + frame / 8, 9 + frame / 8);
    for (int y = 84; y < 120; y += 6) // glitter on the waves
        for (int x = (y * 7 + frame * 3) % 20; x < 160; x += 20)
            c.Rect(x, y, x + 4, y, Px(kGold, 8 + frame / 8));
    return c;
}
