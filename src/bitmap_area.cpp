#include "bitmap_area.h"

namespace VX {

BitmapArea::BitmapArea(const QRect& rect, const QString& image, const QString& chainName)
    : rect(rect), image(image), chainName(chainName) {}

BitmapArea::~BitmapArea() = default;

boost::shared_ptr<BitmapArea> BitmapArea::createBitmapArea(const QRect& rect, const QString& image,
                                                           const QString& chainName) {
  return boost::shared_ptr<BitmapArea>(new BitmapArea(rect, image, chainName));
}

boost::shared_ptr<BitmapArea> BitmapArea::areaAt(const QList<boost::shared_ptr<BitmapArea>>& areas,
                                                 const QPoint& point) {
  for (const boost::shared_ptr<BitmapArea>& area : areas) {
    if (area->rect.contains(point)) return area;
  }
  return boost::shared_ptr<BitmapArea>();
}

}  // namespace VX
