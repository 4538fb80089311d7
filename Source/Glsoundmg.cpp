// Glsoundmg.cpp - the sound manager. See include/glsound.h. The text form of
// a track is read in Glsoundrd.cpp.
#include "gldll.h"
#include "glgame.h"
#include "glsound.h"

#include "kernel.h"

namespace {

const int kPlayWatch = 4;
const int kFadeWatch = 5;

int SoundType(int iSound)
{
    return kernel->ResourceExists(kResourceAudio, iSound) ? kResourceAudio : kResourceSoundEffect;
}

} // namespace

GLSndManager::GLSndManager() : mLastTrackId(0), mpFirstTrack(0), mpFirstWatch(0)
{
    theGame->mpObjects->AddToFront(this);
}

GLSndManager::~GLSndManager()
{
    while (mpFirstTrack) {
        GLSndTrack* pTrack = mpFirstTrack;
        mpFirstTrack = pTrack->mpNextTrack;
        pTrack->Stop();
        delete pTrack;
    }
    while (mpFirstWatch) {
        GLSndNode* pWatch = mpFirstWatch;
        mpFirstWatch = static_cast<GLSndNode*>(pWatch->mpNext);
        delete pWatch;
    }
    theGame->mpObjects->Remove(this);
}

// ----- watches -----

void GLSndManager::AddWatch(GLSndNode* pWatch)
{
    pWatch->mpPrev = 0;
    pWatch->mpNext = mpFirstWatch;
    if (mpFirstWatch)
        mpFirstWatch->mpPrev = pWatch;
    mpFirstWatch = pWatch;
}

GLSndNode* GLSndManager::RemoveWatch(GLSndNode* pWatch)
{
    GLSndNode* pNext = static_cast<GLSndNode*>(pWatch->mpNext);
    if (pWatch->mpPrev)
        pWatch->mpPrev->mpNext = pNext;
    else
        mpFirstWatch = pNext;
    if (pNext)
        pNext->mpPrev = pWatch->mpPrev;
    delete pWatch;
    return pNext;
}

void GLSndManager::DoIt()
{
    GLSndNode* pWatch = mpFirstWatch;
    while (pWatch) {
        int iVolume = 0;
        if (pWatch->mMode == kPlayWatch) {
            if (kernel->GetSampleVolume(pWatch->mSample, &iVolume, 0)) {
                pWatch = static_cast<GLSndNode*>(pWatch->mpNext);
                continue;
            }
            if (pWatch->mpCaller)
                GL_NEW GLCue(pWatch->mpCaller, this, 0, 0);
            if (pWatch->mLock)
                Unlock(pWatch->mSample);
            pWatch = RemoveWatch(pWatch);
        } else {
            // A fade is over when the volume written equals the target; the
            // answer (whether the sample still plays) does not matter. A
            // silent sample writes nothing and leaves 0, so a fade to
            // silence of a sample that has ended is over too.
            kernel->GetSampleVolume(pWatch->mSample, &iVolume, 0);
            if (iVolume != pWatch->mVolume) {
                pWatch = static_cast<GLSndNode*>(pWatch->mpNext);
                continue;
            }
            if (pWatch->mpCaller)
                GL_NEW GLCue(pWatch->mpCaller, this, 0, 0);
            pWatch = RemoveWatch(pWatch);
        }
    }
}

// ----- forwarders -----

int GLSndManager::NumActiveSamples()
{
    return kernel->GetActiveSampleCount();
}

int GLSndManager::IsAudioInstalled()
{
    return kernel->IsAudioInstalled();
}

int GLSndManager::Preload(int iSample)
{
    return kernel->PreloadSample(iSample);
}

int GLSndManager::GetGlobalDuration(int* piValue)
{
    return kernel->GetGlobalDuration(piValue);
}

int GLSndManager::GetGlobalVolume()
{
    return kernel->GetGlobalVolume();
}

void GLSndManager::SetGlobalVolume(int iVolume)
{
    kernel->SetGlobalVolume(iVolume);
}

int GLSndManager::GetRate()
{
    return kernel->GetSampleRate();
}

void GLSndManager::SetRate(int iRate)
{
    if (iRate == 0)
        kernel->DefaultSampleRate();
    else
        kernel->SetSampleRate(iRate);
}

int GLSndManager::GetBits()
{
    return kernel->GetSampleBits();
}

// The kernel has no default-bits operation; 0 restores the default rate, as
// it always has.
void GLSndManager::SetBits(int iBits)
{
    if (iBits == 0)
        kernel->DefaultSampleRate();
    else
        kernel->SetSampleBits(iBits);
}

int GLSndManager::GetChannels()
{
    return kernel->GetChannelCount();
}

void GLSndManager::SetChannels(int iChannels)
{
    if (iChannels == 0)
        kernel->DefaultChannelCount();
    else
        kernel->SetChannelCount(iChannels);
}

int GLSndManager::GetAutoVolAdjust()
{
    return kernel->GetAutoVolAdjust();
}

void GLSndManager::SetAutoVolAdjust(int iValue)
{
    kernel->SetAutoVolAdjust(iValue);
}

int GLSndManager::GetDACCritical()
{
    return kernel->GetDACCritical();
}

void GLSndManager::SetDACCritical(int iValue)
{
    kernel->SetDACCritical(iValue);
}

int GLSndManager::CheckNoise()
{
    return kernel->CheckNoise();
}

void GLSndManager::GetSampleDuration(int iSample, int* piDuration, int iTag)
{
    kernel->GetSampleDuration(iSample, piDuration, iTag);
}

int GLSndManager::GetSampleVolume(int iSample, int* piVolume, int iTag)
{
    return kernel->GetSampleVolume(iSample, piVolume, iTag);
}

void GLSndManager::SetSampleVolume(int iSample, int iVolume, int iValue)
{
    kernel->SetSampleVolume(iSample, iVolume, iValue);
}

int GLSndManager::Pause(int iSample, int iQualifier)
{
    if (iSample == kAllSamples)
        return kernel->PauseAllSamples();
    return kernel->PauseSample(iSample, iQualifier);
}

int GLSndManager::Resume(int iSample, int iQualifier)
{
    if (iSample == kAllSamples)
        return kernel->ResumeAllSamples();
    return kernel->ResumeSample(iSample, iQualifier);
}

void GLSndManager::Distort(int iSample, int iValue1, int iValue2)
{
    if (iSample == kAllSamples)
        kernel->DistortAllSamples(iValue1);
    else
        kernel->DistortSample(iSample, iValue1, iValue2);
}

void GLSndManager::StopPan(int iSample, int iValue)
{
    kernel->StopPanSample(iSample, iValue);
}

// ----- resources -----

void GLSndManager::Lock(int iSound)
{
    kernel->LockResource(SoundType(iSound), iSound);
}

void GLSndManager::Unlock(int iSound)
{
    kernel->UnlockResource(SoundType(iSound), iSound);
}

void GLSndManager::Load(int iSound)
{
    kernel->LoadResource(SoundType(iSound), &iSound, 1);
}

void GLSndManager::Unload(int) {}

// ----- playing with watches -----

void GLSndManager::Play(int iSample, int iQualifier, int iVolume, int fAlternate, GLObject* pCaller, int iTag)
{
    int iPlayingVolume = 0;
    if (kernel->GetSampleVolume(iSample, &iPlayingVolume, iTag))
        return; // already playing: its own watch, if any, goes on
    if (fAlternate)
        kernel->PlaySampleAlternate(iSample, iQualifier, iVolume, iTag);
    else
        kernel->PlaySample(iSample, iQualifier, iVolume, iTag, 0);
    GLSndNode* pWatch = GL_NEW GLSndNode;
    pWatch->mSample = iSample;
    pWatch->mVolume = iVolume;
    pWatch->mMode = kPlayWatch;
    pWatch->mpCaller = pCaller;
    AddWatch(pWatch);
}

int GLSndManager::Fade(int iSample, int iTarget, int iValue1, int iValue2, int iValue3, GLObject* pCaller, int iTag)
{
    int iAnswer = kernel->FadeSample(iSample, iTarget, iValue1, iValue2, iValue3, iTag);
    if (pCaller) {
        GLSndNode* pWatch = GL_NEW GLSndNode;
        pWatch->mSample = iSample;
        pWatch->mVolume = iTarget;
        pWatch->mMode = kFadeWatch;
        pWatch->mpCaller = pCaller;
        AddWatch(pWatch);
    }
    return iAnswer;
}

// The watch records stay: DoIt forgets them once it sees the sample silent.
void GLSndManager::Stop(int iSample, int iQualifier)
{
    if (iSample == kAllSamples) {
        kernel->StopAllSamples();
        return;
    }
    for (GLSndNode* pWatch = mpFirstWatch; pWatch; pWatch = static_cast<GLSndNode*>(pWatch->mpNext)) {
        if (pWatch->mSample == iSample && pWatch->mpCaller) {
            pWatch->mpCaller = 0;
            break;
        }
    }
    kernel->StopSample(iSample, iQualifier);
}

void GLSndManager::Pan(int iSample, int iPan, int iValue)
{
    int iVolume = 0;
    if (kernel->GetSampleVolume(iSample, &iVolume, 0)) {
        kernel->PanSample(iSample, iPan, iValue);
    } else {
        kernel->PanSample(iSample, iPan, iValue);
        kernel->PlaySample(iSample, 0, 127, 0, 0);
    }
}

// ----- tracks -----

GLSndTrack* GLSndManager::CreateSndTrack()
{
    GLSndTrack* pTrack = GL_NEW GLSndTrack;
    AttachSndTrack(pTrack);
    return pTrack;
}

int GLSndManager::AttachSndTrack(GLSndTrack* pTrack)
{
    mLastTrackId++;
    pTrack->mTrackId = mLastTrackId;
    pTrack->mpNextTrack = mpFirstTrack;
    mpFirstTrack = pTrack;
    return mLastTrackId;
}

GLSndTrack* GLSndManager::GetSndTrack(int id)
{
    for (GLSndTrack* pTrack = mpFirstTrack; pTrack; pTrack = pTrack->mpNextTrack) {
        if (pTrack->mTrackId == id)
            return pTrack;
    }
    return 0;
}

int GLSndManager::DeleteSndTrack(int id)
{
    GLSndTrack* pPrev = 0;
    for (GLSndTrack* pTrack = mpFirstTrack; pTrack; pPrev = pTrack, pTrack = pTrack->mpNextTrack) {
        if (pTrack->mTrackId != id)
            continue;
        if (pPrev)
            pPrev->mpNextTrack = pTrack->mpNextTrack;
        else
            mpFirstTrack = pTrack->mpNextTrack;
        pTrack->Stop();
        delete pTrack;
        return TRUE;
    }
    return FALSE;
}

void GLSndManager::PauseSndTrack(int id)
{
    for (GLSndTrack* pTrack = mpFirstTrack; pTrack; pTrack = pTrack->mpNextTrack) {
        if (id < 1 || pTrack->mTrackId == id)
            pTrack->mPaused = 1;
    }
}

// Only the mark is cleared: a track that has already come to rest stays at
// rest until it is resumed or played itself.
void GLSndManager::ResumeSndTrack(int id)
{
    for (GLSndTrack* pTrack = mpFirstTrack; pTrack; pTrack = pTrack->mpNextTrack) {
        if (id < 1 || pTrack->mTrackId == id)
            pTrack->mPaused = 0;
    }
}
