// Renders the bundled robot as the widget shows it (camera in front, ambient
// light, two directional lights, the sky box turned to Z-up) and writes the
// picture to zel_scene.png in the test's working folder.
#include <gtest/gtest.h>

#include <set>
#include <tuple>
#include <vector>

#include <OgreCamera.h>
#include <OgreEntity.h>
#include <OgreImage.h>
#include <OgreLight.h>
#include <OgreSceneNode.h>
#include <OgreViewport.h>
#include <render_engine/directional_light.h>

#include "scene_fixture.h"

namespace VX::NextGenView {
namespace {

using SceneRendering = testing::SceneFixture;

void addLight(Ogre::SceneManager* sceneManager, const Ogre::Vector3& direction) {
  addDirectionalLight(sceneManager, "", direction, Ogre::ColourValue(0.8f, 0.8f, 0.8f), Ogre::ColourValue(0.3f, 0.3f, 0.3f));
}

TEST_F(SceneRendering, WritesALitColouredPictureOfTheRobotUnderTheSky) {
  openWindow(640, 480);
  Ogre::SceneManager* scene = sceneManager();
  scene->setAmbientLight(Ogre::ColourValue(0.5f, 0.5f, 0.5f));
  addLight(scene, Ogre::Vector3(-1.0f, 0.0f, -0.75f));
  addLight(scene, Ogre::Vector3(1.0f, 0.0f, -0.75f));
  // The sky box is authored Y-up; a quarter turn about +X brings it to Z-up.
  scene->setSkyBox(true, "sky", 50.0f, true, Ogre::Quaternion(Ogre::Degree(90), Ogre::Vector3::UNIT_X));

  // Frame the robot from the front (it faces +X), a little to its left and above.
  Ogre::AxisAlignedBox robotBounds;
  for (const auto& link : view->linkViews()) {
    ASSERT_NE(link->entity(), nullptr);
    robotBounds.merge(link->entity()->getWorldBoundingBox(true));
  }
  const Ogre::Vector3 centre = robotBounds.getCenter();
  const float size = robotBounds.getSize().length();
  Ogre::Camera* camera = scene->createCamera("scene test camera");
  camera->setNearClipDistance(0.01f);
  camera->setFarClipDistance(200.0f);
  camera->setAspectRatio(640.0f / 480.0f);
  Ogre::SceneNode* cameraNode = scene->getRootSceneNode()->createChildSceneNode();
  cameraNode->attachObject(camera);
  cameraNode->setFixedYawAxis(true, Ogre::Vector3::UNIT_Z);
  cameraNode->setPosition(centre + Ogre::Vector3(1.2f, 0.45f, 0.35f) * size);
  cameraNode->lookAt(centre, Ogre::Node::TS_WORLD);
  window->addViewport(camera)->setBackgroundColour(Ogre::ColourValue::Black);

  // A pending command shows its marker in the picture too.
  view->jointControllerViews().front()->jointController()->addRelativeCommand(0.6f);
  view->update();
  engine->root()->renderOneFrame();
  window->update();
  window->writeContentsToFile("zel_scene.png");

  Ogre::Image picture;
  picture.load(Ogre::Root::openFileStream("zel_scene.png"), "png");
  ASSERT_EQ(picture.getWidth(), 640u);
  ASSERT_EQ(picture.getHeight(), 480u);
  std::set<std::tuple<int, int, int>> colours;
  int skyBlue = 0;
  int dark = 0;
  for (unsigned y = 0; y < picture.getHeight(); y += 4) {
    for (unsigned x = 0; x < picture.getWidth(); x += 4) {
      const Ogre::ColourValue c = picture.getColourAt(x, y, 0);
      colours.emplace(int(c.r * 255), int(c.g * 255), int(c.b * 255));
      if (c.b > c.r + 0.15f && c.b > 0.6f) ++skyBlue;
      if (c.r + c.g + c.b < 0.06f) ++dark;
    }
  }
  const int samples = static_cast<int>((picture.getWidth() / 4) * (picture.getHeight() / 4));
  EXPECT_GT(colours.size(), 50u) << "not a single colour";
  EXPECT_GT(skyBlue, samples / 10) << "the sky shows";
  EXPECT_LT(dark, samples / 20) << "hardly anything black";
  // The robot at the centre is lit: not the sky's colour, not black.
  const Ogre::ColourValue middle = picture.getColourAt(picture.getWidth() / 2, picture.getHeight() / 2, 0);
  EXPECT_GT(middle.r + middle.g + middle.b, 0.3f);
}

}  // namespace
}  // namespace VX::NextGenView
