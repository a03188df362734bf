#include "mesh_path_resolver.h"

#include <filesystem>
#include <system_error>

namespace fs = std::filesystem;

namespace VX::NextGenView {
namespace {

const std::string a_packageScheme = "package://";
const std::string a_fileScheme = "file://";

bool startsWith(const std::string& text, const std::string& prefix) { return text.rfind(prefix, 0) == 0; }

bool fileExists(const fs::path& path) {
  std::error_code error;
  return fs::exists(path, error);
}

fs::path absoluteFolder(const std::string& baseFolder) {
  std::error_code error;
  fs::path folder = fs::absolute(baseFolder.empty() ? fs::path(".") : fs::path(baseFolder), error);
  if (error) folder = fs::path(baseFolder);
  return folder.lexically_normal();
}

fs::path resolvePackage(const std::string& reference, const fs::path& folder) {
  const std::string::size_type slash = reference.find('/');
  const std::string package = reference.substr(0, slash);
  const fs::path inside = slash == std::string::npos ? fs::path() : fs::path(reference.substr(slash + 1));
  for (fs::path candidate = folder; !candidate.empty(); candidate = candidate.parent_path()) {
    if (fileExists(candidate / package / inside)) return candidate / package / inside;
    if (fileExists(candidate / inside)) return candidate / inside;
    if (candidate == candidate.root_path()) break;
  }
  return folder / inside;
}

}  // namespace

std::string resolveMeshPath(const std::string& fileName, const std::string& baseFolder) {
  if (fileName.empty()) return {};
  const fs::path folder = absoluteFolder(baseFolder);
  fs::path resolved;
  if (startsWith(fileName, a_packageScheme)) {
    resolved = resolvePackage(fileName.substr(a_packageScheme.size()), folder);
  } else if (startsWith(fileName, a_fileScheme)) {
    resolved = fs::path(fileName.substr(a_fileScheme.size()));
    if (resolved.is_relative()) resolved = folder / resolved;
  } else {
    resolved = fs::path(fileName);
    if (resolved.is_relative()) resolved = folder / resolved;
  }
  return resolved.lexically_normal().string();
}

}  // namespace VX::NextGenView
