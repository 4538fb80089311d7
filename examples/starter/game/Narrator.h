// Narrator.h - the voice of the story: shows what it says in a line of text
// across the top of the screen until it is done.
#ifndef STARTER_NARRATOR_H
#define STARTER_NARRATOR_H

#include "glsi.h"
#include "gltalker.h"

#include <cstdint>

class AbsGLPlane;
class SoftKernelExtras;

class Narrator : public GLNarrator {
public:
    // Draws on pPlane with the soft kernel's text service.
    Narrator(AbsGLPlane* pPlane, SoftKernelExtras* pExtras);
    ~Narrator() override;
    void Display() override;
    void Done(int iValue) override;

private:
    void Clear();
    AbsGLPlane* mpPlane;
    SoftKernelExtras* mpExtras;
    std::uint16_t mMemId; // the text's bitmap while it shows, else 0
    KernelMemBitmap mBitmap;
    GLScreenItem* mpItem;
};

#endif
