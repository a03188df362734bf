#pragma once

#include <cstdint>
#include <filesystem>
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
  // The material's diffuse image, an absolute path (the file may be missing);
  // empty when the material has none or the triangles have no texture coordinates.
  std::string texture;
  bool hasVertexColours() const { return !triangles.colours.empty(); }
};

struct MeshFileLoadResult {
  std::vector<MeshFilePart> parts;
  std::string error;  // empty on success
};

// Reads mesh files (STL, COLLADA, OBJ and the other formats Assimp knows)
// into triangles, texture coordinates, vertex colours and material looks.
// A file shared by several links is read once, and again when it changes
// (its time or size). A changed file that cannot be read (caught half
// written) keeps its last good content, with a warning. A material whose
// opacity is 0 is taken as opaque, with a warning: nobody means an
// invisible visual.
class MeshFileLoader {
 public:
  // Larger files are refused: a robot's meshes are far smaller, and a damaged
  // size field must not make Assimp allocate without bound.
  static constexpr std::uintmax_t a_maxFileBytes = 64u << 20;

  // The reference holds until the next load of the same path.
  const MeshFileLoadResult& load(const std::string& path);

 private:
  // What tells one version of a file from the next.
  struct FileStamp {
    std::filesystem::file_time_type written;
    std::uintmax_t bytes = 0;
    bool operator==(const FileStamp& other) const { return written == other.written && bytes == other.bytes; }
  };
  struct CachedFile {
    FileStamp stamp;
    MeshFileLoadResult result;
  };

  static FileStamp stampOf(const std::string& path);
  static MeshFileLoadResult read(const std::string& path);
  std::map<std::string, CachedFile> m_cache;
};

}  // namespace VX::NextGenView
