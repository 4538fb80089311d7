// glsound.h - sound: the sound manager, sound tracks and the nodes they are
// made of.
//
// The sound manager (GLSndManager) is the game's one front to the kernel's
// digital audio. Most of its members pass a call straight to the kernel; what
// it adds is watching the samples it starts or fades, so that an object can be
// cued when a sample has ended or a fade has reached its volume, and owning the
// game's sound tracks.
//
// A sound track (GLSndTrack) is an endless ambient sequence: a ring of nodes,
// each of which starts a sound, waits a (possibly random) number of seconds,
// or starts one sound picked at random from a group. Every node carries a
// chance in percent of happening at all, and a node can be marked to be used
// once and then dropped from the ring. A track is a script whose code function
// is sndTrkCode: it steps one node at a time, driven by the game's frames, and
// plays its sounds through the kernel directly, not through the manager.
//
// Sound resources: a sound number names a kernel resource of type 13 or of
// type 12. Wherever a sound is locked, unlocked or loaded the kernel is first
// asked whether a type 13 resource of that number exists; if not, type 12 is
// used.
//
// Who owns what: the manager owns its tracks and its watch records; a track
// owns its ring, its header and every member of its random groups. Game code
// makes the manager (and deletes it); tracks are made and deleted through the
// manager.
#ifndef QUINDLE_GLSOUND_H
#define QUINDLE_GLSOUND_H

#include "glscript.h"

// ----- random numbers of the sound tracks -----
//
// The tracks draw from the library's own 32-bit linear congruential generator,
// never from the C runtime's, so that a track plays the same sequence on every
// platform: state := state * 214013 + 2531011 (modulo 2^32), and each draw
// returns bits 16 to 30 of the new state (0 to 32767). The state starts at 1
// and the library never reseeds it.

// The state that follows uState. Pure: touches no generator.
QUINDLE_API std::uint32_t GLSndRandomNext(std::uint32_t uState);
// Draws the next number, 0 to 32767, from the tracks' generator.
QUINDLE_API int GLSndRandom();
// The generator's state now, without drawing (for tests and replays that want
// to know what the next draws will be).
QUINDLE_API std::uint32_t GLSndRandomState();

// ----- nodes -----

// One sound node described as five numbers, in this order: the sample, its
// volume (0 to 127), its mode (1: stays in the ring; 0: used once), its pan
// (50 is the centre and means no pan) and its chance in percent.
struct SndByte {
    std::int32_t sample;
    std::int32_t volume;
    std::int32_t mode;
    std::int32_t pan;
    std::int32_t probability;
};

// The base of every node of a track's ring.
class QUINDLE_API GLNode : public GLObject {
public:
    // The kinds of node (mNodeType).
    enum {
        HeaderNode = 0, // closes the ring
        SoundNode = 1,  // starts a sound
        WaitNode = 2,   // waits
        PRSNode = 3     // starts one sound picked at random from a group
    };

    // A node of that kind, linked to nothing.
    explicit GLNode(int iNodeType);
    virtual ~GLNode();

    // The kind of node, one of the values above.
    int mNodeType;
    // The next node of the ring (of the group, inside a random group).
    GLNode* mpNext;
    // The previous node: the header's is the last node of the ring; inside a
    // random group, the previous member. Null elsewhere.
    GLNode* mpPrev;
};

// The header of a ring. Every track has exactly one; it closes the ring.
class QUINDLE_API GLHdrNode : public GLNode {
public:
    GLHdrNode();
    virtual ~GLHdrNode();
};

// A sound: starts mSample at mVolume, panned to mPan, with a chance of
// mProbability percent. The sound manager uses the same class for its watch
// records (mode 4: a play watch, mode 5: a fade watch; mpCaller the object to
// cue).
class QUINDLE_API GLSndNode : public GLNode {
public:
    // Sample 0, volume 127, mode 1, pan 50, chance 100, locked, no caller.
    GLSndNode();
    virtual ~GLSndNode();

    // The sample (sound resource) number.
    int mSample;
    // The volume, 0 to 127.
    int mVolume;
    // 1: the node stays in the ring; 0: it is used once, then removed.
    int mMode;
    // The pan, 0 to 100; 50 is the centre and means that no pan is set.
    int mPan;
    // The chance in percent that the sound is started when the node is reached.
    int mProbability;
    // TRUE: the sample's resource is locked while it plays.
    int mLock;
    // The object the sound manager cues when a watched sample is done; unused
    // by tracks.
    GLObject* mpCaller;
};

// A wait of mMinSeconds, or of mMinSeconds + (r mod mMaxSeconds) seconds for
// a random r when mMaxSeconds is not 0, with a chance of mProbability percent.
class QUINDLE_API GLWaitNode : public GLNode {
public:
    // No wait (0 and 0), mode 1, chance 100.
    GLWaitNode();
    virtual ~GLWaitNode();

    // The fixed part of the wait, in seconds.
    int mMinSeconds;
    // 0: the wait is mMinSeconds. Otherwise the modulus of the random part
    // (the modulus itself, not a difference from the minimum).
    int mMaxSeconds;
    // 1: the node stays in the ring; 0: it is used once, then removed.
    int mMode;
    // The chance in percent that the wait happens at all.
    int mProbability;
};

// A random group: each time it is reached one member is picked at random and
// started with the member's own chance, volume, pan and lock flag. A group is
// never removed from the ring.
class QUINDLE_API GLPRSNode : public GLNode {
public:
    // An empty group.
    GLPRSNode();
    virtual ~GLPRSNode();

    // The number of members.
    int mCount;
    // The first member; the members form a null-terminated list through
    // mpNext (mpPrev back), the member added last being first.
    GLSndNode* mpFirstChoice;
};

// ----- sound tracks -----

// The code function of every sound track (the script is the track). State 0
// does nothing; state 1 steps to the next node and starts it; state 2 checks
// whether the sample started last still plays. Any other state is the failed
// check "0". Exported so that game code can make scripts that behave as tracks:
// the script handed to it must be a GLSndTrack.
QUINDLE_API void sndTrkCode(GLScript* pScript, int iState);

// Reads a track file as GLSndManager::CreateSndTrack(const char*) reads it,
// making no track, and tells the host notice (GLSetHostNotice) of every
// surprise: as errors, a file that cannot be read and a WAIT that can come
// out at 0 seconds (its timer's check would end the game); as warnings, a
// token without digits where a number stands (it reads as 0), a keyword
// without its first number, numbers past the last one a keyword takes, a line
// longer than is read at once, a NUL byte, lines after an empty one, an
// unknown keyword. Returns the number of errors. CreateSndTrack tells the host
// of the same surprises while it reads.
QUINDLE_API int GLCheckSndTrack(const char* fileName);

// A sound track. Made with new or, better, through the sound manager, which
// numbers it and owns it from then on. The track is in the game's object set
// from its construction (it is a script) and rests until Play.
//
// Timing: a sound is tested once per frame from the frame after it started,
// and the next node starts on the frame after the test that finds it ended. A
// wait lasts its seconds; the frame in which they are over runs the test, and
// the next node starts on the frame after it.
//
// Every step leaves a wait running, so a track never stalls: a wait node that
// loses its draw takes one frame and the track steps on, and a use-once node
// behaves in its one pass exactly like a node that stays (its sound is tested
// until it ends) and is then gone from the ring. An empty ring (or one whose
// nodes have all been used up) steps to its header every other frame and
// starts nothing.
//
// Tracks cannot be copied: a copy would share the ring that both would delete.
class QUINDLE_API GLSndTrack : public GLScript {
public:
    // An empty track: number -1, resting, its ring only the header.
    GLSndTrack();
    GLSndTrack(const GLSndTrack&) = delete;
    GLSndTrack& operator=(const GLSndTrack&) = delete;
    // Deletes the ring (every member of a random group with it), then the
    // header, then leaves the game's object set as every script does. Stops
    // nothing: the manager stops a track before it deletes it.
    virtual ~GLSndTrack();

    // Appends a sound node filled from the five numbers at the end of the
    // ring. The node locks its sample while it plays.
    void AddSndNode(SndByte* pSndByte);
    void AddSndNode(int iSample, int iVolume, int iMode, int iPan, int iProbability);
    // Appends a wait node. The wait must come out at least 1 second whenever
    // its draw succeeds: a wait of 0 seconds is the script's failed check
    // "mType==UnsetTimer && secs" when the node is reached.
    void AddWaitNode(int iMinSeconds, int iMaxSeconds, int iMode, int iProbability);
    // Adds a member to a random group: to the group at the end of the ring if
    // the last node is one, otherwise to a new group appended first. The
    // member goes first in the group. The record form takes all five numbers;
    // the int form takes (sample, chance, volume, pan) in that order and
    // makes a member that stays.
    void AddPRSNode(SndByte* pSndByte);
    void AddPRSNode(int iSample, int iProbability, int iVolume, int iPan);
    // Removes and deletes the first sound node of the ring whose sample is
    // iSample (random group members are not looked at); nothing when there is
    // none. If it was the node reached last, the track goes on after its
    // predecessor.
    void DeleteSndNode(int iSample);
    // The same for the first wait node whose fixed part is iMinSeconds.
    void DeleteWaitNode(int iMinSeconds);

    // Starts the track from its first node, at once (inside the call). A
    // track that has seen its stop or pause but not yet come to rest starts
    // on the next frame. On a running track the wait that runs is dropped and
    // the track starts over; the sample that plays is not touched.
    void Play();
    // Marks the track paused; returns TRUE. The sample that plays is not
    // touched: the track stops advancing at its next test and then rests.
    int Pause();
    // Clears the stopped and paused marks; returns TRUE. A track that had come
    // to rest goes on at once with the node after the one reached last (one
    // that has seen its pause but not yet come to rest, on the next frame);
    // one that had not yet noticed its pause simply goes on.
    int Resume();
    // Marks the track stopped, stops the sample started last and, if its node
    // locks its sample, unlocks it.
    void Stop();
    // Fades the sample started last to silence and marks the track stopped;
    // returns TRUE.
    int Fade();

    // The number the sound manager gave the track; -1 before.
    int mTrackId;
    // The sample started (or picked) last; 0 after a wait.
    int mSample;
    // Set by Stop and Fade.
    int mStopped;
    // Set by Pause.
    int mPaused;
    // The ring's header, owned.
    GLHdrNode* mpHeader;
    // The node reached last (the header before the first step).
    GLNode* mpCurrent;
    // The next track in the sound manager's list.
    GLSndTrack* mpNextTrack;

private:
    // The friend names the exported function above; the compiler would
    // otherwise see an import redeclared without its mark.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wattributes"
    friend void sndTrkCode(GLScript* pScript, int iState);
#pragma GCC diagnostic pop
    friend class GLSndManager;

    // The two working states of sndTrkCode: 1 steps to the next node and
    // starts it, 2 tests the sample started last.
    void StepNode();
    void TestSample();
    void AppendNode(GLNode* pNode);
    // Unlinks pNode, whose predecessor in the ring is pPrev, and deletes it.
    void RemoveNode(GLNode* pPrev, GLNode* pNode);

    // The lock flag of the node that supplied mSample. It is kept apart
    // because a use-once node is gone from the ring by the time its sample is
    // tested, and a group member is not the node reached.
    int mSampleLock;
};

// ----- the sound manager -----

class QUINDLE_API GLSndManager : public GLObject {
public:
    // An empty manager, put at the front of the game's object set: the game
    // calls its DoIt every frame. A game must be installed.
    GLSndManager();
    // Copying would share the tracks and watch records that both would delete.
    GLSndManager(const GLSndManager&) = delete;
    GLSndManager& operator=(const GLSndManager&) = delete;
    // Stops and deletes every track, deletes the watch records (cuing nobody,
    // unlocking nothing) and leaves the game's object set.
    virtual ~GLSndManager();

    // Every frame: cues the callers of watched samples that have ended
    // (unlocking them) or reached their fade volume, and forgets those records.
    virtual void DoIt();

    // ----- passed to the kernel unchanged -----
    // The number of samples playing now.
    int NumActiveSamples();
    // Non-zero when digital audio is available.
    int IsAudioInstalled();
    int Preload(int iSample);
    int GetGlobalDuration(int* piValue);
    int GetGlobalVolume();
    void SetGlobalVolume(int iVolume);
    // The sample rate; SetRate(0) restores the kernel's default.
    int GetRate();
    void SetRate(int iRate);
    // The sample bits; SetBits(0) asks the kernel for its default sample rate
    // (there is no default-bits operation).
    int GetBits();
    void SetBits(int iBits);
    // The channel count; SetChannels(0) restores the kernel's default.
    int GetChannels();
    void SetChannels(int iChannels);
    int GetAutoVolAdjust();
    void SetAutoVolAdjust(int iValue);
    int GetDACCritical();
    void SetDACCritical(int iValue);
    int CheckNoise();
    void GetSampleDuration(int iSample, int* piDuration, int iTag);
    // Non-zero while the sample plays; writes its volume.
    int GetSampleVolume(int iSample, int* piVolume, int iTag);
    void SetSampleVolume(int iSample, int iVolume, int iValue);
    // Sample -1 pauses (resumes) every sample.
    int Pause(int iSample, int iQualifier);
    int Resume(int iSample, int iQualifier);
    // Sample -1 distorts every sample with iValue1.
    void Distort(int iSample, int iValue1, int iValue2);
    void StopPan(int iSample, int iValue);

    // ----- sound resources (type 13, else type 12) -----
    void Lock(int iSound);
    void Unlock(int iSound);
    void Load(int iSound);
    // Does nothing: the kernel frees what is not locked.
    void Unload(int iSound);

    // ----- playing with watches -----
    // Starts a sample at a volume (0 to 127), with the kernel's alternate
    // start when fAlternate is non-zero, and watches it: on the first frame on
    // which it no longer plays, pCaller (if any) is cued with the manager as
    // the cuer and value 0, and the sample is unlocked. A sample that already
    // plays is left alone: nothing is started, watched or cued.
    void Play(int iSample, int iQualifier, int iVolume, int fAlternate, GLObject* pCaller, int iTag);
    // Fades a sample toward iTarget; returns the kernel's answer. With a
    // caller, it is cued (as by Play) on the first frame on which the
    // sample's volume equals the target; without one nothing is watched.
    int Fade(int iSample, int iTarget, int iValue1, int iValue2, int iValue3, GLObject* pCaller, int iTag);
    // Stops one sample, or every sample with -1. The caller that asked to be
    // cued for the sample's end (the newest such watch) is not cued.
    void Stop(int iSample, int iQualifier);
    // Pans a sample (50 is the centre); a sample that is not playing is
    // started at volume 127 after the pan, without a watch.
    void Pan(int iSample, int iPan, int iValue);

    // ----- sound tracks -----
    // A new empty track, numbered and owned by the manager.
    GLSndTrack* CreateSndTrack();
    // A track built from a text file, numbered and owned by the manager; null
    // (and no track made) when the file cannot be opened or read. An empty
    // file gives an empty track.
    //
    // The file holds one node per line; a line is a keyword and whole numbers
    // separated by any mix of commas, spaces and tabs:
    //   SOUND sample [volume=127 [mode=1 [pan=50 [chance=100]]]]
    //   WAIT  min [max=0 [mode=1 [chance=100]]]
    //   PRS   sample [chance=100 [volume=127 [pan=50]]]
    //   PLAY
    // Keywords are case-sensitive and compared by their first letters only
    // (SOUNDS counts as SOUND). Consecutive PRS lines make one random group.
    // PLAY starts the track at once with the nodes read so far; later lines
    // still add nodes. A number is read as the C library's atoi reads it (so
    // "12x" is 12 and "x" is 0) except that it saturates at the 32-bit limits
    // instead of overflowing. Line ends may be "\n" or "\r\n"; a file need
    // not end with one. The line end belongs to the line's last token, so a
    // separator just before it gives one more number, read as 0 ("SOUND 5 "
    // is a sound of volume 0). A line is read at most 119 characters at a
    // time, its line end included (a NUL ends the text of its piece): the
    // rest of a longer line is read as a line of its own.
    //
    // Reading stops at the end of the file or at the first empty line (or one
    // of separators only): what follows is ignored, a PLAY included. A line
    // whose keyword is unknown is skipped. So is a malformed line, and reading
    // goes on: a keyword without its first number (no token after it; a
    // token without digits, the line end among them, is the number 0). A WAIT is taken as written: one whose wait comes out
    // at 0 seconds when the track reaches it is the script's failed check
    // "mType==UnsetTimer && secs", as for a wait node added by code.
    GLSndTrack* CreateSndTrack(const char* fileName);
    // Gives the track the next number (the first is 1; numbers are never
    // reused), puts it first in the manager's list and returns the number.
    // The manager owns the track from then on.
    int AttachSndTrack(GLSndTrack* pTrack);
    // The track with that number, or null.
    GLSndTrack* GetSndTrack(int id);
    // Stops and deletes the track with that number: TRUE; FALSE when there is
    // none.
    int DeleteSndTrack(int id);
    // Pauses the track with that number, or every track when id is below 1.
    // The tracks notice at their next test and come to rest.
    void PauseSndTrack(int id);
    // Clears the pause of the track with that number, or of every track when
    // id is below 1, and does nothing else: a track that had not yet noticed
    // the pause simply goes on, but one that has come to rest stays at rest
    // until its own Resume (or Play).
    void ResumeSndTrack(int id);

    // The number given to the last track attached.
    int mLastTrackId;
    // The newest track; the list goes on through each track's mpNextTrack.
    GLSndTrack* mpFirstTrack;
    // The newest watch record; the list goes on through mpNext (mpPrev back).
    GLSndNode* mpFirstWatch;

private:
    void AddWatch(GLSndNode* pWatch);
    // Unlinks a watch record and deletes it; returns the record that followed.
    GLSndNode* RemoveWatch(GLSndNode* pWatch);
};

#endif
