// Kit.cpp - see Kit.h.
#include "Kit.h"

#include "../assets/Palette.h"
#include "DemoGame.h"

#include "glplane.h"
#include "glplanes.h"

namespace {
// The kit's planes stand above the rooms' (0 and 1): the choices above the bar.
const int kBarPriority = 5;
const int kChoicesPriority = 6;
const int kTextSize = 15;
// The inventory's icons from the right of the button bar, one every 48 pixels.
// (A GLPoint takes its memory from the kernel, so none is made before it.)
const int kFirstIconX = 560, kFirstIconY = 432;
const int kIconStep = 48;
const int kLabelX = 196, kLabelY = 446;

// The kit's lines go into the game's log.
void LogKit(const char* line)
{
    Demo()->Log("%s", line);
}
} // namespace

DemoKit::DemoKit(SoftKernelExtras* pExtras, const char* folder, const char* language)
    : mText(pExtras), mFolder(folder, language ? language : ""), mpBar(0), mpChoices(0), mpInventory(0)
{
    mStyle.mSize = kTextSize;
    mStyle.mInk = Shade(kGold, 14);
    mStyle.mPaper = Shade(kDusk, 2);
    mStyle.mHighlight = Shade(kGold, 8);
}

void DemoKit::Start()
{
    GLKitSetLog(&LogKit);
    mNames.Load(mFolder);
    mpBar = new GLTransparentPlane(ZOR_Rect(0, 0, 639, 479), kBarPriority, kMainWindow, kNoVanishingPoint);
    mpChoices = new GLTransparentPlane(ZOR_Rect(24, 296, 615, 430), kChoicesPriority, kMainWindow, kNoVanishingPoint);
    theGame->mpPlaneManager->Add(mpBar);
    theGame->mpPlaneManager->Add(mpChoices);
    mpInventory = new GLKitInventory(&mText, mpBar, GLPoint(kFirstIconX, kFirstIconY), kIconStep, mpBar,
                                     GLPoint(kLabelX, kLabelY), mStyle, &mState, &mNames);
    mpInventory->LoadItems(mFolder);
    mpInventory->Install();
}

DemoKit::~DemoKit()
{
    delete mpInventory;
    if (mpBar) {
        theGame->mpPlaneManager->Remove(mpChoices);
        theGame->mpPlaneManager->Remove(mpBar);
    }
    delete mpChoices;
    delete mpBar;
    GLKitSetLog(0);
}

GLKitDialog* DemoKit::NewDialog(GLMessager* pMessager)
{
    return new GLKitDialog(pMessager, &mText, mpChoices, mStyle, &mState, mpInventory);
}
