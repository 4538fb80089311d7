// Glbresen.cpp - the line stepper. See include/glbresen.h.
#include "glbresen.h"

GLBresen::GLBresen(GLPoint* pPos, GLPoint* pDest, const GLPoint& stepSize)
    : mpPos(pPos), mpDest(pDest), mStep(1, 1), mSideStep(1, 1), mError(0), mErrorInc(0), mSteps(0), mStepsLeft(0)
{
    GL_ASSERT(stepSize.GetX() > 0 && stepSize.GetY() > 0);
    std::int32_t dx = mpDest->GetX() - mpPos->GetX();
    std::int32_t dy = mpDest->GetY() - mpPos->GetY();
    const std::int32_t sx = stepSize.GetX();
    const std::int32_t sy = stepSize.GetY();
    std::int32_t signX = 1;
    if (dx < 0) {
        dx = -dx;
        signX = -1;
    }
    std::int32_t signY = 1;
    if (dy < 0) {
        dy = -dy;
        signY = -1;
    }
    const std::int32_t nx = dx / sx + (dx % sx ? 1 : 0);
    const std::int32_t ny = dy / sy + (dy % sy ? 1 : 0);

    if (nx == 0 && ny == 0) {
        // Already there: one step, which lands on the destination.
        mStep.SetPoint(0, 0);
        mSideStep.SetPoint(0, 0);
        mSteps = mStepsLeft = 1;
    } else if (ny > nx) {
        mStep.SetPoint(signX * (dx / ny), signY * sy);
        mErrorInc = dx % ny;
        mSteps = mStepsLeft = ny;
        mSideStep.SetPoint(signX, 0);
    } else {
        mStep.SetPoint(signX * sx, signY * (dy / nx));
        mErrorInc = dy % nx;
        mSteps = mStepsLeft = nx;
        mSideStep.SetPoint(0, signY);
    }
    mError = -(mSteps / 2);
}

GLBresen::GLBresen(const GLBresen& bresen)
    : mpPos(bresen.mpPos), mpDest(bresen.mpDest), mStep(bresen.mStep), mSideStep(bresen.mSideStep),
      mError(bresen.mError), mErrorInc(bresen.mErrorInc), mSteps(bresen.mSteps), mStepsLeft(bresen.mStepsLeft)
{
}

GLBresen& GLBresen::operator=(const GLBresen& bresen)
{
    mpPos = bresen.mpPos;
    mpDest = bresen.mpDest;
    mStep = bresen.mStep;
    mSideStep = bresen.mSideStep;
    mError = bresen.mError;
    mErrorInc = bresen.mErrorInc;
    mSteps = bresen.mSteps;
    mStepsLeft = bresen.mStepsLeft;
    return *this;
}

GLBresen::~GLBresen() {}

int GLBresen::DoMove()
{
    GL_ASSERT(mStepsLeft>0);
    mStepsLeft--;
    if (mStepsLeft > 0) {
        *mpPos += mStep;
        mError += mErrorInc;
        if (mError >= 0) {
            mError -= mSteps;
            *mpPos += mSideStep;
        }
    } else {
        *mpPos = *mpDest;
    }
    return *mpPos == *mpDest ? TRUE : FALSE;
}
