// room_trace.h - what the test rooms record of the calls they get, read by the
// room tests through the room's extra export "roomTrace".
#ifndef QUINDLE_ROOM_TRACE_H
#define QUINDLE_ROOM_TRACE_H

class GLEvent;
class GLGame;

struct RoomTrace {
    const char* origin; // which build of the room this is
    char calls[512];    // the room's calls in order, each followed by a space
    int dllInits;       // roomDLLInit calls
    int doIts;          // roomDoIt calls
    void* kernelGiven;  // what roomDLLInit was given
    void* kernelSeen;   // the library's kernel pointer as the room sees it
    GLGame* gameSeen;   // the library's theGame as the room sees it in roomInit
    GLEvent* lastEvent; // what roomHandleEvent was given last
    int reply;          // what roomHandleEvent answers; set by the test
};

// Every test room exports this besides whatever of the five it has.
typedef RoomTrace* (*RoomTraceFunction)();

#endif
