// Ring sizes follow the links they turn: readable around a 5 cm finger,
// not drowning a 2 m humanoid's hand, and the bundled robot's as they were.
#include <algorithm>
#include <string>
#include <vector>

#include "scene_fixture.h"

namespace VX::NextGenView {
namespace {

// A 5 cm finger: two 2 cm phalanges, 1 cm thick, on a 1 cm knuckle.
const char* const a_finger = R"(<robot name="finger">
  <link name="knuckle"><visual><origin xyz="0 0 0.005"/><geometry><box size="0.012 0.012 0.01"/></geometry></visual></link>
  <joint name="proximal_joint" type="revolute"><parent link="knuckle"/><child link="proximal"/>
    <origin xyz="0 0 0.01"/><axis xyz="0 1 0"/><limit lower="-1" upper="1" effort="1" velocity="1"/></joint>
  <link name="proximal"><visual><origin xyz="0 0 0.01"/><geometry><box size="0.01 0.01 0.02"/></geometry></visual></link>
  <joint name="distal_joint" type="revolute"><parent link="proximal"/><child link="distal"/>
    <origin xyz="0 0 0.02"/><axis xyz="0 1 0"/><limit lower="-1" upper="1" effort="1" velocity="1"/></joint>
  <link name="distal"><visual><origin xyz="0 0 0.01"/><geometry><box size="0.01 0.01 0.02"/></geometry></visual></link>
</robot>)";

// A 1.5 m humanoid reduced to what matters: a 0.6 m torso, a 0.9 m leg 0.2 m
// thick, and a 3 cm finger 1.5 cm thick at the end of a 0.7 m arm.
const char* const a_giant = R"(<robot name="giant">
  <link name="TorsoLink"><visual><geometry><box size="0.3 0.5 0.6"/></geometry></visual></link>
  <joint name="hip" type="revolute"><parent link="TorsoLink"/><child link="leg"/>
    <origin xyz="0 0.15 -0.3"/><axis xyz="0 1 0"/><limit lower="-1" upper="1" effort="1" velocity="1"/></joint>
  <link name="leg"><visual><origin xyz="0 0 -0.45"/><geometry><box size="0.2 0.2 0.9"/></geometry></visual></link>
  <joint name="shoulder" type="revolute"><parent link="TorsoLink"/><child link="arm"/>
    <origin xyz="0 0.3 0.25"/><axis xyz="0 1 0"/><limit lower="-1" upper="1" effort="1" velocity="1"/></joint>
  <link name="arm"><visual><origin xyz="0 0 -0.35"/><geometry><box size="0.12 0.12 0.7"/></geometry></visual></link>
  <joint name="finger_joint" type="revolute"><parent link="arm"/><child link="finger"/>
    <origin xyz="0 0 -0.7"/><axis xyz="0 1 0"/><limit lower="-1" upper="1" effort="1" velocity="1"/></joint>
  <link name="finger"><visual><origin xyz="0 0 -0.015"/><geometry><box size="0.015 0.015 0.03"/></geometry></visual></link>
  <base z="1.2"/>
</robot>)";

class RingSize : public testing::SceneFixture {
 protected:
  void SetUp() override {
    SceneFixture::SetUp();
    for (const char* xml : {a_finger, a_giant}) {
      const RobotLoadResult loaded = Robot::loadFromUrdfString(xml);
      ASSERT_TRUE(loaded.robot) << loaded.error;
      world->addRobot(loaded.robot);
    }
    openWindow();
  }

  float radius(const std::string& joint) const {
    for (const auto& ring : view->jointControllerViews()) {
      if (ring->jointController()->name() == joint + "_controller") return ring->ringRadius();
    }
    ADD_FAILURE() << "no ring for " << joint;
    return 0.0f;
  }
};

TEST_F(RingSize, AFingerOfFiveCentimetresGetsRingsThatStandOutAroundIt) {
  for (const char* joint : {"proximal_joint", "distal_joint"}) {
    SCOPED_TRACE(joint);
    // The phalanges are 1 cm thick: a ring must reach beyond their 5 mm half
    // (sized to the robot alone, it was 3.5 mm: hidden inside the finger).
    EXPECT_GT(radius(joint), 0.0055f);
    // ... and stay well within the finger's length.
    EXPECT_LT(radius(joint), 0.02f);
  }
}

TEST_F(RingSize, AGiantsFingerRingDoesNotDrownItsHand) {
  // Sized to the robot alone (about 10 cm), the finger's ring would hide
  // the 3 cm finger and the hand around it.
  EXPECT_LT(radius("finger_joint"), 0.06f);
  EXPECT_GT(radius("finger_joint"), 0.015f) << "still beyond the finger's sides";
  // The hip turns a leg 0.2 m thick: its ring stands out around the leg.
  EXPECT_GT(radius("hip"), 0.12f);
  EXPECT_LT(radius("hip"), 0.35f);
  EXPECT_GT(radius("hip"), 3 * radius("finger_joint"));
}

TEST_F(RingSize, TheBundledRobotKeepsRingsOfAboutFourCentimetres) {
  std::vector<float> radii;
  for (const auto& ring : view->jointControllerViews()) {
    if (ring->jointController()->name().find("_joint") != std::string::npos) continue;  // the finger's
    if (ring->jointController()->name() == "hip_controller" || ring->jointController()->name() == "shoulder_controller")
      continue;
    radii.push_back(ring->ringRadius());
  }
  ASSERT_EQ(radii.size(), 26u);
  std::sort(radii.begin(), radii.end());
  // Rings were all 3.86 cm (7 % of the robot), nested ones 4.64 and 5.41 cm:
  // the bundled robot's limbs are typical, so its rings keep their sizes.
  EXPECT_NEAR(radii[radii.size() / 2], 0.0386f, 0.0005f);
  EXPECT_GT(radii.front(), 0.9f * 0.0386f) << "no ring shrinks noticeably";
  EXPECT_LT(radii.back(), 1.02f * 0.0541f) << "no ring grows beyond today's largest nested one";
}

}  // namespace
}  // namespace VX::NextGenView
