#include "ku/path.h"

#include <dlfcn.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <system_error>

#include "ku/log.h"

namespace fs = std::filesystem;

namespace ku::path {
namespace {

// Its address lies inside this library's own file, wherever that file was
// loaded from. It has internal linkage on purpose: the address of an exported
// symbol could resolve to another copy of the library loaded earlier.
const char a_libraryAnchor = 0;

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

void addOnce(std::vector<std::string>& folders, const std::string& folder) {
  if (!folder.empty() && std::find(folders.begin(), folders.end(), folder) == folders.end()) {
    folders.push_back(folder);
  }
}

std::string joined(const std::vector<std::string>& folders) {
  std::string text;
  for (const std::string& folder : folders) text += (text.empty() ? "" : ", ") + folder;
  return text;
}

// The functions below are what the public ones run. They are not exported:
// a call between exported functions could land in another copy of the
// library loaded earlier, which lies elsewhere.
std::string ownLibraryFile() {
  Dl_info info{};
  if (dladdr(&a_libraryAnchor, &info) == 0 || !info.dli_fname || !*info.dli_fname) return std::string();
  std::error_code error;
  // The real file: a symbolic link to the library may lie anywhere.
  const fs::path loaded = fs::absolute(info.dli_fname, error);
  if (error) return std::string();
  const fs::path file = fs::weakly_canonical(loaded, error);
  return error ? std::string() : file.string();
}

std::string dataBeside(const std::string& libraryFilePath) {
  if (libraryFilePath.empty()) return std::string();
  const fs::path folder = fs::path(libraryFilePath).parent_path() / KU_LIBRARY_TO_DATA_DIR;
  return withoutSlash(folder.lexically_normal().string());
}

std::vector<std::string> dataCandidates() {
  std::vector<std::string> folders;
  addOnce(folders, dataBeside(ownLibraryFile()));
  if (runningFromBuildFolder()) addOnce(folders, withoutSlash(fs::path(KU_BUILD_DATA_DIR).lexically_normal().string()));
  addOnce(folders, withoutSlash(fs::path(KU_INSTALLED_DATA_DIR).lexically_normal().string()));
  return folders;
}

std::vector<std::string> configFolders() {
  std::vector<std::string> folders;
  folders.push_back(xdgFolder("XDG_CONFIG_HOME", home() + "/.config"));

  std::string dirs = environment("XDG_CONFIG_DIRS");
  if (dirs.empty()) dirs = "/etc/xdg";
  std::istringstream list(dirs);
  for (std::string dir; std::getline(list, dir, ':');) {
    if (!dir.empty() && dir.front() == '/') addOnce(folders, withSlash(dir));
  }

  for (const std::string& data : dataCandidates()) addOnce(folders, withSlash(data) + "config/");
  return folders;
}

}  // namespace

std::string libraryFile() { return ownLibraryFile(); }

std::string dataFolderBeside(const std::string& libraryFilePath) { return dataBeside(libraryFilePath); }

std::vector<std::string> dataFolderCandidates() { return dataCandidates(); }

std::vector<std::string> configSearchFolders() { return configFolders(); }

std::string findConf(const std::string& applicationName, const std::string& fileName) {
  const std::vector<std::string> folders = configFolders();
  for (const std::string& folder : folders) {
    const fs::path candidate = fs::path(folder) / applicationName / fileName;
    std::error_code error;
    if (fs::exists(candidate, error)) return candidate.string();
  }
  log::LogStream(log::Error, "findConf", "ku.path", __FILE__, __LINE__)
      << "No configuration " << applicationName << "/" << fileName << " found; searched " << joined(folders)
      << std::endl;
  return std::string();
}

std::string dataFolder() {
  const std::vector<std::string> folders = dataCandidates();
  for (const std::string& folder : folders) {
    std::error_code error;
    if (fs::is_directory(folder, error)) return folder;
  }
  log::LogStream(log::Error, "dataFolder", "ku.path", __FILE__, __LINE__)
      << "No data folder found; searched " << joined(folders) << std::endl;
  return folders.front();
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
