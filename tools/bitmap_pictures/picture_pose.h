#pragma once

#include <boost/shared_ptr.hpp>

namespace VX::NextGenView {

class Robot;

// The pose the robot strikes for the pictures: arms spread and bent forward,
// legs a little apart, so each body chain fills its own part of the picture.
class PicturePose {
 public:
  // Puts the actuators at the pose (present value and command) and
  // recomputes the link poses. Joints the robot lacks are skipped.
  static void apply(const boost::shared_ptr<Robot>& robot);
};

}  // namespace VX::NextGenView
