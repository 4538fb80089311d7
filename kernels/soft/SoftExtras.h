// SoftExtras.h - services the soft kernel offers game code beyond the kernel
// interface: memory bitmaps that the game draws into itself, and text.
//
// A memory bitmap is named by a 16-bit memory id (never 0). The kernel's
// DLLCheckValid answers non-zero for exactly the ids of live bitmaps, and a
// screen item whose source is of kind 2 shows the bitmap with that id, its
// top-left corner at the item's position. Game code keeps the id in the
// 16-bit field that the library's memory bitmap object points to.
#ifndef QUINDLE_SOFT_EXTRAS_H
#define QUINDLE_SOFT_EXTRAS_H

#include <cstdint>

class SoftKernelExtras {
public:
    virtual ~SoftKernelExtras() {}

    // A new bitmap of width x height pixels (1..640 x 1..480) filled with
    // `fillColor`; pixels of `skipColor` (0..255, or -1 for none) show what lies
    // below. Returns its memory id, or 0 when the size is out of range or all
    // 65535 ids are taken.
    virtual std::uint16_t CreateMemBitmap(int width, int height, int fillColor, int skipColor) = 0;
    // Frees the bitmap; an id that names no bitmap is ignored.
    virtual void FreeMemBitmap(std::uint16_t memId) = 0;
    // Fills the inclusive rectangle of the bitmap (clipped to it) with a colour.
    virtual void FillMemBitmap(std::uint16_t memId, int left, int top, int right, int bottom, int color) = 0;
    // Draws UTF-8 text with the kernel's font at `pixelSize` (6..96), the first
    // line's top at y; lines break at '\n' and, when maxWidth > 0, between words
    // so that no line is wider than maxWidth. Glyph pixels of at least half
    // coverage take `color`. Returns the height of the text block in pixels, or
    // -1 when the id names no bitmap or the font cannot be read.
    virtual int DrawText(std::uint16_t memId, int x, int y, const char* text, int color, int pixelSize,
                         int maxWidth) = 0;
    // Width in pixels of one line of text at that size (0 when the font cannot be read).
    virtual int TextWidth(const char* text, int pixelSize) = 0;
};

#endif
