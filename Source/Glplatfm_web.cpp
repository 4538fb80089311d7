// Glplatfm_web.cpp - room libraries in a web page, where nothing is loaded at
// run time: every room is linked into the page and registers its five exports
// under its number before the game starts (the page's build does it with
// GLPlatformAddRoom). "Loading" room n finds its entry in that table. See
// glplatfm.h.
#include "glplatfm.h"

#include <cstdlib>
#include <cstring>

namespace {

// The exports of one room; a room registers each of them once.
struct RoomEntry {
    unsigned long number;
    void* exports[5];
};

const char* const kExportNames[5] = {"roomDLLInit", "roomInit", "roomDoIt", "roomHandleEvent", "roomDispose"};

// Registration runs before main (static constructors of the page), when the
// library's allocator has no kernel yet: the table is a fixed array. A page
// with more rooms than this fails its first registration past the end.
const int kMaxRooms = 256;
RoomEntry gRooms[kMaxRooms];
int gRoomCount = 0;

RoomEntry* FindRoom(unsigned long number)
{
    for (int i = 0; i < gRoomCount; i++)
        if (gRooms[i].number == number)
            return &gRooms[i];
    return 0;
}

int ExportIndex(const char* pName)
{
    for (int i = 0; i < 5; i++)
        if (std::strcmp(kExportNames[i], pName) == 0)
            return i;
    return -1;
}

} // namespace

// A room is named by its number alone: no file is ever opened for it.
const char kGLLibraryExtension[] = "";

int GLPlatformAddRoom(unsigned long uNumber, const char* pExport, void* pFunction)
{
    const int iExport = ExportIndex(pExport);
    if (iExport < 0 || !pFunction)
        return FALSE;
    RoomEntry* pRoom = FindRoom(uNumber);
    if (!pRoom) {
        if (gRoomCount == kMaxRooms)
            return FALSE;
        pRoom = &gRooms[gRoomCount++];
        pRoom->number = uNumber;
    }
    pRoom->exports[iExport] = pFunction;
    return TRUE;
}

// The directory plays no part: the page holds every room it has. The name is
// the room's decimal number, as the room manager formats it.
void* GLPlatformLoadLibrary(const char*, const char* pName)
{
    char* pEnd = 0;
    const unsigned long uNumber = std::strtoul(pName, &pEnd, 10);
    if (!pName[0] || *pEnd)
        return 0;
    return FindRoom(uNumber);
}

void* GLPlatformFindExport(void* pLibrary, const char* pName)
{
    const int iExport = ExportIndex(pName);
    return iExport < 0 ? 0 : static_cast<RoomEntry*>(pLibrary)->exports[iExport];
}

// The room's code stays in the page; the next load finds it again.
void GLPlatformFreeLibrary(void*) {}

void GLPlatformMessageBox(const char* pText, const char* pTitle, unsigned int)
{
    GLCurrentAssertNotice()(pText, pTitle);
}

const char* GLPlatformLoadError()
{
    return "the room is not linked into the page";
}
