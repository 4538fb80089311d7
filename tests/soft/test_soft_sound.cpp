// Samples: real durations, pauses, fades, resources.
#include "SoftTestSupport.h"

using namespace soft_test;

namespace {

class SoftSound : public ::testing::Test {
protected:
    void SetUp() override
    {
        game.WriteWav("audio/10.wav", 22050, 22050);    // one second: 60 ticks
        game.WriteWav("sfx/11.wav", 8000, 1000);        // 1/8 second: 7.5, so 8 ticks
        game.WriteWav("sfx/10.wav", 8000, 8000);        // type 12 beside a type 13
        ASSERT_TRUE(k.SetGameFolder(game.Dir()));
    }
    void Ticks(int n)
    {
        for (int i = 0; i < n; i++)
            k.UpdateScreen(1);
    }
    TempGame game;
    SoftKernel k;
};

TEST_F(SoftSound, ASamplePlaysForTheRealLengthOfItsWav)
{
    EXPECT_TRUE(k.ResourceExists(13, 10));
    EXPECT_TRUE(k.ResourceExists(12, 10));
    EXPECT_FALSE(k.ResourceExists(13, 11));
    EXPECT_TRUE(k.ResourceExists(12, 11));
    EXPECT_FALSE(k.ResourceExists(0, 10));
    int duration = 0;
    k.GetSampleDuration(11, &duration, 0);
    EXPECT_EQ(duration, 8);
    k.GetSampleDuration(10, &duration, 0); // type 13 first
    EXPECT_EQ(duration, 60);

    k.PlaySample(10, 0, 100, 0, 0);
    int volume = -1;
    EXPECT_TRUE(k.GetSampleVolume(10, &volume, 0));
    EXPECT_EQ(volume, 100);
    EXPECT_EQ(k.GetActiveSampleCount(), 1);
    Ticks(59);
    EXPECT_TRUE(k.GetSampleVolume(10, &volume, 0));
    int left = 0;
    EXPECT_EQ(k.GetGlobalDuration(&left), 1);
    EXPECT_EQ(left, 1);
    Ticks(1);
    EXPECT_FALSE(k.GetSampleVolume(10, &volume, 0));
    EXPECT_EQ(k.GetActiveSampleCount(), 0);
    EXPECT_EQ(k.Fault(), "");
}

TEST_F(SoftSound, APauseStopsTheSamplesTime)
{
    k.PlaySampleAlternate(11, 0, 127, 0);
    Ticks(4);
    EXPECT_EQ(k.PauseSample(11, 0), 1);
    EXPECT_EQ(k.PauseSample(11, 0), 0);
    Ticks(100);
    EXPECT_TRUE(k.GetSampleVolume(11, nullptr, 0));
    EXPECT_EQ(k.GetActiveSampleCount(), 0);
    EXPECT_EQ(k.CheckNoise(), 0);
    EXPECT_EQ(k.ResumeAllSamples(), 1);
    EXPECT_EQ(k.CheckNoise(), 1);
    Ticks(3);
    EXPECT_TRUE(k.GetSampleVolume(11, nullptr, 0));
    Ticks(1);
    EXPECT_FALSE(k.GetSampleVolume(11, nullptr, 0));
}

TEST_F(SoftSound, AFadeReachesItsVolumeOverItsTime)
{
    k.PlaySample(10, 0, 120, 0, 0);
    EXPECT_EQ(k.FadeSample(10, 0, 5, 40, 0, 0), 1); // to 0 in 40 ticks, steps of 5
    int volume = 0;
    const int steps[][2] = {{4, 120}, {1, 105}, {15, 60}}; // ticks, then the volume after them
    for (const auto& step : steps) {
        Ticks(step[0]);
        k.GetSampleVolume(10, &volume, 0);
        EXPECT_EQ(volume, step[1]) << "after " << step[0] << " more ticks";
    }
    Ticks(20);
    EXPECT_TRUE(k.GetSampleVolume(10, &volume, 0)); // reached 0, still playing
    EXPECT_EQ(volume, 0);
    EXPECT_EQ(k.CheckNoise(), 0);

    // With the stop flag the sample ends with the fade, and still tells its volume.
    k.PlaySample(11, 0, 90, 0, 0);
    k.FadeSample(11, 30, 1, 2, 1, 0);
    Ticks(2);
    EXPECT_FALSE(k.GetSampleVolume(11, &volume, 0));
    EXPECT_EQ(volume, 30);
    EXPECT_EQ(k.FadeSample(11, 0, 1, 1, 0, 0), 0); // nothing to fade
}

TEST_F(SoftSound, StopsPansAndSettingsKeepTheirState)
{
    k.PanSample(10, 20, 0); // before play: kept for it
    k.PlaySample(10, 0, 127, 0, 0);
    k.PlaySample(11, 0, 127, 0, 0);
    SoftKernel::SampleView view;
    ASSERT_TRUE(k.GetSampleState(10, &view));
    EXPECT_EQ(view.pan, 20);
    k.StopPanSample(10, 0);
    ASSERT_TRUE(k.GetSampleState(10, &view));
    EXPECT_EQ(view.pan, 50);
    k.StopSample(10, 0);
    EXPECT_FALSE(k.GetSampleVolume(10, nullptr, 0));
    EXPECT_EQ(k.GetActiveSampleCount(), 1);
    k.StopAllSamples();
    EXPECT_EQ(k.GetActiveSampleCount(), 0);

    k.SetSampleRate(44100);
    k.SetSampleBits(8);
    EXPECT_EQ(k.GetSampleRate(), 44100);
    EXPECT_EQ(k.GetSampleBits(), 8);
    k.DefaultSampleRate();
    EXPECT_EQ(k.GetSampleRate(), 22050);
    EXPECT_EQ(k.GetSampleBits(), 16);
    k.SetChannelCount(1);
    EXPECT_EQ(k.GetChannelCount(), 1);
    k.DefaultChannelCount();
    EXPECT_EQ(k.GetChannelCount(), 2);
    k.SetGlobalVolume(200);
    EXPECT_EQ(k.GetGlobalVolume(), 127);
    EXPECT_TRUE(k.IsAudioInstalled());
    EXPECT_EQ(k.PreloadSample(10), 1);
    EXPECT_EQ(k.PreloadSample(99), 0);
    int number = 11;
    k.LoadResource(12, &number, 1);
    k.LockResource(12, 11);
    k.UnlockResource(12, 11);
    k.UnlockResource(12, 11); // one unlock too many is harmless
    EXPECT_EQ(k.Fault(), "");
}

TEST_F(SoftSound, AMissingOrBrokenSampleIsAFaultNamingTheFiles)
{
    k.PlaySample(12, 0, 127, 0, 0);
    EXPECT_EQ(k.Fault(), "sample 12: neither " + game.Path("audio/12.wav") + " nor " + game.Path("sfx/12.wav") +
                             " exists");
    EXPECT_FALSE(k.GetSampleVolume(12, nullptr, 0));
    game.Write("sfx/13.wav", std::string("RIFF\x10\0\0\0WAVEfmt \xff\0\0\0", 20));
    SoftKernel k2;
    ASSERT_TRUE(k2.SetGameFolder(game.Dir()));
    k2.PlaySample(13, 0, 127, 0, 0);
    EXPECT_EQ(k2.Fault(), game.Path("sfx/13.wav") + ": chunk 'fmt ' runs past the end of the file");
}

TEST_F(SoftSound, TheMixerHearsWhatPlaysWhereTheClockSaysItIs)
{
    game.Write("messages.txt", "1 2 3 4 1 5 \"Hi\" speech audio/10.wav\n");
    k.SetGlobalVolume(64);
    k.PlaySample(10, 0, 100, 0, 0);
    k.PlaySample(11, 0, 127, 0, 0);
    k.DistortSample(11, 4, 0);
    Ticks(3);
    k.PauseSample(10, 0);
    EXPECT_EQ(k.PlayMessageAudio(1, 2, 3, 4, 1, 0, 127, 0), 60);
    Ticks(2);
    const auto heard = k.AudibleSources();
    ASSERT_EQ(heard.size(), 2u); // the paused sample is silent
    EXPECT_EQ(heard[0].id, 11);
    EXPECT_EQ(heard[0].elapsedTicks, 5u);
    EXPECT_EQ(heard[0].volume, 127 * 64 / 127);
    EXPECT_EQ(heard[0].distort, 4);
    EXPECT_LT(heard[1].id, 0); // speech
    EXPECT_EQ(heard[1].elapsedTicks, 2u);
    EXPECT_EQ(heard[1].wav->rate, 22050);
    Ticks(10);
    EXPECT_EQ(k.AudibleSources().size(), 1u); // sample 11 has ended, the speech goes on
}

TEST(SoftWav, HeadersAreCheckedBeforeAnythingIsRead)
{
    SoftWav wav;
    std::string error;
    EXPECT_FALSE(SoftParseWav("", "w", &wav, &error));
    EXPECT_EQ(error, "w: not a WAV file (no RIFF/WAVE header)");
    std::string noData("RIFF\0\0\0\0WAVEfmt \x10\0\0\0\x01\0\x01\0\x22\x56\0\0\x44\xac\0\0\x02\0\x10\0", 36);
    EXPECT_FALSE(SoftParseWav(noData, "w", &wav, &error));
    EXPECT_EQ(error, "w: no data chunk");
    std::string mp3 = noData;
    mp3[20] = 0x55;
    EXPECT_FALSE(SoftParseWav(mp3, "w", &wav, &error));
    EXPECT_EQ(error.rfind("w: only PCM", 0), 0u);
    std::string ok = noData + std::string("data\x04\0\0\0\x01\0\x02\0", 12);
    ASSERT_TRUE(SoftParseWav(ok, "w", &wav, &error)) << error;
    EXPECT_EQ(wav.frames, 2u);
    EXPECT_EQ(wav.samples[1], 2);
    EXPECT_EQ(wav.DurationTicks(), 1u);
}

} // namespace
