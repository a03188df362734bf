#include "world_model/bundled_robot.h"

#include <filesystem>
#include <system_error>
#include <vector>

namespace fs = std::filesystem;

namespace VX::NextGenView {
namespace {

// Programs built in the project's build folder use the robots staged there,
// which follow the sources, rather than an older installed copy.
bool runningFromBuildFolder() {
  std::error_code error;
  const fs::path program = fs::read_symlink("/proc/self/exe", error);
  if (error) return false;
  std::string build = fs::path(WORLD_MODEL_BUILD_FOLDER).lexically_normal().string();
  if (build.empty() || build.back() != '/') build += '/';
  return program.lexically_normal().string().rfind(build, 0) == 0;
}

}  // namespace

std::string bundledRobotFile(const std::string& robotName) {
  if (robotName.empty()) return {};
  std::vector<fs::path> dataFolders;
  if (runningFromBuildFolder()) dataFolders.emplace_back(WORLD_MODEL_BUILD_DATA_DIR);
  dataFolders.emplace_back(WORLD_MODEL_INSTALLED_DATA_DIR);
  for (const fs::path& folder : dataFolders) {
    const fs::path candidate = folder / "robots" / robotName / (robotName + ".urdf");
    std::error_code error;
    if (fs::is_regular_file(candidate, error)) return candidate.string();
  }
  return {};
}

}  // namespace VX::NextGenView
