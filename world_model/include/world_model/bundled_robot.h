#pragma once

#include <string>

namespace VX::NextGenView {

// The description file of a robot shipped with the project,
// <data>/robots/<name>/<name>.urdf: the copy staged in the build folder for
// programs that run from there, otherwise the installed one. Empty when
// neither exists.
std::string bundledRobotFile(const std::string& robotName);

}  // namespace VX::NextGenView
