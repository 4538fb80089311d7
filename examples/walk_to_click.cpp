// walk_to_click.cpp - a whole quindle game in one file: a picture, a ball that
// spins for ever, and a click that sends it rolling to where you clicked.
//
// Build and run it (headless, with a script of two clicks and the quit key):
//
//   cmake --build --preset debug --target run-walk-to-click
//
// The frames land in build/debug/examples/walk_to_click/out (run.gif is the whole run);
// add --window to the player's command line to play it yourself. The game
// folder (picture 1, and view 100: a ball of four cels) is written by the
// player's example maker; everything the game does is below.
#include "gldll.h"
#include "glcel.h"
#include "glcycler.h"
#include "glevent.h"
#include "glgame.h"
#include "glmover.h"
#include "glplane.h"
#include "glplanes.h"
#include "glquithd.h"
#include "gluser.h"
#include "quindle_game.h"

namespace {

const int kSkyPicture = 1; // pictures/1.png
const int kBallView = 100; // views/100.txt: loop 0, cels 0..3
const int kBackPriority = 0;
const int kFrontPriority = 1;
const int kMainWindow = 0;
const ZOR_Point kNoVanishingPoint(0, 0);

// The game object. The library calls DoIt once a frame (through Step below)
// and offers every input event to the planes, then to the orphans: a click on
// the field reaches us there because nothing else on screen takes it.
class WalkToClick : public GLGame {
public:
    // Builds the scene. Called once the library knows this is the game: planes
    // and cels find the game through theGame as they are made.
    void Start()
    {
        // Two planes: the picture at the back, the ball on a transparent plane
        // in front. The plane manager draws and hit-tests them in order.
        const ZOR_Rect screen(0, 0, 639, 479);
        mpSky = new GLPicturePlane(screen, kSkyPicture, kBackPriority, kMainWindow, FALSE, kNoVanishingPoint);
        mpFront = new GLTransparentPlane(screen, kFrontPriority, kMainWindow, kNoVanishingPoint);
        mpPlaneManager->Add(mpSky);
        mpPlaneManager->Add(mpFront);

        // The ball: a cel of view 100 standing on the field. Its origin is at
        // its bottom, so its position is where it touches the ground.
        mpBall = new GLCel(mpFront, kBallView, 0, 0, GLPoint(320, 400), kPriorityOnTop, kFullSizeScale);
        mpBall->SetCycleSpeed(6);             // a new cel every 6 ticks
        mpBall->SetStepSize(GLPoint(4, 3));   // a step of the walk: 4 across, 3 down
        mpBall->SetMoveSpeed(1);              // one step a tick
        mpBall->Show();

        // A plain cycler steps through the cels of loop 0 for ever; made
        // with its cel, it starts at once.
        mpSpin = new GLCycler(mpBall);
        mpWalk = new GLMover(mpBall);

        // Who hears input: the quit handler first (the quit key ends the
        // game), and this game object last, for the clicks nobody took.
        mpQuit = new GLQuitHandler;
        mpUser->mpPrimaDonnas->AddToEnd(mpQuit);
        mpUser->mpOrphans->AddToEnd(this);
        mpUser->IsHandsOn(TRUE);
    }

    // Torn down in the reverse order: what holds the ball before the ball,
    // the ball before its plane, and the planes out of the manager first.
    ~WalkToClick() override
    {
        mpUser->mpOrphans->Remove(this);
        mpUser->mpPrimaDonnas->Remove(mpQuit);
        delete mpQuit;
        delete mpWalk;
        delete mpSpin;
        delete mpBall;
        mpPlaneManager->Remove(mpFront);
        mpPlaneManager->Remove(mpSky);
        delete mpFront;
        delete mpSky;
    }

    // A press anywhere sends the ball rolling there; a new press while it
    // rolls changes its mind (a mover starts only when idle).
    int HandleEvent(GLEvent* pEvent) override
    {
        if (pEvent->type == kEventPointerDown) {
            if (mpWalk->IsMoving())
                mpWalk->Stop();
            mpWalk->Start(pEvent->where);
            pEvent->claimed = TRUE;
        }
        return pEvent->claimed;
    }

private:
    GLPicturePlane* mpSky;
    GLTransparentPlane* mpFront;
    GLCel* mpBall;
    GLCycler* mpSpin;
    GLMover* mpWalk;
    GLQuitHandler* mpQuit;
};

int Step(void*)
{
    theGame->DoIt();
    return theGame->mQuit ? 0 : 1;
}

void Finish(void* state)
{
    delete static_cast<WalkToClick*>(state);
}

// The player calls this once with the kernel; the game hands the kernel to the
// library, then itself, and says how to run a frame and how to end.
void* Start(const QuindleHost* host)
{
    DLLInit(host->kernel);
    WalkToClick* game = new WalkToClick;
    GLDLLInit(game);
    game->Start();
    return game;
}

} // namespace

QUINDLE_GAME_ENTRY("walk to click", &Start, &Step, &Finish)
