// gltimer.h - GLCue, a deferred notification, and GLTimer, a cue that waits.
//
// A cue is never delivered at once. The object that finishes a task creates a
// GLCue addressed to the object that asked to be told and forgets it: the cue
// puts itself at the front of the game's object set, and on a later frame the
// game's walk of that set reaches it, it calls the receiver's Cue(GLCue*),
// leaves the set and deletes itself. Because it goes in at the front of a set
// the game walks from the front, a cue created during the walk is delivered on
// the following frame, never on the one that created it.
//
// A GLTimer is a cue that is delivered only when its wait is over: a number of
// frames, a number of game ticks (against the tick count the game read at the
// start of the frame) or a number of seconds (against a fresh reading of the
// kernel's seconds clock at every check).
//
// Who owns what: from construction until it fires, a cue or timer belongs to
// the game's object set; its creator keeps no pointer to it. Create cues and
// timers with new (they come from the kernel's allocator like every library
// object) and never on the stack or as members. Deleting a pending one from
// outside is allowed: it takes itself out of the set. The objects a cue points
// to are not owned.
#ifndef QUINDLE_GLTIMER_H
#define QUINDLE_GLTIMER_H

#include "globject.h"

class QUINDLE_API GLCue : public GLObject {
public:
    // Addresses a cue to whoToCue on behalf of cuer (null when nobody in
    // particular), carrying a value and a pointer, and puts it at the front of
    // the game's object set (through Init). A game must be installed. The
    // receiver may still be filled in after construction (the fields are
    // public), but it must be set by the time the cue fires.
    GLCue(GLObject* whoToCue = 0, GLObject* cuer = 0, int value = 0, void* data = 0);
    // A copy carries the same four fields but is not put in the game's object
    // set: it never fires.
    GLCue(const GLCue& cue);
    GLCue& operator=(const GLCue& cue);
    // A cue deleted before it fired leaves the game's object set, so the game
    // never reaches a deleted object. One that fired has left already.
    virtual ~GLCue();

    // Once per frame, from the game: fires the cue when Check says it is due.
    virtual void DoIt();
    // The notification a cue receives itself is the one of GLObject (nothing).
    using GLObject::Cue;
    // Puts the cue at the front of the game's object set; it must not be
    // there already.
    virtual void Init();
    // Fires: calls the receiver's Cue(GLCue*) with this cue, takes the cue out
    // of the game's object set and deletes it. The receiver may read mpCuer,
    // mValue and mpData during the call but must not keep the pointer. Firing
    // a cue whose receiver is still null reports "mpWhoToCue".
    virtual void Cue();
    // TRUE when the cue is due. A plain cue is due on the first frame that
    // reaches it.
    virtual int Check();

    // The object whose Cue(GLCue*) is called when the cue fires.
    GLObject* mpWhoToCue;
    // The object on whose behalf the cue is sent, or null.
    GLObject* mpCuer;
    // A number and a pointer carried to the receiver.
    int mValue;
    void* mpData;
};

class QUINDLE_API GLTimer : public GLCue {
public:
    // The kinds of wait. A timer of kind UnsetTimer has no wait running and
    // must not be checked: it may not stay in the game's object set.
    enum TimerType {
        UnsetTimer = 0,  // no wait
        CyclesTimer = 1, // a number of frames of the main loop
        TicksTimer = 2,  // until the game's tick count reaches a value
        SecondsTimer = 3 // until the kernel's seconds clock reaches a value
    };

    // A timer that cues whoToCue (with a null cuer) once a wait of the given
    // kind and count is over; the value and the data are carried to the
    // receiver as by a cue (0 and null where not given). The timer is put in
    // the game's object set at once and its wait starts now. A count of 0
    // is due on the first frame that checks the timer, whatever the kind.
    GLTimer(GLObject* whoToCue, TimerType type, std::uint32_t count);
    GLTimer(GLObject* whoToCue, TimerType type, std::uint32_t count, int value);
    GLTimer(GLObject* whoToCue, TimerType type, std::uint32_t count, int value, void* data);
    // A copy carries every field but is not in the game's object set.
    GLTimer(const GLTimer& timer);
    GLTimer& operator=(const GLTimer& timer);
    virtual ~GLTimer();

    // The cue's own Init (into the game's object set) stays reachable.
    using GLCue::Init;
    // Starts a wait of that kind and count from now, replacing any wait that
    // runs: a cycles wait counts frames from the next check, a ticks wait ends
    // at the current frame's tick count plus the count, a seconds wait at the
    // kernel's seconds clock now plus the count. Init(UnsetTimer, 0) stops the
    // wait. Nothing is checked.
    void Init(TimerType type, std::uint32_t count);
    // Called once per frame: TRUE when the wait is over, in which case the
    // wait is cleared (kind UnsetTimer, the three counters 0). A cycles wait
    // counts one frame per call. Checking a timer with no wait reports
    // "mType!=UnsetTimer".
    virtual int Check();

    // The kind of wait that runs.
    TimerType mType;
    // CyclesTimer: frames still to wait.
    std::uint32_t mCycles;
    // SecondsTimer: the kernel seconds value at which the wait is over.
    std::uint32_t mSecondsEnd;
    // TicksTimer: the game tick value at which the wait is over.
    std::uint32_t mTicksEnd;
};

#endif
