// How package:// mesh names are found: every slash form, ROS_PACKAGE_PATH
// (package folders and package.xml names), AMENT_PREFIX_PATH, the host's own
// folders, and the one record of a mesh that is nowhere
// (data/packages/robot/urdf/packages.urdf).
#include <cstdlib>
#include <filesystem>

#include <gtest/gtest.h>

#include <world_model/package_folders.h>
#include <world_model/robot.h>

#include "test_support.h"

namespace VX::NextGenView {
namespace {

namespace fs = std::filesystem;

std::string packagesFile(const std::string& relative) {
  return fs::path(test::dataFile("packages/" + relative)).lexically_normal().string();
}

// Sets an environment variable for one test and restores it afterwards.
class ScopedVariable {
 public:
  ScopedVariable(const char* name, const std::string& value) : m_name(name) {
    const char* old = std::getenv(name);
    m_had = old != nullptr;
    if (old) m_old = old;
    setenv(name, value.c_str(), 1);
  }
  ~ScopedVariable() {
    if (m_had) {
      setenv(m_name, m_old.c_str(), 1);
    } else {
      unsetenv(m_name);
    }
  }

 private:
  const char* m_name;
  bool m_had = false;
  std::string m_old;
};

class MeshPaths : public ::testing::Test {
 protected:
  void TearDown() override { PackageFolders::set({}); }
  boost::shared_ptr<Robot> load() {
    const RobotLoadResult result = Robot::loadFromUrdfFile(packagesFile("robot/urdf/packages.urdf"));
    EXPECT_TRUE(result.robot) << result.error;
    return result.robot;
  }
  static const Visual& meshOf(const boost::shared_ptr<Robot>& robot, const std::string& link) {
    return robot->link(link)->visuals().at(0);
  }

  ScopedVariable m_rosPath{"ROS_PACKAGE_PATH", "/nonexistent/first:" + packagesFile("ros_path")};
  ScopedVariable m_amentPath{"AMENT_PREFIX_PATH", packagesFile("ament_prefix")};
};

TEST_F(MeshPaths, EveryNumberOfSlashesAfterTheSchemeFindsThePackage) {
  const boost::shared_ptr<Robot> robot = load();
  ASSERT_TRUE(robot);
  for (const char* link : {"one_slash", "two_slashes", "three_slashes", "four_slashes"}) {
    EXPECT_EQ(meshOf(robot, link).meshFile, packagesFile("robot/meshes/e.stl")) << link;
    EXPECT_TRUE(meshOf(robot, link).meshFileFound) << link;
  }
}

TEST_F(MeshPaths, RosPackagePathFolderNamedAfterThePackage) {
  const boost::shared_ptr<Robot> robot = load();
  ASSERT_TRUE(robot);
  EXPECT_EQ(meshOf(robot, "by_folder").meshFile, packagesFile("ros_path/by_folder/meshes/a.stl"));
}

TEST_F(MeshPaths, RosPackagePathFolderWhosePackageXmlNamesThePackage) {
  const boost::shared_ptr<Robot> robot = load();
  ASSERT_TRUE(robot);
  EXPECT_EQ(meshOf(robot, "by_manifest").meshFile,
            packagesFile("ros_path/repo/hardware/gripper_description/meshes/b.stl"));
}

TEST_F(MeshPaths, AmentPrefixPathShare) {
  const boost::shared_ptr<Robot> robot = load();
  ASSERT_TRUE(robot);
  EXPECT_EQ(meshOf(robot, "from_ament").meshFile, packagesFile("ament_prefix/share/from_ament/meshes/c.stl"));
}

TEST_F(MeshPaths, HostFoldersAreSearchedFirst) {
  PackageFolders::set({packagesFile("host_folder")});
  const boost::shared_ptr<Robot> robot = load();
  ASSERT_TRUE(robot);
  EXPECT_EQ(meshOf(robot, "from_host").meshFile, packagesFile("host_folder/from_host/meshes/d.stl"));
  // by_folder is in both the host's folder and ROS_PACKAGE_PATH: the host's wins.
  EXPECT_EQ(meshOf(robot, "by_folder").meshFile, packagesFile("host_folder/by_folder/meshes/a.stl"));
}

TEST_F(MeshPaths, WithoutTheHostFolderItsPackageIsMissing) {
  const boost::shared_ptr<Robot> robot = load();
  ASSERT_TRUE(robot);
  EXPECT_FALSE(meshOf(robot, "from_host").meshFileFound);
  EXPECT_TRUE(meshOf(robot, "by_folder").meshFileFound);
}

// The scene view's record names them all (scene_view's missing_mesh_test);
// loading itself adds none.
TEST_F(MeshPaths, AMissingMeshKeepsEveryPathTried) {
  test::CapturedRecords captured;
  const boost::shared_ptr<Robot> robot = load();
  ASSERT_TRUE(robot);
  const Visual& missing = meshOf(robot, "missing");
  EXPECT_FALSE(missing.meshFileFound);
  EXPECT_EQ(missing.meshReference, "package://nowhere/meshes/f.stl");
  // The host's folders (none), ROS_PACKAGE_PATH, AMENT_PREFIX_PATH, then the
  // description's folder and every folder above it.
  const std::vector<std::string> expectedStart{"/nonexistent/first/nowhere/meshes/f.stl",
                                               packagesFile("ros_path/nowhere/meshes/f.stl"),
                                               packagesFile("ament_prefix/share/nowhere/meshes/f.stl"),
                                               packagesFile("robot/urdf/nowhere/meshes/f.stl"),
                                               packagesFile("robot/urdf/meshes/f.stl"),
                                               packagesFile("robot/nowhere/meshes/f.stl"),
                                               packagesFile("robot/meshes/f.stl")};
  ASSERT_GT(missing.meshPathsTried.size(), expectedStart.size());
  EXPECT_EQ(std::vector<std::string>(missing.meshPathsTried.begin(), missing.meshPathsTried.begin() + 7),
            expectedStart);
  EXPECT_EQ(missing.meshPathsTried.back(), "/meshes/f.stl");
  // Found meshes keep no list.
  EXPECT_TRUE(meshOf(robot, "by_folder").meshPathsTried.empty());
  EXPECT_EQ(captured.count(3, "f.stl"), 0);
}

}  // namespace
}  // namespace VX::NextGenView
