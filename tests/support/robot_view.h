#pragma once
// A shown 3D view of the bundled robot, in link or in controller mode, with
// real mouse and key input on it and read access to its interaction state.

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include <QSignalSpy>
#include <QTest>

#include <world_model/actuator.h>
#include <world_model/joint_controller.h>
#include <world_model/robot.h>
#include <world_model/world.h>

#include "support/scene_pixels.h"

namespace testing_support {

class RobotView : public ::testing::Test {
 protected:
  using RenderWidget = VX::NextGenView::RenderWidget;
  using Access = VX::NextGenView::RenderWidgetTestAccess;

  explicit RobotView(bool controllerMode) : m_controllerMode(controllerMode) {}

  void SetUp() override {
    window = std::make_unique<WidgetWindow>(worldWithBundledRobot(), m_controllerMode);
    ASSERT_TRUE(showWithEntities(*window));
    widget = window->widget;
    robot = *window->world->robots().begin();
    chains = std::make_unique<QSignalSpy>(widget, &RenderWidget::chainSelected);
    batches = std::make_unique<QSignalSpy>(widget, &RenderWidget::controllerMoved);
  }

  void TearDown() override {
    batches.reset();
    chains.reset();
    window.reset();
  }

  // A pixel showing the joint controller's ring or the link.
  QPoint ring(const std::string& controllerName) {
    const std::optional<QPoint> pixel = ringPixel(*widget, controllerName);
    EXPECT_TRUE(pixel) << "no pixel shows " << controllerName;
    return pixel.value_or(QPoint(0, 0));
  }
  QPoint link(const std::string& linkName) {
    const std::optional<QPoint> pixel = linkPixel(*widget, linkName);
    EXPECT_TRUE(pixel) << "no pixel shows " << linkName;
    return pixel.value_or(QPoint(0, 0));
  }
  QPoint sky() const { return QPoint(2, 2); }

  void press(const QPoint& at, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::mousePress(widget, Qt::LeftButton, modifiers, at);
  }
  void release(const QPoint& at, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::mouseRelease(widget, Qt::LeftButton, modifiers, at);
  }
  void click(const QPoint& at, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    press(at, modifiers);
    release(at, modifiers);
  }

  int state() const { return Access::state(*widget); }
  int previousState() const { return Access::previousState(*widget); }
  QStringList selectedNames() const {
    QStringList names;
    for (const auto& view : Access::selectedObjects(*widget)) names << QString::fromStdString(view->frame()->name());
    return names;
  }
  QMap<QString, float> commands() const { return Access::motorCommands(*widget); }
  boost::shared_ptr<VX::NextGenView::JointController3DView> ringView(const std::string& name) const {
    return controllerView(*widget, name);
  }
  boost::shared_ptr<VX::NextGenView::JointController> controller(const std::string& name) const {
    return ringView(name)->jointController();
  }
  VX::NextGenView::Selection& picker() const { return *Access::selection(*widget); }

  // Puts a joint at rest at `value` and the scene in that pose.
  void holdJoint(const std::string& actuatorName, float value) {
    const auto actuator = robot->actuator(actuatorName);
    actuator->setCommand(value);
    actuator->m_value = value;
    robot->updateKinematics();
    widget->updateView();
  }

  std::unique_ptr<WidgetWindow> window;
  RenderWidget* widget = nullptr;
  boost::shared_ptr<VX::NextGenView::Robot> robot;
  std::unique_ptr<QSignalSpy> chains;   // chainSelected(QString)
  std::unique_ptr<QSignalSpy> batches;  // controllerMoved(names, values)

 private:
  bool m_controllerMode;
};

class LinkMode : public RobotView {
 protected:
  LinkMode() : RobotView(false) {}
};

class ControllerMode : public RobotView {
 protected:
  ControllerMode() : RobotView(true) {}

  QPoint alongRing(const std::string& controllerName, const QPoint& grab, float pixels, bool counterClockwise) {
    return testing_support::alongRing(*widget, *controller(controllerName), grab, pixels, counterClockwise);
  }

  // True when the joint's axis points toward the camera, so that a
  // counter-clockwise motion on screen turns the joint positively.
  bool axisFacesCamera(const std::string& controllerName) const {
    const auto jointController = controller(controllerName);
    const Eigen::Vector3f axis = jointController->rotationAxis();
    const Eigen::Vector3f c = jointController->rotationCenter();
    const Ogre::Vector3 eye = ogreCamera(*widget).getDerivedPosition();
    return Ogre::Vector3(axis.x(), axis.y(), axis.z()).dotProduct(eye - Ogre::Vector3(c.x(), c.y(), c.z())) > 0;
  }
};

}  // namespace testing_support
