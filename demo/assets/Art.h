// Art.h - the demo's drawing kit: a palette of ramps, a canvas with a few
// shapes, and the drawings of every cel.
#ifndef DEMO_ART_H
#define DEMO_ART_H

#include "Palette.h"
#include "SoftImage.h"

#include <string>

extern SoftPalette gPalette;
SoftPalette MakePalette();
std::string PaletteText(const SoftPalette& palette);
// The palette index of a ramp's shade, as a pixel value.
inline std::uint8_t Px(Ramp ramp, int shade)
{
    return static_cast<std::uint8_t>(Shade(ramp, shade));
}

// A bitmap being drawn, transparent where nothing was drawn.
struct Canvas {
    SoftBitmap bitmap;
    int clipLeft, clipTop, clipRight, clipBottom;
    Canvas(int width, int height);

    // Drawing stops at the clip rectangle (the whole canvas at first).
    void Clip(int left, int top, int right, int bottom);
    void Pixel(int x, int y, std::uint8_t color);
    void Rect(int left, int top, int right, int bottom, std::uint8_t color);
    void Ellipse(int cx, int cy, int rx, int ry, std::uint8_t color);
    void Line(int x0, int y0, int x1, int y1, std::uint8_t color);
    // Rows from `top` to `bottom` run through the ramp from shade `from` to `to`.
    void VerticalRamp(int left, int top, int right, int bottom, Ramp ramp, int from, int to);
    // Mortar lines of a brick wall over the rectangle.
    void Bricks(int left, int top, int right, int bottom, std::uint8_t mortar);
    // Cobblestone joints, rows narrowing toward the horizon.
    void Cobbles(int left, int top, int right, int bottom, std::uint8_t joint);
    // A pointed arch filling the rectangle.
    void Arch(int left, int top, int right, int bottom, std::uint8_t color);
};

// The cels. Loops of Pip: 0 right, 1 left, 2 toward the viewer, 3 away.
Canvas DrawPip(int loop, int cel);
Canvas DrawGate(int cel);
Canvas DrawBell(int swing);
Canvas DrawButton(const char* label, int face);
Canvas DrawTelevision(int cel);
Canvas DrawArrow();
Canvas DrawHourglass();
Canvas DrawBarred();
Canvas DrawHand();
Canvas DrawSwallow(int wing);
Canvas DrawFilmFrame(int frame);

#endif
