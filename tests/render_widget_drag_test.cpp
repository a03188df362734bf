// Dragging a grabbed joint-controller ring: each move turns the joint by the
// angle swept around its axis and collects a motor command.
#include "render_widget.h"

#include <gtest/gtest.h>

#include <cmath>

#include <QTimer>

#include <OgreRay.h>

#include "support/robot_view.h"

using testing_support::ControllerMode;
using testing_support::dragTo;
using VX::NextGenView::RenderWidget;
using VX::NextGenView::RenderWidgetTestAccess;

namespace {

const std::string a_left = "LElbowRoll_controller";
const std::string a_right = "RElbowRoll_controller";

using Drag = ControllerMode;

TEST_F(Drag, FirstStepStartsFromTheJointPosition) {
  holdJoint("LElbowRoll", -0.5f);
  const QPoint grab = ring(a_left);
  ASSERT_TRUE(axisFacesCamera(a_left));
  press(grab);
  ASSERT_EQ(state(), RenderWidget::ControllerGrabbed);
  EXPECT_EQ(RenderWidgetTestAccess::motorCommandTimer(*widget), nullptr) << "made on first use";

  dragTo(*widget, alongRing(a_left, grab, 6, false));
  EXPECT_EQ(state(), RenderWidget::ControllerGrabbed);
  ASSERT_TRUE(commands().contains("LElbowRoll"));
  const float entry = commands().value("LElbowRoll");
  // The controller's target also started from the joint's position and took the same angle.
  EXPECT_TRUE(controller(a_left)->hasCommand());
  EXPECT_NEAR(entry, controller(a_left)->commandTarget(), 1e-5f);
  EXPECT_LT(entry, -0.5f) << "clockwise on screen, the axis facing the camera: negative";
  EXPECT_EQ(commands().size(), 1) << "the twin is not selected";
  EXPECT_TRUE(RenderWidgetTestAccess::motorMutexFree(*widget));

  QTimer* timer = RenderWidgetTestAccess::motorCommandTimer(*widget);
  ASSERT_NE(timer, nullptr);
  EXPECT_EQ(timer->parent(), widget);
  EXPECT_TRUE(timer->isSingleShot());
  EXPECT_EQ(timer->interval(), 100);
  EXPECT_TRUE(timer->isActive());

  // Later steps add to the entry.
  dragTo(*widget, alongRing(a_left, grab, 12, false));
  EXPECT_LT(commands().value("LElbowRoll"), entry);
  EXPECT_NEAR(commands().value("LElbowRoll"), controller(a_left)->commandTarget(), 1e-5f);
  EXPECT_TRUE(RenderWidgetTestAccess::motorMutexFree(*widget));
}

TEST_F(Drag, APendingEntryIsNotReseeded) {
  holdJoint("LElbowRoll", -0.5f);
  const QPoint grab = ring(a_left);
  press(grab);
  RenderWidgetTestAccess::setMotorCommand(*widget, "LElbowRoll", 0.2f);
  dragTo(*widget, alongRing(a_left, grab, 6, false));
  const float angle = controller(a_left)->commandTarget() - -0.5f;
  ASSERT_LT(angle, 0.0f);
  EXPECT_NEAR(commands().value("LElbowRoll"), 0.2f + angle, 1e-5f);
}

TEST_F(Drag, CounterClockwiseAboutTheAxisIsPositive) {
  holdJoint("LElbowRoll", -0.8f);
  const QPoint grab = ring(a_left);
  ASSERT_TRUE(axisFacesCamera(a_left));
  press(grab);
  dragTo(*widget, alongRing(a_left, grab, 6, true));
  EXPECT_GT(commands().value("LElbowRoll"), -0.8f);
  const float afterCounterClockwise = commands().value("LElbowRoll");
  dragTo(*widget, grab);
  EXPECT_LT(commands().value("LElbowRoll"), afterCounterClockwise) << "back is clockwise";
}

TEST_F(Drag, TheTwinFollowsWithItsOwnMirrorSign) {
  const QPoint left = ring(a_left);
  const QPoint right = ring(a_right);
  click(right);
  press(left, Qt::ControlModifier);
  ASSERT_EQ(selectedNames(), (QStringList{QString::fromStdString(a_left), QString::fromStdString(a_right)}));
  auto primary = controller(a_left);
  auto twin = controller(a_right);
  ASSERT_EQ(primary->mirrorController(), twin);

  // The twin's flag counts, not the primary's.
  primary->setMirror(twin, false);
  twin->setMirror(primary, true);
  RenderWidgetTestAccess::setMotorCommand(*widget, "LElbowRoll", 0.5f);
  dragTo(*widget, alongRing(a_left, left, 6, false));
  const float primaryEntry = commands().value("LElbowRoll");
  EXPECT_NE(primaryEntry, 0.5f);
  EXPECT_EQ(commands().value("RElbowRoll"), -primaryEntry);

  primary->setMirror(twin, true);
  twin->setMirror(primary, false);
  dragTo(*widget, alongRing(a_left, left, 10, false));
  EXPECT_EQ(commands().value("RElbowRoll"), commands().value("LElbowRoll"));
  EXPECT_FALSE(twin->hasCommand()) << "only the primary's controller takes the relative command";
  EXPECT_TRUE(primary->hasCommand());
}

TEST_F(Drag, ATwinCountsOnlyAsTheSecondOfExactlyTwo) {
  const QPoint left = ring(a_left);
  const QPoint right = ring(a_right);
  const QPoint shoulder = ring("LShoulderPitch_controller");
  click(shoulder);
  click(right, Qt::ControlModifier);
  press(left, Qt::ControlModifier);
  ASSERT_EQ(selectedNames().size(), 3);
  ASSERT_EQ(selectedNames().at(1).toStdString(), a_right);
  dragTo(*widget, alongRing(a_left, left, 6, false));
  EXPECT_EQ(commands().keys(), QList<QString>{"LElbowRoll"}) << "three selected: only the primary";
  release(left);

  // Two selected, but the second is not the primary's twin.
  click(shoulder);
  press(left, Qt::ControlModifier);
  ASSERT_EQ(selectedNames().size(), 2);
  dragTo(*widget, alongRing(a_left, left, 6, false));
  EXPECT_EQ(commands().keys(), QList<QString>{"LElbowRoll"});
  release(left);
}

TEST_F(Drag, ARayMissingTheGrabPlaneEndsTheDragAndLaterMovesTurnTheCamera) {
  const QPoint grab = ring(a_left);
  press(grab);
  ASSERT_EQ(state(), RenderWidget::ControllerGrabbed);
  // A pixel whose ray never meets the plane through the grab point across the radius.
  const Eigen::Vector3f c = controller(a_left)->rotationCenter();
  const Ogre::Vector3 centre(c.x(), c.y(), c.z());
  const Ogre::Vector3 pickPoint = *picker().pickPoint;
  const Ogre::Plane grabPlane(pickPoint - centre, pickPoint);
  std::optional<QPoint> away;
  for (int y = 0; y < widget->height() && !away; y += 8)
    for (int x = 0; x < widget->width() && !away; x += 8) {
      const Ogre::Ray ray = testing_support::ogreCamera(*widget).getCameraToViewportRay(
          x * (1.0f / widget->width()), y * (1.0f / widget->height()));
      if (!Ogre::Math::intersects(ray, grabPlane).first) away = QPoint(x, y);
    }
  ASSERT_TRUE(away);

  auto camera = widget->camera();
  const Ogre::Vector3 before = camera->position();
  const Ogre::Vector3 dragPoint = *picker().dragPoint;
  dragTo(*widget, *away);
  EXPECT_EQ(state(), RenderWidget::Moving);
  EXPECT_EQ(camera->position(), before) << "that move was still the drag's";
  EXPECT_EQ(*picker().dragPoint, dragPoint);
  EXPECT_FALSE(controller(a_left)->hasCommand());
  // The entry was seeded before the miss; it waits for the next batch.
  EXPECT_EQ(commands().value("LElbowRoll", 99.0f), robot->actuator("LElbowRoll")->m_value);
  EXPECT_TRUE(RenderWidgetTestAccess::motorMutexFree(*widget));
  const QTimer* timer = RenderWidgetTestAccess::motorCommandTimer(*widget);
  EXPECT_TRUE(!timer || !timer->isActive()) << "no step, no batch on the way";

  dragTo(*widget, grab + QPoint(15, 10));
  EXPECT_EQ(state(), RenderWidget::Moving);
  EXPECT_NE(camera->position(), before) << "the camera has the mouse now";
  release(grab);
  QTest::qWait(250);
  EXPECT_EQ(batches->count(), 0) << "the release ends no grab";
}

TEST_F(Drag, WithTheSelectionGoneAMoveDoesNothing) {
  const QPoint grab = ring(a_left);
  press(grab);
  widget->onRobotRemoved();  // clears the selection, keeps the state
  ASSERT_TRUE(selectedNames().isEmpty());
  const Ogre::Vector3 before = widget->camera()->position();
  dragTo(*widget, alongRing(a_left, grab, 6, false));
  EXPECT_EQ(state(), RenderWidget::ControllerGrabbed);
  EXPECT_TRUE(commands().isEmpty());
  EXPECT_EQ(widget->camera()->position(), before);
  EXPECT_TRUE(RenderWidgetTestAccess::motorMutexFree(*widget));
}

}  // namespace
