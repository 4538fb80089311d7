// Glquithd.cpp - the prima donna that ends the main loop. See include/glquithd.h.
#include "glquithd.h"

#include "gldll.h"
#include "glevent.h"
#include "glgame.h"

GLQuitHandler::GLQuitHandler() {}

GLQuitHandler::GLQuitHandler(const GLQuitHandler& handler) : GLTarget(handler) {}

GLQuitHandler& GLQuitHandler::operator=(const GLQuitHandler& handler)
{
    GLTarget::operator=(handler);
    return *this;
}

GLQuitHandler::~GLQuitHandler() {}

int GLQuitHandler::HandleEvent(GLEvent* pEvent)
{
    GL_ASSERT(pEvent != 0);
    // The quit key is recognised by its modifiers and message alone, whatever
    // the event's type.
    if (pEvent->modifiers == kQuitModifiers && pEvent->message == kQuitKey) {
        pEvent->claimed = TRUE;
        theGame->mQuit = TRUE;
    }
    return pEvent->claimed;
}

int GLQuitHandler::OnMe(GLPoint)
{
    return FALSE;
}
