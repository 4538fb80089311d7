// DemoButton.cpp - highlighting on hover, hogging while pressed.
#include "DemoButton.h"

#include "DemoGame.h"

#include "glevent.h"
#include "glsound.h"

namespace {
const int kClickVolume = 90;
}

DemoButton::DemoButton(AbsGLPlane* pPlane, int view, int loop, const GLPoint& pos, GLSelectFunction onClick)
    : GLButton(pPlane, view, loop, 0, pos, 500), mHogWhilePressed(FALSE)
{
    SetMouseUpFnct(onClick);
    Show();
    Enable(TRUE);
}

int DemoButton::HandleEvent(GLEvent* pEvent)
{
    // The pointer moving over an enabled button that is not pressed lights it;
    // moving off puts it out. The move is not claimed: others may want it.
    if (pEvent->type == kEventPointerMove && IsEnabled() && !IsDepressed()) {
        const int over = GLFeature::OnMe(pEvent->where);
        if (over && !IsHighlit())
            Highlight(TRUE);
        else if (!over && IsHighlit())
            UnHighlight(TRUE);
        return pEvent->claimed;
    }
    // A press over the lit button: it goes down (GLButton's work) and is no
    // longer lit.
    if (pEvent->type == kEventPointerDown && IsHighlit() && GLFeature::OnMe(pEvent->where))
        UnHighlight(FALSE);
    const int wasDown = IsDepressed();
    GLButton::HandleEvent(pEvent);
    if (IsDepressed() && !wasDown)
        Demo()->Sound()->Play(kClick, kWholeSample, kClickVolume, kPlainStart, kNobodyToCue, kNoTag); // a click as it goes down
    if (mHogWhilePressed && IsHogging() != IsDepressed())
        SetHogging(IsDepressed());
    return pEvent->claimed;
}
