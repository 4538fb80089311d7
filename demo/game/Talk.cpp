// Talk.cpp - speech balloons.
#include "Talk.h"

#include "DemoGame.h"
#include "SoftExtras.h"

#include "glcel.h"
#include "glmsg.h"

namespace {
const int kTextSize = 15;  // pixels
const int kMaxWidth = 280; // a balloon wraps its text at this width
const int kPad = 8;
const int kTransparent = 0; // the bitmap's skip colour: what lies below shows
const int kNoSkipColor = -1; // a scratch bitmap is only measured, never shown
const int kScratchHeight = 200;
const int kBalloonPriority = 900; // above everything else on the plane
} // namespace

Balloon::Balloon(AbsGLPlane* pPlane, GLCel* pSpeaker, int ink, int paper, const char* name)
    : mpPlane(pPlane), mpSpeaker(pSpeaker), mInk(ink), mPaper(paper), mName(name), mMemId(0), mBitmap(&mMemId),
      mpItem(0)
{
}

Balloon::~Balloon()
{
    Clear();
}

void Balloon::Display()
{
    SoftKernelExtras* text = Demo()->Extras();
    const char* line = mpMessage->mpText ? mpMessage->mpText : "";
    Demo()->Said(mName, line);

    // Measure the wrapped text on a scratch bitmap, then make the balloon to fit.
    const int width = text->TextWidth(line, kTextSize) < kMaxWidth ? text->TextWidth(line, kTextSize) : kMaxWidth;
    const std::uint16_t scratch = text->CreateMemBitmap(kMaxWidth, kScratchHeight, kTransparent, kNoSkipColor);
    const int height = text->DrawText(scratch, 0, 0, line, 1, kTextSize, kMaxWidth);
    text->FreeMemBitmap(scratch);
    const int w = width + 2 * kPad, h = (height > 0 ? height : kTextSize) + 2 * kPad;

    mMemId = text->CreateMemBitmap(w, h, kTransparent, kTransparent);
    text->FillMemBitmap(mMemId, 1, 0, w - 2, h - 1, mInk); // a border with rounded-off corners
    text->FillMemBitmap(mMemId, 0, 1, w - 1, h - 2, mInk);
    text->FillMemBitmap(mMemId, 2, 2, w - 3, h - 3, mPaper);
    text->DrawText(mMemId, kPad, kPad, line, mInk, kTextSize, kMaxWidth);

    // Above the speaker's head, kept on the screen; the story's voice speaks
    // from the top of the screen.
    int x = 320 - w / 2, y = 12;
    if (mpSpeaker) {
        x = mpSpeaker->GetPos().GetX() - w / 2;
        y = mpSpeaker->GetPos().GetY() - 64 - h;
    }
    x = x < 8 ? 8 : x > 632 - w ? 632 - w : x;
    y = y < 8 ? 8 : y;
    mpItem = new GLScreenItem(mpPlane, &mBitmap, GLPoint(x, y), kBalloonPriority, kFullSizeScale);
    mpItem->Show();
}

void Balloon::Done(int iValue)
{
    Clear();
    GLNarrator::Done(iValue);
}

void Balloon::Clear()
{
    // The screen item goes before its bitmap: it checks the bitmap at every use.
    delete mpItem;
    mpItem = 0;
    if (mMemId)
        Demo()->Extras()->FreeMemBitmap(mMemId);
    mMemId = 0;
}

Conversation::Conversation()
{
    for (int i = 0; i < 8; i++)
        mpBalloons[i] = 0;
}

void Conversation::Cast(int talker, Balloon* pBalloon)
{
    if (talker > 0 && talker < 8)
        mpBalloons[talker] = pBalloon;
}

GLNarrator* Conversation::FindTalker(int iTalker)
{
    return iTalker > 0 && iTalker < 8 ? mpBalloons[iTalker] : 0;
}
