#pragma once

#include <string>
#include <vector>

#include <OgreMesh.h>

#include "triangle_mesh.h"

namespace VX::NextGenView {

// Collects triangles by material, then makes one OGRE mesh with one
// sub-mesh per material. Creating the mesh needs the render system's
// hardware buffers, so only once a render window exists.
class MeshAssembly {
 public:
  // Adds triangles drawn with `material`; triangles of a material already
  // present join its sub-mesh.
  void add(const std::string& material, const TriangleMesh& triangles,
           const Ogre::Matrix4& transform = Ogre::Matrix4::IDENTITY);
  bool empty() const;

  // The mesh, or an empty pointer when nothing was added.
  Ogre::MeshPtr create(const std::string& name, const std::string& group) const;

 private:
  struct Section {
    std::string material;
    TriangleMesh triangles;
  };
  std::vector<Section> m_sections;  // in the order materials first appeared
};

}  // namespace VX::NextGenView
