// glrect.h - GLRect, a rectangle with inclusive edges that holds its own four
// edges and converts to and from the kernel's ZOR_Rect field by field.
#ifndef QUINDLE_GLRECT_H
#define QUINDLE_GLRECT_H

#include "gldefs.h"
#include "glpoint.h"
#include "kernel.h"

#include <new>

class QUINDLE_API GLRect {
public:
    GL_DECLARE_ALLOCATION("include/glrect.h")

    // The whole 640 by 480 screen: (0, 0, 639, 479).
    GLRect();
    GLRect(const GLRect& rect);
    GLRect(const ZOR_Rect& rect);
    GLRect& operator=(const GLRect& rect);
    GLRect& operator=(const ZOR_Rect& rect);

    // Sets the four edges in that order, unchecked.
    void SetRect(int iLeft, int iTop, int iRight, int iBottom);

    // 1 when the point lies inside, edges included, else 0.
    int OnMe(int x, int y) const;
    int OnMe(const GLPoint& point) const;
    // 1 when the two rectangles share at least one pixel, else 0.
    int OnMe(const GLRect& other) const;

    // A new ZOR_Rect with these edges from the library's allocator; the caller
    // owns it and gives it back with GLFreeMemory. Null when no block was given.
    ZOR_Rect* MakeZOR() const
    {
        ZOR_Rect* pRect = static_cast<ZOR_Rect*>(GL_ALLOC(sizeof(ZOR_Rect)));
        if (pRect) {
            new (pRect) ZOR_Rect();
            pRect->left = left;
            pRect->top = top;
            pRect->right = right;
            pRect->bottom = bottom;
        }
        return pRect;
    }

    std::int32_t left;
    std::int32_t top;
    std::int32_t right;
    std::int32_t bottom;
};

#endif
