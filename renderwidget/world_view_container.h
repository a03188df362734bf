#pragma once
// The widget a host application embeds to show its robot world: the 3D view
// when asked for and available, otherwise the 2D picture view.

#include <QList>
#include <QString>
#include <QWidget>

#include <boost/shared_ptr.hpp>

class QMenu;
class QMouseEvent;
class QTimer;

namespace VX {

class ConnectionManager;

namespace NextGenView {
class RenderWidgetInterface;
class World;
}  // namespace NextGenView

class WorldViewContainer : public QWidget {
  Q_OBJECT

 public:
  static const int a_sizeHintWidth;
  static const QString a_use3DControllerForMotorsKey;
  static const bool a_default_use3DControllerForMotors;

  // connectionManager is accepted and not used. dataPath is where the 2D
  // view finds its pictures. use3DView false forces the 2D view.
  WorldViewContainer(ConnectionManager* connectionManager, const QString& dataPath, QWidget* parent,
                     boost::shared_ptr<NextGenView::World> world, bool use3DView);
  ~WorldViewContainer() override;

  QSize sizeHint() const override;

  // The view shown; null when the 3D view could not be built.
  NextGenView::RenderWidgetInterface* view() const { return m_view; }
  QMenu* menu() const { return m_menu; }
  QTimer* refreshTimer() const { return m_refreshTimer; }
  // The 3D view frames the whole world (see RenderWidget::frameWorld);
  // false in the 2D view or when there is nothing to frame yet.
  bool frameWorld();

  // Passed to the 3D view; the 2D view ignores them. Each link's collision
  // geometry instead of its visuals (off by default); all joint rings shown
  // or hidden (shown by default).
  void setCollisionGeometryShown(bool shown);
  void setJointRingsShown(bool shown);

  // Render on change for the 3D view, off by default: the refresh timer still
  // updates the view on every tick, which then renders only when its picture
  // would change. The 2D view ignores it. A plain method, not a slot.
  void setRenderOnDemand(bool on);
  bool renderOnDemand() const;

 signals:
  void chainSelected(const QString& chainName);
  void setMotorValues(QList<QString> actuatorList, QList<float> valueList);
  void robotRemoved();

 public slots:
  void onVisibilityChanged(bool visible);
  void onRenderWindowReady();
  void onRobotRemoved();
  void onRobotReady();
  void update();
  void onControllerMoved(QList<QString> actuatorList, QList<float> valueList);
  void onUse3DControllerChanged();
  void saveScreenshot(const QString& fileName, bool backgroundHidden = false);

 protected:
  void initTimer();

 private slots:
  void showCameraMenu(QMouseEvent* evt);

 private:
  QString m_dataPath;
  NextGenView::RenderWidgetInterface* m_view;
  QTimer* m_refreshTimer;
  QMenu* m_menu;
};

}  // namespace VX
