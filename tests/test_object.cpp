// The root object's registration flags and default operations.
#include "QuindleTest.h"
#include "glpoint.h"
#include "gltarget.h"

namespace {

using ObjectTest = QuindleTest;

TEST_F(ObjectTest, FlagGettersReturnTheirOwnBitAndLeaveTheOthers)
{
    GLObject object;
    object.NeedsDoIt(TRUE);
    EXPECT_EQ(object.NeedsDoIt(), 2);
    object.IsScreenItem(TRUE);
    object.NeedsEvent(TRUE);
    EXPECT_EQ(object.IsScreenItem(), 1);
    EXPECT_EQ(object.NeedsEvent(), 4);
    object.NeedsDoIt(FALSE);
    EXPECT_EQ(object.NeedsDoIt(), 0);
    EXPECT_EQ(object.IsScreenItem(), 1);
    EXPECT_EQ(object.NeedsEvent(), 4);
    GLObject copy(object);
    EXPECT_EQ(copy.NeedsEvent(), 4);
    EXPECT_EQ(copy.NeedsDoIt(), 0);
}

TEST_F(ObjectTest, MisuseEndsWithTheExactReport)
{
    GLObject object;
    EXPECT_GL_ASSERT(object.NeedsEvent(2), "include/globject.h", "fFlag == TRUE || fFlag == FALSE");
    EXPECT_GL_ASSERT(object.NeedsDoIt(-1), "include/globject.h", "fFlag == TRUE || fFlag == FALSE");
    EXPECT_GL_ASSERT(object.IsScreenItem(3), "include/globject.h", "fFlag == TRUE || fFlag == FALSE");
    EXPECT_GL_ASSERT(object.DoIt(), "Source/Globject.cpp", "!\"DoIt not allowed for this class\"");
    EXPECT_GL_ASSERT(object.HandleEvent(nullptr), "Source/Globject.cpp",
                     "!\"HandleEvent not allowed for this class\"");
    object.Cue(nullptr); // the default notification does nothing

    GLTarget target;
    EXPECT_GL_ASSERT(target.DoIt(), "Source/Globject.cpp", "!\"DoIt not allowed for this class\"");
    EXPECT_GL_ASSERT(target.SetPlane(nullptr), "include/gltarget.h", "pPlane");
    EXPECT_GL_ASSERT(target.HandleEvent(nullptr), "Source/Gltarget.cpp", "pEvent");
}

TEST_F(ObjectTest, ObjectsComeFromTheKernelWhoeverAllocatesThem)
{
    GLTarget* target = new GLTarget;
    ASSERT_EQ(k.Ledger().LiveCount(), 1u);
    EXPECT_EQ(k.Ledger().LiveBlocks()[0].file, "include/globject.h");
    // A leak report names what a plain new made: the object's class, or for a
    // class without type information, its header and the advice.
    EXPECT_EQ(AllocationLedger::Describe(k.Ledger().LiveBlocks()[0]),
              "by a plain new of GLTarget (write GL_NEW for the file and line)");
    GLPoint* point = new GLPoint(1, 2);
    EXPECT_EQ(AllocationLedger::Describe(k.Ledger().LiveBlocks()[1]),
              "by game code with a plain new of a class declared in include/glpoint.h (write GL_NEW for the file and "
              "line)");
    delete point;
    delete target;
    GLObject* object = GL_NEW GLObject;
    EXPECT_EQ(k.Ledger().LiveBlocks()[0].file, "tests/test_object.cpp");
    delete object;
    EXPECT_EQ(k.Ledger().LiveCount(), 0u);
}

} // namespace
