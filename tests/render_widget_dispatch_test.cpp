// Motor commands leave the view in batches: 100 ms after the last drag step,
// or at once when the grabbing button is released.
#include "render_widget.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QTimer>

#include "support/robot_view.h"

using testing_support::ControllerMode;
using testing_support::dragTo;
using VX::NextGenView::RenderWidget;
using VX::NextGenView::RenderWidgetTestAccess;

namespace {

const std::string a_left = "LElbowRoll_controller";

class Dispatch : public ControllerMode {
 protected:
  void SetUp() override {
    ControllerMode::SetUp();
    if (HasFatalFailure()) return;
    // When each batch left, measured from the start of the test.
    clock.start();
    QObject::connect(widget, &RenderWidget::controllerMoved, widget,
                     [this](QList<QString>, QList<float>) { sentAt.push_back(clock.elapsed()); });
    holdJoint("LElbowRoll", -0.5f);
    grab = ring(a_left);
  }

  QList<QString> names(int batch) const { return batches->at(batch).at(0).value<QList<QString>>(); }
  QList<float> values(int batch) const { return batches->at(batch).at(1).value<QList<float>>(); }
  void step(float pixels) { dragTo(*widget, alongRing(a_left, grab, pixels, false)); }

  QElapsedTimer clock;
  std::vector<qint64> sentAt;
  QPoint grab;
};

TEST_F(Dispatch, OneBatchAboutAHundredMillisecondsAfterTheLastStep) {
  press(grab);
  step(4);
  const qint64 firstStep = clock.elapsed();
  QTest::qWait(50);
  EXPECT_EQ(batches->count(), 0);
  ASSERT_LT(clock.elapsed() - firstStep, 95) << "the machine is too slow for this timing";
  step(8);
  const qint64 secondStep = clock.elapsed();
  const float entry = commands().value("LElbowRoll");
  ASSERT_TRUE(batches->wait(1000));
  ASSERT_EQ(sentAt.size(), 1u);
  EXPECT_GE(sentAt[0] - secondStep, 80);
  EXPECT_LE(sentAt[0] - secondStep, 400);
  EXPECT_EQ(names(0), QList<QString>{"LElbowRoll"});
  EXPECT_EQ(values(0), QList<float>{entry});
  EXPECT_TRUE(commands().isEmpty());
  EXPECT_TRUE(RenderWidgetTestAccess::motorMutexFree(*widget));

  QTest::qWait(300);
  EXPECT_EQ(batches->count(), 1) << "one batch for the two steps";
  // The release still ends a grab: an empty batch at once.
  release(grab);
  ASSERT_EQ(batches->count(), 2);
  EXPECT_TRUE(names(1).isEmpty());
}

TEST_F(Dispatch, AReleaseSoonAfterAStepSendsTheBatchAndStopsTheTimer) {
  press(grab);
  step(6);
  const float entry = commands().value("LElbowRoll");
  QTest::qWait(30);
  release(grab);
  ASSERT_EQ(batches->count(), 1) << "in the release itself";
  EXPECT_EQ(names(0), QList<QString>{"LElbowRoll"});
  EXPECT_EQ(values(0), QList<float>{entry});
  EXPECT_FALSE(RenderWidgetTestAccess::motorCommandTimer(*widget)->isActive());
  EXPECT_TRUE(RenderWidgetTestAccess::motorMutexFree(*widget));
  QTest::qWait(300);
  EXPECT_EQ(batches->count(), 1) << "nothing from the timer afterwards";
}

TEST_F(Dispatch, ATimerExpiringWithNothingPendingSendsAnEmptyBatch) {
  press(grab);
  step(6);
  widget->dispatchMotorCommands();
  ASSERT_EQ(batches->count(), 1);
  EXPECT_EQ(names(0), QList<QString>{"LElbowRoll"});
  ASSERT_TRUE(batches->wait(1000));
  ASSERT_EQ(batches->count(), 2);
  EXPECT_TRUE(names(1).isEmpty());
  EXPECT_TRUE(values(1).isEmpty());
}

TEST_F(Dispatch, TheBatchFollowsTheOrderOfTheRingsNotOfTheNames) {
  QList<QString> expected;
  for (const auto& view : widget->worldView()->jointControllerViews()) {
    const QString name = QString::fromStdString(view->jointController()->actuator()->name());
    if (name == "LHipRoll" || name == "RShoulderPitch" || name == "HeadPitch") expected << name;
  }
  QList<QString> alphabetical = expected;
  std::sort(alphabetical.begin(), alphabetical.end());
  ASSERT_NE(expected, alphabetical) << "the case needs the two orders to differ";

  RenderWidgetTestAccess::setMotorCommand(*widget, "LHipRoll", 0.1f);
  RenderWidgetTestAccess::setMotorCommand(*widget, "NoSuchJoint", 0.4f);
  RenderWidgetTestAccess::setMotorCommand(*widget, "RShoulderPitch", 0.2f);
  RenderWidgetTestAccess::setMotorCommand(*widget, "HeadPitch", 0.3f);
  widget->dispatchMotorCommands();
  ASSERT_EQ(batches->count(), 1);
  EXPECT_EQ(names(0), expected);
  QList<float> expectedValues;
  for (const QString& name : expected) expectedValues << (name == "LHipRoll" ? 0.1f : name == "HeadPitch" ? 0.3f : 0.2f);
  EXPECT_EQ(values(0), expectedValues);
  EXPECT_TRUE(commands().isEmpty()) << "a name without ring is dropped with the rest";
  EXPECT_TRUE(RenderWidgetTestAccess::motorMutexFree(*widget));

  widget->dispatchMotorCommands();
  ASSERT_EQ(batches->count(), 2);
  EXPECT_TRUE(names(1).isEmpty()) << "always sent, even empty";
  EXPECT_TRUE(values(1).isEmpty());
}

TEST_F(Dispatch, ReleaseWithoutAGrabSendsNothing) {
  RenderWidgetTestAccess::setMotorCommand(*widget, "HeadPitch", 0.3f);
  click(sky());
  click(link("TorsoLink"));
  QTest::qWait(200);
  EXPECT_EQ(batches->count(), 0);
  EXPECT_EQ(commands().value("HeadPitch"), 0.3f);
}

}  // namespace
