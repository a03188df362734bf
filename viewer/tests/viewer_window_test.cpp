#include <gtest/gtest.h>

#include <scene_view/world_3d_view.h>

#include <cmath>

#include <QAction>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QSettings>
#include <QSlider>
#include <QTemporaryDir>
#include <QTest>

#include <world_model/robot.h>
#include <world_model/world.h>
#include <render_widget_interface.h>
#include <world_view_container.h>

#include "joint_slider_panel.h"
#include "render_widget.h"
#include "render_widget_2d.h"
#include "support/test_world.h"
#include "startup_marker.h"
#include "view_screenshot.h"
#include "viewer_options.h"
#include "viewer_window.h"

namespace {

// The 2D view: the window's wiring without OpenGL.
class ViewerWindow2d : public ::testing::Test {
 protected:
  ViewerWindow2d()
      : m_world(testing_support::worldWithBundledRobot()), m_window(m_world, RENDERWIDGET_BUILD_DATA_DIR, false) {}

  float command(const std::string& name) const { return (*m_world->robots().begin())->actuator(name)->command(); }

  boost::shared_ptr<VX::NextGenView::World> m_world;
  ViewerWindow m_window;
};

TEST_F(ViewerWindow2d, MotorValuesFromTheViewReachTheRobotAndTheSliders) {
  emit m_window.container()->setMotorValues({"HeadYaw", "NoSuchJoint"}, {0.3f, 1.0f});
  EXPECT_FLOAT_EQ(command("HeadYaw"), 0.3f);
  EXPECT_FLOAT_EQ(m_window.sliderPanel()->sliderValue("HeadYaw"), 0.3f);
  EXPECT_TRUE(m_window.motorText().contains("HeadYaw 17.2°")) << m_window.motorText().toStdString();
}

TEST_F(ViewerWindow2d, SlidersSetCommands) {
  m_window.sliderPanel()->slider("LElbowRoll")->setValue(-500);
  EXPECT_FLOAT_EQ(command("LElbowRoll"), -0.5f);
}

TEST_F(ViewerWindow2d, ShowsTheSelectedChain) {
  EXPECT_EQ(m_window.chainText(), "Chain: none");
  emit m_window.container()->chainSelected("LArm");
  EXPECT_EQ(m_window.chainText(), "Chain: LArm");
  emit m_window.container()->chainSelected(QString());
  EXPECT_EQ(m_window.chainText(), "Chain: none");
}

TEST_F(ViewerWindow2d, BecomesReadyOnceShownAndOffersNo3DActions) {
  EXPECT_FALSE(m_window.shows3DView());
  EXPECT_TRUE(m_window.fallbackReason().isEmpty());
  m_window.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&m_window));
  QTRY_VERIFY(m_window.isViewReady());
  EXPECT_TRUE(m_window.container()->view()->m_initialized);
  EXPECT_FALSE(m_window.goToViewpoint("Top"));
  EXPECT_FALSE(m_window.collisionGeometryAction()->isEnabled());
  EXPECT_FALSE(m_window.jointRingsAction()->isEnabled());
  for (QAction* action : m_window.findChildren<QAction*>()) {
    if (action->text().contains("controllers") || action->text().contains("without background")) {
      EXPECT_FALSE(action->isEnabled()) << action->text().toStdString();
    }
  }
}

TEST_F(ViewerWindow2d, ClickingABodyChainShowsIt) {
  if (!QFile::exists(RENDERWIDGET_BUILD_DATA_DIR "/media/images/ogre/zel.png")) GTEST_SKIP() << "no 2D pictures";
  m_window.setViewSize(QSize(400, 400));
  m_window.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&m_window));
  QTRY_VERIFY(m_window.isViewReady());
  auto* view = dynamic_cast<VX::NextGenView::RenderWidget2d*>(m_window.container()->view());
  ASSERT_NE(view, nullptr);
  // The head's area of the pictures, around (410, 140) in picture pixels.
  const QPoint head = view->label()->pos() + QPoint(qRound(410 / view->scale()), qRound(140 / view->scale()));
  QTest::mouseClick(view, Qt::LeftButton, Qt::NoModifier, head);
  EXPECT_EQ(m_window.chainText(), "Chain: Head");
}

TEST_F(ViewerWindow2d, ScreenshotsGrabThePictureViewOrSayWhyNot) {
  m_window.setViewSize(QSize(320, 240));
  m_window.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&m_window));
  QTRY_VERIFY(m_window.isViewReady());
  QTemporaryDir folder;
  QString error;
  const QString file = folder.filePath("view.png");
  ASSERT_TRUE(ViewScreenshot::save(m_window.container(), file, false, &error)) << error.toStdString();
  EXPECT_EQ(QImage(file).size(), QSize(320, 240));

  EXPECT_FALSE(ViewScreenshot::save(m_window.container(), folder.filePath("view.nosuchformat"), false, &error));
  EXPECT_TRUE(error.contains("view.nosuchformat")) << error.toStdString();
  EXPECT_FALSE(ViewScreenshot::save(m_window.container(), "/no/such/folder/view.png", false, &error));
  EXPECT_FALSE(ViewScreenshot::save(nullptr, file, false, &error));
}

// The 3D view in this process: one OGRE root per process, one case here.
TEST(ViewerWindow3d, OffersTheCameraViewpointsAndTheViewsSwitches) {
  auto world = testing_support::worldWithBundledRobot();
  ViewerWindow window(world, RENDERWIDGET_BUILD_DATA_DIR, true);
  ASSERT_TRUE(window.shows3DView()) << window.fallbackReason().toStdString();
  EXPECT_FALSE(window.goToViewpoint("Top")) << "no camera before the render window";
  window.setViewSize(QSize(320, 240));
  window.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
  QTRY_VERIFY_WITH_TIMEOUT(window.isViewReady(), 60000);
  EXPECT_TRUE(StartupMarker::lastStartFailed() == false);
  EXPECT_EQ(QSettings().value(StartupMarker::a_key), QVariant(true));

  for (const QString& name : ViewerOptions::a_viewpoints) EXPECT_TRUE(window.goToViewpoint(name)) << name.toStdString();
  EXPECT_FALSE(window.goToViewpoint("Diagonal"));

  // A ring drag as the 3D view reports it: the robot turns its head.
  auto* view = dynamic_cast<VX::NextGenView::RenderWidget*>(window.container()->view());
  ASSERT_NE(view, nullptr);
  emit view->controllerMoved({"HeadYaw"}, {0.4f});
  const boost::shared_ptr<VX::NextGenView::Actuator> headYaw = (*world->robots().begin())->actuator("HeadYaw");
  EXPECT_FLOAT_EQ(headYaw->command(), 0.4f);
  EXPECT_FLOAT_EQ(window.sliderPanel()->sliderValue("HeadYaw"), 0.4f);
  QTRY_VERIFY_WITH_TIMEOUT(std::abs(headYaw->m_value - 0.4f) < 1e-4f, 5000);

  // View › Collision geometry and View › Joint rings reach the scene.
  ASSERT_NE(view->worldView(), nullptr);
  ASSERT_TRUE(window.collisionGeometryAction()->isEnabled());
  EXPECT_FALSE(window.collisionGeometryAction()->isChecked());
  EXPECT_TRUE(window.jointRingsAction()->isChecked());
  window.collisionGeometryAction()->trigger();
  window.jointRingsAction()->trigger();
  EXPECT_TRUE(view->worldView()->collisionGeometryShown());
  EXPECT_FALSE(view->worldView()->jointControllersShown());
  window.collisionGeometryAction()->trigger();
  window.jointRingsAction()->trigger();
  EXPECT_FALSE(view->worldView()->collisionGeometryShown());
  EXPECT_TRUE(view->worldView()->jointControllersShown());
  // View › Render only on change: on from the start, and it switches the container.
  QAction* renderOnChange = nullptr;
  for (QAction* action : window.findChildren<QAction*>()) {
    if (action->text() == "&Render only on change") renderOnChange = action;
  }
  ASSERT_NE(renderOnChange, nullptr);
  EXPECT_TRUE(renderOnChange->isCheckable());
  EXPECT_TRUE(renderOnChange->isChecked());
  EXPECT_TRUE(window.container()->renderOnDemand());
  renderOnChange->trigger();
  EXPECT_FALSE(window.container()->renderOnDemand());
  renderOnChange->trigger();
  EXPECT_TRUE(window.container()->renderOnDemand());

  window.onUse3DControllerToggled(true);
  EXPECT_EQ(QSettings().value(VX::WorldViewContainer::a_use3DControllerForMotorsKey), QVariant(true));
  window.onUse3DControllerToggled(false);
  EXPECT_EQ(QSettings().value(VX::WorldViewContainer::a_use3DControllerForMotorsKey), QVariant(false));

  QTemporaryDir folder;
  QString error;
  EXPECT_TRUE(ViewScreenshot::save(window.container(), folder.filePath("with.png"), false, &error))
      << error.toStdString();
  EXPECT_TRUE(ViewScreenshot::save(window.container(), folder.filePath("without.png"), true, &error))
      << error.toStdString();
  EXPECT_EQ(QImage(folder.filePath("without.png")).size(), QSize(320, 240));
  EXPECT_FALSE(ViewScreenshot::save(window.container(), folder.filePath("shot.nosuchformat"), false, &error));
  EXPECT_TRUE(error.contains("nosuchformat")) << error.toStdString();
}

}  // namespace
