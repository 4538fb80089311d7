// glmsg.h - GLMessage, one message from the kernel's message store, and
// GLMessager, which says a conversation.
//
// A message is named by five numbers, always in this order: four lookup keys
// that only the kernel's store interprets, then a sequence number. The
// messages of one conversation share the four keys and are numbered 1, 2, 3...
// The library never parses a message's text; it fetches it, hands it to a
// narrator and lets the narrator's Display show it.
//
// A conversation, as the messager says it:
//   1. Say (or SayRange) fetches the first message by its keys;
//   2. FindTalker maps the message's talker number to a narrator, which is
//      handed the message and the messager as the object to cue;
//   3. the narrator cues the messager with 0 when the message ended on its
//      own, 1 when the player cut it short;
//   4. on 0 the messager fetches the kernel's next message of the
//      conversation and goes back to 2, as long as the sequence stays within
//      the range asked for;
//   5. then (range over, no next message, a talker number of 0, no narrator,
//      or cut short) the caller is cued, with the messager as cuer and the
//      value 1 if the player cut the conversation short, else 0.
// Every cue travels through the game's object set, so each message after the
// first starts in the frame in which the cue that ended the one before it is
// delivered.
#ifndef QUINDLE_GLMSG_H
#define QUINDLE_GLMSG_H

#include "globject.h"
#include "glset.h"

class GLNarrator;

class QUINDLE_API GLMessage : public GLObject {
public:
    // Holds no message: every key -1, talker 0, no text.
    GLMessage();
    // A copy holds the same keys and talker and a text block of its own with
    // the same text, so that each message frees only its own block.
    GLMessage(const GLMessage& message);
    GLMessage& operator=(const GLMessage& message);
    // Frees the text.
    virtual ~GLMessage();

    // Fetches the message with these four lookup keys and sequence number.
    // Returns its talker number, or 0 when the store has no such message; then
    // the message held before is left as it was (text and talker included),
    // only the keys are those asked for. A message whose talker is 0 counts as
    // not found for the messager.
    int Fill(int iKey1, int iKey2, int iKey3, int iKey4, int iSequence);
    // Fetches the message that follows the one the kernel returned last (the
    // next sequence of the same conversation, as the kernel sees it). Returns
    // its talker number, or 0 with nothing changed when there is none.
    int Fill();
    // Reads from the kernel the keys of the message it returned last into
    // mLastKeys and copies them to mKeys, so that after a fill mKeys names the
    // message really held.
    void GetKeys();

    int mKeys[5];     // the held message: four lookup keys, then its sequence
    int mLastKeys[5]; // what the kernel last reported for the message it returned
    int mTalker;      // the held message's talker number, as the kernel gave it
    char* mpText;     // owned: the held message's text, zero-terminated, or null

private:
    void TakeText(int iSize);
    void EndText(int iSize);
};

class QUINDLE_API GLMessager : public GLObject {
public:
    // Idle, with an empty set of talkers and a message of its own.
    GLMessager();
    // A copy has its own talker set holding the same narrators and its own
    // copy of the held message; it shares nothing it would delete. Narrators
    // that the original's FindTalker made stay the original's.
    GLMessager(const GLMessager& messager);
    GLMessager& operator=(const GLMessager& messager);
    // Deletes the talker set (not its members), the held message and every
    // narrator the library's FindTalker made. Delete a messager only when no
    // conversation is under way: a narrator of its own that still talks is
    // taken out of the game's sets first, but a cue already on its way to the
    // messager would reach a deleted object.
    virtual ~GLMessager();

    // Says one message, or a whole conversation, and cues pCaller (when not
    // null) once it is over. A sequence of 0 says the conversation from
    // sequence 1 to its end; any other sequence says that message only.
    // Returns TRUE when this call found the message (with a talker number
    // other than 0), FALSE when the store has none: then pCaller is cued with
    // 0 and no narrator is asked for. The result always describes this call's
    // lookup, never a message held from an earlier conversation.
    int Say(int iKey1, int iKey2, int iKey3, int iKey4, int iSequence, GLObject* pCaller);
    // The same for the sequences iFirst to iLast; an iLast of 0 runs to the end
    // of the conversation. iFirst above the end reports "mSequence<=mLastSequence".
    int SayRange(int iKey1, int iKey2, int iKey3, int iKey4, int iFirst, int iLast, GLObject* pCaller);

    // Says the held message: hands it to FindTalker's narrator, or ends the
    // conversation when there is none. The messager calls it itself; it is
    // never put in the game's object set.
    virtual void DoIt();
    // A narrator's cue: Cue(int) with the cue's value.
    virtual void Cue(GLCue* pCue);
    // Maps a talker number to the narrator that speaks it, or null to end the
    // conversation. Games override it to return their own narrators (for
    // instance kept in mpTalkers). The library's own version ignores the
    // number and makes a new plain narrator on every call; the messager owns
    // the narrators it made this way and deletes them with itself.
    virtual GLNarrator* FindTalker(int iTalker);

    // The message before is over: 0 when it ended on its own, anything else
    // when the player cut it short, which ends the conversation. Otherwise the
    // next message is fetched and said while the range lasts.
    void Cue(int iValue);
    // Ends the conversation: cues the caller (when set) with the messager as
    // cuer and the value TRUE if it was cut short, FALSE otherwise, and forgets
    // that it was cut short. The caller stays set until the next Say.
    void Dispose();

    GLObject* mpCaller;                  // not owned: cued when the conversation is over
    int mSequence;                       // the sequence being said
    int mLastSequence;                   // the last sequence to say
    GLSetAsArray<GLNarrator>* mpTalkers; // owned (not its members): for the game's FindTalker
    GLMessage* mpMessage;                // owned: the message being said
    int mAborted;                        // TRUE once a narrator cut a message short

private:
    // Narrators made by the library's FindTalker; owned, deleted with the messager.
    GLSetAsArray<GLNarrator>* mpOwnTalkers;
    void DeleteOwnTalkers();
};

#endif
