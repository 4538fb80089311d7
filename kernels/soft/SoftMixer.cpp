// SoftMixer.cpp - see SoftMixer.h.
#include "SoftMixer.h"

#include <algorithm>
#include <cmath>

void SoftMixSources(const std::vector<SoftAudio::AudibleSource>& sources, int rate, int frames,
                    std::map<long long, double>* cursors, std::vector<std::int16_t>* out)
{
    std::vector<int> mix(static_cast<std::size_t>(frames) * 2, 0);
    std::map<long long, double> next;
    for (const auto& s : sources) {
        const SoftWav& wav = *s.wav;
        const double expected = static_cast<double>(s.elapsedTicks) * wav.rate / 60.0;
        auto found = cursors->find(s.id);
        double pos = found == cursors->end() || std::fabs(found->second - expected) > wav.rate / 10.0 ? expected
                                                                                                     : found->second;
        const double step = static_cast<double>(wav.rate) / rate;
        const int left = s.volume * (s.pan <= 50 ? 100 : 100 - (s.pan - 50) * 2) / 100;
        const int right = s.volume * (s.pan >= 50 ? 100 : s.pan * 2) / 100;
        for (int i = 0; i < frames; i++, pos += step) {
            const std::uint32_t f = static_cast<std::uint32_t>(pos);
            if (f >= wav.frames)
                break;
            int l = wav.samples[static_cast<std::size_t>(f) * wav.channels];
            int r = wav.channels == 2 ? wav.samples[static_cast<std::size_t>(f) * 2 + 1] : l;
            if (s.distort > 0) {
                const int bits = s.distort > 15 ? 15 : s.distort;
                l = (l / (1 << bits)) * (1 << bits);
                r = (r / (1 << bits)) * (1 << bits);
            }
            mix[static_cast<std::size_t>(i) * 2] += l * left / 127;
            mix[static_cast<std::size_t>(i) * 2 + 1] += r * right / 127;
        }
        next[s.id] = pos;
    }
    *cursors = next;
    out->resize(mix.size());
    for (std::size_t i = 0; i < mix.size(); i++)
        (*out)[i] = static_cast<std::int16_t>(std::clamp(mix[i], -32768, 32767));
}
