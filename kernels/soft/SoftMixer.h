// SoftMixer.h - mixes what the kernel says can be heard into 16-bit stereo
// frames, for a host with an audio queue (the window, the web page).
#ifndef QUINDLE_SOFT_MIXER_H
#define QUINDLE_SOFT_MIXER_H

#include "SoftAudio.h"

#include <cstdint>
#include <map>
#include <vector>

// Mixes `frames` stereo frames at `rate` from the sources into `out`
// (interleaved left, right). `cursors` keeps, per source, the position mixed
// up to, in WAV frames: each source goes on from there, or from where the
// kernel's clock says it is when the two drifted more than a tenth of a second
// apart (a pause, a restart). Sources no longer audible are forgotten.
void SoftMixSources(const std::vector<SoftAudio::AudibleSource>& sources, int rate, int frames,
                    std::map<long long, double>* cursors, std::vector<std::int16_t>* out);

#endif
