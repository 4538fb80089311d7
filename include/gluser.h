// gluser.h - GLUser, the object through which all input reaches the game.
//
// Once per frame the game calls DoIt, which fetches one event from the
// kernel, records the mouse position and dispatches the event in a fixed
// order of precedence:
//   - if there are hogs, to the hogs and nobody else, even if none claims it;
//   - otherwise to the prima donnas, then to the plane manager (every plane
//     under the event's position, top plane first, through its cast), then
//     to the orphans.
// Dispatch stops at the first handler that claims the event. With hands off
// the event is swallowed. The user holds its three handler sets but not the
// handlers: library classes and game code add and remove themselves with the
// sets' own AddToEnd, AddToFront and Remove. A handler is a hog exactly while
// it is in mpHogs.
#ifndef QUINDLE_GLUSER_H
#define QUINDLE_GLUSER_H

#include "glevent.h"
#include "globject.h"
#include "glpoint.h"

class QUINDLE_API GLUser : public GLObject {
public:
    // Mouse at (0, 0), a default event, three empty handler sets (first size
    // 10, growth 10). The flags start at 0: hands off, null events not
    // handled, hogs not modal; the main loop switches hands on itself.
    GLUser();
    // A copy has its own three sets holding the same handlers, and its own
    // event record, so that each user releases only its own.
    GLUser(const GLUser& user);
    GLUser& operator=(const GLUser& user);
    // Deletes the hog, prima donna and orphan sets, in that order (not their
    // members), then the event and the mouse position.
    virtual ~GLUser();

    // One frame of input: fetches the next event of any type, copies its
    // position to mMousePos and its extra word to mExtra (for every event,
    // null events included), then, unless it is a null event that is not
    // handled, swallows it with hands off or dispatches it with HandleEvent.
    virtual void DoIt();
    // Dispatches in order of precedence (see above); returns the event's
    // claimed flag.
    virtual int HandleEvent(GLEvent* pEvent);

    // Offers the event to the hogs. With modal hogs the next events are
    // fetched into the same event object and offered to the hogs only, without
    // a frame being drawn, until a hog claims one (or the last hog has left
    // the set). Returns the event's claimed flag.
    int ProcessHogs(GLEvent* pEvent);
    // Offers the event to the prima donnas, in set order; FALSE if there are none.
    int ProcessPrimas(GLEvent* pEvent);
    // Offers the event to the orphans, in set order; FALSE if there are none.
    int ProcessOrphans(GLEvent* pEvent);
    // Swallows the event: marks it claimed and returns FALSE.
    int HandleHandsOff(GLEvent* pEvent);

    // Bit 0 of mUserFlags: input is dispatched. The getter gives 1 or 0.
    int IsHandsOn();
    // Bit 1: null events (type 0) are dispatched too. The getter gives 2 or 0.
    int DoesHandleNulls();
    // Bit 2: hogs hold the loop until one claims an event. The getter gives 4 or 0.
    int HogsAreModal();
    // Each setter sets its bit for any non-zero argument and clears it for 0,
    // leaves the other bits, and returns what the getter would.
    int IsHandsOn(int fFlag);
    int DoesHandleNulls(int fFlag);
    int HogsAreModal(int fFlag);

    GLPoint mMousePos;                // the last event's position, global
    std::uint32_t mExtra;             // the last event's extra word
    GLEvent mEvent;                   // the current event, refreshed every frame
    std::uint16_t mUserFlags;         // 1: hands on; 2: handles nulls; 4: modal hogs
    GLEventHandlerSet* mpHogs;        // owned; take every event while any is present
    GLEventHandlerSet* mpPrimaDonnas; // owned; asked before the planes
    GLEventHandlerSet* mpOrphans;     // owned; asked when nothing else took the event

private:
    void CopySets(const GLUser& user);
    void DeleteSets();
};

#endif
