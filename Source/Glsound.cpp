// Glsound.cpp - sound tracks, their nodes and the tracks' random numbers. See
// include/glsound.h. The sound manager is in Glsoundmg.cpp, the track text
// reader in Glsoundrd.cpp.
#include "glsound.h"

#include "kernel.h"

// ----- random numbers -----

namespace {

// The one generator of the tracks. Never reseeded: a track's choices depend
// only on how many draws were made before, on every platform.
std::uint32_t sRandomState = 1u;

// A draw against a chance in percent. A chance of 100 succeeds without a draw
// (so a sure node does not move the generator); otherwise r mod 100 must be at
// most the chance, which lets a chance of 0 through when r mod 100 is 0.
int DrawChance(int iProbability)
{
    if (iProbability == 100)
        return TRUE;
    return GLSndRandom() % 100 <= iProbability;
}

// A group member is drawn against even when it is sure.
int DrawMemberChance(int iProbability)
{
    return GLSndRandom() % 100 <= iProbability;
}

int SoundType(int iSound)
{
    return kernel->ResourceExists(kResourceAudio, iSound) ? kResourceAudio : kResourceSoundEffect;
}

// Starts the sound of a ring node or a group member.
void StartSound(GLSndNode* pNode)
{
    if (pNode->mLock)
        kernel->LockResource(SoundType(pNode->mSample), pNode->mSample);
    if (pNode->mPan != 50)
        kernel->PanSample(pNode->mSample, pNode->mPan, 0);
    kernel->PlaySample(pNode->mSample, 0, pNode->mVolume, 0, 0);
}

} // namespace

std::uint32_t GLSndRandomNext(std::uint32_t uState)
{
    return uState * 214013u + 2531011u;
}

int GLSndRandom()
{
    sRandomState = GLSndRandomNext(sRandomState);
    return static_cast<int>((sRandomState >> 16) & 0x7FFFu);
}

std::uint32_t GLSndRandomState()
{
    return sRandomState;
}

// ----- nodes -----

GLNode::GLNode(int iNodeType) : mNodeType(iNodeType), mpNext(0), mpPrev(0) {}

GLNode::~GLNode() {}

GLHdrNode::GLHdrNode() : GLNode(HeaderNode) {}

GLHdrNode::~GLHdrNode() {}

GLSndNode::GLSndNode()
    : GLNode(SoundNode), mSample(0), mVolume(127), mMode(1), mPan(50), mProbability(100), mLock(1), mpCaller(0)
{
}

GLSndNode::~GLSndNode() {}

GLWaitNode::GLWaitNode() : GLNode(WaitNode), mMinSeconds(0), mMaxSeconds(0), mMode(1), mProbability(100) {}

GLWaitNode::~GLWaitNode() {}

GLPRSNode::GLPRSNode() : GLNode(PRSNode), mCount(0), mpFirstChoice(0) {}

GLPRSNode::~GLPRSNode() {}

// ----- the track -----

// The script's first state (0) runs inside the script's constructor, before
// the fields below exist; sndTrkCode does nothing in it.
GLSndTrack::GLSndTrack()
    : GLScript(sndTrkCode), mTrackId(-1), mSample(0), mStopped(0), mPaused(0), mpHeader(GL_NEW GLHdrNode), mpCurrent(0),
      mpNextTrack(0), mSampleLock(FALSE)
{
    mpHeader->mpNext = mpHeader;
    mpHeader->mpPrev = mpHeader;
    mpCurrent = mpHeader;
}

GLSndTrack::~GLSndTrack()
{
    GLNode* pNode = mpHeader->mpNext;
    while (pNode != mpHeader) {
        GLNode* pNext = pNode->mpNext;
        if (pNode->mNodeType == GLNode::PRSNode) {
            GLNode* pMember = static_cast<GLPRSNode*>(pNode)->mpFirstChoice;
            while (pMember) {
                GLNode* pNextMember = pMember->mpNext;
                delete pMember;
                pMember = pNextMember;
            }
        }
        delete pNode;
        pNode = pNext;
    }
    delete mpHeader;
}

void GLSndTrack::AppendNode(GLNode* pNode)
{
    GLNode* pLast = mpHeader->mpPrev;
    pNode->mpNext = mpHeader;
    pLast->mpNext = pNode;
    mpHeader->mpPrev = pNode;
}

void GLSndTrack::RemoveNode(GLNode* pPrev, GLNode* pNode)
{
    pPrev->mpNext = pNode->mpNext;
    if (mpHeader->mpPrev == pNode)
        mpHeader->mpPrev = pPrev;
    if (mpCurrent == pNode)
        mpCurrent = pPrev;
    delete pNode;
}

void GLSndTrack::AddSndNode(SndByte* pSndByte)
{
    AddSndNode(pSndByte->sample, pSndByte->volume, pSndByte->mode, pSndByte->pan, pSndByte->probability);
}

void GLSndTrack::AddSndNode(int iSample, int iVolume, int iMode, int iPan, int iProbability)
{
    GLSndNode* pNode = GL_NEW GLSndNode;
    pNode->mSample = iSample;
    pNode->mVolume = iVolume;
    pNode->mMode = iMode;
    pNode->mPan = iPan;
    pNode->mProbability = iProbability;
    AppendNode(pNode);
}

void GLSndTrack::AddWaitNode(int iMinSeconds, int iMaxSeconds, int iMode, int iProbability)
{
    GLWaitNode* pNode = GL_NEW GLWaitNode;
    pNode->mMinSeconds = iMinSeconds;
    pNode->mMaxSeconds = iMaxSeconds;
    pNode->mMode = iMode;
    pNode->mProbability = iProbability;
    AppendNode(pNode);
}

void GLSndTrack::AddPRSNode(SndByte* pSndByte)
{
    GLPRSNode* pGroup;
    if (mpHeader->mpPrev->mNodeType == GLNode::PRSNode) {
        pGroup = static_cast<GLPRSNode*>(mpHeader->mpPrev);
    } else {
        pGroup = GL_NEW GLPRSNode;
        AppendNode(pGroup);
    }
    GLSndNode* pMember = GL_NEW GLSndNode;
    pMember->mSample = pSndByte->sample;
    pMember->mVolume = pSndByte->volume;
    pMember->mMode = pSndByte->mode;
    pMember->mPan = pSndByte->pan;
    pMember->mProbability = pSndByte->probability;
    pMember->mpNext = pGroup->mpFirstChoice;
    if (pGroup->mpFirstChoice)
        pGroup->mpFirstChoice->mpPrev = pMember;
    pGroup->mpFirstChoice = pMember;
    pGroup->mCount++;
}

void GLSndTrack::AddPRSNode(int iSample, int iProbability, int iVolume, int iPan)
{
    SndByte sndByte = {iSample, iVolume, 1, iPan, iProbability};
    AddPRSNode(&sndByte);
}

void GLSndTrack::DeleteSndNode(int iSample)
{
    GLNode* pPrev = mpHeader;
    for (GLNode* pNode = mpHeader->mpNext; pNode != mpHeader; pPrev = pNode, pNode = pNode->mpNext) {
        if (pNode->mNodeType == GLNode::SoundNode && static_cast<GLSndNode*>(pNode)->mSample == iSample) {
            RemoveNode(pPrev, pNode);
            return;
        }
    }
}

void GLSndTrack::DeleteWaitNode(int iMinSeconds)
{
    GLNode* pPrev = mpHeader;
    for (GLNode* pNode = mpHeader->mpNext; pNode != mpHeader; pPrev = pNode, pNode = pNode->mpNext) {
        if (pNode->mNodeType == GLNode::WaitNode && static_cast<GLWaitNode*>(pNode)->mMinSeconds == iMinSeconds) {
            RemoveNode(pPrev, pNode);
            return;
        }
    }
}

// Play and Resume cue the track, which adds 1 to its state: a resting track
// (state 0, no wait) steps at once, and one still on its way to rest (state
// -1, the wait to state 0 running) goes to state 0 now and steps when that
// wait ends, on the next frame. Cuing a track that is running otherwise would
// start a second wait, a failed check, so Play drops the running wait and
// starts over from state 0, and Resume leaves such a track to go on by itself.
void GLSndTrack::Play()
{
    mPaused = 0;
    mStopped = 0;
    mpCurrent = mpHeader;
    if (mType != UnsetTimer && mState != -1) {
        Init(UnsetTimer, 0);
        mState = 0;
    }
    Cue();
}

int GLSndTrack::Pause()
{
    mPaused = 1;
    return TRUE;
}

int GLSndTrack::Resume()
{
    mStopped = 0;
    mPaused = 0;
    if (mType != UnsetTimer && mState != -1)
        return TRUE;
    Cue();
    return TRUE;
}

void GLSndTrack::Stop()
{
    mStopped = 1;
    kernel->StopSample(mSample, 0);
    if (mSampleLock)
        kernel->UnlockResource(SoundType(mSample), mSample);
}

int GLSndTrack::Fade()
{
    kernel->FadeSample(mSample, 0, 5, 60, 1, 0);
    mStopped = 1;
    return TRUE;
}

// ----- the code function -----

// State 1: steps to the node after the one reached last and starts it.
void GLSndTrack::StepNode()
{
    GLNode* pPrev = mpCurrent;
    GLNode* pNode = pPrev->mpNext;
    if (pNode == mpHeader) {
        pPrev = mpHeader;
        pNode = mpHeader->mpNext;
    }

    int fWaiting = FALSE;
    int iMode = 1;
    switch (pNode->mNodeType) {
    case GLNode::HeaderNode:
        // An empty ring (or one whose nodes are used up). The sample started
        // last keeps its name but is no longer this step's: it was unlocked
        // when its test found it ended, and must not be unlocked again at
        // every later test.
        mSampleLock = FALSE;
        break;
    case GLNode::SoundNode: {
        GLSndNode* pSound = static_cast<GLSndNode*>(pNode);
        mSample = pSound->mSample;
        mSampleLock = pSound->mLock;
        if (DrawChance(pSound->mProbability))
            StartSound(pSound);
        iMode = pSound->mMode;
        break;
    }
    case GLNode::WaitNode: {
        GLWaitNode* pWait = static_cast<GLWaitNode*>(pNode);
        if (DrawChance(pWait->mProbability)) {
            mSample = 0;
            mSampleLock = FALSE;
            // Unsigned, so that a large minimum plus the random part cannot
            // overflow; the sum of two non-negative ints always fits.
            std::uint32_t uSeconds = static_cast<std::uint32_t>(pWait->mMinSeconds);
            if (pWait->mMaxSeconds != 0)
                uSeconds += static_cast<std::uint32_t>(GLSndRandom() % pWait->mMaxSeconds);
            SetSeconds(uSeconds);
            fWaiting = TRUE;
        }
        iMode = pWait->mMode;
        break;
    }
    case GLNode::PRSNode: {
        GLPRSNode* pGroup = static_cast<GLPRSNode*>(pNode);
        if (pGroup->mCount > 0) {
            int iChoice = GLSndRandom() % pGroup->mCount;
            GLSndNode* pMember = pGroup->mpFirstChoice;
            for (int i = 0; i < iChoice && pMember->mpNext; i++)
                pMember = static_cast<GLSndNode*>(pMember->mpNext);
            mSample = pMember->mSample;
            mSampleLock = pMember->mLock;
            if (DrawMemberChance(pMember->mProbability))
                StartSound(pMember);
        }
        break;
    }
    default:
        break;
    }

    int iType = pNode->mNodeType;
    if ((iType == GLNode::SoundNode || iType == GLNode::WaitNode) && iMode == 0) {
        RemoveNode(pPrev, pNode);
        pNode = pPrev;
    }
    mpCurrent = pNode;

    if (fWaiting)
        return;
    // A wait that lost its draw is passed over: state 0 and one frame lead
    // straight to the next step. Everything else (a sound, a group, the
    // header of an empty ring, a use-once sound just removed) is tested on
    // the next frame.
    if (iType == GLNode::WaitNode)
        mState = 0;
    SetCycles(1);
}

// State 2: tests the sample started last.
void GLSndTrack::TestSample()
{
    if (!mStopped && !mPaused) {
        int iVolume = 0;
        mState = kernel->GetSampleVolume(mSample, &iVolume, 0) ? 1 : 0;
    } else {
        mState = -1;
    }
    // The unlock follows the node's wish, not whether its draw started the
    // sample: a sample that lost its draw is unlocked without having been
    // locked, which the kernel tolerates.
    if (mState != 1 && mSample != 0 && mSampleLock)
        kernel->UnlockResource(SoundType(mSample), mSample);
    // Next frame: 1 + 1 tests again, 0 + 1 steps on, -1 + 1 rests.
    SetCycles(1);
}

// State 0 is entered inside the script's constructor, before the object is a
// track: the script is cast only in the states that work on it.
void sndTrkCode(GLScript* pScript, int iState)
{
    switch (iState) {
    case 0:
        break;
    case 1:
        static_cast<GLSndTrack*>(pScript)->StepNode();
        break;
    case 2:
        static_cast<GLSndTrack*>(pScript)->TestSample();
        break;
    default:
        GL_ASSERT(0);
        break;
    }
}
