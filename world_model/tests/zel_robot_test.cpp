#include <algorithm>
#include <cmath>
#include <filesystem>
#include <limits>

#include <gtest/gtest.h>

#include <world_model/bundled_robot.h>
#include <world_model/robot.h>

#include "test_support.h"

namespace VX::NextGenView {
namespace {

using Names = std::vector<std::string>;

// The lowest and highest world z a visual reaches.
std::pair<float, float> heightRange(const MK::Math::Transform& pose, const Visual& visual) {
  const Eigen::Vector3f centre = pose.translation();
  const Eigen::Vector3f axis = pose.applyToVector(Eigen::Vector3f::UnitZ());
  switch (visual.shape) {
    case Visual::Shape::Box: {
      float low = std::numeric_limits<float>::max();
      float high = std::numeric_limits<float>::lowest();
      for (int corner = 0; corner < 8; ++corner) {
        const Eigen::Vector3f local((corner & 1 ? 0.5f : -0.5f) * visual.boxSize.x(),
                                    (corner & 2 ? 0.5f : -0.5f) * visual.boxSize.y(),
                                    (corner & 4 ? 0.5f : -0.5f) * visual.boxSize.z());
        const float z = (centre + pose.applyToVector(local)).z();
        low = std::min(low, z);
        high = std::max(high, z);
      }
      return {low, high};
    }
    case Visual::Shape::Cylinder: {
      const float rim = visual.radius * std::sqrt(std::max(0.0f, 1.0f - axis.z() * axis.z()));
      const float half = std::fabs(axis.z()) * visual.length / 2.0f;
      return {centre.z() - half - rim, centre.z() + half + rim};
    }
    default:
      return {centre.z() - visual.radius, centre.z() + visual.radius};
  }
}

class ZelTest : public ::testing::Test {
 protected:
  void SetUp() override {
    m_file = bundledRobotFile("zel");
    ASSERT_FALSE(m_file.empty());
    const RobotLoadResult result = Robot::loadFromUrdfFile(m_file);
    ASSERT_TRUE(result.robot) << result.error;
    m_robot = result.robot;
  }

  // Lowest and highest point of the given links' visuals (all links when empty).
  std::pair<float, float> extent(const Names& links = {}) const {
    std::pair<float, float> range{std::numeric_limits<float>::max(), std::numeric_limits<float>::lowest()};
    for (const boost::shared_ptr<Link>& link : m_robot->links()) {
      if (!links.empty() && std::find(links.begin(), links.end(), link->name()) == links.end()) continue;
      for (const Visual& visual : link->visuals()) {
        const auto [low, high] = heightRange(link->globalTransform() * visual.origin, visual);
        range.first = std::min(range.first, low);
        range.second = std::max(range.second, high);
      }
    }
    return range;
  }

  boost::shared_ptr<JointController> controller(const std::string& joint) const {
    for (const auto& candidate : m_robot->jointControllers()) {
      if (candidate->name() == joint + "_controller") return candidate;
    }
    return nullptr;
  }

  std::string m_file;
  boost::shared_ptr<Robot> m_robot;
};

TEST_F(ZelTest, IsTheStagedCopyOfTheSources) {
  EXPECT_EQ(std::filesystem::path(m_file).filename(), "zel.urdf");
  EXPECT_EQ(m_robot->name(), "zel");
  EXPECT_EQ(m_robot->rootLink()->name(), "TorsoLink");
  EXPECT_EQ(m_robot->link("TorsoLink"), m_robot->rootLink());
  EXPECT_EQ(m_robot->actuatorsTreeName("TorsoLink"), "");
}

TEST_F(ZelTest, HasItsFiveChainsInOrder) {
  Names chains;
  for (const auto& chain : m_robot->rootTree()->children()) chains.push_back(chain->name());
  EXPECT_EQ(chains, (Names{"Head", "LArm", "RArm", "LLeg", "RLeg"}));

  const auto names = [](const std::vector<boost::shared_ptr<Link>>& links) {
    Names result;
    for (const auto& link : links) result.push_back(link->name());
    return result;
  };
  EXPECT_EQ(names(m_robot->linksTree("Head")), (Names{"NeckLink", "HeadLink"}));
  EXPECT_EQ(names(m_robot->linksTree("LArm")),
            (Names{"LShoulderLink", "LBicepLink", "LElbowLink", "LForeArmLink", "LHandLink", "LThumbLink"}));
  EXPECT_EQ(names(m_robot->linksTree("RArm")),
            (Names{"RShoulderLink", "RBicepLink", "RElbowLink", "RForeArmLink", "RHandLink", "RThumbLink"}));
  EXPECT_EQ(names(m_robot->linksTree("LLeg")),
            (Names{"LPelvisLink", "LHipLink", "LThighLink", "LTibiaLink", "LAnkleLink", "LFootLink"}));
  EXPECT_EQ(names(m_robot->linksTree("RLeg")),
            (Names{"RPelvisLink", "RHipLink", "RThighLink", "RTibiaLink", "RAnkleLink", "RFootLink"}));
  EXPECT_EQ(m_robot->actuatorsTreeName("RFootLink"), "RLeg");
  EXPECT_EQ(m_robot->actuatorsTreeName("HeadLink"), "Head");

  Names armActuators;
  for (const auto& actuator : m_robot->rootTree()->children()[1]->actuators()) armActuators.push_back(actuator->name());
  EXPECT_EQ(armActuators, (Names{"LShoulderPitch", "LShoulderRoll", "LElbowYaw", "LElbowRoll", "LWristYaw", "LHand"}));
}

TEST_F(ZelTest, EveryJointHasItsActuatorAndController) {
  EXPECT_GE(m_robot->actuators().size(), 24u);
  EXPECT_LE(m_robot->actuators().size(), 28u);
  EXPECT_EQ(m_robot->jointControllers().size(), m_robot->actuators().size());
  for (const auto& actuator : m_robot->actuators()) {
    const boost::shared_ptr<JointController> handle = controller(actuator->name());
    ASSERT_TRUE(handle) << actuator->name();
    EXPECT_EQ(handle->actuator(), actuator);
    EXPECT_LT(actuator->lowerLimit(), actuator->upperLimit()) << actuator->name();
    EXPECT_LE(actuator->lowerLimit(), 0.0f) << actuator->name();
    EXPECT_GE(actuator->upperLimit(), 0.0f) << actuator->name();
    EXPECT_GT(actuator->maxVelocity(), 1.0f) << actuator->name();
  }
}

TEST_F(ZelTest, LeftJointsHaveRightTwins) {
  const std::vector<std::pair<std::string, bool>> joints = {
      {"ShoulderPitch", false}, {"ShoulderRoll", true}, {"ElbowYaw", true},   {"ElbowRoll", true},
      {"WristYaw", true},       {"Hand", false},        {"HipYawPitch", false}, {"HipRoll", true},
      {"HipPitch", false},      {"KneePitch", false},   {"AnklePitch", false}, {"AnkleRoll", true}};
  for (const auto& [joint, reversed] : joints) {
    const boost::shared_ptr<JointController> left = controller("L" + joint);
    const boost::shared_ptr<JointController> right = controller("R" + joint);
    ASSERT_TRUE(left && right) << joint;
    EXPECT_EQ(left->mirrorController(), right) << joint;
    EXPECT_EQ(right->mirrorController(), left) << joint;
    EXPECT_EQ(left->mirrorReversed(), reversed) << joint;
    // Mirrored motions stay within both sides' limits.
    const float sign = reversed ? -1.0f : 1.0f;
    const auto leftActuator = left->actuator();
    const auto rightActuator = right->actuator();
    EXPECT_FLOAT_EQ(std::min(sign * leftActuator->lowerLimit(), sign * leftActuator->upperLimit()),
                    rightActuator->lowerLimit())
        << joint;
    EXPECT_FLOAT_EQ(rightActuator->maxVelocity(), leftActuator->maxVelocity()) << joint;
  }
  EXPECT_FALSE(controller("HeadYaw")->mirrorController());
  EXPECT_FALSE(controller("HeadPitch")->mirrorController());
}

TEST_F(ZelTest, StandsOnTheGroundAboutHalfAMetreTall) {
  const auto [low, high] = extent();
  EXPECT_NEAR(low, 0.0f, 1e-4f);
  EXPECT_NEAR(high, 0.55f, 0.02f);
  EXPECT_NEAR(extent({"LFootLink"}).first, 0.0f, 1e-4f);
  EXPECT_NEAR(extent({"RFootLink"}).first, 0.0f, 1e-4f);
  EXPECT_NEAR(m_robot->basePosition().z, 0.33f, 1e-6f);
}

TEST_F(ZelTest, FacesPlusXWithItsLeftOnPlusY) {
  EXPECT_GT(test::translationOf(m_robot->link("LShoulderLink")).y(), 0.05f);
  EXPECT_LT(test::translationOf(m_robot->link("RShoulderLink")).y(), -0.05f);
  // The feet reach further forward than back.
  const auto& foot = m_robot->link("LFootLink")->visuals();
  float front = 0.0f;
  for (const Visual& visual : foot) front = std::max(front, visual.origin.translation().x());
  EXPECT_GT(front, 0.01f);
  // The eyes are on the front of the head, one on each side.
  int eyes = 0;
  for (const Visual& visual : m_robot->link("HeadLink")->visuals()) {
    if (visual.shape == Visual::Shape::Sphere && visual.origin.translation().x() > 0.04f) ++eyes;
  }
  EXPECT_EQ(eyes, 2);
}

TEST_F(ZelTest, EveryLinkIsDrawnInColour) {
  for (const auto& link : m_robot->links()) {
    EXPECT_FALSE(link->visuals().empty()) << link->name();
    for (const Visual& visual : link->visuals()) EXPECT_TRUE(visual.hasColor) << link->name();
  }
  EXPECT_GE(m_robot->rootLink()->visuals().size(), 4u);
}

TEST_F(ZelTest, KneeBendMovesTheFootBackAndUp) {
  const Eigen::Vector3f before = test::translationOf(m_robot->link("LFootLink"));
  m_robot->actuator("LKneePitch")->m_value = 1.0f;
  m_robot->updateKinematics();
  const Eigen::Vector3f after = test::translationOf(m_robot->link("LFootLink"));
  EXPECT_LT(after.x(), before.x() - 0.05f);
  EXPECT_GT(after.z(), before.z() + 0.03f);
  EXPECT_TRUE(test::translationOf(m_robot->link("RFootLink")).isApprox(
      Eigen::Vector3f(before.x(), -before.y(), before.z())));
}

}  // namespace
}  // namespace VX::NextGenView
