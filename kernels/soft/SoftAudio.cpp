// SoftAudio.cpp - the soft kernel's samples and speech (see SoftAudio.h).
// Every sample keeps the state it would have on a device: it plays for the
// length of its WAV, pauses stop its time, fades move its volume over their time.
#include "SoftAudio.h"

#include "kernel.h"

#include <algorithm>
#include <cstring>

SoftAudio::Sample* SoftAudio::FindSample(int sample)
{
    auto found = mSamples.find(sample);
    if (found == mSamples.end())
        return nullptr;
    UpdateSample(*found->second);
    return found->second.get();
}

// Brings a sample's state up to the clock: its end, the progress of its fade.
void SoftAudio::UpdateSample(Sample& s)
{
    const std::uint32_t now = mHost.Now();
    if (s.fading) {
        const std::uint32_t elapsed = now - s.fadeStart;
        if (elapsed >= s.fadeDuration) {
            s.volume = s.fadeTo;
            s.fading = false;
            if (s.fadeStop)
                s.playing = false;
        } else {
            const std::uint32_t stepped = elapsed - elapsed % static_cast<std::uint32_t>(s.fadeStep);
            s.volume = s.fadeFrom + static_cast<int>(static_cast<long long>(s.fadeTo - s.fadeFrom) * stepped /
                                                     static_cast<long long>(s.fadeDuration));
        }
    }
    if (s.playing) {
        const std::uint32_t until = s.paused ? s.pausedAt : now;
        if (until - s.start - s.pausedTotal >= s.duration) {
            s.playing = false;
            s.paused = false;
            mHost.Trace("sample %d ends", s.number);
        }
    }
}

bool SoftAudio::GetSampleState(int sample, SampleView* out)
{
    Sample* s = FindSample(sample);
    if (!s)
        return false;
    const std::uint32_t until = s->paused ? s->pausedAt : mHost.Now();
    out->playing = s->playing;
    out->paused = s->paused;
    out->volume = s->volume;
    out->pan = s->pan;
    out->elapsedTicks = s->playing ? until - s->start - s->pausedTotal : s->duration;
    out->durationTicks = s->duration;
    out->wav = s->wav;
    return true;
}

void SoftAudio::StartSample(int iSample, int iVolume)
{
    std::string error;
    const int type = mResources.SoundExists(kResourceAudio, iSample) ? kResourceAudio : kResourceSoundEffect;
    const SoftWav* wav = mResources.Sound(type, iSample, &error);
    if (!wav) {
        if (!mResources.SoundExists(kResourceSoundEffect, iSample) && !mResources.SoundExists(kResourceAudio, iSample))
            error = "sample " + std::to_string(iSample) + ": neither " +
                    mResources.PathOf("audio/" + std::to_string(iSample) + ".wav") + " nor " +
                    mResources.PathOf("sfx/" + std::to_string(iSample) + ".wav") + " exists";
        mHost.Report(error);
        return;
    }
    auto& slot = mSamples[iSample];
    if (!slot)
        slot = std::make_unique<Sample>();
    Sample& s = *slot;
    const int pan = s.pan;
    s = Sample();
    s.pan = pan;
    s.number = iSample;
    s.wav = wav;
    s.playing = true;
    s.start = mHost.Now();
    s.duration = wav->DurationTicks();
    s.volume = std::max(0, std::min(127, iVolume));
    s.distort = mDistortAll;
    mHost.Trace("sample %d starts", iSample);
}

int SoftAudio::GetActiveSampleCount()
{
    int count = 0;
    for (auto& entry : mSamples) {
        UpdateSample(*entry.second);
        if (entry.second->playing && !entry.second->paused)
            count++;
    }
    return count;
}

int SoftAudio::IsAudioInstalled()
{
    return 1;
}

int SoftAudio::PreloadSample(int iSample)
{
    std::string error;
    const int type = mResources.SoundExists(kResourceAudio, iSample) ? kResourceAudio : kResourceSoundEffect;
    if (!mResources.SoundExists(type, iSample))
        return 0;
    if (!mResources.Sound(type, iSample, &error)) {
        mHost.Report(error);
        return 0;
    }
    return 1;
}

void SoftAudio::PlaySampleAlternate(int iSample, int /*iQualifier*/, int iVolume, int /*iTag*/)
{
    StartSample(iSample, iVolume);
}

void SoftAudio::PlaySample(int iSample, int /*iQualifier*/, int iVolume, int /*iTag*/, int /*iUnused*/)
{
    StartSample(iSample, iVolume);
}

void SoftAudio::StopAllSamples()
{
    for (auto& entry : mSamples) {
        UpdateSample(*entry.second);
        if (entry.second->playing)
            mHost.Trace("sample %d stops", entry.first);
        entry.second->playing = false;
        entry.second->paused = false;
        entry.second->fading = false;
    }
}

void SoftAudio::StopSample(int iSample, int /*iQualifier*/)
{
    if (iSample == -1) {
        StopAllSamples();
        return;
    }
    if (Sample* s = FindSample(iSample)) {
        if (s->playing)
            mHost.Trace("sample %d stops", iSample);
        s->playing = false;
        s->paused = false;
        s->fading = false;
    }
}

int SoftAudio::PauseAllSamples()
{
    int count = 0;
    for (auto& entry : mSamples)
        count += PauseSample(entry.first, 0);
    return count;
}

int SoftAudio::PauseSample(int iSample, int /*iQualifier*/)
{
    if (iSample == -1)
        return PauseAllSamples();
    Sample* s = FindSample(iSample);
    if (!s || !s->playing || s->paused)
        return 0;
    s->paused = true;
    s->pausedAt = mHost.Now();
    return 1;
}

int SoftAudio::ResumeAllSamples()
{
    int count = 0;
    for (auto& entry : mSamples)
        count += ResumeSample(entry.first, 0);
    return count;
}

int SoftAudio::ResumeSample(int iSample, int /*iQualifier*/)
{
    if (iSample == -1)
        return ResumeAllSamples();
    Sample* s = FindSample(iSample);
    if (!s || !s->playing || !s->paused)
        return 0;
    s->pausedTotal += mHost.Now() - s->pausedAt;
    s->paused = false;
    return 1;
}

int SoftAudio::GetGlobalDuration(int* piValue)
{
    int count = 0;
    std::uint32_t longest = 0;
    for (auto& entry : mSamples) {
        Sample& s = *entry.second;
        UpdateSample(s);
        if (!s.playing)
            continue;
        count++;
        const std::uint32_t until = s.paused ? s.pausedAt : mHost.Now();
        longest = std::max(longest, s.duration - (until - s.start - s.pausedTotal));
    }
    if (piValue)
        *piValue = static_cast<int>(longest);
    return count;
}

void SoftAudio::GetSampleDuration(int iSample, int* piDuration, int /*iTag*/)
{
    if (!piDuration)
        return;
    std::string error;
    const int type = mResources.SoundExists(kResourceAudio, iSample) ? kResourceAudio : kResourceSoundEffect;
    const SoftWav* wav = mResources.SoundExists(type, iSample) ? mResources.Sound(type, iSample, &error) : nullptr;
    if (!wav && !error.empty())
        mHost.Report(error);
    *piDuration = wav ? static_cast<int>(wav->DurationTicks()) : 0;
}

void SoftAudio::SetSampleRate(int iRate)
{
    if (iRate > 0)
        mSampleRate = iRate;
}

void SoftAudio::DefaultSampleRate()
{
    mSampleRate = 22050;
    mSampleBits = 16;
}

int SoftAudio::GetSampleRate()
{
    return mSampleRate;
}

void SoftAudio::SetSampleBits(int iBits)
{
    if (iBits == 8 || iBits == 16)
        mSampleBits = iBits;
}

int SoftAudio::GetSampleBits()
{
    return mSampleBits;
}

void SoftAudio::SetChannelCount(int iChannels)
{
    if (iChannels == 1 || iChannels == 2)
        mChannels = iChannels;
}

void SoftAudio::DefaultChannelCount()
{
    mChannels = 2;
}

int SoftAudio::GetChannelCount()
{
    return mChannels;
}

int SoftAudio::GetAutoVolAdjust()
{
    return mAutoVolAdjust;
}

void SoftAudio::SetAutoVolAdjust(int iValue)
{
    mAutoVolAdjust = iValue;
}

void SoftAudio::DistortAllSamples(int iValue)
{
    mDistortAll = iValue;
    for (auto& entry : mSamples)
        entry.second->distort = iValue;
}

void SoftAudio::DistortSample(int iSample, int iValue1, int /*iValue2*/)
{
    if (Sample* s = FindSample(iSample))
        s->distort = iValue1;
}

int SoftAudio::GetGlobalVolume()
{
    return mGlobalVolume;
}

void SoftAudio::SetGlobalVolume(int iVolume)
{
    mGlobalVolume = std::max(0, std::min(127, iVolume));
}

int SoftAudio::GetSampleVolume(int iSample, int* piVolume, int /*iTag*/)
{
    Sample* s = FindSample(iSample);
    if (!s) {
        if (piVolume)
            *piVolume = 0;
        return 0;
    }
    // A sample that has ended still tells the volume it ended with, so that a
    // fade that stopped it is seen to have reached its target.
    if (piVolume)
        *piVolume = s->volume;
    return s->playing ? 1 : 0;
}

void SoftAudio::SetSampleVolume(int iSample, int iVolume, int /*iValue*/)
{
    if (Sample* s = FindSample(iSample)) {
        s->volume = std::max(0, std::min(127, iVolume));
        s->fading = false;
    }
}

int SoftAudio::FadeSample(int iSample, int iTargetVolume, int iValue1, int iValue2, int iValue3, int /*iTag*/)
{
    Sample* s = FindSample(iSample);
    if (!s || !s->playing)
        return 0;
    s->fadeFrom = s->volume;
    s->fadeTo = std::max(0, std::min(127, iTargetVolume));
    s->fadeStep = iValue1 > 0 ? iValue1 : 1;
    s->fadeDuration = iValue2 > 0 ? static_cast<std::uint32_t>(iValue2) : 0;
    s->fadeStop = iValue3;
    s->fadeStart = mHost.Now();
    s->fading = true;
    UpdateSample(*s);
    return 1;
}

int SoftAudio::CheckNoise()
{
    int count = 0;
    for (auto& entry : mSamples) {
        UpdateSample(*entry.second);
        if (entry.second->playing && !entry.second->paused && entry.second->volume > 0)
            count++;
    }
    return count;
}

void SoftAudio::PanSample(int iSample, int iPan, int /*iValue*/)
{
    auto& slot = mSamples[iSample];
    if (!slot) {
        // Pan may come before the sample starts (the library pans, then plays).
        slot = std::make_unique<Sample>();
        slot->number = iSample;
    }
    slot->pan = std::max(0, std::min(100, iPan));
}

void SoftAudio::StopPanSample(int iSample, int /*iValue*/)
{
    if (Sample* s = FindSample(iSample))
        s->pan = 50;
}

int SoftAudio::GetDACCritical()
{
    return mDACCritical;
}

void SoftAudio::SetDACCritical(int iValue)
{
    mDACCritical = iValue;
}

void SoftAudio::LoadResource(int iType, int* piNumber, int /*iValue*/)
{
    if (!piNumber)
        return;
    std::string error;
    if (!mResources.Sound(iType, *piNumber, &error))
        mHost.Report(error);
}

void SoftAudio::LockResource(int iType, int iNumber)
{
    std::string error;
    if (!mResources.Sound(iType, iNumber, &error)) {
        mHost.Report(error);
        return;
    }
    mLocks[std::make_pair(iType, iNumber)]++;
}

void SoftAudio::UnlockResource(int iType, int iNumber)
{
    auto found = mLocks.find(std::make_pair(iType, iNumber));
    if (found != mLocks.end() && --found->second <= 0)
        mLocks.erase(found);
}

int SoftAudio::ResourceExists(int iType, int iNumber)
{
    return mResources.SoundExists(iType, iNumber) ? 1 : 0;
}

// ----- speech -----

int SoftAudio::PlaySpeech(const int keys[5], const SoftMessage* m)
{
    if (!m || m->speech.empty())
        return 0;
    std::string error;
    const SoftWav* wav = mResources.Wav(m->speech, &error);
    if (!wav) {
        mHost.Report(error);
        return 0;
    }
    StopMessageAudio(keys[0], keys[1], keys[2], keys[3], keys[4]);
    Speech s;
    std::memcpy(s.keys, keys, sizeof s.keys);
    s.start = mHost.Now();
    s.duration = wav->DurationTicks();
    s.wav = wav;
    mSpeech.push_back(s);
    return static_cast<int>(s.duration);
}

void SoftAudio::StopMessageAudio(int iKey1, int iKey2, int iKey3, int iKey4, int iSequence)
{
    const int keys[5] = {iKey1, iKey2, iKey3, iKey4, iSequence};
    for (std::size_t i = 0; i < mSpeech.size(); i++) {
        if (std::memcmp(mSpeech[i].keys, keys, sizeof keys) == 0) {
            mSpeech.erase(mSpeech.begin() + static_cast<std::ptrdiff_t>(i));
            return;
        }
    }
}

int SoftAudio::IsMessageAudioPlaying(int iKey1, int iKey2, int iKey3, int iKey4, int iSequence, int* /*piUnused*/)
{
    const int keys[5] = {iKey1, iKey2, iKey3, iKey4, iSequence};
    for (const auto& s : mSpeech)
        if (std::memcmp(s.keys, keys, sizeof keys) == 0)
            return mHost.Now() - s.start < s.duration ? 1 : 0;
    return 0;
}

std::vector<SoftAudio::AudibleSource> SoftAudio::AudibleSources()
{
    std::vector<AudibleSource> out;
    const std::uint32_t now = mHost.Now();
    for (auto& entry : mSamples) {
        Sample& s = *entry.second;
        UpdateSample(s);
        if (!s.playing || s.paused || !s.wav)
            continue;
        out.push_back(AudibleSource{entry.first, s.wav, now - s.start - s.pausedTotal, s.volume * mGlobalVolume / 127,
                                    s.pan, s.distort});
    }
    for (std::size_t i = 0; i < mSpeech.size(); i++) {
        const Speech& s = mSpeech[i];
        if (now - s.start >= s.duration)
            continue;
        // Speech is told apart by its keys, folded into a negative id.
        long long id = -1;
        for (int k = 0; k < 5; k++)
            id = id * 31 - (s.keys[k] & 0xFFFF);
        out.push_back(AudibleSource{id < 0 ? id : -id - 1, s.wav, now - s.start, mGlobalVolume, 50, 0});
    }
    return out;
}
