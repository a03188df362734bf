#include <gtest/gtest.h>

#include <world_model/robot.h>

#include "test_support.h"

namespace VX::NextGenView {
namespace {

using test::CapturedRecords;
using test::dataFile;

// Loads a malformed file: no robot, and an error naming every fragment.
void expectError(const std::string& file, const std::vector<std::string>& fragments) {
  CapturedRecords captured;
  const std::string path = dataFile(file);
  const RobotLoadResult result = Robot::loadFromUrdfFile(path);
  EXPECT_FALSE(result.robot) << file;
  // The message starts with the file's path, and the failure leaves an error record.
  ASSERT_EQ(result.error.rfind(path + ": ", 0), 0u) << result.error;
  EXPECT_EQ(captured.count(2, path), 1) << file;
  const std::string cause = result.error.substr(path.size() + 2);
  for (const std::string& fragment : fragments) {
    EXPECT_NE(cause.find(fragment), std::string::npos) << file << ": \"" << cause << "\" lacks \"" << fragment << "\"";
  }
}

TEST(UrdfErrors, MissingFile) { expectError("errors/not_there.urdf", {"does not exist"}); }

TEST(UrdfErrors, FolderInsteadOfFile) { expectError("errors", {"a folder, not a robot description"}); }

// The <visual> opened on line 5 is never closed.
TEST(UrdfErrors, XmlSyntaxErrorGivesItsLine) {
  expectError("errors/syntax_error.urdf", {"XML syntax error at line 5", "MISMATCHED_ELEMENT", "visual"});
}

TEST(UrdfErrors, EmptyFile) { expectError("errors/empty.urdf", {"description is empty"}); }

TEST(UrdfErrors, BlankFile) { expectError("errors/blank.urdf", {"description is empty"}); }

TEST(UrdfErrors, NoLinks) { expectError("errors/no_links.urdf", {"hollow", "no link"}); }

TEST(UrdfErrors, NoRootLink) { expectError("errors/no_root.urdf", {"no root link"}); }

TEST(UrdfErrors, SeveralRootLinks) { expectError("errors/two_roots.urdf", {"several root links", "left_half", "right_half"}); }

TEST(UrdfErrors, JointNamingAnUnknownLink) {
  expectError("errors/unknown_link.urdf", {"line 10", "elbow", "unknown child link", "forearm"});
}

TEST(UrdfErrors, UnknownJointType) { expectError("errors/unknown_type.urdf", {"rail", "unknown type", "screw", "line 5"}); }

TEST(UrdfErrors, ParserRejectionIsReported) {
  // The joint lacks its limits; urdfdom's own explanation comes through.
  expectError("errors/missing_limit.urdf", {"URDF parser", "shoulder"});
}

TEST(UrdfErrors, ZeroAxis) { expectError("errors/zero_axis.urdf", {"shoulder", "axis"}); }

TEST(UrdfErrors, EmptyText) {
  const RobotLoadResult result = Robot::loadFromUrdfString("");
  EXPECT_FALSE(result.robot);
  EXPECT_EQ(result.error, "the robot description is empty");
}

TEST(UrdfErrors, TextThatIsNotARobot) {
  const RobotLoadResult notRobot = Robot::loadFromUrdfString("<world name=\"w\"/>");
  EXPECT_FALSE(notRobot.robot);
  EXPECT_NE(notRobot.error.find("<world>"), std::string::npos) << notRobot.error;

  const RobotLoadResult nameless = Robot::loadFromUrdfString("<robot>\n<link name=\"a\"/></robot>");
  EXPECT_FALSE(nameless.robot);
  EXPECT_NE(nameless.error.find("no name"), std::string::npos) << nameless.error;

  const RobotLoadResult garbage = Robot::loadFromUrdfString("\n\nthis is not XML <<<");
  EXPECT_FALSE(garbage.robot);
  EXPECT_NE(garbage.error.find("line 3"), std::string::npos) << garbage.error;
}

TEST(UrdfErrors, DuplicateNames) {
  const RobotLoadResult links = Robot::loadFromUrdfString("<robot name=\"r\">\n<link name=\"a\"/>\n<link name=\"a\"/></robot>");
  EXPECT_FALSE(links.robot);
  EXPECT_NE(links.error.find("line 3: the link \"a\" is defined twice"), std::string::npos) << links.error;
}

TEST(UrdfErrors, SmallestValidRobotLoads) {
  const RobotLoadResult result = Robot::loadFromUrdfString("<robot name=\"dot\"><link name=\"only\"/></robot>");
  ASSERT_TRUE(result.robot) << result.error;
  EXPECT_EQ(result.error, "");
  EXPECT_EQ(result.robot->name(), "dot");
  EXPECT_TRUE(result.robot->actuators().empty());
  EXPECT_TRUE(result.robot->rootTree()->children().empty());
  EXPECT_EQ(result.robot->link("TorsoLink"), result.robot->rootLink());
}

// A two-link robot whose joint or visual carries the given text.
std::string twoLinks(const std::string& origin, const std::string& axis, const std::string& limit,
                     const std::string& visual = "<box size='0.1 0.1 0.1'/>") {
  return "<robot name='r'><link name='a'><visual><geometry>" + visual +
         "</geometry></visual></link><link name='b'/>"
         "<joint name='j' type='revolute'><parent link='a'/><child link='b'/><origin xyz='" + origin +
         "'/><axis xyz='" + axis + "'/><limit " + limit + " effort='1' velocity='1'/></joint></robot>";
}

void expectRefused(const std::string& urdf, const std::string& fragment) {
  const RobotLoadResult result = Robot::loadFromUrdfString(urdf);
  EXPECT_FALSE(result.robot);
  EXPECT_NE(result.error.find(fragment), std::string::npos) << result.error;
}

TEST(UrdfErrors, NumbersBeyondSinglePrecisionAreRefused) {
  const std::string limits = "lower='-1' upper='1'";
  ASSERT_TRUE(Robot::loadFromUrdfString(twoLinks("0 0 0.3", "0 1 0", limits)).robot);
  expectRefused(twoLinks("0 0 4e45", "0 1 0", limits), "the joint \"j\" has an origin that is not a finite number");
  expectRefused(twoLinks("0 0 0.3", "0 1e40 0", limits), "the joint \"j\" has an axis that is not a finite number");
  expectRefused(twoLinks("0 0 0.3", "0 1 0", "lower='-1e40' upper='1'"), "limits that are not finite numbers");
  expectRefused(twoLinks("0 0 0.3", "0 1 0", "lower='1' upper='-1'"), "a lower limit above its upper limit");
  expectRefused(twoLinks("0 0 0.3", "0 1 0", limits, "<box size='0.1 1e39 0.1'/>"),
                "the link \"a\" has a visual whose origin or size is not a finite number");
}

}  // namespace
}  // namespace VX::NextGenView
