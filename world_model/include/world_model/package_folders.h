#pragma once

#include <string>
#include <vector>

namespace VX::NextGenView {

// Folders a host adds to the search for "package://<package>/..." mesh
// names, searched before ROS_PACKAGE_PATH, AMENT_PREFIX_PATH and the robot
// description's own folders. Each is searched as a ROS_PACKAGE_PATH entry:
// <folder>/<package>, the folder itself when it is that package, and the
// folders up to three levels below it whose package.xml names the package. Applies to robots
// loaded afterwards; empty by default. Safe to call from any thread.
class PackageFolders {
 public:
  static void set(const std::vector<std::string>& folders);
  static std::vector<std::string> get();
};

}  // namespace VX::NextGenView
