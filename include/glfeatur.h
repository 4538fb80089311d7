// glfeatur.h - GLFeature, an input target with a rectangle.
//
// A feature takes the pointer events that fall inside its rectangle (edges
// included, in the coordinates of its plane). It is not offered any input
// until Init() enters it in its plane cast's event set; SetPlane moves it to
// the new plane's event set, so after SetPlane it takes input there even if it
// did not before. The rectangle is the library's own: setting it tells the
// kernel nothing.
#ifndef QUINDLE_GLFEATUR_H
#define QUINDLE_GLFEATUR_H

#include "glrect.h"
#include "gltarget.h"

class QUINDLE_API GLFeature : public GLTarget {
public:
    // On pPlane (not null) with the rectangle (0, 0, 0, 0): only (0, 0) is on it.
    explicit GLFeature(AbsGLPlane* pPlane);
    // On pPlane with the given rectangle.
    GLFeature(AbsGLPlane* pPlane, int iLeft, int iTop, int iRight, int iBottom);
    GLFeature(AbsGLPlane* pPlane, GLRect rect);
    // Copies the registration flags, the plane, the select function and the
    // rectangle; the copy is in an event set only if the flags say so and it
    // is entered there.
    GLFeature(const GLFeature& feature);
    GLFeature& operator=(const GLFeature& feature);
    // Leaves the plane cast's event set if it is in it.
    virtual ~GLFeature();

    // Enters the feature in its plane cast's event set, which also sets its
    // needs-event flag. Once: entering it twice is refused by the cast.
    void Init();
    // Sets the rectangle, then Init().
    void Init(int iLeft, int iTop, int iRight, int iBottom);
    void Init(GLRect& rect);

    // The rectangle, unchecked.
    void SetRect(int iLeft, int iTop, int iRight, int iBottom);
    void SetRect(GLRect& rect);
    const GLRect& GetRect() const { return mRect; }

    // 1 when the point (plane coordinates) lies in the rectangle, edges included.
    virtual int OnMe(GLPoint pt) const;
    // Moves the feature to pPlane: out of the old plane cast's event set if it
    // was there, into the new one's if it is not there yet.
    virtual void SetPlane(AbsGLPlane* pPlane);

protected:
    GLRect mRect;
};

#endif
