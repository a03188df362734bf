// A mesh file that cannot be found gives exactly one record, naming every
// path the world model tried; a mesh found but unreadable gives one record too.
#include <algorithm>

#include <gtest/gtest.h>

#include <OgreEntity.h>

#include <ku/record_capture.h>

#include "scene_fixture.h"

namespace VX::NextGenView {
namespace {

using MissingMesh = testing::SceneFixture;

int recordsNaming(const ku::log::RecordCapture& capture, const std::string& fragment) {
  int count = 0;
  for (const ku::log::Record& record : capture.records()) count += record.text.find(fragment) != std::string::npos;
  return count;
}

TEST_F(MissingMesh, OneRecordForAMeshNotFoundAndOneForAMeshNotReadable) {
  openWindow();
  ku::log::RecordCapture capture;
  const RobotLoadResult loaded = Robot::loadFromUrdfString(R"(<robot name="parts">
      <link name="shown"><visual><geometry><mesh filename="cube.stl" scale="0.1 0.1 0.1"/></geometry></visual></link>
      <link name="lost"><visual><geometry><mesh filename="package://nowhere/gone.stl"/></geometry></visual></link>
      <link name="broken"><visual><geometry><mesh filename="not_a_mesh.stl"/></geometry></visual></link>
      <joint name="a" type="fixed"><parent link="shown"/><child link="lost"/></joint>
      <joint name="b" type="fixed"><parent link="shown"/><child link="broken"/></joint></robot>)",
                                                           SCENE_VIEW_TEST_DATA);
  ASSERT_TRUE(loaded.robot) << loaded.error;
  world->addRobot(loaded.robot);
  view->update();
  EXPECT_EQ(recordsNaming(capture, "gone.stl"), 1);
  const std::string lost = "link lost, visual 0: mesh file \"package://nowhere/gone.stl\" not found; tried:";
  EXPECT_EQ(capture.count(ku::log::Warning, "rdr.scene", lost), 1);
  const Visual& visual = loaded.robot->link("lost")->visuals().at(0);
  ASSERT_GT(visual.meshPathsTried.size(), 2u);
  for (const ku::log::Record& record : capture.records()) {
    if (record.text.find(lost) == std::string::npos) continue;
    for (const std::string& path : visual.meshPathsTried) {
      EXPECT_NE(record.text.find(" " + path), std::string::npos) << path << " missing from " << record.text;
    }
  }
  const std::string nextToTheDescription = std::string(SCENE_VIEW_TEST_DATA) + "/nowhere/gone.stl";
  EXPECT_NE(std::find(visual.meshPathsTried.begin(), visual.meshPathsTried.end(), nextToTheDescription),
            visual.meshPathsTried.end());
  EXPECT_EQ(recordsNaming(capture, "not_a_mesh.stl"), 1);
  EXPECT_EQ(capture.count(ku::log::Warning, "rdr.scene", "not_a_mesh.stl"), 1);
  EXPECT_TRUE(sceneManager()->hasEntity("shown"));
  EXPECT_FALSE(sceneManager()->hasEntity("lost"));
}

}  // namespace
}  // namespace VX::NextGenView
