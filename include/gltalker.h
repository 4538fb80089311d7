// gltalker.h - GLNarrator, who speaks one message at a time.
//
// Say starts the text and the recorded speech of a message together. While
// it talks the narrator is in the game's object set (its DoIt watches the
// clock) and at the front of the user object's hogs, so every input event
// reaches it before anything else and none gets past it. It ends:
//   - on its own, in the first frame whose tick count is above its talk end
//     time while the kernel reports no speech of the message playing. The
//     talk time is the speech's length + 1 tick when the message has speech,
//     otherwise 5 ticks per byte of text;
//   - at once on Enter (key 13, value 0), Escape (key 27, value 1) or a
//     pointer event of type 2 (value 1 when modifier bit 0 is set, else 0).
// It then leaves both sets, stops the speech and cues its caller with that
// value: 0 for a normal end, 1 for a conversation cut short.
//
// The library's narrator draws nothing. A game derives its own narrator and
// overrides Display to show mpMessage's text (for instance in its text view)
// and Done to take it away again; an overriding Done must call
// GLNarrator::Done with the same value, since only the base leaves the sets
// and cues the caller.
#ifndef QUINDLE_GLTALKER_H
#define QUINDLE_GLTALKER_H

#include "globject.h"

class GLMessage;
// The game's own class: the library only keeps the pointer for the game's Display.
class GLTextView;

class QUINDLE_API GLNarrator : public GLObject {
public:
    // Idle, with no text view or with the one given (not owned).
    GLNarrator();
    explicit GLNarrator(GLTextView* pTextView);
    // A copy carries the same message, caller, text view and talk end time
    // but is idle: it is in none of the game's sets, so it cannot be talking.
    GLNarrator(const GLNarrator& narrator);
    GLNarrator& operator=(const GLNarrator& narrator);
    // Delete a narrator only while it is idle. One deleted while it talks is
    // taken out of the game's object set and the hogs, so the game never
    // reaches a deleted object, but it cues nobody and its speech is not
    // stopped.
    virtual ~GLNarrator();

    // Starts speaking pMessage (not owned; it must outlive the speech) and
    // remembers whom to cue when done (may be null). The narrator must be idle
    // ("!mIAmTalking && (GameDoesText || GameDoesAudio)") and a game must be
    // installed. Its talk end time counts from the current frame's tick count.
    void Say(GLMessage* pMessage, GLObject* pCaller);
    // Sets the talk time to 5 ticks per byte of the message's text (none for a
    // message without text), then calls Display.
    void StartText();
    // Starts the message's speech at volume 127; a message with speech sets
    // the talk time to the speech's length + 1 tick, replacing the text time.
    void StartAudio();

    // Once per frame while talking: ends with Done(0) once the tick count is
    // above the talk end time and no speech of the message is playing.
    // Reports "mIAmTalking" when idle.
    virtual void DoIt();
    // Claims every event while talking, and ends on Enter, Escape or a type-2
    // pointer event (see above). Returns TRUE. Reports "mIAmTalking" when idle.
    virtual int HandleEvent(GLEvent* pEvent);
    // Ends the speech: leaves the game's object set and the hogs, stops the
    // message's speech, goes idle and cues the caller (when set) with the
    // narrator as cuer and this value. Reports "mIAmTalking" when idle.
    virtual void Done(int iValue);
    // Shows mpMessage's text. The library's version shows nothing.
    virtual void Display();

    GLMessage* mpMessage;       // not owned: the message being said
    GLObject* mpCaller;         // not owned: cued when done, or null
    GLTextView* mpTextView;     // not owned: for the game's Display
    std::uint32_t mTalkEndTime; // the game tick after which the narrator may end
    int mIAmTalking;            // TRUE from Say to Done
};

#endif
