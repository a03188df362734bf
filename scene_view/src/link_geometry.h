#pragma once

#include <string>
#include <vector>

#include "mesh_assembly.h"

namespace VX::NextGenView {

class Link;
class MaterialLibrary;
class MeshFileLoader;

// The triangles of a link's visuals in the link frame, grouped by material:
// boxes, cylinders and spheres generated, mesh files read through Assimp.
// A visual that cannot be shown is left out and reported in `problems`.
class LinkGeometry {
 public:
  static MeshAssembly assemble(const Link& link, MaterialLibrary& materials, MeshFileLoader& meshFiles,
                               std::vector<std::string>& problems);
};

}  // namespace VX::NextGenView
