#include "render_widget.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QImage>
#include <QResizeEvent>
#include <QScreen>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <OgreFrameListener.h>
#include <OgreRoot.h>
#include <OgreSceneManager.h>

#include <ku/record_capture.h>
#include <scene_view/object_3d_view.h>
#include <scene_view/world_3d_view.h>
#include <world_model/forward_kinematic_engine.h>

#include "camera.h"
#include "physic_thread.h"
#include "support/meta_object_table.h"
#include "support/widget_window.h"
// Xlib last: its macros clash with Qt and OGRE names.
#include "support/x_window_place.h"

Q_DECLARE_METATYPE(QMouseEvent*)

using testing_support::WidgetWindow;
using VX::NextGenView::RenderWidget;
using VX::NextGenView::RenderWidgetTestAccess;

namespace {

struct FrameCounter : Ogre::FrameListener {
  bool frameEnded(const Ogre::FrameEvent&) override {
    ++ended;
    return true;
  }
  bool frameStarted(const Ogre::FrameEvent&) override {
    ++started;
    return true;
  }
  int ended = 0;
  int started = 0;
};

// How many pixels of a picture differ from its first pixel.
int pixelsUnlike(const QImage& image, QRgb colour) {
  int count = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x) count += image.pixel(x, y) != colour;
  return count;
}

TEST(RenderWidget, MetaObjectTableInOrder) {
  const auto pub = QMetaMethod::Public;
  const auto prot = QMetaMethod::Protected;
  const auto sig = QMetaMethod::Signal;
  const auto slot = QMetaMethod::Slot;
  expectMethods(RenderWidget::staticMetaObject,
                {
                    {sig, pub, "mousePressEvent(QMouseEvent*)", {"event"}},
                    {sig, pub, "mouseMoveEvent(QMouseEvent*)", {"event"}},
                    {sig, pub, "mouseReleaseEvent(QMouseEvent*)", {"event"}},
                    {sig, pub, "wheelEvent(QWheelEvent*)", {"event"}},
                    {sig, pub, "keyPressEvent(QKeyEvent*)", {"event"}},
                    {sig, pub, "keyReleaseEvent(QKeyEvent*)", {"event"}},
                    {sig, pub, "controllerMoved(QList<QString>,QList<float>)", {"actuatorList", "valueList"}},
                    {slot, pub, "updateView()", {}},
                    {slot, pub, "camera()", {}},
                    {slot, pub, "text(QString)", {"displayedText"}},
                    {slot, pub, "textVisible(bool)", {"isVisible"}},
                    {slot, pub, "displayInfo(bool)", {"isInfoDisplayed"}},
                    {slot, pub, "onObjectSelected(QString,bool)", {"objectName", "multiSelect"}},
                    {slot, pub, "dispatchMotorCommands()", {}},
                    {slot, pub, "onRobotRemoved()", {}},
                    {slot, pub, "saveScreenshot(QString,bool)", {"fileName", "backgroundHidden"}},
                    {slot, pub, "saveScreenshot(QString)", {"fileName"}},
                    {slot, prot, "onMousePress(QMouseEvent*)", {"evt"}},
                    {slot, prot, "onMouseMove(QMouseEvent*)", {"evt"}},
                    {slot, prot, "onMouseRelease(QMouseEvent*)", {"evt"}},
                    {slot, prot, "onWheelEvent(QWheelEvent*)", {"evt"}},
                    {slot, prot, "onKeyPressEvent(QKeyEvent*)", {"evt"}},
                    {slot, prot, "onKeyReleaseEvent(QKeyEvent*)", {"evt"}},
                });
}

TEST(RenderWidget, WindowHandleIsDisplayScreenWindowInDecimal) {
  EXPECT_EQ(RenderWidget::windowHandle(1234, 0, 5678), "1234:0:5678");
  EXPECT_EQ(RenderWidget::windowHandle(0x7f0012345678ul, 1, 0x3a00007ul), "139638282147448:1:60817415");
}

TEST(RenderWidget, CharacterSizeConstants) {
  EXPECT_FLOAT_EQ(RenderWidget::a_bigCharSize, 14.333333f);
  EXPECT_FLOAT_EQ(RenderWidget::a_smallCharSize, 7.1666665f);
}

TEST(RenderWidget, CreateWithoutEngineRootReturnsNullAndKeepsTheChild) {
  ku::log::RecordCapture captured;
  QWidget parent;
  RenderWidget* widget =
      RenderWidget::create(&parent, testing_support::worldWithBundledRobot(), "/no/such/configuration", "", false);
  EXPECT_EQ(widget, nullptr);
  const QList<RenderWidget*> children = parent.findChildren<RenderWidget*>();
  ASSERT_EQ(children.size(), 1) << "the widget is not deleted; it dies with its parent";
  EXPECT_EQ(children.first()->parentWidget(), &parent);
  EXPECT_EQ(parent.layout(), nullptr) << "nothing puts it in a layout";
}

TEST(RenderWidget, InitRenderWindowWithoutSceneViewDoesNothing) {
  QWidget parent;
  RenderWidget::create(&parent, testing_support::worldWithBundledRobot(), "/no/such/configuration", "", false);
  RenderWidget* widget = parent.findChild<RenderWidget*>();
  ASSERT_NE(widget, nullptr);
  QSignalSpy ready(widget, &RenderWidget::renderWindowReady);
  widget->initRenderWindow();
  EXPECT_FALSE(widget->m_initialized);
  EXPECT_EQ(widget->renderWindow(), nullptr);
  EXPECT_EQ(ready.count(), 0);
}

TEST(RenderWidget, ResizeBeforeTheWindowIsLeftUnaccepted) {
  QWidget parent;
  RenderWidget* widget = RenderWidget::create(&parent, testing_support::worldWithBundledRobot(),
                                              testing_support::engineConfiguration(), testing_support::engineLog(), false);
  ASSERT_NE(widget, nullptr);
  QResizeEvent event(QSize(300, 200), QSize(100, 100));
  event.ignore();
  QApplication::sendEvent(widget, &event);
  EXPECT_FALSE(event.isAccepted());
  EXPECT_EQ(widget->renderWindow(), nullptr);
  EXPECT_FALSE(widget->camera());
}

TEST(RenderWidget, ShownItRendersReadyOnce) {
  WidgetWindow window;
  ASSERT_NE(window.widget, nullptr);
  QSignalSpy ready(window.widget, &RenderWidget::renderWindowReady);
  ASSERT_TRUE(window.show());
  EXPECT_EQ(ready.count(), 1);
  Ogre::RenderWindow* renderWindow = window.widget->renderWindow();
  ASSERT_NE(renderWindow, nullptr);
  const boost::shared_ptr<VX::NextGenView::Camera> camera = window.widget->camera();
  Ogre::SceneManager* scene = window.widget->worldView()->getOgreSceneManager();
  const std::size_t cameras = scene->getCameras().size();
  const unsigned short viewports = renderWindow->getNumViewports();
  ku::log::RecordCapture captured;
  window.widget->initRenderWindow();
  EXPECT_EQ(ready.count(), 1) << "a second call emits nothing";
  // ... and builds nothing: no window, camera, viewport or record.
  EXPECT_EQ(window.widget->renderWindow(), renderWindow);
  EXPECT_EQ(window.widget->camera(), camera);
  EXPECT_EQ(scene->getCameras().size(), cameras);
  EXPECT_EQ(renderWindow->getNumViewports(), viewports);
  EXPECT_TRUE(captured.records().empty()) << captured.records().front().text;
}

TEST(RenderWidget, RendersIntoItsOwnAreaOnly) {
  WidgetWindow window;
  ASSERT_TRUE(window.show());
  window.widget->updateView();
  QTest::qWait(100);
  window.widget->updateView();

  QTemporaryDir folder;
  const QString file = folder.filePath("frame.png");
  window.widget->renderWindow()->writeContentsToFile(file.toStdString());
  const QImage frame(file);
  ASSERT_FALSE(frame.isNull());
  EXPECT_EQ(frame.size(), window.widget->size());
  EXPECT_GT(pixelsUnlike(frame, frame.pixel(0, 0)), frame.width() * frame.height() / 50) << "a scene, not a blank";

  // OGRE's X window is a child of the widget's own window and covers it exactly.
  unsigned long ogreWindow = 0;
  window.widget->renderWindow()->getCustomAttribute("WINDOW", &ogreWindow);
  const testing_support::XWindowPlace place = testing_support::xWindowPlace(ogreWindow);
  EXPECT_EQ(place.parent, static_cast<unsigned long>(window.widget->winId()));
  EXPECT_EQ(place.geometry, QRect(QPoint(0, 0), window.widget->size()));
  EXPECT_LE(window.above->geometry().bottom(), window.widget->geometry().top()) << "the label stays above the view";
  EXPECT_GE(window.below->geometry().top(), window.widget->geometry().bottom());

  // What the screen shows there, for a person to look at.
  const QPoint origin = window.widget->mapToGlobal(QPoint(0, 0));
  QGuiApplication::primaryScreen()
      ->grabWindow(0, origin.x(), origin.y(), window.widget->width(), window.widget->height())
      .save(QString::fromUtf8(::testing::TempDir().c_str()) + "render_widget_screen.png");
}

TEST(RenderWidget, RepaintReachesThePaintHandler) {
  WidgetWindow window;
  ASSERT_TRUE(window.show());
  FrameCounter counter;
  Ogre::Root::getSingleton().addFrameListener(&counter);
  window.widget->repaint();
  Ogre::Root::getSingleton().removeFrameListener(&counter);
  EXPECT_EQ(counter.ended, 2) << "frame-ended before and after the update";
  EXPECT_EQ(counter.started, 0);
}

TEST(RenderWidget, InputEventsAreReEmitted) {
  WidgetWindow window;
  ASSERT_TRUE(window.show());
  RenderWidget* widget = window.widget;
  qRegisterMetaType<QMouseEvent*>();
  QSignalSpy press(widget, SIGNAL(mousePressEvent(QMouseEvent*)));
  QSignalSpy move(widget, SIGNAL(mouseMoveEvent(QMouseEvent*)));
  QSignalSpy release(widget, SIGNAL(mouseReleaseEvent(QMouseEvent*)));
  QSignalSpy wheel(widget, SIGNAL(wheelEvent(QWheelEvent*)));
  QSignalSpy keyPress(widget, SIGNAL(keyPressEvent(QKeyEvent*)));
  QSignalSpy keyRelease(widget, SIGNAL(keyReleaseEvent(QKeyEvent*)));

  QTest::mousePress(widget, Qt::RightButton, Qt::NoModifier, QPoint(50, 50));
  QMouseEvent moveEvent(QEvent::MouseMove, QPointF(60, 55), Qt::NoButton, Qt::RightButton, Qt::NoModifier);
  QApplication::sendEvent(widget, &moveEvent);
  QTest::mouseRelease(widget, Qt::RightButton, Qt::NoModifier, QPoint(60, 55));
  QWheelEvent wheelEvent(QPointF(40, 40), QPointF(widget->mapToGlobal(QPoint(40, 40))), QPoint(), QPoint(0, 120),
                         Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(widget, &wheelEvent);
  widget->setFocus();
  QTest::keyPress(widget, Qt::Key_Up);
  QTest::keyRelease(widget, Qt::Key_Up);

  EXPECT_EQ(press.count(), 1);
  ASSERT_EQ(move.count(), 1);
  EXPECT_EQ(move.at(0).at(0).value<QMouseEvent*>(), &moveEvent) << "the same event pointer";
  EXPECT_EQ(release.count(), 1);
  EXPECT_EQ(wheel.count(), 1);
  EXPECT_EQ(keyPress.count(), 1);
  EXPECT_EQ(keyRelease.count(), 1);
}

TEST(RenderWidget, WindowResizeResizesTheOgreWindow) {
  WidgetWindow window;
  ASSERT_TRUE(window.show());
  window.window.resize(800, 700);
  QTest::qWait(200);
  EXPECT_EQ(window.widget->renderWindow()->getWidth(), static_cast<unsigned int>(window.widget->width()));
  EXPECT_EQ(window.widget->renderWindow()->getHeight(), static_cast<unsigned int>(window.widget->height()));
  EXPECT_NEAR(window.widget->camera()->ogreCamera()->getAspectRatio(),
              float(window.widget->width()) / float(window.widget->height()), 1e-5);
}

TEST(RenderWidget, ForwardKinematicsSteppedOnceTheWindowIsBuilt) {
  WidgetWindow window;
  auto engine = window.world->forwardKinematicEngine();
  QTest::qWait(200);
  EXPECT_EQ(engine->stepCount(), 0) << "no stepping before the render window";
  ASSERT_TRUE(window.show());
  EXPECT_TRUE(window.widget->physicThread()->isRunning());
  const int before = engine->stepCount();
  QTest::qWait(1000);
  const int steps = engine->stepCount() - before;
  EXPECT_GE(steps, 8);
  EXPECT_LE(steps, 30);
}

TEST(RenderWidget, SaveScreenshotWithFileNameOnlyKeepsTheBackground) {
  WidgetWindow window;
  ASSERT_TRUE(window.show());
  window.widget->updateView();
  QTemporaryDir folder;
  const QString file = folder.filePath("shot.png");
  ASSERT_TRUE(QMetaObject::invokeMethod(window.widget, "saveScreenshot", Q_ARG(QString, file)));
  const QImage shot(file);
  ASSERT_FALSE(shot.isNull());
  EXPECT_EQ(shot.size(), window.widget->size());
  EXPECT_NE(shot.pixel(1, 1), qRgb(255, 255, 255)) << "the sky stays: backgroundHidden defaults to false";
}

TEST(RenderWidget, RobotRemovedClearsTheSelectionOnly) {
  WidgetWindow window;
  ASSERT_TRUE(window.show());
  RenderWidget* widget = window.widget;
  auto views = widget->worldView()->allObjects();
  ASSERT_FALSE(views.empty());
  widget->onObjectSelected("TorsoLink", false);
  RenderWidgetTestAccess::setMotorCommand(*widget, "HeadYaw", 0.25f);
  ASSERT_FALSE(RenderWidgetTestAccess::selectedObjects(*widget).isEmpty());

  widget->onRobotRemoved();
  EXPECT_TRUE(RenderWidgetTestAccess::selectedObjects(*widget).isEmpty());
  for (const auto& view : widget->worldView()->allObjects()) {
    EXPECT_FALSE(view->m_selected);
    EXPECT_FALSE(view->m_highlighted);
  }
  EXPECT_EQ(RenderWidgetTestAccess::motorCommands(*widget).value("HeadYaw"), 0.25f) << "nothing else changes";
}

// An engine configuration like the shipped one, with the font left out of the media.
std::string configurationWithoutFont(const QTemporaryDir& folder) {
  const QString media = QString::fromUtf8(RENDERWIDGET_BUILD_DATA_DIR) + "/media/";
  QFile file(folder.filePath("engine.cfg"));
  EXPECT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(("Plugin=RenderSystem_GL\nPlugin=Plugin_OctreeSceneManager\nPlugin=Codec_FreeImage\n"
              "ResourceLocation=FileSystem:" + media + "materials\n"
              "ResourceLocation=FileSystem:" + media + "textures\n").toUtf8());
  return folder.path().toStdString();
}

TEST(RenderWidget, OgreErrorWhileBuildingTheWindowIsLoggedAndLeavesItUninitialised) {
  QTemporaryDir folder;
  WidgetWindow window(testing_support::worldWithBundledRobot(), false, configurationWithoutFont(folder));
  ASSERT_NE(window.widget, nullptr);
  ku::log::RecordCapture captured;
  QSignalSpy ready(window.widget, &RenderWidget::renderWindowReady);
  EXPECT_FALSE(window.show());
  EXPECT_FALSE(window.widget->m_initialized);
  EXPECT_EQ(ready.count(), 0);
  EXPECT_NE(window.widget->renderWindow(), nullptr) << "the failure came after the window was made";

  const std::optional<ku::log::Record> record = captured.firstFrom("initRenderWindow");
  ASSERT_TRUE(record);
  EXPECT_EQ(record->level, 2);
  EXPECT_EQ(record->category, "rdr.widget");
  EXPECT_EQ(record->file, "");
  EXPECT_EQ(record->line, 0);
  EXPECT_EQ(record->text.rfind("Error when creating render window: ", 0), 0u) << record->text;
  EXPECT_NE(record->text.find("unispace_bd.ttf"), std::string::npos) << record->text;
  EXPECT_EQ(record->text.back(), '\n');

  // Events stay unconnected and later calls return at once.
  QTest::mousePress(window.widget, Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
  EXPECT_EQ(RenderWidgetTestAccess::state(*window.widget), RenderWidget::NoState);
  const std::size_t records = captured.records().size();
  window.widget->initRenderWindow();
  EXPECT_EQ(captured.records().size(), records);
  window.widget->updateView();
}

TEST(RenderWidget, MissingSceneViewRecordText) {
  ku::log::RecordCapture captured;
  QWidget parent;
  RenderWidget::create(&parent, testing_support::worldWithBundledRobot(), "/no/such/configuration", "", false);
  const std::optional<ku::log::Record> record = captured.firstFrom("initWorldView");
  ASSERT_TRUE(record);
  EXPECT_EQ(record->text, "Failed to create world view ! \n");
  EXPECT_EQ(record->level, 2);
  EXPECT_EQ(record->category, "rdr.widget");
  EXPECT_EQ(record->file, "");
  EXPECT_EQ(record->line, 0);
}

TEST(RenderWidget, SignalsAreConnectedOnlyAfterTheWindow) {
  WidgetWindow window;
  RenderWidget* widget = window.widget;
  ASSERT_NE(widget, nullptr);
  QTest::mousePress(widget, Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
  EXPECT_EQ(RenderWidgetTestAccess::state(*widget), RenderWidget::NoState) << "events reach nothing yet";
  QTest::mouseRelease(widget, Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
  ASSERT_TRUE(window.show());
  QTest::mousePress(widget, Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
  EXPECT_NE(RenderWidgetTestAccess::state(*widget), RenderWidget::NoState);
  QTest::mouseRelease(widget, Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
  EXPECT_EQ(RenderWidgetTestAccess::state(*widget), RenderWidget::Released);
}

}  // namespace
