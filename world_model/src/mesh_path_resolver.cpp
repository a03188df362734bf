#include "mesh_path_resolver.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include <tinyxml2.h>

#include "world_model/package_folders.h"

namespace fs = std::filesystem;

namespace VX::NextGenView {
namespace {

const std::string a_packageScheme = "package:";
const std::string a_fileScheme = "file://";
// Workspaces keep packages a few levels below a source folder
// (src/<repository>/<group>/<package>); a package holds no other package.
const int a_packageXmlDepth = 3;

bool startsWith(const std::string& text, const std::string& prefix) { return text.rfind(prefix, 0) == 0; }

bool isFile(const fs::path& path) {
  std::error_code error;
  return fs::is_regular_file(path, error);
}

bool isFolder(const fs::path& path) {
  std::error_code error;
  return fs::is_directory(path, error);
}

fs::path absoluteFolder(const std::string& baseFolder) {
  std::error_code error;
  fs::path folder = fs::absolute(baseFolder.empty() ? fs::path(".") : fs::path(baseFolder), error);
  if (error) folder = fs::path(baseFolder);
  return folder.lexically_normal();
}

// The entries of a PATH-like variable, empty ones left out.
std::vector<std::string> pathList(const char* variable) {
  std::vector<std::string> entries;
  const char* value = std::getenv(variable);
  std::string rest = value ? value : "";
  while (!rest.empty()) {
    const std::string::size_type colon = rest.find(':');
    const std::string entry = rest.substr(0, colon);
    if (!entry.empty()) entries.push_back(entry);
    rest = colon == std::string::npos ? std::string() : rest.substr(colon + 1);
  }
  return entries;
}

// The <name> of a package.xml; empty when there is none.
std::string packageName(const fs::path& folder) {
  const fs::path manifest = folder / "package.xml";
  if (!isFile(manifest)) return {};
  tinyxml2::XMLDocument document;
  if (document.LoadFile(manifest.string().c_str()) != tinyxml2::XML_SUCCESS) return {};
  const tinyxml2::XMLElement* root = document.RootElement();
  const tinyxml2::XMLElement* name = root ? root->FirstChildElement("name") : nullptr;
  std::string text = name && name->GetText() ? name->GetText() : "";
  text.erase(0, text.find_first_not_of(" \t\r\n"));
  text.erase(text.find_last_not_of(" \t\r\n") + 1);
  return text;
}

}  // namespace

MeshPathResolver::MeshPathResolver(const std::string& baseFolder)
    : m_baseFolder(absoluteFolder(baseFolder).string()),
      m_packageFolders(PackageFolders::get()),
      m_amentPrefixes(pathList("AMENT_PREFIX_PATH")) {
  for (const std::string& folder : pathList("ROS_PACKAGE_PATH")) m_packageFolders.push_back(folder);
}

MeshPathResolution MeshPathResolver::resolve(const std::string& fileName) {
  MeshPathResolution result;
  if (fileName.empty()) return result;
  const fs::path folder(m_baseFolder);
  fs::path resolved;
  if (startsWith(fileName, a_packageScheme)) {
    // "package://name/...", and the "package:///name/..." some exporters write.
    std::string reference = fileName.substr(a_packageScheme.size());
    reference.erase(0, reference.find_first_not_of('/'));
    const std::string::size_type slash = reference.find('/');
    const std::string package = reference.substr(0, slash);
    const std::string inside = slash == std::string::npos ? std::string() : reference.substr(slash + 1);
    searchPackage(package, inside, result);
    if (result.found) return result;
    resolved = folder / inside;
  } else if (startsWith(fileName, a_fileScheme)) {
    resolved = fs::path(fileName.substr(a_fileScheme.size()));
    if (resolved.is_relative()) resolved = folder / resolved;
  } else {
    resolved = fs::path(fileName);
    if (resolved.is_relative()) resolved = folder / resolved;
  }
  result.path = resolved.lexically_normal().string();
  if (std::find(result.tried.begin(), result.tried.end(), result.path) == result.tried.end()) {
    result.tried.push_back(result.path);
  }
  result.found = isFile(result.path);
  return result;
}

void MeshPathResolver::searchPackage(const std::string& package, const std::string& inside,
                                     MeshPathResolution& result) {
  const auto attempt = [&](const fs::path& candidate) {
    const std::string path = candidate.lexically_normal().string();
    if (std::find(result.tried.begin(), result.tried.end(), path) != result.tried.end()) return false;
    result.tried.push_back(path);
    if (!isFile(path)) return false;
    result.path = path;
    result.found = true;
    return true;
  };
  for (const std::string& entry : m_packageFolders) {
    const fs::path packageFolder = absoluteFolder(entry);
    if (attempt(packageFolder / package / inside)) return;
    if (packageFolder.filename() == package && attempt(packageFolder / inside)) return;
    const auto& named = packagesBelow(packageFolder.string());
    const auto found = named.find(package);
    if (found == named.end()) continue;
    for (const std::string& candidate : found->second) {
      if (attempt(fs::path(candidate) / inside)) return;
    }
  }
  for (const std::string& prefix : m_amentPrefixes) {
    if (attempt(absoluteFolder(prefix) / "share" / package / inside)) return;
  }
  for (fs::path candidate(m_baseFolder); !candidate.empty(); candidate = candidate.parent_path()) {
    if (attempt(candidate / package / inside)) return;
    if (attempt(candidate / inside)) return;
    if (candidate == candidate.root_path()) break;
  }
}

const std::map<std::string, std::vector<std::string>>& MeshPathResolver::packagesBelow(const std::string& folder) {
  const auto known = m_packagesBelow.find(folder);
  if (known != m_packagesBelow.end()) return known->second;
  std::map<std::string, std::vector<std::string>>& named = m_packagesBelow[folder];
  std::vector<fs::path> level{fs::path(folder)};
  for (int depth = 0; depth <= a_packageXmlDepth && !level.empty(); ++depth) {
    std::vector<fs::path> next;
    for (const fs::path& current : level) {
      const std::string name = packageName(current);
      if (!name.empty()) named[name].push_back(current.string());
      if (!name.empty() || depth == a_packageXmlDepth) continue;
      std::error_code error;
      fs::directory_iterator entries(current, error);
      if (error) continue;
      std::vector<fs::path> children;
      for (const fs::directory_entry& entry : entries) {
        const std::string leaf = entry.path().filename().string();
        if (!leaf.empty() && leaf[0] != '.' && isFolder(entry.path())) children.push_back(entry.path());
      }
      std::sort(children.begin(), children.end());  // the same answer on every file system
      next.insert(next.end(), children.begin(), children.end());
    }
    level = std::move(next);
  }
  return named;
}

}  // namespace VX::NextGenView
