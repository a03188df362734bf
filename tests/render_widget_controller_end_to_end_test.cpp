// A host's view of the joint rings: the container in 3D mode, a drag on the
// elbow rings, the motor values it reports applied to the world, and the arms
// moving on screen.
#include "world_view_container.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <mk/math/transform.h>

#include "support/scene_pixels.h"

using VX::WorldViewContainer;
using VX::NextGenView::RenderWidget;
using VX::NextGenView::RenderWidgetTestAccess;

namespace {

class EndToEnd : public ::testing::Test {
 protected:
  // Shows a container on the bundled robot, ring dragging on or off.
  void show(bool use3DController) {
    QSettings settings;
    settings.clear();
    settings.setValue(WorldViewContainer::a_use3DControllerForMotorsKey, use3DController);
    settings.sync();
    world = testing_support::worldWithBundledRobot();
    container = std::make_unique<WorldViewContainer>(nullptr, data.path(), nullptr, world, true);
    container->resize(640, 480);
    container->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(container.get()));
    container->onVisibilityChanged(true);
    widget = dynamic_cast<RenderWidget*>(container->view());
    ASSERT_NE(widget, nullptr);
    ASSERT_TRUE(widget->m_initialized);
    QTest::qWait(150);  // the container's refresh builds the entities
    EXPECT_EQ(RenderWidgetTestAccess::selectControllers(*widget), use3DController);
  }

  Ogre::Vector3 handPosition(const std::string& name) const {
    const MK::Math::Transform pose = (*world->robots().begin())->link(name)->globalTransform();
    const Eigen::Vector3f p = pose.translation();
    return Ogre::Vector3(p.x(), p.y(), p.z());
  }

  QImage screenshot(const QString& file) {
    QTest::qWait(60);  // a refresh or two
    container->saveScreenshot(file);
    return QImage(file);
  }

  QTemporaryDir data;
  boost::shared_ptr<VX::NextGenView::World> world;
  std::unique_ptr<WorldViewContainer> container;
  RenderWidget* widget = nullptr;
};

int pixelsThatDiffer(const QImage& a, const QImage& b) {
  int count = 0;
  for (int y = 0; y < a.height(); ++y)
    for (int x = 0; x < a.width(); ++x) count += a.pixel(x, y) != b.pixel(x, y);
  return count;
}

TEST_F(EndToEnd, DraggingTheElbowRingsMovesBothArms) {
  show(true);
  QSignalSpy motorValues(container.get(), &WorldViewContainer::setMotorValues);
  const auto left = testing_support::controllerView(*widget, "LElbowRoll_controller");
  const std::optional<QPoint> leftPixel = testing_support::ringPixel(*widget, "LElbowRoll_controller");
  const std::optional<QPoint> rightPixel = testing_support::ringPixel(*widget, "RElbowRoll_controller");
  ASSERT_TRUE(leftPixel && rightPixel);

  // The twin first, then the left ring with Ctrl: the left one leads.
  QTest::mouseClick(widget, Qt::LeftButton, Qt::NoModifier, *rightPixel);
  QTest::mousePress(widget, Qt::LeftButton, Qt::ControlModifier, *leftPixel);
  ASSERT_EQ(RenderWidgetTestAccess::state(*widget), RenderWidget::ControllerGrabbed);
  motorValues.clear();
  // Clockwise on screen, the axis facing the camera: the elbow bends (negative).
  for (float pixels : {4.0f, 8.0f, 12.0f, 16.0f, 20.0f}) {
    testing_support::dragTo(
        *widget, testing_support::alongRing(*widget, *left->jointController(), *leftPixel, pixels, false));
    QTest::qWait(20);
  }
  QTest::mouseRelease(widget, Qt::LeftButton, Qt::NoModifier, *leftPixel);
  ASSERT_GE(motorValues.count(), 1);
  const QList<QString> names = motorValues.last().at(0).value<QList<QString>>();
  const QList<float> values = motorValues.last().at(1).value<QList<float>>();
  ASSERT_EQ(names, (QList<QString>{"LElbowRoll", "RElbowRoll"}));
  ASSERT_EQ(values.size(), 2);
  EXPECT_LT(values[0], -0.3f);
  EXPECT_EQ(values[1], -values[0]) << "the twin is reversed";

  const Ogre::Vector3 leftBefore = handPosition("LHandLink");
  const Ogre::Vector3 rightBefore = handPosition("RHandLink");
  const QImage before = screenshot("/tmp/render_widget_elbows_before.png");
  std::vector<std::string> commandNames;
  for (const QString& name : names) commandNames.push_back(name.toStdString());
  EXPECT_EQ(world->setActuatorCommands(commandNames, std::vector<float>(values.begin(), values.end())), 2);
  QTest::qWait(1000);  // the 40 ms kinematics steps
  const QImage after = screenshot("/tmp/render_widget_elbows_after.png");

  EXPECT_GT(handPosition("LHandLink").distance(leftBefore), 0.02f);
  EXPECT_GT(handPosition("RHandLink").distance(rightBefore), 0.02f);
  ASSERT_FALSE(before.isNull());
  ASSERT_EQ(before.size(), after.size());
  EXPECT_GT(pixelsThatDiffer(before, after), 500) << "the forearms moved on screen";
}

TEST_F(EndToEnd, ClickOnTheArmInLinkModeReportsItsChain) {
  show(false);
  QSignalSpy chains(container.get(), &WorldViewContainer::chainSelected);
  const std::optional<QPoint> arm = testing_support::linkPixel(*widget, "LForeArmLink");
  ASSERT_TRUE(arm);
  QTest::mouseClick(widget, Qt::LeftButton, Qt::NoModifier, *arm);
  ASSERT_EQ(chains.count(), 2);
  EXPECT_TRUE(chains.at(0).at(0).toString().isNull());
  EXPECT_EQ(chains.at(1).at(0).toString(), "LArm");
}

}  // namespace
