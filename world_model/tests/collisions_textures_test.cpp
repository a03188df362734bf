// Each link's <collision> geometry next to its visuals, and material
// textures resolved like mesh files.
#include <filesystem>

#include <gtest/gtest.h>

#include <world_model/robot.h>

#include "test_support.h"

namespace VX::NextGenView {
namespace {

namespace fs = std::filesystem;

std::string packageFile(const std::string& relative) {
  return fs::path(test::dataFile("looks_pkg/" + relative)).lexically_normal().string();
}

class CollisionsTextures : public ::testing::Test {
 protected:
  void SetUp() override {
    m_robot = test::loadRobot("looks_pkg/urdf/collisions_textures.urdf");
    ASSERT_TRUE(m_robot);
  }
  boost::shared_ptr<Robot> m_robot;
};

TEST_F(CollisionsTextures, CollisionShapesKeepTheirSizesAndOrigins) {
  const std::vector<Visual>& collisions = m_robot->link("base")->collisions();
  ASSERT_EQ(collisions.size(), 3u);
  EXPECT_EQ(collisions[0].shape, Visual::Shape::Box);
  EXPECT_TRUE(collisions[0].boxSize.isApprox(Eigen::Vector3f(0.2f, 0.3f, 0.4f)));
  EXPECT_TRUE(collisions[0].origin.isApprox(MK::Math::Transform::fromPosition(0.0f, 0.0f, 0.1f) *
                                            MK::Math::Transform::fromRotZ(1.5707963f)));
  EXPECT_EQ(collisions[1].shape, Visual::Shape::Cylinder);
  EXPECT_FLOAT_EQ(collisions[1].radius, 0.05f);
  EXPECT_FLOAT_EQ(collisions[1].length, 0.3f);
  EXPECT_EQ(collisions[2].shape, Visual::Shape::Mesh);
  EXPECT_EQ(collisions[2].meshFile, packageFile("meshes/hull.stl"));
  EXPECT_TRUE(collisions[2].meshScale.isApprox(Eigen::Vector3f(2, 2, 2)));
  for (const Visual& collision : collisions) EXPECT_FALSE(collision.hasColor);
  EXPECT_EQ(m_robot->link("base")->visuals().size(), 2u) << "visuals stay apart";
}

TEST_F(CollisionsTextures, ALinkMayHaveOnlyCollisionGeometry) {
  const auto bumper = m_robot->link("bumper");
  ASSERT_TRUE(bumper);
  EXPECT_TRUE(bumper->visuals().empty());
  ASSERT_EQ(bumper->collisions().size(), 1u);
  EXPECT_EQ(bumper->collisions()[0].shape, Visual::Shape::Sphere);
  EXPECT_FLOAT_EQ(bumper->collisions()[0].radius, 0.07f);
}

TEST_F(CollisionsTextures, MaterialTexturesResolveLikeMeshFiles) {
  const std::vector<Visual>& visuals = m_robot->link("base")->visuals();
  ASSERT_EQ(visuals.size(), 2u);
  EXPECT_EQ(visuals[0].textureFile, packageFile("textures/skin.png"));
  EXPECT_TRUE(visuals[0].hasColor) << "the colour stays with the texture";
  EXPECT_TRUE(visuals[0].rgba.isApprox(Eigen::Vector4f(0.9f, 0.8f, 0.7f, 1.0f)));
  EXPECT_EQ(visuals[1].textureFile, packageFile("textures/inline.png"));
  EXPECT_FALSE(visuals[1].hasColor);
}

TEST(Collisions, NonFiniteCollisionNumbersAreRefused) {
  const RobotLoadResult result = Robot::loadFromUrdfString(
      "<robot name='r'><link name='a'><collision>"
      "<geometry><box size='0.1 1e39 0.1'/></geometry></collision></link></robot>",
      "");
  EXPECT_FALSE(result.robot);
  EXPECT_NE(result.error.find("the link \"a\" has a collision whose origin or size is not a finite number"),
            std::string::npos)
      << result.error;
}

}  // namespace
}  // namespace VX::NextGenView
