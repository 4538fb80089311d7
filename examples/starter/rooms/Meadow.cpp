// Meadow.cpp - room 1: a green meadow, the hero, and a narrator who says one
// line (messages.txt) as the room opens. Click anywhere and the hero walks there.
#include "ClickToWalk.h"
#include "Narrator.h"
#include "Starter.h"

#include "glcel.h"
#include "gldll.h"
#include "glgame.h"
#include "glmsg.h"
#include "glplane.h"
#include "glplanes.h"
#include "glrmmgr.h"
#include "glsave.h"
#include "gluser.h"

namespace {

const int kGreen = 2;      // a colour of the default palette
const int kHeroView = 100; // assets/views/100.txt

GLColoredPlane* gMeadow = nullptr;
GLCel* gHero = nullptr;
ClickToWalk* gWalk = nullptr;
Narrator* gNarrator = nullptr;
GLMessage* gLine = nullptr;

} // namespace

GL_ROOM_EXPORT void roomDLLInit(void* pKernel)
{
    DLLInit(pKernel);
}

GL_ROOM_EXPORT void roomInit()
{
    gMeadow = new GLColoredPlane(ZOR_Rect(0, 0, 639, 479), kGreen, 1, 0, ZOR_Point(0, 0));
    theGame->mpPlaneManager->Add(gMeadow);
    gHero = new GLCel(gMeadow, kHeroView, 0, 0, GLPoint(320, 400), 10, kFullSizeScale);
    gHero->Show();
    StarterSaves()->Name("hero", gHero); // a save puts him back where he stood
    gWalk = new ClickToWalk(gHero);
    theGame->mpUser->mpOrphans->AddToEnd(gWalk);

    // The narrator holds every input event until the line is over.
    gNarrator = new Narrator(gMeadow, StarterExtras());
    gLine = new GLMessage;
    // Restored after the line was said, the room opens without it.
    const int greeted = StarterSaves()->IsRestoring() && StarterSaves()->Store()->GetInt("meadow.greeted");
    StarterGreeted(greeted);
    if (!greeted && gLine->Fill(1, 0, 0, 0, 1))
        gNarrator->Say(gLine, nullptr);
}

GL_ROOM_EXPORT void roomDoIt()
{
    if (!gNarrator->mIAmTalking)
        StarterGreeted(TRUE);
}

GL_ROOM_EXPORT int roomHandleEvent(GLEvent*)
{
    return FALSE;
}

GL_ROOM_EXPORT void roomDispose()
{
    StarterSaves()->Forget(gHero);
    delete gNarrator; // idle by now, or one that leaves the game's sets as it goes
    delete gLine;
    theGame->mpUser->mpOrphans->Remove(gWalk);
    delete gWalk;
    delete gHero;
    theGame->mpPlaneManager->Remove(gMeadow);
    delete gMeadow;
}
