#include "picture_renderer.h"

#include <boost/make_shared.hpp>

#include <OgreCamera.h>
#include <OgreHardwarePixelBuffer.h>
#include <OgreLight.h>
#include <OgreRenderTexture.h>
#include <OgreRenderWindow.h>
#include <OgreRoot.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>
#include <OgreTextureManager.h>
#include <OgreViewport.h>

#include <ku/path.h>
#include <render_engine/directional_light.h>
#include <render_engine/ogre_engine.h>
#include <scene_view/joint_controller_3d_view.h>
#include <scene_view/link_3d_view.h>
#include <scene_view/world_3d_view.h>
#include <world_model/bundled_robot.h>
#include <world_model/robot.h>
#include <world_model/world.h>

#include "alpha_from_backgrounds.h"
#include "picture_pose.h"

namespace VX::NextGenView {

PictureRenderer::PictureRenderer(const PictureLayout& layout) : m_layout(layout) {
  // No log file: OGRE's critical messages still come out as log records.
  m_engine = boost::make_shared<OgreEngine>(ku::path::findConf("balterconix", "ogre"), "");
  if (!m_engine->root()) {
    m_error = "OGRE could not start";
    return;
  }
  const RobotLoadResult loaded = Robot::loadFromUrdfFile(bundledRobotFile("zel"));
  if (!loaded.robot) {
    m_error = "the bundled robot could not be loaded: " + loaded.error;
    return;
  }
  m_robot = loaded.robot;
  PicturePose::apply(m_robot);
  m_world = boost::make_shared<World>();
  m_world->addRobot(m_robot);
  if (setUpScene()) {
    addLights();
    addCamera();
  }
}

PictureRenderer::~PictureRenderer() {
  m_view.reset();  // the scene goes before OGRE
  m_world.reset();
  m_engine.reset();
}

bool PictureRenderer::setUpScene() {
  m_view = World3DView::createWorld3DView(m_engine, m_world);
  if (!m_view) {
    m_error = "the scene view could not be created";
    return false;
  }
  // A window only to get a render context; the pictures go to a texture of
  // their own size, whatever the screen.
  Ogre::Root* root = m_engine->root();
  root->initialise(false);
  Ogre::NameValuePairList options;
  options["hidden"] = "true";
  m_window = root->createRenderWindow("bitmap pictures", 64, 64, false, &options);
  m_view->update();  // builds the entities now that the context exists
  for (const auto& ring : m_view->jointControllerViews()) ring->setVisible(false);

  Ogre::TexturePtr texture = Ogre::TextureManager::getSingleton().createManual(
      "bitmap pictures target", Ogre::ResourceGroupManager::DEFAULT_RESOURCE_GROUP_NAME, Ogre::TEX_TYPE_2D,
      m_layout.width, m_layout.height, 0, Ogre::PF_BYTE_RGBA, Ogre::TU_RENDERTARGET);
  m_target = texture->getBuffer()->getRenderTarget();
  m_target->setAutoUpdated(false);
  return true;
}

void PictureRenderer::addLights() {
  // As the 3D view: half-grey ambient, one light from the front and one from
  // behind, both from above.
  Ogre::SceneManager* scene = m_engine->sceneManager();
  scene->setAmbientLight(Ogre::ColourValue(0.5f, 0.5f, 0.5f));
  for (const Ogre::Vector3& direction : {Ogre::Vector3(-1, 0, -0.75f), Ogre::Vector3(1, 0, -0.75f)}) {
    addDirectionalLight(scene, "", direction, Ogre::ColourValue(0.5f, 0.5f, 0.5f), Ogre::ColourValue(1, 1, 1));
  }
}

void PictureRenderer::addCamera() {
  // The robot faces +X with its left on +Y: a camera on +X looking along -X
  // sees its front, its left side on the picture's right.
  const float scale = m_layout.pixelsPerMetre;
  const Eigen::Vector3f torso = m_robot->rootLink()->globalTransform().translation();
  const float centreY = torso.y() - (m_layout.torsoColumn - m_layout.width / 2.0f) / scale;
  const float centreZ = torso.z() + (m_layout.torsoRow - m_layout.height / 2.0f) / scale;

  Ogre::SceneManager* scene = m_engine->sceneManager();
  m_camera = scene->createCamera("bitmap pictures camera");
  m_camera->setProjectionType(Ogre::PT_ORTHOGRAPHIC);
  m_camera->setOrthoWindow(m_layout.width / scale, m_layout.height / scale);
  m_camera->setNearClipDistance(0.01f);
  m_camera->setFarClipDistance(10.0f);
  Ogre::SceneNode* node = scene->getRootSceneNode()->createChildSceneNode();
  node->attachObject(m_camera);
  node->setFixedYawAxis(true, Ogre::Vector3::UNIT_Z);
  node->setPosition(3.0f, centreY, centreZ);
  node->setDirection(Ogre::Vector3::NEGATIVE_UNIT_X, Ogre::Node::TS_WORLD);

  m_viewport = m_target->addViewport(m_camera);
  m_viewport->setOverlaysEnabled(false);
  m_viewport->setClearEveryFrame(true);
  m_camera->setAspectRatio(static_cast<float>(m_layout.width) / m_layout.height);
}

void PictureRenderer::highlightChain(const std::string& chain, bool on) {
  for (const boost::shared_ptr<Link>& link : m_robot->linksTree(chain)) {
    for (const auto& view : m_view->linkViews()) {
      if (view->link() != link) continue;
      view->m_selected = on;
      view->m_highlighted = on;
      view->m_changed = true;
    }
  }
  m_view->update();
}

QImage PictureRenderer::render(const std::string& highlightedChain) {
  if (!m_error.empty()) return QImage();
  if (!highlightedChain.empty()) highlightChain(highlightedChain, true);
  // The same frame on black and on white: where they differ, the background
  // shows through (see alphaFromBackgrounds).
  const QImage onBlack = renderOnBackground(0.0f);
  const QImage onWhite = renderOnBackground(1.0f);
  if (!highlightedChain.empty()) highlightChain(highlightedChain, false);
  return alphaFromBackgrounds(onBlack, onWhite);
}

QImage PictureRenderer::renderOnBackground(float grey) {
  m_viewport->setBackgroundColour(Ogre::ColourValue(grey, grey, grey, 1.0f));
  m_target->update();
  QImage picture(m_layout.width, m_layout.height, QImage::Format_RGBA8888);
  const Ogre::PixelBox pixels(m_layout.width, m_layout.height, 1, Ogre::PF_BYTE_RGBA, picture.bits());
  m_target->copyContentsToMemory(Ogre::Box(0, 0, m_layout.width, m_layout.height), pixels);
  return picture;
}

}  // namespace VX::NextGenView
