#include <gtest/gtest.h>

#include <world_model/actuators_tree.h>
#include <world_model/robot.h>

#include "test_support.h"

namespace VX::NextGenView {
namespace {

using test::loadRobot;

std::vector<std::string> chainNames(const boost::shared_ptr<Robot>& robot) {
  std::vector<std::string> names;
  for (const boost::shared_ptr<ActuatorsTree>& chain : robot->rootTree()->children()) names.push_back(chain->name());
  return names;
}

std::vector<std::string> linkNames(const std::vector<boost::shared_ptr<Link>>& links) {
  std::vector<std::string> names;
  for (const boost::shared_ptr<Link>& link : links) names.push_back(link->name());
  return names;
}

std::vector<std::string> actuatorNames(const boost::shared_ptr<ActuatorsTree>& chain) {
  std::vector<std::string> names;
  for (const boost::shared_ptr<Actuator>& actuator : chain->actuators()) names.push_back(actuator->name());
  return names;
}

using Names = std::vector<std::string>;

TEST(ChainsWithoutAnnotation, EachBranchOfTheRootIsAChain) {
  const boost::shared_ptr<Robot> robot = loadRobot("chains_plain.urdf");
  ASSERT_TRUE(robot);
  EXPECT_EQ(robot->rootTree()->name(), "plain");
  EXPECT_EQ(chainNames(robot), (Names{"head", "left_upper", "right_upper"}));
  // Depth first, siblings in document order; the fixed joint's link is in, not its joint.
  EXPECT_EQ(linkNames(robot->linksTree("left_upper")), (Names{"left_upper", "left_lower", "left_tool", "left_finger"}));
  EXPECT_EQ(actuatorNames(robot->rootTree()->children()[1]), (Names{"left_shoulder", "left_elbow", "left_finger_joint"}));
  EXPECT_EQ(linkNames(robot->linksTree("head")), (Names{"head"}));
  EXPECT_EQ(robot->actuatorsTreeName("left_finger"), "left_upper");
  EXPECT_EQ(robot->actuatorsTreeName("right_lower"), "right_upper");
  EXPECT_EQ(robot->actuatorsTreeName("body"), "");
  EXPECT_EQ(robot->actuatorsTreeName("no_such_link"), "");
  EXPECT_TRUE(robot->linksTree("no_such_chain").empty());
}

TEST(ChainsWithoutAnnotation, RobotLinksFollowTheTreeRootFirst) {
  const boost::shared_ptr<Robot> robot = loadRobot("chains_plain.urdf");
  ASSERT_TRUE(robot);
  EXPECT_EQ(linkNames(robot->links()), (Names{"body", "head", "left_upper", "left_lower", "left_tool", "left_finger",
                                              "right_upper", "right_lower"}));
}

TEST(ChainsFromAnnotation, FollowTheAnnotationsInOrder) {
  const boost::shared_ptr<Robot> robot = loadRobot("chains_annotated.urdf");
  ASSERT_TRUE(robot);
  EXPECT_EQ(chainNames(robot), (Names{"Arm", "UpperBody"}));
  // The arm's subtree belongs to the arm, not to the upper body around it.
  EXPECT_EQ(linkNames(robot->linksTree("UpperBody")), (Names{"chest", "head"}));
  EXPECT_EQ(linkNames(robot->linksTree("Arm")), (Names{"upper_arm", "forearm"}));
  EXPECT_EQ(actuatorNames(robot->rootTree()->children()[0]), (Names{"shoulder", "elbow"}));
  EXPECT_EQ(actuatorNames(robot->rootTree()->children()[1]), (Names{"waist", "neck"}));
  EXPECT_EQ(robot->actuatorsTreeName("forearm"), "Arm");
  EXPECT_EQ(robot->actuatorsTreeName("head"), "UpperBody");
  EXPECT_EQ(robot->actuatorsTreeName("pelvis"), "");
  EXPECT_EQ(robot->actuatorsTreeName("leg"), "");
  EXPECT_TRUE(robot->rootTree()->children()[0]->children().empty());
}

TEST(ChainsFromAnnotation, ChainStartingAtAnUnknownLinkIsAnError) {
  const RobotLoadResult result = Robot::loadFromUrdfFile(test::dataFile("errors/bad_chain.urdf"));
  EXPECT_FALSE(result.robot);
  EXPECT_NE(result.error.find("nowhere"), std::string::npos) << result.error;
  EXPECT_NE(result.error.find("line 3"), std::string::npos) << result.error;
}

}  // namespace
}  // namespace VX::NextGenView
