// Gallery.cpp - room 200: the gallery behind the courtyard. Built as the room
// library 200.so.
//
// Pip comes in by the door. A swallow crosses the window (a robot: a
// prerecorded animation the kernel plays; halfway across it passes a cue
// point and chirps). Half a second in (a timer), Pip remarks on the
// television. The television glows on and off (a cycler); clicking it walks
// Pip over, and a film plays on its screen (a movie, through a movie
// player). The Back button takes him back to the courtyard.
#include "../assets/Palette.h"
#include "../game/DemoButton.h"
#include "../game/DemoGame.h"
#include "../game/Kit.h"
#include "../game/Talk.h"
#include "../game/Walker.h"

#include "glcycler.h"
#include "glevent.h"
#include "glmovie.h"
#include "glplane.h"
#include "glplanes.h"
#include "glrmmgr.h"
#include "glrobot.h"
#include "glsave.h"
#include "glsound.h"
#include "gltimer.h"

namespace {

const ZOR_Rect kScreen(0, 0, 639, 479);
const int kSwallow = 10; // robot 10
const int kFilm = 300;   // movie 300.VMD
const int kGreeting = 1; // the value of the timer that starts the greeting
const int kBehindPip = 0;       // a fixed priority below any place Pip's feet give him
const int kSwallowPriority = 5; // in front of the window
const int kChirpVolume = 100;
const int kNoShowFlags = 0;
const int kNoOpenArgument = 0;
// A robot's Start: it plays alongside the game (Start returns at once) and
// hides no cel of ours while it plays.
const int kPlayAlongside = FALSE;
const int kKeepClientShown = FALSE;
const int kNoThirdFlag = FALSE;

class Gallery : public GLObject {
public:
    Gallery();
    virtual ~Gallery();

    virtual int HandleEvent(GLEvent* pEvent);
    virtual void Cue(GLCue* pCue);

    void WatchTelevision();
    void PlayFilm();

    GLPicturePlane* mpBack;
    GLTransparentPlane* mpFront;
    Walker* mpPip;
    GLCel* mpTelevision;
    GLCycler* mpGlow;
    GLRobot* mpSwallow;
    DemoButton* mpBackButton;
    Conversation* mpConversation;
    Balloon* mpPipSays;
    Balloon* mpStorySays;
    GLTimer* mpGreeting; // until it has cued us
};

Gallery* gGallery = 0;

// The television's glow: the cel it shows and the tick it last stepped, so a
// save can put the glow back in its phase. The swallow's flight, once over.
int gGlowCel = 0;
std::uint32_t gGlowStepped = 0;
int gSwallowFlown = FALSE;
const int kGlowSpeed = 30; // ticks a cel of the glow is shown

void KeepGallery(GLSaveStore* pStore)
{
    pStore->SetInt("gallery.greeted", gGallery->mpGreeting ? 0 : 1);
    pStore->SetInt("gallery.swallow.flown", gSwallowFlown);
    pStore->SetInt("gallery.glow.cel", gGlowCel);
    pStore->SetInt("gallery.glow.age", static_cast<int>(theGame->mGameTicks - gGlowStepped));
}

void OnBack(GLEvent*, GLObject*)
{
    Demo()->Log("Pip goes back to the courtyard");
    Demo()->GoTo(kCourtyard);
}

void OnTelevision(GLEvent* pEvent, GLObject*)
{
    if (pEvent->type == kEventPointerDown)
        gGallery->WatchTelevision();
}

Gallery::Gallery()
{
    gGallery = this;
    mpBack = new GLPicturePlane(kScreen, kGallery, kBackPriority, kMainWindow, kNotMirrored, kNoVanishingPoint);
    mpFront = new GLTransparentPlane(kScreen, kFrontPriority, kMainWindow, kNoVanishingPoint);
    theGame->mpPlaneManager->Add(mpBack);
    theGame->mpPlaneManager->Add(mpFront);

    // He walks the floorboards, between the legs of the television's stand
    // (walk/200.txt).
    mpPip = new Walker(mpFront, kPipView, GLPoint(70, 410), kGallery);
    mpPip->Face(Walker::kRight);

    // The television glows on and off: a plain cycler steps through its two
    // cels for ever, one every half second.
    mpTelevision = new GLCel(mpFront, kTelevisionView, kOnlyLoop, 0, GLPoint(160, 160), kBehindPip, kFullSizeScale);
    mpTelevision->SetSelectFunction(&OnTelevision);
    mpTelevision->Show();
    // Restored, the glow's first step comes when it would have: its cycler
    // starts with what was left of the cel's time, then goes at its pace.
    GLSaveGame* saves = Demo()->Saves();
    GLSaveStore* store = saves->Store();
    const int restoring = Demo()->Restoring();
    int age = restoring ? store->GetInt("gallery.glow.age") : 0;
    age = age < 0 ? 0 : age >= kGlowSpeed ? kGlowSpeed - 1 : age;
    gGlowCel = restoring ? store->GetInt("gallery.glow.cel") : 0;
    gGlowStepped = theGame->mGameTicks - static_cast<std::uint32_t>(age);
    gSwallowFlown = restoring ? store->GetInt("gallery.swallow.flown") : FALSE;
    mpTelevision->SetCycleSpeed(static_cast<std::uint32_t>(kGlowSpeed - age));
    mpGlow = new GLCycler(mpTelevision);
    mpTelevision->SetCycleSpeed(kGlowSpeed);
    Demo()->Kit()->Inventory()->Name(mpTelevision, "television");
    Demo()->Kit()->Inventory()->Name(mpPip->Cel(), "pip");

    mpBackButton = new DemoButton(mpFront, kButtonView, kBackButton, GLPoint(16, 442), &OnBack);

    mpPipSays = new Balloon(mpFront, mpPip->Cel(), Shade(kWood, 2), Shade(kGold, 15), "Pip");
    mpStorySays = new Balloon(mpFront, 0, Shade(kGold, 14), Shade(kDusk, 2), "the story");
    mpConversation = new Conversation;
    mpConversation->Cast(1, mpPipSays);
    mpConversation->Cast(2, mpStorySays);
    // Restored after the greeting or the swallow's flight, neither comes again.
    mpGreeting = 0;
    if (!restoring || !store->GetInt("gallery.greeted"))
        mpGreeting = new GLTimer(this, GLTimer::TicksTimer, 30, kGreeting); // it deletes itself once it has cued us

    // The swallow: the robot cues us at its cue point and at its end.
    mpSwallow = new GLRobot(kSwallow, mpFront, kSwallowPriority, GLPoint(390, 50));
    mpSwallow->SetCaller(this);
    if (!gSwallowFlown)
        mpSwallow->Start(kPlayAlongside, kKeepClientShown, kNoThirdFlag);

    saves->Name("pip", mpPip->Cel());
    saves->Name("television", mpTelevision);
    Demo()->SetRoomKeeper(&KeepGallery);
}

Gallery::~Gallery()
{
    Demo()->Kit()->Inventory()->Forget(mpTelevision);
    Demo()->Kit()->Inventory()->Forget(mpPip->Cel());
    // The order is the ownership read backwards. A timer that has not fired
    // yet may be deleted, and nothing may cue us once we are gone. Then the
    // robot, which plays on the front plane, the conversation before the
    // balloons that speak for it, the glow cycler before the television it
    // cycles, and every cel before the plane its kernel record lives on; the
    // planes leave the plane manager before they are deleted.
    Demo()->SetRoomKeeper(0);
    Demo()->Saves()->Forget("pip");
    Demo()->Saves()->Forget("television");
    delete mpGreeting;
    Demo()->Sound()->Stop(kChirp, kWholeSample);
    Demo()->CancelCuesTo(this);
    Demo()->CancelCuesTo(mpPip);
    delete mpSwallow;
    delete mpConversation;
    delete mpStorySays;
    delete mpPipSays;
    delete mpBackButton;
    delete mpGlow;
    delete mpTelevision;
    delete mpPip;
    theGame->mpPlaneManager->Remove(mpFront);
    theGame->mpPlaneManager->Remove(mpBack);
    delete mpFront;
    delete mpBack;
    gGallery = 0;
}

int Gallery::HandleEvent(GLEvent* pEvent)
{
    if (Demo()->SaveKey(pEvent))
        return TRUE;
    if (pEvent->type == kEventPointerDown) {
        mpPip->WalkTo(pEvent->where, 0);
        pEvent->claimed = TRUE;
    }
    return pEvent->claimed;
}

void Gallery::Cue(GLCue* pCue)
{
    if (pCue->mpCuer == 0 && pCue->mValue == kGreeting) {
        mpGreeting = 0;
        Demo()->Cued("half a second in the gallery (timer)");
        Demo()->Log("conversation 200/1 begins");
        theGame->mpCursor->BeginWait();
        mpConversation->Say(kGallery, kTalkNoun, kTalkVerb, kNoCondition, kWholeConversation, this);
    } else if (pCue->mpCuer == mpConversation) {
        Demo()->ConversationOver(kGallery, pCue->mValue);
        theGame->mpCursor->EndWait();
    } else if (pCue->mpCuer == Demo()->Sound()) {
        Demo()->Cued("the chirp is over (sound manager)");
    } else if (pCue->mpCuer == mpPip) {
        Demo()->Cued("Pip stands before the television");
        mpPip->Face(Walker::kAway);
        PlayFilm();
    } else if (mpSwallow->GetSignal() == kRobotEnded) {
        // A robot's cue names no cuer: its signal tells its end from a cue
        // point (by the time the cue arrives, the signal of a cue point has
        // been read over again and is 0).
        gSwallowFlown = TRUE;
        Demo()->Cued("the swallow has flown past (robot end)");
    } else {
        Demo()->Cued("the swallow passes the window (robot cue point)");
        Demo()->Sound()->Play(kChirp, kWholeSample, kChirpVolume, kPlainStart, this, kNoTag);
    }
}

void Gallery::WatchTelevision()
{
    Demo()->Log("Pip goes to watch the television");
    mpPip->WalkTo(GLPoint(250, 420), this);
}

// The film plays on the television's screen. A VMD movie plays to its end
// (or until a click or a key) before Play returns; the kernel keeps drawing
// the frames meanwhile.
void Gallery::PlayFilm()
{
    Demo()->Log("the film begins");
    GLVmdMovie film(kFilm);
    film.SetPos(GLPoint(170, 170), kNoShowFlags, FALSE); // placed when opened
    GLMoviePlayer player(&film);
    player.Open(kNoOpenArgument);
    film.SetPos(GLPoint(170, 170), kNoShowFlags, TRUE); // and now
    const unsigned stopped = player.Play();
    player.Close();
    Demo()->Log("the film %s", stopped ? "was stopped" : "is over");
}

} // namespace

// ----- the room library's exports -----

GL_ROOM_EXPORT void roomDLLInit(void*) {}

GL_ROOM_EXPORT void roomInit()
{
    new Gallery;
}

// The glow's phase, for a save: the tick its cel last changed.
GL_ROOM_EXPORT void roomDoIt()
{
    if (gGallery->mpTelevision->GetCel() != gGlowCel) {
        gGlowCel = gGallery->mpTelevision->GetCel();
        gGlowStepped = theGame->mGameTicks;
    }
}

GL_ROOM_EXPORT int roomHandleEvent(GLEvent* pEvent)
{
    return gGallery->HandleEvent(pEvent);
}

GL_ROOM_EXPORT void roomDispose()
{
    delete gGallery;
}
