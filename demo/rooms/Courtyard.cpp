// Courtyard.cpp - room 100: a courtyard at dusk. Built as the room library
// 100.so; the five functions at the end are what the room manager calls.
//
// Pip stands by the well. Click the cobbles and he walks there, around the
// well and the tree if they are in his way. The Talk button starts a
// conversation with the voice of the story (dialogs/100.txt): its lines are
// said one by one (a click or Enter moves on, Escape skips), then Pip
// chooses what to ask, by a click on an option or its number. The Ring
// button rings the bell over the well (the button holds the input while
// pressed: let go elsewhere and it does not ring). The bell can be taken
// down (a click on it, or the story gives it): it goes to the inventory at
// the bottom right. The pointed arch on the right is the gate, of irregular
// shape: pointing at it lights its outline and turns the cursor into a hand.
// It is shut; the bell used on it (its icon clicked, then the gate) rings,
// and a little scene plays: Pip walks to the gate, the gate creaks open, he
// steps through, and we are in the gallery. Once open, a click on the arch
// takes him through. What is under the pointer is named at the bottom. All
// the while the wind blows and now and then a bird sings: the ambient track.
#include "../assets/Palette.h"
#include "../game/DemoButton.h"
#include "../game/DemoGame.h"
#include "../game/Kit.h"
#include "../game/Talk.h"
#include "../game/Walker.h"

#include "glcursor.h"
#include "glcycler.h"
#include "glevent.h"
#include "glplane.h"
#include "glplanes.h"
#include "glpoly.h"
#include "glrmmgr.h"
#include "glsave.h"
#include "glscript.h"
#include "glsound.h"

namespace {

const ZOR_Rect kScreen(0, 0, 639, 479);
const int kBehindPip = 0;   // a fixed priority below any place Pip's feet give him
const int kGateShut = 0;    // the gate's first cel; it opens toward its last
const int kBellAtRest = 2;  // the middle of the bell's swing
const int kCreakVolume = 110;
const int kTollVolume = 127;

// The room is an object: it works every frame, takes the clicks nobody else
// took, and is cued by what it started (the bell's sound, the conversation).
// It is also the handler of the gate: the kit hands it "use bell on gate".
class Courtyard : public GLObject, public GLKitHandler {
public:
    Courtyard();
    virtual ~Courtyard();

    virtual void DoIt();
    virtual int HandleEvent(GLEvent* pEvent);
    virtual void Cue(GLCue* pCue);
    virtual int KitAction(const GLKitAction& action);

    void RingBell();
    void Talk();
    void TakeBell();
    void ThroughTheGate();
    void HearAmbience();
    // Shows the bell over the well unless Pip has it.
    void PlaceBell();

    GLPicturePlane* mpBack;      // the picture: sky, wall, well, cobbles
    GLTransparentPlane* mpFront; // everything that moves or takes clicks
    Walker* mpPip;
    GLCel* mpGate;
    GLCel* mpBell;
    GLCycler* mpBellSwing;
    DemoButton* mpRing;
    DemoButton* mpTalk;
    GLPoly* mpArch;
    GLScript* mpScene;
    Conversation* mpConversation;
    GLKitDialog* mpDialog;
    Balloon* mpPipSays;
    Balloon* mpStorySays;
    GLSndTrack* mpAmbience; // owned by the sound manager
    int mHeard;             // the ambient samples heard in this visit, a bit each
};

Courtyard* gCourtyard = 0;

// What the courtyard keeps in a save beside Pip, the gate and the bell
// (named items): the ambient samples heard in this visit, and whether the
// arch is lit under the pointer.
void KeepCourtyard(GLSaveStore* pStore)
{
    pStore->SetInt("courtyard.heard", gCourtyard->mHeard);
    pStore->SetInt("courtyard.arch.lit", gCourtyard->mpArch->IsVisible() ? 1 : 0);
}

// ----- the buttons and the hot spot call these -----

void OnRing(GLEvent*, GLObject*)
{
    gCourtyard->RingBell();
}

void OnTalk(GLEvent*, GLObject*)
{
    gCourtyard->Talk();
}

void OnArch(GLEvent* pEvent, GLObject*)
{
    if (pEvent->type != kEventPointerDown)
        return;
    if (Demo()->Kit()->State().Get("gate_open"))
        gCourtyard->ThroughTheGate();
    else
        Demo()->Log("the gate is shut: it opens to the bell");
}

void OnBell(GLEvent* pEvent, GLObject*)
{
    if (pEvent->type == kEventPointerDown)
        gCourtyard->TakeBell();
}

// ----- the scene through the gate: a script, one state at a time -----

enum { kWalkToGate, kOpenGate, kPause, kStepThrough, kGone, kLeave };

// Every state after the first is entered on a cue: from the walker, the
// gate's cycler or the script's own timer.
const char* const kSceneCues[] = {"",
                                  "Pip is at the gate (walker)",
                                  "the gate is open (cycler)",
                                  "a breath taken (timer)",
                                  "Pip is through the arch (walker)",
                                  "the scene ends (timer)"};

void GateScene(GLScript* pScript, int iState)
{
    Courtyard* room = gCourtyard;
    if (iState > kWalkToGate)
        Demo()->Cued("gate scene: %s", kSceneCues[iState]);
    switch (iState) {
    case kWalkToGate: // hands off: the scene plays by itself
        Demo()->HandsOff();
        room->mpPip->WalkTo(GLPoint(545, 318), pScript);
        break;
    case kOpenGate: { // the walk cued us: face the gate and open it
        room->mpPip->Face(Walker::kAway);
        Demo()->Sound()->Play(kGateCreak, kWholeSample, kCreakVolume, kPlainStart, kNobodyToCue, kNoTag);
        GLCycler* opening = new GLEndForwardCycler(); // to the last cel, then cue
        room->mpGate->SetCycleSpeed(10);
        opening->Add(room->mpGate, kJoinStopped);
        opening->Start(pScript);
        pScript->mpData = opening;
        break;
    }
    case kPause: // the gate is open: a breath before stepping through
        delete static_cast<GLCycler*>(pScript->mpData);
        pScript->mpData = 0;
        pScript->SetTicks(30);
        break;
    case kStepThrough:
        room->mpPip->WalkTo(GLPoint(545, 292), pScript);
        break;
    case kGone: // through the arch: Pip vanishes into the dark
        room->mpPip->Cel()->Hide();
        pScript->SetTicks(20);
        break;
    case kLeave:
        Demo()->GoTo(kGallery);
        break;
    }
}

// ----- the room -----

Courtyard::Courtyard() : mpScene(0)
{
    gCourtyard = this;
    mpBack = new GLPicturePlane(kScreen, kCourtyard, kBackPriority, kMainWindow, kNotMirrored, kNoVanishingPoint);
    mpFront = new GLTransparentPlane(kScreen, kFrontPriority, kMainWindow, kNoVanishingPoint);
    theGame->mpPlaneManager->Add(mpBack);
    theGame->mpPlaneManager->Add(mpFront);

    // Pip appears where he came from: by the tree, or out of the arch.
    const int fromGallery = Demo()->CameFrom() == kGallery;
    // He walks the cobbles round the well and the tree (walk/100.txt).
    mpPip = new Walker(mpFront, kPipView, fromGallery ? GLPoint(545, 318) : GLPoint(150, 420), kCourtyard);

    // The gate fills the arch, behind Pip (fixed priority 0).
    mpGate = new GLCel(mpFront, kGateView, kOnlyLoop, kGateShut, GLPoint(500, 170), kBehindPip, kFullSizeScale);
    mpGate->Show();

    // The bell hangs from the well's beam.
    mpBell = new GLCel(mpFront, kBellView, kOnlyLoop, kBellAtRest, GLPoint(320, 272), kBehindPip, kFullSizeScale);
    mpBell->SetCycleSpeed(5);
    mpBell->SetSelectFunction(&OnBell);
    mpBellSwing = new GLPingPongCycler();
    PlaceBell();

    mpTalk = new DemoButton(mpFront, kButtonView, kTalkButton, GLPoint(16, 442), &OnTalk);
    mpRing = new DemoButton(mpFront, kButtonView, kRingButton, GLPoint(96, 442), &OnRing);
    mpRing->HogWhilePressed(TRUE);

    // Who says the lines of messages.txt: talker 1 is Pip, talker 2 the story.
    mpPipSays = new Balloon(mpFront, mpPip->Cel(), Shade(kWood, 2), Shade(kGold, 15), "Pip");
    mpStorySays = new Balloon(mpFront, 0, Shade(kGold, 14), Shade(kDusk, 2), "the story");
    mpConversation = new Conversation;
    mpConversation->Cast(1, mpPipSays);
    mpConversation->Cast(2, mpStorySays);
    mpDialog = Demo()->Kit()->NewDialog(mpConversation);

    // The arch: a pointed outline, not a rectangle.
    GLPoint arch[] = {GLPoint(500, 300), GLPoint(500, 215), GLPoint(510, 192), GLPoint(527, 177), GLPoint(545, 170),
                      GLPoint(563, 177), GLPoint(580, 192), GLPoint(590, 215), GLPoint(590, 300)};
    mpArch = new GLPoly(mpFront, arch, 9);
    mpArch->SetColor(Shade(kGold, 14), FALSE);
    mpArch->SetSelectFunction(&OnArch);
    mpArch->Init();

    // What the pointer names at the bottom of the screen; the gate takes the bell.
    GLKitInventory* inventory = Demo()->Kit()->Inventory();
    inventory->Name(mpArch, "gate", this);
    inventory->Name(mpBell, "bell");
    inventory->Name(mpPip->Cel(), "pip");

    // Wind and birds, read from a track file: the track plays at once.
    mpAmbience = Demo()->Sound()->CreateSndTrack(Demo()->FolderFile("tracks/ambient.txt"));
    mHeard = 0;
    if (mpAmbience && !Demo()->Restoring())
        Demo()->Log("ambient track %d read from tracks/ambient.txt", mpAmbience->mTrackId);

    // A save puts these back where they stood; the rest comes from the store.
    GLSaveGame* saves = Demo()->Saves();
    saves->Name("pip", mpPip->Cel());
    saves->Name("gate", mpGate);
    saves->Name("bell", mpBell);
    Demo()->SetRoomKeeper(&KeepCourtyard);
    if (Demo()->Restoring()) {
        mHeard = saves->Store()->GetInt("courtyard.heard");
        if (saves->Store()->GetInt("courtyard.arch.lit"))
            mpArch->Show();
    }
}

// The log tells what the ambient track really plays, not what it was meant
// to: each of its samples once a visit, when it is first heard. The track
// names the sample it reached last; the kernel says whether it sounds.
void Courtyard::HearAmbience()
{
    const int sample = mpAmbience ? mpAmbience->mSample : 0;
    int volume = 0;
    if (sample < kWind || sample > kBirdRight || (mHeard & (1 << sample)) ||
        !Demo()->Sound()->GetSampleVolume(sample, &volume, 0))
        return;
    mHeard |= 1 << sample;
    Demo()->Log("the ambient track plays sample %d: %s", sample,
                sample == kWind ? "the wind" : sample == kBirdLeft ? "a bird on the left" : "a bird on the right");
}

Courtyard::~Courtyard()
{
    // The order is the ownership read backwards. First nothing may cue us,
    // Pip or the scene once we are gone: stopping the bell drops the sound
    // manager's watch on it, and cues already on their way are cancelled.
    // Then whoever holds or cues another goes before it: the gate's cycler
    // before the scene it cues, the conversation before the balloons that speak
    // for it, the bell's cycler before the bell (it lets go of its cels), and
    // every cel, button and outline before the plane its kernel record lives
    // on. The planes leave the plane manager before they are deleted.
    Demo()->SetRoomKeeper(0);
    Demo()->Saves()->Forget("pip");
    Demo()->Saves()->Forget("gate");
    Demo()->Saves()->Forget("bell");
    Demo()->Sound()->Stop(kBellToll, kWholeSample);
    GLCycler* opening = mpScene ? static_cast<GLCycler*>(mpScene->mpData) : 0;
    if (opening && opening->IsCycling())
        opening->Done(); // the game ends while the gate opens: the cycler lets go of the scene
    GLKitInventory* inventory = Demo()->Kit()->Inventory();
    inventory->Forget(mpArch);
    inventory->Forget(mpBell);
    inventory->Forget(mpPip->Cel());
    Demo()->CancelCuesTo(this);
    Demo()->CancelCuesTo(mpDialog);
    Demo()->CancelCuesTo(mpPip);
    Demo()->CancelCuesTo(mpScene);
    delete opening;
    if (mpAmbience)
        Demo()->Sound()->DeleteSndTrack(mpAmbience->mTrackId);
    delete mpScene;
    delete mpDialog;
    delete mpConversation;
    delete mpStorySays;
    delete mpPipSays;
    delete mpArch;
    delete mpRing;
    delete mpTalk;
    delete mpBellSwing;
    delete mpBell;
    delete mpGate;
    delete mpPip;
    theGame->mpPlaneManager->Remove(mpFront);
    theGame->mpPlaneManager->Remove(mpBack);
    delete mpFront;
    delete mpBack;
    gCourtyard = 0;
}

void Courtyard::DoIt()
{
    // The bell leaves the beam however Pip came by it (a click, or the story).
    HearAmbience();
    PlaceBell();
    // Pointing at the arch lights its outline and shows the hand; the
    // cursor's other modes (hands off during the scene) take precedence.
    GLCursor* cursor = theGame->mpCursor;
    if (mpScene)
        return;
    // With an item in hand the cursor is the item: the label names the use.
    GLPoint at = theGame->GetMousePos();
    const int over = mpArch->OnMe(at) && (cursor->IsNormal() || cursor->IsHighlighted()) &&
                     Demo()->Kit()->Inventory()->Held().empty();
    if (over && !cursor->IsHighlighted()) {
        cursor->BeginHighlight();
        mpArch->Show();
    } else if (!over && cursor->IsHighlighted()) {
        cursor->EndHighlight();
        mpArch->Hide();
    }
}

// What nobody else took: a press on the floor sends Pip there.
int Courtyard::HandleEvent(GLEvent* pEvent)
{
    if (Demo()->SaveKey(pEvent))
        return TRUE;
    if (pEvent->type == kEventPointerDown && !mpScene) {
        mpPip->WalkTo(pEvent->where, 0);
        pEvent->claimed = TRUE;
    }
    return pEvent->claimed;
}

void Courtyard::RingBell()
{
    if (mpBellSwing->IsCycling())
        return; // still ringing
    if (Demo()->Kit()->State().IsCarried("bell")) {
        Demo()->Log("no bell hangs over the well");
        return;
    }
    Demo()->Log("the bell rings");
    Demo()->BellRung();
    mpBellSwing->Add(mpBell, kJoinStopped);
    mpBellSwing->Start();
    // The sound manager cues us when the toll has died away.
    Demo()->Sound()->Play(kBellToll, kWholeSample, kTollVolume, kPlainStart, this, kNoTag);
}

// dialogs/100.txt: the lines of noun 1, verb 1 of room 100 in messages.txt,
// then Pip's choice.
void Courtyard::Talk()
{
    if (mpDialog->IsRunning())
        return;
    mpPip->Stop(); // stand still to talk
    mpPip->Face(Walker::kToward);
    mpTalk->Disable(TRUE);
    mpRing->Disable(TRUE);
    mpDialog->Start(Demo()->Kit()->Folder(), kCourtyard, this);
}

void Courtyard::TakeBell()
{
    if (mpScene || Demo()->Kit()->State().IsCarried("bell"))
        return;
    Demo()->Log("Pip takes the bell down from the beam");
    Demo()->Kit()->Inventory()->PickUp("bell");
    PlaceBell();
}

void Courtyard::PlaceBell()
{
    if (Demo()->Kit()->State().IsCarried("bell") || Demo()->Kit()->State().Get("gate_open")) {
        if (mpBell->IsVisible())
            mpBell->Hide();
    } else if (!mpBell->IsVisible()) {
        mpBell->Show();
    }
}

int Courtyard::KitAction(const GLKitAction& action)
{
    if (action.mItem != "bell" || action.mTarget != "gate" || mpScene)
        return FALSE;
    // The gate knows the bell's voice: it rings, and the gate opens for good.
    Demo()->Log("the bell rings at the gate");
    Demo()->Sound()->Play(kBellToll, kWholeSample, kTollVolume, kPlainStart, kNobodyToCue, kNoTag);
    Demo()->Kit()->State().Set("gate_open", 1);
    ThroughTheGate();
    return TRUE;
}

void Courtyard::Cue(GLCue* pCue)
{
    if (pCue->mpCuer == mpDialog) {
        Demo()->DialogueOver(kCourtyard, pCue->mValue, mpDialog->GetEnding().c_str());
        mpTalk->Enable(TRUE);
        mpRing->Enable(TRUE);
        PlaceBell(); // the story may have given Pip the bell
    } else if (pCue->mpCuer == Demo()->Sound()) {
        Demo()->Cued("the bell's toll has died away (sound manager)");
        mpBellSwing->Stop();
        mpBellSwing->Release();
        mpBell->SetCel(kBellAtRest, TRUE);
    }
}

void Courtyard::ThroughTheGate()
{
    if (mpScene)
        return;
    Demo()->Log("Pip heads for the arch");
    // The cursor's modes do not stack: the hand goes before hands off comes.
    theGame->mpCursor->EndHighlight();
    if (mpArch->IsVisible()) // not lit when the bell in hand opened the gate
        mpArch->Hide();
    mpScene = new GLScript(&GateScene);
}

} // namespace

// ----- the room library's exports -----

// The game has handed the kernel to the library, which this room shares.
GL_ROOM_EXPORT void roomDLLInit(void*) {}

GL_ROOM_EXPORT void roomInit()
{
    new Courtyard;
}

GL_ROOM_EXPORT void roomDoIt()
{
    gCourtyard->DoIt();
}

GL_ROOM_EXPORT int roomHandleEvent(GLEvent* pEvent)
{
    return gCourtyard->HandleEvent(pEvent);
}

GL_ROOM_EXPORT void roomDispose()
{
    delete gCourtyard;
}
