// The generated shapes: sizes, outward unit normals, and triangles that face
// the way their normals do (so that back-face culling keeps the outside).
#include <gtest/gtest.h>

#include <OgreAxisAlignedBox.h>

#include "shape_geometry.h"

namespace VX::NextGenView {
namespace {

// Every triangle's winding normal agrees with its vertices' normals, and every
// vertex normal points away from the shape's centre line `inside(p)`.
template <typename Inside>
void expectOutward(const TriangleMesh& mesh, Inside inside) {
  ASSERT_EQ(mesh.positions.size(), mesh.normals.size());
  ASSERT_EQ(mesh.indices.size() % 3, 0u);
  ASSERT_FALSE(mesh.empty());
  for (std::size_t i = 0; i < mesh.normals.size(); ++i) {
    EXPECT_NEAR(mesh.normals[i].length(), 1.0f, 1e-4f);
    EXPECT_GT(mesh.normals[i].dotProduct(mesh.positions[i] - inside(mesh.positions[i])), -1e-5f) << "vertex " << i;
  }
  for (std::size_t t = 0; t < mesh.indices.size(); t += 3) {
    const Ogre::Vector3& a = mesh.positions[mesh.indices[t]];
    const Ogre::Vector3& b = mesh.positions[mesh.indices[t + 1]];
    const Ogre::Vector3& c = mesh.positions[mesh.indices[t + 2]];
    const Ogre::Vector3 winding = (b - a).crossProduct(c - a);
    const Ogre::Vector3 normal = mesh.normals[mesh.indices[t]] + mesh.normals[mesh.indices[t + 1]] +
                                 mesh.normals[mesh.indices[t + 2]];
    EXPECT_GT(winding.dotProduct(normal), 0.0f) << "triangle " << t / 3;
  }
}

Ogre::AxisAlignedBox boundsOf(const TriangleMesh& mesh) {
  Ogre::AxisAlignedBox box;
  for (const Ogre::Vector3& p : mesh.positions) box.merge(p);
  return box;
}

void expectSize(const TriangleMesh& mesh, const Ogre::Vector3& size) {
  const Ogre::AxisAlignedBox box = boundsOf(mesh);
  EXPECT_TRUE(box.getSize().positionEquals(size, 1e-4f)) << box.getSize();
  EXPECT_TRUE(box.getCenter().positionEquals(Ogre::Vector3::ZERO, 1e-4f)) << box.getCenter();
}

Ogre::Vector3 origin(const Ogre::Vector3&) { return Ogre::Vector3::ZERO; }

TEST(ShapeGeometry, BoxHasItsSizeAndFacesOutward) {
  const TriangleMesh box = ShapeGeometry::box(Ogre::Vector3(0.2f, 0.4f, 0.6f));
  EXPECT_EQ(box.triangleCount(), 12u);
  expectSize(box, Ogre::Vector3(0.2f, 0.4f, 0.6f));
  expectOutward(box, origin);
}

TEST(ShapeGeometry, CylinderRunsAlongZAndFacesOutward) {
  const TriangleMesh cylinder = ShapeGeometry::cylinder(0.1f, 0.5f, 24);
  expectSize(cylinder, Ogre::Vector3(0.2f, 0.2f, 0.5f));
  // Side normals point away from the axis, cap normals away from the middle.
  expectOutward(cylinder, [](const Ogre::Vector3& p) { return Ogre::Vector3(0, 0, p.z * 0.5f); });
}

TEST(ShapeGeometry, SphereHasItsRadiusAndFacesOutward) {
  const TriangleMesh sphere = ShapeGeometry::sphere(0.3f);
  expectSize(sphere, Ogre::Vector3(0.6f, 0.6f, 0.6f));
  for (const Ogre::Vector3& p : sphere.positions) EXPECT_NEAR(p.length(), 0.3f, 1e-5f);
  expectOutward(sphere, origin);
}

TEST(ShapeGeometry, TorusCirclesTheZAxisAndFacesOutward) {
  const TriangleMesh torus = ShapeGeometry::torus(1.0f, 0.1f);
  expectSize(torus, Ogre::Vector3(2.2f, 2.2f, 0.2f));
  // Normals point away from the tube's centre circle.
  expectOutward(torus, [](const Ogre::Vector3& p) { return Ogre::Vector3(p.x, p.y, 0).normalisedCopy(); });
}

TEST(TriangleMesh, AppendMovesScalesAndKeepsMirroredShapesOutward) {
  TriangleMesh moved;
  Ogre::Matrix4 transform;
  transform.makeTransform(Ogre::Vector3(1, 2, 3), Ogre::Vector3(2, 1, 1), Ogre::Quaternion::IDENTITY);
  moved.append(ShapeGeometry::box(Ogre::Vector3(1, 1, 1)), transform);
  EXPECT_TRUE(boundsOf(moved).getSize().positionEquals(Ogre::Vector3(2, 1, 1), 1e-5f));
  EXPECT_TRUE(boundsOf(moved).getCenter().positionEquals(Ogre::Vector3(1, 2, 3), 1e-5f));
  expectOutward(moved, [](const Ogre::Vector3&) { return Ogre::Vector3(1, 2, 3); });

  TriangleMesh mirrored;
  Ogre::Matrix4 mirror = Ogre::Matrix4::IDENTITY;
  mirror.setScale(Ogre::Vector3(-1, 1, 1));
  mirrored.append(ShapeGeometry::sphere(1.0f), mirror);
  expectOutward(mirrored, origin);
}

}  // namespace
}  // namespace VX::NextGenView
