// Triangle counts and errors of visuals, found without OGRE's root.
#include <gtest/gtest.h>

#include <scene_view/visual_inspection.h>

namespace VX::NextGenView {
namespace {

const std::string a_data = SCENE_VIEW_TEST_DATA;

Visual meshVisual(const std::string& file) {
  Visual visual;
  visual.shape = Visual::Shape::Mesh;
  visual.meshFile = a_data + "/" + file;
  visual.meshReference = file;
  return visual;
}

TEST(VisualInspection, CountsTheTrianglesOfMeshFiles) {
  EXPECT_EQ(inspectMeshFile(a_data + "/cube.stl").triangles, 12u);
  EXPECT_EQ(inspectMeshFile(a_data + "/cube.stl").error, "");
  EXPECT_EQ(inspectMeshFile(a_data + "/tetrahedron.obj").triangles, 4u);
  EXPECT_EQ(inspectVisual(meshVisual("tetrahedron.obj")).triangles, 4u);
}

TEST(VisualInspection, ReportsMissingAndUnreadableMeshes) {
  const VisualInspection broken = inspectMeshFile(a_data + "/not_a_mesh.stl");
  EXPECT_EQ(broken.triangles, 0u);
  EXPECT_NE(broken.error.find("not_a_mesh.stl"), std::string::npos) << broken.error;
  Visual missing = meshVisual("gone.stl");
  missing.meshFileFound = false;
  EXPECT_NE(inspectVisual(missing).error.find("\"gone.stl\" not found"), std::string::npos);
}

TEST(VisualInspection, CountsGeneratedShapesAndRefusesEmptyOnes) {
  Visual box;
  box.boxSize = Eigen::Vector3f(0.1f, 0.2f, 0.3f);
  EXPECT_EQ(inspectVisual(box).triangles, 12u);
  box.boxSize.y() = 0.0f;
  EXPECT_EQ(inspectVisual(box).error, "box without a size");
  Visual sphere;
  sphere.shape = Visual::Shape::Sphere;
  EXPECT_EQ(inspectVisual(sphere).error, "sphere without a radius");
  sphere.radius = 0.1f;
  EXPECT_GT(inspectVisual(sphere).triangles, 100u);
}

}  // namespace
}  // namespace VX::NextGenView
