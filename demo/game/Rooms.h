// Rooms.h - the demo's rooms, for the game object.
//
// Each room is an object made when the room is entered and deleted when it is
// left. While it exists it works every frame (DoIt) and is offered the input
// nobody else took (HandleEvent): a click on the bare floor, say.
#ifndef DEMO_ROOMS_H
#define DEMO_ROOMS_H

class GLObject;

// "the courtyard", "the gallery".
const char* RoomName(int room);
// Makes the room and starts calling it; deletes it again.
void RoomsEnter(int room);
void RoomsLeave(int room);

// The rooms themselves (rooms/Courtyard.cpp, rooms/Gallery.cpp).
GLObject* MakeCourtyard();
GLObject* MakeGallery();

#endif
