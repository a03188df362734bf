// Random input from a fixed seed against the container in its 3D view, with
// the motor commands applied as a host does: clicks, drags, wheel, keys, Ctrl,
// resizes, viewpoints, mode toggles, sentences. The application must stay
// alive, keep answering and keep its memory flat. MONKEY_INPUTS sets the count
// (1000 by default; scripts/monkey.sh runs 10 000).
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QMenu>
#include <QSettings>
#include <QTest>
#include <QTimer>

#include <random>

#include <world_model/robot.h>
#include <world_model/world.h>

#include "camera.h"
#include "render_widget.h"
#include "support/test_world.h"
#include "world_view_container.h"

using VX::WorldViewContainer;
using VX::NextGenView::RenderWidget;

namespace {

long residentKilobytes() {
  QFile status("/proc/self/status");
  if (!status.open(QIODevice::ReadOnly)) return 0;
  for (const QByteArray& line : status.readAll().split('\n')) {
    if (line.startsWith("VmRSS:")) return line.mid(6).trimmed().split(' ').first().toLong();
  }
  return 0;
}

// Whether the event loop still runs a zero-delay timer within a second.
bool answers() {
  bool fired = false;
  QTimer::singleShot(0, [&fired] { fired = true; });
  QElapsedTimer clock;
  clock.start();
  while (!fired && clock.elapsed() < 1000) QApplication::processEvents(QEventLoop::AllEvents, 50);
  return fired;
}

class Monkey {
 public:
  Monkey(WorldViewContainer& container, VX::NextGenView::World& world, unsigned seed)
      : m_container(container), m_world(world), m_random(seed) {}

  void act() {
    switch (pick(0, 11)) {
      case 0: case 1: click(); break;
      case 2: case 3: drag(); break;
      case 4: wheel(); break;
      case 5: case 6: key(); break;
      case 7: resize(); break;
      case 8: viewpoint(); break;
      case 9: toggleMode(); break;
      case 10: say(); break;
      default: m_container.update(); break;
    }
  }

 private:
  int pick(int low, int high) { return std::uniform_int_distribution<int>(low, high)(m_random); }
  QWidget* view() const { return m_container.view(); }
  QPoint anywhere() { return QPoint(pick(-5, view()->width() + 5), pick(-5, view()->height() + 5)); }
  Qt::KeyboardModifiers maybeCtrl() { return pick(0, 3) == 0 ? Qt::ControlModifier : Qt::NoModifier; }
  Qt::MouseButton button() {
    static const Qt::MouseButton buttons[] = {Qt::LeftButton, Qt::LeftButton, Qt::RightButton, Qt::MiddleButton};
    return buttons[pick(0, 3)];
  }

  void click() {
    const QPoint at = anywhere();
    const Qt::MouseButton which = button();
    const Qt::KeyboardModifiers modifiers = maybeCtrl();
    QTest::mousePress(view(), which, modifiers, at);
    QTest::mouseRelease(view(), which, modifiers, at);
  }

  void drag() {
    const Qt::MouseButton which = button();
    const Qt::KeyboardModifiers modifiers = maybeCtrl();
    QPoint at = anywhere();
    QTest::mousePress(view(), which, modifiers, at);
    for (int step = pick(1, 6); step > 0; --step) {
      at += QPoint(pick(-30, 30), pick(-30, 30));
      QMouseEvent move(QEvent::MouseMove, at, Qt::NoButton, which, modifiers);
      QApplication::sendEvent(view(), &move);
    }
    if (pick(0, 2) == 0) QTest::qWait(pick(0, 120));  // sometimes rest long enough for a batch
    QTest::mouseRelease(view(), which, modifiers, at);
  }

  void wheel() {
    const QPoint at = anywhere();
    QWheelEvent event(at, view()->mapToGlobal(at), QPoint(), QPoint(0, pick(-240, 240)), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(view(), &event);
  }

  void key() {
    static const int keys[] = {Qt::Key_Up, Qt::Key_Down, Qt::Key_Left, Qt::Key_Right, Qt::Key_PageUp,
                               Qt::Key_PageDown, Qt::Key_Control, Qt::Key_Control, Qt::Key_A, Qt::Key_Escape};
    const int code = keys[pick(0, 9)];
    QTest::keyPress(view(), static_cast<Qt::Key>(code));
    if (pick(0, 4) != 0) QTest::keyRelease(view(), static_cast<Qt::Key>(code));
  }

  void resize() { m_container.resize(pick(20, 700), pick(0, 500)); }

  void viewpoint() {
    auto* widget = dynamic_cast<RenderWidget*>(view());
    if (!widget || !widget->camera()) return;
    const QList<QAction*> actions = widget->camera()->cameraMenu()->actions();
    actions.at(pick(0, actions.size() - 1))->trigger();
  }

  void toggleMode() {
    QSettings settings;
    settings.setValue(WorldViewContainer::a_use3DControllerForMotorsKey,
                      !settings.value(WorldViewContainer::a_use3DControllerForMotorsKey).toBool());
    m_container.onUse3DControllerChanged();
    if (auto* widget = dynamic_cast<RenderWidget*>(view())) widget->displayInfo(pick(0, 1) == 1);
  }

  void say() {
    static const char* sentences[] = {"", "Hello.", "I am zel, a small robot, and this sentence is rather long for the view.",
                                      "\xff\xfe invalid", "Grüße", "no-space-at-all-in-this-very-long-sentence-xxxxxxxxxxxxxxx"};
    for (const auto& robot : m_world.robots()) robot->setSentence(sentences[pick(0, 5)]);
    m_container.update();
  }

  WorldViewContainer& m_container;
  VX::NextGenView::World& m_world;
  std::mt19937 m_random;
};

TEST(Monkey, RandomInputFromAFixedSeed) {
  const int inputs = qEnvironmentVariableIsSet("MONKEY_INPUTS") ? qEnvironmentVariableIntValue("MONKEY_INPUTS") : 1000;
  auto world = testing_support::worldWithBundledRobot();
  WorldViewContainer container(nullptr, QString(), nullptr, world, true);
  QObject::connect(&container, &WorldViewContainer::setMotorValues,
                   [&world](const QList<QString>& names, const QList<float>& values) {
                     std::vector<std::string> plainNames;
                     for (const QString& name : names) plainNames.push_back(name.toStdString());
                     world->setActuatorCommands(plainNames, std::vector<float>(values.begin(), values.end()));
                   });
  container.resize(500, 400);
  container.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&container));
  container.onVisibilityChanged(true);
  ASSERT_TRUE(container.view()->m_initialized);

  // A right click opens the viewpoint menu in its own event loop; close it as a user would.
  QTimer menuCloser;
  QObject::connect(&menuCloser, &QTimer::timeout, [] {
    if (QWidget* popup = QApplication::activePopupWidget()) popup->close();
  });
  menuCloser.start(20);

  Monkey monkey(container, *world, 20261121u);
  QElapsedTimer clock;
  clock.start();
  long baseline = 0;
  for (int i = 1; i <= inputs; ++i) {
    monkey.act();
    if (i % 50 == 0) {
      ASSERT_TRUE(answers()) << "no answer after input " << i;
    }
    if (i == inputs / 10) baseline = residentKilobytes();
  }
  container.resize(500, 400);
  container.update();
  ASSERT_TRUE(answers());
  const long final = residentKilobytes();
  std::printf("monkey: %d inputs in %.1f s; resident memory %ld kB after %d inputs, %ld kB at the end\n", inputs,
              clock.elapsed() / 1000.0, baseline, inputs / 10, final);
  // Flat: growth past the first tenth stays small (each pick keeps its small query object on purpose).
  EXPECT_LT(final - baseline, 16 * 1024) << "resident memory grew from " << baseline << " kB to " << final << " kB";
}

}  // namespace
