#include "unknown_picture.h"

#include <QFont>
#include <QPainter>

namespace VX::NextGenView {
namespace {

const QColor a_silhouetteColour(150, 150, 158);
const QColor a_markColour(245, 245, 250);

// The bounding box of the picture's visible pixels.
QRect visibleBounds(const QImage& picture) {
  QRect bounds;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      if (qAlpha(picture.pixel(x, y)) > 0) bounds |= QRect(x, y, 1, 1);
    }
  }
  return bounds;
}

}  // namespace

QImage UnknownPicture::fromRobotPicture(const QImage& robot) {
  // Keep the alpha, replace the colour: a flat silhouette that says
  // "a robot" without saying which.
  QImage picture = robot.convertToFormat(QImage::Format_ARGB32);
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      const int alpha = qAlpha(picture.pixel(x, y));
      picture.setPixel(x, y, qRgba(a_silhouetteColour.red(), a_silhouetteColour.green(), a_silhouetteColour.blue(), alpha));
    }
  }

  // A question mark over the chest and belly, half the robot's height.
  const QRect bounds = visibleBounds(picture);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setRenderHint(QPainter::TextAntialiasing);
  QFont font("DejaVu Sans");
  font.setBold(true);
  font.setPixelSize(bounds.height() / 2);
  painter.setFont(font);
  painter.setPen(a_markColour);
  const QRect markArea(bounds.left(), bounds.top() + bounds.height() / 8, bounds.width(), bounds.height() * 3 / 5);
  painter.drawText(markArea, Qt::AlignCenter, "?");
  return picture;
}

}  // namespace VX::NextGenView
