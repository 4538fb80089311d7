// Messages and the messager: fetching by keys and by the kernel's "next",
// conversations said frame by frame through narrators with text and speech,
// cut short by the player, ranges, messages that do not exist, and the
// narrators the library's own FindTalker makes.
#include "GameTest.h"
#include "glmsg.h"
#include "gltalker.h"

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace {

// All a message holds: "'text' by talker keys k1..k5 last k1..k5".
std::string Held(const GLMessage& message)
{
    std::string held = message.mpText ? "'" + std::string(message.mpText) + "'" : "null";
    held += " by " + std::to_string(message.mTalker) + " keys";
    for (int key : message.mKeys)
        held += " " + std::to_string(key);
    held += " last";
    for (int key : message.mLastKeys)
        held += " " + std::to_string(key);
    return held;
}

// ----- GLMessage -----

using MessageTest = QuindleTest;

TEST_F(MessageTest, FillByKeysThenByNextTakesTextTalkerAndTheKeysTheKernelReports)
{
    k.AddMessage(7, 8, 9, 10, 1, 4, "First line");
    GLMessage message;
    EXPECT_EQ(Held(message), "null by 0 keys -1 -1 -1 -1 -1 last -1 -1 -1 -1 -1");
    EXPECT_EQ(message.Fill(7, 8, 9, 10, 1), 4);
    EXPECT_EQ(Held(message), "'First line' by 4 keys 7 8 9 10 1 last 7 8 9 10 1");
    // Messages added after one was handed out (the store may move) leave "next" working.
    k.AddMessage(7, 8, 9, 10, 2, 5, "Second");
    for (int i = 0; i < 64; i++)
        k.AddMessage(1, 1, 1, 1, i + 1, 1, "filler");
    EXPECT_EQ(k.Calls(), (std::vector<std::string>{"GetMessageSize(7,8,9,10,1)", "GetMessage(7,8,9,10,1,11)",
                                                   "GetLastMessageKeys()"}));

    // A lookup that finds nothing keeps the message held, but not the keys asked.
    EXPECT_EQ(message.Fill(7, 8, 9, 10, 6), 0);
    EXPECT_EQ(Held(message), "'First line' by 4 keys 7 8 9 10 6 last 7 8 9 10 1");

    // "Next" is the kernel's: after the message it returned last, whatever the
    // keys say; the keys are taken back from the kernel.
    k.ClearCalls();
    EXPECT_EQ(message.Fill(), 5);
    EXPECT_EQ(Held(message), "'Second' by 5 keys 7 8 9 10 2 last 7 8 9 10 2");
    EXPECT_EQ(k.Calls(),
              (std::vector<std::string>{"GetNextMessageSize()", "GetNextMessage(7)", "GetLastMessageKeys()"}));

    k.ClearCalls();
    EXPECT_EQ(message.Fill(), 0);
    EXPECT_EQ(k.Calls(), std::vector<std::string>{"GetNextMessageSize()"});
    EXPECT_EQ(Held(message), "'Second' by 5 keys 7 8 9 10 2 last 7 8 9 10 2");
}

TEST_F(MessageTest, EachFillTakesABlockOfTheKernelsSizeAndCopiesHaveTheirOwnText)
{
    k.AddMessage(1, 1, 1, 1, 1, 2, std::string(300, 'x'));
    k.AddMessage(1, 1, 1, 1, 2, 2, "");
    GLMessage message;
    const std::size_t blocks = k.Ledger().LiveCount();
    ASSERT_EQ(message.Fill(1, 1, 1, 1, 1), 2);
    ASSERT_EQ(k.Ledger().LiveCount(), blocks + 1);
    int found = 0;
    for (const auto& block : k.Ledger().LiveBlocks())
        if (block.address == message.mpText) {
            found++;
            EXPECT_EQ(block.size, 301u) << "the size the kernel asked for";
            EXPECT_EQ(block.file, "Source/Glmsg.cpp");
        }
    EXPECT_EQ(found, 1);
    EXPECT_EQ(std::strlen(message.mpText), 300u);

    GLMessage copy(message);
    EXPECT_NE(copy.mpText, message.mpText);
    EXPECT_EQ(Held(copy), Held(message));

    // The old block goes back when the next one is taken.
    ASSERT_EQ(message.Fill(), 2);
    EXPECT_STREQ(message.mpText, "");
    EXPECT_EQ(std::strlen(copy.mpText), 300u);
    EXPECT_EQ(k.Ledger().LiveCount(), blocks + 2);

    GLMessage empty;
    copy = empty;
    EXPECT_EQ(Held(copy), Held(empty));
    copy = message;
    EXPECT_STREQ(copy.mpText, "");
    EXPECT_EQ(k.Ledger().LiveCount(), blocks + 2);
}

// ----- GLMessager -----

// A game's narrator, which logs each message it displays with the frame's tick.
class LoggingNarrator : public GLNarrator {
public:
    explicit LoggingNarrator(std::vector<std::string>* pLog) : mpLog(pLog) {}
    void Display() override
    {
        mpLog->push_back(std::to_string(theGame->mGameTicks) + " " + std::to_string(mpMessage->mKeys[4]) + ":" +
                         mpMessage->mpText);
    }

private:
    std::vector<std::string>* mpLog;
};

// A game's messager: talker 1 is spoken by the narrator, any other has none.
class GameMessager : public GLMessager {
public:
    explicit GameMessager(GLNarrator* pNarrator) : mpNarrator(pNarrator) { mpTalkers->AddToEnd(pNarrator); }
    ~GameMessager() override { mpTalkers->Remove(mpNarrator); }
    GLNarrator* FindTalker(int iTalker) override
    {
        asked.push_back(iTalker);
        return iTalker == 1 ? mpNarrator : nullptr;
    }
    std::vector<int> asked;

private:
    GLNarrator* mpNarrator;
};

class MessagerTest : public GameTest {
protected:
    MessagerTest() : narrator(&shown), messager(&narrator)
    {
        // Conversation 5/6/7/8: four messages of 4 bytes (20 ticks) each; the
        // second has 50 ticks of speech.
        k.AddMessage(5, 6, 7, 8, 1, 1, "One.");
        k.AddMessage(5, 6, 7, 8, 2, 1, "Two.", 50);
        k.AddMessage(5, 6, 7, 8, 3, 1, "Tri.");
        k.AddMessage(5, 6, 7, 8, 4, 1, "For.");
    }

    // Runs frames one tick apart until the caller has been cued, at most limit.
    void RunUntilCued(std::uint32_t limit = 1000)
    {
        const int cues = caller.cues;
        for (std::uint32_t i = 0; i < limit && caller.cues == cues; ++i)
            Frame(k.ticks + 1);
    }

    // The caller's cue count, last cuer and last value.
    std::tuple<int, GLObject*, int> Heard() const { return {caller.cues, caller.lastCuer, caller.lastValue}; }
    std::tuple<int, GLObject*, int> Cues(int count, int value) { return {count, &messager, value}; }

    std::vector<std::string> shown;
    LoggingNarrator narrator;
    GameMessager messager;
    CueRecorder caller;
};

TEST_F(MessagerTest, AWholeConversationIsSaidMessageByMessageFrameByFrame)
{
    Frame(1000);
    EXPECT_EQ(messager.Say(5, 6, 7, 8, 0, &caller), TRUE);
    EXPECT_EQ(messager.mSequence, 1);
    EXPECT_EQ(messager.mLastSequence, 32767);
    EXPECT_EQ(shown, std::vector<std::string>{"1000 1:One."}) << "the first message starts at once";

    // One: 20 ticks of text, ends at 1021; its cue starts Two in 1022.
    Frame(1021);
    EXPECT_EQ(narrator.mIAmTalking, FALSE);
    EXPECT_EQ(shown.size(), 1u);
    Frame(1022);
    EXPECT_EQ(shown.back(), "1022 2:Two.");
    EXPECT_EQ(narrator.mTalkEndTime, 1022u + 51u) << "speech decides";
    EXPECT_EQ(messager.mSequence, 2);
    // Two: ends at 1074, Three starts at 1075 and ends at 1096, Four at 1097.
    Frames({1073, 1074});
    EXPECT_EQ(narrator.mIAmTalking, FALSE);
    Frames({1075, 1096, 1097});
    EXPECT_EQ(shown, (std::vector<std::string>{"1000 1:One.", "1022 2:Two.", "1075 3:Tri.", "1097 4:For."}));
    EXPECT_EQ(caller.cues, 0);

    // Four ends at 1118; in 1119 the messager finds no next message and cues
    // the caller, who hears of it in 1120.
    Frames({1118, 1119});
    EXPECT_EQ(caller.cues, 0);
    Frame(1120);
    EXPECT_EQ(Heard(), Cues(1, 0));
    EXPECT_EQ(messager.asked, (std::vector<int>{1, 1, 1, 1}));
    EXPECT_EQ(k.CallsNamed("PlayMessageAudio"),
              (std::vector<std::string>{"PlayMessageAudio(5,6,7,8,1,0,127,0)", "PlayMessageAudio(5,6,7,8,2,0,127,0)",
                                        "PlayMessageAudio(5,6,7,8,3,0,127,0)", "PlayMessageAudio(5,6,7,8,4,0,127,0)"}));
    EXPECT_EQ(k.Count("StopMessageAudio"), 4);
    EXPECT_EQ(k.Count("GetMessageSize"), 1) << "only the first message is looked up by its keys";
    Frame(1121);
    EXPECT_EQ(caller.cues, 1);
    EXPECT_TRUE(game->mpObjects->IsEmpty());
}

TEST_F(MessagerTest, OneSequenceSaysThatMessageOnlyRangesStopAtTheirEndAndCopiesAreOwn)
{
    Frame(1000);
    EXPECT_EQ(messager.Say(5, 6, 7, 8, 3, &caller), TRUE);
    EXPECT_EQ(messager.mLastSequence, 3);
    // A copy has its own message and talker set.
    GLMessager copy(messager);
    EXPECT_NE(copy.mpMessage, messager.mpMessage);
    EXPECT_NE(copy.mpTalkers, messager.mpTalkers);
    EXPECT_STREQ(copy.mpMessage->mpText, "Tri.");
    EXPECT_TRUE(copy.mpTalkers->IsInList(&narrator));
    EXPECT_EQ(copy.mpCaller, &caller);
    EXPECT_EQ(copy.mSequence, 3);
    EXPECT_EQ(copy.mLastSequence, 3);
    GLMessager assigned;
    assigned = copy;
    EXPECT_STREQ(assigned.mpMessage->mpText, "Tri.");
    EXPECT_EQ(assigned.mpTalkers->NumElements(), 1);
    RunUntilCued();
    EXPECT_EQ(shown, std::vector<std::string>{"1000 3:Tri."});
    EXPECT_EQ(messager.mSequence, 4);
    EXPECT_EQ(k.Count("GetNextMessageSize"), 0) << "the range was over before the kernel was asked";
    EXPECT_EQ(caller.lastValue, 0);

    shown.clear();
    EXPECT_EQ(messager.SayRange(5, 6, 7, 8, 2, 3, &caller), TRUE);
    RunUntilCued();
    EXPECT_EQ(shown, (std::vector<std::string>{"1023 2:Two.", "1076 3:Tri."}));

    // A range without an end runs to the end of the conversation.
    shown.clear();
    EXPECT_EQ(messager.SayRange(5, 6, 7, 8, 2, 0, &caller), TRUE);
    EXPECT_EQ(messager.mLastSequence, 32767);
    RunUntilCued();
    EXPECT_EQ(shown, (std::vector<std::string>{"1099 2:Two.", "1152 3:Tri.", "1174 4:For."}));
    EXPECT_EQ(caller.cues, 3);
}

TEST_F(MessagerTest, EscapeCutsTheConversationShortAndTheNextOneStartsAfresh)
{
    Frame(1000);
    messager.Say(5, 6, 7, 8, 0, &caller);
    Frames({1021, 1022}); // Two starts
    k.PushEvent(kEventKeyDown, kKeyEscape);
    Frame(1023); // Escape: the narrator is done with 1
    EXPECT_EQ(narrator.mIAmTalking, FALSE);
    Frame(1024); // the messager hears it and cues the caller
    EXPECT_EQ(messager.mAborted, FALSE) << "forgotten once the caller is cued";
    EXPECT_EQ(caller.cues, 0);
    Frame(1025);
    EXPECT_EQ(Heard(), Cues(1, 1));
    EXPECT_EQ(shown.size(), 2u) << "nothing after the message cut short";
    EXPECT_EQ(k.Count("GetNextMessageSize"), 1);

    // Enter ends one message only; the conversation goes on, and ends with 0.
    shown.clear();
    messager.Say(5, 6, 7, 8, 0, &caller);
    k.PushEvent(kEventKeyDown, kKeyEnter);
    RunUntilCued();
    EXPECT_EQ(shown.size(), 4u);
    EXPECT_EQ(caller.lastValue, 0);
}

TEST_F(MessagerTest, ConversationsThatCannotBeSaidCueTheCallerWithZero)
{
    k.AddMessage(1, 2, 3, 4, 1, 0, "Nobody says this.");
    k.AddMessage(1, 2, 3, 4, 2, 9, "Nobody speaks for talker 9.");

    // No such message, on a messager that never said anything.
    Frame(1000);
    EXPECT_EQ(messager.Say(9, 9, 9, 9, 0, &caller), FALSE);
    EXPECT_TRUE(messager.asked.empty()) << "no narrator was asked for";
    EXPECT_EQ(caller.cues, 0);
    Frame(1001);
    EXPECT_EQ(Heard(), Cues(1, 0));

    // A message whose talker number is 0 counts as not found.
    EXPECT_EQ(messager.Say(1, 2, 3, 4, 1, &caller), FALSE);
    EXPECT_TRUE(messager.asked.empty());
    Frame(1002);
    EXPECT_EQ(caller.cues, 2);

    // A talker without a narrator: the message exists, but nobody says it.
    EXPECT_EQ(messager.Say(1, 2, 3, 4, 2, &caller), TRUE);
    EXPECT_EQ(messager.asked, std::vector<int>{9});
    Frame(1003);
    EXPECT_EQ(caller.cues, 3);
    EXPECT_TRUE(shown.empty());

    // After a conversation that was said, a lookup that finds nothing still
    // reports FALSE, although the message held has a talker.
    messager.Say(5, 6, 7, 8, 4, &caller);
    RunUntilCued();
    ASSERT_EQ(messager.mpMessage->mTalker, 1);
    EXPECT_EQ(messager.SayRange(5, 6, 7, 8, 5, 0, &caller), FALSE);
    EXPECT_EQ(messager.mpMessage->mTalker, 1);
    Frame(k.ticks + 1);
    EXPECT_EQ(Heard(), Cues(5, 0));

    // With no caller nobody is cued.
    EXPECT_EQ(messager.Say(9, 9, 9, 9, 0, nullptr), FALSE);
    EXPECT_TRUE(game->mpObjects->IsEmpty());
}

TEST_F(MessagerTest, TheLibrarysOwnTalkersBelongToTheMessager)
{
    GLMessager* plain = new GLMessager();
    Frame(1000);
    EXPECT_EQ(plain->Say(5, 6, 7, 8, 0, &caller), TRUE);
    GLObject* first = game->mpUser->mpHogs->First();
    ASSERT_NE(first, nullptr);
    std::vector<GLObject*> speakers{first};
    for (int i = 0; i < 200 && caller.cues == 0; ++i) {
        Frame(k.ticks + 1);
        if (!game->mpUser->mpHogs->IsEmpty())
            speakers.push_back(game->mpUser->mpHogs->First());
    }
    ASSERT_EQ(caller.cues, 1);
    // Each message gets a narrator of its own, made for it.
    speakers.erase(std::unique(speakers.begin(), speakers.end()), speakers.end());
    ASSERT_EQ(speakers.size(), 4u);
    EXPECT_EQ(std::set<GLObject*>(speakers.begin(), speakers.end()).size(), 4u);
    EXPECT_NE(plain->FindTalker(1), plain->FindTalker(1));
    EXPECT_EQ(k.Count("StopMessageAudio"), 4);

    // A second Say while a conversation is under way takes over the caller;
    // the narrator still talking is left alone and another one says it.
    CueRecorder other;
    plain->Say(5, 6, 7, 8, 1, &caller);
    plain->Say(5, 6, 7, 8, 3, &other);
    EXPECT_EQ(game->mpUser->mpHogs->NumElements(), 2);
    EXPECT_EQ(game->mpObjects->NumElements(), 2);

    // Deleted while both talk, the messager takes its narrators with it and
    // out of the game's sets; the fixture checks that nothing is left over.
    delete plain;
    EXPECT_TRUE(game->mpUser->mpHogs->IsEmpty());
    EXPECT_TRUE(game->mpObjects->IsEmpty());
    Frame(k.ticks + 100);
    EXPECT_EQ(caller.cues, 1);
    EXPECT_EQ(other.cues, 0);
}

using MessagerDeathTest = MessagerTest;

TEST_F(MessagerDeathTest, ARangeThatEndsBeforeItStartsIsReported)
{
    EXPECT_GL_ASSERT(messager.SayRange(5, 6, 7, 8, 5, 3, &caller), "Source/Glmsg.cpp", "mSequence<=mLastSequence");
    EXPECT_GL_ASSERT(messager.SayRange(5, 6, 7, 8, 4, -1, &caller), "Source/Glmsg.cpp", "mSequence<=mLastSequence");
    // A range without an end stops at 32767.
    EXPECT_GL_ASSERT(messager.SayRange(5, 6, 7, 8, 32768, 0, &caller), "Source/Glmsg.cpp", "mSequence<=mLastSequence");
}

} // namespace
