#include "ku/path.h"

#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <system_error>

#include "ku/log.h"

namespace fs = std::filesystem;

namespace ku::path {
namespace {

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value ? std::string(value) : std::string();
}

std::string home() {
  const std::string value = environment("HOME");
  return value.empty() ? std::string("/") : value;
}

std::string withSlash(std::string folder) {
  if (folder.empty() || folder.back() != '/') folder += '/';
  return folder;
}

std::string withoutSlash(std::string folder) {
  while (folder.size() > 1 && folder.back() == '/') folder.pop_back();
  return folder;
}

// Empty or relative values are invalid per the XDG conventions and fall back.
std::string xdgFolder(const char* variable, const std::string& fallback) {
  const std::string value = environment(variable);
  return withSlash(!value.empty() && value.front() == '/' ? value : fallback);
}

bool runningFromBuildFolder() {
  std::error_code error;
  const fs::path program = fs::read_symlink("/proc/self/exe", error);
  if (error) return false;
  const std::string build = fs::path(KU_BUILD_FOLDER).lexically_normal().string();
  return program.lexically_normal().string().rfind(withSlash(build), 0) == 0;
}

}  // namespace

std::vector<std::string> configSearchFolders() {
  std::vector<std::string> folders;
  folders.push_back(xdgFolder("XDG_CONFIG_HOME", home() + "/.config"));

  std::string dirs = environment("XDG_CONFIG_DIRS");
  if (dirs.empty()) dirs = "/etc/xdg";
  std::istringstream list(dirs);
  for (std::string dir; std::getline(list, dir, ':');) {
    if (!dir.empty() && dir.front() == '/') folders.push_back(withSlash(dir));
  }

  folders.push_back(withSlash(KU_INSTALLED_DATA_DIR) + "config/");
  if (runningFromBuildFolder()) folders.push_back(withSlash(KU_BUILD_DATA_DIR) + "config/");
  return folders;
}

std::string findConf(const std::string& applicationName, const std::string& fileName) {
  for (const std::string& folder : configSearchFolders()) {
    const fs::path candidate = fs::path(folder) / applicationName / fileName;
    std::error_code error;
    if (fs::exists(candidate, error)) return candidate.string();
  }
  return std::string();
}

std::string dataFolder() {
  const fs::path build = fs::path(KU_BUILD_DATA_DIR).lexically_normal();
  std::error_code error;
  if (runningFromBuildFolder() && fs::is_directory(build, error)) return withoutSlash(build.string());
  return withoutSlash(fs::path(KU_INSTALLED_DATA_DIR).lexically_normal().string());
}

std::string userWritableDataPath(const std::string& applicationName, const std::string& fileName) {
  const fs::path folder = fs::path(xdgFolder("XDG_DATA_HOME", home() + "/.local/share")) / applicationName;
  std::error_code error;
  fs::create_directories(folder, error);
  if (error) {
    log::LogStream(log::Error, "userWritableDataPath", "ku.path", __FILE__, __LINE__)
        << "Cannot create " << folder.string() << ": " << error.message() << std::endl;
  }
  return (folder / fileName).string();
}

}  // namespace ku::path
