#pragma once

#include <QImage>

namespace VX::NextGenView {

// The picture shown while no robot is known: the outline of the robot
// picture filled in flat grey, with a question mark on it. Same size as the
// robot picture, transparent where it is.
class UnknownPicture {
 public:
  static QImage fromRobotPicture(const QImage& robot);
};

}  // namespace VX::NextGenView
