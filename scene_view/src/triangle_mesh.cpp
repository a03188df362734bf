#include "triangle_mesh.h"

#include <OgreMatrix3.h>

namespace VX::NextGenView {

void TriangleMesh::append(const TriangleMesh& other, const Ogre::Matrix4& transform) {
  const auto base = static_cast<std::uint32_t>(positions.size());
  const Ogre::Matrix3 linear = transform.linear();
  const Ogre::Matrix3 normalMatrix = linear.Inverse().Transpose();
  for (std::size_t i = 0; i < other.positions.size(); ++i) {
    positions.push_back(transform * other.positions[i]);
    Ogre::Vector3 normal = normalMatrix * other.normals[i];
    normal.normalise();
    normals.push_back(normal);
  }
  if (!texCoords.empty() || !other.texCoords.empty()) {
    texCoords.resize(base, Ogre::Vector2::ZERO);
    texCoords.insert(texCoords.end(), other.texCoords.begin(), other.texCoords.end());
    texCoords.resize(positions.size(), Ogre::Vector2::ZERO);
  }
  if (!colours.empty() || !other.colours.empty()) {
    colours.resize(base, Ogre::ColourValue::White);
    colours.insert(colours.end(), other.colours.begin(), other.colours.end());
    colours.resize(positions.size(), Ogre::ColourValue::White);
  }
  // A mirroring transform turns counter-clockwise triangles clockwise.
  const bool mirrored = linear.Determinant() < 0;
  for (std::size_t i = 0; i + 2 < other.indices.size(); i += 3) {
    indices.push_back(base + other.indices[i]);
    indices.push_back(base + other.indices[mirrored ? i + 2 : i + 1]);
    indices.push_back(base + other.indices[mirrored ? i + 1 : i + 2]);
  }
}

}  // namespace VX::NextGenView
