#pragma once

#include <string>
#include <vector>

#include "mesh_assembly.h"

namespace VX::NextGenView {

class Link;
class MaterialLibrary;
class MeshFileLoader;
struct Visual;

// The triangles of a link's visuals or collision geometry in the link
// frame, grouped by material: boxes, cylinders and spheres generated, mesh
// files read through Assimp. An element that cannot be shown is left out
// and reported in `problems`; a look that cannot be shown (a missing
// texture) falls back to a colour and is reported in `notes`.
class LinkGeometry {
 public:
  // Each mesh part's look: its own texture, else its vertex colours, else
  // the description's texture (when it has texture coordinates), else the
  // description's colour, else its own colour, else the default grey.
  static MeshAssembly assemble(const Link& link, MaterialLibrary& materials, MeshFileLoader& meshFiles,
                               std::vector<std::string>& problems, std::vector<std::string>& notes);
  // The collision geometry, all drawn with `material`.
  static MeshAssembly assembleCollisions(const Link& link, const std::string& material, MeshFileLoader& meshFiles,
                                         std::vector<std::string>& problems);

 private:
  static void addVisual(const Visual& visual, const std::string& which, MaterialLibrary* materials,
                        const std::string& fixedMaterial, MeshFileLoader& meshFiles, MeshAssembly& assembly,
                        std::vector<std::string>& problems, std::vector<std::string>& notes);
};

}  // namespace VX::NextGenView
