// Mesh files through Assimp: STL, OBJ with its material colour, COLLADA in
// its own units and axes; unreadable files give an error, not a crash.
#include <gtest/gtest.h>

#include <OgreAxisAlignedBox.h>

#include "mesh_file_loader.h"

namespace VX::NextGenView {
namespace {

const std::string a_data = SCENE_VIEW_TEST_DATA;

Ogre::AxisAlignedBox boundsOf(const MeshFileLoadResult& result) {
  Ogre::AxisAlignedBox box;
  for (const MeshFilePart& part : result.parts) {
    for (const Ogre::Vector3& p : part.triangles.positions) box.merge(p);
  }
  return box;
}

TEST(MeshFileLoader, ReadsAnStlCubeWithOutwardNormals) {
  MeshFileLoader loader;
  const MeshFileLoadResult& cube = loader.load(a_data + "/cube.stl");
  ASSERT_EQ(cube.error, "");
  ASSERT_EQ(cube.parts.size(), 1u);
  const TriangleMesh& triangles = cube.parts[0].triangles;
  EXPECT_EQ(triangles.triangleCount(), 12u);
  EXPECT_TRUE(boundsOf(cube).getSize().positionEquals(Ogre::Vector3(2, 2, 2), 1e-5f));
  for (std::size_t i = 0; i < triangles.positions.size(); ++i) {
    EXPECT_GT(triangles.normals[i].dotProduct(triangles.positions[i]), 0.0f);
  }
}

TEST(MeshFileLoader, ReadsAnObjWithItsMaterialColour) {
  MeshFileLoader loader;
  const MeshFileLoadResult& tetrahedron = loader.load(a_data + "/tetrahedron.obj");
  ASSERT_EQ(tetrahedron.error, "");
  ASSERT_EQ(tetrahedron.parts.size(), 1u);
  EXPECT_EQ(tetrahedron.parts[0].triangles.triangleCount(), 4u);
  EXPECT_TRUE(tetrahedron.parts[0].hasColour);
  EXPECT_NEAR(tetrahedron.parts[0].colour.r, 0.9f, 1e-4f);
  EXPECT_NEAR(tetrahedron.parts[0].colour.g, 0.1f, 1e-4f);
}

TEST(MeshFileLoader, ReadsColladaInMetresWithoutTurningItsUpAxis) {
  MeshFileLoader loader;
  const MeshFileLoadResult& triangle = loader.load(a_data + "/triangle_mm_zup.dae");
  ASSERT_EQ(triangle.error, "");
  ASSERT_EQ(triangle.parts.size(), 1u);
  // 50 mm along +X, 100 mm up +Z: the description's axes, in metres.
  const Ogre::AxisAlignedBox box = boundsOf(triangle);
  EXPECT_TRUE(box.getMaximum().positionEquals(Ogre::Vector3(0.05f, 0.0f, 0.1f), 1e-5f)) << box;
  EXPECT_TRUE(box.getMinimum().positionEquals(Ogre::Vector3::ZERO, 1e-5f)) << box;
  EXPECT_TRUE(triangle.parts[0].hasColour);
  EXPECT_NEAR(triangle.parts[0].colour.g, 0.8f, 1e-4f);
}

TEST(MeshFileLoader, ReportsMissingAndBrokenFiles) {
  MeshFileLoader loader;
  EXPECT_NE(loader.load(a_data + "/absent.stl").error.find("not found"), std::string::npos);
  EXPECT_NE(loader.load(a_data + "/not_a_mesh.stl").error, "");
  EXPECT_TRUE(loader.load(a_data + "/not_a_mesh.stl").parts.empty());
  EXPECT_NE(loader.load(a_data).error, "") << "a folder is not a mesh";
}

TEST(MeshFileLoader, ReadsEachFileOnce) {
  MeshFileLoader loader;
  const MeshFileLoadResult& first = loader.load(a_data + "/cube.stl");
  const MeshFileLoadResult& second = loader.load(a_data + "/cube.stl");
  EXPECT_EQ(&first, &second);
}

}  // namespace
}  // namespace VX::NextGenView
