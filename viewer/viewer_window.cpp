#include "viewer_window.h"

#include <iostream>

#include <QAction>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <QDockWidget>
#include <QFileDialog>
#include <QInputDialog>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QScrollArea>
#include <QSettings>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>

#include <OgreAxisAlignedBox.h>

#include <scene_view/world_3d_view.h>
#include <world_model/robot.h>
#include <world_model/world.h>
#include <world_view_container.h>

#include "camera.h"
#include "joint_slider_panel.h"
#include "motor_command_applier.h"
#include "recent_files.h"
#include "robot_documents.h"
#include "render_widget.h"
#include "render_widget_interface.h"
#include "startup_marker.h"
#include "view_screenshot.h"

using VX::WorldViewContainer;
using VX::NextGenView::RenderWidget;
using VX::NextGenView::RenderWidgetInterface;
using VX::NextGenView::Robot;

ViewerWindow::ViewerWindow(boost::shared_ptr<VX::NextGenView::World> world, const QString& dataPath, bool use3DView,
                           QWidget* parent)
    : QMainWindow(parent), m_world(world) {
  updateTitle();
  setAcceptDrops(true);

  createContainer(dataPath, use3DView);
  m_motorCommands = new MotorCommandApplier(world, this);
  createSliderDock();
  setRobotDocuments(new RobotDocuments(world));

  m_chainLabel = new QLabel(this);
  m_motorLabel = new QLabel(this);
  statusBar()->addPermanentWidget(m_chainLabel);
  statusBar()->addPermanentWidget(m_motorLabel, 1);
  onChainSelected(QString());
  m_motorLabel->setText("Motors: none yet");

  connect(m_container, &WorldViewContainer::setMotorValues, m_motorCommands, &MotorCommandApplier::onMotorValues);
  connect(m_container, &WorldViewContainer::setMotorValues, this, &ViewerWindow::onMotorValues);
  connect(m_container, &WorldViewContainer::chainSelected, this, &ViewerWindow::onChainSelected);
  connect(m_container->view(), &RenderWidgetInterface::renderWindowReady, this, &ViewerWindow::onViewReady);
  createActions();
  if (!m_fallbackReason.isEmpty()) statusBar()->showMessage(m_fallbackReason);
}

ViewerWindow::~ViewerWindow() = default;

void ViewerWindow::createContainer(const QString& dataPath, bool use3DView) {
  m_container = new WorldViewContainer(nullptr, dataPath, this, m_world, use3DView);
  m_shows3DView = use3DView;
  if (use3DView && !m_container->view()) {
    // The container has no fallback of its own; the engine logged why.
    delete m_container;
    m_fallbackReason = "The 3D view could not be built (see the messages above): showing the 2D view.";
    std::cerr << "render_widget_viewer: " << m_fallbackReason.toStdString() << std::endl;
    m_container = new WorldViewContainer(nullptr, dataPath, this, m_world, false);
    m_shows3DView = false;
  }
  setCentralWidget(m_container);
}

void ViewerWindow::createSliderDock() {
  m_sliderScroll = new QScrollArea;
  m_sliderScroll->setWidgetResizable(true);
  m_sliderScroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  connectSliderPanel();
  auto* dock = new QDockWidget(tr("Joints"), this);
  dock->setObjectName("JointsDock");
  dock->setWidget(m_sliderScroll);
  addDockWidget(Qt::RightDockWidgetArea, dock);
}

// A panel for the world's actuators now; the scroll area deletes the last one.
void ViewerWindow::connectSliderPanel() {
  m_sliderPanel = new JointSliderPanel(m_world);
  m_sliderScroll->setWidget(m_sliderPanel);
  m_sliderScroll->setMinimumWidth(m_sliderPanel->sizeHint().width() + 24);
  connect(m_motorCommands, &MotorCommandApplier::commandsApplied, m_sliderPanel, &JointSliderPanel::onCommandsApplied);
  connect(m_sliderPanel, &JointSliderPanel::commandRequested, m_motorCommands,
          &MotorCommandApplier::onCommandRequested);
}

void ViewerWindow::updateTitle() {
  QStringList robotNames;
  for (const boost::shared_ptr<Robot>& robot : m_world->robots()) robotNames << QString::fromStdString(robot->name());
  setWindowTitle(tr("%1 - Render widget viewer").arg(robotNames.join(", ")));
}

void ViewerWindow::setRobotDocuments(RobotDocuments* documents) {
  if (m_documents == documents) return;
  delete m_documents;
  m_documents = documents;
  m_documents->setParent(this);
  connect(m_documents, &RobotDocuments::robotsReplaced, this, &ViewerWindow::onRobotsReplaced);
  connect(m_documents, &RobotDocuments::loadFailed, this, &ViewerWindow::onLoadFailed);
}

void ViewerWindow::createActions() {
  QMenu* file = menuBar()->addMenu(tr("&File"));
  file->addAction(tr("&Open robot..."), this, &ViewerWindow::onOpenRobot)->setShortcut(QKeySequence::Open);
  m_recentFiles = new RecentFiles(file->addMenu(tr("Open &recent")), this);
  connect(m_recentFiles, &RecentFiles::openRequested, this, &ViewerWindow::openRobotFile);
  file->addSeparator();
  QAction* screenshot = file->addAction(tr("Save &screenshot..."), this, &ViewerWindow::onSaveScreenshot);
  screenshot->setShortcut(QKeySequence::Save);
  m_screenshotWithoutBackgroundAction = file->addAction(tr("Save screenshot &without background..."), this,
                                                        &ViewerWindow::onSaveScreenshotWithoutBackground);
  file->addSeparator();
  file->addAction(tr("&Quit"), this, &QWidget::close)->setShortcut(QKeySequence::Quit);

  QMenu* view = menuBar()->addMenu(tr("&View"));
  m_controllerAction = view->addAction(tr("3D joint &controllers"));
  m_controllerAction->setCheckable(true);
  m_controllerAction->setChecked(QSettings()
                                     .value(WorldViewContainer::a_use3DControllerForMotorsKey,
                                            WorldViewContainer::a_default_use3DControllerForMotors)
                                     .toBool());
  m_controllerAction->setToolTip(tr("Drag rings on the joints instead of selecting body chains"));
  connect(m_controllerAction, &QAction::toggled, this, &ViewerWindow::onUse3DControllerToggled);
  m_infoAction = view->addAction(tr("&Info overlay"));
  m_infoAction->setCheckable(true);
  m_infoAction->setToolTip(tr("Frames per second and triangle count"));
  connect(m_infoAction, &QAction::toggled, this, &ViewerWindow::onInfoToggled);
  m_collisionAction = view->addAction(tr("C&ollision geometry"));
  m_collisionAction->setCheckable(true);
  m_collisionAction->setToolTip(tr("Each link's collision shapes, see-through, instead of its visuals"));
  connect(m_collisionAction, &QAction::toggled, this, &ViewerWindow::onCollisionGeometryToggled);
  m_ringsAction = view->addAction(tr("Joint &rings"));
  m_ringsAction->setCheckable(true);
  m_ringsAction->setChecked(true);
  connect(m_ringsAction, &QAction::toggled, this, &ViewerWindow::onJointRingsToggled);
  // A still robot then costs next to nothing; a moving one is drawn every tick.
  m_renderOnChangeAction = view->addAction(tr("&Render only on change"));
  m_renderOnChangeAction->setCheckable(true);
  m_renderOnChangeAction->setChecked(true);
  m_renderOnChangeAction->setToolTip(tr("Draw the 3D view only when something in it changed"));
  connect(m_renderOnChangeAction, &QAction::toggled, m_container, &WorldViewContainer::setRenderOnDemand);
  m_container->setRenderOnDemand(true);
  m_viewpointMenu = view->addMenu(tr("View&point"));
  m_viewpointMenu->setEnabled(false);  // filled once the 3D view is ready
  m_frameAction = view->addAction(tr("&Frame robot"), this, &ViewerWindow::onFrameRobot);
  m_frameAction->setShortcut(Qt::Key_F);
  m_frameAction->setToolTip(tr("The camera takes in the whole robot again"));
  view->addSeparator();
  view->addAction(findChild<QDockWidget*>("JointsDock")->toggleViewAction());
  QAction* try3D = view->addAction(tr("Try the 3D view at next start"), this, &ViewerWindow::onTry3DAtNextStart);
  try3D->setEnabled(StartupMarker::lastStartFailed());

  QMenu* robot = menuBar()->addMenu(tr("&Robot"));
  QAction* say = robot->addAction(tr("&Say..."), this, &ViewerWindow::onSaySentence);

  for (QAction* action : {m_screenshotWithoutBackgroundAction, m_controllerAction, m_infoAction, m_collisionAction,
                          m_ringsAction, m_frameAction, m_renderOnChangeAction}) {
    action->setEnabled(m_shows3DView);
  }

  QToolBar* tools = addToolBar(tr("View"));
  tools->setObjectName("ViewToolBar");
  tools->addAction(screenshot);
  tools->addAction(m_controllerAction);
  tools->addAction(m_infoAction);
  tools->addAction(m_viewpointMenu->menuAction());
  tools->addAction(say);
}

void ViewerWindow::addViewpointActions() {
  auto* view = dynamic_cast<RenderWidget*>(m_container->view());
  if (!view || !view->camera() || !m_viewpointMenu->isEmpty()) return;
  // The camera's own actions: the container's right-click menu shows them too.
  m_viewpointMenu->addActions(view->camera()->cameraMenu()->actions());
  m_viewpointMenu->setEnabled(true);
}

QString ViewerWindow::chainText() const { return m_chainLabel->text(); }
QString ViewerWindow::motorText() const { return m_motorLabel->text(); }

void ViewerWindow::setViewSize(const QSize& size) {
  m_container->setFixedSize(size);
  adjustSize();
}

bool ViewerWindow::goToViewpoint(const QString& name) {
  for (QAction* action : m_viewpointMenu->actions()) {
    if (action->text() == name) {
      action->trigger();
      return true;
    }
  }
  return false;
}

void ViewerWindow::showEvent(QShowEvent* event) {
  QMainWindow::showEvent(event);
  if (m_shownOnce) {
    m_container->onVisibilityChanged(true);
    return;
  }
  m_shownOnce = true;
  // The render window is built now, once the window is on screen. A crash
  // there must send the next start to the 2D view.
  if (m_shows3DView) StartupMarker::markStarting();
  QTimer::singleShot(0, this, [this] { m_container->onVisibilityChanged(isVisible()); });
}

void ViewerWindow::hideEvent(QHideEvent* event) {
  if (m_shownOnce) m_container->onVisibilityChanged(false);
  QMainWindow::hideEvent(event);
}

void ViewerWindow::onViewReady() {
  if (m_viewReady) return;
  m_viewReady = true;
  if (m_shows3DView) {
    StartupMarker::markSucceeded();
    addViewpointActions();
    m_container->view()->displayInfo(m_infoAction->isChecked());
  }
  // The 2D view shows its picture at the first update.
  m_container->onRobotReady();
  placeAndFrame();
  emit viewReady();
}

void ViewerWindow::onMotorValues(QList<QString> actuatorList, QList<float> valueList) {
  QStringList parts;
  for (int i = 0; i < actuatorList.size() && i < valueList.size(); ++i) {
    parts << QString("%1 %2°").arg(actuatorList[i]).arg(static_cast<double>(valueList[i]) * 180.0 / M_PI, 0, 'f', 1);
  }
  m_motorLabel->setText("Motors: " + (parts.isEmpty() ? QString("none") : parts.join(", ")));
}

void ViewerWindow::onChainSelected(const QString& chainName) {
  m_chainLabel->setText("Chain: " + (chainName.isEmpty() ? QString("none") : chainName));
}

void ViewerWindow::onSaveScreenshot() { saveScreenshot(false); }
void ViewerWindow::onSaveScreenshotWithoutBackground() { saveScreenshot(true); }

void ViewerWindow::saveScreenshot(bool backgroundHidden) {
  const QString fileName = QFileDialog::getSaveFileName(this, tr("Save screenshot"), "screenshot.png",
                                                        tr("Pictures (*.png *.jpg *.bmp);;All files (*)"));
  if (fileName.isEmpty()) return;
  QString error;
  if (ViewScreenshot::save(m_container, fileName, backgroundHidden, &error)) {
    statusBar()->showMessage(tr("Saved %1").arg(fileName), 5000);
    return;
  }
  statusBar()->showMessage(error);
  QMessageBox::warning(this, tr("Screenshot"), error);
}

void ViewerWindow::onUse3DControllerToggled(bool use) {
  QSettings().setValue(WorldViewContainer::a_use3DControllerForMotorsKey, use);
  m_container->onUse3DControllerChanged();
}

void ViewerWindow::onInfoToggled(bool shown) {
  if (m_container->view()) m_container->view()->displayInfo(shown);
}

void ViewerWindow::onCollisionGeometryToggled(bool shown) { m_container->setCollisionGeometryShown(shown); }

void ViewerWindow::onJointRingsToggled(bool shown) { m_container->setJointRingsShown(shown); }

void ViewerWindow::onSaySentence() {
  const std::set<boost::shared_ptr<Robot>> robots = m_world->robots();
  const QString current = robots.empty() ? QString() : QString::fromStdString((*robots.begin())->sentence());
  bool accepted = false;
  const QString sentence =
      QInputDialog::getText(this, tr("Say"), tr("What should the robot say?"), QLineEdit::Normal, current, &accepted);
  if (!accepted) return;
  for (const boost::shared_ptr<Robot>& robot : robots) robot->setSentence(sentence.toStdString());
  // The 3D view writes the sentence over the scene; the 2D view cannot.
  if (!m_shows3DView) statusBar()->showMessage(tr("The robot says: %1").arg(sentence));
}

void ViewerWindow::onTry3DAtNextStart() {
  StartupMarker::clear();
  statusBar()->showMessage(tr("The next start tries the 3D view."), 5000);
}

bool ViewerWindow::openRobotFile(const QString& file) {
  if (!m_documents->open(file)) return false;
  m_recentFiles->add(file);
  return true;
}

void ViewerWindow::onOpenRobot() {
  const QString file = QFileDialog::getOpenFileName(this, tr("Open robot"), QString(),
                                                    tr("Robot descriptions (*.urdf *.xml);;All files (*)"));
  if (!file.isEmpty()) openRobotFile(file);
}

void ViewerWindow::refreshRobots() {
  connectSliderPanel();
  updateTitle();
}

void ViewerWindow::onFrameRobot() { m_container->frameWorld(); }

void ViewerWindow::onRobotsReplaced(bool reloaded) {
  // The views drop what they kept of the old robots; the scene follows the
  // world at the next update.
  m_container->onRobotRemoved();
  refreshRobots();
  m_container->onRobotReady();
  // A robot edited and reloaded keeps the camera where the user left it.
  if (!reloaded) placeAndFrame();
  const QStringList files = m_documents->files();
  statusBar()->showMessage((reloaded ? tr("Reloaded %1") : tr("Opened %1")).arg(files.join(", ")), 5000);
}

void ViewerWindow::onLoadFailed(const QString& message) { statusBar()->showMessage(message); }

void ViewerWindow::placeAndFrame() {
  auto* view = dynamic_cast<RenderWidget*>(m_container->view());
  if (!view || !view->m_initialized || !view->worldView()) return;
  m_container->update();  // the new robots' entities
  const boost::shared_ptr<VX::NextGenView::World3DView> scene = view->worldView();
  m_documents->placeSideBySide([&scene](const boost::shared_ptr<Robot>& robot, float* low, float* high) {
    const Ogre::AxisAlignedBox box = scene->robotBoundingBox(robot);
    if (!box.isFinite()) return false;
    *low = box.getMinimum().y;
    *high = box.getMaximum().y;
    return true;
  });
  m_container->frameWorld();
}

namespace {

// The first local robot description among a drag's files.
QString droppedRobotFile(const QMimeData* data) {
  if (!data || !data->hasUrls()) return QString();
  for (const QUrl& url : data->urls()) {
    if (url.isLocalFile() && url.toLocalFile().endsWith(".urdf", Qt::CaseInsensitive)) return url.toLocalFile();
  }
  return QString();
}

}  // namespace

void ViewerWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (!droppedRobotFile(event->mimeData()).isEmpty()) event->acceptProposedAction();
}

void ViewerWindow::dropEvent(QDropEvent* event) {
  const QString file = droppedRobotFile(event->mimeData());
  if (file.isEmpty()) return;
  event->acceptProposedAction();
  openRobotFile(file);
}
