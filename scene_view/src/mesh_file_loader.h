#pragma once

#include <map>
#include <string>
#include <vector>

#include <OgreColourValue.h>

#include "triangle_mesh.h"

namespace VX::NextGenView {

// One part of a mesh file: the triangles of one of its materials.
struct MeshFilePart {
  TriangleMesh triangles;  // in the file's units and axes, node transforms applied
  bool hasColour = false;  // the file gives a diffuse colour
  Ogre::ColourValue colour = Ogre::ColourValue::White;
};

struct MeshFileLoadResult {
  std::vector<MeshFilePart> parts;
  std::string error;  // empty on success
};

// Reads mesh files (STL, COLLADA, OBJ and the other formats Assimp knows)
// into triangles. A file shared by several links is read once.
class MeshFileLoader {
 public:
  const MeshFileLoadResult& load(const std::string& path);

 private:
  static MeshFileLoadResult read(const std::string& path);
  std::map<std::string, MeshFileLoadResult> m_cache;
};

}  // namespace VX::NextGenView
