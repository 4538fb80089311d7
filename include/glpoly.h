// glpoly.h - GLPoly, a clickable polygon region on a plane.
//
// Two independent switches: input (Init, or SetPlane, enters it in its plane's
// event set) and display (Show draws it as a one-pixel closed outline until
// Hide). The hit test is the kernel's point-in-polygon test on the points,
// whether or not the polygon is shown.
#ifndef QUINDLE_GLPOLY_H
#define QUINDLE_GLPOLY_H

#include "glset.h"
#include "gltarget.h"
#include "kpoly.h"

class QUINDLE_API GLPoly : public GLTarget {
public:
    GLPoly(AbsGLPlane* pPlane);
    GLPoly(AbsGLPlane* pPlane, GLPoint* pPointArray, int iPointCount);
    GLPoly(AbsGLPlane* pPlane, GLListAsArray<GLPoint>& points);
    // A copy has its own copy of the points, is hidden and takes no input
    // until Init: sharing the point array or the kernel polygon would free
    // them twice.
    GLPoly(const GLPoly& poly);
    // Assignment hides this polygon if shown and takes over the points,
    // colour, priority and select function; it keeps its own plane and its
    // own input switch.
    GLPoly& operator=(const GLPoly& poly);
    // Hides it if shown and takes it out of its plane's event set.
    virtual ~GLPoly();

    // Replaces the points (copied). A shown polygon is redrawn only by Update.
    void SetPoints(GLPoint* pPointArray, int iPointCount);
    void SetPoints(GLListAsArray<GLPoint>& points);
    // Switches input on; the polygon needs its points.
    void Init();
    void Init(GLPoint* pPointArray, int iPointCount);
    void Init(GLListAsArray<GLPoint>& points);

    // Draws the outline; Hide takes it away.
    void Show();
    void Hide();
    int IsVisible();
    // Store the colour or priority; with fUpdate a shown polygon is redrawn.
    void SetColor(unsigned short uColor, int fUpdate);
    void SetPri(short iPriority, int fUpdate);
    // Redraws a shown polygon with its current points and attributes.
    void Update();

    virtual int OnMe(GLPoint point) const;
    // Moves it to another plane: input is on there afterwards, and a shown
    // polygon is drawn there.
    virtual void SetPlane(AbsGLPlane* pPlane);

    int GetPointCount() const { return miPointCount; }
    // The polygon's own copies of its points (null before SetPoints).
    const ZOR_Point* GetPoints() const { return mpPolyPoints; }

private:
    void CommonMemberInit(AbsGLPlane* pPlane);
    void CopyPoints(const ZOR_Point* pPoints, int iCount);

protected:
    ZOR_Point* mpPolyPoints;
    std::int32_t miPointCount;
    KernelPolygon* mpKPolygon;
    std::int16_t mPriority;
    std::uint16_t mColor;
};

#endif
