// Glrmmgr.cpp - the room manager and the room library record. See
// include/glrmmgr.h.
#include "glrmmgr.h"

#include "gldll.h"
#include "glevent.h"
#include "glgame.h"
#include "glplatfm.h"

#include <cstdio>
#include <cstring>

namespace {

// The room directory named by the host, absolute and without a trailing
// separator; empty means the directory of the running program. The limit
// leaves room under the system's path limit for a separator, seven digits and
// the extension.
char gRoomDirectory[4000];

} // namespace

void GLSetRoomDirectory(const char* pDirectory)
{
    if (!pDirectory || !pDirectory[0]) {
        gRoomDirectory[0] = '\0';
        return;
    }
    // Resolved now, so that a later change of working directory cannot move
    // the room directory under the game's feet.
    char szDirectory[sizeof gRoomDirectory];
    int iLength = GLPlatformAbsolutePath(pDirectory, szDirectory, sizeof szDirectory);
    if (iLength == -1)
        GL_ASSERT(!"No working directory!");
    if (iLength < 0 || static_cast<std::size_t>(iLength) >= sizeof szDirectory)
        GL_ASSERT(!"Room directory name too long!");
    const std::size_t uRoot = GLPlatformRootLength(szDirectory);
    while (static_cast<std::size_t>(iLength) > (uRoot ? uRoot : 1) && GLPlatformIsSeparator(szDirectory[iLength - 1]))
        szDirectory[--iLength] = '\0';
    std::memcpy(gRoomDirectory, szDirectory, static_cast<std::size_t>(iLength) + 1);
}

GLRoomManager::GLRoomManager() : mRoomNumber(0), mLoaded(0), mpLibrary(0) {}

GLRoomManager::GLRoomManager(const GLRoomManager& manager)
    : GLObject(manager), mRoomNumber(manager.mRoomNumber), mLoaded(manager.mLoaded), mpLibrary(manager.mpLibrary)
{
}

GLRoomManager& GLRoomManager::operator=(const GLRoomManager& manager)
{
    GLObject::operator=(manager);
    mRoomNumber = manager.mRoomNumber;
    mLoaded = manager.mLoaded;
    mpLibrary = manager.mpLibrary;
    return *this;
}

// The room's library and the manager's place in the object set are the game
// code's to end (DisposeRoom, UnLoadRoom), not the destructor's.
GLRoomManager::~GLRoomManager() {}

int GLRoomManager::LoadRoom(std::uint32_t uRoomNumber)
{
    if (IsRoomLoaded(uRoomNumber))
        GL_ASSERT(!"This room already loaded!!");
    else if (IsRoomLoaded())
        GL_ASSERT(!"There is a room still in memory!!");

    // Seven digits and the terminator: larger numbers are refused rather than
    // given a longer name.
    GL_ASSERT(uRoomNumber <= 9999999);
    char szName[8];
    std::snprintf(szName, sizeof szName, "%d", static_cast<int>(uRoomNumber));

    mpLibrary = GLPlatformLoadLibrary(gRoomDirectory[0] ? gRoomDirectory : 0, szName);
    // The loader's handle is a pointer: a failed load is the null handle. The
    // host learns which file before the check ends the game.
    if (mpLibrary == 0) {
        char szFile[sizeof gRoomDirectory + sizeof szName + 8];
        const char szSeparator[2] = {gRoomDirectory[0] ? kGLPathSeparator : '\0', '\0'};
        std::snprintf(szFile, sizeof szFile, "%s%s%s%s", gRoomDirectory, szSeparator, szName, kGLLibraryExtension);
        // The reason names the file the loader was given, which may be another
        // of that name where the loader looks.
        char szWhy[1024];
        const char* pReason = GLPlatformLoadError();
        std::snprintf(szWhy, sizeof szWhy, "the room library cannot be loaded%s%s%s", pReason[0] ? " (" : "", pReason,
                      pReason[0] ? ")" : ": no such file");
        GLNotify(GL_NOTICE_ERROR, szFile, 0, szWhy);
        GL_ASSERT(!"Library did not load correctly!!");
    }
    char szLoaded[32];
    std::snprintf(szLoaded, sizeof szLoaded, "room %s loaded", szName);
    GLNotify(GL_NOTICE_TRACE, "", 0, szLoaded);

    mRoomNumber = uRoomNumber;
    mLoaded = TRUE;
    InitRoomDLL();
    return TRUE;
}

void GLRoomManager::InitRoomDLL()
{
    GL_ASSERT(IsRoomLoaded());
    GLRoomDLLInitFunction pInit = reinterpret_cast<GLRoomDLLInitFunction>(FindRoomFunction("roomDLLInit"));
    pInit(kernel);
}

void GLRoomManager::InitRoom()
{
    GL_ASSERT(IsRoomLoaded());
    GLRoomInitFunction pInit = reinterpret_cast<GLRoomInitFunction>(FindRoomFunction("roomInit"));
    pInit();
    theGame->mpObjects->AddToEnd(this);
}

// The export is looked up on every frame: it costs one symbol lookup and keeps
// the manager free of per-room state beyond the handle.
void GLRoomManager::DoIt()
{
    GL_ASSERT(IsRoomLoaded());
    GLRoomDoItFunction pDoIt = reinterpret_cast<GLRoomDoItFunction>(FindRoomFunction("roomDoIt"));
    pDoIt();
}

int GLRoomManager::HandleEvent(GLEvent* pEvent)
{
    GL_ASSERT(IsRoomLoaded());
    GL_ASSERT(pEvent);
    GLRoomHandleEventFunction pHandle =
        reinterpret_cast<GLRoomHandleEventFunction>(FindRoomFunction("roomHandleEvent"));
    return pHandle(pEvent);
}

void GLRoomManager::DisposeRoom()
{
    GL_ASSERT(IsRoomLoaded());
    GLRoomDisposeFunction pDispose = reinterpret_cast<GLRoomDisposeFunction>(FindRoomFunction("roomDispose"));
    pDispose();
    theGame->mpObjects->Remove(this);
}

int GLRoomManager::UnLoadRoom()
{
    GL_ASSERT(IsRoomLoaded());
    GLPlatformFreeLibrary(mpLibrary);
    char szUnloaded[32];
    std::snprintf(szUnloaded, sizeof szUnloaded, "room %d unloaded", static_cast<int>(mRoomNumber));
    GLNotify(GL_NOTICE_TRACE, "", 0, szUnloaded);
    mpLibrary = 0;
    mLoaded = FALSE;
    return TRUE;
}

int GLRoomManager::IsRoomLoaded()
{
    return mLoaded;
}

int GLRoomManager::IsRoomLoaded(std::uint32_t uRoomNumber)
{
    return mLoaded && mRoomNumber == uRoomNumber;
}

void* GLRoomManager::GetLibrary()
{
    return mpLibrary;
}

void* GLRoomManager::FindRoomFunction(const char* pName)
{
    void* pFunction = GLPlatformFindExport(mpLibrary, pName);
    if (pFunction == 0)
        GL_ASSERT(!"No such function!");
    return pFunction;
}

GLRoomDLL::GLRoomDLL()
{
    GLPlatformMessageBox("From a class", "Test", 0);
}

GLRoomDLL::GLRoomDLL(const GLRoomDLL&) {}

GLRoomDLL& GLRoomDLL::operator=(const GLRoomDLL&)
{
    return *this;
}
