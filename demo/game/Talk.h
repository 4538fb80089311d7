// Talk.h - how the demo's characters speak.
//
// The library fetches the lines of a conversation and hands each to a
// narrator, who keeps it on screen for as long as it takes to read (or for
// the length of its recorded speech) and ends it early on a click or Enter;
// Escape cuts the whole conversation short. The library's narrator draws
// nothing: ours, the Balloon, draws the line in a speech balloon above its
// speaker, through the reference kernel's text service (a memory bitmap with
// the text drawn into it, shown by a screen item).
//
// A Conversation is the messager that knows our narrators: the talker number
// of each line in messages.txt picks the balloon that says it.
#ifndef DEMO_TALK_H
#define DEMO_TALK_H

#include "DemoApi.h"

#include "glmsg.h"
#include "glsi.h"
#include "gltalker.h"

class AbsGLPlane;
class GLCel;

class DEMO_API Balloon : public GLNarrator {
public:
    // Speaks on pPlane, above pSpeaker (or at the top of the screen when
    // null), in ink on paper (palette colours); `name` is for the log.
    Balloon(AbsGLPlane* pPlane, GLCel* pSpeaker, int ink, int paper, const char* name);
    virtual ~Balloon();

    // Shows the balloon with mpMessage's text.
    virtual void Display();
    // Takes the balloon away, then lets the library end the line.
    virtual void Done(int iValue);

private:
    void Clear();

    AbsGLPlane* mpPlane;
    GLCel* mpSpeaker;
    int mInk;
    int mPaper;
    const char* mName;
    std::uint16_t mMemId;    // the kernel's bitmap, 0 when none
    KernelMemBitmap mBitmap; // names mMemId for the screen item
    GLScreenItem* mpItem;
};

class DEMO_API Conversation : public GLMessager {
public:
    Conversation();
    // The balloon that says the lines of talker number `talker` (1..7).
    void Cast(int talker, Balloon* pBalloon);
    virtual GLNarrator* FindTalker(int iTalker);

private:
    Balloon* mpBalloons[8];
};

#endif
