#include "world_view_container.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QChildEvent>
#include <QFile>
#include <QImage>
#include <QMenu>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <scene_view/object_3d_view.h>
#include <scene_view/world_3d_view.h>

#include "camera.h"
#include "render_widget.h"
#include "render_widget_2d.h"
#include <scene_view/world_3d_view.h>

#include "support/meta_object_table.h"
#include "support/widget_window.h"

using VX::WorldViewContainer;
using VX::NextGenView::RenderWidget;
using VX::NextGenView::RenderWidget2d;

namespace {

// Every test starts from empty application settings (under the test run's
// scratch XDG_CONFIG_HOME).
class Container : public ::testing::Test {
 protected:
  void SetUp() override {
    QSettings settings;
    settings.clear();
    settings.sync();
    QFile::remove(settings.fileName());
  }
  static QString settingsOnDisk() {
    QFile file(QSettings().fileName());
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
  }
  std::unique_ptr<WorldViewContainer> make(bool use3DView) {
    return std::make_unique<WorldViewContainer>(nullptr, m_data.path(), nullptr,
                                                testing_support::worldWithBundledRobot(), use3DView);
  }
  // Shows the container as a host does and waits for the render window.
  bool showReady(WorldViewContainer& container) {
    container.resize(500, 400);
    container.show();
    if (!QTest::qWaitForWindowExposed(&container)) return false;
    container.onVisibilityChanged(true);
    return container.view() && container.view()->m_initialized;
  }
  QTemporaryDir m_data;
};

// Reads the settings file whenever the container receives its view as a child.
class MarkerWatcher : public QObject {
 public:
  bool eventFilter(QObject* watched, QEvent* event) override {
    // The first widget child is the 3D view, announced as its construction begins.
    if (event->type() == QEvent::ChildAdded && qobject_cast<WorldViewContainer*>(watched) &&
        static_cast<QChildEvent*>(event)->child()->isWidgetType()) {
      QFile file(QSettings().fileName());
      if (file.open(QIODevice::ReadOnly)) seen << QString::fromUtf8(file.readAll());
    }
    return false;
  }
  QStringList seen;
};

TEST(WorldViewContainerMeta, ThirteenEntriesInOrder) {
  const auto pub = QMetaMethod::Public;
  const auto sig = QMetaMethod::Signal;
  const auto slot = QMetaMethod::Slot;
  expectMethods(WorldViewContainer::staticMetaObject,
                {
                    {sig, pub, "chainSelected(QString)", {"chainName"}},
                    {sig, pub, "setMotorValues(QList<QString>,QList<float>)", {"actuatorList", "valueList"}},
                    {sig, pub, "robotRemoved()", {}},
                    {slot, pub, "onVisibilityChanged(bool)", {"visible"}},
                    {slot, pub, "onRenderWindowReady()", {}},
                    {slot, pub, "onRobotRemoved()", {}},
                    {slot, pub, "onRobotReady()", {}},
                    {slot, pub, "update()", {}},
                    {slot, pub, "onControllerMoved(QList<QString>,QList<float>)", {"actuatorList", "valueList"}},
                    {slot, pub, "onUse3DControllerChanged()", {}},
                    {slot, pub, "saveScreenshot(QString,bool)", {"fileName", "backgroundHidden"}},
                    {slot, pub, "saveScreenshot(QString)", {"fileName"}},
                    {slot, QMetaMethod::Private, "showCameraMenu(QMouseEvent*)", {"evt"}},
                });
}

TEST(WorldViewContainerMeta, Constants) {
  EXPECT_EQ(WorldViewContainer::a_sizeHintWidth, 160);
  EXPECT_EQ(WorldViewContainer::a_use3DControllerForMotorsKey, "Preferences/general/use3DController");
  EXPECT_FALSE(WorldViewContainer::a_default_use3DControllerForMotors);
}

TEST_F(Container, TwoDimensionalViewTouchesNoSettingsAndHasNoMenuOrTimer) {
  auto container = make(false);
  EXPECT_TRUE(dynamic_cast<RenderWidget2d*>(container->view()));
  EXPECT_EQ(container->menu(), nullptr);
  EXPECT_EQ(container->refreshTimer(), nullptr);
  container->saveScreenshot(m_data.filePath("shot.png"));
  container->onUse3DControllerChanged();
  container->onVisibilityChanged(true);
  EXPECT_EQ(container->refreshTimer(), nullptr);
  EXPECT_FALSE(QFile::exists(m_data.filePath("shot.png")));
  EXPECT_TRUE(QSettings().allKeys().isEmpty());
  EXPECT_FALSE(QFile::exists(QSettings().fileName()));
  EXPECT_TRUE(container->findChildren<QTimer*>().isEmpty());
}

TEST_F(Container, MarkerIsFalseDuringCreateAndTrueAfter) {
  MarkerWatcher watcher;
  qApp->installEventFilter(&watcher);
  auto container = make(true);
  qApp->removeEventFilter(&watcher);
  ASSERT_TRUE(dynamic_cast<RenderWidget*>(container->view()));
  ASSERT_FALSE(watcher.seen.isEmpty());
  EXPECT_TRUE(watcher.seen.first().contains("ogreInitSucceeded=false")) << watcher.seen.first().toStdString();
  EXPECT_TRUE(QSettings().value("ogreInitSucceeded").toBool());
  EXPECT_NE(container->menu(), nullptr);
  EXPECT_EQ(container->menu()->parent(), container.get());
  EXPECT_EQ(container->refreshTimer(), nullptr) << "the timer waits for the render window";
}

TEST_F(Container, EngineFailureLeavesTheMarkerFalseAndNoView) {
  QSettings().setValue("ogreInitSucceeded", true);
  QTemporaryDir emptyConfig;
  // A configuration folder that holds an "ogre" configuration without a render system.
  QDir(emptyConfig.path()).mkpath("balterconix/ogre");
  QFile broken(emptyConfig.filePath("balterconix/ogre/engine.cfg"));
  ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
  broken.write("Plugin=NoSuchPlugin\n");
  broken.close();
  const QByteArray savedDirs = qgetenv("XDG_CONFIG_DIRS");
  qputenv("XDG_CONFIG_DIRS", emptyConfig.path().toUtf8());
  auto container = make(true);
  qputenv("XDG_CONFIG_DIRS", savedDirs);
  EXPECT_EQ(container->view(), nullptr) << "no fallback to the 2D view";
  EXPECT_FALSE(QSettings().value("ogreInitSucceeded").toBool());
  EXPECT_EQ(container->menu(), nullptr);
}

TEST_F(Container, SizeHintIsAlways160Wide) {
  auto twoD = make(false);
  EXPECT_EQ(twoD->sizeHint().width(), 160);
  auto threeD = make(true);
  EXPECT_EQ(threeD->sizeHint().width(), 160);
  EXPECT_EQ(threeD->sizeHint().height(), threeD->QWidget::sizeHint().height());
}

TEST_F(Container, VisibilityBuildsTheRenderWindowOnlyWhileUninitialised) {
  auto container = make(true);
  auto* view = static_cast<RenderWidget*>(container->view());
  QSignalSpy ready(view, SIGNAL(renderWindowReady()));
  container->resize(400, 300);
  container->show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(container.get()));
  container->onVisibilityChanged(false);
  EXPECT_FALSE(view->m_initialized);
  EXPECT_FALSE(view->isVisible());
  EXPECT_EQ(view->renderWindow(), nullptr) << "hiding builds nothing";
  // A view that says it is initialised is not built again, even without a window.
  view->m_initialized = true;
  container->onVisibilityChanged(true);
  EXPECT_EQ(view->renderWindow(), nullptr);
  EXPECT_EQ(ready.count(), 0);
  EXPECT_TRUE(view->isVisible());
  view->m_initialized = false;
  container->onVisibilityChanged(true);
  EXPECT_TRUE(view->m_initialized);
  EXPECT_NE(view->renderWindow(), nullptr);
  EXPECT_EQ(ready.count(), 1);
}

TEST_F(Container, UpdateBeforeInitialisationDoesNothing) {
  auto container = make(true);
  auto* view = static_cast<RenderWidget*>(container->view());
  container->update();
  container->onRobotReady();
  EXPECT_EQ(view->renderWindow(), nullptr);
  EXPECT_FALSE(view->m_initialized);

  // The 2D view answers every update with the chain it shows: none may reach it before initialisation.
  auto twoD = make(false);
  QSignalSpy chains(twoD->view(), SIGNAL(chainSelected(QString)));
  twoD->update();
  twoD->onRobotReady();
  twoD->onRobotRemoved();
  EXPECT_EQ(chains.count(), 0);
  EXPECT_TRUE(static_cast<RenderWidget2d*>(twoD->view())->bitmapAreas().isEmpty());
  twoD->view()->initRenderWindow();
  twoD->update();
  EXPECT_EQ(chains.count(), 1);
  EXPECT_EQ(static_cast<RenderWidget2d*>(twoD->view())->bitmapAreas().size(), 5);
}

TEST_F(Container, ControllerMovedIsRelayedElementForElement) {
  auto container = make(true);
  QSignalSpy motors(container.get(), &WorldViewContainer::setMotorValues);
  const QList<QString> names{"LElbowRoll", "RElbowRoll", "HeadYaw"};
  const QList<float> values{0.5f, -0.5f, 0.125f};
  emit static_cast<RenderWidget*>(container->view())->controllerMoved(names, values);
  ASSERT_EQ(motors.count(), 1);
  EXPECT_EQ(motors.at(0).at(0).value<QList<QString>>(), names);
  EXPECT_EQ(motors.at(0).at(1).value<QList<float>>(), values);
}

TEST_F(Container, ChainSelectedIsRelayedFromTheThreeDimensionalView) {
  auto container = make(true);
  QSignalSpy chains(container.get(), &WorldViewContainer::chainSelected);
  emit container->view()->chainSelected("LArm");
  ASSERT_EQ(chains.count(), 1);
  EXPECT_EQ(chains.at(0).at(0).toString(), "LArm");
}

TEST_F(Container, ChainSelectedIsRelayedFromTheTwoDimensionalView) {
  auto container = make(false);
  QSignalSpy chains(container.get(), &WorldViewContainer::chainSelected);
  container->view()->updateView();  // announces the whole robot: an empty chain name
  ASSERT_EQ(chains.count(), 1);
  EXPECT_EQ(chains.at(0).at(0).toString(), QString());
}

TEST_F(Container, ReadyWindowBringsTheViewpointMenuAndA25msTimer) {
  auto container = make(true);
  ASSERT_TRUE(showReady(*container));
  ASSERT_NE(container->refreshTimer(), nullptr);
  EXPECT_EQ(container->refreshTimer()->interval(), 25);
  EXPECT_TRUE(container->refreshTimer()->isActive());
  const QList<QAction*> entries = container->menu()->actions();
  ASSERT_EQ(entries.size(), 1);
  EXPECT_EQ(entries.first()->text(), "3D Viewpoint");
  QMenu* viewpoints = entries.first()->menu();
  ASSERT_NE(viewpoints, nullptr);
  EXPECT_EQ(viewpoints, static_cast<RenderWidget*>(container->view())->camera()->cameraMenu());
  ASSERT_EQ(viewpoints->actions().size(), 6);
  EXPECT_EQ(viewpoints->actions().at(0)->text(), "Top");
  EXPECT_EQ(viewpoints->actions().at(5)->text(), "Back");
}

TEST_F(Container, ScreenshotWithoutBackgroundFlagKeepsTheSky) {
  auto container = make(true);
  ASSERT_TRUE(showReady(*container));
  container->update();
  const QString withSky = m_data.filePath("sky.png");
  const QString white = m_data.filePath("white.png");
  ASSERT_TRUE(QMetaObject::invokeMethod(container.get(), "saveScreenshot", Q_ARG(QString, withSky)));
  container->saveScreenshot(white, true);
  const QImage skyImage(withSky);
  const QImage whiteImage(white);
  ASSERT_FALSE(skyImage.isNull());
  ASSERT_FALSE(whiteImage.isNull());
  EXPECT_NE(skyImage.pixel(2, 2), qRgb(255, 255, 255));
  EXPECT_EQ(whiteImage.pixel(2, 2), qRgb(255, 255, 255));
}

TEST_F(Container, Use3DControllerPreferenceIsReadNotWritten) {
  QSettings().setValue(WorldViewContainer::a_use3DControllerForMotorsKey, true);
  auto container = make(true);
  auto* view = static_cast<RenderWidget*>(container->view());
  EXPECT_TRUE(VX::NextGenView::RenderWidgetTestAccess::use3DController(*view));
  QSettings().setValue(WorldViewContainer::a_use3DControllerForMotorsKey, false);
  container->onUse3DControllerChanged();
  EXPECT_FALSE(VX::NextGenView::RenderWidgetTestAccess::use3DController(*view));
  EXPECT_FALSE(QSettings().value(WorldViewContainer::a_use3DControllerForMotorsKey).toBool());
}

TEST_F(Container, SceneSwitchesReachTheThreeDimensionalView) {
  auto container = make(true);
  auto* view = static_cast<RenderWidget*>(container->view());
  ASSERT_TRUE(view && view->worldView());
  EXPECT_TRUE(view->worldView()->jointControllersShown()) << "rings are shown by default";
  EXPECT_FALSE(view->worldView()->collisionGeometryShown()) << "visuals are shown by default";
  container->setJointRingsShown(false);
  container->setCollisionGeometryShown(true);
  EXPECT_FALSE(view->worldView()->jointControllersShown());
  EXPECT_TRUE(view->worldView()->collisionGeometryShown());
  container->setJointRingsShown(true);
  container->setCollisionGeometryShown(false);
  EXPECT_TRUE(view->worldView()->jointControllersShown());
  EXPECT_FALSE(view->worldView()->collisionGeometryShown());
}

TEST_F(Container, TheTwoDimensionalViewIgnoresTheSceneSwitches) {
  auto container = make(false);
  ASSERT_TRUE(dynamic_cast<RenderWidget2d*>(container->view()));
  container->setJointRingsShown(false);
  container->setCollisionGeometryShown(true);
  EXPECT_TRUE(dynamic_cast<RenderWidget2d*>(container->view())) << "nothing else happens";
}

TEST_F(Container, RobotRemovedReachesTheView) {
  auto container = make(true);
  auto* view = static_cast<RenderWidget*>(container->view());
  const auto objects = view->worldView()->allObjects();
  ASSERT_FALSE(objects.empty());
  for (const auto& object : objects) object->m_selected = object->m_highlighted = true;
  QSignalSpy removed(container.get(), &WorldViewContainer::robotRemoved);
  container->onRobotRemoved();
  EXPECT_EQ(removed.count(), 1);
  // The view's onRobotRemoved clears the selection marks.
  for (const auto& object : objects) {
    EXPECT_FALSE(object->m_selected);
    EXPECT_FALSE(object->m_highlighted);
  }
}

}  // namespace
