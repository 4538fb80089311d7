// Buttons: faces, presses and releases, hogging.
#include "GameTest.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include "glbutton.h"
#include "glcast.h"
#include "glevent.h"
#include "glgame.h"
#include "glplane.h"
#include "glplanes.h"
#include "gluser.h"

namespace {

int gMouseUps = 0;
GLObject* gLastButton = nullptr;

void CountMouseUp(GLEvent*, GLObject* pButton)
{
    gMouseUps++;
    gLastButton = pButton;
}

class ButtonTest : public GameTest {
protected:
    ButtonTest()
    {
        gMouseUps = 0;
        button = new GLButton(plane, 40, 2, 5, GLPoint(100, 100), 3);
        button->SetMouseUpFnct(CountMouseUp);
        button->Show();
        k.nowSeen[1] = ZOR_Rect(100, 100, 149, 119);
        button->ForceUpdate(); // the clickable area is what the kernel drew
    }
    ~ButtonTest() override
    {
        delete button;
    }
    // One event through a whole frame; returns whether it was claimed.
    int Send(std::uint16_t type, int x, int y)
    {
        k.PushEvent(type, 0, 0, x, y);
        game->DoIt();
        return game->mpUser->mEvent.claimed;
    }
    int Cel() { return button->GetCel(); }

    GLButton* button;
};

TEST_F(ButtonTest, PressAndReleaseOverTheButtonCallTheMouseUpFunctionOnce)
{
    EXPECT_EQ(Cel(), 5); // the constructor's cel until a face is loaded
    EXPECT_FALSE(Send(kEventPointerDown, 110, 110)); // disabled: the press passes by
    EXPECT_EQ(Cel(), 5);
    button->Enable(TRUE);
    EXPECT_EQ(Cel(), 0);
    EXPECT_TRUE(Send(kEventPointerDown, 110, 110));
    EXPECT_EQ(Cel(), 1);
    EXPECT_TRUE(button->IsDepressed());
    EXPECT_TRUE(Send(kEventPointerUp, 111, 111));
    EXPECT_EQ(Cel(), 0);
    EXPECT_EQ(gMouseUps, 1);
    EXPECT_EQ(gLastButton, static_cast<GLObject*>(static_cast<GLFeature*>(button)));
    // A release that was never pressed is claimed and changes nothing.
    EXPECT_TRUE(Send(kEventPointerUp, 111, 111));
    EXPECT_EQ(gMouseUps, 1);
}

TEST_F(ButtonTest, AReleaseElsewhereBringsTheButtonUpWithoutTheCall)
{
    button->Enable(TRUE);
    button->SetHogging(TRUE); // so that it sees the release away from it
    EXPECT_TRUE(Send(kEventPointerDown, 110, 110));
    EXPECT_TRUE(Send(kEventPointerUp, 400, 400));
    EXPECT_FALSE(button->IsDepressed());
    EXPECT_EQ(Cel(), 0);
    EXPECT_EQ(gMouseUps, 0);
    button->SetHogging(TRUE); // twice: still once in the hog set
    EXPECT_EQ(game->mpUser->mpHogs->NumElements(), 1);
    button->SetHogging(FALSE);
    EXPECT_EQ(game->mpUser->mpHogs->NumElements(), 0);
    button->SetHogging(FALSE);
    // A button deleted while hogging leaves the hog set.
    button->SetHogging(TRUE);
    delete button;
    button = nullptr;
    EXPECT_EQ(game->mpUser->mpHogs->NumElements(), 0);
    button = new GLButton(plane, 40, 2, 5, GLPoint(100, 100), 3);
}

TEST_F(ButtonTest, KeysAndSelectFunctionsAndFacesFollowTheirRules)
{
    button->Enable(TRUE);
    GLEvent key;
    k.PushEvent(kEventKeyDown, kKeyEnter, 0, 110, 110);
    key.Refresh();
    EXPECT_FALSE(button->HandleEvent(&key));
    key.claimed = TRUE;
    EXPECT_TRUE(button->HandleEvent(&key)); // returned as it was

    static int selects;
    selects = 0;
    button->SetSelectFunction([](GLEvent*, GLObject*) { selects++; });
    EXPECT_FALSE(Send(kEventPointerDown, 110, 110));
    EXPECT_EQ(selects, 1);
    EXPECT_FALSE(button->IsDepressed());
    button->SetSelectFunction(nullptr);

    button->Disable(TRUE);
    EXPECT_EQ(Cel(), 2);
    button->Highlight(TRUE);
    EXPECT_EQ(Cel(), 3);
    button->UnHighlight(TRUE);
    EXPECT_EQ(Cel(), 0); // the enabled face, though the button stays disabled
    EXPECT_FALSE(button->IsEnabled());
    button->SetDepressedFace(41, 0, 7);
    EXPECT_EQ(button->GetDepressedFace().mCel, 7);
    button->Depress(TRUE);
    EXPECT_EQ(button->GetView(), 41);
    EXPECT_EQ(Cel(), 7);
    EXPECT_GL_ASSERT(button->HandleEvent(nullptr), "Source/Glbutton.cpp", "pEvent");
    EXPECT_GL_ASSERT(button->GeneralSelect(nullptr), "Source/Glbutton.cpp", "pEvent");
}

// A button whose shape is its own: the whole plane is on it.
class EverywhereButton : public GLButton {
public:
    EverywhereButton(AbsGLPlane* pPlane) : GLButton(pPlane, 40, 2, 0, GLPoint(0, 0), 1) {}
    int OnMe(GLPoint) const override { return TRUE; }
};

TEST_F(ButtonTest, PressesAreHitTestedWithTheButtonsOwnShape)
{
    EverywhereButton wide(plane);
    wide.Show();
    wide.Enable(TRUE);
    GLEvent press;
    press.type = kEventPointerDown;
    press.where = GLPoint(600, 400); // far off what the kernel drew of it
    EXPECT_TRUE(wide.HandleEvent(&press));
    EXPECT_TRUE(wide.IsDepressed());
}

TEST_F(ButtonTest, ABitmapButtonOnlyPushesItsScreenItem)
{
    std::uint16_t memId = 12;
    k.validMemIds[12] = true;
    KernelMemBitmap bitmap(&memId);
    GLButton flat(plane, &bitmap, GLPoint(0, 0), 1);
    const std::size_t mark = k.Mark();
    flat.Depress(TRUE);
    const auto names = k.NamesSince(mark);
    EXPECT_NE(std::find(names.begin(), names.end(), "UpdateScreenItem"), names.end());
    EXPECT_TRUE(flat.IsDepressed());
}

#if defined(__x86_64__) || defined(__i386__)
// Game code built against the exported table calls the added operations by
// slot: the six state operations come first, then GeneralSelect.
TEST(ButtonTable, TheAddedOperationsKeepTheirSlots)
{
    const std::ptrdiff_t enable = quindle_test::VirtualSlot(&GLButton::Enable);
    EXPECT_EQ(quindle_test::VirtualSlot(&GLButton::Disable), enable + 1);
    EXPECT_EQ(quindle_test::VirtualSlot(&GLButton::Depress), enable + 2);
    EXPECT_EQ(quindle_test::VirtualSlot(&GLButton::UnDepress), enable + 3);
    EXPECT_EQ(quindle_test::VirtualSlot(&GLButton::Highlight), enable + 4);
    EXPECT_EQ(quindle_test::VirtualSlot(&GLButton::UnHighlight), enable + 5);
    EXPECT_EQ(quindle_test::VirtualSlot(&GLButton::GeneralSelect), enable + 6);
}
#endif

} // namespace
