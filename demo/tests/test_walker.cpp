// test_walker.cpp - Pip on the recording kernel, frame by frame, on the
// courtyard's floor as the game folder holds it: how a game tests its own
// classes and data without an engine.

#include "GameTest.h"
#include "glcel.h"
#include "glwalk.h"
#include "glwalker.h"

#include <vector>

namespace {

// The well's foot in walk/100.txt: a rectangle with its lower corners cut.
const ZOR_Rect kWell(258, 345, 382, 380), kWellFront(280, 380, 360, 392);

class WalkerTest : public GameTest {
protected:
    WalkerTest()
    {
        k.SetView(100, {4, 4, 4, 4}); // four walk loops of four cels
        area = GLWalkArea::Load(DEMO_FOLDER "/walk/100.txt");
        pip = new GLWalker(new GLCel(plane, 100, GLWalker::kToward, 0, GLPoint(150, 420), kPriorityOnTop,
                                     kFullSizeScale),
                           area);
        pip->GetActor()->SetMoveSpeed(2);
        pip->GetActor()->SetStepSize(GLPoint(4, 2));
    }
    ~WalkerTest() override
    {
        GLCel* cel = pip->GetActor();
        delete pip;
        delete cel;
        delete area;
    }
    // Runs frames until he stands still, noting where he stood after each.
    void WalkOut()
    {
        for (int i = 0; i < 2000 && pip->IsWalking(); i++) {
            Frame(++tick);
            trail.push_back({pip->GetActor()->GetPos().GetX(), pip->GetActor()->GetPos().GetY(),
                             pip->GetActor()->GetLoop()});
        }
        for (int i = 0; i < 3; i++) // the cue of the arrival
            Frame(++tick);
    }
    struct Step {
        int x, y, loop;
    };
    GLWalkArea* area;
    GLWalker* pip;
    CueRecorder caller;
    std::vector<Step> trail;
    std::uint32_t tick = 0;
};

TEST_F(WalkerTest, GoesRoundTheFrontOfTheWellWalkingRightAndCuesOnArrival)
{
    ASSERT_TRUE(area);
    pip->WalkTo(GLPoint(460, 330), &caller); // behind the well, on the far side
    WalkOut();
    bool below = false, right = true;
    for (const Step& s : trail) {
        for (const ZOR_Rect& r : {kWell, kWellFront})
            EXPECT_FALSE(s.x >= r.left && s.x <= r.right && s.y >= r.top && s.y <= r.bottom)
                << "stepped into the well at " << s.x << "," << s.y;
        below = below || (s.x > kWell.left && s.x < kWell.right && s.y > kWell.bottom);
        right = right && s.loop == GLWalker::kRight; // every leg is more across than in depth
    }
    EXPECT_TRUE(below); // along the front
    EXPECT_TRUE(right);
    EXPECT_EQ(pip->GetActor()->GetPos(), GLPoint(460, 330));
    EXPECT_EQ(pip->GetActor()->GetCel(), 0);
    EXPECT_EQ(caller.cues, 1);
}

} // namespace
