// Mesh files through Assimp: STL, OBJ with its material colour, COLLADA in
// its own units and axes (whatever its up axis), texture coordinates and
// textures, vertex colours, zero opacity; unreadable files give an error,
// not a crash. A file that changes is read again; a change that cannot be
// read keeps the last good content.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include <OgreAxisAlignedBox.h>

#include <ku/record_capture.h>
#include "mesh_file_loader.h"
#include "temporary_folder.h"

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

TEST(MeshFileLoader, ColladaUpAxisIsIgnoredAndItsUnitKept) {
  // The same triangle, once in millimetres authored Z-up, once in centimetres authored Y-up.
  MeshFileLoader loader;
  const MeshFileLoadResult& zUp = loader.load(a_data + "/triangle_mm_zup.dae");
  const MeshFileLoadResult& yUp = loader.load(a_data + "/triangle_cm_yup.dae");
  ASSERT_EQ(zUp.error, "");
  ASSERT_EQ(yUp.error, "");
  ASSERT_EQ(zUp.parts.size(), 1u);
  ASSERT_EQ(yUp.parts.size(), 1u);
  const TriangleMesh& a = zUp.parts[0].triangles;
  const TriangleMesh& b = yUp.parts[0].triangles;
  ASSERT_EQ(a.positions.size(), 3u);
  ASSERT_EQ(b.positions.size(), 3u);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_TRUE(a.positions[i].positionEquals(b.positions[i], 1e-6f)) << i << ": " << a.positions[i] << " " << b.positions[i];
  }
  EXPECT_EQ(a.indices, b.indices);
  EXPECT_TRUE(boundsOf(yUp).getMaximum().positionEquals(Ogre::Vector3(0.05f, 0.0f, 0.1f), 1e-6f)) << boundsOf(yUp);
}

TEST(MeshFileLoader, ZeroOpacityIsTakenAsOpaque) {
  MeshFileLoader loader;
  const MeshFileLoadResult& quad = loader.load(a_data + "/looks/zero_opacity_quad.dae");
  ASSERT_EQ(quad.error, "");
  ASSERT_EQ(quad.parts.size(), 1u);
  EXPECT_TRUE(quad.parts[0].hasColour);
  EXPECT_FLOAT_EQ(quad.parts[0].colour.a, 1.0f);
  EXPECT_FLOAT_EQ(quad.parts[0].colour.r, 1.0f);
  EXPECT_FLOAT_EQ(quad.parts[0].colour.g, 0.0f);
}

TEST(MeshFileLoader, ReadsTextureCoordinatesAndTheTextureNextToTheMesh) {
  MeshFileLoader loader;
  for (const char* file : {"/looks/textured_quad.obj", "/looks/textured_quad.dae"}) {
    const MeshFileLoadResult& quad = loader.load(a_data + file);
    ASSERT_EQ(quad.error, "") << file;
    ASSERT_EQ(quad.parts.size(), 1u) << file;
    const TriangleMesh& triangles = quad.parts[0].triangles;
    ASSERT_EQ(triangles.texCoords.size(), triangles.positions.size()) << file;
    // u along +Y; v down the image, as OGRE reads it: the top edge (+Z) has v = 0.
    for (std::size_t i = 0; i < triangles.positions.size(); ++i) {
      EXPECT_NEAR(triangles.texCoords[i].x, triangles.positions[i].y > 0 ? 1.0f : 0.0f, 1e-5f) << file;
      EXPECT_NEAR(triangles.texCoords[i].y, triangles.positions[i].z > 0 ? 0.0f : 1.0f, 1e-5f) << file;
    }
  }
  EXPECT_EQ(loader.load(a_data + "/looks/textured_quad.obj").parts[0].texture, a_data + "/looks/red_green.png");
  EXPECT_EQ(loader.load(a_data + "/looks/textured_quad.dae").parts[0].texture, a_data + "/looks/blue_yellow.png");
  EXPECT_EQ(loader.load(a_data + "/looks/uv_quad.obj").parts[0].texture, "");
}

TEST(MeshFileLoader, ReadsVertexColours) {
  MeshFileLoader loader;
  const MeshFileLoadResult& quad = loader.load(a_data + "/looks/vertex_colours.ply");
  ASSERT_EQ(quad.error, "");
  ASSERT_EQ(quad.parts.size(), 1u);
  const TriangleMesh& triangles = quad.parts[0].triangles;
  ASSERT_TRUE(quad.parts[0].hasVertexColours());
  ASSERT_EQ(triangles.colours.size(), triangles.positions.size());
  for (std::size_t i = 0; i < triangles.positions.size(); ++i) {
    const Ogre::ColourValue wanted = triangles.positions[i].y < 0 ? Ogre::ColourValue::Red : Ogre::ColourValue::Blue;
    EXPECT_EQ(triangles.colours[i], wanted) << i;
  }
  EXPECT_FALSE(loader.load(a_data + "/cube.stl").parts[0].hasVertexColours());
}

TEST(MeshFileLoader, ReportsMissingAndBrokenFiles) {
  MeshFileLoader loader;
  EXPECT_NE(loader.load(a_data + "/absent.stl").error.find("not found"), std::string::npos);
  EXPECT_NE(loader.load(a_data + "/not_a_mesh.stl").error, "");
  EXPECT_TRUE(loader.load(a_data + "/not_a_mesh.stl").parts.empty());
  EXPECT_NE(loader.load(a_data).error, "") << "a folder is not a mesh";
}

// The file's content changes behind the loader's back, keeping its size and
// time: a loader that read the file again would see the larger cube.
TEST(MeshFileLoader, ReadsEachFileOnce) {
  testing::TemporaryFolder folder;
  const std::string file = (folder.path() / "part.stl").string();
  std::filesystem::copy_file(a_data + "/cube.stl", file);
  MeshFileLoader loader;
  ASSERT_EQ(loader.load(file).error, "");
  const auto written = std::filesystem::last_write_time(file);
  const auto bytes = std::filesystem::file_size(file);

  std::ifstream in(file);
  std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  for (std::size_t at = text.find("vertex"); at != std::string::npos; at = text.find("vertex", at + 1)) {
    for (std::size_t i = at; i < text.size() && text[i] != '\n'; ++i) {
      if (text[i] == '1') text[i] = '2';
    }
  }
  folder.write("part.stl", text);
  std::filesystem::last_write_time(file, written);
  ASSERT_EQ(std::filesystem::file_size(file), bytes);

  EXPECT_TRUE(boundsOf(loader.load(file)).getSize().positionEquals(Ogre::Vector3(2, 2, 2), 1e-5f))
      << "an unchanged file (same time, same size) is not read again";
  EXPECT_TRUE(boundsOf(MeshFileLoader().load(file)).getSize().positionEquals(Ogre::Vector3(4, 4, 4), 1e-5f))
      << "the file on disk did change";
}

// The robot's mesh file, rewritten by the user as the viewer runs.
class ChangingMeshFile : public ::testing::Test {
 protected:
  void writeFrom(const std::string& source) {
    std::filesystem::copy_file(source, m_file, std::filesystem::copy_options::overwrite_existing);
  }
  void writeText(const std::string& text) { m_folder.write("part.stl", text); }

  testing::TemporaryFolder m_folder;
  std::string m_file = (m_folder.path() / "part.stl").string();
  MeshFileLoader m_loader;
};

TEST_F(ChangingMeshFile, IsReadAgainWithItsNewContent) {
  writeFrom(a_data + "/cube.stl");
  EXPECT_EQ(m_loader.load(m_file).parts[0].triangles.triangleCount(), 12u);
  writeFrom(a_data + "/tetrahedron_binary.stl");
  const MeshFileLoadResult& changed = m_loader.load(m_file);
  ASSERT_EQ(changed.error, "");
  EXPECT_EQ(changed.parts[0].triangles.triangleCount(), 4u);
}

TEST_F(ChangingMeshFile, CaughtHalfWrittenKeepsItsLastGoodContentAndSaysSo) {
  writeFrom(a_data + "/cube.stl");
  ASSERT_EQ(m_loader.load(m_file).error, "");
  ku::log::RecordCapture capture;
  writeText("solid part\n  facet normal 0 0 1\n    outer loop\n      vertex 0 0");
  const MeshFileLoadResult& kept = m_loader.load(m_file);
  EXPECT_EQ(kept.error, "");
  ASSERT_EQ(kept.parts.size(), 1u);
  EXPECT_EQ(kept.parts[0].triangles.triangleCount(), 12u);
  EXPECT_EQ(capture.count(ku::log::Warning, "rdr.scene", "changed and cannot be read now"), 1);
  // Asked again before the next change: no second record.
  m_loader.load(m_file);
  EXPECT_EQ(capture.count(ku::log::Warning, "rdr.scene", "changed and cannot be read now"), 1);
  // The write finishes.
  writeFrom(a_data + "/tetrahedron_binary.stl");
  EXPECT_EQ(m_loader.load(m_file).parts[0].triangles.triangleCount(), 4u);
}

TEST_F(ChangingMeshFile, ABrokenFileThatIsMendedShowsItsContent) {
  writeText("not a mesh at all");
  EXPECT_NE(m_loader.load(m_file).error, "");
  writeFrom(a_data + "/cube.stl");
  const MeshFileLoadResult& mended = m_loader.load(m_file);
  EXPECT_EQ(mended.error, "");
  EXPECT_EQ(mended.parts.size(), 1u);
}

TEST_F(ChangingMeshFile, ARemovedFileKeepsItsLastGoodContent) {
  writeFrom(a_data + "/cube.stl");
  ASSERT_EQ(m_loader.load(m_file).error, "");
  std::filesystem::remove(m_file);  // an editor saving by replacing the file
  EXPECT_EQ(m_loader.load(m_file).parts[0].triangles.triangleCount(), 12u);
}

}  // namespace
}  // namespace VX::NextGenView
