#pragma once
// The viewer's main window: the world view container in the middle, joint
// sliders in a dock, the selected chain and the last motor values in the
// status bar, and the view's actions in menus and a toolbar.
#include <QList>
#include <QMainWindow>
#include <QString>

#include <boost/shared_ptr.hpp>

class QAction;
class QDragEnterEvent;
class QDropEvent;
class QLabel;
class QMenu;
class QScrollArea;
class JointSliderPanel;
class MotorCommandApplier;
class RecentFiles;
class RobotDocuments;

namespace VX {
class WorldViewContainer;
namespace NextGenView {
class World;
}
}  // namespace VX

class ViewerWindow : public QMainWindow {
  Q_OBJECT

 public:
  // When the 3D view is asked for but cannot be built, the window shows the
  // 2D view instead and says so (fallbackReason()).
  ViewerWindow(boost::shared_ptr<VX::NextGenView::World> world, const QString& dataPath, bool use3DView,
               QWidget* parent = nullptr);
  ~ViewerWindow() override;

  VX::WorldViewContainer* container() const { return m_container; }
  MotorCommandApplier* motorCommands() const { return m_motorCommands; }
  JointSliderPanel* sliderPanel() const { return m_sliderPanel; }
  RobotDocuments* robotDocuments() const { return m_documents; }
  RecentFiles* recentFiles() const { return m_recentFiles; }
  // The robots loaded from files at start (the window takes it over).
  void setRobotDocuments(RobotDocuments* documents);
  // Sliders and title for the world's robots now.
  void refreshRobots();
  bool shows3DView() const { return m_shows3DView; }
  const QString& fallbackReason() const { return m_fallbackReason; }
  // The view has its drawing surface: a picture can be taken.
  bool isViewReady() const { return m_viewReady; }
  QString chainText() const;
  QString motorText() const;

  // Fixes the view's size (headless pictures) and fits the window around it.
  void setViewSize(const QSize& size);
  // Triggers the camera menu's viewpoint of that name; false in the 2D view,
  // before the 3D view is ready, or for an unknown name.
  bool goToViewpoint(const QString& name);
  // View › Collision geometry and View › Joint rings (checkable; disabled in the 2D view).
  QAction* collisionGeometryAction() const { return m_collisionAction; }
  QAction* jointRingsAction() const { return m_ringsAction; }

 signals:
  void viewReady();

 public slots:
  void onMotorValues(QList<QString> actuatorList, QList<float> valueList);
  void onChainSelected(const QString& chainName);
  void onViewReady();
  void onSaveScreenshot();
  void onSaveScreenshotWithoutBackground();
  void onUse3DControllerToggled(bool use);
  void onInfoToggled(bool shown);
  void onCollisionGeometryToggled(bool shown);
  void onJointRingsToggled(bool shown);
  void onSaySentence();
  void onTry3DAtNextStart();
  // File › Open robot…, a drop, the recent files: the file's robot replaces
  // the world's robots. A file that fails keeps them and says why.
  bool openRobotFile(const QString& file);
  void onOpenRobot();
  // Frames the robots in the 3D view (View › Frame robot, F).
  void onFrameRobot();
  void onRobotsReplaced(bool reloaded);
  void onLoadFailed(const QString& message);

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void createContainer(const QString& dataPath, bool use3DView);
  void createSliderDock();
  void createActions();
  void addViewpointActions();
  void saveScreenshot(bool backgroundHidden);
  void connectSliderPanel();
  void updateTitle();
  // Robots without a <base> side by side, then the camera framed on them.
  void placeAndFrame();

  boost::shared_ptr<VX::NextGenView::World> m_world;
  VX::WorldViewContainer* m_container = nullptr;
  MotorCommandApplier* m_motorCommands = nullptr;
  JointSliderPanel* m_sliderPanel = nullptr;
  QScrollArea* m_sliderScroll = nullptr;
  RobotDocuments* m_documents = nullptr;
  RecentFiles* m_recentFiles = nullptr;
  QLabel* m_chainLabel = nullptr;
  QLabel* m_motorLabel = nullptr;
  QMenu* m_viewpointMenu = nullptr;
  QAction* m_screenshotWithoutBackgroundAction = nullptr;
  QAction* m_controllerAction = nullptr;
  QAction* m_infoAction = nullptr;
  QAction* m_collisionAction = nullptr;
  QAction* m_ringsAction = nullptr;
  QAction* m_frameAction = nullptr;
  QAction* m_renderOnChangeAction = nullptr;
  QString m_fallbackReason;
  bool m_shows3DView = false;
  bool m_shownOnce = false;
  bool m_viewReady = false;
};
