// SoftAudio.h - the soft kernel's digital audio: samples, their fades and
// pans, sound resource locks, and the speech of messages.
//
// The kernel keeps the full state of every sample as if it played: a sample
// plays for the real duration of its WAV (rounded up to whole ticks), a pause
// stops its time, a fade changes its volume linearly to the target over its
// time and, when asked, stops the sample at the end; speech of a message plays
// for the length of its WAV. Headless, nothing is heard; the player's window
// mixes what AudibleSources() reports into its audio device. IsAudioInstalled
// answers 1 either way, because everything the library observes behaves as
// with a device.
//
// FadeSample(sample, target, stepTicks, durationTicks, stopAtEnd, tag): the
// volume moves from where it is to the target in `durationTicks` ticks (at once
// when 0 or less), in steps every `stepTicks` ticks (every tick when 0 or less);
// with stopAtEnd non-zero the sample stops when the fade is over.
// DistortSample / DistortAllSamples set a distortion the window's mixer applies
// (the value n > 0 drops the n lowest bits of each sample). The sample rate,
// bits and channel count, the automatic volume adjustment and the DAC flag are
// kept and answered back; the mixer opens its device at the rate in force
// when the window starts.
// GetGlobalDuration writes the ticks left of the longest sample still playing
// and returns how many samples play. CheckNoise answers how many playing,
// unpaused samples have a volume above 0. ResourceExists knows the sound types
// kResourceSoundEffect and kResourceAudio only and answers 0 for any other.
//
// The operations are the kernel interface's audio operations under the same
// names; SoftKernel hands them here unchanged.
#ifndef QUINDLE_SOFT_AUDIO_H
#define QUINDLE_SOFT_AUDIO_H

#include "SoftHost.h"
#include "SoftResources.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

class SoftAudio {
public:
    SoftAudio(SoftServiceHost& host, SoftResources& resources) : mHost(host), mResources(resources) {}
    SoftAudio(const SoftAudio&) = delete;
    SoftAudio& operator=(const SoftAudio&) = delete;

    // The state of a sample as the kernel keeps it (tests, the mixer).
    struct SampleView {
        bool playing;
        bool paused;
        int volume;
        int pan;
        std::uint32_t elapsedTicks;
        std::uint32_t durationTicks;
        const SoftWav* wav;
    };
    bool GetSampleState(int sample, SampleView* out);
    // What can be heard now: every playing, unpaused sample and speech, for a
    // mixer. `id` tells sources apart (samples by number, speech below 0);
    // `elapsedTicks` is where in the WAV the kernel's clock says it is.
    struct AudibleSource {
        long long id;
        const SoftWav* wav;
        std::uint32_t elapsedTicks;
        int volume;  // 0..127, the global volume applied
        int pan;     // 0..100
        int distort; // 0 none; n > 0 drops the n lowest bits of every sample (at most 15)
    };
    std::vector<AudibleSource> AudibleSources();

    // Starts the speech of the message with these five keys (the kernel has
    // looked the message up); returns its length in ticks, 0 without speech.
    int PlaySpeech(const int keys[5], const SoftMessage* message);

    int GetActiveSampleCount();
    int IsAudioInstalled();
    int PreloadSample(int iSample);
    void PlaySampleAlternate(int iSample, int iQualifier, int iVolume, int iTag);
    void PlaySample(int iSample, int iQualifier, int iVolume, int iTag, int iUnused);
    void StopAllSamples();
    void StopMessageAudio(int iKey1, int iKey2, int iKey3, int iKey4, int iSequence);
    void StopSample(int iSample, int iQualifier);
    int PauseAllSamples();
    int PauseSample(int iSample, int iQualifier);
    int ResumeAllSamples();
    int ResumeSample(int iSample, int iQualifier);
    int GetGlobalDuration(int* piValue);
    void GetSampleDuration(int iSample, int* piDuration, int iTag);
    void SetSampleRate(int iRate);
    void DefaultSampleRate();
    int GetSampleRate();
    void SetSampleBits(int iBits);
    int GetSampleBits();
    void SetChannelCount(int iChannels);
    void DefaultChannelCount();
    int GetChannelCount();
    int GetAutoVolAdjust();
    void SetAutoVolAdjust(int iValue);
    void DistortAllSamples(int iValue);
    void DistortSample(int iSample, int iValue1, int iValue2);
    int GetGlobalVolume();
    int IsMessageAudioPlaying(int iKey1, int iKey2, int iKey3, int iKey4, int iSequence, int* piUnused);
    int GetSampleVolume(int iSample, int* piVolume, int iTag);
    void SetGlobalVolume(int iVolume);
    void SetSampleVolume(int iSample, int iVolume, int iValue);
    int FadeSample(int iSample, int iTargetVolume, int iValue1, int iValue2, int iValue3, int iTag);
    int CheckNoise();
    void PanSample(int iSample, int iPan, int iValue);
    void StopPanSample(int iSample, int iValue);
    int GetDACCritical();
    void SetDACCritical(int iValue);
    void LoadResource(int iType, int* piNumber, int iValue);
    void LockResource(int iType, int iNumber);
    void UnlockResource(int iType, int iNumber);
    int ResourceExists(int iType, int iNumber);

private:
    struct Sample {
        int number = 0;
        const SoftWav* wav = nullptr;
        bool playing = false;
        bool paused = false;
        std::uint32_t start = 0; // tick it started
        std::uint32_t pausedAt = 0;
        std::uint32_t pausedTotal = 0;
        std::uint32_t duration = 0;
        int volume = 127;
        int pan = 50;
        int distort = 0;
        bool fading = false;
        int fadeFrom = 0, fadeTo = 0, fadeStep = 1, fadeStop = 0;
        std::uint32_t fadeStart = 0, fadeDuration = 0;
    };
    struct Speech {
        int keys[5];
        std::uint32_t start;
        std::uint32_t duration;
        const SoftWav* wav;
    };

    Sample* FindSample(int sample);
    void UpdateSample(Sample& s);
    void StartSample(int iSample, int iVolume);

    SoftServiceHost& mHost;
    SoftResources& mResources;
    std::map<int, std::unique_ptr<Sample>> mSamples;
    int mGlobalVolume = 127;
    int mSampleRate = 22050;
    int mSampleBits = 16;
    int mChannels = 2;
    int mAutoVolAdjust = 0;
    int mDistortAll = 0;
    int mDACCritical = 0;
    std::map<std::pair<int, int>, int> mLocks;
    std::vector<Speech> mSpeech;
};

#endif
