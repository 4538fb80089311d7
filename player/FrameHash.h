// FrameHash.h - the SHA-256 of a frame's palette indices, so that two runs of
// a game (the native player and its web page) can be compared frame by frame.
#ifndef QUINDLE_FRAME_HASH_H
#define QUINDLE_FRAME_HASH_H

#include <cstddef>
#include <cstdint>
#include <string>

// The SHA-256 of the bytes, as 64 lower-case hexadecimal digits.
std::string Sha256Hex(const std::uint8_t* data, std::size_t size);

#endif
