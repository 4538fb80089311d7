// The cast: sorting objects into its three sets by their flags, driving the
// per-frame set and offering events to the event set.
#include "QuindleTest.h"
#include "glcast.h"
#include "glevent.h"

#include <initializer_list>
#include <string>
#include <vector>

namespace {

using Log = std::vector<std::string>;

// An object with the flags asked for, logging DoIt and HandleEvent; it claims
// an event by writing mClaimValue into the claimed flag.
class Member : public GLTarget {
public:
    Member(Log* log, const char* name, int fScreenItem, int fDoIt, int fEvent) : mLog(log), mName(name)
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
    Log* mLog;
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

class CastTest : public QuindleTest {
protected:
    void AddAll(std::initializer_list<Member*> members)
    {
        for (Member* member : members)
            cast.Add(member);
    }
    Log log;
    GLCast cast;
};

TEST_F(CastTest, AddFollowsTheFlagsInputSwitchesAndACopyHasSetsOfItsOwn)
{
    Member doer(&log, "doer", FALSE, TRUE, FALSE);
    Member item(&log, "item", TRUE, FALSE, TRUE);
    Member all(&log, "all", TRUE, TRUE, TRUE);
    AddAll({&doer, &item, &all});
    EXPECT_TRUE(cast.IsInDoItSet(&doer));
    EXPECT_FALSE(cast.IsInScreenItemSet(AsItem(&doer)));
    EXPECT_FALSE(cast.IsInEventSet(&doer));
    EXPECT_TRUE(cast.IsInScreenItemSet(AsItem(&item)));
    EXPECT_FALSE(cast.IsInDoItSet(&item));
    EXPECT_EQ(cast.GetEventSet()->At(1), &all);

    // Input is switched on and off while the object stays in the cast.
    cast.AddToEvents(&doer);
    EXPECT_EQ(doer.NeedsEvent(), 4);
    EXPECT_TRUE(cast.IsInEventSet(&doer));
    cast.RemoveFromEvents(&doer);
    EXPECT_EQ(doer.NeedsEvent(), 0);
    EXPECT_FALSE(cast.IsInEventSet(&doer));
    EXPECT_TRUE(cast.IsInDoItSet(&doer));

    // A copy, and an assigned cast, hold the same objects in sets of their own.
    GLCast copy(cast);
    EXPECT_TRUE(copy.IsInEventSet(&all));
    EXPECT_TRUE(copy.IsInScreenItemSet(AsItem(&item)));
    copy.Remove(&doer);
    EXPECT_TRUE(cast.IsInDoItSet(&doer));
    GLCast assigned;
    assigned = copy;
    EXPECT_FALSE(assigned.IsInCast(&doer));
    EXPECT_TRUE(assigned.IsInCast(&item));

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
    Member first(&log, "first", FALSE, TRUE, FALSE);
    Member item(&log, "item", TRUE, FALSE, TRUE);
    Member second(&log, "second", FALSE, TRUE, TRUE);
    Member late(&log, "late", FALSE, TRUE, FALSE);
    first.mCast = &cast;
    first.mRecruit = &late;
    AddAll({&first, &item, &second});
    cast.DoIt();
    EXPECT_EQ(log, (Log{"first.DoIt", "second.DoIt", "late.DoIt"}));
}

TEST_F(CastTest, HandleEventStopsOnlyWhenTheClaimedFlagIsExactlyTrue)
{
    Member a(&log, "a", FALSE, FALSE, TRUE), b(&log, "b", FALSE, FALSE, TRUE), c(&log, "c", FALSE, FALSE, TRUE);
    AddAll({&a, &b, &c});
    GLEvent event;

    // Nobody claims it: all are asked, whatever they answer.
    a.mAnswer = TRUE;
    EXPECT_EQ(cast.HandleEvent(&event), FALSE);
    EXPECT_EQ(log, (Log{"a.HandleEvent", "b.HandleEvent", "c.HandleEvent"}));

    // The second claims it: the third is not asked.
    log.clear();
    b.mClaimValue = TRUE;
    EXPECT_EQ(cast.HandleEvent(&event), TRUE);
    EXPECT_EQ(log, (Log{"a.HandleEvent", "b.HandleEvent"}));

    // A claimed flag other than TRUE does not end the offer; it is returned as it is.
    log.clear();
    event.claimed = FALSE;
    b.mClaimValue = 2;
    EXPECT_EQ(cast.HandleEvent(&event), 2);
    EXPECT_EQ(log, (Log{"a.HandleEvent", "b.HandleEvent", "c.HandleEvent"}));

    // An event that arrives claimed is still offered to the first member.
    log.clear();
    event.claimed = TRUE;
    b.mClaimValue = 0;
    EXPECT_EQ(cast.HandleEvent(&event), TRUE);
    EXPECT_EQ(log, (Log{"a.HandleEvent"}));
}

TEST_F(CastTest, MisuseEndsWithTheExactReport)
{
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
