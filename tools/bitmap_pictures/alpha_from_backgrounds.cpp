#include "alpha_from_backgrounds.h"

#include <algorithm>

namespace VX::NextGenView {

QImage alphaFromBackgrounds(const QImage& onBlack, const QImage& onWhite) {
  if (onBlack.size() != onWhite.size()) return QImage();
  QImage result(onBlack.size(), QImage::Format_ARGB32);
  for (int y = 0; y < result.height(); ++y) {
    for (int x = 0; x < result.width(); ++x) {
      const QColor dark = onBlack.pixelColor(x, y);
      const QColor light = onWhite.pixelColor(x, y);
      const int seen = std::max({light.red() - dark.red(), light.green() - dark.green(), light.blue() - dark.blue(), 0});
      const int alpha = 255 - seen;
      if (alpha == 0) {
        result.setPixel(x, y, qRgba(0, 0, 0, 0));
        continue;
      }
      auto unmix = [alpha](int channel) { return std::min(255, channel * 255 / alpha); };
      result.setPixel(x, y, qRgba(unmix(dark.red()), unmix(dark.green()), unmix(dark.blue()), alpha));
    }
  }
  return result;
}

}  // namespace VX::NextGenView
