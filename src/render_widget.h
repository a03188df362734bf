#pragma once

#include <memory>
#include <string>

#include <QList>
#include <QMap>
#include <QMutex>
#include <QString>

#include <boost/shared_ptr.hpp>

#include "render_widget_interface.h"

class QKeyEvent;
class QMouseEvent;
class QPaintEngine;
class QTimer;
class QWheelEvent;

namespace Ogre {
class Overlay;
class Quaternion;
class RenderWindow;
class TextAreaOverlayElement;
}  // namespace Ogre

namespace VX::NextGenView {

class Camera;
class FrameChangeWatch;
class Object3DView;
class OgreEngine;
class PhysicThread;
class Selection;
class World;
class World3DView;

// The 3D view: OGRE renders the scene view of the world into this widget's
// native X11 window. Qt's mouse, wheel and key events are re-emitted as the
// signals of the same names and handled by the on... slots.
class RenderWidget : public RenderWidgetInterface {
  Q_OBJECT
  friend class RenderWidgetTestAccess;  // tests read the interaction state

 public:
  // Mouse interaction states.
  enum InteractionState {
    NoState = -1,
    Released = 0,
    Pressed = 1,
    Moving = 2,
    Dragging = 3,
    LinkSelected = 6,
    ControllerGrabbed = 7
  };

  static const float a_bigCharSize;    // pixels per character at character height 32
  static const float a_smallCharSize;  // pixels per character at character height 16

  // The only way to build the 3D view: null when the render engine has no
  // root. The widget is then not deleted; it stays a child of `parent`.
  static RenderWidget* create(QWidget* parent, boost::shared_ptr<World> world, const std::string& confPath,
                              const std::string& logPath, bool use3DController);

  // `parent` must not be null: its native window must exist before OGRE's.
  RenderWidget(QWidget* parent, boost::shared_ptr<World> world, const std::string& confPath,
               const std::string& logPath, bool use3DController);
  ~RenderWidget() override;

  void initRenderWindow() override;
  QPaintEngine* paintEngine() const override;

  // The sky box's orientation: a quarter turn about +X, so its up is +Z.
  static Ogre::Quaternion computeSkyQuaternion();

  // OGRE's "parentWindowHandle": display, screen and window in decimal.
  static std::string windowHandle(unsigned long display, unsigned int screen, unsigned long window);

  boost::shared_ptr<OgreEngine> renderEngine() const { return m_renderEngine; }
  boost::shared_ptr<World3DView> worldView() const { return m_worldView; }
  boost::shared_ptr<PhysicThread> physicThread() const { return m_physicThread; }
  Ogre::RenderWindow* renderWindow() const { return m_renderWindow; }

  void setUse3DController(bool use);

  // Scene-view switches, passed to the world view: each link's collision
  // geometry instead of its visuals (off by default); all joint rings shown
  // or hidden and out of picking (shown by default).
  void setCollisionGeometryShown(bool shown);
  void setJointRingsShown(bool shown);
  // Sets the camera's home distance and target offset so that every link of
  // the world is in view, with a margin, from each viewpoint, then goes to
  // the front viewpoint. Does nothing before the scene is shown or while no
  // link has geometry; returns whether it framed.
  bool frameWorld();
  // Render on change, off by default: when on, updateView() still runs the
  // whole frame update but renders only when the picture would change (or
  // while the info overlay is shown); screenshots always render first.
  void setRenderOnDemand(bool on);
  bool renderOnDemand() const { return m_renderOnDemand; }

 signals:
  // Declared as signals, these override QWidget's event handlers, so every
  // event Qt delivers is re-emitted with the same pointer.
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void controllerMoved(QList<QString> actuatorList, QList<float> valueList);

 public slots:
  void updateView() override;
  boost::shared_ptr<NextGenView::Camera> camera() const;
  void text(const QString& displayedText);
  void textVisible(bool isVisible);
  void displayInfo(bool isInfoDisplayed) override;
  void onObjectSelected(const QString& objectName, bool multiSelect);
  void dispatchMotorCommands();
  void onRobotRemoved();
  void saveScreenshot(const QString& fileName, bool backgroundHidden = false);

 protected slots:
  void onMousePress(QMouseEvent* evt);
  void onMouseMove(QMouseEvent* evt);
  void onMouseRelease(QMouseEvent* evt);
  void onWheelEvent(QWheelEvent* evt);
  void onKeyPressEvent(QKeyEvent* evt);
  void onKeyReleaseEvent(QKeyEvent* evt);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void initWorldView();
  void initRenderingSettings();
  void initLights();
  void initCamera();
  void initOverlay();
  void initSelection();
  void initPhysicThread();
  void connectEvents();
  void clearSelection();
  // The two kinds of selection; selectController is false when no
  // controller has that name.
  bool selectController(const QString& objectName, bool multiSelect);
  void selectLink(const QString& objectName, bool multiSelect);
  static void markSelected(Object3DView& view);
  void dragController(QMouseEvent* evt);
  void displayText();
  void timerMotorCommand();
  void setState(int state);
  unsigned int windowPixels(int widgetPixels) const;

  boost::shared_ptr<Selection> m_selection;
  boost::shared_ptr<OgreEngine> m_renderEngine;
  boost::shared_ptr<World> m_world;
  boost::shared_ptr<World3DView> m_worldView;
  Ogre::RenderWindow* m_renderWindow;  // owned by OGRE's root
  boost::shared_ptr<PhysicThread> m_physicThread;
  Ogre::Overlay* m_overlay;
  Ogre::TextAreaOverlayElement* m_textArea;
  Ogre::TextAreaOverlayElement* m_infoArea;
  Ogre::TextAreaOverlayElement* m_sentenceArea;
  boost::shared_ptr<Camera> m_camera;
  QString m_text;
  bool m_textVisible;
  bool m_infoDisplayed;
  bool m_use3DController;
  bool m_controllersFiltered;
  bool m_selectLinks;
  bool m_selectControllers;
  int m_state;
  int m_previousState;
  QList<boost::shared_ptr<Object3DView>> m_selectedObjects;
  QTimer* m_motorCommandTimer;
  QMutex m_motorCommandsMutex;
  QMap<QString, float> m_motorCommands;
  bool m_renderOnDemand = false;
  std::unique_ptr<FrameChangeWatch> m_changeWatch;
};

}  // namespace VX::NextGenView
