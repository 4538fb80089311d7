// Narrators: the talk time from text or speech, ending on time and silence,
// the keys and pointer events that end a message early, the hog they are while
// they talk, and the cue they send when done. Every case runs whole frames of
// a game on the recording kernel.
#include "GameTest.h"
#include "glevent.h"
#include "glmsg.h"
#include "gltalker.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <tuple>
#include <vector>

namespace {

// A game's narrator: remembers what Display showed and the talk time it saw
// then, and what Done was asked to do.
class ShowingNarrator : public GLNarrator {
public:
    void Display() override
    {
        shown.push_back(mpMessage->mpText ? mpMessage->mpText : "");
        talkTimeAtDisplay.push_back(mTalkEndTime);
    }
    void Done(int iValue) override
    {
        doneValues.push_back(iValue);
        GLNarrator::Done(iValue);
    }
    std::vector<std::string> shown;
    std::vector<std::uint32_t> talkTimeAtDisplay;
    std::vector<int> doneValues;
};

// A prima donna that counts what reaches it: nothing may while a narrator talks.
class Listener : public GLObject {
public:
    int HandleEvent(GLEvent* pEvent) override
    {
        heard++;
        return pEvent->claimed;
    }
    int heard = 0;
};

class NarratorTest : public GameTest {
protected:
    NarratorTest()
    {
        k.AddMessage(10, 20, 30, 40, 1, 3, "Twelve bytes"); // no speech
        k.AddMessage(10, 20, 30, 40, 2, 3, "Short", 300);   // speech of 300 ticks
        game->mpUser->mpPrimaDonnas->AddToEnd(&listener);
    }
    ~NarratorTest() override { game->mpUser->mpPrimaDonnas->Remove(&listener); }

    // The message of that sequence, fetched from the kernel.
    GLMessage& Fetch(int iSequence)
    {
        EXPECT_EQ(message.Fill(10, 20, 30, 40, iSequence), 3);
        return message;
    }
    int Talking(const GLNarrator& narrator) const
    {
        return game->mpObjects->IsInList(const_cast<GLNarrator*>(&narrator)) &&
               game->mpUser->mpHogs->IsInList(const_cast<GLNarrator*>(&narrator));
    }
    // The caller's cue count, last cuer and last value.
    std::tuple<int, GLObject*, int> Heard() const { return {caller.cues, caller.lastCuer, caller.lastValue}; }
    std::tuple<int, GLObject*, int> Cues(int count, GLObject* cuer, int value) const { return {count, cuer, value}; }

    GLMessage message;
    ShowingNarrator narrator;
    CueRecorder caller;
    Listener listener;
};

TEST_F(NarratorTest, TextTalksFiveTicksPerByteSpeechForItsLengthAndEitherEndsInTheFirstFrameAfter)
{
    Frame(1000);
    narrator.Say(&Fetch(1), &caller);
    EXPECT_EQ(narrator.mTalkEndTime, 1060u);
    EXPECT_EQ(narrator.mIAmTalking, TRUE);
    EXPECT_EQ(game->mpObjects->First(), &narrator);
    EXPECT_EQ(game->mpUser->mpHogs->First(), &narrator);
    ASSERT_EQ(narrator.shown, std::vector<std::string>{"Twelve bytes"});
    EXPECT_EQ(narrator.talkTimeAtDisplay[0], 60u) << "the text time is set before Display";
    EXPECT_EQ(k.CallsNamed("PlayMessageAudio"), std::vector<std::string>{"PlayMessageAudio(10,20,30,40,1,0,127,0)"});

    // Until the talk time is over the speech is not even asked about.
    for (std::uint32_t tick = 1001; tick <= 1060; tick += 7)
        Frame(tick);
    Frame(1060);
    EXPECT_TRUE(Talking(narrator));
    EXPECT_EQ(k.Count("IsMessageAudioPlaying"), 0);
    EXPECT_EQ(k.Count("StopMessageAudio"), 0);

    const std::size_t mark = k.Mark();
    Frame(1061);
    EXPECT_FALSE(Talking(narrator));
    EXPECT_EQ(narrator.mIAmTalking, FALSE);
    EXPECT_EQ(narrator.doneValues, std::vector<int>{0});
    const std::vector<std::string> since = k.CallsSince(mark);
    std::vector<std::string> speech;
    std::copy_if(since.begin(), since.end(), std::back_inserter(speech),
                 [](const std::string& call) { return call.find("Message") != std::string::npos; });
    EXPECT_EQ(speech, (std::vector<std::string>{"IsMessageAudioPlaying(10,20,30,40,1,ptr)",
                                                "StopMessageAudio(10,20,30,40,1)"}));
    EXPECT_EQ(caller.cues, 0) << "a cue is never delivered at once";

    Frame(1062);
    EXPECT_EQ(Heard(), Cues(1, &narrator, 0));
    EXPECT_EQ(narrator.mpCaller, &caller) << "the caller stays set";
    Frame(1063);
    EXPECT_EQ(caller.cues, 1);
    EXPECT_TRUE(game->mpObjects->IsEmpty());

    // Speech sets the talk time, and the narrator waits for it to stop.
    Frame(1100);
    narrator.Say(&Fetch(2), &caller);
    EXPECT_EQ(narrator.mTalkEndTime, 1401u) << "speech length + 1, whatever the text";
    EXPECT_EQ(narrator.talkTimeAtDisplay.back(), 25u) << "Display comes before the speech";
    Frame(1401);
    EXPECT_TRUE(Talking(narrator));
    Frame(1402);
    EXPECT_FALSE(Talking(narrator));
    Frame(1403);
    EXPECT_EQ(Heard(), Cues(2, &narrator, 0));

    // Speech that started late is still playing when the talk time is over:
    // the narrator keeps talking, asking every frame, until it stops.
    Frame(2000);
    k.ticks = 2200; // the kernel's clock has moved on within the frame
    narrator.Say(&message, &caller);
    EXPECT_EQ(narrator.mTalkEndTime, 2301u);
    const int asked = k.Count("IsMessageAudioPlaying");
    Frames({2302, 2400, 2499});
    EXPECT_TRUE(Talking(narrator));
    EXPECT_EQ(k.Count("IsMessageAudioPlaying"), asked + 3);
    Frame(2500);
    EXPECT_FALSE(Talking(narrator));
    EXPECT_EQ(narrator.doneValues, (std::vector<int>{0, 0, 0}));
    Frame(2501);
    EXPECT_EQ(caller.cues, 3);
}

TEST_F(NarratorTest, EnterEscapeAndTypeTwoPointerEventsEndItWithTheirValuesAndEveryOtherEventIsSwallowed)
{
    struct Case {
        std::uint16_t type;
        std::uint32_t message;
        std::uint16_t modifiers;
        int value;
    };
    const Case cases[] = {
        {8, 27, 0, 1},       // Escape cuts the conversation short
        {8, 13, 0, 0},       // Enter ends the message only
        {8, 13, 1, 0},       // modifiers do not matter to keys
        {2, 0, 0, 0},        // a type-2 pointer event
        {2, 0, 1, 1},        // ... with modifier bit 0
        {2, 0, 3, 1},        // ... among others
        {2, 0, 2, 0},        // bit 1 alone is not bit 0
        {2 | 8, 27, 0, 0},   // the pointer bit decides before the key
        {0x40 | 2, 0, 1, 1}, // other type bits beside the pointer bit
    };
    std::uint32_t tick = 1000;
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.type << "/" << c.message << "/" << c.modifiers);
        Frame(tick);
        narrator.Say(&Fetch(1), &caller);
        const int cues = caller.cues;
        k.PushEvent(c.type, c.message, c.modifiers);
        Frame(tick + 1);
        EXPECT_TRUE(game->mpUser->mEvent.claimed);
        EXPECT_FALSE(Talking(narrator)) << "ended at once, long before its time";
        EXPECT_EQ(narrator.doneValues.back(), c.value);
        Frame(tick + 2);
        EXPECT_EQ(Heard(), Cues(cues + 1, &narrator, c.value));
        tick += 10;
    }

    // Every other event is claimed too and changes nothing.
    Frame(tick);
    narrator.Say(&Fetch(1), &caller);
    game->mpUser->DoesHandleNulls(TRUE);
    const std::size_t done = narrator.doneValues.size();
    const std::pair<std::uint16_t, std::uint32_t> others[] = {
        {kEventPointerDown, 0}, {4, 13} /* a type no constant names */, {kEventKeyDown, 65}, {kEventKeyDown, kQuitKey},
        {kEventKeyDown, 1 + 13 * 0x10000u}, {kEventPointerMove, 0}, {kEventNull, 0}};
    for (const auto& other : others) {
        k.PushEvent(other.first, other.second, 4);
        Frame(++tick);
        EXPECT_TRUE(game->mpUser->mEvent.claimed) << "type " << other.first;
        EXPECT_TRUE(Talking(narrator)) << "type " << other.first;
    }
    EXPECT_EQ(listener.heard, 0) << "no event got past the narrator";
    EXPECT_EQ(narrator.doneValues.size(), done);

    // Once the narrator is done, input goes where it went before.
    game->mpUser->DoesHandleNulls(FALSE);
    Frame(tick + 60);
    k.PushEvent(kEventKeyDown, 65);
    Frame(tick + 61);
    EXPECT_EQ(listener.heard, 1);
}

TEST_F(NarratorTest, ANarratorIsReusableWithoutACallerCuesNobodyAndCopiesAreIdle)
{
    Frame(1000);
    GLNarrator plain;
    GLMessage& said = Fetch(1);
    const std::size_t blocks = k.Ledger().LiveCount();
    plain.Say(&said, 0);
    EXPECT_EQ(plain.mpTextView, nullptr);
    k.PushEvent(kEventKeyDown, 13);
    Frame(1001);
    EXPECT_EQ(plain.mIAmTalking, FALSE);
    EXPECT_EQ(k.Ledger().LiveCount(), blocks) << "no cue was made";
    EXPECT_TRUE(game->mpObjects->IsEmpty());

    // Said again, it counts from the new frame; a message with no text at all
    // has no talk time and ends in the first frame after.
    GLMessage empty;
    Frame(5000);
    plain.Say(&empty, 0);
    EXPECT_EQ(plain.mTalkEndTime, 5000u);
    EXPECT_EQ(k.CallsNamed("PlayMessageAudio").back(), "PlayMessageAudio(-1,-1,-1,-1,-1,0,127,0)");
    Frame(5000);
    EXPECT_EQ(plain.mIAmTalking, TRUE);
    Frame(5001);
    EXPECT_EQ(plain.mIAmTalking, FALSE);

    // A copy is idle but can talk on its own; a talking narrator deleted
    // leaves the game's sets.
    GLTextView* view = reinterpret_cast<GLTextView*>(&caller); // only the pointer matters
    Frame(6000);
    GLNarrator* talking = new GLNarrator(view);
    talking->Say(&Fetch(1), &caller);
    GLNarrator copy(*talking);
    EXPECT_EQ(copy.mIAmTalking, FALSE);
    EXPECT_EQ(copy.mpTextView, view);
    EXPECT_EQ(copy.mpMessage, &message);
    EXPECT_EQ(copy.mTalkEndTime, 6060u);
    copy.Say(&message, 0);
    EXPECT_EQ(game->mpUser->mpHogs->NumElements(), 2);
    delete talking;
    EXPECT_EQ(game->mpUser->mpHogs->NumElements(), 1);
    EXPECT_EQ(game->mpObjects->NumElements(), 1);
    Frame(6100); // the game does not reach the deleted narrator
    EXPECT_EQ(copy.mIAmTalking, FALSE);
    Frame(6101);
    EXPECT_EQ(caller.cues, 0);
}

TEST_F(NarratorTest, TwoNarratorsTalkingAtOnceAreBothHogsTheLatestFirst)
{
    GLNarrator first;
    GLNarrator second;
    GLMessage other;
    Frame(1000);
    first.Say(&Fetch(1), &caller);
    ASSERT_EQ(other.Fill(10, 20, 30, 40, 2), 3);
    second.Say(&other, &caller);
    EXPECT_EQ(game->mpUser->mpHogs->First(), &second);
    EXPECT_EQ(game->mpUser->mpHogs->NumElements(), 2);
    // The first hog claims the event, so only the latest narrator ends.
    k.PushEvent(kEventKeyDown, 27);
    Frame(1001);
    EXPECT_EQ(second.mIAmTalking, FALSE);
    EXPECT_EQ(first.mIAmTalking, TRUE);
    // The second narrator's cue fires first in the next frame and leaves the
    // object set, so the first narrator moves down under the walk and waits
    // one more frame.
    Frame(1061);
    EXPECT_EQ(Heard(), Cues(1, &second, 1));
    EXPECT_EQ(first.mIAmTalking, TRUE);
    Frame(1062);
    EXPECT_EQ(first.mIAmTalking, FALSE);
    Frame(1063);
    EXPECT_EQ(Heard(), Cues(2, &first, 0));
}

using NarratorDeathTest = NarratorTest;

TEST_F(NarratorDeathTest, MisuseIsReported)
{
    Frame(1000);
    GLNarrator idle;
    EXPECT_GL_ASSERT(idle.DoIt(), "Source/Gltalker.cpp", "mIAmTalking");
    GLEvent event;
    EXPECT_GL_ASSERT(idle.HandleEvent(&event), "Source/Gltalker.cpp", "mIAmTalking");
    EXPECT_GL_ASSERT(idle.Done(0), "Source/Gltalker.cpp", "mIAmTalking");

    // Game code that put the narrator in the object set itself.
    EXPECT_GL_ASSERT((game->mpObjects->AddToEnd(&idle), idle.Say(&Fetch(1), 0)), "include/glset.h",
                     "!\"Item is already in set!\"");

    narrator.Say(&Fetch(1), &caller);
    EXPECT_GL_ASSERT(narrator.Say(&message, &caller), "Source/Gltalker.cpp",
                     "!mIAmTalking && (GameDoesText || GameDoesAudio)");
    // Taken out of the hogs behind its back.
    EXPECT_GL_ASSERT((game->mpUser->mpHogs->Remove(&narrator), narrator.Done(0)), "include/glset.h",
                     "IsInList(pElementExisting)");
    narrator.Done(0);
    Frame(1001);
    EXPECT_EQ(caller.cues, 1);
}

} // namespace
