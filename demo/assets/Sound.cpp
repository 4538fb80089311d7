// Sound.cpp - sounds made from sines, noise and envelopes.
#include "Sound.h"

#include <cmath>
#include <cstdint>
#include <fstream>

namespace {

const double kTwoPi = 6.283185307179586;

// A fixed noise source, so that every build writes the same files.
struct Noise {
    std::uint32_t state = 12345;
    double Next()
    {
        state = state * 1664525u + 1013904223u;
        return (state >> 8) / double(1 << 24) * 2.0 - 1.0;
    }
};

Samples Silence(double seconds)
{
    return Samples(static_cast<std::size_t>(seconds * kRate), 0.0f);
}

void Put32(std::ofstream& out, std::uint32_t v)
{
    for (int i = 0; i < 4; i++)
        out.put(static_cast<char>((v >> (8 * i)) & 0xFF));
}

void Put16(std::ofstream& out, std::uint16_t v)
{
    out.put(static_cast<char>(v & 0xFF));
    out.put(static_cast<char>(v >> 8));
}

} // namespace

bool WriteWav(const std::string& path, const Samples& samples)
{
    std::ofstream out(path, std::ios::binary);
    const std::uint32_t bytes = static_cast<std::uint32_t>(samples.size() * 2);
    out.write("RIFF", 4);
    Put32(out, 36 + bytes);
    out.write("WAVEfmt ", 8);
    Put32(out, 16);
    Put16(out, 1); // PCM
    Put16(out, 1); // mono
    Put32(out, kRate);
    Put32(out, kRate * 2);
    Put16(out, 2);
    Put16(out, 16);
    out.write("data", 4);
    Put32(out, bytes);
    for (float s : samples) {
        const double v = s < -1.0f ? -1.0 : s > 1.0f ? 1.0 : s;
        Put16(out, static_cast<std::uint16_t>(static_cast<std::int16_t>(v * 32000)));
    }
    return static_cast<bool>(out);
}

Samples Wind(double seconds)
{
    Samples s = Silence(seconds);
    Noise noise;
    double low = 0, band = 0;
    for (std::size_t i = 0; i < s.size(); i++) {
        const double t = double(i) / kRate;
        // Noise through a slowly wandering filter, swelling and falling.
        const double cutoff = 0.02 + 0.015 * std::sin(t * 1.7);
        low += cutoff * (noise.Next() - low);
        band += 0.05 * (low - band);
        const double gust = 0.5 + 0.5 * std::sin(t * kTwoPi / seconds - 1.5);
        const double edge = std::fmin(1.0, std::fmin(t, seconds - t) * 4);
        s[i] = static_cast<float>((low - band) * 6 * gust * edge);
    }
    return s;
}

Samples Birdsong(double seconds, int voice)
{
    Samples s = Silence(seconds);
    const double base = voice == 1 ? 2800 : 3600;
    double phase = 0;
    for (std::size_t i = 0; i < s.size(); i++) {
        const double t = double(i) / kRate;
        const double note = std::fmod(t, 0.18); // a trill of short notes
        const double f = base + 900 * std::sin(note * kTwoPi * (voice == 1 ? 8 : 14));
        phase += kTwoPi * f / kRate;
        const double env = note < 0.12 ? std::sin(note / 0.12 * 3.14159) : 0.0;
        s[i] = static_cast<float>(0.35 * env * std::sin(phase));
    }
    return s;
}

Samples BellToll(double seconds)
{
    Samples s = Silence(seconds);
    // A bell's inharmonic partials, the higher ones dying first.
    const double partials[5][3] = {
        {440, 0.5, 1.2}, {880 * 1.19, 0.3, 2.0}, {1320 * 1.05, 0.2, 3.0}, {2200 * 1.1, 0.1, 5.0}, {220, 0.25, 0.8}};
    for (std::size_t i = 0; i < s.size(); i++) {
        const double t = double(i) / kRate;
        double v = 0;
        for (const auto& p : partials)
            v += p[1] * std::exp(-t * p[2]) * std::sin(kTwoPi * p[0] * t);
        s[i] = static_cast<float>(0.5 * v * std::fmin(1.0, t * 400));
    }
    return s;
}

Samples Chirp()
{
    Samples s = Silence(0.25);
    double phase = 0;
    for (std::size_t i = 0; i < s.size(); i++) {
        const double t = double(i) / kRate;
        phase += kTwoPi * (3000 + 6000 * t) / kRate;
        s[i] = static_cast<float>(0.4 * std::sin(t / 0.25 * 3.14159) * std::sin(phase));
    }
    return s;
}

Samples Creak(double seconds)
{
    Samples s = Silence(seconds);
    Noise noise;
    for (std::size_t i = 0; i < s.size(); i++) {
        const double t = double(i) / kRate;
        // A rasping buzz whose pitch drags downward: iron hinges.
        const double f = 180 - 60 * t / seconds + 20 * std::sin(t * 37);
        const double saw = std::fmod(t * f, 1.0) * 2 - 1;
        const double env = std::sin(t / seconds * 3.14159);
        s[i] = static_cast<float>(0.3 * env * (saw + 0.3 * noise.Next()));
    }
    return s;
}

Samples Click()
{
    Samples s = Silence(0.05);
    for (std::size_t i = 0; i < s.size(); i++) {
        const double t = double(i) / kRate;
        s[i] = static_cast<float>(0.6 * std::exp(-t * 120) * std::sin(kTwoPi * 1500 * t));
    }
    return s;
}

Samples Voice(double seconds)
{
    Samples s = Silence(seconds);
    double phase = 0;
    for (std::size_t i = 0; i < s.size(); i++) {
        const double t = double(i) / kRate;
        // A pitch that rises and falls over the sentence, syllables four a second.
        const double pitch = 140 + 40 * std::sin(t / seconds * 3.14159) + 15 * std::sin(t * kTwoPi * 4);
        phase += kTwoPi * pitch / kRate;
        const double syllable = 0.5 + 0.5 * std::sin(t * kTwoPi * 4 - 1.5);
        double v = 0;
        for (int h = 1; h <= 12; h++) { // harmonics shaped by two formants
            const double f = pitch * h;
            const double formant =
                std::exp(-std::pow((f - 700) / 250, 2)) + 0.6 * std::exp(-std::pow((f - 1200) / 300, 2));
            v += (0.2 + formant) / h * std::sin(phase * h);
        }
        s[i] = static_cast<float>(0.5 * syllable * v * std::fmin(1.0, std::fmin(t, seconds - t) * 10));
    }
    return s;
}
