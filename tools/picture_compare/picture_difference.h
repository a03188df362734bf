#pragma once
// How far two renderings of the same view lie apart: the mean absolute
// difference per colour channel over the whole picture, and the worst mean
// over square blocks, which finds a local change a whole-picture mean hides.

#include <QImage>
#include <QPoint>

// What the eye cannot tell apart: at most 3 levels on average per channel,
// and no 16 × 16 block whose mean moved by more than the block limit.
constexpr double a_meanLimit = 3.0;
constexpr double a_blockLimit = 8.0;

struct PictureDifference {
  bool sameSize = false;
  double meanPerChannel[3] = {0, 0, 0};  // red, green, blue; in levels of 255
  double worstBlockMean = 0;             // the largest channel mean of one block, in levels of 255
  QPoint worstBlock;                     // its top-left pixel
  int largestPixelDifference = 0;        // in levels of 255, any channel

  double worstChannelMean() const;
  // The limits the frame pictures are held to.
  bool within(double meanLimit, double blockLimit) const;
};

PictureDifference comparePictures(const QImage& before, const QImage& after, int blockSize = 16);

// |after - before| per channel, multiplied by `gain`, for looking at.
QImage differencePicture(const QImage& before, const QImage& after, int gain = 16);
