#pragma once

#include <cstdint>
#include <vector>

#include <OgreColourValue.h>
#include <OgreMatrix4.h>
#include <OgreVector.h>

namespace VX::NextGenView {

// Indexed triangles with one normal per vertex, in memory: what the shape
// generators and the mesh file loader produce before OGRE buffers exist.
// Triangles are counter-clockwise seen from the side their normals face.
struct TriangleMesh {
  std::vector<Ogre::Vector3> positions;
  std::vector<Ogre::Vector3> normals;  // unit length, one per position
  std::vector<std::uint32_t> indices;  // three per triangle
  // Optional, one per position when present: texture coordinates (OGRE's
  // convention, v down the image) and vertex colours.
  std::vector<Ogre::Vector2> texCoords;
  std::vector<Ogre::ColourValue> colours;

  bool empty() const { return indices.empty(); }
  std::size_t triangleCount() const { return indices.size() / 3; }

  // Appends `other` moved by `transform` (which may scale, even unevenly:
  // normals follow the inverse transpose; a mirroring scale flips windings).
  // When only one side has texture coordinates or colours, the other side's
  // vertices get (0, 0) and white.
  void append(const TriangleMesh& other, const Ogre::Matrix4& transform = Ogre::Matrix4::IDENTITY);
};

}  // namespace VX::NextGenView
