#pragma once
// A main window holding the 3D widget among other widgets, as a host has it.

#include <string>

#include <QLabel>
#include <QMainWindow>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

#include <OgreRenderWindow.h>

#include <ku/path.h>

#include "render_widget.h"
#include "support/test_world.h"

namespace testing_support {

inline std::string engineConfiguration() { return ku::path::findConf("balterconix", "ogre"); }
inline std::string engineLog() { return ku::path::userWritableDataPath("balterconix", "ogre.log"); }

// The widget is built by create() inside a central widget, between a label
// and a button; show() makes the windows native and builds the render window.
struct WidgetWindow {
  explicit WidgetWindow(boost::shared_ptr<VX::NextGenView::World> world = worldWithBundledRobot(),
                        bool use3DController = false, const std::string& configuration = engineConfiguration())
      : world(world) {
    window.resize(640, 520);
    central = new QWidget(&window);
    auto* layout = new QVBoxLayout(central);
    above = new QLabel("above the view", central);
    layout->addWidget(above);
    widget = VX::NextGenView::RenderWidget::create(central, world, configuration, engineLog(), use3DController);
    if (widget) layout->addWidget(widget, 1);
    below = new QPushButton("below the view", central);
    layout->addWidget(below);
    window.setCentralWidget(central);
  }

  // Shows the window and builds the render window; true when ready.
  bool show() {
    window.show();
    if (!QTest::qWaitForWindowExposed(&window)) return false;
    if (!widget) return false;
    widget->initRenderWindow();
    QTest::qWait(50);
    return widget->m_initialized;
  }

  boost::shared_ptr<VX::NextGenView::World> world;
  QMainWindow window;
  QWidget* central = nullptr;
  QLabel* above = nullptr;
  QPushButton* below = nullptr;
  VX::NextGenView::RenderWidget* widget = nullptr;
};

}  // namespace testing_support

namespace VX::NextGenView {

// Read access to the widget's interaction state, for tests only.
class RenderWidgetTestAccess {
 public:
  static int state(const RenderWidget& w) { return w.m_state; }
  static int previousState(const RenderWidget& w) { return w.m_previousState; }
  static bool selectLinks(const RenderWidget& w) { return w.m_selectLinks; }
  static bool selectControllers(const RenderWidget& w) { return w.m_selectControllers; }
  static bool use3DController(const RenderWidget& w) { return w.m_use3DController; }
  static bool controllersFiltered(const RenderWidget& w) { return w.m_controllersFiltered; }
  static QList<boost::shared_ptr<Object3DView>> selectedObjects(const RenderWidget& w) { return w.m_selectedObjects; }
  static QMap<QString, float> motorCommands(const RenderWidget& w) { return w.m_motorCommands; }
  static void setMotorCommand(RenderWidget& w, const QString& name, float value) { w.m_motorCommands[name] = value; }
  static QTimer* motorCommandTimer(const RenderWidget& w) { return w.m_motorCommandTimer; }
  static bool motorMutexFree(RenderWidget& w) {
    if (!w.m_motorCommandsMutex.tryLock()) return false;
    w.m_motorCommandsMutex.unlock();
    return true;
  }
  static boost::shared_ptr<Selection> selection(const RenderWidget& w) { return w.m_selection; }
  static Ogre::TextAreaOverlayElement* sentenceArea(const RenderWidget& w) { return w.m_sentenceArea; }
  static Ogre::TextAreaOverlayElement* infoArea(const RenderWidget& w) { return w.m_infoArea; }
  static Ogre::TextAreaOverlayElement* textArea(const RenderWidget& w) { return w.m_textArea; }
  static Ogre::Overlay* overlay(const RenderWidget& w) { return w.m_overlay; }
  static void initCamera(RenderWidget& w) { w.initCamera(); }
  static void clearSelection(RenderWidget& w) { w.clearSelection(); }
};

}  // namespace VX::NextGenView
