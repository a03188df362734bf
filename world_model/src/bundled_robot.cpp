#include "world_model/bundled_robot.h"

#include <filesystem>
#include <system_error>

#include <ku/path.h>

namespace fs = std::filesystem;

namespace VX::NextGenView {

std::string bundledRobotFile(const std::string& robotName) {
  if (robotName.empty()) return {};
  // The project's data folder: the one staged in the build tree for programs
  // run from it, otherwise the installed one.
  const fs::path candidate = fs::path(ku::path::dataFolder()) / "robots" / robotName / (robotName + ".urdf");
  std::error_code error;
  return fs::is_regular_file(candidate, error) ? candidate.string() : std::string();
}

}  // namespace VX::NextGenView
