// kpoly.h - KernelPolygon, the owner of one polygon or polyline in the kernel.
//
// It checks every drawing parameter, makes the kernel polygon once (Init or
// the full constructor), replaces its points and attributes (Update) and
// deletes it when it goes. Priority kPriorityOnTop asks for a place above every screen
// item of the plane; it is resolved when the polygon is made.
#ifndef QUINDLE_KPOLY_H
#define QUINDLE_KPOLY_H

#include "gldefs.h"
#include "kernel.h"

class QUINDLE_API KernelPolygon {
public:
    GL_DECLARE_ALLOCATION("include/kpoly.h")

    // No kernel polygon yet.
    KernelPolygon();
    // Makes the kernel polygon at once (see Init).
    KernelPolygon(std::int32_t lPlaneId, ZOR_Point* pointArray, int iSize, int iPriority, int iColor, int iStyle,
                  int iPattern, int iThickness, int fClosePoly);
    // A copy names no kernel polygon: two owners of one kernel polygon would
    // each delete it. Assignment likewise leaves the target without one.
    KernelPolygon(const KernelPolygon& polygon);
    KernelPolygon& operator=(const KernelPolygon& polygon);
    // Deletes the kernel polygon, if one was made.
    virtual ~KernelPolygon();

    // Makes the kernel polygon on plane lPlaneId: at least three points in
    // plane coordinates, colour 0..255, a ZOR_Line style with pattern > 0 only
    // for tPattern, thickness > 0, closed (True) or open (False). Once only.
    void Init(std::int32_t lPlaneId, ZOR_Point* pointArray, int iSize, int iPriority, int iColor, int iStyle,
              int iPattern, int iThickness, int fClosePoly);
    // Replaces the points and attributes; colour -1 is allowed here and the
    // priority goes to the kernel as it is.
    void Update(ZOR_Point* pointArray, int iSize, int iPriority, int iColor, int iStyle, int iPattern, int iThickness,
                int fClosePoly);

    std::int32_t GetPlaneId() const { return m_lPlaneId; }
    std::int32_t GetPolygonId() const { return m_lPolygonId; }

protected:
    static void CheckParameters(std::int32_t lPlaneId, ZOR_Point* pointArray, int iSize, int iPriority, int iColor,
                                int iStyle, int iPattern, int iThickness, int fClosePoly);

    std::int32_t m_lPlaneId;
    std::int32_t m_lPolygonId;
};

#endif
