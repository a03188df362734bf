#include <filesystem>

#include <gtest/gtest.h>

#include <world_model/robot.h>

#include "test_support.h"

namespace VX::NextGenView {
namespace {

namespace fs = std::filesystem;

class VisualsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    m_robot = test::loadRobot("visual_pkg/urdf/visuals.urdf");
    ASSERT_TRUE(m_robot);
  }
  const std::vector<Visual>& visualsOf(const std::string& link) const { return m_robot->link(link)->visuals(); }
  static std::string packageFile(const std::string& relative) {
    return fs::path(test::dataFile("visual_pkg/" + relative)).lexically_normal().string();
  }

  boost::shared_ptr<Robot> m_robot;
};

TEST_F(VisualsTest, ShapesKeepTheirSizesAndOrigins) {
  const std::vector<Visual>& visuals = visualsOf("base");
  ASSERT_EQ(visuals.size(), 4u);
  EXPECT_EQ(visuals[0].shape, Visual::Shape::Box);
  EXPECT_TRUE(visuals[0].boxSize.isApprox(Eigen::Vector3f(0.4f, 0.5f, 0.6f)));
  EXPECT_TRUE(visuals[0].origin.isApprox(MK::Math::Transform::fromPosition(0.1f, 0.2f, 0.3f) *
                                         MK::Math::Transform::fromRotZ(1.5707963f)));
  EXPECT_EQ(visuals[1].shape, Visual::Shape::Cylinder);
  EXPECT_FLOAT_EQ(visuals[1].radius, 0.05f);
  EXPECT_FLOAT_EQ(visuals[1].length, 0.3f);
  EXPECT_TRUE(visuals[1].origin.isApprox(MK::Math::Transform()));
  EXPECT_EQ(visuals[2].shape, Visual::Shape::Sphere);
  EXPECT_FLOAT_EQ(visuals[2].radius, 0.25f);
}

TEST_F(VisualsTest, ColoursComeFromRobotLevelAndInlineMaterials) {
  const std::vector<Visual>& visuals = visualsOf("base");
  ASSERT_EQ(visuals.size(), 4u);
  // Both visuals naming the robot-level "blue", not only the first one.
  for (int i : {0, 1}) {
    EXPECT_TRUE(visuals[i].hasColor) << i;
    EXPECT_TRUE(visuals[i].rgba.isApprox(Eigen::Vector4f(0, 0, 1, 1))) << i;
  }
  EXPECT_TRUE(visuals[2].hasColor);
  EXPECT_TRUE(visuals[2].rgba.isApprox(Eigen::Vector4f(1, 0.5f, 0, 0.8f)));
  EXPECT_FALSE(visuals[3].hasColor);
}

TEST_F(VisualsTest, MeshFilesResolveToAbsolutePaths) {
  const std::vector<Visual>& visuals = visualsOf("tool");
  ASSERT_EQ(visuals.size(), 3u);
  EXPECT_EQ(visuals[0].shape, Visual::Shape::Mesh);
  EXPECT_EQ(visuals[0].meshFile, packageFile("meshes/wedge.stl"));
  EXPECT_TRUE(visuals[0].meshScale.isApprox(Eigen::Vector3f(0.5f, 2, 3)));
  EXPECT_FALSE(visuals[0].hasColor);  // a texture, no colour
  EXPECT_EQ(visuals[1].meshFile, packageFile("meshes/wedge.stl"));
  EXPECT_TRUE(visuals[1].meshScale.isApprox(Eigen::Vector3f::Ones()));
  // A material defined inline in another link is found by its name.
  EXPECT_TRUE(visuals[1].hasColor);
  EXPECT_TRUE(visuals[1].rgba.isApprox(Eigen::Vector4f(1, 0.5f, 0, 0.8f)));
  // A package that is nowhere: the path inside it, next to the description.
  EXPECT_EQ(visuals[2].meshFile, packageFile("urdf/parts/gear.dae"));
  EXPECT_TRUE(fs::path(visuals[2].meshFile).is_absolute());
}

TEST(VisualsFromText, RelativeMeshesResolveAgainstTheGivenFolder) {
  const RobotLoadResult result = Robot::loadFromUrdfString(
      R"(<robot name="r"><link name="a"><visual><geometry><mesh filename="m/part.obj"/></geometry></visual></link></robot>)",
      "/opt/robots/r");
  ASSERT_TRUE(result.robot) << result.error;
  ASSERT_EQ(result.robot->rootLink()->visuals().size(), 1u);
  EXPECT_EQ(result.robot->rootLink()->visuals()[0].meshFile, "/opt/robots/r/m/part.obj");
}

}  // namespace
}  // namespace VX::NextGenView
