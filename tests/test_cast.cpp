// The cast: sorting objects into its three sets by their flags, driving the
// per-frame set and offering events to the event set.
#include "QuindleTest.h"
#include "glcast.h"
#include "glevent.h"

#include <string>
#include <vector>

namespace {

using CastTest = QuindleTest;

// An object with the flags asked for, logging DoIt and HandleEvent; it claims
// an event by writing mClaimValue into the claimed flag.
class Member : public GLTarget {
public:
    Member(std::vector<std::string>* log, const char* name, int fScreenItem, int fDoIt, int fEvent)
        : mLog(log), mName(name)
    {
        IsScreenItem(fScreenItem);
        NeedsDoIt(fDoIt);
        NeedsEvent(fEvent);
    }
    void DoIt() override
    {
        mLog->push_back(mName + ".DoIt");
        if (mRecruit) {
            mCast->Add(mRecruit);
            mRecruit = nullptr;
        }
    }
    int HandleEvent(GLEvent* pEvent) override
    {
        mLog->push_back(mName + ".HandleEvent");
        if (mClaimValue)
            pEvent->claimed = mClaimValue;
        return mAnswer;
    }
    std::vector<std::string>* mLog;
    std::string mName;
    int mClaimValue = 0;
    int mAnswer = 0;
    GLCast* mCast = nullptr;
    GLObject* mRecruit = nullptr;
};

// Screen items are stored by address; a test object with the screen item flag
// stands in for one.
GLScreenItem* AsItem(GLObject* object)
{
    return reinterpret_cast<GLScreenItem*>(object);
}

TEST_F(CastTest, AddPutsAnObjectInEverySetItsFlagsNameAndRemoveTakesItOutOfAll)
{
    std::vector<std::string> log;
    GLCast cast;
    Member doer(&log, "doer", FALSE, TRUE, FALSE);
    Member item(&log, "item", TRUE, FALSE, TRUE);
    Member all(&log, "all", TRUE, TRUE, TRUE);
    cast.Add(&doer);
    cast.Add(&item);
    cast.Add(&all);

    EXPECT_TRUE(cast.IsInDoItSet(&doer));
    EXPECT_FALSE(cast.IsInScreenItemSet(AsItem(&doer)));
    EXPECT_FALSE(cast.IsInEventSet(&doer));
    EXPECT_TRUE(cast.IsInScreenItemSet(AsItem(&item)));
    EXPECT_FALSE(cast.IsInDoItSet(&item));
    EXPECT_EQ(cast.GetEventSet()->At(1), &all);

    // The flags are not consulted on the way out: an object leaves whatever
    // holds it, and one held by nothing is accepted.
    all.NeedsDoIt(FALSE);
    all.NeedsEvent(FALSE);
    cast.Remove(&all);
    EXPECT_FALSE(cast.IsInCast(&all));
    EXPECT_FALSE(cast.IsInEventSet(&all));
    cast.Remove(&all);
    EXPECT_EQ(cast.GetEventSet()->NumElements(), 1);
}

TEST_F(CastTest, DoItDrivesOnlyThePerFrameSetInOrderReachingLateArrivals)
{
    std::vector<std::string> log;
    GLCast cast;
    Member first(&log, "first", FALSE, TRUE, FALSE);
    Member item(&log, "item", TRUE, FALSE, TRUE);
    Member second(&log, "second", FALSE, TRUE, TRUE);
    Member late(&log, "late", FALSE, TRUE, FALSE);
    first.mCast = &cast;
    first.mRecruit = &late;
    cast.Add(&first);
    cast.Add(&item);
    cast.Add(&second);
    cast.DoIt();
    EXPECT_EQ(log, (std::vector<std::string>{"first.DoIt", "second.DoIt", "late.DoIt"}));
}

TEST_F(CastTest, HandleEventStopsOnlyWhenTheClaimedFlagIsExactlyTrue)
{
    std::vector<std::string> log;
    GLCast cast;
    Member a(&log, "a", FALSE, FALSE, TRUE);
    Member b(&log, "b", FALSE, FALSE, TRUE);
    Member c(&log, "c", FALSE, FALSE, TRUE);
    cast.Add(&a);
    cast.Add(&b);
    cast.Add(&c);
    GLEvent event;

    // Nobody claims it: all are asked, whatever they answer.
    a.mAnswer = TRUE;
    EXPECT_EQ(cast.HandleEvent(&event), FALSE);
    EXPECT_EQ(log, (std::vector<std::string>{"a.HandleEvent", "b.HandleEvent", "c.HandleEvent"}));

    // The second claims it: the third is not asked.
    log.clear();
    b.mClaimValue = TRUE;
    EXPECT_EQ(cast.HandleEvent(&event), TRUE);
    EXPECT_EQ(log, (std::vector<std::string>{"a.HandleEvent", "b.HandleEvent"}));

    // A claimed flag other than TRUE does not end the offer; it is returned as it is.
    log.clear();
    event.claimed = FALSE;
    b.mClaimValue = 2;
    EXPECT_EQ(cast.HandleEvent(&event), 2);
    EXPECT_EQ(log, (std::vector<std::string>{"a.HandleEvent", "b.HandleEvent", "c.HandleEvent"}));

    // An event that arrives claimed is still offered to the first member.
    log.clear();
    event.claimed = TRUE;
    b.mClaimValue = 0;
    EXPECT_EQ(cast.HandleEvent(&event), TRUE);
    EXPECT_EQ(log, (std::vector<std::string>{"a.HandleEvent"}));
}

TEST_F(CastTest, InputIsSwitchedOnAndOffWhileTheObjectStaysInTheCast)
{
    std::vector<std::string> log;
    GLCast cast;
    Member feature(&log, "feature", TRUE, TRUE, FALSE);
    cast.Add(&feature);
    cast.AddToEvents(&feature);
    EXPECT_EQ(feature.NeedsEvent(), 4);
    EXPECT_TRUE(cast.IsInEventSet(&feature));
    cast.RemoveFromEvents(&feature);
    EXPECT_EQ(feature.NeedsEvent(), 0);
    EXPECT_FALSE(cast.IsInEventSet(&feature));
    EXPECT_TRUE(cast.IsInDoItSet(&feature));
}

TEST_F(CastTest, ACopyHoldsTheSameObjectsInSetsOfItsOwn)
{
    std::vector<std::string> log;
    GLCast cast;
    Member a(&log, "a", FALSE, TRUE, TRUE);
    Member b(&log, "b", TRUE, FALSE, FALSE);
    cast.Add(&a);
    cast.Add(&b);
    GLCast copy(cast);
    EXPECT_TRUE(copy.IsInEventSet(&a));
    EXPECT_TRUE(copy.IsInScreenItemSet(AsItem(&b)));
    copy.Remove(&a);
    EXPECT_TRUE(cast.IsInDoItSet(&a));
    GLCast assigned;
    assigned = copy;
    EXPECT_FALSE(assigned.IsInCast(&a));
    EXPECT_TRUE(assigned.IsInCast(&b));
}

TEST_F(CastTest, MisuseEndsWithTheExactReport)
{
    std::vector<std::string> log;
    GLCast cast;
    Member none(&log, "none", FALSE, FALSE, FALSE);
    Member target(&log, "target", FALSE, TRUE, TRUE);
    const char* file = "Source/Glcast.cpp";
    const char* flags = "pGLObject->IsScreenItem() != FALSE || pGLObject->NeedsDoIt() != FALSE || "
                        "pGLObject->NeedsEvent() != FALSE";
    EXPECT_GL_ASSERT(cast.Add(nullptr), file, "pGLObject != 0");
    EXPECT_GL_ASSERT(cast.Add(&none), file, flags);
    EXPECT_GL_ASSERT(cast.Remove(nullptr), file, "pGLObject != 0");
    EXPECT_GL_ASSERT(cast.Remove(&none), file, flags);
    EXPECT_GL_ASSERT(cast.HandleEvent(nullptr), file, "pGLEvent != NULL");
    EXPECT_GL_ASSERT(cast.RemoveFromEvents(&target), file, "m_pHandleEventSet->IsInList((GLTarget *) pGLObject)");

    cast.Add(&target);
    EXPECT_GL_ASSERT(cast.Add(&target), "include/glset.h", "!\"Item is already in set!\"");
    EXPECT_GL_ASSERT(cast.AddToEvents(&target), file, "!(m_pHandleEventSet->IsInList((GLTarget *) pGLObject))");
    cast.Remove(&target);
}

} // namespace
