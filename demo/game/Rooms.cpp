// Rooms.cpp - entering and leaving rooms.
#include "Rooms.h"

#include "DemoGame.h"

#include "gluser.h"

namespace {
GLObject* gRoom = 0;
}

const char* RoomName(int room)
{
    return room == kCourtyard ? "the courtyard" : room == kGallery ? "the gallery" : "nowhere";
}

void RoomsEnter(int room)
{
    gRoom = room == kCourtyard ? MakeCourtyard() : MakeGallery();
    theGame->mpObjects->AddToEnd(gRoom);
    theGame->mpUser->mpOrphans->AddToEnd(gRoom);
}

void RoomsLeave(int)
{
    theGame->mpUser->mpOrphans->Remove(gRoom);
    theGame->mpObjects->Remove(gRoom);
    delete gRoom;
    gRoom = 0;
}
