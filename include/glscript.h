// glscript.h - GLScript, a numbered sequence of states walked one step at a
// time.
//
// The game writes one plain function, the script's code function, which is
// called with the script and the number of the state just entered and does
// that state's work: start a walk, start a wait, say a message. The script
// enters the next state (the current one plus 1) whenever it is cued, by any
// cuer given the script as the object to cue, and whenever a wait it started
// itself is over. A wait and a cue are independent: a cue that arrives during
// a wait advances the state and leaves the wait running.
//
// A script sits in the game's object set from construction until it is
// deleted; it is never delivered to anybody and never deletes itself. Game
// code deletes it, also from inside the code function, except in the call made
// for the first state, which runs inside the constructor.
#ifndef QUINDLE_GLSCRIPT_H
#define QUINDLE_GLSCRIPT_H

#include "gltimer.h"

class GLScript;

// The script's code function: the script first, the number of the state
// entered second (the same as the script's mState at the time of the call).
typedef void (*GLScriptCode)(GLScript*, int);

class QUINDLE_API GLScript : public GLTimer {
public:
    // Each puts the script in the game's object set and enters the first state
    // before it returns: the code function is called with the first state
    // (0 unless given) from inside the constructor, when a derived class's
    // fields are not yet set up; it must not delete the script in that call.
    // mValue and mpData take the value and pointer given (0 and null
    // otherwise); they are for the code function's own use.
    explicit GLScript(GLScriptCode pCode);
    GLScript(GLScriptCode pCode, int iFirstState);
    GLScript(GLScriptCode pCode, int iFirstState, int iValue);
    GLScript(GLScriptCode pCode, int iFirstState, int iValue, void* pData);
    // A copy carries every field; it is not in the game's object set, so it
    // never runs, and its code function is not called.
    GLScript(const GLScript& script);
    GLScript& operator=(const GLScript& script);
    // Takes the script out of the game's object set, then, if mpCuer is set,
    // calls mpCuer->Cue(this): the script itself is the cue, so the receiver
    // finds the script in mpWhoToCue and its mValue and mpData. A copy, which
    // never was in the set, skips the first step but still cues mpCuer.
    virtual ~GLScript();

    // Once per frame, from the game: if a wait runs and is over, enters the
    // next state.
    virtual void DoIt();
    // Any cue advances the script by one state; the cue is not looked at.
    virtual void Cue(GLCue* pCue);
    // Enters the next state.
    virtual void Cue();

    // Sets the state to iState and calls the code function with it.
    void ChangeState(int iState);

    // Start a wait of that many frames, seconds (by the kernel's seconds
    // clock) or ticks (from the current frame's tick count). The count must
    // not be 0 and no wait may be running: "mType==UnsetTimer && cycles",
    // "mType==UnsetTimer && secs", "mType==UnsetTimer && ticks".
    // Init(UnsetTimer, 0) cancels a running wait.
    void SetCycles(std::uint32_t cycles);
    void SetSeconds(std::uint32_t secs);
    void SetTicks(std::uint32_t ticks);

    // The number of the current state.
    int mState;
    // The code function.
    GLScriptCode mpCode;
    // Inherited and public: mpCuer, null after construction, is the object
    // cued when the script is destroyed; game code sets it directly.
};

#endif
