// The scene-view switches as a host reaches them through the widget: hidden
// joint rings are not picked, whatever else shows them; shown again, they are.
#include "render_widget.h"

#include <gtest/gtest.h>

#include <OgreEntity.h>

#include <scene_view/world_3d_view.h>

#include "support/robot_view.h"

using testing_support::ControllerMode;
using VX::NextGenView::RenderWidget;

namespace {

TEST_F(ControllerMode, HiddenRingsAreNotPicked) {
  const QPoint pixel = ring("LElbowRoll_controller");
  widget->setJointRingsShown(false);
  widget->updateView();
  EXPECT_FALSE(ringView("LElbowRoll_controller")->entity()->isVisible());

  click(pixel);
  EXPECT_NE(previousState(), RenderWidget::ControllerGrabbed);
  EXPECT_FALSE(selectedNames().contains("LElbowRoll_controller"));

  // Clearing a selection shows every ring again in the documented way; the switch keeps them hidden.
  widget->worldView()->showJointControllers();
  ringView("LElbowRoll_controller")->setVisible(true);
  widget->updateView();
  click(pixel);
  EXPECT_FALSE(selectedNames().contains("LElbowRoll_controller"));
  EXPECT_FALSE(ringView("LElbowRoll_controller")->entity()->isVisible());

  widget->setJointRingsShown(true);
  widget->updateView();
  press(pixel);
  EXPECT_EQ(state(), RenderWidget::ControllerGrabbed);
  EXPECT_EQ(selectedNames(), QStringList{"LElbowRoll_controller"});
  release(pixel);
}

}  // namespace
