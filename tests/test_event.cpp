// The input event (refresh, localisation through planes, copies) and sets of
// event handlers.
#include "QuindleTest.h"
#include "glevent.h"
#include "glplane.h"
#include "gltarget.h"

#include <cstring>
#include <string>
#include <vector>

namespace {

std::string At(const GLEvent& event)
{
    return "(" + std::to_string(event.where.GetX()) + "," + std::to_string(event.where.GetY()) + ")";
}

// A handler that writes what it was offered into a shared log and answers as
// told: claim or decline, and optionally localise the event first.
class Handler : public GLTarget {
public:
    Handler(std::vector<std::string>* log, const char* name) : mLog(log), mName(name) { NeedsEvent(TRUE); }
    int HandleEvent(GLEvent* pEvent) override
    {
        mLog->push_back(mName + At(*pEvent) + (pEvent->plane ? "local" : "global"));
        if (mLocalizeTo)
            pEvent->Localize(mLocalizeTo);
        if (mClaims)
            pEvent->claimed = TRUE;
        return mClaims;
    }
    std::vector<std::string>* mLog;
    std::string mName;
    int mClaims = FALSE;
    AbsGLPlane* mLocalizeTo = nullptr;
};

// A plane whose origin is at (100, 50) on the screen.
class EventTest : public QuindleTest {
protected:
    GLColoredPlane plane{100, 50, 399, 249, 0, 1, 0, ZOR_Point(0, 0)};
    GLEvent event;
    std::vector<std::string> log;
};

TEST_F(EventTest, ANewEventIsUnclaimedAtTheOriginWithTheLibrarysPartOfTheRecordSet)
{
    const std::size_t blocks = k.Ledger().LiveCount();
    GLEvent fresh;
    EXPECT_EQ(fresh.claimed, FALSE);
    ASSERT_NE(fresh.kernelEvent, nullptr);
    // The point at 16 is in the kernel point's "not yet set" state, the word at 24 is 0.
    std::uint32_t words[3];
    std::memcpy(words, reinterpret_cast<const unsigned char*>(fresh.kernelEvent) + 16, sizeof words);
    EXPECT_EQ(std::vector<std::uint32_t>(words, words + 3), (std::vector<std::uint32_t>{0x89abcdefu, 0x89abcdefu, 0}));
    // The record and the position are two blocks of the library's own.
    EXPECT_EQ(k.Ledger().LiveCount(), blocks + 2);
}

TEST_F(EventTest, RefreshReadsTheRecordAndCopiesHaveTheirOwnRecordAndPosition)
{
    k.PushEvent(kEventPointerDown, 0x12345, 4, 150, 70, 99);
    k.PushEvent(kEventKeyDown, 27, 1, 5, 6, 7);
    const std::size_t mark = k.Mark();
    event.Refresh();
    EXPECT_EQ(k.CallsSince(mark), std::vector<std::string>{"GetEvent(32767)"});
    EXPECT_EQ(event.type, 1);
    EXPECT_EQ(event.message, 0x2345); // the low half of the message word
    EXPECT_EQ(event.modifiers, 4);
    EXPECT_EQ(event.extra, 99u);
    event.Localize(&plane);
    event.claimed = TRUE;

    GLEvent copy(event);
    EXPECT_NE(copy.kernelEvent, event.kernelEvent);
    EXPECT_EQ(std::memcmp(copy.kernelEvent, event.kernelEvent, sizeof(KernelEventRecord)), 0);
    EXPECT_EQ(copy.plane, &plane);
    copy.where.SetPoint(1, 1);
    EXPECT_EQ(At(event), "(50,20)");
    GLEvent assigned;
    assigned = event;
    EXPECT_NE(assigned.kernelEvent, event.kernelEvent);
    EXPECT_EQ(assigned.kernelEvent->where.x, 150);
    assigned = assigned;
    EXPECT_EQ(At(assigned), "(50,20)");
    // Each of the three releases only its own blocks (the ledger reports a
    // double release or a leak).

    // Refreshed, the event is global and unclaimed again.
    event.Refresh(8);
    EXPECT_EQ(k.CallsNamed("GetEvent").back(), "GetEvent(8)");
    EXPECT_EQ(event.claimed, FALSE);
    EXPECT_EQ(event.plane, nullptr);
    EXPECT_EQ(At(event), "(5,6)");
}

TEST_F(EventTest, LocalisingGoesThroughTheScreenFromPlaneToPlane)
{
    GLColoredPlane b(10, 20, 299, 199, 0, 2, 0, ZOR_Point(0, 0));
    k.PushEvent(kEventPointerDown, 0, 0, 150, 70);
    event.Refresh();

    // Globalising a global event changes nothing and asks the kernel nothing.
    std::size_t mark = k.Mark();
    event.Globalize();
    EXPECT_TRUE(k.CallsSince(mark).empty());
    EXPECT_EQ(At(event), "(150,70)");

    mark = k.Mark();
    const std::size_t blocks = k.Ledger().LiveCount();
    event.Localize(&plane);
    event.Localize(&b);
    EXPECT_EQ(event.plane, &b);
    EXPECT_EQ(At(event), "(140,50)"); // as if localised to b from the screen
    EXPECT_EQ(k.CallsSince(mark),
              (std::vector<std::string>{"PlaneToLocal(20000,(150,70))", "PlaneToGlobal(20000,(50,20))",
                                        "PlaneToLocal(20001,(150,70))"}));

    event.Globalize();
    EXPECT_EQ(event.plane, nullptr);
    EXPECT_EQ(At(event), "(150,70)");
    // The temporaries of the conversions were all given back.
    EXPECT_EQ(k.Ledger().LiveCount(), blocks);
}

// A handler that brings another one into the set when it is offered an event.
class Recruiter : public Handler {
public:
    using Handler::Handler;
    int HandleEvent(GLEvent* pEvent) override
    {
        if (!mSet->IsInList(mRecruit))
            mSet->AddToEnd(mRecruit);
        return Handler::HandleEvent(pEvent);
    }
    GLEventHandlerSet* mSet = nullptr;
    GLObject* mRecruit = nullptr;
};

TEST_F(EventTest, HandlerSetGoesInSetOrderGlobalisesAfterEachDeclineStopsAtTheFirstClaimAndRereadsItsCount)
{
    Handler a(&log, "a"), b(&log, "b"), c(&log, "c");
    a.mLocalizeTo = &plane;
    b.mLocalizeTo = &plane;
    GLEventHandlerSet set(10, 10);
    set.AddToEnd(&b);
    set.AddToFront(&a);
    set.AddToEnd(&c);
    k.PushEvent(kEventPointerDown, 0, 0, 150, 70);
    event.Refresh();
    EXPECT_EQ(set.HandleEvent(&event), FALSE);
    EXPECT_EQ(log, (std::vector<std::string>{"a(150,70)global", "b(150,70)global", "c(150,70)global"}));
    EXPECT_EQ(event.plane, nullptr);
    EXPECT_EQ(At(event), "(150,70)");

    // A claim wins even after a localisation: the event is left as the
    // claiming handler made it.
    c.mLocalizeTo = &plane;
    c.mClaims = TRUE;
    EXPECT_EQ(set.HandleEvent(&event), TRUE);
    EXPECT_EQ(event.plane, &plane);
    EXPECT_EQ(At(event), "(50,20)");

    b.mClaims = TRUE;
    k.PushEvent(kEventPointerDown, 0, 0, 3, 4);
    event.Refresh();
    log.clear();
    EXPECT_EQ(set.HandleEvent(&event), TRUE);
    EXPECT_EQ(log, (std::vector<std::string>{"a(3,4)global", "b(3,4)global"}));
    EXPECT_EQ(event.claimed, TRUE);

    // An empty set declines; one that grows while it is offered an event
    // offers it to the newcomer too.
    event.Globalize(); // b left it in its plane
    GLEventHandlerSet growing(10, 10);
    EXPECT_EQ(growing.HandleEvent(&event), FALSE);
    Recruiter recruiter(&log, "r");
    Handler late(&log, "late");
    recruiter.mSet = &growing;
    recruiter.mRecruit = &late;
    growing.AddToEnd(&recruiter);
    log.clear();
    EXPECT_EQ(growing.HandleEvent(&event), FALSE);
    EXPECT_EQ(log, (std::vector<std::string>{"r(3,4)global", "late(3,4)global"}));
}

} // namespace
