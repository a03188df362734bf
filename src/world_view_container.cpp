#include "world_view_container.h"

#include <QMenu>
#include <QMouseEvent>
#include <QSettings>
#include <QTimer>
#include <QVBoxLayout>

#include <ku/path.h>

#include "camera.h"
#include "render_widget.h"
#include "render_widget_2d.h"

namespace VX {

using NextGenView::RenderWidget;
using NextGenView::RenderWidget2d;

const int WorldViewContainer::a_sizeHintWidth = 160;
const QString WorldViewContainer::a_use3DControllerForMotorsKey("Preferences/general/use3DController");
const bool WorldViewContainer::a_default_use3DControllerForMotors = false;

WorldViewContainer::WorldViewContainer(ConnectionManager*, const QString& dataPath, QWidget* parent,
                                       boost::shared_ptr<NextGenView::World> world, bool use3DView)
    : QWidget(parent), m_dataPath(dataPath), m_view(nullptr), m_refreshTimer(nullptr), m_menu(nullptr) {
  QVBoxLayout* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);

  if (use3DView) {
    QSettings settings;
    settings.setValue("ogreInitSucceeded", false);
    const bool use3DController =
        settings.value(a_use3DControllerForMotorsKey, a_default_use3DControllerForMotors).toBool();
    // The marker is on disk before the engine is touched: a crash during the
    // 3D start-up leaves it false for the host's next start.
    settings.sync();
    const std::string confPath = ku::path::findConf("balterconix", "ogre");
    const std::string logPath = ku::path::userWritableDataPath("balterconix", "ogre.log");
    m_view = RenderWidget::create(this, world, confPath, logPath, use3DController);
    if (m_view) {
      m_menu = new QMenu(this);
      m_view->setVisible(true);
      connect(m_view, SIGNAL(controllerMoved(QList<QString>, QList<float>)), this,
              SLOT(onControllerMoved(QList<QString>, QList<float>)));
      connect(this, SIGNAL(robotRemoved()), m_view, SLOT(onRobotRemoved()));
      connect(m_view, SIGNAL(renderWindowReady()), this, SLOT(onRenderWindowReady()));
      settings.setValue("ogreInitSucceeded", true);
    }
    // No fallback to the 2D view: that is the host's choice at its next start.
  } else {
    delete m_view;
    m_view = new RenderWidget2d(this, world, m_dataPath);
  }

  connect(m_view, SIGNAL(chainSelected(const QString&)), this, SIGNAL(chainSelected(const QString&)));
  layout->addWidget(m_view);
  setLayout(layout);
}

WorldViewContainer::~WorldViewContainer() { delete m_view; }

QSize WorldViewContainer::sizeHint() const { return QSize(a_sizeHintWidth, QWidget::sizeHint().height()); }

void WorldViewContainer::onRenderWindowReady() {
  RenderWidget* view = dynamic_cast<RenderWidget*>(m_view);
  if (!view) return;
  const boost::shared_ptr<NextGenView::Camera> camera = view->camera();
  connect(camera.get(), SIGNAL(showMenu(QMouseEvent*)), this, SLOT(showCameraMenu(QMouseEvent*)));
  QMenu* viewpoints = camera->cameraMenu();
  viewpoints->setTitle(tr("3D Viewpoint"));
  m_menu->addMenu(viewpoints);
  initTimer();
}

void WorldViewContainer::initTimer() {
  m_refreshTimer = new QTimer(this);
  connect(m_refreshTimer, SIGNAL(timeout()), this, SLOT(update()));
  m_refreshTimer->start(25);
}

void WorldViewContainer::update() {
  if (m_view->m_initialized) m_view->updateView();
}

void WorldViewContainer::onVisibilityChanged(bool visible) {
  // The render window is built lazily: the native window must exist first.
  if (visible && !m_view->m_initialized) m_view->initRenderWindow();
  m_view->setVisible(visible);
}

void WorldViewContainer::onRobotReady() { update(); }

void WorldViewContainer::onRobotRemoved() {
  emit robotRemoved();
  update();
}

void WorldViewContainer::onControllerMoved(QList<QString> actuatorList, QList<float> valueList) {
  emit setMotorValues(actuatorList, valueList);
}

void WorldViewContainer::onUse3DControllerChanged() {
  RenderWidget* view = dynamic_cast<RenderWidget*>(m_view);
  if (!view) return;
  QSettings settings;
  view->setUse3DController(settings.value(a_use3DControllerForMotorsKey, a_default_use3DControllerForMotors).toBool());
}

void WorldViewContainer::saveScreenshot(const QString& fileName, bool backgroundHidden) {
  if (RenderWidget* view = dynamic_cast<RenderWidget*>(m_view)) view->saveScreenshot(fileName, backgroundHidden);
}

void WorldViewContainer::setCollisionGeometryShown(bool shown) {
  if (RenderWidget* view = dynamic_cast<RenderWidget*>(m_view)) view->setCollisionGeometryShown(shown);
}

void WorldViewContainer::setJointRingsShown(bool shown) {
  if (RenderWidget* view = dynamic_cast<RenderWidget*>(m_view)) view->setJointRingsShown(shown);
}

bool WorldViewContainer::frameWorld() {
  RenderWidget* view = dynamic_cast<RenderWidget*>(m_view);
  return view && view->frameWorld();
}

void WorldViewContainer::setRenderOnDemand(bool on) {
  if (RenderWidget* view = dynamic_cast<RenderWidget*>(m_view)) view->setRenderOnDemand(on);
}

bool WorldViewContainer::renderOnDemand() const {
  const RenderWidget* view = dynamic_cast<const RenderWidget*>(m_view);
  return view && view->renderOnDemand();
}

void WorldViewContainer::showCameraMenu(QMouseEvent* evt) { m_menu->exec(evt->globalPos()); }

}  // namespace VX
