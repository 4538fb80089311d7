// Meadow.cpp - room 1: a green meadow, the hero, and a conversation
// (dialogs/1.txt) as the room opens: the narrator says one line
// (messages.txt), then the player chooses, by a click or the key of its
// number, whether the hero takes the badge; taken, it shows at the bottom
// right (the kit's inventory), and the pointer names it. Click anywhere and
// the hero walks there.
#include "ClickToWalk.h"
#include "Narrator.h"
#include "Starter.h"

#include "SoftExtras.h"

#include "glcel.h"
#include "glkitdlg.h"
#include "glkitinv.h"
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

// The messager of the conversation: every line is the narrator's.
class Lines : public GLMessager {
public:
    GLNarrator* FindTalker(int) override { return gNarrator; }
};

// The kit: its text drawn with the soft kernel's, the story's state, the
// names, the inventory and the conversation with its plane of options.
GLKitTextAdapter<SoftKernelExtras>* gText = nullptr;
GLKitNames* gNames = nullptr;
GLKitInventory* gInventory = nullptr;
GLTransparentPlane* gChoices = nullptr;
Lines* gLines = nullptr;
GLKitDialog* gDialog = nullptr;

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

    // The narrator holds every input event until the line is over; the
    // options then hold it until one is chosen.
    gNarrator = new Narrator(gMeadow, StarterExtras());
    const GLKitFolder folder(StarterFolder(), StarterLanguage());
    GLKitStyle style;
    style.mInk = 15;  // white on black, as the narrator's line
    style.mPaper = 0;
    style.mHighlight = 14;
    style.mTransparent = 255;
    gText = new GLKitTextAdapter<SoftKernelExtras>(StarterExtras());
    gNames = new GLKitNames;
    gNames->Load(folder);
    gInventory = new GLKitInventory(gText, gMeadow, GLPoint(580, 440), 48, gMeadow, GLPoint(16, 446), style,
                                    StarterKitState(), gNames);
    gInventory->LoadItems(folder);
    gInventory->Install();
    // Restored after the conversation, the room opens without it and with
    // what the hero carried then.
    const int greeted = StarterSaves()->IsRestoring() && StarterSaves()->Store()->GetInt("meadow.greeted");
    StarterGreeted(greeted);
    if (StarterSaves()->IsRestoring())
        GLKitRestoreState(*StarterSaves()->Store(), StarterKitState(), gInventory);
    StarterSetInventory(gInventory);
    gChoices = new GLTransparentPlane(ZOR_Rect(20, 70, 619, 200), 2, 0, ZOR_Point(0, 0));
    theGame->mpPlaneManager->Add(gChoices);
    gLines = new Lines;
    gDialog = new GLKitDialog(gLines, gText, gChoices, style, StarterKitState(), gInventory);
    if (!greeted)
        gDialog->Start(folder, 1, nullptr);
}

GL_ROOM_EXPORT void roomDoIt()
{
    if (!gDialog->IsRunning())
        StarterGreeted(TRUE);
}

GL_ROOM_EXPORT int roomHandleEvent(GLEvent*)
{
    return FALSE;
}

GL_ROOM_EXPORT void roomDispose()
{
    StarterSaves()->Forget(gHero);
    delete gDialog; // leaves the hogs if it still offers its options
    delete gLines;
    delete gNarrator; // idle by now, or one that leaves the game's sets as it goes
    StarterSetInventory(nullptr);
    delete gInventory;
    delete gNames;
    delete gText;
    theGame->mpPlaneManager->Remove(gChoices);
    delete gChoices;
    theGame->mpUser->mpOrphans->Remove(gWalk);
    delete gWalk;
    delete gHero;
    theGame->mpPlaneManager->Remove(gMeadow);
    delete gMeadow;
}
