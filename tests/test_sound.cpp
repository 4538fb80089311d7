// The sound manager, sound tracks and the track text reader, frame by frame on
// the recording kernel.
#include "QuindleTest.h"
#include "glgame.h"
#include "glsound.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <regex>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using namespace std::string_literals;
using Calls = std::vector<std::string>;
using Rows = std::vector<std::vector<int>>;

// An independent copy of the tracks' generator, started from the library's
// state, so that a test knows the next draws before the track makes them.
struct Dice {
    std::uint32_t state = GLSndRandomState();
    int Next()
    {
        state = state * 214013u + 2531011u;
        return static_cast<int>((state >> 16) & 0x7FFFu);
    }
};

// Draws from the library's generator until the next draw satisfies the test,
// so that a case can pick which way a chance goes.
template <typename Predicate> void SkipDrawsUntil(Predicate wanted)
{
    for (int i = 0; i < 100000; i++) {
        Dice dice;
        if (wanted(dice.Next()))
            return;
        GLSndRandom();
    }
    FAIL() << "no draw satisfied the test";
}

class Receiver : public GLObject {
public:
    void Cue(GLCue* pCue) override
    {
        cuers.push_back(pCue->mpCuer);
        values.push_back(pCue->mValue);
    }
    std::vector<GLObject*> cuers;
    std::vector<int> values;
};

// Whole frames of a real game on the recording kernel.
class SoundTest : public QuindleTest {
protected:
    void SetUp() override
    {
        game = new GLGame;
        GLDLLInit(game);
    }
    void TearDown() override
    {
        delete game;
        theGame = nullptr;
        for (const std::string& path : files)
            std::remove(path.c_str());
    }
    void Frame() { theGame->DoIt(); }
    void Frames(int n)
    {
        for (int i = 0; i < n; i++)
            Frame();
    }
    // Every sample falls silent, then the two frames of a test and a step.
    void EndAllAndStep(int times = 1)
    {
        for (int i = 0; i < times; i++) {
            k.playingSamples.clear();
            Frames(2);
        }
    }
    // What becomes audible while an action runs, and over some frames.
    template <typename Action> Calls SoundOf(Action action)
    {
        const std::size_t mark = k.Mark();
        action();
        return Sound(mark);
    }
    Calls SoundOfFrames(int n)
    {
        return SoundOf([&] { Frames(n); });
    }
    // How many times the tracks test their sounds over some frames.
    int TestsIn(int n)
    {
        const std::size_t mark = k.Mark();
        Frames(n);
        return CountSince(mark, "GetSampleVolume");
    }
    // The audible calls since a mark: what starts, stops, pans, fades, locks
    // and unlocks sounds (not the questions asked of the kernel).
    Calls Sound(std::size_t mark) const
    {
        static const std::regex kAudible(
            "(PlaySample|PlaySampleAlternate|PanSample|LockResource|UnlockResource|StopSample|StopAllSamples|"
            "FadeSample)\\(.*");
        Calls result;
        for (const std::string& call : k.CallsSince(mark)) {
            if (std::regex_match(call, kAudible))
                result.push_back(call);
        }
        return result;
    }
    int CountSince(std::size_t mark, const std::string& name) const
    {
        const Calls calls = k.CallsSince(mark);
        return static_cast<int>(std::count_if(calls.begin(), calls.end(),
                                              [&](const std::string& c) { return c.rfind(name + "(", 0) == 0; }));
    }
    // Writes a track file under the test's temporary directory.
    std::string WriteFile(const std::string& contents)
    {
        std::string path = ::testing::TempDir() + "quindle_track_" +
                           ::testing::UnitTest::GetInstance()->current_test_info()->name() + "_" +
                           std::to_string(files.size()) + ".txt";
        EXPECT_TRUE(std::ofstream(path, std::ios::binary) << contents);
        files.push_back(path);
        return path;
    }
    // The ring of a track, one word per node ("S101", "W5", "G202/201"), and
    // the numbers of every node in ring order, a group's members newest first:
    // sounds {sample, volume, mode, pan, chance}, waits {min, max, mode, chance}.
    static std::pair<Calls, Rows> Walk(GLSndTrack* track)
    {
        std::pair<Calls, Rows> walk;
        for (GLNode* node = track->mpHeader->mpNext; node != track->mpHeader; node = node->mpNext) {
            if (node->mNodeType == GLNode::WaitNode) {
                GLWaitNode* n = static_cast<GLWaitNode*>(node);
                walk.first.push_back("W" + std::to_string(n->mMinSeconds));
                walk.second.push_back({n->mMinSeconds, n->mMaxSeconds, n->mMode, n->mProbability});
                continue;
            }
            const bool group = node->mNodeType == GLNode::PRSNode;
            std::string word = group ? "G" : node->mNodeType == GLNode::SoundNode ? "S" : "?";
            for (GLNode* m = group ? static_cast<GLPRSNode*>(node)->mpFirstChoice : node; m;
                 m = group ? m->mpNext : nullptr) {
                GLSndNode* n = static_cast<GLSndNode*>(m);
                word += (word.size() > 1 ? "/" : "") + std::to_string(n->mSample);
                walk.second.push_back({n->mSample, n->mVolume, n->mMode, n->mPan, n->mProbability});
            }
            walk.first.push_back(word);
        }
        return walk;
    }
    static std::string Unlock(int sample) { return "UnlockResource(12," + std::to_string(sample) + ")"; }
    static Calls Ring(GLSndTrack* track) { return Walk(track).first; }
    static Rows Numbers(GLSndTrack* track) { return Walk(track).second; }

    GLGame* game = nullptr;
    std::vector<std::string> files;
};

// The two calls that start a locked sample of a track: its lock, then the play.
Calls Starts(int sample, int volume = 127, int type = 12)
{
    return {"LockResource(" + std::to_string(type) + "," + std::to_string(sample) + ")",
            "PlaySample(" + std::to_string(sample) + ",0," + std::to_string(volume) + ",0,0)"};
}
Calls operator+(Calls a, const Calls& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

// ----- the generator -----

TEST(SoundRandom, TheGeneratorIsTheDocumentedThirtyTwoBitCongruence)
{
    // From the state 1 the library starts with: 41, 18467, 6334, 26500, 19169.
    std::uint32_t state = 1;
    std::vector<int> draws;
    for (int i = 0; i < 5; i++) {
        state = GLSndRandomNext(state);
        draws.push_back(static_cast<int>((state >> 16) & 0x7FFF));
    }
    EXPECT_EQ(draws, (std::vector<int>{41, 18467, 6334, 26500, 19169}));
    // The step wraps modulo 2^32.
    EXPECT_EQ(GLSndRandomNext(0xFFFFFFFFu), 0xFFFFFFFFu * 214013u + 2531011u);
    // The library's own draws follow it (the copy keeps them in 0..32767).
    Dice dice;
    for (int i = 0; i < 1000; i++)
        ASSERT_EQ(GLSndRandom(), dice.Next()) << "draw " << i;
    EXPECT_EQ(GLSndRandomState(), dice.state);
}

// ----- the ring -----

TEST_F(SoundTest, NodesAreAppendedInOrderAndGroupsCollectConsecutiveMembersNewestFirst)
{
    GLSndTrack track;
    EXPECT_EQ(track.mpHeader->mpNext, track.mpHeader);
    EXPECT_TRUE(theGame->mpObjects->IsInList(&track));

    SndByte first = {101, 90, 0, 30, 75};
    track.AddSndNode(&first);
    track.AddPRSNode(201, 50, 80, 20);
    track.AddPRSNode(202, 60, 70, 10);
    track.AddWaitNode(5, 10, 1, 40);
    SndByte member = {301, 100, 0, 50, 90};
    track.AddPRSNode(&member);
    track.AddSndNode(102, 127, 1, 50, 100);
    EXPECT_EQ(Ring(&track), (Calls{"S101", "G202/201", "W5", "G301", "S102"}));
    // The record forms copy all five numbers, the mode included; the int form
    // of a member takes (sample, chance, volume, pan) and makes one that stays.
    EXPECT_EQ(Numbers(&track), (Rows{{101, 90, 0, 30, 75},
                                     {202, 70, 1, 10, 60},
                                     {201, 80, 1, 20, 50},
                                     {5, 10, 1, 40},
                                     {301, 100, 0, 50, 90},
                                     {102, 127, 1, 50, 100}}));
    EXPECT_EQ(track.mpHeader->mpPrev->mpNext, track.mpHeader);
    EXPECT_EQ(static_cast<GLSndNode*>(track.mpHeader->mpNext)->mLock, 1);
    GLPRSNode* group = static_cast<GLPRSNode*>(track.mpHeader->mpNext->mpNext);
    EXPECT_EQ(group->mCount, 2);
    EXPECT_EQ(group->mpFirstChoice->mpPrev, nullptr);
    EXPECT_EQ(group->mpFirstChoice->mpNext->mpPrev, group->mpFirstChoice);
}

TEST_F(SoundTest, DeletingANodeTakesTheFirstMatchAndKeepsTheRingClosed)
{
    GLSndTrack track;
    track.AddSndNode(1, 127, 1, 50, 100);
    track.AddWaitNode(3, 0, 1, 100);
    track.AddSndNode(2, 127, 1, 50, 100);
    track.AddSndNode(1, 127, 1, 50, 100);
    track.AddWaitNode(3, 0, 1, 100);
    track.AddPRSNode(2, 100, 127, 50);

    track.DeleteSndNode(7); // none: nothing changes
    track.DeleteWaitNode(4);
    EXPECT_EQ(Ring(&track), (Calls{"S1", "W3", "S2", "S1", "W3", "G2"}));

    track.DeleteSndNode(1);
    EXPECT_EQ(Ring(&track), (Calls{"W3", "S2", "S1", "W3", "G2"}));
    track.DeleteSndNode(2); // the ring node, not the group member
    EXPECT_EQ(Ring(&track), (Calls{"W3", "S1", "W3", "G2"}));
    track.DeleteWaitNode(3);
    track.DeleteWaitNode(3);
    EXPECT_EQ(Ring(&track), (Calls{"S1", "G2"}));
    track.AddSndNode(9, 127, 1, 50, 100);
    track.DeleteSndNode(9); // the last node: the header's back link follows
    EXPECT_EQ(track.mpHeader->mpPrev->mNodeType, GLNode::PRSNode);
    track.AddWaitNode(8, 0, 1, 100);
    EXPECT_EQ(Ring(&track), (Calls{"S1", "G2", "W8"}));
}

TEST_F(SoundTest, DeletingTheNodeThatPlaysLetsTheTrackGoOnAfterItsPredecessor)
{
    static_assert(!std::is_copy_constructible<GLSndTrack>::value, "a copy would share the ring");
    static_assert(!std::is_copy_assignable<GLSndManager>::value, "a copy would share the tracks");
    GLSndTrack track;
    for (int sample = 1; sample <= 3; sample++)
        track.AddSndNode(sample, 127, 1, 50, 100);
    track.Play();
    EndAllAndStep(); // 2 starts
    ASSERT_EQ(track.mSample, 2);
    track.DeleteSndNode(2);
    EXPECT_EQ(track.mpCurrent, track.mpHeader->mpNext);
    // 2 is still unlocked when its test finds it ended; then 3.
    EXPECT_EQ(SoundOf([&] { EndAllAndStep(); }), Calls{Unlock(2)} + Starts(3));
    track.DeleteSndNode(3); // the last node, playing
    EXPECT_EQ(track.mpCurrent, track.mpHeader->mpNext);
    EXPECT_EQ(track.mpHeader->mpPrev, track.mpHeader->mpNext);
    EXPECT_EQ(SoundOf([&] { EndAllAndStep(); }), Calls{Unlock(3)} + Starts(1));
}

// ----- a track frame by frame -----

TEST_F(SoundTest, ASoundIsTestedEveryFrameAndTheNextNodeStartsTheFrameAfterItEnds)
{
    GLSndTrack track;
    track.AddSndNode(101, 90, 1, 50, 100);
    track.AddSndNode(102, 100, 1, 50, 100);
    k.resources[{13, 102}] = true;

    std::uint32_t before = GLSndRandomState();
    std::size_t mark = k.Mark();
    track.Play(); // the first node starts inside the call
    EXPECT_EQ(Sound(mark), Starts(101, 90));
    EXPECT_EQ(k.CallsSince(mark)[0], "ResourceExists(13,101)");
    EXPECT_EQ(track.mSample, 101);
    EXPECT_EQ(track.mpCurrent, track.mpHeader->mpNext);

    for (int i = 0; i < 3; i++) { // still playing: tested once per frame
        mark = k.Mark();
        Frame();
        EXPECT_EQ(CountSince(mark, "GetSampleVolume"), 1);
        EXPECT_TRUE(Sound(mark).empty());
    }
    k.playingSamples.erase(101);
    EXPECT_EQ(SoundOfFrames(1), Calls{Unlock(101)});   // the test that finds it ended
    EXPECT_EQ(SoundOfFrames(1), Starts(102, 100, 13)); // the next node
    k.playingSamples.erase(102);
    Frame();
    EXPECT_EQ(SoundOfFrames(1), Starts(101, 90)); // round the ring to the first node again
    // Sure nodes draw nothing.
    EXPECT_EQ(GLSndRandomState(), before);
}

TEST_F(SoundTest, APanOtherThanTheCentreIsSetBeforeTheSampleStartsAndAnUnlockedNodeLocksNothing)
{
    GLSndTrack track;
    track.AddSndNode(5, 60, 1, 20, 100);
    track.AddSndNode(6, 70, 1, 50, 100);
    static_cast<GLSndNode*>(track.mpHeader->mpPrev)->mLock = 0;
    const Calls starts5 = {"LockResource(12,5)", "PanSample(5,20,0)", "PlaySample(5,0,60,0,0)"};
    EXPECT_EQ(SoundOf([&] { track.Play(); }), starts5);
    // 6 ends (nothing to unlock) and the first node starts again.
    EXPECT_EQ(SoundOf([&] { EndAllAndStep(2); }), (Calls{"UnlockResource(12,5)", "PlaySample(6,0,70,0,0)"} + starts5));
}

TEST_F(SoundTest, AWaitLastsItsSecondsThenTheTestRunsAndTheNextNodeStartsTheFrameAfter)
{
    GLSndTrack track;
    track.AddWaitNode(3, 0, 1, 100);
    track.AddWaitNode(5, 10, 1, 100);
    track.AddSndNode(7, 127, 1, 50, 100);
    k.seconds = 1000;
    track.Play();
    EXPECT_EQ(track.mType, GLTimer::SecondsTimer);
    EXPECT_EQ(track.mSecondsEnd, 1003u);
    EXPECT_EQ(track.mSample, 0);

    Frames(5);
    EXPECT_EQ(track.mSecondsEnd, 1003u); // nothing happens before the time
    k.seconds = 1003;
    EXPECT_EQ(TestsIn(1), 1); // over: the test runs (on sample 0)
    EXPECT_EQ(k.CallsNamed("GetSampleVolume").back(), "GetSampleVolume(0,ptr,0)");

    Dice dice;
    int expected = 5 + dice.Next() % 10;
    Frame(); // the second wait, 5 + r mod 10 seconds
    EXPECT_EQ(track.mType, GLTimer::SecondsTimer);
    EXPECT_EQ(track.mSecondsEnd, 1003u + expected);
    k.seconds = 1003 + expected - 1;
    EXPECT_EQ(TestsIn(3), 0);
    k.seconds = 1003 + expected;
    Frame();
    EXPECT_EQ(SoundOfFrames(1), Starts(7));
}

TEST_F(SoundTest, AChanceDrawsOnceAndLetsThroughWhenTheDrawModHundredIsAtMostIt)
{
    GLSndTrack track;
    track.AddSndNode(11, 127, 1, 50, 30);
    int played = 0;
    for (int round = 0; round < 40; round++) {
        Dice dice;
        bool expected = dice.Next() % 100 <= 30;
        std::size_t mark = k.Mark();
        if (round == 0)
            track.Play();
        else
            Frames(2); // the test of the last round, then this step
        int plays = CountSince(mark, "PlaySample");
        ASSERT_EQ(plays, expected ? 1 : 0) << "round " << round;
        ASSERT_EQ(CountSince(mark, "LockResource"), plays);
        ASSERT_EQ(GLSndRandomState(), dice.state) << "exactly one draw";
        // A node that lost its draw still names its sample and is unlocked
        // after its test: the unlock follows the node, not the draw.
        ASSERT_EQ(CountSince(mark, "UnlockResource"), round > 0 ? 1 : 0);
        EXPECT_EQ(track.mSample, 11);
        played += plays;
        k.playingSamples.clear();
    }
    EXPECT_GT(played, 0);
    EXPECT_LT(played, 40);
}

TEST_F(SoundTest, AChanceOfZeroStillPassesWhenTheDrawIsAMultipleOfHundred)
{
    GLSndTrack track;
    track.AddSndNode(12, 127, 1, 50, 0);
    SkipDrawsUntil([](int r) { return r % 100 == 0; });
    EXPECT_EQ(SoundOf([&] { track.Play(); }), Starts(12));
    k.playingSamples.clear();
    Frame();
    SkipDrawsUntil([](int r) { return r % 100 != 0; });
    EXPECT_EQ(SoundOfFrames(1), Calls{}); // no lock, no play
}

TEST_F(SoundTest, AGroupDrawsItsMemberAndThenTheMembersChanceEvenWhenItIsSure)
{
    GLSndTrack track;
    track.AddPRSNode(201, 100, 127, 50);
    track.AddPRSNode(202, 100, 110, 50);
    track.AddPRSNode(203, 100, 100, 50); // members: 203, 202, 201
    for (int round = 0; round < 12; round++) {
        Dice dice;
        int choice = dice.Next() % 3;
        dice.Next();
        int sample = 203 - choice;
        std::size_t mark = k.Mark();
        if (round == 0)
            track.Play();
        else
            Frames(2);
        ASSERT_EQ(CountSince(mark, "PlaySample"), 1);
        const int volume = sample == 201 ? 127 : sample == 202 ? 110 : 100;
        EXPECT_EQ(k.CallsNamed("PlaySample").back(),
                  "PlaySample(" + std::to_string(sample) + ",0," + std::to_string(volume) + ",0,0)");
        EXPECT_EQ(track.mSample, sample);
        EXPECT_EQ(GLSndRandomState(), dice.state) << "two draws per group";
        k.playingSamples.clear();
    }
}

TEST_F(SoundTest, AUseOnceNodePlaysOnceIsRemovedAndTheTrackGoesOn)
{
    GLSndTrack track;
    track.AddSndNode(21, 127, 0, 50, 100);
    track.AddSndNode(22, 127, 1, 50, 100);
    std::size_t mark = k.Mark();
    track.Play();
    EXPECT_EQ(Ring(&track), (Calls{"S22"}));
    EXPECT_EQ(track.mpCurrent, track.mpHeader);
    // Its sound is tested like any other and unlocked when it ends.
    Frames(2);
    EndAllAndStep(3); // 21 ends, then 22 twice
    const Calls again = Calls{Unlock(22)} + Starts(22);
    EXPECT_EQ(Sound(mark), Starts(21) + Calls{Unlock(21)} + Starts(22) + again + again);
}

TEST_F(SoundTest, UseOnceWaitsAndWaitsThatLoseTheirDrawPassInOneFrame)
{
    GLSndTrack track;
    track.AddWaitNode(2, 0, 0, 100); // used once
    track.AddWaitNode(4, 0, 1, 50);  // sometimes
    track.AddSndNode(31, 127, 1, 50, 100);
    k.seconds = 50;
    track.Play();
    EXPECT_EQ(Ring(&track), (Calls{"W4", "S31"}));
    EXPECT_EQ(track.mSecondsEnd, 52u); // the removed wait still runs
    k.seconds = 52;
    Frame();

    SkipDrawsUntil([](int r) { return r % 100 > 50; });
    std::size_t mark = k.Mark();
    Frame(); // the wait loses its draw: no wait...
    EXPECT_EQ(track.mType, GLTimer::CyclesTimer);
    Frame(); // ...and the next frame starts the sound
    EXPECT_EQ(Sound(mark), Starts(31));
    EXPECT_EQ(CountSince(mark, "GetSampleVolume"), 0);

    k.playingSamples.clear();
    Frame();
    SkipDrawsUntil([](int r) { return r % 100 <= 50; });
    Frame(); // this time it waits
    EXPECT_EQ(track.mType, GLTimer::SecondsTimer);
    EXPECT_EQ(track.mSecondsEnd, 56u);
}

TEST_F(SoundTest, AnEmptyTrackStepsToItsHeaderEveryOtherFrameAndNeverStops)
{
    GLSndTrack track;
    track.Play();
    std::size_t mark = k.Mark();
    for (int i = 0; i < 10; i++) {
        EXPECT_EQ(track.mpCurrent, track.mpHeader);
        Frame();
    }
    EXPECT_EQ(CountSince(mark, "GetSampleVolume"), 5);
    EXPECT_TRUE(Sound(mark).empty());
    EXPECT_EQ(track.mType, GLTimer::CyclesTimer);

    // A ring whose nodes are all used up does the same.
    GLSndTrack once;
    once.AddSndNode(41, 127, 0, 50, 100);
    once.Play();
    EndAllAndStep();
    EXPECT_EQ(once.mpHeader->mpNext, once.mpHeader);
    EXPECT_TRUE(SoundOfFrames(10).empty());
    EXPECT_EQ(once.mType, GLTimer::CyclesTimer);
}

TEST_F(SoundTest, APausedTrackRestsAfterItsNextTestAndResumesWithTheNodeAfterTheOneThatPlayed)
{
    GLSndTrack track;
    for (int sample = 51; sample <= 53; sample++)
        track.AddSndNode(sample, 127, 1, 50, 100);
    track.Play();
    EXPECT_EQ(track.Pause(), TRUE);
    EXPECT_EQ(SoundOfFrames(1), Calls{Unlock(51)}); // the test sees the pause; 51 plays on untouched
    EXPECT_EQ(track.mState, -1);
    Frame();
    EXPECT_EQ(track.mState, 0);
    EXPECT_EQ(track.mType, GLTimer::UnsetTimer);
    k.playingSamples.clear();
    std::size_t mark = k.Mark();
    Frames(5);
    EXPECT_TRUE(Sound(mark).empty());
    EXPECT_EQ(CountSince(mark, "GetSampleVolume"), 0);

    EXPECT_EQ(track.Resume(), TRUE);
    EXPECT_EQ(Sound(mark), Starts(52));

    // A pause lifted before the track noticed it: the track just goes on.
    track.Pause();
    track.Resume();
    EXPECT_EQ(SoundOf([&] { EndAllAndStep(); }), Calls{Unlock(52)} + Starts(53));

    // Resumed in the frame between the test and the rest: the cue takes the
    // track to state 0 at once, and the wait that runs to state 1 (the next
    // node) on the next frame.
    track.Pause();
    Frame();
    EXPECT_EQ(track.mState, -1);
    EXPECT_EQ(SoundOf([&] { track.Resume(); }), Calls{});
    EXPECT_EQ(track.mState, 0);
    EXPECT_EQ(SoundOfFrames(1), Starts(51));
    EXPECT_EQ(TestsIn(3), 3);
    EXPECT_EQ(track.mState, 1);
}

TEST_F(SoundTest, StopAndFadeEndTheTrackAtItsNextTestAndPlayStartsItOverFromTheFirstNode)
{
    GLSndTrack track;
    track.AddSndNode(61, 127, 1, 50, 100);
    track.AddSndNode(62, 127, 1, 50, 100);
    track.Play();
    EXPECT_EQ(SoundOf([&] { track.Stop(); }), (Calls{"StopSample(61,0)", "UnlockResource(12,61)"}));
    Frames(2);
    EXPECT_EQ(track.mState, 0);
    EXPECT_EQ(TestsIn(4), 0);
    EXPECT_EQ(SoundOf([&] { track.Play(); }), Starts(61));
    EXPECT_EQ(track.mStopped, 0);

    EXPECT_EQ(SoundOf([&] { EXPECT_EQ(track.Fade(), TRUE); }), (Calls{"FadeSample(61,0,5,60,1,0)"}));
    EXPECT_EQ(track.mStopped, 1);
    Frames(2);
    EXPECT_EQ(track.mState, 0);

    // Played in the frame between the test that saw the stop and the rest:
    // the first node starts on the next frame.
    track.Play();
    track.Stop();
    Frame();
    EXPECT_EQ(track.mState, -1);
    EXPECT_EQ(SoundOf([&] { track.Play(); }), Calls{});
    EXPECT_EQ(track.mState, 0);
    EXPECT_EQ(SoundOfFrames(1), Starts(61));
    track.Stop();
    Frames(2);

    // Play on a running track drops its wait and starts over, with no second
    // wait started.
    track.Play();
    EndAllAndStep();
    EXPECT_EQ(SoundOf([&] { track.Play(); }), Starts(61));
    EXPECT_EQ(TestsIn(3), 3);
    EXPECT_EQ(track.mState, 1);
}

TEST_F(SoundTest, MisuseOfATrackEndsWithTheExactReport)
{
    GLSndTrack track;
    EXPECT_GL_ASSERT(track.ChangeState(3), "Source/Glsound.cpp", "0");
    EXPECT_GL_ASSERT(track.ChangeState(-1), "Source/Glsound.cpp", "0");
    // A wait of no seconds, added by code, stops the game when reached.
    track.AddWaitNode(0, 0, 1, 100);
    EXPECT_GL_ASSERT(track.Play(), "Source/Glscript.cpp", "mType==UnsetTimer && secs");
    // So does one read from a file.
    GLSndManager manager;
    std::string path = WriteFile("WAIT 0\nPLAY\n");
    EXPECT_GL_ASSERT(manager.CreateSndTrack(path.c_str()), "Source/Glscript.cpp", "mType==UnsetTimer && secs");
}

// ----- the sound manager -----

// Only the calls with a choice in them: the plain forwarders are one line each.
TEST_F(SoundTest, TheManagerPicksTheKernelCallForDefaultsAllSamplesSoundTypesAndPans)
{
    GLSndManager manager;
    EXPECT_EQ(theGame->mpObjects->First(), &manager);
    k.playingSamples[9] = 77;
    k.playingSamples[95] = 60;
    k.resources[{13, 30}] = true;
    std::size_t mark = k.Mark();
    manager.SetRate(22050);
    manager.SetRate(0);
    manager.SetBits(16);
    manager.SetBits(0); // no default for the bits: 0 restores the default rate
    manager.SetChannels(2);
    manager.SetChannels(0);
    EXPECT_EQ(manager.Pause(9, 1), 1);
    manager.Pause(-1, 1);
    EXPECT_EQ(manager.Resume(9, 2), 1);
    manager.Resume(-1, 2);
    manager.Distort(9, 10, 11);
    manager.Distort(-1, 12, 13);
    // A sound of type 13 is taken before one of type 12.
    manager.Lock(30);
    manager.Lock(31);
    manager.Unlock(30);
    manager.Unlock(31);
    manager.Load(30);
    manager.Load(31);
    manager.Unload(31);
    // A silent sample that is panned starts at full volume, without a watch.
    manager.Pan(95, 30, 1);
    manager.Pan(96, 70, 2);
    EXPECT_EQ(k.CallsSince(mark),
              (Calls{"SetSampleRate(22050)",      "DefaultSampleRate()",     "SetSampleBits(16)",
                     "DefaultSampleRate()",       "SetChannelCount(2)",      "DefaultChannelCount()",
                     "PauseSample(9,1)",          "PauseAllSamples()",       "ResumeSample(9,2)",
                     "ResumeAllSamples()",        "DistortSample(9,10,11)",  "DistortAllSamples(12)",
                     "ResourceExists(13,30)",     "LockResource(13,30)",     "ResourceExists(13,31)",
                     "LockResource(12,31)",       "ResourceExists(13,30)",   "UnlockResource(13,30)",
                     "ResourceExists(13,31)",     "UnlockResource(12,31)",   "ResourceExists(13,30)",
                     "LoadResource(13,30,1)",     "ResourceExists(13,31)",   "LoadResource(12,31,1)",
                     "GetSampleVolume(95,ptr,0)", "PanSample(95,30,1)",      "GetSampleVolume(96,ptr,0)",
                     "PanSample(96,70,2)",        "PlaySample(96,0,127,0,0)"}));
    EXPECT_EQ(manager.mpFirstWatch, nullptr);
}

TEST_F(SoundTest, APlayedSampleCuesItsCallerAndIsUnlockedOnTheFirstFrameItIsSilent)
{
    GLSndManager manager;
    Receiver receiver;
    std::size_t mark = k.Mark();
    manager.Play(70, 3, 100, 0, &receiver, 4);
    manager.Play(71, 5, 90, 1, nullptr, 6);
    EXPECT_EQ(Sound(mark), (Calls{"PlaySample(70,3,100,4,0)", "PlaySampleAlternate(71,5,90,6)"}));
    ASSERT_NE(manager.mpFirstWatch, nullptr);
    EXPECT_EQ(manager.mpFirstWatch->mSample, 71); // newest first
    EXPECT_EQ(manager.mpFirstWatch->mMode, 4);
    EXPECT_EQ(manager.mpFirstWatch->mpPrev, nullptr);

    // Already playing: nothing started, nothing watched, nobody cued.
    Receiver other;
    EXPECT_EQ(SoundOf([&] { manager.Play(70, 3, 100, 0, &other, 4); }), Calls{});

    Frames(3);
    EXPECT_TRUE(receiver.cuers.empty());
    k.playingSamples.erase(70);
    // The record is seen silent; the cue is delivered a frame later.
    EXPECT_EQ(SoundOfFrames(1), Calls{Unlock(70)});
    EXPECT_TRUE(receiver.cuers.empty());
    Frame();
    EXPECT_EQ(receiver.cuers, (std::vector<GLObject*>{&manager}));
    EXPECT_EQ(receiver.values, (std::vector<int>{0}));
    EXPECT_EQ(manager.mpFirstWatch->mSample, 71);
    EXPECT_EQ(manager.mpFirstWatch->mpNext, nullptr);
    EXPECT_TRUE(SoundOfFrames(3).empty());
    EXPECT_EQ(receiver.cuers.size(), 1u);
    EXPECT_TRUE(other.cuers.empty());
    EndAllAndStep();
    EXPECT_EQ(manager.mpFirstWatch, nullptr);
}

TEST_F(SoundTest, StoppingAWatchedSampleCuesNobodyAndTheRecordGoesNextFrame)
{
    GLSndManager manager;
    Receiver first, second;
    manager.Play(80, 0, 100, 0, &first, 0);
    k.playingSamples.erase(80);
    manager.Play(80, 0, 100, 0, &second, 0); // two records for 80, second's newest
    EXPECT_EQ(SoundOf([&] { manager.Stop(80, 2); }), (Calls{"StopSample(80,2)"}));
    EXPECT_EQ(manager.mpFirstWatch->mpCaller, nullptr);
    EXPECT_EQ(static_cast<GLSndNode*>(manager.mpFirstWatch->mpNext)->mpCaller, &first);
    EXPECT_EQ(SoundOfFrames(2), (Calls{Unlock(80), Unlock(80)}));
    EXPECT_TRUE(second.cuers.empty());
    EXPECT_EQ(first.cuers.size(), 1u);
    EXPECT_EQ(manager.mpFirstWatch, nullptr);

    manager.Play(81, 0, 100, 0, &first, 0);
    EXPECT_EQ(SoundOf([&] { manager.Stop(-1, 9); }), (Calls{"StopAllSamples()"}));
    EXPECT_NE(manager.mpFirstWatch->mpCaller, nullptr); // left to DoIt
    Frames(2);
    EXPECT_EQ(first.cuers.size(), 2u);
}

TEST_F(SoundTest, AFadeWithACallerIsWatchedUntilTheVolumeReachesTheTarget)
{
    GLSndManager manager;
    Receiver receiver;
    k.playingSamples[90] = 100;
    std::size_t mark = k.Mark();
    EXPECT_EQ(manager.Fade(90, 20, 1, 2, 3, nullptr, 4), 1);
    EXPECT_EQ(manager.mpFirstWatch, nullptr);
    EXPECT_EQ(manager.Fade(91, 20, 1, 2, 3, &receiver, 4), 0);
    manager.Fade(90, 20, 5, 6, 7, &receiver, 8);
    EXPECT_EQ(Sound(mark),
              (Calls{"FadeSample(90,20,1,2,3,4)", "FadeSample(91,20,1,2,3,4)", "FadeSample(90,20,5,6,7,8)"}));
    ASSERT_NE(manager.mpFirstWatch, nullptr);
    EXPECT_EQ(manager.mpFirstWatch->mMode, 5);
    EXPECT_EQ(manager.mpFirstWatch->mVolume, 20);

    Frames(3);
    EXPECT_TRUE(receiver.cuers.empty());
    k.playingSamples[90] = 20;
    EXPECT_TRUE(SoundOfFrames(2).empty()); // a fade unlocks nothing
    EXPECT_EQ(receiver.cuers, (std::vector<GLObject*>{&manager}));
    // 91 never plays: its volume is never written and never equals 20.
    ASSERT_NE(manager.mpFirstWatch, nullptr);
    EXPECT_EQ(manager.mpFirstWatch->mSample, 91);
    EXPECT_EQ(manager.mpFirstWatch->mpPrev, nullptr);
}

TEST_F(SoundTest, TracksAreNumberedFoundPausedResumedAndDeletedByTheManager)
{
    GLSndManager manager;
    GLSndTrack* one = manager.CreateSndTrack();
    EXPECT_EQ(one->mTrackId, 1);
    EXPECT_TRUE(manager.DeleteSndTrack(1));
    EXPECT_FALSE(manager.DeleteSndTrack(1));
    EXPECT_EQ(manager.GetSndTrack(1), nullptr);
    GLSndTrack* two = manager.CreateSndTrack();
    GLSndTrack* three = manager.CreateSndTrack();
    GLSndTrack* four = GL_NEW GLSndTrack;
    EXPECT_EQ(manager.AttachSndTrack(four), 4);
    EXPECT_EQ(two->mTrackId, 2);
    EXPECT_EQ(manager.mpFirstTrack, four);
    EXPECT_EQ(manager.GetSndTrack(3), three);
    EXPECT_EQ(manager.GetSndTrack(0), nullptr);

    auto paused = [&] { return std::vector<int>{two->mPaused, three->mPaused, four->mPaused}; };
    manager.PauseSndTrack(3);
    EXPECT_EQ(paused(), (std::vector<int>{0, 1, 0}));
    manager.PauseSndTrack(7); // none
    manager.PauseSndTrack(-5);
    EXPECT_EQ(paused(), (std::vector<int>{1, 1, 1}));
    manager.ResumeSndTrack(0);
    EXPECT_EQ(paused(), (std::vector<int>{0, 0, 0}));
    manager.PauseSndTrack(0);
    manager.ResumeSndTrack(2);
    EXPECT_EQ(paused(), (std::vector<int>{0, 1, 1}));

    // Deleting a track in the middle of the list stops it.
    three->AddSndNode(100, 127, 1, 50, 100);
    three->Play();
    EXPECT_EQ(SoundOf([&] { EXPECT_TRUE(manager.DeleteSndTrack(3)); }), (Calls{"StopSample(100,0)", Unlock(100)}));
    EXPECT_EQ(manager.mpFirstTrack, four);
    EXPECT_EQ(four->mpNextTrack, two);
    EXPECT_FALSE(theGame->mpObjects->IsInList(three));
    Frames(2);
}

TEST_F(SoundTest, ResumingTracksThroughTheManagerOnlyClearsTheirPause)
{
    GLSndManager manager;
    GLSndTrack* track = manager.CreateSndTrack();
    GLSndTrack* idle = manager.CreateSndTrack();
    idle->AddSndNode(110, 127, 1, 50, 100);
    track->AddSndNode(111, 127, 1, 50, 100);
    track->AddSndNode(112, 127, 1, 50, 100);
    track->Play();
    manager.PauseSndTrack(0);
    Frames(4);
    EXPECT_EQ(track->mType, GLTimer::UnsetTimer);
    std::size_t mark = k.Mark();
    manager.ResumeSndTrack(-1);
    // Nothing moves: a track that came to rest stays at rest, unpaused,
    // until it is resumed or played itself.
    EXPECT_TRUE(k.CallsSince(mark).empty());
    EXPECT_EQ(track->mPaused, 0);
    EXPECT_EQ(idle->mPaused, 0);
    EXPECT_EQ(track->mType, GLTimer::UnsetTimer);
    EXPECT_EQ(idle->mType, GLTimer::UnsetTimer);
    Frames(3);
    EXPECT_TRUE(Sound(mark).empty());
    track->Resume();
    EXPECT_EQ(Sound(mark), Starts(112));
}

TEST_F(SoundTest, TheManagerStopsAndDeletesItsTracksAndForgetsItsWatchesWhenItGoes)
{
    Receiver receiver;
    std::size_t mark;
    {
        GLSndManager manager;
        GLSndTrack* track = manager.CreateSndTrack();
        track->AddSndNode(120, 127, 1, 50, 100);
        track->Play();
        manager.CreateSndTrack();
        manager.Play(121, 0, 100, 0, &receiver, 0);
        manager.Fade(121, 0, 0, 0, 0, &receiver, 0);
        mark = k.Mark();
    }
    EXPECT_EQ(Sound(mark), (Calls{"StopSample(0,0)", "StopSample(120,0)", "UnlockResource(12,120)"}));
    EXPECT_EQ(theGame->mpObjects->NumElements(), 0);
    Frames(2);
    EXPECT_TRUE(receiver.cuers.empty());
}

// ----- the text form -----

TEST_F(SoundTest, TheDocumentedExampleFileBuildsItsRingAndPlaysFrameByFrame)
{
    GLSndManager manager;
    std::string path = WriteFile("SOUND 101 90\nWAIT 5 10\nPRS 201 50\nPRS 202\nPLAY\n");
    k.seconds = 200;
    GLSndTrack* track = nullptr;
    EXPECT_EQ(SoundOf([&] { track = manager.CreateSndTrack(path.c_str()); }), Starts(101, 90));
    ASSERT_NE(track, nullptr);
    EXPECT_EQ(track->mTrackId, 1);
    EXPECT_EQ(Ring(track), (Calls{"S101", "W5", "G202/201"}));
    EXPECT_EQ(Numbers(track),
              (Rows{{101, 90, 1, 50, 100}, {5, 10, 1, 100}, {202, 127, 1, 50, 100}, {201, 127, 1, 50, 50}}));

    for (int loop = 0; loop < 3; loop++) {
        Dice dice;
        EndAllAndStep(); // the test finds 101 ended; the wait begins
        ASSERT_EQ(track->mType, GLTimer::SecondsTimer);
        std::uint32_t seconds = 5 + dice.Next() % 10;
        EXPECT_EQ(track->mSecondsEnd, k.seconds + seconds);
        k.seconds += seconds;
        Frame();
        int choice = dice.Next() % 2;
        bool passes = dice.Next() % 100 <= (choice == 0 ? 100 : 50);
        const int sample = choice == 0 ? 202 : 201;
        EXPECT_EQ(SoundOfFrames(1), passes ? Starts(sample) : Calls{});
        EXPECT_EQ(track->mSample, sample);
        EXPECT_EQ(SoundOf([&] { EndAllAndStep(); }), Calls{Unlock(sample)} + Starts(101, 90));
    }
}

// What the reader makes of a file, node by node.
TEST_F(SoundTest, TheReaderTakesDefaultsPrefixesSeparatorsLineEndsAndLongLinesAsDocumented)
{
    struct Case {
        const char* name;
        std::string text;
        Calls ring;
        Rows numbers;
    };
    const Case cases[] = {
        {"defaults, prefixes, separators and line ends",
         "SOUNDS 1\r\n"
         "SOUND,2,,3\t4 , 5,6 7 8 9\n"
         "WAIT 7\n"
         "WAITING 8 9 0 70\n"
         "PRS 10 20 30\n"
         "sound 11\n"
         "BEEP 12\n"
         "SOUND 13x 14y -15 +16\n"
         "PRSX -17 z\n"
         "SOUND 18 99999999999 -99999999999\n"
         "PLAYS\r\n"
         "SOUND 19", // no final line end
         {"S1", "S2", "W7", "W8", "G10", "S13", "G-17", "S18", "S19"},
         {{1, 127, 1, 50, 100},
          {2, 3, 4, 5, 6},
          {7, 0, 1, 100},
          {8, 9, 0, 70},
          {10, 30, 1, 50, 20},
          {13, 14, -15, 16, 100},
          {-17, 127, 1, 50, 0},
          {18, 2147483647, -2147483647 - 1, 50, 100},
          {19, 127, 1, 50, 100}}},
        // The line end belongs to the last token: a separator before it makes
        // the line end a number of its own, which has no digits and reads as 0.
        // A sixth number is not read (9); with no line end there is no extra
        // number (10).
        {"a separator before the line end",
         "SOUND 5 \nPRS 6,\nSOUND 7 90\t\r\nWAIT 8 3 \nSOUND 9 1 1 60 100 \nSOUND 10",
         {"S5", "G6", "S7", "W8", "S9", "S10"},
         {{5, 0, 1, 50, 100},
          {6, 127, 1, 50, 0},
          {7, 90, 0, 50, 100},
          {8, 3, 0, 100},
          {9, 1, 1, 60, 100},
          {10, 127, 1, 50, 100}}},
        // A line is read at most 119 characters at a time (a line end of
        // "\r\n" counting as one): the rest of a longer line is read as a line
        // of its own.
        {"long lines",
         "SOUND 1" + std::string(112, ' ') + "SOUND 2 64\n" + // 119 + a line
             "SOUND 3" + std::string(110, ' ') + "\r\n" +     // 117 + line end: fits
             "SOUND 4 " + std::string(111, '7') + "5\n" +     // the 120th character is a line
             "SOUND 6" + std::string(112, ' ') + "\n" +       // 119 + an empty line
             "SOUND 7\n",
         {"S1", "S2", "S3", "S4", "S6"},
         {{1, 127, 1, 50, 100},
          {2, 64, 1, 50, 100},
          {3, 0, 1, 50, 100},
          {4, 2147483647, 1, 50, 100},
          {6, 127, 1, 50, 100}}},
    };
    GLSndManager manager;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        GLSndTrack* track = manager.CreateSndTrack(WriteFile(c.text).c_str());
        ASSERT_NE(track, nullptr);
        EXPECT_EQ(Ring(track), c.ring);
        EXPECT_EQ(Numbers(track), c.numbers);
    }
    // The first file's PLAYS was carried out with the nodes read before it.
    EXPECT_EQ(manager.GetSndTrack(1)->mSample, 1);
    EXPECT_EQ(k.CallsNamed("PlaySample"), (Calls{"PlaySample(1,0,127,0,0)"}));
}

TEST_F(SoundTest, AnEmptyLineEndsTheFileMalformedLinesAreSkippedAndAMissingFileGivesNoTrack)
{
    GLSndManager manager;
    // One line holds a NUL: it is read up to there.
    std::string path =
        WriteFile("SOUND\nSOUND ,\t\nSOUND x 5\nPRS\nWAIT 0 10\nWAIT -3\nWAIT 2 -1\nWAIT\nSOUND 51\nSOUND 5\0"
                  "3\nSOUND 53\n , \t\nSOUND 54\nPLAY\n"s);
    GLSndTrack* track = manager.CreateSndTrack(path.c_str());
    ASSERT_NE(track, nullptr);
    // Only a keyword with no token after it lacks its first number; a token
    // without digits (the line end among them) is the number 0. Waits are
    // taken as written, even those that can come out at 0 seconds.
    EXPECT_EQ(Ring(track), (Calls{"S0", "S0", "W0", "W-3", "W2", "S51", "S5", "S53"}));
    GLSndNode* second = static_cast<GLSndNode*>(track->mpHeader->mpNext->mpNext);
    EXPECT_EQ(second->mVolume, 5);
    EXPECT_EQ(k.Count("PlaySample"), 0); // the PLAY after the blank line is not carried out
    EXPECT_EQ(track->mType, GLTimer::UnsetTimer);

    std::string crlf = WriteFile("SOUND 60\r\n\r\nSOUND 61\r\n");
    EXPECT_EQ(Ring(manager.CreateSndTrack(crlf.c_str())), (Calls{"S60"}));

    track = manager.CreateSndTrack(WriteFile("").c_str());
    ASSERT_NE(track, nullptr);
    EXPECT_EQ(track->mTrackId, 3);
    EXPECT_EQ(track->mpHeader->mpNext, track->mpHeader);
    EXPECT_EQ(manager.CreateSndTrack((::testing::TempDir() + "quindle_no_such_track.txt").c_str()), nullptr);
    EXPECT_EQ(manager.CreateSndTrack(nullptr), nullptr);
    EXPECT_EQ(manager.CreateSndTrack(::testing::TempDir().c_str()), nullptr); // a directory
    EXPECT_EQ(manager.mLastTrackId, 3);                                       // no number was used up
    EXPECT_EQ(manager.CreateSndTrack()->mTrackId, 4);
}

TEST_F(SoundTest, HostileFilesNeverBreakTheReaderOrTheTrack)
{
    GLSndManager manager;
    // Random bytes, weighted toward the reader's own vocabulary, then played
    // for a while: anything may be read, nothing may go wrong.
    const std::string pieces[] = {
        "SOUND", "WAIT", "PRS", "PLAY", " ",          ",",           "\t", "\n",  "\r\n",     "-",
        "+",     "0",    "1",   "99",   "2147483648", "-2147483649", "x",  "\0"s, "\xff\xfe", std::string(130, 'A')};
    std::uint32_t seed = 12345;
    auto next = [&seed](std::uint32_t n) {
        seed = seed * 1103515245u + 12345u;
        return (seed >> 8) % n;
    };
    for (int file = 0; file < 60; file++) {
        std::string text;
        int count = static_cast<int>(next(200));
        for (int i = 0; i < count; i++) {
            if (next(4) == 0)
                text += static_cast<char>(next(256));
            else
                text += pieces[next(sizeof(pieces) / sizeof(pieces[0]))];
        }
        // A wait that can come out at 0 seconds ends the game by design when
        // it is reached: a first reading with every PLAY disabled (same
        // length, so the lines are cut alike) keeps such files unplayed.
        std::string quiet = text;
        for (std::size_t at = quiet.find("PLAY"); at != std::string::npos; at = quiet.find("PLAY", at + 1))
            quiet[at] = 'X';
        GLSndTrack* track = manager.CreateSndTrack(WriteFile(quiet).c_str());
        ASSERT_NE(track, nullptr);
        bool waitsNoTime = false;
        for (GLNode* node = track->mpHeader->mpNext; node != track->mpHeader; node = node->mpNext) {
            if (node->mNodeType != GLNode::WaitNode)
                continue;
            GLWaitNode* wait = static_cast<GLWaitNode*>(node);
            long long range = wait->mMaxSeconds < 0 ? -static_cast<long long>(wait->mMaxSeconds) : wait->mMaxSeconds;
            long long most = range == 0 ? 0 : std::min(range - 1, 32767LL);
            waitsNoTime = waitsNoTime || (wait->mMinSeconds <= 0 && -static_cast<long long>(wait->mMinSeconds) <= most);
        }
        manager.DeleteSndTrack(track->mTrackId);
        if (waitsNoTime)
            continue;
        track = manager.CreateSndTrack(WriteFile(text).c_str());
        ASSERT_NE(track, nullptr);
        track->Play();
        for (int frame = 0; frame < 20; frame++) {
            k.seconds += 1;
            if (frame % 3 == 0)
                k.playingSamples.clear();
            Frame();
        }
        manager.DeleteSndTrack(track->mTrackId);
    }
}

} // namespace
