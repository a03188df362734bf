#pragma once

#include <QImage>

namespace VX::NextGenView {

// A picture with transparency from two renderings of one frame, on black and
// on white: a pixel the background shows through changes between them by
// (1 - alpha) in every channel, and the black rendering holds the colour
// times alpha. Both pictures must have one size; returns ARGB32.
QImage alphaFromBackgrounds(const QImage& onBlack, const QImage& onWhite);

}  // namespace VX::NextGenView
