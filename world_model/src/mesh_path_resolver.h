#pragma once

#include <string>

namespace VX::NextGenView {

// Turns a URDF mesh file name into an absolute path:
//   - "package://<package>/<path>": the first existing file among
//     <folder>/<package>/<path> and <folder>/<path> for the URDF's folder and
//     each folder above it (so both "<package>/urdf/x.urdf" and a URDF next to
//     its meshes work); when none exists, <URDF folder>/<path>.
//   - "file://<path>" and absolute paths: the path itself.
//   - a relative path: against the URDF's folder.
// An empty baseFolder stands for the current folder.
std::string resolveMeshPath(const std::string& fileName, const std::string& baseFolder);

}  // namespace VX::NextGenView
