// Scripts: states entered on construction, on cues and when their own waits
// are over, frame by frame through the game's object set.
#include "GameTest.h"
#include "glscript.h"
#include "glset.h"

#include <functional>
#include <map>
#include <vector>

namespace {

// One call of a code function.
struct Call {
    GLScript* script;
    int state;
    int fieldState; // the script's mState during the call
    int frame;
};

// What the code functions of a test record and do. A code function is a plain
// function, so it reaches the test through this pointer.
struct Scene {
    std::vector<Call> calls;
    std::function<void(GLScript*, int)> action;
    int frame = 0;
};
Scene* gScene = nullptr;

void Code(GLScript* pScript, int iState)
{
    gScene->calls.push_back({pScript, iState, pScript->mState, gScene->frame});
    if (gScene->action)
        gScene->action(pScript, iState);
}

class ScriptTest : public GameTest {
protected:
    ScriptTest() { gScene = &scene; }
    ~ScriptTest() override { gScene = nullptr; }
    void Frame()
    {
        ++scene.frame;
        GameTest::Frame();
    }
    std::vector<int> States() const
    {
        std::vector<int> states;
        for (const Call& call : scene.calls)
            states.push_back(call.state);
        return states;
    }
    GLSetAsArray<GLObject>& Objects() { return *theGame->mpObjects; }
    // The code function starts a wait of counts[state] in each state listed.
    void Waits(void (GLScript::*start)(std::uint32_t), std::map<int, std::uint32_t> counts)
    {
        scene.action = [start, counts](GLScript* pScript, int iState) {
            if (counts.count(iState))
                (pScript->*start)(counts.at(iState));
        };
    }

    Scene scene;
};

// Told when a script is destroyed; copies what it sees during the call.
class Watcher : public CueRecorder {
public:
    void Cue(GLCue* pCue) override
    {
        CueRecorder::Cue(pCue);
        cue = pCue;
        whoToCue = pCue->mpWhoToCue;
        data = pCue->mpData;
    }
    GLCue* cue = nullptr;
    GLObject* whoToCue = nullptr;
    void* data = nullptr;
};

// A member of the game's object set with nothing to do.
class Idler : public GLObject {
public:
    void DoIt() override { ++runs; }
    int runs = 0;
};

TEST_F(ScriptTest, EachConstructorEntersItsFirstStateBeforeItReturnsAndEachCueTheNext)
{
    int data = 0;
    GLScript* plain = new GLScript(Code);
    ASSERT_EQ(scene.calls.size(), 1u);
    EXPECT_EQ(scene.calls[0].script, plain);
    EXPECT_EQ(plain->mpWhoToCue, plain);

    GLScript* five = new GLScript(Code, 5);
    GLScript* valued = new GLScript(Code, -3, 77);
    GLScript* full = new GLScript(Code, 2, 8, &data);
    EXPECT_EQ(States(), (std::vector<int>{0, 5, -3, 2}));
    EXPECT_EQ(valued->mValue, 77);
    EXPECT_EQ(full->mpData, &data);

    // All four are in the game's set, the newest first.
    ASSERT_EQ(Objects().NumElements(), 4);
    EXPECT_EQ(Objects()[0], full);
    EXPECT_EQ(Objects()[3], plain);

    // No wait runs, so frames leave them where they are.
    Frame();
    Frame();
    EXPECT_EQ(scene.calls.size(), 4u);

    // ChangeState and a cue call the code function with the state already
    // stored; the cue is not looked at.
    plain->ChangeState(10);
    plain->Cue();
    plain->Cue(nullptr);
    EXPECT_EQ(States(), (std::vector<int>{0, 5, -3, 2, 10, 11, 12}));
    for (const Call& call : scene.calls)
        EXPECT_EQ(call.fieldState, call.state);
    for (GLScript* script : {plain, five, valued, full})
        delete script;
    EXPECT_EQ(Objects().NumElements(), 0);
}

TEST_F(ScriptTest, ACyclesWaitAdvancesOnTheNextFrameThatReachesTheScript)
{
    Waits(&GLScript::SetCycles, {{0, 1}, {1, 3}});
    GLScript* script = new GLScript(Code);
    EXPECT_EQ(script->mType, GLTimer::CyclesTimer);
    Frame();
    ASSERT_EQ(States(), (std::vector<int>{0, 1}));
    EXPECT_EQ(scene.calls[1].frame, 1);
    Frame();
    Frame();
    EXPECT_EQ(scene.calls.size(), 2u);
    Frame();
    ASSERT_EQ(States(), (std::vector<int>{0, 1, 2}));
    EXPECT_EQ(scene.calls[2].frame, 4);
    // The wait that ended was cleared before state 2 was entered.
    EXPECT_EQ(script->mType, GLTimer::UnsetTimer);
    EXPECT_EQ(script->mCycles, 0u);
    delete script;
}

TEST_F(ScriptTest, ASecondsWaitAdvancesOnTheFirstFrameOnWhichTheClockHasGrownByIt)
{
    k.seconds = 100;
    Waits(&GLScript::SetSeconds, {{0, 2}, {1, 2}});
    GLScript* script = new GLScript(Code);
    EXPECT_EQ(script->mSecondsEnd, 102u);
    Frame();
    k.seconds = 101;
    Frame();
    EXPECT_EQ(scene.calls.size(), 1u);
    k.seconds = 102;
    Frame();
    ASSERT_EQ(States(), (std::vector<int>{0, 1}));
    EXPECT_EQ(scene.calls[1].frame, 3);
    // A clock that jumps past the end counts as well.
    k.seconds = 110;
    Frame();
    EXPECT_EQ(States(), (std::vector<int>{0, 1, 2}));
    delete script;
}

TEST_F(ScriptTest, ATicksWaitCountsFromTheTicksOfTheCurrentFrame)
{
    k.ticks = 1000;
    Frame();
    k.ticks = 1234; // not read until the next frame starts
    Waits(&GLScript::SetTicks, {{0, 30}});
    GLScript* script = new GLScript(Code);
    EXPECT_EQ(script->mTicksEnd, 1030u);
    k.ticks = 1029;
    Frame();
    EXPECT_EQ(scene.calls.size(), 1u);
    k.ticks = 1030;
    Frame();
    EXPECT_EQ(States(), (std::vector<int>{0, 1}));
    delete script;
}

TEST_F(ScriptTest, TwoCuesInOneFrameAdvanceTheScriptTwice)
{
    GLScript* script = new GLScript(Code);
    GLObject cuer;
    Idler between;
    // The first cue delivered leaves the set and moves the rest down under the
    // game's walk; with one member between them both cues are reached in the
    // same frame.
    new GLCue(script, &cuer, 5);
    Objects().AddToFront(&between);
    new GLCue(script, &cuer, 6);
    Frame();
    ASSERT_EQ(States(), (std::vector<int>{0, 1, 2}));
    EXPECT_EQ(scene.calls[2].frame, 1);
    EXPECT_EQ(Objects().NumElements(), 2);
    Frame();
    EXPECT_EQ(scene.calls.size(), 3u);
    Objects().Remove(&between);
    delete script;
}

TEST_F(ScriptTest, ACueDuringAWaitAdvancesTheStateTheWaitStillRunsAndInitWithUnsetCancelsIt)
{
    Waits(&GLScript::SetCycles, {{0, 2}});
    GLScript* script = new GLScript(Code);
    script->Cue(nullptr);
    EXPECT_EQ(States(), (std::vector<int>{0, 1}));
    EXPECT_EQ(script->mType, GLTimer::CyclesTimer);
    Frame();
    EXPECT_EQ(scene.calls.size(), 2u);
    Frame();
    EXPECT_EQ(States(), (std::vector<int>{0, 1, 2}));
    Frame();
    EXPECT_EQ(scene.calls.size(), 3u);

    // Init with UnsetTimer cancels a wait; a new one may start then.
    script->SetCycles(1);
    script->Init(GLTimer::UnsetTimer, 0);
    Frame();
    Frame();
    EXPECT_EQ(scene.calls.size(), 3u);
    script->SetTicks(1);
    k.ticks = theGame->mGameTicks + 1;
    Frame();
    EXPECT_EQ(States(), (std::vector<int>{0, 1, 2, 3}));
    delete script;
}

TEST_F(ScriptTest, ADestroyedScriptLeavesTheSetAndCuesItsCuerWithItselfAlsoFromItsCodeFunction)
{
    int data = 0;
    Watcher watcher;
    GLScript* script = new GLScript(Code, 0, 31, &data);
    script->mpCuer = &watcher;
    delete script;
    EXPECT_FALSE(Objects().IsInList(script));
    EXPECT_EQ(watcher.cues, 1);
    EXPECT_EQ(watcher.cue, script);
    EXPECT_EQ(watcher.whoToCue, script);
    EXPECT_EQ(watcher.lastValue, 31);
    EXPECT_EQ(watcher.data, &data);

    // The code function may delete its script on a wait...
    scene.calls.clear();
    Idler other;
    scene.action = [](GLScript* pScript, int iState) {
        if (iState == 0)
            pScript->SetCycles(1);
        if (iState == 1)
            delete pScript;
    };
    GLScript* waiting = new GLScript(Code, 0, 4);
    waiting->mpCuer = &watcher;
    Objects().AddToEnd(&other);
    Frame();
    EXPECT_EQ(States(), (std::vector<int>{0, 1}));
    EXPECT_FALSE(Objects().IsInList(waiting));
    EXPECT_EQ(watcher.whoToCue, waiting);

    // The same on a cue: the script goes during the cue's delivery and the cue
    // still leaves the set and deletes itself.
    scene.calls.clear();
    scene.action = [](GLScript* pScript, int iState) {
        if (iState == 3)
            delete pScript;
    };
    GLScript* cued = new GLScript(Code, 2);
    new GLCue(cued);
    Frame();
    EXPECT_EQ(States(), (std::vector<int>{2, 3}));
    EXPECT_EQ(Objects().NumElements(), 1);
    EXPECT_EQ(Objects().First(), &other);
    Objects().Remove(&other);
}

TEST_F(ScriptTest, ACopyIsNotRunAndGoesWithoutDisturbingTheSet)
{
    Watcher watcher;
    Waits(&GLScript::SetCycles, {{0, 2}});
    GLScript* script = new GLScript(Code, 0, 6);
    {
        GLScript copy(*script);
        EXPECT_EQ(scene.calls.size(), 1u);
        EXPECT_EQ(copy.mCycles, 2u);
        EXPECT_FALSE(Objects().IsInList(&copy));
        copy.mpCuer = &watcher;
    }
    // Destroying a script tells its cuer, a copy included.
    EXPECT_EQ(watcher.cues, 1);
    EXPECT_EQ(watcher.lastValue, 6);
    EXPECT_EQ(Objects().NumElements(), 1);
    Frame();
    Frame();
    EXPECT_EQ(States(), (std::vector<int>{0, 1}));
    delete script;
}

TEST_F(ScriptTest, AWaitMustBeNonZeroAndAlone)
{
    GLScript* script = new GLScript(Code);
    EXPECT_GL_ASSERT(script->SetCycles(0), "Source/Glscript.cpp", "mType==UnsetTimer && cycles");
    EXPECT_GL_ASSERT(script->SetSeconds(0), "Source/Glscript.cpp", "mType==UnsetTimer && secs");
    EXPECT_GL_ASSERT(script->SetTicks(0), "Source/Glscript.cpp", "mType==UnsetTimer && ticks");
    script->SetSeconds(5);
    EXPECT_GL_ASSERT(script->SetCycles(1), "Source/Glscript.cpp", "mType==UnsetTimer && cycles");
    delete script;
}

} // namespace
