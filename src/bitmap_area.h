#pragma once

#include <QList>
#include <QRect>
#include <QString>

#include <boost/shared_ptr.hpp>

namespace VX {

// One clickable region of the 2D view's robot picture: a rectangle in the
// unscaled picture's pixels (corners included), the picture to show when it is
// clicked, and the name of the body chain it stands for.
class BitmapArea {
 public:
  BitmapArea(const QRect& rect, const QString& image, const QString& chainName);
  virtual ~BitmapArea();

  // The only way the 2D view makes areas.
  static boost::shared_ptr<BitmapArea> createBitmapArea(const QRect& rect, const QString& image,
                                                        const QString& chainName);

  // The first area of the list that contains the point (edges included).
  static boost::shared_ptr<BitmapArea> areaAt(const QList<boost::shared_ptr<BitmapArea>>& areas, const QPoint& point);

  const QRect rect;
  const QString image;
  const QString chainName;
};

}  // namespace VX
