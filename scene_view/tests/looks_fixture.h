#pragma once
// Test fixture: a robot of flat test meshes facing +X, seen from +X through
// an orthographic camera (400 pixels per metre, +Y to the right, +Z up) under
// white ambient light only, so that a pixel shows a material's own colour.
// Pictures are written to the test's working folder, to look at.

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include <boost/make_shared.hpp>

#include <OgreCamera.h>
#include <OgreImage.h>
#include <OgreRenderWindow.h>
#include <OgreRoot.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>
#include <OgreViewport.h>

#include <ku/log.h>
#include <ku/path.h>
#include <render_engine/ogre_engine.h>
#include <scene_view/world_3d_view.h>
#include <world_model/robot.h>
#include <world_model/world.h>

#include "temporary_folder.h"

namespace VX::NextGenView::testing {

inline std::string looksData(const std::string& file) { return std::string(SCENE_VIEW_TEST_DATA) + "/looks/" + file; }

class LooksFixture : public ::testing::Test {
 protected:
  static constexpr unsigned a_width = 480;
  static constexpr unsigned a_height = 160;
  static constexpr float a_pixelsPerMetre = 400.0f;

  void SetUp() override {
    m_sink = ku::log::addSink([this](const ku::log::Record& record) { records.push_back(record); });
    engine = boost::make_shared<OgreEngine>(ku::path::findConf("balterconix", "ogre"),
                                            (logs.path() / "ogre.log").string());
    ASSERT_NE(engine->root(), nullptr);
    world = boost::make_shared<World>();
    view = World3DView::createWorld3DView(engine, world);
    ASSERT_TRUE(view);
  }

  void TearDown() override {
    view.reset();
    world.reset();
    engine.reset();
    ku::log::removeSink(m_sink);
  }

  // Loads the robot, opens the window and builds the scene; the camera looks
  // at (0, centreY, 0).
  void show(const std::string& urdf, float centreY) {
    const RobotLoadResult loaded = Robot::loadFromUrdfFile(looksData(urdf));
    ASSERT_TRUE(loaded.robot) << loaded.error;
    world->addRobot(loaded.robot);
    engine->root()->initialise(false);
    window = engine->root()->createRenderWindow("looks test", a_width, a_height, false);
    ASSERT_NE(window, nullptr);
    Ogre::SceneManager* scene = engine->sceneManager();
    scene->setAmbientLight(Ogre::ColourValue::White);
    camera = scene->createCamera("looks camera");
    camera->setProjectionType(Ogre::PT_ORTHOGRAPHIC);
    camera->setOrthoWindow(a_width / a_pixelsPerMetre, a_height / a_pixelsPerMetre);
    camera->setNearClipDistance(0.1f);
    camera->setFarClipDistance(10.0f);
    Ogre::SceneNode* node = scene->getRootSceneNode()->createChildSceneNode();
    node->attachObject(camera);
    node->setFixedYawAxis(true, Ogre::Vector3::UNIT_Z);
    node->setPosition(2.0f, centreY, 0.0f);
    node->lookAt(Ogre::Vector3(0.0f, centreY, 0.0f), Ogre::Node::TS_WORLD);
    m_centreY = centreY;
    viewport = window->addViewport(camera);
    view->update();
  }

  // Renders a frame on `background`, writes it to `file` and reads it back.
  Ogre::Image render(const std::string& file, const Ogre::ColourValue& background = Ogre::ColourValue::Black) {
    viewport->setBackgroundColour(background);
    view->update();
    engine->root()->renderOneFrame();
    window->update();
    window->writeContentsToFile(file);
    Ogre::Image picture;
    picture.load(Ogre::Root::openFileStream(file), "png");
    return picture;
  }

  // The colour where the point (0, y, z) of the world shows.
  Ogre::ColourValue at(const Ogre::Image& picture, float y, float z) const {
    const int x = static_cast<int>(a_width / 2.0f + (y - m_centreY) * a_pixelsPerMetre);
    const int row = static_cast<int>(a_height / 2.0f - z * a_pixelsPerMetre);
    return picture.getColourAt(static_cast<size_t>(x), static_cast<size_t>(row), 0);
  }

  int warningsContaining(const std::string& text) const {
    int count = 0;
    for (const ku::log::Record& record : records) {
      if (record.level == ku::log::Warning && record.category == "rdr.scene" &&
          record.text.find(text) != std::string::npos) {
        ++count;
      }
    }
    return count;
  }

  TemporaryFolder logs;
  boost::shared_ptr<OgreEngine> engine;
  boost::shared_ptr<World> world;
  boost::shared_ptr<World3DView> view;
  Ogre::RenderWindow* window = nullptr;
  Ogre::Camera* camera = nullptr;
  Ogre::Viewport* viewport = nullptr;
  std::vector<ku::log::Record> records;

 private:
  ku::log::SinkId m_sink = 0;
  float m_centreY = 0.0f;
};

// Colours within a tolerance, for pictures of 8-bit channels.
inline ::testing::AssertionResult sameColour(const Ogre::ColourValue& seen, const Ogre::ColourValue& wanted,
                                       float tolerance = 0.1f) {
  if (std::abs(seen.r - wanted.r) <= tolerance && std::abs(seen.g - wanted.g) <= tolerance &&
      std::abs(seen.b - wanted.b) <= tolerance) {
    return ::testing::AssertionSuccess();
  }
  return ::testing::AssertionFailure() << "seen (" << seen.r << ", " << seen.g << ", " << seen.b << "), wanted ("
                                       << wanted.r << ", " << wanted.g << ", " << wanted.b << ")";
}

}  // namespace VX::NextGenView::testing
