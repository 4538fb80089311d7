// glpoint.h - GLPoint, a point that owns its kernel point.
//
// The ZOR_Point lives in a block of its own from the library's allocator, so
// that it can be handed to the kernel as it is (GetZORPoint). A GLPoint never
// shares that block: copying makes a new one, assignment copies the two
// coordinates into the existing one. Points are passed by value to many
// constructors of the library; each copy owns and frees its own block.
#ifndef QUINDLE_GLPOINT_H
#define QUINDLE_GLPOINT_H

#include "gldefs.h"
#include "kernel.h"

#include <new>

class QUINDLE_API GLPoint {
public:
    GL_DECLARE_ALLOCATION("include/glpoint.h")

    // (0, 0). Should the allocator give no block, the point is left without one.
    GLPoint()
    {
        mpZORPoint = static_cast<ZOR_Point*>(GL_ALLOC(sizeof(ZOR_Point)));
        if (mpZORPoint)
            new (mpZORPoint) ZOR_Point(0, 0);
    }
    // (x, y). Should the allocator give no block, the point is left without one.
    GLPoint(int x, int y)
    {
        mpZORPoint = static_cast<ZOR_Point*>(GL_ALLOC(sizeof(ZOR_Point)));
        if (mpZORPoint)
            new (mpZORPoint) ZOR_Point(x, y);
    }
    // A copy of a kernel point, in a block of its own.
    GLPoint(const ZOR_Point& point)
    {
        mpZORPoint = static_cast<ZOR_Point*>(GL_ALLOC(sizeof(ZOR_Point)));
        GL_ASSERT(mpZORPoint);
        new (mpZORPoint) ZOR_Point(point.x, point.y);
    }
    // A copy with its own kernel point.
    GLPoint(const GLPoint& point)
    {
        mpZORPoint = static_cast<ZOR_Point*>(GL_ALLOC(sizeof(ZOR_Point)));
        GL_ASSERT(mpZORPoint);
        new (mpZORPoint) ZOR_Point(point.mpZORPoint->x, point.mpZORPoint->y);
    }
    // Frees the kernel point.
    ~GLPoint()
    {
        GL_FREE(mpZORPoint);
        mpZORPoint = 0;
    }

    int GetX() const { return mpZORPoint->x; }
    int GetY() const { return mpZORPoint->y; }
    void SetX(int x) { mpZORPoint->x = x; }
    void SetY(int y) { mpZORPoint->y = y; }
    void SetPoint(int x, int y)
    {
        mpZORPoint->x = x;
        mpZORPoint->y = y;
    }
    void SetPoint(const ZOR_Point& point) { SetPoint(point.x, point.y); }
    void SetPoint(const GLPoint& point) { SetPoint(point.GetX(), point.GetY()); }
    // The owned kernel point itself, for handing to the kernel.
    const ZOR_Point& GetZORPoint() const { return *mpZORPoint; }

    // Assignment copies the coordinates into this point's own kernel point.
    GLPoint& operator=(const GLPoint& point);
    GLPoint& operator=(const ZOR_Point& point);

    // Compound arithmetic; an int applies to both coordinates alike. Division
    // truncates toward zero; a divisor of 0 is the caller's fault.
    GLPoint& operator+=(const GLPoint& point);
    GLPoint& operator+=(const ZOR_Point& point);
    GLPoint& operator+=(int value);
    GLPoint& operator-=(const GLPoint& point);
    GLPoint& operator-=(const ZOR_Point& point);
    GLPoint& operator-=(int value);
    GLPoint& operator*=(int factor);
    GLPoint& operator/=(int divisor);

    // The same arithmetic into a new point; this one is unchanged.
    GLPoint operator+(const GLPoint& point) const;
    GLPoint operator+(const ZOR_Point& point) const;
    GLPoint operator+(int value) const;
    GLPoint operator-(const GLPoint& point) const;
    GLPoint operator-(const ZOR_Point& point) const;
    GLPoint operator-(int value) const;
    GLPoint operator*(int factor) const;
    GLPoint operator/(int divisor) const;

    // 1 when both coordinates are equal (==) or either differs (!=), else 0.
    int operator==(const GLPoint& point) const;
    int operator==(const ZOR_Point& point) const;
    int operator!=(const GLPoint& point) const;
    int operator!=(const ZOR_Point& point) const;

protected:
    ZOR_Point* mpZORPoint;
};

#endif
