#include "fixtures.h"

#include <QSettings>
#include <QTimer>

#include <boost/make_shared.hpp>

#include <OgreCamera.h>
#include <OgreEntity.h>
#include <OgreLight.h>
#include <OgreMaterialManager.h>
#include <OgreRenderSystem.h>
#include <OgreRenderSystemCapabilities.h>
#include <OgreRenderWindow.h>
#include <OgreRoot.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>
#include <OgreTextureManager.h>
#include <OgreViewport.h>

#include <ku/path.h>
#include <render_engine/directional_light.h>
#include <render_engine/ogre_engine.h>
#include <render_engine/sky_material.h>
#include <scene_view/link_3d_view.h>
#include <scene_view/world_3d_view.h>
#include <world_model/robot.h>
#include <world_model/world.h>
#include <world_view_container.h>

#include "camera.h"
#include "generated_meshes.h"
#include "measures.h"
#include "render_widget.h"
#include "selection.h"

using VX::NextGenView::addDirectionalLight;
using VX::NextGenView::OgreEngine;
using VX::NextGenView::prepareSkyMaterial;
using VX::NextGenView::RenderWidget;
using VX::NextGenView::World;

namespace bench {
namespace {

std::string g_key;
std::unique_ptr<Fixture> g_fixture;

// What RenderWidget::initRenderingSettings and initLights set up.
void useWidgetLook(Ogre::SceneManager* scene) {
  scene->setAmbientLight(Ogre::ColourValue(0.5f, 0.5f, 0.5f, 1.0f));
  scene->setShadowTechnique(Ogre::SHADOWTYPE_NONE);
  for (const Ogre::Vector3& direction : {Ogre::Vector3(-1, 0, -0.75f), Ogre::Vector3(1, 0, -0.75f)}) {
    addDirectionalLight(scene, "", direction, Ogre::ColourValue(0.5f, 0.5f, 0.5f, 1.0f), Ogre::ColourValue(1, 1, 1, 1));
  }
  scene->setFog(Ogre::FOG_LINEAR, Ogre::ColourValue(1, 1, 1, 1), 0.1f, 2000, 10000);
  prepareSkyMaterial(Ogre::ResourceGroupManager::DEFAULT_RESOURCE_GROUP_NAME);
  scene->setSkyBox(true, "sky", 5.0f, true, RenderWidget::computeSkyQuaternion(),
                   Ogre::ResourceGroupManager::DEFAULT_RESOURCE_GROUP_NAME);
}

void useWidgetRenderingDefaults() {
  Ogre::TextureManager::getSingleton().setDefaultNumMipmaps(5);
  Ogre::MaterialManager::getSingleton().setDefaultTextureFiltering(Ogre::TFO_ANISOTROPIC);
  Ogre::MaterialManager::getSingleton().setDefaultAnisotropy(20);
}

}  // namespace

Fixture* currentFixture(const std::string& key) { return g_fixture && g_key == key ? g_fixture.get() : nullptr; }

Fixture& keepFixture(const std::string& key, std::unique_ptr<Fixture> fixture) {
  g_key = key;
  g_fixture = std::move(fixture);
  return *g_fixture;
}

void releaseFixture() {
  g_fixture.reset();
  g_key.clear();
  processEventsFor(20);  // deferred deletions of the widgets
}

std::string engineConfiguration() { return ku::path::findConf("balterconix", "ogre"); }
std::string engineLog() { return ku::path::userWritableDataPath("balterconix", "ogre.log"); }

std::string bundledRobotFile() { return std::string(RENDERWIDGET_BUILD_DATA_DIR) + "/robots/zel/zel.urdf"; }

std::string humanoidFile() {
  const QByteArray chosen = qgetenv("RENDERWIDGET_BENCH_HUMANOID");
  return chosen.isEmpty() ? std::string(RENDERWIDGET_BENCH_HUMANOID) : chosen.toStdString();
}

boost::shared_ptr<World> worldWithRobot(const std::string& urdfFile) {
  const auto loaded = VX::NextGenView::Robot::loadFromUrdfFile(urdfFile);
  if (!loaded.robot) return boost::shared_ptr<World>();
  auto world = boost::make_shared<World>();
  world->addRobot(loaded.robot);
  return world;
}

boost::shared_ptr<World> worldWithBundledRobot() {
  auto world = worldWithRobot(bundledRobotFile());
  return world ? world : boost::make_shared<World>();
}

std::string glDeviceName() {
  OgreEngine engine(engineConfiguration(), engineLog());
  if (!engine.root()) return "unknown (OGRE did not start)";
  engine.root()->initialise(false);
  engine.root()->createRenderWindow("device probe", 64, 64, false);
  const Ogre::RenderSystemCapabilities* caps = engine.root()->getRenderSystem()->getCapabilities();
  return caps ? caps->getDeviceName() : "unknown";
}

// ---- the container ----------------------------------------------------------

std::unique_ptr<VX::WorldViewContainer> makeContainer(boost::shared_ptr<World> world, int width, int height,
                                                      bool use3DController) {
  QSettings().setValue(VX::WorldViewContainer::a_use3DControllerForMotorsKey, use3DController);
  auto container = std::make_unique<VX::WorldViewContainer>(nullptr, QString(), nullptr, world, true);
  // No window manager runs under Xvfb, but frameless keeps 1920 × 1080 whole anywhere.
  container->setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
  container->setFixedSize(width, height);
  container->move(0, 0);
  return container;
}

ShownContainer::ShownContainer(int width, int height, bool use3DController) : m_world(worldWithBundledRobot()) {
  m_container = makeContainer(m_world, width, height, use3DController);
  m_container->show();
  if (!waitExposed(*m_container)) {
    error = "the container's window was never exposed";
    return;
  }
  m_container->onVisibilityChanged(true);
  if (!widget() || !widget()->m_initialized) {
    error = "the 3D view did not start";
    return;
  }
  if (m_container->refreshTimer()) m_container->refreshTimer()->stop();
  processEventsFor(50);
  if (widget()->size() != QSize(width, height) || widget()->renderWindow()->getWidth() != unsigned(width) ||
      widget()->renderWindow()->getHeight() != unsigned(height)) {
    error = "the 3D view is not " + std::to_string(width) + "x" + std::to_string(height);
    return;
  }
  for (int i = 0; i < 5; ++i) widget()->updateView();  // textures and shaders are ready
}

ShownContainer::~ShownContainer() {
  m_container.reset();  // the widget and its OGRE root first
  m_world.reset();
}

RenderWidget* ShownContainer::widget() const { return dynamic_cast<RenderWidget*>(m_container->view()); }

QPoint ShownContainer::torsoPixel() const {
  for (const auto& view : widget()->worldView()->linkViews()) {
    if (view->entity() && view->entity()->getName() == "TorsoLink") {
      return pixelOf(*widget()->camera()->ogreCamera(), *widget(), view->entity()->getWorldBoundingBox(true).getCenter());
    }
  }
  return QPoint();
}

// ---- the bare OGRE scene -------------------------------------------------------

BareScene::BareScene(int width, int height) {
  m_engine = boost::make_shared<OgreEngine>(engineConfiguration(), engineLog());
  if (!m_engine->root()) {
    error = "OGRE did not start";
    return;
  }
  m_world = worldWithBundledRobot();
  m_view = VX::NextGenView::World3DView::createWorld3DView(m_engine, m_world);
  Ogre::Root* root = m_engine->root();
  root->initialise(false);
  Ogre::NameValuePairList parameters{{"border", "none"}, {"left", "0"}, {"top", "0"}};
  m_window = root->createRenderWindow("bare frame", width, height, false, &parameters);
  useWidgetRenderingDefaults();
  m_engine->initialiseResources();
  Ogre::SceneManager* scene = m_engine->sceneManager();
  useWidgetLook(scene);

  Ogre::Camera* camera = scene->createCamera("FreeCam");
  Ogre::Viewport* viewport = m_window->addViewport(camera, 0, 0, 0, 1, 1);
  viewport->setBackgroundColour(Ogre::ColourValue(1, 1, 1, 1));
  camera->setAspectRatio(float(width) / float(height));
  m_rig = std::make_unique<VX::NextGenView::Camera>(camera, viewport,
                                                    scene->getRootSceneNode()->createChildSceneNode("camera_obj"));
  // The widget follows the torso every frame; the robot stands still here.
  const auto robot = *m_world->robots().begin();
  m_rig->updateTargetPosition(MK::Math::position3DFromTransform(robot->link("TorsoLink")->globalTransform()),
                              robot->heading());
  if (m_window->getWidth() != unsigned(width) || m_window->getHeight() != unsigned(height)) {
    error = "the OGRE window is not " + std::to_string(width) + "x" + std::to_string(height);
    return;
  }
  for (int i = 0; i < 5; ++i) frame();
}

BareScene::~BareScene() {
  m_rig.reset();
  m_view.reset();  // the scene goes before OGRE
  m_world.reset();
  m_engine.reset();
}

void BareScene::frame() {
  m_view->update();
  m_window->update(true);
}

// ---- generated scenes for the picker ----------------------------------------------

GeneratedScene::GeneratedScene(const std::string& kind) {
  engine = boost::make_shared<OgreEngine>(engineConfiguration(), engineLog());
  if (!engine->root()) {
    error = "OGRE did not start";
    return;
  }
  engine->root()->initialise(false);
  engine->root()->createRenderWindow("pick scene", a_width, a_height, false);  // hardware buffers need it
  scene = engine->sceneManager();
  camera = scene->createCamera("PickCamera");
  camera->setNearClipDistance(0.1f);
  camera->setFarClipDistance(100.0f);
  camera->setAspectRatio(float(a_width) / float(a_height));
  Ogre::SceneNode* eye = scene->getRootSceneNode()->createChildSceneNode(Ogre::Vector3(0, 0, 10));
  eye->attachObject(camera);
  eye->lookAt(Ogre::Vector3::ZERO, Ogre::Node::TS_WORLD);
  surface.resize(a_width, a_height);
  selection = std::make_unique<VX::NextGenView::Selection>(scene, camera);

  // Off the grid's vertices, so the centre ray meets the inside of a triangle.
  const Ogre::Vector3 offset(0.0123f, 0.0171f, 0.0f);
  auto place = [this, &offset](const std::string& name, const Ogre::MeshPtr& mesh, float z) {
    Ogre::Entity* entity = scene->createEntity(name, mesh);
    entity->setQueryFlags(1);
    scene->getRootSceneNode()->createChildSceneNode(offset + Ogre::Vector3(0, 0, z))->attachObject(entity);
  };
  // Triangles: 2 × cols × rows, less the hole.
  if (kind == "grid_10k") place("grid", gridMesh("grid", 100, 50, 4.0f), 0);
  else if (kind == "grid_100k") place("grid", gridMesh("grid", 250, 200, 4.0f), 0);
  else if (kind == "grid_1M") place("grid", gridMesh("grid", 1000, 500, 4.0f), 0);
  else if (kind == "stack_100x10k") {
    // 75 × 68 − 10 × 10 quads = 10 000 triangles around a hole on the axis.
    const Ogre::MeshPtr holed = gridMesh("holed", 75, 68, 4.0f, 10, 10);
    for (int i = 0; i < 99; ++i) place("layer" + std::to_string(i), holed, -0.05f * i);
    place("layer99", gridMesh("solid", 100, 50, 4.0f), -0.05f * 99);
  } else {
    error = "no scene named " + kind;
    return;
  }
  expectedName = kind == "stack_100x10k" ? "layer99" : "grid";
}

GeneratedScene::~GeneratedScene() {
  selection.reset();
  engine.reset();
}

}  // namespace bench
