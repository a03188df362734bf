#pragma once
// The viewer's main window: the world view container in the middle, joint
// sliders in a dock, the selected chain and the last motor values in the
// status bar, and the view's actions in menus and a toolbar.
#include <QList>
#include <QMainWindow>
#include <QString>

#include <boost/shared_ptr.hpp>

class QAction;
class QLabel;
class QMenu;
class JointSliderPanel;
class MotorCommandApplier;

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
  void onSaySentence();
  void onTry3DAtNextStart();

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void createContainer(const QString& dataPath, bool use3DView);
  void createSliderDock();
  void createActions();
  void addViewpointActions();
  void saveScreenshot(bool backgroundHidden);

  boost::shared_ptr<VX::NextGenView::World> m_world;
  VX::WorldViewContainer* m_container = nullptr;
  MotorCommandApplier* m_motorCommands = nullptr;
  JointSliderPanel* m_sliderPanel = nullptr;
  QLabel* m_chainLabel = nullptr;
  QLabel* m_motorLabel = nullptr;
  QMenu* m_viewpointMenu = nullptr;
  QAction* m_screenshotWithoutBackgroundAction = nullptr;
  QAction* m_controllerAction = nullptr;
  QAction* m_infoAction = nullptr;
  QString m_fallbackReason;
  bool m_shows3DView = false;
  bool m_shownOnce = false;
  bool m_viewReady = false;
};
