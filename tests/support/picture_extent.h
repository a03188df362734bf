#pragma once
// Where a picture taken with the background hidden (white) shows something.

#include <QImage>
#include <QRect>

namespace testing_support {

// The bounding rectangle of the pixels that are not white; empty when all are.
inline QRect nonWhiteExtent(const QImage& picture) {
  int left = picture.width(), top = picture.height(), right = -1, bottom = -1;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      const QRgb pixel = picture.pixel(x, y);
      if (qRed(pixel) >= 250 && qGreen(pixel) >= 250 && qBlue(pixel) >= 250) continue;
      left = std::min(left, x);
      right = std::max(right, x);
      top = std::min(top, y);
      bottom = std::max(bottom, y);
    }
  }
  if (right < 0) return QRect();
  return QRect(QPoint(left, top), QPoint(right, bottom));
}

// The larger of the extent's shares of the picture's width and height.
inline double largerShare(const QRect& extent, const QSize& size) {
  return std::max(double(extent.width()) / size.width(), double(extent.height()) / size.height());
}

// Nothing shown touches the picture's border.
inline bool insideFrame(const QRect& extent, const QSize& size) {
  return !extent.isEmpty() && extent.left() > 0 && extent.top() > 0 && extent.right() < size.width() - 1 &&
         extent.bottom() < size.height() - 1;
}

}  // namespace testing_support
