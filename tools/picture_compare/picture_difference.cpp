#include "picture_difference.h"

#include <algorithm>
#include <cstdlib>

double PictureDifference::worstChannelMean() const {
  return std::max({meanPerChannel[0], meanPerChannel[1], meanPerChannel[2]});
}

bool PictureDifference::within(double meanLimit, double blockLimit) const {
  return sameSize && worstChannelMean() <= meanLimit && worstBlockMean <= blockLimit;
}

PictureDifference comparePictures(const QImage& beforeImage, const QImage& afterImage, int blockSize) {
  PictureDifference result;
  if (beforeImage.size() != afterImage.size() || beforeImage.isNull()) return result;
  result.sameSize = true;
  const QImage before = beforeImage.convertToFormat(QImage::Format_RGB888);
  const QImage after = afterImage.convertToFormat(QImage::Format_RGB888);
  const int width = before.width(), height = before.height();
  double totals[3] = {0, 0, 0};
  for (int top = 0; top < height; top += blockSize) {
    for (int left = 0; left < width; left += blockSize) {
      double block[3] = {0, 0, 0};
      int pixels = 0;
      for (int y = top; y < std::min(top + blockSize, height); ++y) {
        const uchar* a = before.constScanLine(y);
        const uchar* b = after.constScanLine(y);
        for (int x = left; x < std::min(left + blockSize, width); ++x) {
          for (int c = 0; c < 3; ++c) {
            const int difference = std::abs(int(a[3 * x + c]) - int(b[3 * x + c]));
            block[c] += difference;
            result.largestPixelDifference = std::max(result.largestPixelDifference, difference);
          }
          ++pixels;
        }
      }
      for (int c = 0; c < 3; ++c) {
        totals[c] += block[c];
        if (block[c] / pixels > result.worstBlockMean) {
          result.worstBlockMean = block[c] / pixels;
          result.worstBlock = QPoint(left, top);
        }
      }
    }
  }
  for (int c = 0; c < 3; ++c) result.meanPerChannel[c] = totals[c] / (double(width) * height);
  return result;
}

QImage differencePicture(const QImage& beforeImage, const QImage& afterImage, int gain) {
  if (beforeImage.size() != afterImage.size()) return QImage();
  const QImage before = beforeImage.convertToFormat(QImage::Format_RGB888);
  const QImage after = afterImage.convertToFormat(QImage::Format_RGB888);
  QImage difference(before.size(), QImage::Format_RGB888);
  for (int y = 0; y < before.height(); ++y) {
    const uchar* a = before.constScanLine(y);
    const uchar* b = after.constScanLine(y);
    uchar* d = difference.scanLine(y);
    for (int i = 0; i < 3 * before.width(); ++i) d[i] = uchar(std::min(255, gain * std::abs(int(a[i]) - int(b[i]))));
  }
  return difference;
}
