// Keys in the 3D view: Ctrl shows only the grabbed ring and its twin while it
// is held; every key also reaches the camera.
#include "render_widget.h"

#include <gtest/gtest.h>

#include "support/robot_view.h"

using testing_support::ControllerMode;
using testing_support::LinkMode;
using VX::NextGenView::RenderWidget;
using VX::NextGenView::RenderWidgetTestAccess;

namespace {

// The names of the rings shown.
QStringList shownRings(RenderWidget& widget) {
  QStringList names;
  for (const auto& view : widget.worldView()->jointControllerViews())
    if (view->isVisible()) names << QString::fromStdString(view->frame()->name());
  return names;
}

QStringList allRings(RenderWidget& widget) {
  QStringList names;
  for (const auto& view : widget.worldView()->jointControllerViews()) names << QString::fromStdString(view->frame()->name());
  return names;
}

using CtrlKey = ControllerMode;

TEST_F(CtrlKey, ShowsOnlyTheSelectedRingAndItsTwinUntilReleased) {
  click(ring("LElbowRoll_controller"));
  QSignalSpy cameraMoved(widget->camera().get(), &VX::NextGenView::Camera::moved);
  QTest::keyPress(widget, Qt::Key_Control);
  EXPECT_EQ(shownRings(*widget), (QStringList{"LElbowRoll_controller", "RElbowRoll_controller"}));
  EXPECT_TRUE(RenderWidgetTestAccess::controllersFiltered(*widget));
  EXPECT_GE(cameraMoved.count(), 1) << "the camera has the key too";
  // The hidden rings cannot be picked any more.
  for (const auto& view : widget->worldView()->jointControllerViews())
    EXPECT_EQ(view->entity()->isVisible(), view->isVisible()) << view->frame()->name();

  QTest::keyRelease(widget, Qt::Key_Control);
  EXPECT_EQ(shownRings(*widget), allRings(*widget));
  EXPECT_FALSE(RenderWidgetTestAccess::controllersFiltered(*widget));
}

TEST_F(CtrlKey, TheNewestRingIsTheOneKept) {
  click(ring("LKneePitch_controller"));
  click(ring("HeadYaw_controller"), Qt::ControlModifier);
  QTest::keyPress(widget, Qt::Key_Control);
  EXPECT_EQ(shownRings(*widget), QStringList{"HeadYaw_controller"}) << "a ring without twin stays alone";
  QTest::keyRelease(widget, Qt::Key_Control);

  click(ring("RKneePitch_controller"), Qt::ControlModifier);
  QTest::keyPress(widget, Qt::Key_Control);
  EXPECT_EQ(shownRings(*widget), (QStringList{"LKneePitch_controller", "RKneePitch_controller"}));
  QTest::keyRelease(widget, Qt::Key_Control);
}

TEST_F(CtrlKey, AClickThatClearsTheSelectionEndsTheFilter) {
  const QPoint sky = this->sky();
  click(ring("LElbowRoll_controller"));
  QTest::keyPress(widget, Qt::Key_Control);
  ASSERT_TRUE(RenderWidgetTestAccess::controllersFiltered(*widget));
  click(sky);  // no Ctrl in the click: a plain one
  EXPECT_EQ(shownRings(*widget), allRings(*widget));
  EXPECT_FALSE(RenderWidgetTestAccess::controllersFiltered(*widget));
  EXPECT_TRUE(selectedNames().isEmpty());
}

TEST_F(CtrlKey, ReleaseShowsEveryRingWhateverHidThem) {
  ringView("HeadYaw_controller")->setVisible(false);
  ringView("LHand_controller")->setVisible(false);
  QTest::keyRelease(widget, Qt::Key_Control);
  EXPECT_EQ(shownRings(*widget), allRings(*widget));
  EXPECT_FALSE(RenderWidgetTestAccess::controllersFiltered(*widget));
}

TEST_F(CtrlKey, WithNoRingSelectedCtrlHidesNothing) {
  ringView("HeadYaw_controller")->setVisible(false);
  const QStringList before = shownRings(*widget);
  QTest::keyPress(widget, Qt::Key_Control);
  EXPECT_EQ(shownRings(*widget), before);
  EXPECT_FALSE(RenderWidgetTestAccess::controllersFiltered(*widget));
}

TEST_F(LinkMode, CtrlWithALinkSelectedHidesNothing) {
  click(link("LForeArmLink"));
  ASSERT_EQ(selectedNames(), QStringList{"LForeArmLink"});
  ringView("HeadYaw_controller")->setVisible(false);
  const QStringList before = shownRings(*widget);
  QTest::keyPress(widget, Qt::Key_Control);
  EXPECT_EQ(shownRings(*widget), before);
  EXPECT_FALSE(RenderWidgetTestAccess::controllersFiltered(*widget));
  QTest::keyRelease(widget, Qt::Key_Control);
  EXPECT_EQ(shownRings(*widget), allRings(*widget));
}

TEST_F(CtrlKey, OtherKeysOnlyMoveTheCamera) {
  click(ring("LElbowRoll_controller"));
  auto camera = widget->camera();
  const Ogre::Vector3 start = camera->position();
  for (Qt::Key key : {Qt::Key_Up, Qt::Key_Shift, Qt::Key_Alt, Qt::Key_A}) {
    QTest::keyPress(widget, key);
    EXPECT_EQ(shownRings(*widget), allRings(*widget)) << key;
    EXPECT_FALSE(RenderWidgetTestAccess::controllersFiltered(*widget)) << key;
    QTest::keyRelease(widget, key);
  }
  EXPECT_NEAR(camera->position().x, start.x - VX::NextGenView::Camera::a_keyStep, 1e-5f) << "Up moved it once";
  QTest::keyPress(widget, Qt::Key_Right);
  QTest::keyRelease(widget, Qt::Key_Right);
  EXPECT_NEAR(camera->position().y, start.y + VX::NextGenView::Camera::a_keyStep, 1e-5f);

  // The releases reached the camera: a later update moves it no more.
  const Ogre::Vector3 settled = camera->position();
  camera->update();
  EXPECT_EQ(camera->position(), settled);
  EXPECT_EQ(selectedNames(), QStringList{"LElbowRoll_controller"});
  EXPECT_EQ(state(), RenderWidget::Released);
}

}  // namespace
