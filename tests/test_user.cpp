// Input dispatch: the frame's event, hands off, null events, modal hogs and
// the order of precedence hogs, prima donnas, planes, orphans.
#include "GameTest.h"
#include "glcast.h"
#include "gltarget.h"

#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

namespace {

using Log = std::vector<std::string>;

// A handler that writes "<name>:<type>" into a shared log whenever it is
// offered an event (or, placed, "<name>@<x>,<y>" and L or G for whether the
// position is in a plane's coordinates or global), claims the event types in
// its mask, then does what the test gives it.
class Handler : public GLTarget {
public:
    Handler(const char* name, Log& log, unsigned claimMask = 0, bool placed = false)
        : mName(name), mLog(log), mClaimMask(claimMask), mPlaced(placed)
    {
        NeedsEvent(TRUE);
    }
    int HandleEvent(GLEvent* pEvent) override
    {
        if (mPlaced)
            mLog.push_back(mName + "@" + std::to_string(pEvent->where.GetX()) + "," +
                           std::to_string(pEvent->where.GetY()) + (pEvent->plane ? "L" : "G"));
        else
            mLog.push_back(mName + ":" + std::to_string(pEvent->type));
        if (pEvent->type & mClaimMask)
            pEvent->claimed = TRUE;
        if (mAction)
            mAction(pEvent);
        return pEvent->claimed;
    }
    std::string mName;
    Log& mLog;
    unsigned mClaimMask;
    bool mPlaced;
    std::function<void(GLEvent*)> mAction;
};

// Hands start off, as in a new user. The handler sets neither own nor touch
// their members, so tests leave their handlers in them when they end.
class UserTest : public GameTest {
protected:
    UserTest() { user->IsHandsOn(FALSE); }
    static void Join(GLEventHandlerSet* set, std::initializer_list<Handler*> handlers)
    {
        for (Handler* handler : handlers)
            set->AddToEnd(handler);
    }

    // A frame with one event queued; what the handlers noted of it.
    Log Offer(std::uint16_t type, int x = 0, int y = 0)
    {
        log.clear();
        k.PushEvent(type, 0, 0, x, y);
        user->DoIt();
        return log;
    }

    GLUser* user = game->mpUser;
    Log log;
};

TEST_F(UserTest, FlagSettersTakeAnyNonZeroAndReturnTheBit)
{
    EXPECT_EQ(GLUser().mUserFlags, 0); // hands off, nulls dropped, hogs not modal
    EXPECT_EQ(user->IsHandsOn(5), 1);
    EXPECT_EQ(user->HogsAreModal(1), 4);
    EXPECT_EQ(user->DoesHandleNulls(-1), 2);
    EXPECT_EQ(user->mUserFlags, 7);
    EXPECT_EQ(user->DoesHandleNulls(0), 0);
    EXPECT_EQ(user->mUserFlags, 5);
    EXPECT_EQ(user->IsHandsOn(0), 0);
    EXPECT_EQ(user->mUserFlags, 4);
}

TEST_F(UserTest, HandsOffSwallowsTheEventButTheMouseFollows)
{
    Handler prima("prima", log, 0xFFFF), orphan("orphan", log, 0xFFFF), hog("hog", log, 0xFFFF);
    user->mpPrimaDonnas->AddToEnd(&prima);
    user->mpOrphans->AddToEnd(&orphan);
    k.PushEvent(kEventKeyDown, 'a', 0, 17, 23, 99);
    std::size_t mark = k.Mark();
    user->DoIt();
    EXPECT_EQ(k.CallsSince(mark), (Log{"GetEvent(32767)"}));
    EXPECT_TRUE(log.empty());
    EXPECT_EQ(user->mEvent.type, kEventKeyDown);
    EXPECT_EQ(user->mEvent.claimed, TRUE);
    EXPECT_EQ(user->mMousePos, GLPoint(17, 23));
    EXPECT_EQ(user->mExtra, 99u);

    // A hog is not asked either while hands are off.
    user->mpHogs->AddToEnd(&hog);
    EXPECT_TRUE(Offer(kEventPointerDown, 5, 6).empty());
    EXPECT_EQ(user->mEvent.claimed, TRUE);
}

TEST_F(UserTest, NullEventsMoveTheMouseAndAreDispatchedOnlyWhenHandled)
{
    Handler prima("prima", log), orphan("orphan", log);
    user->mpPrimaDonnas->AddToEnd(&prima);
    user->mpOrphans->AddToEnd(&orphan);
    user->IsHandsOn(TRUE);

    // The empty queue gives a null event at the pointer's position.
    k.pointer = ZOR_Point(300, 200);
    user->DoIt();
    EXPECT_EQ(user->mEvent.type, kEventNull);
    EXPECT_TRUE(log.empty());
    EXPECT_EQ(user->mEvent.claimed, FALSE);
    EXPECT_EQ(user->mMousePos, GLPoint(300, 200));

    // Even with hands off a null event is not swallowed: it is dropped first.
    user->IsHandsOn(FALSE);
    user->DoIt();
    EXPECT_EQ(user->mEvent.claimed, FALSE);

    // Handled, a null event goes the whole way like any other.
    user->IsHandsOn(TRUE);
    user->DoesHandleNulls(TRUE);
    user->DoIt();
    EXPECT_EQ(log, (Log{"prima:0", "orphan:0"}));
    EXPECT_EQ(user->mEvent.claimed, FALSE);
}

TEST_F(UserTest, PrimaDonnasComeBeforeOrphansAndTheFirstClaimerWins)
{
    Handler first("first", log, 2), second("second", log, 4), orphan1("orphan1", log, 8), orphan2("orphan2", log);
    Join(user->mpPrimaDonnas, {&first, &second});
    Join(user->mpOrphans, {&orphan1, &orphan2});
    user->IsHandsOn(TRUE);
    EXPECT_EQ(Offer(2), (Log{"first:2"}));                                            // the first prima donna claims
    EXPECT_EQ(Offer(4), (Log{"first:4", "second:4"}));                                // the second one claims
    EXPECT_EQ(Offer(8), (Log{"first:8", "second:8", "orphan1:8"}));                   // nobody before the orphans
    EXPECT_EQ(Offer(16), (Log{"first:16", "second:16", "orphan1:16", "orphan2:16"})); // nobody at all
    EXPECT_EQ(user->mEvent.claimed, FALSE);

    // HandleEvent reports the claimed flag, also for an event claimed before.
    GLEvent event;
    event.type = 16;
    EXPECT_EQ(user->HandleEvent(&event), FALSE);
    event.claimed = TRUE;
    EXPECT_EQ(user->HandleEvent(&event), TRUE);
}

TEST_F(UserTest, HogsTakeEveryEventEvenWhenNoneClaimsIt)
{
    Handler hog1("hog1", log), hog2("hog2", log, 1), prima("prima", log, 0xFFFF);
    Join(user->mpHogs, {&hog1, &hog2});
    user->mpPrimaDonnas->AddToEnd(&prima);
    user->IsHandsOn(TRUE);
    EXPECT_EQ(Offer(kEventKeyDown), (Log{"hog1:8", "hog2:8"}));
    EXPECT_EQ(user->mEvent.claimed, FALSE); // the key is lost
    EXPECT_EQ(Offer(kEventPointerDown), (Log{"hog1:1", "hog2:1"}));
    EXPECT_EQ(user->mEvent.claimed, TRUE);
    EXPECT_EQ(k.Count("GetEvent"), 2);
}

TEST_F(UserTest, ModalHogsHoldTheFrameUntilOneClaims)
{
    Handler hog("hog", log, 1), prima("prima", log, 0xFFFF);
    user->mpHogs->AddToEnd(&hog);
    user->mpPrimaDonnas->AddToEnd(&prima);
    user->IsHandsOn(TRUE);
    user->HogsAreModal(TRUE);
    k.PushEvent(kEventKeyDown, 'x');
    k.PushEvent(kEventPointerUp, 0, 0, 40, 50);
    k.PushEvent(kEventPointerDown, 0, 0, 60, 70, 5);
    k.PushEvent(kEventKeyDown, 'y'); // stays queued for the next frame
    std::size_t mark = k.Mark();
    user->DoIt();
    // Three events were fetched within one DoIt, all for the hog, and the
    // kernel was asked for nothing else (no frame was drawn).
    EXPECT_EQ(k.CallsSince(mark), (Log{"GetEvent(32767)", "GetEvent(32767)", "GetEvent(32767)"}));
    EXPECT_EQ(log, (Log{"hog:8", "hog:2", "hog:1"}));
    EXPECT_EQ(user->mEvent.type, kEventPointerDown);
    EXPECT_EQ(user->mEvent.claimed, TRUE);
    EXPECT_EQ(k.events.size(), 1u);
    // The mouse position is the one of the frame's first event; the events
    // fetched by the hog loop reach only the event object.
    EXPECT_EQ(user->mEvent.where.GetX(), 60);
    EXPECT_EQ(user->mMousePos.GetX(), 0);

    // Modal hogs also wait on null events when none are queued; a modal loop
    // whose last hog leaves without claiming ends with the event unclaimed.
    Handler leaver("leaver", log);
    int seen = 0;
    leaver.mAction = [&](GLEvent*) {
        if (++seen == 3)
            user->mpHogs->Remove(&leaver);
    };
    user->mpHogs->Remove(&hog);
    user->mpHogs->AddToEnd(&leaver);
    log.clear();
    user->mEvent.claimed = FALSE;
    EXPECT_EQ(user->ProcessHogs(&user->mEvent), FALSE);
    EXPECT_EQ(log, (Log{"leaver:1", "leaver:8", "leaver:0"}));
    EXPECT_EQ(user->mEvent.claimed, FALSE);
    EXPECT_TRUE(user->mpHogs->IsEmpty());

    // A hog that claims the frame's event itself: nothing more is fetched.
    Handler keyHog("keyHog", log, 8);
    user->mpHogs->AddToEnd(&keyHog);
    log.clear();
    k.PushEvent(kEventKeyDown);
    k.PushEvent(kEventKeyDown);
    user->DoIt();
    EXPECT_EQ(log, (Log{"keyHog:8"}));
    EXPECT_EQ(k.events.size(), 1u);
}

// Whether the hogs hold the frame is decided before they are offered the
// event: a hog that switches modal hogs on or off while it declines changes
// only the next frame.
TEST_F(UserTest, ModalHogsAreDecidedBeforeTheHogsAreAsked)
{
    Handler hog("hog", log, 1);
    int turnOn = TRUE;
    hog.mAction = [&](GLEvent* pEvent) {
        if (pEvent->type == kEventKeyDown)
            user->HogsAreModal(turnOn);
    };
    user->mpHogs->AddToEnd(&hog);
    user->IsHandsOn(TRUE);

    // Not modal when the key arrives: it is offered once and lost.
    k.PushEvent(kEventKeyDown);
    k.PushEvent(kEventPointerDown);
    user->DoIt();
    EXPECT_EQ(log, (Log{"hog:8"}));
    EXPECT_EQ(user->mEvent.claimed, FALSE);
    EXPECT_EQ(user->HogsAreModal(), 4);
    EXPECT_EQ(k.events.size(), 1u);

    // Modal when the key arrives: the hogs are held until one claims, even
    // though the hog switched modal hogs off meanwhile.
    k.events.clear();
    log.clear();
    turnOn = FALSE;
    k.PushEvent(kEventKeyDown);
    k.PushEvent(kEventPointerDown);
    user->DoIt();
    EXPECT_EQ(log, (Log{"hog:8", "hog:1"}));
    EXPECT_EQ(user->mEvent.claimed, TRUE);
    EXPECT_EQ(user->HogsAreModal(), 0);
}

TEST_F(UserTest, CopiesHaveTheirOwnSetsAndEvent)
{
    Handler prima("prima", log);
    user->mpPrimaDonnas->AddToEnd(&prima);
    user->IsHandsOn(TRUE);
    k.PushEvent(kEventKeyDown, 1, 2, 3, 4, 5);
    user->DoIt();
    GLUser copy(*user);
    EXPECT_NE(copy.mpPrimaDonnas, user->mpPrimaDonnas);
    EXPECT_TRUE(copy.mpPrimaDonnas->IsInList(&prima));
    EXPECT_EQ(copy.mEvent.type, kEventKeyDown);
    EXPECT_NE(copy.mEvent.kernelEvent, user->mEvent.kernelEvent);
    copy.mpPrimaDonnas->Remove(&prima);
    EXPECT_TRUE(user->mpPrimaDonnas->IsInList(&prima));

    GLUser other;
    other = copy;
    EXPECT_NE(other.mpHogs, copy.mpHogs);
    EXPECT_TRUE(other.mpPrimaDonnas->IsEmpty());
    other = other;
    EXPECT_EQ(other.mUserFlags, 1);
}

// A kernel that gives no memory to one source file, so that the checks on the
// user's own allocations can be seen to fire.
class StingyKernel : public RecordingKernel {
public:
    explicit StingyKernel(const char* file, int skip) : mFile(file), mSkip(skip) {}
    void* AllocMemory(std::uint32_t uSize, const char* pFile, int iLine) override
    {
        if (mFile == pFile && mSkip-- <= 0)
            return nullptr;
        return RecordingKernel::AllocMemory(uSize, pFile, iLine);
    }
    std::string mFile;
    int mSkip;
};

// The n-th set the user makes gets no memory.
void MakeUserWithoutSet(int n)
{
    static StingyKernel stingy("Source/Gluser.cpp", n);
    DLLInit(&stingy);
    GLUser failing;
}

TEST_F(UserTest, FailedSetAllocationsAreReported)
{
    EXPECT_GL_ASSERT(MakeUserWithoutSet(0), "Source/Gluser.cpp", "mpHogs != 0");
    EXPECT_GL_ASSERT(MakeUserWithoutSet(1), "Source/Gluser.cpp", "mpPrimaDonnas != 0");
    EXPECT_GL_ASSERT(MakeUserWithoutSet(2), "Source/Gluser.cpp", "mpOrphans != 0");
}

// ----- the planes' place in the order -----

TEST_F(UserTest, PlanesAreAskedAfterThePrimaDonnasAndBeforeTheOrphans)
{
    AbsGLPlane* top = new GLColoredPlane(ZOR_Rect(0, 0, 99, 99), 1, 10, 0, ZOR_Point(0, 0));
    AbsGLPlane* low = new GLColoredPlane(ZOR_Rect(50, 50, 199, 199), 2, 5, 0, ZOR_Point(0, 0));
    game->mpPlaneManager->Add(low);
    game->mpPlaneManager->Add(top);
    Handler prima("prima", log, 0, true), onTop("top", log, 0, true), onLow("low", log, 0, true),
        orphan("orphan", log, 0, true), hog("hog", log, 0, true);
    top->GetCast()->Add(&onTop);
    low->GetCast()->Add(&onLow);
    user->mpPrimaDonnas->AddToEnd(&prima);
    user->mpOrphans->AddToEnd(&orphan);
    user->IsHandsOn(TRUE);

    // Nobody claims: every plane under the position, top first, sees the
    // event in its own coordinates; the orphans get it global again.
    EXPECT_EQ(Offer(kEventPointerDown, 60, 70), (Log{"prima@60,70G", "top@60,70L", "low@10,20L", "orphan@60,70G"}));
    EXPECT_EQ(user->mEvent.claimed, FALSE);

    // A plane that claims keeps the event from the planes below and the
    // orphans; the event stays in its coordinates.
    onLow.mClaimMask = 1;
    EXPECT_EQ(Offer(kEventPointerDown, 60, 70), (Log{"prima@60,70G", "top@60,70L", "low@10,20L"}));
    EXPECT_EQ(user->mEvent.plane, low);
    EXPECT_EQ(user->mEvent.where.GetX(), 10);

    // A position on the lower plane only; then one on no plane at all.
    EXPECT_EQ(Offer(kEventPointerDown, 150, 160), (Log{"prima@150,160G", "low@100,110L"}));
    EXPECT_EQ(Offer(kEventPointerUp, 300, 300), (Log{"prima@300,300G", "orphan@300,300G"}));

    // A prima donna that claims, and a hog, keep the event from the planes.
    prima.mClaimMask = 8;
    EXPECT_EQ(Offer(kEventKeyDown, 60, 70), (Log{"prima@60,70G"}));
    user->mpHogs->AddToEnd(&hog);
    EXPECT_EQ(Offer(kEventPointerDown, 60, 70), (Log{"hog@60,70G"}));
    EXPECT_EQ(user->mEvent.claimed, FALSE);

    for (AbsGLPlane* plane : {top, low}) {
        game->mpPlaneManager->Remove(plane);
        delete plane;
    }
}

} // namespace
