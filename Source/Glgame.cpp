// Glgame.cpp - the game object and its main loop. See include/glgame.h.
#include "glgame.h"

#include "glcursor.h"
#include "gldll.h"
#include "glframe.h"
#include "glplanes.h"
#include "glquithd.h"
#include "gluser.h"

GLGame::GLGame() : mpPlaneManager(0), mpUser(0), mpCursor(0), mpObjects(0), mQuit(0), mGameTicks(0)
{
    mpPlaneManager = GL_NEW GLPlaneManager;
    mpUser = GL_NEW GLUser;
    mpObjects = GL_NEW GLSetAsArray<GLObject>(1, 1);
    mGameTicks = kernel->GetTicks();
}

// The cursor is required and is installed here: the game owns everything
// handed to this constructor, and a caller that goes on to install the same
// cursor with SetCursor finds it already installed, which changes nothing.
GLGame::GLGame(GLCursor* curse, GLUser* pUser, GLPlaneManager* pPlaneManager)
    : mpPlaneManager(0), mpUser(0), mpCursor(0), mpObjects(0), mQuit(0), mGameTicks(0)
{
    mpPlaneManager = pPlaneManager ? pPlaneManager : GL_NEW GLPlaneManager;
    mpUser = pUser ? pUser : GL_NEW GLUser;
    GL_ASSERT(curse);
    mpCursor = curse;
    mpObjects = GL_NEW GLSetAsArray<GLObject>(1, 1);
    mGameTicks = kernel->GetTicks();
}

// A copy owns copies of what the original owns; the planes and the objects in
// the object set are shared, as no game owns them.
GLGame::GLGame(const GLGame& game)
    : GLObject(game), mpPlaneManager(0), mpUser(0), mpCursor(0), mpObjects(0), mQuit(game.mQuit),
      mGameTicks(game.mGameTicks)
{
    CopyOwned(game);
}

GLGame& GLGame::operator=(const GLGame& game)
{
    if (this != &game) {
        GLObject::operator=(game);
        DeleteOwned();
        CopyOwned(game);
        mQuit = game.mQuit;
        mGameTicks = game.mGameTicks;
    }
    return *this;
}

GLGame::~GLGame()
{
    DeleteOwned();
}

void GLGame::CopyOwned(const GLGame& game)
{
    mpPlaneManager = GL_NEW GLPlaneManager(*game.mpPlaneManager);
    mpUser = GL_NEW GLUser(*game.mpUser);
    mpObjects = GL_NEW GLSetAsArray<GLObject>(*game.mpObjects);
    mpCursor = game.mpCursor ? GL_NEW GLCursor(*game.mpCursor) : 0;
}

void GLGame::DeleteOwned()
{
    delete mpPlaneManager;
    mpPlaneManager = 0;
    delete mpUser;
    mpUser = 0;
    delete mpObjects;
    mpObjects = 0;
    delete mpCursor;
    mpCursor = 0;
}

void GLGame::Play()
{
    GLQuitHandler* pQuitHandler = GL_NEW GLQuitHandler;
    mpUser->mpPrimaDonnas->AddToEnd(pQuitHandler);
    mpUser->IsHandsOn(TRUE);
    while (mQuit == 0)
        DoIt();
    mpUser->mpPrimaDonnas->Remove(pQuitHandler);
    delete pQuitHandler;
}

GL_FRAME_PATH void GLGame::DoIt()
{
    mGameTicks = kernel->GetTicks();
    mpPlaneManager->DoIt();
    // By index, with the count read afresh before every step: members add and
    // remove themselves (and others) while the set is walked.
    for (int i = 0; i < mpObjects->NumElements(); i++)
        (*mpObjects)[i]->DoIt();
    kernel->UpdateScreen(1);
    mpUser->DoIt();
}

GLCursor* GLGame::GetCursor()
{
    return mpCursor;
}

void GLGame::SetCursor(GLCursor* pCursor)
{
    GL_ASSERT(pCursor);
    // Deleting the installed cursor in order to install it again would leave
    // the game holding a released block; installing it again changes nothing.
    if (pCursor == mpCursor)
        return;
    if (mpCursor) {
        delete mpCursor;
        mpCursor = 0;
    }
    GL_ASSERT(NULL == mpCursor);
    mpCursor = pCursor;
}

GLPoint& GLGame::GetMousePos()
{
    return mpUser->mMousePos;
}
