// The picture triple and the mouse cursor: mode pictures, the exact-mode rule,
// mode switches that act only on a change, and what reaches the kernel.
#include "QuindleTest.h"
#include "glcursor.h"
#include "glevent.h"

#include <string>
#include <vector>

namespace {

using Calls = std::vector<std::string>;

class CursorTest : public QuindleTest {
protected:
    CursorTest()
    {
        cursor.SetWaitCelRes(wait);
        cursor.SetHandsOffCelRes(handsOff);
        cursor.SetHighLtCelRes(highlight);
    }

    // The kernel's cursor calls since the last look.
    Calls Shown()
    {
        Calls calls;
        for (const std::string& call : k.CallsSince(mark))
            if (call.find("Cursor") != std::string::npos)
                calls.push_back(call);
        mark = k.Mark();
        return calls;
    }

    GLCelRes norm{100, 1, 2, 0}, wait{200, 3, 4, 0}, handsOff{300, 5, 6, 0}, highlight{400, 7, 8, 0};
    GLCursor cursor{norm, FALSE}; // its four pictures differ
    std::size_t mark = k.Mark();  // taken before the other three pictures are stored
};

TEST_F(CursorTest, ConstructorAndInitShowTheTripleAndTouchVisibilityOnlyWhenAsked)
{
    GLCelRes res(100, 1, 2, 99);
    GLCursor quiet(res, FALSE);
    EXPECT_EQ(Shown(), (Calls{"SetCursorView(100,1,2)"})) << "the fourth value is never passed to the kernel";
    EXPECT_EQ(quiet.NeedsEvent(), 0);
    // Every mode starts with the same picture.
    for (const GLCelRes* picture : {&quiet.GetWaitCelRes(), &quiet.GetHandsOffCelRes(), &quiet.GetHighLtCelRes()})
        EXPECT_EQ(picture->mView * 100 + picture->mCel * 10 + picture->mData, 100u * 100 + 20 + 99);
    GLCursor shown(res, TRUE);
    EXPECT_EQ(Shown(), (Calls{"SetCursorView(100,1,2)", "ShowCursor()"}));
    EXPECT_EQ(shown.NeedsEvent(), 4);

    // Init starts afresh except for the position, of which the cursor keeps its own copy.
    GLPoint where(30, 40);
    cursor.SetPos(where);
    EXPECT_EQ(Shown(), (Calls{"SetCursorPos((30,40))"}));
    where.SetPoint(1, 1);
    cursor.BeginWait();
    cursor.Hide();
    Shown();
    GLCelRes other(900, 2, 3, 0);
    cursor.Init(other, TRUE);
    EXPECT_EQ(Shown(), (Calls{"SetCursorView(900,2,3)", "ShowCursor()"}));
    EXPECT_EQ(cursor.GetState(), 0u);
    EXPECT_EQ(cursor.GetWaitCelRes().mView, 900u);
    EXPECT_EQ(cursor.GetPos(), GLPoint(30, 40));
    cursor.Init(norm, FALSE);
    EXPECT_EQ(Shown(), (Calls{"SetCursorView(100,1,2)"}));
}

TEST_F(CursorTest, ModeSwitchesActOnlyOnAChangeAndOnlyExactlyOneModeBitSelectsItsPicture)
{
    struct Mode {
        const char* name;
        void (GLCursor::*begin)();
        void (GLCursor::*end)();
        int (GLCursor::*is)() const;
        int bit;
        const char* picture;
    };
    const Mode modes[] = {
        {"wait", &GLCursor::BeginWait, &GLCursor::EndWait, &GLCursor::IsWait, 2, "SetCursorView(200,3,4)"},
        {"hands off", &GLCursor::HandsOff, &GLCursor::HandsOn, &GLCursor::IsHandsOff, 4, "SetCursorView(300,5,6)"},
        {"highlight", &GLCursor::BeginHighlight, &GLCursor::EndHighlight, &GLCursor::IsHighlighted, 16,
         "SetCursorView(400,7,8)"},
    };
    for (const Mode& m : modes) {
        SCOPED_TRACE(m.name);
        (cursor.*m.end)();
        EXPECT_TRUE(Shown().empty());
        (cursor.*m.begin)();
        (cursor.*m.begin)();
        EXPECT_EQ((cursor.*m.is)(), m.bit);
        (cursor.*m.end)();
        (cursor.*m.end)();
        EXPECT_EQ(Shown(), (Calls{m.picture, "SetCursorView(100,1,2)"}));
        EXPECT_EQ(cursor.GetState(), 0u);
        EXPECT_TRUE(cursor.IsNormal());
    }

    // Only exactly one mode bit selects its picture.
    cursor.BeginWait();
    EXPECT_EQ(cursor.GetView(), 200u);
    Shown();

    // A second mode shows its own picture, but with two modes on the current
    // picture is the normal one.
    cursor.HandsOff();
    EXPECT_EQ(Shown(), (Calls{"SetCursorView(300,5,6)"}));
    EXPECT_EQ(cursor.GetState(), 6u);
    EXPECT_EQ(&cursor.GetCurrCelRes(), &cursor.GetNormCelRes());

    // Ending one mode shows the normal picture although the other is still on;
    // the remaining mode is then the current one.
    cursor.EndWait();
    EXPECT_EQ(Shown(), (Calls{"SetCursorView(100,1,2)"}));
    EXPECT_EQ(&cursor.GetCurrCelRes(), &cursor.GetHandsOffCelRes());

    cursor.BeginHighlight();
    EXPECT_EQ(&cursor.GetCurrCelRes(), &cursor.GetNormCelRes());
    cursor.HandsOn();
    EXPECT_EQ(&cursor.GetCurrCelRes(), &cursor.GetHighLtCelRes());
    EXPECT_EQ(cursor.GetCel(), 8);
}

TEST_F(CursorTest, PictureSettersShowTheCurrentModesPictureOrOneWhoseOwnBitIsSet)
{
    EXPECT_TRUE(Shown().empty()) << "the fixture stored three pictures in normal mode";
    // The current picture's setters change only the current mode's picture.
    cursor.BeginHighlight();
    Shown();
    cursor.SetView(410);
    cursor.SetLoop(11);
    cursor.SetCel(12);
    EXPECT_EQ(Shown(), (Calls{"SetCursorView(410,7,8)", "SetCursorView(410,11,8)", "SetCursorView(410,11,12)"}));
    EXPECT_EQ(cursor.GetNormCelRes().mView, 100u);

    GLCelRes res(600, 1, 1, 7);
    cursor.SetCurrCelRes(res);
    cursor.EndHighlight();
    Shown();
    cursor.SetCurrCelRes(res);
    EXPECT_EQ(Shown(), (Calls{"SetCursorView(600,1,1)"}));
    EXPECT_EQ(cursor.GetHighLtCelRes().mView, 600u);
    EXPECT_EQ(cursor.GetWaitCelRes().mView, 200u);

    // Storing a picture shows it only when its own bit is set.
    GLCelRes other(500, 9, 9, 0);
    cursor.SetNormCelRes(other);
    EXPECT_EQ(Shown(), (Calls{"SetCursorView(500,9,9)"}));

    // Wait and hands off both on: each picture is tested on its own bit, so
    // both are shown although the current picture is the normal one.
    cursor.BeginWait();
    cursor.HandsOff();
    Shown();
    GLCelRes wait2(201, 0, 1, 0), handsOff2(301, 0, 1, 0), norm2(101, 0, 1, 0), highlight2(401, 0, 1, 0);
    cursor.SetWaitCelRes(wait2);
    cursor.SetHandsOffCelRes(handsOff2);
    cursor.SetNormCelRes(norm2);
    cursor.SetHighLtCelRes(highlight2);
    EXPECT_EQ(Shown(), (Calls{"SetCursorView(201,0,1)", "SetCursorView(301,0,1)"}));
    EXPECT_EQ(cursor.GetView(), 101u);
}

TEST_F(CursorTest, HideShowAndEventsLeaveTheModeAloneAndCopiesAreIndependent)
{
    cursor.BeginWait();
    Shown();
    cursor.Hide();
    EXPECT_EQ(cursor.GetState(), 3u);
    EXPECT_EQ(cursor.NeedsEvent(), 0);
    cursor.SetState(0); // does nothing
    cursor.Show();
    EXPECT_EQ(cursor.GetState(), 2u);
    EXPECT_EQ(cursor.NeedsEvent(), 4);
    EXPECT_EQ(Shown(), (Calls{"HideCursor()", "ShowCursor()"}));

    // An event moves the stored position only and is left unclaimed.
    GLEvent event;
    k.PushEvent(kEventPointerDown, 0, 0, 120, 130);
    event.Refresh();
    const std::size_t before = k.Mark();
    EXPECT_EQ(cursor.HandleEvent(&event), TRUE);
    EXPECT_EQ(event.claimed, FALSE);
    EXPECT_EQ(cursor.GetPos(), GLPoint(120, 130));
    EXPECT_TRUE(k.CallsSince(before).empty());

    cursor.EndWait();
    cursor.HandsOff();
    Shown();
    GLCursor* copy = new GLCursor(cursor);
    EXPECT_TRUE(Shown().empty());
    EXPECT_EQ(copy->GetView(), 300u);
    GLCursor assigned(norm, FALSE);
    assigned = *copy;
    copy->HandsOn();
    EXPECT_EQ(assigned.IsHandsOff(), 4);
    delete copy; // the positions are not shared
    EXPECT_EQ(cursor.GetPos().GetX(), 120);
    EXPECT_EQ(assigned.GetPos().GetX(), 120);
}

} // namespace
