#pragma once

#include <string>

namespace VX::NextGenView {

// How the robots' sentences fit the width of the 3D view's overlay.

// The character height for a sentence of `length` bytes in `width` pixels:
// 32 when a big character fits, else 16.
float sentenceCharacterHeight(std::size_t length, int width);

// The sentence as shown: unchanged while small characters fit; otherwise cut
// to the limit trunc(width / small character size) - 5 (an unsigned number),
// back to its last space, with "..." appended ("..." alone when there is no
// space). A limit of 0 to 3 leaves it uncut. Below about 36 pixels the limit
// wraps around and the cut throws std::length_error.
std::string shortenedSentence(const std::string& sentence, int width);

}  // namespace VX::NextGenView
