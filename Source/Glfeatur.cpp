// Glfeatur.cpp - the input target with a rectangle. See include/glfeatur.h.
#include "glfeatur.h"

#include "glcast.h"
#include "glplane.h"

// The plane is stored directly rather than through the virtual SetPlane: a
// feature under construction is in no event set to move between.
GLFeature::GLFeature(AbsGLPlane* pPlane) : GLTarget(), mRect()
{
    GL_ASSERT(pPlane);
    mpPlane = pPlane;
    mRect.SetRect(0, 0, 0, 0);
}

GLFeature::GLFeature(AbsGLPlane* pPlane, int iLeft, int iTop, int iRight, int iBottom) : GLTarget(), mRect()
{
    GL_ASSERT(pPlane);
    mpPlane = pPlane;
    mRect.SetRect(iLeft, iTop, iRight, iBottom);
}

GLFeature::GLFeature(AbsGLPlane* pPlane, GLRect rect) : GLTarget(), mRect()
{
    GL_ASSERT(pPlane);
    mpPlane = pPlane;
    mRect = rect;
}

GLFeature::GLFeature(const GLFeature& feature) : GLTarget(feature), mRect(feature.mRect) {}

GLFeature& GLFeature::operator=(const GLFeature& feature)
{
    GLTarget::operator=(feature);
    mRect = feature.mRect;
    return *this;
}

GLFeature::~GLFeature()
{
    if (mpPlane) {
        GLCast* pCast = mpPlane->GetCast();
        if (pCast && pCast->IsInEventSet(this))
            pCast->RemoveFromEvents(this);
    }
    mpPlane = 0;
}

void GLFeature::Init()
{
    mpPlane->GetCast()->AddToEvents(this);
}

void GLFeature::Init(int iLeft, int iTop, int iRight, int iBottom)
{
    SetRect(iLeft, iTop, iRight, iBottom);
    Init();
}

void GLFeature::Init(GLRect& rect)
{
    SetRect(rect);
    Init();
}

void GLFeature::SetRect(int iLeft, int iTop, int iRight, int iBottom)
{
    mRect.SetRect(iLeft, iTop, iRight, iBottom);
}

void GLFeature::SetRect(GLRect& rect)
{
    mRect = rect;
}

int GLFeature::OnMe(GLPoint pt) const
{
    return mRect.OnMe(pt);
}

void GLFeature::SetPlane(AbsGLPlane* pPlane)
{
    if (mpPlane) {
        GLCast* pOldCast = mpPlane->GetCast();
        if (pOldCast->IsInEventSet(this))
            pOldCast->RemoveFromEvents(this);
    }
    GLTarget::SetPlane(pPlane);
    GLCast* pNewCast = mpPlane->GetCast();
    if (!pNewCast->IsInEventSet(this))
        pNewCast->AddToEvents(this);
}
