// Kpoly.cpp - the kernel polygon. See include/kpoly.h.
#include "kpoly.h"

#include "gldll.h"

// The ten drawing-parameter checks, made by the full constructor and again by Init.
void KernelPolygon::CheckParameters(std::int32_t lPlaneId, ZOR_Point* pointArray, int iSize, int iPriority, int iColor,
                                    int iStyle, int iPattern, int iThickness, int fClosePoly)
{
    GL_ASSERT(lPlaneId >= 0);
    GL_ASSERT(pointArray != 0);
    GL_ASSERT(iSize > 2);
    GL_ASSERT(iColor >= 0 && iColor <= 255);
    GL_ASSERT(iPriority == -9999 || iPriority >= -1);
    GL_ASSERT(iStyle == ZOR_Line::tSolid || iStyle == ZOR_Line::tDashed || iStyle == ZOR_Line::tPattern);
    GL_ASSERT((iStyle == ZOR_Line::tPattern && iPattern > 0) || (iStyle != ZOR_Line::tPattern && iPattern == 0));
    GL_ASSERT(iPattern >= 0);
    GL_ASSERT(iThickness > 0);
    GL_ASSERT(fClosePoly == True || fClosePoly == False);
}

KernelPolygon::KernelPolygon() : m_lPlaneId(-1), m_lPolygonId(-1) {}

KernelPolygon::KernelPolygon(std::int32_t lPlaneId, ZOR_Point* pointArray, int iSize, int iPriority, int iColor,
                             int iStyle, int iPattern, int iThickness, int fClosePoly)
    : m_lPlaneId(-1), m_lPolygonId(-1)
{
    CheckParameters(lPlaneId, pointArray, iSize, iPriority, iColor, iStyle, iPattern, iThickness, fClosePoly);
    Init(lPlaneId, pointArray, iSize, iPriority, iColor, iStyle, iPattern, iThickness, fClosePoly);
    GL_ASSERT(m_lPolygonId >= 0);
    GL_ASSERT(lPlaneId >= 0);
}

KernelPolygon::KernelPolygon(const KernelPolygon&) : m_lPlaneId(-1), m_lPolygonId(-1) {}

KernelPolygon& KernelPolygon::operator=(const KernelPolygon& polygon)
{
    if (this != &polygon) {
        if (m_lPolygonId >= 0) {
            GL_ASSERT(m_lPlaneId >= 0);
            kernel->DeletePolygon(m_lPlaneId, m_lPolygonId);
        }
        m_lPlaneId = -1;
        m_lPolygonId = -1;
    }
    return *this;
}

KernelPolygon::~KernelPolygon()
{
    if (m_lPolygonId >= 0) {
        GL_ASSERT(m_lPlaneId >= 0);
        kernel->DeletePolygon(m_lPlaneId, m_lPolygonId);
    }
}

void KernelPolygon::Init(std::int32_t lPlaneId, ZOR_Point* pointArray, int iSize, int iPriority, int iColor,
                         int iStyle, int iPattern, int iThickness, int fClosePoly)
{
    GL_ASSERT(m_lPlaneId < 0);
    GL_ASSERT(m_lPolygonId < 0);
    CheckParameters(lPlaneId, pointArray, iSize, iPriority, iColor, iStyle, iPattern, iThickness, fClosePoly);
    m_lPlaneId = lPlaneId;
    int iResolved = iPriority;
    if (iPriority == kPriorityOnTop) {
        iResolved = kernel->TopScreenItemPriority(lPlaneId) + 1;
        if (iResolved < 0)
            iResolved = 0;
    }
    m_lPolygonId =
        kernel->AddPolygon(lPlaneId, pointArray, iSize, iResolved, iColor, iStyle, iPattern, iThickness, fClosePoly);
    GL_ASSERT(m_lPolygonId >= 0);
    GL_ASSERT(m_lPlaneId >= 0);
}

void KernelPolygon::Update(ZOR_Point* pointArray, int iSize, int iPriority, int iColor, int iStyle, int iPattern,
                           int iThickness, int fClosePoly)
{
    GL_ASSERT(m_lPlaneId >= 0);
    GL_ASSERT(m_lPolygonId >= 0);
    GL_ASSERT(iColor >= -1 && iColor <= 255);
    GL_ASSERT(iStyle == ZOR_Line::tSolid || iStyle == ZOR_Line::tDashed || iStyle == ZOR_Line::tPattern);
    GL_ASSERT((iStyle == ZOR_Line::tPattern && iPattern > 0) || (iStyle != ZOR_Line::tPattern && iPattern == 0));
    GL_ASSERT(iPattern >= 0);
    GL_ASSERT(iThickness > 0);
    GL_ASSERT(fClosePoly == True || fClosePoly == False);
    GL_ASSERT(iPriority == -9999 || iPriority >= -1);
    GL_ASSERT(fClosePoly == True || fClosePoly == False);
    kernel->UpdatePolygon(m_lPlaneId, m_lPolygonId, pointArray, iSize, iPriority, iColor, iStyle, iPattern,
                          iThickness, fClosePoly);
}
