// Glpoly.cpp - clickable polygon regions. See include/glpoly.h.
#include "glpoly.h"

#include "glcast.h"
#include "glplane.h"

#include <new>

GLPoly::GLPoly(AbsGLPlane* pPlane)
{
    GL_ASSERT(pPlane);
    CommonMemberInit(pPlane);
}

GLPoly::GLPoly(AbsGLPlane* pPlane, GLPoint* pPointArray, int iPointCount)
{
    GL_ASSERT(pPlane);
    GL_ASSERT(pPointArray);
    GL_ASSERT(iPointCount);
    CommonMemberInit(pPlane);
    SetPoints(pPointArray, iPointCount);
}

GLPoly::GLPoly(AbsGLPlane* pPlane, GLListAsArray<GLPoint>& points)
{
    GL_ASSERT(pPlane);
    CommonMemberInit(pPlane);
    SetPoints(points);
}

GLPoly::GLPoly(const GLPoly& poly) : GLTarget(poly)
{
    CommonMemberInit(poly.mpPlane);
    NeedsEvent(FALSE);
    mPriority = poly.mPriority;
    mColor = poly.mColor;
    CopyPoints(poly.mpPolyPoints, poly.miPointCount);
}

GLPoly& GLPoly::operator=(const GLPoly& poly)
{
    if (this != &poly) {
        if (mpKPolygon)
            Hide();
        mPriority = poly.mPriority;
        mColor = poly.mColor;
        mpSelectFunction = poly.mpSelectFunction;
        CopyPoints(poly.mpPolyPoints, poly.miPointCount);
    }
    return *this;
}

void GLPoly::CommonMemberInit(AbsGLPlane* pPlane)
{
    GL_ASSERT(pPlane);
    mpPlane = pPlane;
    mpPolyPoints = 0;
    miPointCount = 0;
    mpKPolygon = 0;
    mPriority = kPriorityOnTop;
    mColor = 0;
}

GLPoly::~GLPoly()
{
    if (mpKPolygon)
        Hide();
    GLCast* pCast = mpPlane->GetCast();
    if (pCast && pCast->IsInEventSet(this))
        pCast->RemoveFromEvents(this);
    GL_FREE(mpPolyPoints);
}

void GLPoly::CopyPoints(const ZOR_Point* pPoints, int iCount)
{
    GL_FREE(mpPolyPoints);
    mpPolyPoints = 0;
    miPointCount = 0;
    if (iCount <= 0)
        return;
    mpPolyPoints = static_cast<ZOR_Point*>(GL_ALLOC(sizeof(ZOR_Point) * static_cast<std::size_t>(iCount)));
    GL_ASSERT(mpPolyPoints);
    for (int i = 0; i < iCount; i++)
        new (&mpPolyPoints[i]) ZOR_Point(pPoints[i].x, pPoints[i].y);
    miPointCount = iCount;
}

void GLPoly::SetPoints(GLPoint* pPointArray, int iPointCount)
{
    GL_ASSERT(pPointArray);
    GL_ASSERT(iPointCount);
    GL_FREE(mpPolyPoints);
    mpPolyPoints = static_cast<ZOR_Point*>(GL_ALLOC(sizeof(ZOR_Point) * static_cast<std::size_t>(iPointCount)));
    GL_ASSERT(mpPolyPoints);
    for (int i = 0; i < iPointCount; i++) {
        new (&mpPolyPoints[i]) ZOR_Point(); // the unset marker until copied
        mpPolyPoints[i].x = pPointArray[i].GetX();
        mpPolyPoints[i].y = pPointArray[i].GetY();
    }
    miPointCount = iPointCount;
}

void GLPoly::SetPoints(GLListAsArray<GLPoint>& points)
{
    const int iCount = points.NumElements();
    GL_FREE(mpPolyPoints);
    miPointCount = 0;
    // As in the array form, the new array is allocated whatever the count,
    // so an empty list fails here rather than at the first use of the points.
    mpPolyPoints = static_cast<ZOR_Point*>(GL_ALLOC(sizeof(ZOR_Point) * static_cast<std::size_t>(iCount)));
    GL_ASSERT(mpPolyPoints);
    for (int i = 0; i < iCount; i++) {
        new (&mpPolyPoints[i]) ZOR_Point();
        mpPolyPoints[i].x = points.At(i)->GetX();
        mpPolyPoints[i].y = points.At(i)->GetY();
    }
    miPointCount = iCount;
}

void GLPoly::Init()
{
    GL_ASSERT(miPointCount);
    mpPlane->GetCast()->AddToEvents(this);
}

void GLPoly::Init(GLPoint* pPointArray, int iPointCount)
{
    SetPoints(pPointArray, iPointCount);
    Init();
}

void GLPoly::Init(GLListAsArray<GLPoint>& points)
{
    SetPoints(points);
    Init();
}

void GLPoly::Show()
{
    GL_ASSERT(NULL == mpKPolygon);
    mpKPolygon = GL_NEW KernelPolygon(mpPlane->GetId(), mpPolyPoints, miPointCount, mPriority, mColor,
                                      ZOR_Line::tSolid, 0, 1, TRUE);
}

void GLPoly::Hide()
{
    GL_ASSERT(mpKPolygon);
    delete mpKPolygon;
    mpKPolygon = 0;
}

int GLPoly::IsVisible()
{
    return mpKPolygon ? TRUE : FALSE;
}

void GLPoly::SetColor(unsigned short uColor, int fUpdate)
{
    mColor = uColor;
    if (fUpdate && mpKPolygon)
        Update();
}

void GLPoly::SetPri(short iPriority, int fUpdate)
{
    mPriority = iPriority;
    if (fUpdate && mpKPolygon)
        Update();
}

void GLPoly::Update()
{
    GL_ASSERT(mpKPolygon);
    mpKPolygon->Update(mpPolyPoints, miPointCount, mPriority, mColor, ZOR_Line::tSolid, 0, 1, TRUE);
}

int GLPoly::OnMe(GLPoint point) const
{
    return kernel->PointInPolygon(point.GetX(), point.GetY(), mpPolyPoints, miPointCount);
}

void GLPoly::SetPlane(AbsGLPlane* pPlane)
{
    GL_ASSERT(pPlane);
    GL_ASSERT(pPlane != mpPlane);
    const int fWasShown = mpKPolygon != 0;
    if (fWasShown)
        Hide();
    if (mpPlane->GetCast()->IsInEventSet(this))
        mpPlane->GetCast()->RemoveFromEvents(this);
    mpPlane = pPlane;
    if (!mpPlane->GetCast()->IsInEventSet(this))
        mpPlane->GetCast()->AddToEvents(this);
    if (fWasShown)
        Show();
}
