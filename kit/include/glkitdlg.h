// glkitdlg.h - conversations with choices.
//
// A dialogue is a text file, dialogs/<number>.txt in the game folder (or in
// lang/<code>/dialogs/ for a language that has its own). It is made of nodes;
// each node says lines through the game's messager and narrators, then either
// offers the player a choice, goes on to another node or ends:
//
//   # a comment; blank lines are skipped
//   layout 600 15            the width every option must fit at that font size
//   node start               a node; the first node is where the dialogue starts
//     set asked 1            on entering the node: set a named value,
//     give bell              put an item in the player's hands,
//     take bell              or take it away
//     say 100 1 2 0          the conversation with these four keys (all of it),
//     say 100 1 2 0 3        or the one line with this sequence number
//     option : Hello.        an option, its text after the lone ':'
//     option once if asked=0 if has bell set rung 1 goto gate : Ring it?
//     goto gate              after the lines, for a node without options
//     end [how]              or end the dialogue, saying how
//
// An option may carry, before its ':', in any order:
//   once                     said once, then never offered again;
//   if <name><op><number>    offered only while the value compares so
//                            (op = != < > <= >=, no spaces);
//   if has <item>, if lacks <item>   offered only while the item is carried or not;
//   set <name> <number>, give <item>, take <item>   effects when chosen;
//   goto <node> or end [how] where to go; without either the same node
//                            offers its choice again (without its lines).
//
// The options offered stand one under another on a plane of their own; a
// click on one (as the button comes up), or the key of its number (1-9),
// chooses it; the one under the pointer is drawn in the highlight ink. While it offers a
// choice the dialogue takes every input event. When it ends, the object that
// started it is cued with the dialogue as cuer, the value 0 (1 when the player
// cut it short with Escape at a choice) and GetEnding() telling how.
#ifndef QUINDLE_GLKITDLG_H
#define QUINDLE_GLKITDLG_H

#include "glkit.h"
#include "globject.h"

#include <string>
#include <vector>

class GLKitInventory;
class GLMessager;

// A condition of an option on a named value, or on an item being carried.
struct GLKIT_API GLKitCondition {
    enum Op { eq, ne, lt, gt, le, ge, has, lacks };
    std::string mName;
    Op mOp = eq;
    int mValue = 0;
    int Holds(const GLKitState& state) const;
};

// An effect: set a named value, give or take an item.
struct GLKIT_API GLKitEffect {
    enum Kind { set, give, take };
    Kind mKind = set;
    std::string mName;
    int mValue = 0;
};

// Where a node or option leads: nowhere (stay), another node, or the end.
struct GLKIT_API GLKitLead {
    std::string mGoto; // node name, empty for none
    int fEnd = FALSE;
    std::string mHow;  // the word after "end"
    int mLine = 0;
};

struct GLKIT_API GLKitOption {
    int mLine = 0;
    std::string mText;
    int fOnce = FALSE;
    std::vector<GLKitCondition> mConditions;
    std::vector<GLKitEffect> mEffects;
    GLKitLead mLead;
};

struct GLKIT_API GLKitSay {
    int mLine = 0;
    int mKeys[5] = {0, 0, 0, 0, 0}; // four lookup keys, then the sequence (0: the whole run)
};

struct GLKIT_API GLKitNode {
    std::string mName;
    int mLine = 0;
    std::vector<GLKitEffect> mEffects;
    std::vector<GLKitSay> mSays;
    std::vector<GLKitOption> mOptions;
    GLKitLead mLead;
};

// A dialogue file, read. Faults are reported with the file and line; a
// dialogue with faults is still what could be read of it.
class GLKIT_API GLKitScript {
public:
    // FALSE when the file could not be read or had an error.
    int Read(const std::string& path, GLKitReport report = GLKitNotify, void* context = 0);
    // The node's index, or -1.
    int Find(const std::string& name) const;

    std::string mPath;
    std::vector<GLKitNode> mNodes;
    int mWidth = 600;
    int mSize = 15;
};

class GLKIT_API GLKitDialog : public GLObject {
public:
    // Says its lines through pMessager (the game's, with its narrators) and
    // shows its options with pOps on pPlane (the game places it) in the style
    // given; reads and changes pState. An inventory, when given, is told of
    // items given and taken. None is owned.
    GLKitDialog(GLMessager* pMessager, GLKitTextOps* pOps, AbsGLPlane* pPlane, const GLKitStyle& style,
                GLKitState* pState, GLKitInventory* pInventory);
    virtual ~GLKitDialog();
    GLKitDialog(const GLKitDialog&) = delete;
    GLKitDialog& operator=(const GLKitDialog&) = delete;

    // Starts dialogs/<number>.txt of the folder (in its language when it has
    // one) and cues pCaller when it ends. FALSE, cueing nobody, when the file
    // cannot be read or has no node.
    int Start(const GLKitFolder& folder, int iNumber, GLObject* pCaller);
    // Starts a dialogue already read (kept by the dialogue until it ends).
    int Start(const GLKitScript& script, const std::string& name, GLObject* pCaller);

    // A line said: the next line, or the choice.
    virtual void Cue(GLCue* pCue);
    // While offering a choice: takes every event; a click on an option or
    // its number chooses it, Escape ends the dialogue cut short.
    virtual int HandleEvent(GLEvent* pEvent);

    // Chooses the offered option at this index (0 the first shown).
    void Choose(int iShown);
    int IsRunning() const { return mRunning; }
    int IsChoosing() const { return mChoosing; }
    // The texts of the options offered now.
    std::vector<std::string> Offered() const;
    const std::string& GetEnding() const { return mEnding; }
    const std::string& GetNode() const;

private:
    void Enter(int iNode);
    void SayNext();
    void Offer();
    void Withdraw();
    void Follow(const GLKitLead& lead);
    void End(int iValue, const std::string& how);
    void Apply(const GLKitEffect& effect);
    std::string SaidKey(int iOption) const;

    GLMessager* mpMessager;
    GLKitTextOps* mpOps;
    AbsGLPlane* mpPlane;
    GLKitStyle mStyle;
    GLKitState* mpState;
    GLKitInventory* mpInventory;
    GLObject* mpCaller = 0;
    GLKitScript mScript;
    std::string mName;
    int mRunning = FALSE;
    int mChoosing = FALSE;
    int mNode = -1;
    std::size_t mNextSay = 0;
    std::vector<int> mShown;            // option indices of the node, as offered
    std::vector<GLKitText*> mLines;     // owned: one per option offered
    int mHovered = -1;
    int mMaxWidth = 0;                  // the options wrap here: the layout's width, or less on a narrow plane
    std::string mEnding;
};

#endif
