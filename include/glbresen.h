// glbresen.h - GLBresen, the integer line stepper behind every walk.
//
// A line from the position to the destination is cut into steps of at most the
// step size along the major axis; the minor axis is spread evenly by an error
// term, and the last step lands exactly on the destination. The stepper writes
// the position it was given; the two points belong to the caller (a mover).
#ifndef QUINDLE_GLBRESEN_H
#define QUINDLE_GLBRESEN_H

#include "glpoint.h"

class QUINDLE_API GLBresen {
public:
    GL_DECLARE_ALLOCATION("include/glbresen.h")

    // Sets up the line from *pPos to *pDest with the largest move per step on
    // each axis (both must be positive). A line of zero length takes one step,
    // which lands on the destination.
    GLBresen(GLPoint* pPos, GLPoint* pDest, const GLPoint& stepSize);
    // The copy steps the same position toward the same destination.
    GLBresen(const GLBresen& bresen);
    GLBresen& operator=(const GLBresen& bresen);
    ~GLBresen();

    // Takes one step, writing *mpPos; TRUE when it now equals the destination.
    // Stepping past the end of the line is a programming error.
    int DoMove();

    // Steps still to take.
    int StepsLeft() const { return mStepsLeft; }

protected:
    GLPoint* mpPos;
    GLPoint* mpDest;
    GLPoint mStep;
    GLPoint mSideStep;
    std::int32_t mError;
    std::int32_t mErrorInc;
    std::int32_t mSteps;
    std::int32_t mStepsLeft;
};

#endif
