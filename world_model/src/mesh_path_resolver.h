#pragma once

#include <map>
#include <string>
#include <vector>

namespace VX::NextGenView {

// Where a mesh file name of a description leads.
struct MeshPathResolution {
  std::string path;                // absolute; the first candidate found, else the last fallback
  bool found = false;
  std::vector<std::string> tried;  // every candidate looked at, in order
};

// Turns URDF mesh file names into absolute paths, for one robot description:
//   - "package://<package>/<path>" (any number of slashes after "package:"):
//     the first existing file among, in this order,
//       for each host folder (PackageFolders), then each ROS_PACKAGE_PATH
//       folder: <folder>/<package>/<path>, <folder>/<path> when the folder is
//       named <package>, and <pkg>/<path> for <pkg> the folder or a folder
//       up to three levels below it (not inside
//       another package) whose package.xml <name> is <package>;
//       for each AMENT_PREFIX_PATH prefix: <prefix>/share/<package>/<path>;
//       for the URDF's folder and each folder above it:
//       <folder>/<package>/<path>, then <folder>/<path>.
//     When none exists, <URDF folder>/<path>.
//   - "file://<path>" and absolute paths: the path itself.
//   - a relative path: against the URDF's folder.
// An empty baseFolder stands for the current folder. The search folders are
// read when the resolver is made; package.xml files are read once each.
class MeshPathResolver {
 public:
  explicit MeshPathResolver(const std::string& baseFolder);

  MeshPathResolution resolve(const std::string& fileName);

 private:
  void searchPackage(const std::string& package, const std::string& inside, MeshPathResolution& result);
  // The folders at or below `folder` (three levels) whose package.xml names a package.
  const std::map<std::string, std::vector<std::string>>& packagesBelow(const std::string& folder);

  std::string m_baseFolder;
  std::vector<std::string> m_packageFolders;  // the host's, then ROS_PACKAGE_PATH's
  std::vector<std::string> m_amentPrefixes;
  std::map<std::string, std::map<std::string, std::vector<std::string>>> m_packagesBelow;
};

}  // namespace VX::NextGenView
