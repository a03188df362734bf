// Clicks in the 3D view select links (with their chain) or joint-controller
// rings, through the real picker on the bundled robot.
#include "render_widget.h"

#include <gtest/gtest.h>

#include <QWheelEvent>

#include <OgreFrameListener.h>
#include <OgreRoot.h>

#include "support/robot_view.h"

using testing_support::ControllerMode;
using testing_support::LinkMode;
using VX::NextGenView::RenderWidget;
using VX::NextGenView::RenderWidgetTestAccess;

namespace {

// All three marks of a fresh selection (an update of the scene since resets m_changed).
bool marked(const VX::NextGenView::Object3DView& view) {
  return view.m_selected && view.m_highlighted && view.m_changed;
}
bool selectedLook(const VX::NextGenView::Object3DView& view) { return view.m_selected && view.m_highlighted; }

// Counts the frames drawn while it listens (the view draws on every update).
struct FrameCounter : Ogre::FrameListener {
  bool frameEnded(const Ogre::FrameEvent&) override {
    ++ended;
    return true;
  }
  int ended = 0;
};

// ---- Link mode ------------------------------------------------------------------

TEST_F(LinkMode, ClickOnTheTorsoSelectsItThroughTheRobotsOwnMeshes) {
  // The centre of the torso's box, projected: no search through the picker.
  auto torso = testing_support::linkView(*widget, "TorsoLink");
  const QPoint pixel = testing_support::pixelOf(*widget, torso->entity()->getWorldBoundingBox(true).getCenter());
  press(pixel);
  EXPECT_EQ(state(), RenderWidget::LinkSelected);
  EXPECT_EQ(selectedNames(), QStringList{"TorsoLink"});
  // TorsoLink belongs to no chain: the second report is null too, and nothing is marked.
  ASSERT_EQ(chains->count(), 2);
  EXPECT_TRUE(chains->at(0).at(0).toString().isNull());
  EXPECT_TRUE(chains->at(1).at(0).toString().isNull());
  EXPECT_FALSE(torso->m_selected);
  release(pixel);
  EXPECT_EQ(state(), RenderWidget::Released);
  EXPECT_EQ(previousState(), RenderWidget::LinkSelected);
  EXPECT_EQ(batches->count(), 0);
}

TEST_F(LinkMode, ClickOnAnArmLinkSelectsTheLinkAndMarksItsChain) {
  press(link("LForeArmLink"));
  ASSERT_EQ(chains->count(), 2);
  EXPECT_TRUE(chains->at(0).at(0).toString().isNull()) << "the old selection is cleared first";
  EXPECT_EQ(chains->at(1).at(0).toString(), "LArm");
  EXPECT_EQ(state(), RenderWidget::LinkSelected);
  EXPECT_EQ(selectedNames(), QStringList{"LForeArmLink"}) << "only the clicked link is listed";

  std::set<std::string> chainLinks;
  for (const auto& link : robot->linksTree("LArm")) chainLinks.insert(link->name());
  ASSERT_GT(chainLinks.size(), 3u);
  for (const auto& view : widget->worldView()->linkViews()) {
    const bool inChain = chainLinks.count(view->frame()->name()) > 0;
    EXPECT_EQ(marked(*view), inChain) << view->frame()->name();
    EXPECT_TRUE(inChain || !(view->m_selected || view->m_highlighted)) << view->frame()->name();
  }
  for (const auto& view : widget->worldView()->jointControllerViews()) EXPECT_FALSE(view->m_selected);
}

TEST_F(LinkMode, ClickOnTheSkyClearsTheSelection) {
  const QPoint arm = link("LHandLink");
  click(arm);
  click(sky());
  ASSERT_EQ(chains->count(), 3);
  EXPECT_TRUE(chains->at(2).at(0).toString().isNull());
  EXPECT_TRUE(selectedNames().isEmpty());
  for (const auto& view : widget->worldView()->allObjects()) EXPECT_FALSE(view->m_selected || view->m_highlighted);
  EXPECT_EQ(previousState(), RenderWidget::Pressed) << "nothing was selected";
}

TEST_F(LinkMode, CtrlClickStillReplacesTheLink) {
  const QPoint foreArm = link("LForeArmLink");
  const QPoint shin = link("RTibiaLink");
  click(foreArm);
  click(shin, Qt::ControlModifier);
  EXPECT_EQ(selectedNames(), QStringList{"RTibiaLink"});
  ASSERT_EQ(chains->count(), 4);
  EXPECT_EQ(chains->at(3).at(0).toString(), "RLeg");
  click(sky(), Qt::ControlModifier);
  EXPECT_TRUE(selectedNames().isEmpty()) << "links know no multiple selection";
}

TEST_F(LinkMode, ClickOnARingSelectsNothing) {
  click(ring("LElbowRoll_controller"));
  EXPECT_TRUE(selectedNames().isEmpty());
  EXPECT_EQ(chains->count(), 1);
  EXPECT_EQ(previousState(), RenderWidget::Pressed);
}

TEST_F(LinkMode, WithoutRobotsALinkClickSelectsNothing) {
  const QPoint arm = link("LForeArmLink");
  window->world->removeRobot(robot);
  click(arm);
  EXPECT_TRUE(selectedNames().isEmpty());
  EXPECT_EQ(chains->count(), 1) << "only the clearing report";
  EXPECT_EQ(previousState(), RenderWidget::Pressed);
  // A link view still in the scene, named directly: the same.
  widget->onObjectSelected("LForeArmLink", false);
  EXPECT_TRUE(selectedNames().isEmpty());
}

TEST_F(LinkMode, PressMoveReleaseStatesAndTheCamera) {
  auto camera = widget->camera();
  EXPECT_EQ(state(), RenderWidget::NoState);
  // Moves without a button reach the widget only when it tracks the mouse.
  widget->setMouseTracking(true);
  testing_support::hoverTo(*widget, QPoint(100, 100));
  EXPECT_EQ(state(), RenderWidget::Moving);
  EXPECT_EQ(previousState(), RenderWidget::NoState);

  press(sky());
  EXPECT_EQ(state(), RenderWidget::Pressed);
  const Ogre::Vector3 before = camera->position();
  testing_support::dragTo(*widget, sky() + QPoint(30, 20));
  EXPECT_EQ(state(), RenderWidget::Dragging);
  EXPECT_NE(camera->position(), before) << "a left drag on the sky pans";
  release(sky() + QPoint(30, 20));
  EXPECT_EQ(state(), RenderWidget::Released);
  testing_support::hoverTo(*widget, QPoint(90, 90));
  EXPECT_EQ(state(), RenderWidget::Moving);
  testing_support::hoverTo(*widget, QPoint(80, 90));
  EXPECT_EQ(state(), RenderWidget::Moving);
  EXPECT_EQ(previousState(), RenderWidget::Released) << "a move while moving writes no state";
  // A button held down since a press elsewhere: the view was released, so it moves.
  press(sky());
  release(sky());
  testing_support::dragTo(*widget, QPoint(70, 90));
  EXPECT_EQ(state(), RenderWidget::Moving);
  EXPECT_EQ(previousState(), RenderWidget::Released);

  // A selected link: moves keep the state and reach the camera.
  press(link("LForeArmLink"));
  ASSERT_EQ(state(), RenderWidget::LinkSelected);
  const Ogre::Vector3 grabbed = camera->position();
  testing_support::dragTo(*widget, QPoint(20, 20));
  EXPECT_EQ(state(), RenderWidget::LinkSelected);
  EXPECT_NE(camera->position(), grabbed);

  // The wheel goes to the camera only.
  const Ogre::Vector3 wheeled = camera->position();
  QWheelEvent wheel(QPointF(40, 40), QPointF(widget->mapToGlobal(QPoint(40, 40))), QPoint(), QPoint(0, 120),
                    Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(widget, &wheel);
  EXPECT_EQ(state(), RenderWidget::LinkSelected);
  EXPECT_NE(camera->position(), wheeled);
}

TEST_F(LinkMode, SetUse3DControllerSwitchesWhatAClickSelects) {
  EXPECT_FALSE(RenderWidgetTestAccess::use3DController(*widget));
  EXPECT_TRUE(RenderWidgetTestAccess::selectLinks(*widget));
  const QPoint ringPixel = ring("LElbowRoll_controller");
  const QPoint armPixel = link("RForeArmLink");
  click(armPixel);
  const int reports = chains->count();

  widget->setUse3DController(true);
  EXPECT_TRUE(RenderWidgetTestAccess::use3DController(*widget));
  EXPECT_TRUE(RenderWidgetTestAccess::selectControllers(*widget));
  EXPECT_FALSE(RenderWidgetTestAccess::selectLinks(*widget));
  EXPECT_EQ(selectedNames(), QStringList{"RForeArmLink"}) << "the switch alone changes nothing else";
  EXPECT_EQ(chains->count(), reports);

  // A link first in the list: a Ctrl-click on a ring adds nothing.
  press(ringPixel, Qt::ControlModifier);
  EXPECT_EQ(selectedNames(), QStringList{"RForeArmLink"});
  EXPECT_EQ(state(), RenderWidget::Pressed);
  release(ringPixel);

  click(ringPixel);
  EXPECT_EQ(selectedNames(), QStringList{"LElbowRoll_controller"});
  EXPECT_EQ(previousState(), RenderWidget::ControllerGrabbed);

  widget->setUse3DController(false);
  EXPECT_FALSE(RenderWidgetTestAccess::use3DController(*widget));
  EXPECT_FALSE(RenderWidgetTestAccess::selectControllers(*widget));
  EXPECT_TRUE(RenderWidgetTestAccess::selectLinks(*widget));
  press(armPixel);
  EXPECT_EQ(state(), RenderWidget::LinkSelected);
  EXPECT_EQ(selectedNames(), QStringList{"RForeArmLink"});
  release(armPixel);
}

// ---- Controller mode ---------------------------------------------------------

TEST_F(ControllerMode, ClickGrabsTheRingAndResetsItsCommand) {
  EXPECT_TRUE(RenderWidgetTestAccess::selectControllers(*widget));
  const QPoint pixel = ring("LElbowRoll_controller");
  controller("LElbowRoll_controller")->addRelativeCommand(-0.3f);
  ASSERT_TRUE(controller("LElbowRoll_controller")->hasCommand());

  press(pixel);
  EXPECT_EQ(state(), RenderWidget::ControllerGrabbed);
  EXPECT_EQ(selectedNames(), QStringList{"LElbowRoll_controller"});
  EXPECT_TRUE(marked(*ringView("LElbowRoll_controller")));
  EXPECT_FALSE(controller("LElbowRoll_controller")->hasCommand());
  ASSERT_EQ(chains->count(), 1);
  EXPECT_TRUE(chains->at(0).at(0).toString().isNull());
  release(pixel);
}

TEST_F(ControllerMode, RightAndMiddleClicksSelectNothing) {
  const QPoint pixel = ring("LElbowRoll_controller");
  for (Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton}) {
    QTest::mousePress(widget, button, Qt::NoModifier, pixel);
    EXPECT_EQ(state(), RenderWidget::Pressed);
    QTest::mouseRelease(widget, button, Qt::NoModifier, pixel);
  }
  EXPECT_TRUE(selectedNames().isEmpty());
  EXPECT_EQ(chains->count(), 0);
  EXPECT_EQ(batches->count(), 0);
}

TEST_F(ControllerMode, CtrlClicksPrependAndMoveToTheFrontWithoutDuplicates) {
  const QPoint left = ring("LElbowRoll_controller");
  const QPoint right = ring("RElbowRoll_controller");
  const QPoint knee = ring("LKneePitch_controller");
  click(left);
  click(right, Qt::ControlModifier);
  EXPECT_EQ(selectedNames(), (QStringList{"RElbowRoll_controller", "LElbowRoll_controller"}));
  click(knee, Qt::ControlModifier);
  click(left, Qt::ControlModifier);
  EXPECT_EQ(selectedNames(),
            (QStringList{"LElbowRoll_controller", "LKneePitch_controller", "RElbowRoll_controller"}));
  EXPECT_EQ(chains->count(), 1) << "Ctrl-clicks on rings clear nothing";
  for (const char* name : {"LElbowRoll_controller", "LKneePitch_controller", "RElbowRoll_controller"})
    EXPECT_TRUE(marked(*ringView(name))) << name;
  EXPECT_FALSE(ringView("RKneePitch_controller")->m_selected);

  // A plain click starts over.
  click(knee);
  EXPECT_EQ(selectedNames(), QStringList{"LKneePitch_controller"});
  EXPECT_FALSE(ringView("LElbowRoll_controller")->m_selected);
}

TEST_F(ControllerMode, CtrlClickOnTheSkyOrALinkKeepsTheRings) {
  const QPoint left = ring("LElbowRoll_controller");
  const QPoint right = ring("RElbowRoll_controller");
  const QPoint torso = link("TorsoLink");
  click(left);
  click(right, Qt::ControlModifier);
  FrameCounter frames;
  Ogre::Root::getSingleton().addFrameListener(&frames);
  press(sky(), Qt::ControlModifier);
  Ogre::Root::getSingleton().removeFrameListener(&frames);
  EXPECT_EQ(state(), RenderWidget::Pressed);
  EXPECT_EQ(frames.ended, 0) << "returns at once: not even a redraw";
  release(sky());
  click(torso, Qt::ControlModifier);
  EXPECT_EQ(selectedNames(), (QStringList{"RElbowRoll_controller", "LElbowRoll_controller"}));
  EXPECT_EQ(chains->count(), 1);
  EXPECT_TRUE(selectedLook(*ringView("LElbowRoll_controller")));
  EXPECT_TRUE(selectedLook(*ringView("RElbowRoll_controller")));
  EXPECT_EQ(batches->count(), 2) << "only the two grabs dispatched on release";

  click(sky());
  EXPECT_TRUE(selectedNames().isEmpty());
  ASSERT_EQ(chains->count(), 2);
  EXPECT_TRUE(chains->at(1).at(0).toString().isNull());
  for (const auto& view : widget->worldView()->allObjects()) EXPECT_FALSE(view->m_selected || view->m_highlighted);
  EXPECT_EQ(previousState(), RenderWidget::Pressed);
}

TEST_F(ControllerMode, PlainClickOnALinkSelectsNothing) {
  const QPoint ringPixel = ring("HeadYaw_controller");
  const QPoint torso = link("TorsoLink");
  click(ringPixel);
  click(torso);
  EXPECT_TRUE(selectedNames().isEmpty());
  EXPECT_EQ(chains->count(), 2);
  EXPECT_EQ(previousState(), RenderWidget::Pressed);
}

TEST_F(ControllerMode, ReleaseAfterAGrabDispatchesAtOnceWithoutMotion) {
  const QPoint pixel = ring("LKneePitch_controller");
  RenderWidgetTestAccess::setMotorCommand(*widget, "HeadYaw", 0.25f);
  press(pixel);
  EXPECT_EQ(batches->count(), 0);
  release(pixel);
  ASSERT_EQ(batches->count(), 1) << "synchronously, in the release";
  EXPECT_EQ(batches->at(0).at(0).value<QList<QString>>(), QList<QString>{"HeadYaw"});
  EXPECT_EQ(batches->at(0).at(1).value<QList<float>>(), QList<float>{0.25f});
  EXPECT_TRUE(commands().isEmpty());

  // Nothing pending: the batch is empty, and still sent.
  click(pixel);
  ASSERT_EQ(batches->count(), 2);
  EXPECT_TRUE(batches->at(1).at(0).value<QList<QString>>().isEmpty());
  EXPECT_TRUE(batches->at(1).at(1).value<QList<float>>().isEmpty());
  // A release after anything else sends nothing.
  click(sky());
  QTest::qWait(150);
  EXPECT_EQ(batches->count(), 2);
}

}  // namespace
