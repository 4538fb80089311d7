// Glpoint.cpp - point arithmetic and rectangle tests. See include/glpoint.h
// and include/glrect.h.
#include "glpoint.h"
#include "glrect.h"

GLPoint& GLPoint::operator=(const GLPoint& point)
{
    SetPoint(point.GetX(), point.GetY());
    return *this;
}

GLPoint& GLPoint::operator=(const ZOR_Point& point)
{
    SetPoint(point.x, point.y);
    return *this;
}

GLPoint& GLPoint::operator+=(const GLPoint& point) { return *this += point.GetZORPoint(); }

GLPoint& GLPoint::operator+=(const ZOR_Point& point)
{
    mpZORPoint->x += point.x;
    mpZORPoint->y += point.y;
    return *this;
}

GLPoint& GLPoint::operator+=(int value)
{
    mpZORPoint->x += value;
    mpZORPoint->y += value;
    return *this;
}

GLPoint& GLPoint::operator-=(const GLPoint& point) { return *this -= point.GetZORPoint(); }

GLPoint& GLPoint::operator-=(const ZOR_Point& point)
{
    mpZORPoint->x -= point.x;
    mpZORPoint->y -= point.y;
    return *this;
}

GLPoint& GLPoint::operator-=(int value)
{
    mpZORPoint->x -= value;
    mpZORPoint->y -= value;
    return *this;
}

GLPoint& GLPoint::operator*=(int factor)
{
    mpZORPoint->x *= factor;
    mpZORPoint->y *= factor;
    return *this;
}

GLPoint& GLPoint::operator/=(int divisor)
{
    mpZORPoint->x /= divisor;
    mpZORPoint->y /= divisor;
    return *this;
}

// Each result is built in place: one new kernel point per expression.
GLPoint GLPoint::operator+(const GLPoint& point) const
{
    GLPoint result(*this);
    result += point;
    return result;
}

GLPoint GLPoint::operator+(const ZOR_Point& point) const
{
    GLPoint result(*this);
    result += point;
    return result;
}

GLPoint GLPoint::operator+(int value) const
{
    GLPoint result(*this);
    result += value;
    return result;
}

GLPoint GLPoint::operator-(const GLPoint& point) const
{
    GLPoint result(*this);
    result -= point;
    return result;
}

GLPoint GLPoint::operator-(const ZOR_Point& point) const
{
    GLPoint result(*this);
    result -= point;
    return result;
}

GLPoint GLPoint::operator-(int value) const
{
    GLPoint result(*this);
    result -= value;
    return result;
}

GLPoint GLPoint::operator*(int factor) const
{
    GLPoint result(*this);
    result *= factor;
    return result;
}

GLPoint GLPoint::operator/(int divisor) const
{
    GLPoint result(*this);
    result /= divisor;
    return result;
}

int GLPoint::operator==(const GLPoint& point) const { return *this == point.GetZORPoint(); }

int GLPoint::operator==(const ZOR_Point& point) const
{
    return mpZORPoint->x == point.x && mpZORPoint->y == point.y ? 1 : 0;
}

int GLPoint::operator!=(const GLPoint& point) const { return *this != point.GetZORPoint(); }

int GLPoint::operator!=(const ZOR_Point& point) const
{
    return mpZORPoint->x != point.x || mpZORPoint->y != point.y ? 1 : 0;
}

GLRect::GLRect() : left(0), top(0), right(639), bottom(479) {}

GLRect::GLRect(const GLRect& rect) : left(rect.left), top(rect.top), right(rect.right), bottom(rect.bottom) {}

GLRect::GLRect(const ZOR_Rect& rect) : left(rect.left), top(rect.top), right(rect.right), bottom(rect.bottom) {}

GLRect& GLRect::operator=(const GLRect& rect)
{
    SetRect(rect.left, rect.top, rect.right, rect.bottom);
    return *this;
}

GLRect& GLRect::operator=(const ZOR_Rect& rect)
{
    SetRect(rect.left, rect.top, rect.right, rect.bottom);
    return *this;
}

void GLRect::SetRect(int iLeft, int iTop, int iRight, int iBottom)
{
    left = iLeft;
    top = iTop;
    right = iRight;
    bottom = iBottom;
}

int GLRect::OnMe(int x, int y) const
{
    return left <= x && x <= right && top <= y && y <= bottom ? 1 : 0;
}

int GLRect::OnMe(const GLPoint& point) const { return OnMe(point.GetX(), point.GetY()); }

int GLRect::OnMe(const GLRect& other) const
{
    return !(other.right < left || right < other.left || top > other.bottom || other.top > bottom) ? 1 : 0;
}
