// The game object: ownership, the cursor it keeps, the five steps of a frame,
// the walk over its object set while members come and go, and the main loop
// with its quit handler.
#include "QuindleTest.h"
#include "glcast.h"
#include "glcursor.h"
#include "glgame.h"
#include "glplane.h"
#include "glplanes.h"
#include "glquithd.h"
#include "gltarget.h"
#include "gluser.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace {

using Log = std::vector<std::string>;

// Everything that happens in a frame, in order: kernel calls and the work of
// the test's objects, merged by the position of each in the kernel's log.
class Trace {
public:
    explicit Trace(RecordingKernel& kernel) : mKernel(kernel), mMark(kernel.Mark()) {}
    void Note(const std::string& what) { mNotes.emplace_back(mKernel.Calls().size(), what); }
    Log Merged() const
    {
        Log merged;
        std::size_t call = mMark;
        const Log& calls = mKernel.Calls();
        for (const auto& note : mNotes) {
            merged.insert(merged.end(), calls.begin() + call, calls.begin() + note.first);
            merged.push_back(note.second);
            call = note.first;
        }
        merged.insert(merged.end(), calls.begin() + call, calls.end());
        return merged;
    }
    void Restart()
    {
        mMark = mKernel.Mark();
        mNotes.clear();
    }

private:
    RecordingKernel& mKernel;
    std::size_t mMark;
    std::vector<std::pair<std::size_t, std::string>> mNotes;
};

// A member of the game's object set; what it does besides noting its turn is
// up to the test, once.
class Worker : public GLObject {
public:
    Worker(const char* name, Trace& trace) : mName(name), mTrace(trace) { NeedsDoIt(TRUE); }
    void DoIt() override
    {
        mTrace.Note(mName);
        mRuns++;
        std::function<void()> action = std::move(mAction);
        mAction = nullptr;
        if (action)
            action();
    }
    std::string mName;
    Trace& mTrace;
    int mRuns = 0;
    std::function<void()> mAction;
};

// An input handler that notes every event offered and claims those whose
// type is in its mask.
class Handler : public GLTarget {
public:
    Handler(const char* name, Trace& trace, unsigned claimMask = 0) : mName(name), mTrace(trace), mClaimMask(claimMask)
    {
        NeedsEvent(TRUE);
    }
    int HandleEvent(GLEvent* pEvent) override
    {
        mTrace.Note(mName + ":" + std::to_string(pEvent->type));
        if (pEvent->type & mClaimMask)
            pEvent->claimed = TRUE;
        if (mAction)
            mAction(pEvent);
        return pEvent->claimed;
    }
    std::string mName;
    Trace& mTrace;
    unsigned mClaimMask;
    std::function<void(GLEvent*)> mAction;
};

// An object of class Base that calls back when it is destroyed.
template <class Base> class Bye : public Base {
public:
    using Base::Base;
    ~Bye() override { mOnBye(); }
    std::function<void()> mOnBye;
};

// Sets do not own or touch their members, so a test may leave its stack
// objects in the game's sets when it ends.
class GameTest : public QuindleTest {
protected:
    void SetUp() override
    {
        k.ticks = 500;
        game = new GLGame;
        GLDLLInit(game);
    }
    void TearDown() override { delete game; }

    // One frame, traced from its start.
    Log Frame()
    {
        trace.Restart();
        game->DoIt();
        return trace.Merged();
    }
    // A frame's trace with nothing but these members' turns.
    static Log Walk(const Log& turns)
    {
        Log log{"GetTicks()"};
        log.insert(log.end(), turns.begin(), turns.end());
        log.insert(log.end(), {"UpdateScreen(1)", "GetEvent(32767)"});
        return log;
    }

    GLGame* game = nullptr;
    GLCelRes arrow{999, 0, 0, 0};
    Trace trace{k};
};

// ----- construction, ownership, cursor -----

TEST_F(GameTest, ConstructorsMakeWhatTheyAreNotGivenAndInstallTheCursorWhichSetCursorReplaces)
{
    k.ticks = 77;
    std::size_t mark = k.Mark();
    GLGame other;
    EXPECT_EQ(k.CallsSince(mark), (Log{"GetTicks()"}));
    EXPECT_EQ(other.mGameTicks, 77u);

    GLGame made(new GLCursor(arrow, FALSE), nullptr, nullptr);
    EXPECT_NE(made.mpUser, nullptr);
    EXPECT_NE(made.mpPlaneManager, nullptr);

    GLCursor* cursor = new GLCursor(arrow, TRUE);
    GLUser* user = new GLUser;
    GLPlaneManager* planes = new GLPlaneManager;
    GLGame* given = new GLGame(cursor, user, planes);
    EXPECT_EQ(given->mpUser, user);
    EXPECT_EQ(given->mpPlaneManager, planes);
    EXPECT_EQ(given->GetCursor(), cursor);
    // Installing the same cursor again, as callers of this constructor do,
    // changes nothing and leaves it usable.
    mark = k.Mark();
    given->SetCursor(cursor);
    EXPECT_TRUE(k.CallsSince(mark).empty());
    EXPECT_EQ(given->GetCursor(), cursor);
    cursor->BeginWait();
    EXPECT_EQ(k.CallsSince(mark), (Log{"SetCursorView(999,0,0)"}));
    delete given; // deletes all three; the ledger sees each released once

    // Another cursor replaces and deletes the one installed.
    bool firstGone = false;
    auto* first = new Bye<GLCursor>(arrow, FALSE);
    first->mOnBye = [&] { firstGone = true; };
    GLCursor* second = new GLCursor(arrow, FALSE);
    mark = k.Mark();
    game->SetCursor(first);
    game->SetCursor(first);
    EXPECT_FALSE(firstGone);
    game->SetCursor(second);
    EXPECT_TRUE(firstGone);
    EXPECT_EQ(game->GetCursor(), second);
    EXPECT_TRUE(k.CallsSince(mark).empty()); // installing tells the kernel nothing
}

TEST_F(GameTest, DeletesPlaneManagerUserObjectSetAndCursorInThatOrder)
{
    Log order;
    const void* planes = nullptr;
    const void* objects = nullptr;
    GLUser* user = nullptr;
    auto* cursor = new Bye<GLCursor>(arrow, FALSE);
    cursor->mOnBye = [&] {
        order.push_back("cursor");
        EXPECT_FALSE(k.Ledger().Owns(planes));
        EXPECT_FALSE(k.Ledger().Owns(user));
        EXPECT_FALSE(k.Ledger().Owns(objects));
    };
    auto* byeUser = new Bye<GLUser>;
    byeUser->mOnBye = [&] {
        order.push_back("user");
        EXPECT_FALSE(k.Ledger().Owns(planes));
        EXPECT_TRUE(k.Ledger().Owns(objects));
        EXPECT_TRUE(k.Ledger().Owns(cursor));
    };
    user = byeUser;
    GLGame* doomed = new GLGame(cursor, byeUser, nullptr);
    planes = doomed->mpPlaneManager;
    objects = doomed->mpObjects;
    // The objects in the set are not the game's.
    Worker member("member", trace);
    doomed->mpObjects->AddToEnd(&member);
    delete doomed;
    EXPECT_EQ(order, (Log{"user", "cursor"}));
    EXPECT_EQ(member.mRuns, 0);
}

TEST_F(GameTest, MisuseEndsWithTheExactReport)
{
    EXPECT_GL_ASSERT(game->SetCursor(nullptr), "Source/Glgame.cpp", "pCursor");
    EXPECT_GL_ASSERT(GLGame(nullptr, nullptr, nullptr), "Source/Glgame.cpp", "curse");
    GLQuitHandler quit;
    EXPECT_GL_ASSERT(quit.HandleEvent(nullptr), "Source/Glquithd.cpp", "pEvent != 0");
    EXPECT_GL_ASSERT(quit.DoIt(), "Source/Globject.cpp", "!\"DoIt not allowed for this class\"");
    // Game code must leave the quit handler in place while Play runs.
    Worker meddler("meddler", trace);
    meddler.mAction = [&] {
        game->mpUser->mpPrimaDonnas->Remove(static_cast<GLObject*>(game->mpUser->mpPrimaDonnas->Last()));
        game->mQuit = TRUE;
    };
    game->mpObjects->AddToEnd(&meddler);
    EXPECT_GL_ASSERT(game->Play(), "include/glset.h", "IsInList(pElementExisting)");
}

TEST_F(GameTest, CopiesOwnCopiesOfWhatTheOriginalOwns)
{
    Worker member("member", trace);
    game->mpObjects->AddToEnd(&member);
    game->SetCursor(new GLCursor(arrow, FALSE));
    game->GetCursor()->HandsOff();
    game->mQuit = TRUE;
    GLGame copy(*game);
    EXPECT_NE(copy.mpPlaneManager, game->mpPlaneManager);
    EXPECT_NE(copy.mpUser, game->mpUser);
    EXPECT_NE(copy.mpObjects, game->mpObjects);
    EXPECT_NE(copy.GetCursor(), game->GetCursor());
    EXPECT_EQ(copy.GetCursor()->IsHandsOff(), 4);
    EXPECT_EQ(copy.mpObjects->First(), &member);

    GLGame assigned;
    assigned = copy;
    EXPECT_NE(assigned.GetCursor(), copy.GetCursor());
    EXPECT_EQ(assigned.mpObjects->First(), &member);
    assigned = assigned;
    EXPECT_EQ(assigned.mpObjects->First(), &member);
    assigned = GLGame();
    EXPECT_EQ(assigned.GetCursor(), nullptr);
}

// ----- one frame -----

TEST_F(GameTest, FrameReadsTheClockRunsObjectsDrawsThenTakesInput)
{
    Worker a("A", trace), b("B", trace);
    Handler prima("prima", trace, 8);
    game->mpObjects->AddToEnd(&a);
    game->mpObjects->AddToEnd(&b);
    game->mpUser->mpPrimaDonnas->AddToEnd(&prima);
    game->mpUser->IsHandsOn(TRUE);
    k.ticks = 1234;
    k.ticksPerFrame = 2;
    k.PushEvent(kEventKeyDown, 'k', 0, 10, 20);
    a.mAction = [&] { EXPECT_EQ(game->mGameTicks, 1234u); };
    EXPECT_EQ(Frame(), (Log{"GetTicks()", "A", "B", "UpdateScreen(1)", "GetEvent(32767)", "prima:8"}));
    EXPECT_EQ(game->mpUser->mEvent.claimed, TRUE);
    EXPECT_EQ(game->mGameTicks, 1234u); // read once, at the start
    // The mouse position is one point, updated every frame: a frame without
    // input moves it to wherever the pointer is.
    GLPoint& mouse = game->GetMousePos();
    EXPECT_EQ(mouse, GLPoint(10, 20));
    k.pointer = ZOR_Point(7, 8);
    game->DoIt();
    EXPECT_EQ(game->mGameTicks, 1236u);
    EXPECT_EQ(&mouse, &game->GetMousePos());
    EXPECT_EQ(mouse, GLPoint(7, 8));
}

// The planes' order among themselves and how input reaches them are the
// plane manager's and the user's tests; here, that the planes work first and
// take input within the frame.
TEST_F(GameTest, PlanesWorkBeforeTheGamesObjects)
{
    AbsGLPlane* plane = new GLColoredPlane(ZOR_Rect(0, 0, 639, 479), 0, 1, 0, ZOR_Point(0, 0));
    game->mpPlaneManager->Add(plane);
    Worker onPlane("onPlane", trace), own("own", trace);
    Handler handler("handler", trace, 1);
    plane->GetCast()->Add(&onPlane);
    plane->GetCast()->Add(&handler);
    game->mpObjects->AddToEnd(&own);
    game->mpUser->IsHandsOn(TRUE);
    k.PushEvent(kEventPointerDown, 0, 0, 150, 150);
    EXPECT_EQ(Frame(), (Log{"GetTicks()", "onPlane", "own", "UpdateScreen(1)", "GetEvent(32767)",
                            "PlaneToLocal(20000,(150,150))", "handler:1"}));
    game->mpPlaneManager->Remove(plane);
    delete plane;
}

// A member added at the end runs in the same frame; one added at the front
// waits for the next, and the current member runs again.
TEST_F(GameTest, MembersAddedDuringTheWalk)
{
    Worker a("A", trace), b("B", trace), late("late", trace), later("later", trace), cue("cue", trace);
    game->mpObjects->AddToEnd(&a);
    game->mpObjects->AddToEnd(&b);
    a.mAction = [&] { game->mpObjects->AddToEnd(&late); };
    late.mAction = [&] { game->mpObjects->AddToEnd(&later); };
    b.mAction = [&] { game->mpObjects->AddToFront(&cue); };
    EXPECT_EQ(Frame(), Walk({"A", "B", "B", "late", "later"}));
    EXPECT_EQ(Frame(), Walk({"cue", "A", "B", "late", "later"}));
}

TEST_F(GameTest, RemovalAtOrBeforeTheCurrentIndexSkipsTheNextMember)
{
    Worker a("A", trace), b("B", trace), c("C", trace), d("D", trace);
    for (Worker* w : {&a, &b, &c, &d})
        game->mpObjects->AddToEnd(w);

    // A member that leaves: the one after it is skipped this frame.
    a.mAction = [&] { game->mpObjects->Remove(&a); };
    EXPECT_EQ(Frame(), Walk({"A", "C", "D"}));

    // A member that removes an earlier one: likewise.
    c.mAction = [&] { game->mpObjects->Remove(&b); };
    EXPECT_EQ(Frame(), Walk({"B", "C"}));

    // Removing a later member only means it does not run.
    c.mAction = [&] { game->mpObjects->Remove(&d); };
    game->mpObjects->AddToFront(&a);
    EXPECT_EQ(Frame(), Walk({"A", "C"}));
    EXPECT_EQ(game->mpObjects->NumElements(), 2);

    // The last member leaving ends the walk.
    c.mAction = [&] { game->mpObjects->Remove(&c); };
    EXPECT_EQ(Frame(), Walk({"A", "C"}));
}

// ----- the main loop -----

TEST_F(GameTest, QuitKeyEndsPlayAfterTheFrameThatFetchedIt)
{
    k.PushEvent(kEventKeyDown, 0x4F00, 0); // the right message without the modifier
    k.PushEvent(kEventKeyDown, 0x4F00, 5); // the modifier must be exactly 4
    k.PushEvent(kEventKeyDown, 0x4F01, 4);
    k.PushEvent(kEventPointerDown, 0x4F00, 4, 3, 3); // any type will do
    k.PushEvent(kEventKeyDown);                  // never fetched
    std::size_t ledgerBefore = k.Ledger().LiveCount();
    game->Play();
    EXPECT_EQ(k.Count("UpdateScreen"), 4); // one a frame
    EXPECT_EQ(k.events.size(), 1u);
    EXPECT_EQ(game->mQuit, TRUE);
    EXPECT_EQ(game->mpUser->mEvent.claimed, TRUE);
    // The quit handler has left the prima donnas and is released; hands stay on.
    EXPECT_TRUE(game->mpUser->mpPrimaDonnas->IsEmpty());
    EXPECT_EQ(k.Ledger().LiveCount(), ledgerBefore);
    EXPECT_EQ(game->mpUser->IsHandsOn(), 1);

    // The flag stays set: a second Play runs no frame and leaves the prima
    // donnas as they were.
    Handler prima("prima", trace);
    game->mpUser->mpPrimaDonnas->AddToEnd(&prima);
    game->mpUser->IsHandsOn(FALSE);
    std::size_t mark = k.Mark();
    game->Play();
    EXPECT_TRUE(k.CallsSince(mark).empty());
    EXPECT_EQ(game->mpUser->mpPrimaDonnas->NumElements(), 1);
    EXPECT_EQ(game->mpUser->IsHandsOn(), 1);
}

TEST_F(GameTest, QuitHandlerIsTheLastPrimaDonnaAndHogsKeepTheKeyFromIt)
{
    // Frame 1: an earlier prima donna claims the quit key, keeps it, and
    // brings in a hog. Frame 2: the hog alone sees the key, does not claim it,
    // and leaves. Frame 3: the prima donna declines, the quit handler claims
    // the key before the orphans.
    Handler early("early", trace), hog("hog", trace), orphan("orphan", trace);
    int earlySeen = 0;
    early.mAction = [&](GLEvent* pEvent) {
        if (++earlySeen == 1) {
            pEvent->claimed = TRUE;
            game->mpUser->mpHogs->AddToEnd(&hog);
        }
    };
    hog.mAction = [&](GLEvent*) { game->mpUser->mpHogs->Remove(&hog); };
    game->mpUser->mpPrimaDonnas->AddToEnd(&early);
    game->mpUser->mpOrphans->AddToEnd(&orphan);
    for (int i = 0; i < 4; i++)
        k.PushEvent(kEventKeyDown, 0x4F00, 4);
    trace.Restart();
    game->Play();
    Log notes;
    for (const std::string& line : trace.Merged())
        if (line.find("(") == std::string::npos)
            notes.push_back(line);
    EXPECT_EQ(notes, (Log{"early:8", "hog:8", "early:8"}));
    EXPECT_EQ(k.Count("UpdateScreen"), 3);
    EXPECT_EQ(k.events.size(), 1u);

    // Another key that arrives claimed is reported claimed and ends nothing.
    game->mQuit = 0;
    GLQuitHandler quit;
    GLEvent event;
    event.message = 0x4F00;
    event.claimed = TRUE;
    EXPECT_EQ(quit.HandleEvent(&event), TRUE);
    EXPECT_EQ(game->mQuit, 0);
}

} // namespace
