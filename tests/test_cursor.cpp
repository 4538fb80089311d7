// The picture triple and the mouse cursor: mode pictures, the exact-mode rule,
// mode switches that act only on a change, and what reaches the kernel.
#include "QuindleTest.h"
#include "glcursor.h"
#include "glevent.h"

#include <string>
#include <vector>

namespace {

class CursorTest : public QuindleTest {
protected:
    // The kernel calls since the mark, cursor operations only.
    std::vector<std::string> CursorCallsSince(std::size_t mark) const
    {
        std::vector<std::string> calls;
        for (const std::string& call : k.CallsSince(mark))
            if (call.find("Cursor") != std::string::npos)
                calls.push_back(call);
        return calls;
    }

    GLCelRes norm{100, 1, 2, 0};
    GLCelRes wait{200, 3, 4, 0};
    GLCelRes handsOff{300, 5, 6, 0};
    GLCelRes highlight{400, 7, 8, 0};

    // A cursor whose four pictures differ, made without touching the log mark.
    GLCursor* MakeDistinctCursor()
    {
        GLCursor* cursor = new GLCursor(norm, FALSE);
        cursor->SetWaitCelRes(wait);
        cursor->SetHandsOffCelRes(handsOff);
        cursor->SetHighLtCelRes(highlight);
        return cursor;
    }
};

using Calls = std::vector<std::string>;

TEST_F(CursorTest, NewCursorShowsItsTripleAndTouchesVisibilityOnlyWhenAsked)
{
    std::size_t mark = k.Mark();
    GLCelRes res(100, 1, 2, 99);
    GLCursor quiet(res, FALSE);
    // The fourth value is never passed to the kernel.
    EXPECT_EQ(CursorCallsSince(mark), (Calls{"SetCursorView(100,1,2)"}));
    EXPECT_EQ(quiet.NeedsEvent(), 0);
    // Every mode starts with the same picture.
    for (const GLCelRes* picture : {&quiet.GetWaitCelRes(), &quiet.GetHandsOffCelRes(), &quiet.GetHighLtCelRes()})
        EXPECT_EQ(picture->mView * 100 + picture->mCel * 10 + picture->mData, 100u * 100 + 20 + 99);

    mark = k.Mark();
    GLCursor shown(res, TRUE);
    EXPECT_EQ(CursorCallsSince(mark), (Calls{"SetCursorView(100,1,2)", "ShowCursor()"}));
    EXPECT_EQ(shown.NeedsEvent(), 4);
}

TEST_F(CursorTest, ModeSwitchesActOnlyOnAChange)
{
    GLCursor* cursor = MakeDistinctCursor();
    std::size_t mark = k.Mark();
    cursor->EndWait();
    cursor->HandsOn();
    cursor->EndHighlight();
    EXPECT_TRUE(CursorCallsSince(mark).empty());
    EXPECT_EQ(cursor->GetState(), 0u);

    cursor->BeginWait();
    cursor->BeginWait();
    EXPECT_EQ(CursorCallsSince(mark), (Calls{"SetCursorView(200,3,4)"}));
    EXPECT_EQ(cursor->IsWait(), 2);
    cursor->EndWait();
    cursor->EndWait();

    cursor->HandsOff();
    cursor->HandsOff();
    EXPECT_EQ(cursor->IsHandsOff(), 4);
    cursor->HandsOn();
    cursor->HandsOn();

    cursor->BeginHighlight();
    cursor->BeginHighlight();
    EXPECT_EQ(cursor->IsHighlighted(), 16);
    cursor->EndHighlight();
    cursor->EndHighlight();
    EXPECT_EQ(CursorCallsSince(mark),
              (Calls{"SetCursorView(200,3,4)", "SetCursorView(100,1,2)", "SetCursorView(300,5,6)",
                     "SetCursorView(100,1,2)", "SetCursorView(400,7,8)", "SetCursorView(100,1,2)"}));
    EXPECT_TRUE(cursor->IsNormal());
    delete cursor;
}

TEST_F(CursorTest, OnlyExactlyOneModeBitSelectsItsPicture)
{
    GLCursor* cursor = MakeDistinctCursor();
    cursor->BeginWait();
    EXPECT_EQ(cursor->GetView(), 200u);

    // A second mode shows its own picture, but with two modes on the current
    // picture is the normal one.
    std::size_t mark = k.Mark();
    cursor->HandsOff();
    EXPECT_EQ(CursorCallsSince(mark), (Calls{"SetCursorView(300,5,6)"}));
    EXPECT_EQ(cursor->GetState(), 6u);
    EXPECT_EQ(&cursor->GetCurrCelRes(), &cursor->GetNormCelRes());

    // Ending one mode shows the normal picture although the other is still on;
    // the remaining mode is then the current one.
    mark = k.Mark();
    cursor->EndWait();
    EXPECT_EQ(CursorCallsSince(mark), (Calls{"SetCursorView(100,1,2)"}));
    EXPECT_EQ(&cursor->GetCurrCelRes(), &cursor->GetHandsOffCelRes());

    cursor->BeginHighlight();
    EXPECT_EQ(&cursor->GetCurrCelRes(), &cursor->GetNormCelRes());
    cursor->HandsOn();
    EXPECT_EQ(&cursor->GetCurrCelRes(), &cursor->GetHighLtCelRes());
    EXPECT_EQ(cursor->GetCel(), 8);
    delete cursor;
}

TEST_F(CursorTest, StoringAPictureShowsItOnlyWhenItsOwnBitIsSet)
{
    GLCursor* cursor = new GLCursor(norm, FALSE);
    std::size_t mark = k.Mark();
    cursor->SetWaitCelRes(wait);
    cursor->SetHandsOffCelRes(handsOff);
    cursor->SetHighLtCelRes(highlight);
    EXPECT_TRUE(CursorCallsSince(mark).empty());

    GLCelRes other(500, 9, 9, 0);
    cursor->SetNormCelRes(other);
    EXPECT_EQ(CursorCallsSince(mark), (Calls{"SetCursorView(500,9,9)"}));

    // Wait and hands off both on: each picture is tested on its own bit, so
    // both are shown although the current picture is the normal one.
    cursor->BeginWait();
    cursor->HandsOff();
    mark = k.Mark();
    GLCelRes wait2(201, 0, 1, 0), handsOff2(301, 0, 1, 0), norm2(101, 0, 1, 0), highlight2(401, 0, 1, 0);
    cursor->SetWaitCelRes(wait2);
    cursor->SetHandsOffCelRes(handsOff2);
    cursor->SetNormCelRes(norm2);
    cursor->SetHighLtCelRes(highlight2);
    EXPECT_EQ(CursorCallsSince(mark), (Calls{"SetCursorView(201,0,1)", "SetCursorView(301,0,1)"}));
    EXPECT_EQ(cursor->GetView(), 101u);
    delete cursor;
}

TEST_F(CursorTest, CurrentPictureSettersChangeOnlyTheCurrentModeAndShowIt)
{
    GLCursor* cursor = MakeDistinctCursor();
    cursor->BeginHighlight();
    std::size_t mark = k.Mark();
    cursor->SetView(410);
    cursor->SetLoop(11);
    cursor->SetCel(12);
    EXPECT_EQ(CursorCallsSince(mark),
              (Calls{"SetCursorView(410,7,8)", "SetCursorView(410,11,8)", "SetCursorView(410,11,12)"}));
    EXPECT_EQ(cursor->GetNormCelRes().mView, 100u);

    GLCelRes res(600, 1, 1, 7);
    cursor->SetCurrCelRes(res);
    cursor->EndHighlight();
    mark = k.Mark();
    cursor->SetCurrCelRes(res);
    EXPECT_EQ(CursorCallsSince(mark), (Calls{"SetCursorView(600,1,1)"}));
    EXPECT_EQ(cursor->GetHighLtCelRes().mView, 600u);
    EXPECT_EQ(cursor->GetWaitCelRes().mView, 200u);
    delete cursor;
}

TEST_F(CursorTest, HideAndShowLeaveTheModeAlone)
{
    GLCursor* cursor = MakeDistinctCursor();
    cursor->BeginWait();
    std::size_t mark = k.Mark();
    cursor->Hide();
    EXPECT_EQ(cursor->GetState(), 3u);
    EXPECT_EQ(cursor->NeedsEvent(), 0);
    cursor->SetState(0); // does nothing
    cursor->Show();
    EXPECT_EQ(cursor->GetState(), 2u);
    EXPECT_EQ(cursor->NeedsEvent(), 4);
    EXPECT_EQ(CursorCallsSince(mark), (Calls{"HideCursor()", "ShowCursor()"}));
    delete cursor;
}

TEST_F(CursorTest, InitResetsPicturesAndStateButKeepsThePosition)
{
    GLCursor* cursor = MakeDistinctCursor();
    GLPoint where(30, 40);
    std::size_t mark = k.Mark();
    cursor->SetPos(where);
    EXPECT_EQ(CursorCallsSince(mark), (Calls{"SetCursorPos((30,40))"}));
    where.SetPoint(1, 1); // the cursor keeps its own copy
    EXPECT_EQ(cursor->GetPos().GetX(), 30);

    cursor->BeginWait();
    cursor->Hide();
    mark = k.Mark();
    GLCelRes res(900, 2, 3, 0);
    cursor->Init(res, TRUE);
    EXPECT_EQ(CursorCallsSince(mark), (Calls{"SetCursorView(900,2,3)", "ShowCursor()"}));
    EXPECT_EQ(cursor->GetState(), 0u);
    EXPECT_EQ(cursor->GetWaitCelRes().mView, 900u);
    EXPECT_EQ(cursor->GetPos(), GLPoint(30, 40));

    mark = k.Mark();
    cursor->Init(norm, FALSE);
    EXPECT_EQ(CursorCallsSince(mark), (Calls{"SetCursorView(100,1,2)"}));
    delete cursor;
}

TEST_F(CursorTest, CopiesAreIndependent)
{
    GLCursor* cursor = MakeDistinctCursor();
    GLPoint where(5, 6);
    cursor->SetPos(where);
    cursor->HandsOff();
    std::size_t mark = k.Mark();
    GLCursor copy(*cursor);
    EXPECT_TRUE(CursorCallsSince(mark).empty());
    EXPECT_EQ(copy.GetView(), 300u);
    delete cursor; // the copy's position is its own
    EXPECT_EQ(copy.GetPos().GetX(), 5);

    GLCursor other(norm, FALSE);
    other = copy;
    copy.HandsOn();
    EXPECT_EQ(other.IsHandsOff(), 4);
}

TEST_F(CursorTest, EventsMoveTheStoredPositionOnly)
{
    GLCursor cursor(norm, TRUE);
    GLEvent event;
    k.PushEvent(1, 0, 0, 120, 130);
    event.Refresh();
    std::size_t mark = k.Mark();
    EXPECT_EQ(cursor.HandleEvent(&event), TRUE);
    EXPECT_EQ(event.claimed, FALSE);
    EXPECT_EQ(cursor.GetPos(), GLPoint(120, 130));
    EXPECT_TRUE(k.CallsSince(mark).empty());
}

} // namespace
