// Sound.h - the demo's synthesiser: every sound is made from sines and noise.
#ifndef DEMO_SOUND_H
#define DEMO_SOUND_H

#include <string>
#include <vector>

// Mono samples in -1..1 at kRate samples a second.
constexpr int kRate = 22050;
using Samples = std::vector<float>;

// Writes 16-bit mono PCM.
bool WriteWav(const std::string& path, const Samples& samples);

Samples Wind(double seconds);
Samples Birdsong(double seconds, int voice);
Samples BellToll(double seconds);
Samples Chirp();
Samples Creak(double seconds);
Samples Click();
// A murmur with the rise and fall of a spoken sentence.
Samples Voice(double seconds);

#endif
