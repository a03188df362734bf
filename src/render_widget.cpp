#include "render_widget.h"

#include <algorithm>

#include <QMouseEvent>
#include <QResizeEvent>
#include <QTimer>
#include <QX11Info>

#include <OgreCamera.h>
#include <OgreMaterialManager.h>
#include <OgreRenderWindow.h>
#include <OgreRoot.h>
#include <OgreSceneManager.h>
#include <OgreStringConverter.h>
#include <OgreTextureManager.h>
#include <OgreViewport.h>
#include <Overlay/OgreFontManager.h>
#include <Overlay/OgreOverlay.h>
#include <Overlay/OgreOverlayContainer.h>
#include <Overlay/OgreOverlayManager.h>
#include <Overlay/OgreTextAreaOverlayElement.h>

#include <ku/log.h>
#include <mk/math/transform.h>
#include <render_engine/directional_light.h>
#include <render_engine/ogre_engine.h>
#include <render_engine/sky_material.h>
#include <scene_view/joint_controller_3d_view.h>
#include <scene_view/link_3d_view.h>
#include <scene_view/world_3d_view.h>
#include <world_model/robot.h>
#include <world_model/world.h>

#include "camera.h"
#include "frame_change_watch.h"
#include "physic_thread.h"
#include "selection.h"
#include "sentence_fitting.h"
#include "view_framing.h"

// Xlib comes last: its macros clash with OGRE and Qt names.
#include <X11/Xlib.h>
#undef DisplayString
#undef KeyPress
#undef KeyRelease
#undef FocusIn
#undef FocusOut

namespace VX::NextGenView {

const float RenderWidget::a_bigCharSize = 43.0f / 3.0f;
const float RenderWidget::a_smallCharSize = 43.0f / 6.0f;

RenderWidget* RenderWidget::create(QWidget* parent, boost::shared_ptr<World> world, const std::string& confPath,
                                   const std::string& logPath, bool use3DController) {
  RenderWidget* widget = new RenderWidget(parent, world, confPath, logPath, use3DController);
  if (widget->m_renderEngine && widget->m_renderEngine->root()) return widget;
  return nullptr;  // the widget stays a child of `parent` and dies with it
}

RenderWidget::RenderWidget(QWidget* parent, boost::shared_ptr<World> world, const std::string& confPath,
                           const std::string& logPath, bool use3DController)
    : RenderWidgetInterface(parent),
      m_world(world),
      m_renderWindow(nullptr),
      m_physicThread(new PhysicThread(world ? world->forwardKinematicEngine() : nullptr, this)),
      m_overlay(nullptr),
      m_textArea(nullptr),
      m_infoArea(nullptr),
      m_sentenceArea(nullptr),
      m_textVisible(false),
      m_infoDisplayed(false),
      m_use3DController(use3DController),
      m_controllersFiltered(false),
      m_selectLinks(!use3DController),
      m_selectControllers(use3DController),
      m_state(NoState),
      m_previousState(NoState),
      m_motorCommandTimer(nullptr),
      m_changeWatch(new FrameChangeWatch()) {
  m_renderEngine.reset(new OgreEngine(confPath, logPath));

  setAttribute(Qt::WA_OpaquePaintEvent, true);
  setAttribute(Qt::WA_PaintOnScreen, true);
  setFocusPolicy(Qt::ClickFocus);
  // Qt 5 paints on screen only for widgets with a native window of their own;
  // OGRE's window becomes a child of it.
  setAttribute(Qt::WA_NativeWindow, true);
  setAttribute(Qt::WA_NoSystemBackground, true);

  parent->winId();  // the parent must own a native window before OGRE attaches
  initWorldView();
}

RenderWidget::~RenderWidget() {
  m_physicThread->quit();
  m_physicThread->wait();
  m_physicThread.reset();
  // The members go in reverse order: the scene view before the world and
  // before the render engine, which tears OGRE down.
}

// X cannot make a window of zero pixels, and OGRE then trips over the one it
// failed to make: the render window is never smaller than one pixel.
unsigned int RenderWidget::windowPixels(int widgetPixels) const {
  return std::max(1u, static_cast<unsigned int>(widgetPixels * devicePixelRatioF()));
}

std::string RenderWidget::windowHandle(unsigned long display, unsigned int screen, unsigned long window) {
  return Ogre::StringConverter::toString(static_cast<size_t>(display)) + ":" +
         Ogre::StringConverter::toString(screen) + ":" +
         Ogre::StringConverter::toString(static_cast<size_t>(window));
}

void RenderWidget::setCollisionGeometryShown(bool shown) {
  if (m_worldView) m_worldView->setCollisionGeometryShown(shown);
}

void RenderWidget::setJointRingsShown(bool shown) {
  if (m_worldView) m_worldView->setJointControllersShown(shown);
}

void RenderWidget::initWorldView() {
  if (!m_world || !m_renderEngine) return;
  m_worldView = World3DView::createWorld3DView(m_renderEngine, m_world);
  if (!m_worldView) {
    ku::log::LogStream(ku::log::Error, "initWorldView", "rdr.widget", "", 0)
        << "Failed to create world view ! " << std::endl;
  }
}

void RenderWidget::initRenderWindow() {
  if (m_renderWindow || !m_worldView) return;

  try {
    Ogre::NameValuePairList parameters;
    parameters["parentWindowHandle"] =
        windowHandle(reinterpret_cast<unsigned long>(QX11Info::display()),
                     static_cast<unsigned int>(QX11Info::appScreen()), static_cast<unsigned long>(winId()));

    Ogre::Root* root = m_worldView->getOgreRoot();
    root->initialise(false, "OGRE Render Window");
    m_renderWindow = root->createRenderWindow("View", windowPixels(width()), windowPixels(height()), false, &parameters);

    initRenderingSettings();
    // Scripts are parsed only now that a window exists, so the materials
    // take the rendering defaults set just before.
    m_renderEngine->initialiseResources();
    initLights();
    initCamera();
    initOverlay();
    initSelection();
    initPhysicThread();
  } catch (const Ogre::Exception& exception) {
    ku::log::LogStream(ku::log::Error, "initRenderWindow", "rdr.widget", "", 0)
        << "Error when creating render window: " << exception.what() << std::endl;
    return;
  }

  connectEvents();
  markInitialized();
}

void RenderWidget::initRenderingSettings() {
  Ogre::TextureManager::getSingleton().setDefaultNumMipmaps(5);
  Ogre::MaterialManager::getSingleton().setDefaultTextureFiltering(Ogre::TFO_ANISOTROPIC);
  Ogre::MaterialManager::getSingleton().setDefaultAnisotropy(20);
}

void RenderWidget::initPhysicThread() { m_physicThread->init(); }

void RenderWidget::connectEvents() {
  connect(this, SIGNAL(mousePressEvent(QMouseEvent*)), this, SLOT(onMousePress(QMouseEvent*)));
  connect(this, SIGNAL(mouseMoveEvent(QMouseEvent*)), this, SLOT(onMouseMove(QMouseEvent*)));
  connect(this, SIGNAL(mouseReleaseEvent(QMouseEvent*)), this, SLOT(onMouseRelease(QMouseEvent*)));
  connect(this, SIGNAL(wheelEvent(QWheelEvent*)), this, SLOT(onWheelEvent(QWheelEvent*)));
  connect(this, SIGNAL(keyPressEvent(QKeyEvent*)), this, SLOT(onKeyPressEvent(QKeyEvent*)));
  connect(this, SIGNAL(keyReleaseEvent(QKeyEvent*)), this, SLOT(onKeyReleaseEvent(QKeyEvent*)));
  if (m_camera) connect(m_camera.get(), SIGNAL(moved()), this, SLOT(updateView()));
  if (m_selection) {
    connect(m_selection.get(), SIGNAL(objectSelected(const QString&, bool)), this,
            SLOT(onObjectSelected(const QString&, bool)));
  }
}

QPaintEngine* RenderWidget::paintEngine() const { return nullptr; }

void RenderWidget::paintEvent(QPaintEvent* event) {
  if (!m_worldView || !m_renderWindow) {
    event->ignore();
    return;
  }
  Ogre::Root* root = m_worldView->getOgreRoot();
  // Frame-ended both before and after the update; no frame-started.
  root->_fireFrameEnded();
  m_renderWindow->update(true);
  root->_fireFrameEnded();
}

void RenderWidget::moveEvent(QMoveEvent* event) {
  if (!m_renderWindow) return;
  m_renderWindow->windowMovedOrResized();
  event->accept();
}

void RenderWidget::resizeEvent(QResizeEvent* event) {
  if (!m_renderWindow) return;
  // OGRE talks to X on a connection of its own: let Qt's resize reach the
  // server first.
  XSync(QX11Info::display(), False);
  m_renderWindow->resize(windowPixels(event->size().width()), windowPixels(event->size().height()));
  m_renderWindow->windowMovedOrResized();
  if (m_camera) {
    m_camera->ogreCamera()->setAspectRatio(static_cast<float>(event->size().width()) /
                                           static_cast<float>(event->size().height()));
    event->accept();
  }
}

void RenderWidget::onRobotRemoved() { clearSelection(); }

// ---- Scene set-up -----------------------------------------------------------

Ogre::Quaternion RenderWidget::computeSkyQuaternion() {
  // The sky box is authored Y-up; a quarter turn about X makes its up +Z.
  const MK::Math::Quaternion q = MK::Math::quaternionFromTransform(MK::Math::Transform::fromRotX(1.5707964f));
  return Ogre::Quaternion(q.w, q.x, q.y, q.z);
}

void RenderWidget::initOverlay() {
  Ogre::FontPtr font =
      Ogre::FontManager::getSingleton().create("Arial", Ogre::ResourceGroupManager::DEFAULT_RESOURCE_GROUP_NAME);
  font->setType(Ogre::FT_TRUETYPE);
  font->setSource("unispace_bd.ttf");
  font->setTrueTypeSize(16.0f);
  font->setTrueTypeResolution(96);
  font->addCodePointRange(Ogre::Font::CodePointRange(33, 255));
  font->load(false);

  Ogre::OverlayManager& overlays = Ogre::OverlayManager::getSingleton();
  auto* panel = static_cast<Ogre::OverlayContainer*>(overlays.createOverlayElement("Panel", "PanelName"));
  panel->setMetricsMode(Ogre::GMM_PIXELS);
  panel->setPosition(10, 10);
  panel->setDimensions(100, 100);

  auto createTextArea = [&overlays](const char* name, float characterHeight) {
    auto* area = static_cast<Ogre::TextAreaOverlayElement*>(overlays.createOverlayElement("TextArea", name));
    area->setMetricsMode(Ogre::GMM_PIXELS);
    area->setDimensions(100, 100);
    area->setCharHeight(characterHeight);
    area->setFontName("Arial");
    return area;
  };
  // The free-text area is not part of the panel, so it never shows.
  m_textArea = createTextArea("TextAreaName", 16.0f);
  m_textArea->setPosition(0, 0);
  m_infoArea = createTextArea("InfoAreaName", 16.0f);
  panel->addChild(m_infoArea);
  m_sentenceArea = createTextArea("SentenceArea", 32.0f);
  panel->addChild(m_sentenceArea);

  m_overlay = overlays.create("OverlayName");
  m_overlay->add2D(panel);
}

void RenderWidget::initLights() {
  Ogre::SceneManager* scene = m_worldView->getOgreSceneManager();
  scene->setAmbientLight(Ogre::ColourValue(0.5f, 0.5f, 0.5f, 1.0f));
  scene->setShadowTechnique(Ogre::SHADOWTYPE_NONE);

  const Ogre::ColourValue diffuse(0.5f, 0.5f, 0.5f, 1.0f);
  const Ogre::ColourValue specular(1, 1, 1, 1);
  addDirectionalLight(scene, "Light", Ogre::Vector3(-1, 0, -0.75f), diffuse, specular);
  addDirectionalLight(scene, "Light2", Ogre::Vector3(1, 0, -0.75f), diffuse, specular);

  // The fog starts far beyond the camera's far clip: it never shows.
  scene->setFog(Ogre::FOG_LINEAR, Ogre::ColourValue(1, 1, 1, 1), 0.1f, 2000, 10000);
  prepareSkyMaterial(Ogre::ResourceGroupManager::DEFAULT_RESOURCE_GROUP_NAME);
  scene->setSkyBox(true, "sky", 5.0f, true, computeSkyQuaternion(),
                   Ogre::ResourceGroupManager::DEFAULT_RESOURCE_GROUP_NAME);
}

void RenderWidget::initCamera() {
  if (!m_worldView) return;
  Ogre::SceneManager* scene = m_worldView->getOgreSceneManager();
  Ogre::Camera* ogreCamera = scene->createCamera("FreeCam");
  Ogre::Viewport* viewport = m_renderWindow->addViewport(ogreCamera, 0, 0, 0, 1, 1);
  viewport->setBackgroundColour(Ogre::ColourValue(1, 1, 1, 1));
  // Not guarded: a height of 0 gives an infinite or undefined ratio.
  ogreCamera->setAspectRatio(static_cast<float>(width()) / static_cast<float>(height()));
  Ogre::SceneNode* target =
      scene->getRootSceneNode()->createChildSceneNode("camera_obj", Ogre::Vector3::ZERO, Ogre::Quaternion::IDENTITY);
  m_camera.reset(new Camera(ogreCamera, viewport, target));
}

// ---- Frame update, overlay text, screenshots --------------------------------

void RenderWidget::updateView() {
  if (!m_worldView || !m_renderWindow) return;

  if (m_world && m_sentenceArea) {
    std::string sentence;
    const std::set<boost::shared_ptr<Robot>> robots = m_world->robots();
    for (const boost::shared_ptr<Robot>& robot : robots) {
      const boost::shared_ptr<Link> torso = robot->link("TorsoLink");
      // With several robots the camera follows the last one.
      if (m_camera && torso) {
        m_camera->updateTargetPosition(MK::Math::position3DFromTransform(torso->globalTransform()), robot->heading());
      }
      sentence += robot->sentence();
    }
    bool captionChanges = true;
    if (!sentence.empty()) {
      m_sentenceArea->setCharHeight(sentenceCharacterHeight(sentence.size(), width()));
      try {
        sentence = shortenedSentence(sentence, width());
      } catch (const std::length_error& error) {
        captionChanges = false;
        ku::log::LogStream(ku::log::Error, "updateView", "rdr.widget", "", 0)
            << "Cannot fit the sentence into a width of " << width() << " pixels: " << error.what() << std::endl;
      }
    }
    if (captionChanges) {
      try {
        // Only a new text: OGRE rebuilds a caption's glyphs whenever it is set.
        const Ogre::UTFString caption(sentence);
        if (m_sentenceArea->getCaption() != caption) m_sentenceArea->setCaption(caption);
      } catch (const Ogre::UTFString::invalid_data&) {
        // Invalid UTF-8: the caption keeps its old text.
      }
    }
  }

  m_worldView->update();
  displayText();
  if (m_renderOnDemand) {
    // The record follows every tick, so it matches what the screen shows.
    const bool pictureChanged =
        m_changeWatch->changed(*m_worldView->getOgreSceneManager(), *m_renderWindow, m_worldView->changeCount());
    // The info overlay's statistics change with every frame they count.
    if (!pictureChanged && !m_infoDisplayed) return;
  }
  repaint();
}

void RenderWidget::setRenderOnDemand(bool on) {
  m_renderOnDemand = on;
  m_changeWatch->forget();  // the first frame after the switch is drawn
}

void RenderWidget::displayText() {
  if (!m_renderWindow || !m_textArea || !m_infoArea || !m_overlay) return;
  if (m_textVisible) {
    const Ogre::UTFString caption(m_text.toUtf8().toStdString());
    if (m_textArea->getCaption() != caption) m_textArea->setCaption(caption);
  }
  if (m_infoDisplayed) {
    // Unsigned on purpose: a window lower than 50 pixels puts the area off screen.
    m_infoArea->setPosition(0, static_cast<float>(m_renderWindow->getHeight() - 50u));
    const Ogre::RenderTarget::FrameStats& statistics = m_renderWindow->getStatistics();
    const QString info = QString("FPS: %1 \nTriangle count: %2")
                             .arg(static_cast<double>(statistics.lastFPS))
                             .arg(static_cast<qint64>(statistics.triangleCount));
    m_infoArea->setCaption(Ogre::UTFString(info.toUtf8().toStdString()));
  }
  m_overlay->show();
}

void RenderWidget::text(const QString& displayedText) { m_text = displayedText; }
void RenderWidget::textVisible(bool isVisible) { m_textVisible = isVisible; }
void RenderWidget::displayInfo(bool isInfoDisplayed) { m_infoDisplayed = isInfoDisplayed; }

void RenderWidget::saveScreenshot(const QString& fileName, bool backgroundHidden) {
  // A view of no height shows nothing, and its camera has no valid frustum
  // for OGRE to render with.
  if (!m_renderWindow || width() <= 0 || height() <= 0) return;
  Ogre::SceneManager* scene = m_worldView->getOgreSceneManager();
  const Ogre::Quaternion orientation = computeSkyQuaternion();
  const Ogre::String& group = Ogre::ResourceGroupManager::DEFAULT_RESOURCE_GROUP_NAME;
  if (backgroundHidden) {
    scene->setSkyBox(false, "sky", 5.0f, true, orientation, group);
    m_renderWindow->update(false);
  } else if (m_renderOnDemand) {
    // Frames are drawn only on change: draw the present state for the file.
    m_renderWindow->update(false);
  }
  try {
    // OGRE picks the format from the extension and throws on an unknown one.
    m_renderWindow->writeContentsToFile(fileName.toUtf8().toStdString());
  } catch (...) {
    // The sky comes back; the caller still gets the exception.
    if (backgroundHidden) scene->setSkyBox(true, "sky", 5.0f, true, orientation, group);
    throw;
  }
  if (backgroundHidden) scene->setSkyBox(true, "sky", 5.0f, true, orientation, group);
}

boost::shared_ptr<Camera> RenderWidget::camera() const { return m_camera; }

bool RenderWidget::frameWorld() {
  if (!m_camera || !m_worldView || !m_renderWindow) return false;
  updateView();  // entities built, the target on the followed torso
  // The box is measured in the target's frame without its offset: the
  // followed point, turned by the followed robot's heading.
  const Ogre::SceneNode* target = m_camera->targetNode();
  const Ogre::Quaternion heading = target->getOrientation();
  const Ogre::Vector3 followed = target->getPosition() - heading * m_camera->targetOffset();
  Ogre::Affine3 toTarget;
  toTarget.makeInverseTransform(followed, Ogre::Vector3::UNIT_SCALE, heading);
  ViewFraming framing;
  const Ogre::Camera* ogreCamera = m_camera->ogreCamera();
  if (!ViewFraming::fit(m_worldView->boundingBox(toTarget), ogreCamera->getFOVy(), ogreCamera->getAspectRatio(),
                        ogreCamera->getNearClipDistance(), &framing)) {
    return false;
  }
  m_camera->setHomeDistance(framing.homeDistance);
  m_camera->setTargetOffset(framing.targetOffset);
  // The offset moves the target at the next follow; the front viewpoint
  // (a private slot of the camera's menu) then emits moved(), which redraws.
  updateView();
  QMetaObject::invokeMethod(m_camera.get(), "onViewportFront");
  return true;
}

// ---- Selection ---------------------------------------------------------------

void RenderWidget::initSelection() {
  m_selection.reset(new Selection(m_renderEngine->sceneManager(), m_camera->ogreCamera()));
}

void RenderWidget::onMousePress(QMouseEvent* evt) {
  setState(Pressed);
  // Picking first: it may select an object and change the state.
  if (m_selection) m_selection->onMousePressEvent(evt, this);
  if (m_camera) m_camera->mousePressEvent(evt);
}

void RenderWidget::onMouseRelease(QMouseEvent* evt) {
  setState(Released);
  if (m_previousState == ControllerGrabbed) {
    if (m_motorCommandTimer) m_motorCommandTimer->stop();
    dispatchMotorCommands();
  }
  if (m_camera) m_camera->mouseReleaseEvent(evt);
}

void RenderWidget::onWheelEvent(QWheelEvent* evt) {
  if (m_camera) m_camera->wheelEvent(evt);
}

void RenderWidget::onObjectSelected(const QString& objectName, bool multiSelect) {
  if (!(multiSelect && m_selectControllers)) {
    emit chainSelected(QString());
    clearSelection();
  }
  // A Ctrl-click on empty space keeps a multiple selection.
  if (multiSelect && !m_selectedObjects.isEmpty() && objectName.isEmpty()) return;
  if (m_selectControllers && selectController(objectName, multiSelect)) return;
  if (m_selectLinks) {
    selectLink(objectName, multiSelect);
    return;
  }
  updateView();
}

bool RenderWidget::selectController(const QString& objectName, bool multiSelect) {
  const std::string name = objectName.toLatin1().toStdString();
  boost::shared_ptr<JointController3DView> view;
  for (const boost::shared_ptr<JointController3DView>& candidate : m_worldView->jointControllerViews()) {
    if (candidate && candidate->frame()->name() == name) {
      view = candidate;
      break;
    }
  }
  if (!view) return false;
  // Controllers and links are never mixed in one selection.
  if (multiSelect && !m_selectedObjects.isEmpty() &&
      !boost::dynamic_pointer_cast<JointController3DView>(m_selectedObjects.first())) {
    return true;
  }
  setState(ControllerGrabbed);
  // The newest click is the active controller, first in the list.
  const int index = m_selectedObjects.indexOf(view);
  if (index >= 0) m_selectedObjects.move(index, 0);
  else m_selectedObjects.prepend(view);
  markSelected(*view);
  view->jointController()->resetCommand();
  return true;
}

void RenderWidget::selectLink(const QString& objectName, bool multiSelect) {
  const std::deque<boost::shared_ptr<Link3DView>> linkViews = m_worldView->linkViews();
  const std::set<boost::shared_ptr<Robot>> robots = m_worldView->world()->robots();
  if (robots.empty()) {
    updateView();
    return;
  }
  const std::string name = objectName.toLatin1().toStdString();
  boost::shared_ptr<Link3DView> view;
  for (const boost::shared_ptr<Link3DView>& candidate : linkViews) {
    if (candidate && candidate->frame()->name() == name) {
      view = candidate;
      break;
    }
  }
  if (!view) {
    updateView();
    return;
  }
  if (multiSelect && !m_selectedObjects.isEmpty() && !boost::dynamic_pointer_cast<Link3DView>(m_selectedObjects.first())) {
    return;
  }
  clearSelection();
  setState(LinkSelected);
  m_selectedObjects.append(view);

  // Only the first robot of the world is asked for the chain.
  const boost::shared_ptr<Robot> robot = *robots.begin();
  const std::string chain = robot->actuatorsTreeName(view->frame()->name());
  if (chain.empty()) {
    emit chainSelected(QString());
    updateView();
    return;
  }
  emit chainSelected(QString::fromLatin1(chain.c_str()));
  // The whole chain is marked; only the clicked link is listed.
  for (const boost::shared_ptr<Link>& link : robot->linksTree(chain)) {
    for (const boost::shared_ptr<Link3DView>& candidate : linkViews) {
      if (candidate && candidate->frame()->name() == link->name()) markSelected(*candidate);
    }
  }
}

void RenderWidget::markSelected(Object3DView& view) {
  view.m_selected = true;
  view.m_highlighted = true;
  view.m_changed = true;
}

void RenderWidget::clearSelection() {
  if (m_worldView) {
    for (const boost::shared_ptr<Object3DView>& object : m_worldView->allObjects()) {
      object->m_selected = false;
      object->m_highlighted = false;
      object->m_changed = true;
    }
    m_worldView->showJointControllers();
  }
  m_controllersFiltered = false;
  m_selectedObjects = QList<boost::shared_ptr<Object3DView>>();
  updateView();
}

// ---- Joint-controller drag and the Ctrl filter -------------------------------

void RenderWidget::onMouseMove(QMouseEvent* evt) {
  switch (m_state) {
    case Pressed:
      setState(Dragging);
      break;
    case Released:
    case NoState:
      setState(Moving);
      break;
    case ControllerGrabbed:
      dragController(evt);
      return;  // the camera never sees a drag step
    default:
      break;
  }
  if (m_camera) m_camera->mouseMoveEvent(evt);
}

void RenderWidget::dragController(QMouseEvent* evt) {
  QMutexLocker lock(&m_motorCommandsMutex);
  const boost::shared_ptr<JointController3DView> primary =
      boost::dynamic_pointer_cast<JointController3DView>(m_selectedObjects.value(0));
  if (!primary) return;
  const boost::shared_ptr<JointController> controller = primary->jointController();

  // The twin counts only when exactly it and the primary are selected.
  boost::shared_ptr<JointController3DView> twin;
  if (m_selectedObjects.size() == 2) {
    const auto candidate = boost::dynamic_pointer_cast<JointController3DView>(m_selectedObjects.at(1));
    if (candidate && controller && candidate->jointController() == controller->mirrorController()) twin = candidate;
  }

  const boost::shared_ptr<Actuator> actuator = controller->actuator();
  const QString name = QString::fromLatin1(actuator->name().c_str());
  // The first step of an unsent drag starts from the joint's position.
  if (!m_motorCommands.contains(name)) m_motorCommands.insert(name, actuator->m_value);

  const Eigen::Vector3f axisModel = controller->rotationAxis();
  const Eigen::Vector3f centerModel = controller->rotationCenter();
  const Ogre::Vector3 axis(axisModel.x(), axisModel.y(), axisModel.z());
  const Ogre::Vector3 center(centerModel.x(), centerModel.y(), centerModel.z());
  const Ogre::Plane plane(axis, center);
  float angle = 0;
  if (!m_selection->moveAngle(angle, evt->x(), evt->y(), this, plane, axis, center)) {
    setState(Moving);  // the drag is over for this press
    return;
  }
  m_motorCommands[name] = m_motorCommands[name] + angle;
  controller->addRelativeCommand(angle);

  if (twin) {
    const boost::shared_ptr<JointController> twinController = twin->jointController();
    const QString twinName = QString::fromLatin1(twinController->actuator()->name().c_str());
    const float sign = twinController->mirrorReversed() ? -1.0f : 1.0f;
    m_motorCommands[twinName] = sign * m_motorCommands[name];
  }
  timerMotorCommand();
}

void RenderWidget::onKeyPressEvent(QKeyEvent* evt) {
  const auto selected = boost::dynamic_pointer_cast<JointController3DView>(m_selectedObjects.value(0));
  if (evt->key() == Qt::Key_Control && selected) {
    // Only the selected controller and its twin stay visible.
    const boost::shared_ptr<JointController> twinOfSelected = selected->jointController()->mirrorController();
    for (const boost::shared_ptr<JointController3DView>& view : m_worldView->jointControllerViews()) {
      if (!view) continue;
      const bool isTwin = view->jointController()->mirrorController() && twinOfSelected == view->jointController();
      view->setVisible(view == selected || isTwin);
    }
    m_controllersFiltered = true;
  }
  if (m_camera) m_camera->keyPressEvent(evt);
}

void RenderWidget::onKeyReleaseEvent(QKeyEvent* evt) {
  if (evt->key() == Qt::Key_Control) {
    m_worldView->showJointControllers();
    m_controllersFiltered = false;
  }
  if (m_camera) m_camera->keyReleaseEvent(evt);
}

// ---- Motor commands ----------------------------------------------------------

void RenderWidget::timerMotorCommand() {
  if (!m_motorCommandTimer) {
    m_motorCommandTimer = new QTimer(this);
    m_motorCommandTimer->setSingleShot(true);
    m_motorCommandTimer->setInterval(100);
    connect(m_motorCommandTimer, SIGNAL(timeout()), this, SLOT(dispatchMotorCommands()));
  }
  // Every drag step restarts the count: a batch leaves after 100 ms of rest.
  m_motorCommandTimer->stop();
  m_motorCommandTimer->start();
}

void RenderWidget::dispatchMotorCommands() {
  QMutexLocker lock(&m_motorCommandsMutex);
  QList<QString> names;
  QList<float> values;
  // The batch follows the order of the joint-controller views.
  for (const boost::shared_ptr<JointController3DView>& view : m_worldView->jointControllerViews()) {
    if (!view || !view->jointController() || !view->jointController()->actuator()) continue;
    const QString name = QString::fromLatin1(view->jointController()->actuator()->name().c_str());
    if (!m_motorCommands.contains(name)) continue;
    names.append(name);
    values.append(m_motorCommands.value(name));
  }
  emit controllerMoved(names, values);
  m_motorCommands = QMap<QString, float>();
}

void RenderWidget::setUse3DController(bool use) {
  m_use3DController = use;
  m_selectControllers = use;
  m_selectLinks = !use;
}

void RenderWidget::setState(int state) {
  m_previousState = m_state;
  m_state = state;
}

}  // namespace VX::NextGenView
