#include "Narrator.h"

#include "SoftExtras.h"

#include "glmsg.h"

namespace {
const int kInk = 15, kPaper = 0; // colours of the default palette: white on black
const int kTextSize = 18;        // pixels
const int kWidth = 600, kHeight = 40;
}

Narrator::Narrator(AbsGLPlane* pPlane, SoftKernelExtras* pExtras)
    : mpPlane(pPlane), mpExtras(pExtras), mMemId(0), mBitmap(&mMemId), mpItem(0)
{
}

Narrator::~Narrator()
{
    Clear();
}

void Narrator::Display()
{
    const char* line = mpMessage->mpText ? mpMessage->mpText : "";
    mMemId = mpExtras->CreateMemBitmap(kWidth, kHeight, kPaper, -1);
    mpExtras->DrawText(mMemId, 10, 10, line, kInk, kTextSize, kWidth - 20);
    mpItem = new GLScreenItem(mpPlane, &mBitmap, GLPoint(20, 12), 1000, kFullSizeScale);
    mpItem->Show();
}

void Narrator::Done(int iValue)
{
    Clear();
    GLNarrator::Done(iValue); // leaves the game's sets and cues the caller
}

void Narrator::Clear()
{
    delete mpItem;
    mpItem = 0;
    if (mMemId)
        mpExtras->FreeMemBitmap(mMemId);
    mMemId = 0;
}
