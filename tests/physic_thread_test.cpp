#include "physic_thread.h"

#include <gtest/gtest.h>

#include <QPointer>
#include <QTest>
#include <QTimer>

#include <world_model/forward_kinematic_engine.h>

#include "support/meta_object_table.h"
#include "support/test_world.h"

using VX::NextGenView::ForwardKinematicEngine;
using VX::NextGenView::PhysicThread;

namespace {

QStringList g_messages;
void captureMessages(QtMsgType, const QMessageLogContext&, const QString& message) { g_messages << message; }

TEST(PhysicThread, MetaObjectHasOneSlot) {
  expectMethods(PhysicThread::staticMetaObject, {{QMetaMethod::Slot, QMetaMethod::Public, "loop()", {}}});
}

TEST(PhysicThread, ConstructionRunsNothing) {
  auto world = testing_support::worldWithBundledRobot();
  PhysicThread thread(world->forwardKinematicEngine(), nullptr);
  EXPECT_FALSE(thread.isRunning());
  EXPECT_FALSE(thread.timer()->isActive());
  EXPECT_EQ(thread.timer()->parent(), nullptr);
}

TEST(PhysicThread, LoopThroughMetaObjectStepsOnce) {
  auto world = testing_support::worldWithBundledRobot();
  auto engine = world->forwardKinematicEngine();
  PhysicThread thread(engine, nullptr);
  const QMetaMethod loop = PhysicThread::staticMetaObject.method(PhysicThread::staticMetaObject.methodOffset() + 0);
  ASSERT_EQ(loop.methodSignature(), QByteArray("loop()"));
  ASSERT_TRUE(loop.invoke(&thread, Qt::DirectConnection));
  EXPECT_EQ(engine->stepCount(), 1);
}

TEST(PhysicThread, LoopWithTheEngineGoneDoesNothing) {
  boost::weak_ptr<ForwardKinematicEngine> watched;
  std::unique_ptr<PhysicThread> thread;
  {
    auto world = testing_support::worldWithBundledRobot();
    watched = world->forwardKinematicEngine();
    thread = std::make_unique<PhysicThread>(world->forwardKinematicEngine(), nullptr);
  }
  ASSERT_TRUE(watched.expired()) << "the thread must not keep the engine alive";
  EXPECT_NO_FATAL_FAILURE(thread->loop());
  EXPECT_TRUE(watched.expired());
}

TEST(PhysicThread, StepsOnTheGuiThreadEvery40ms) {
  auto world = testing_support::worldWithBundledRobot();
  auto engine = world->forwardKinematicEngine();
  PhysicThread thread(engine, nullptr);
  thread.init();
  EXPECT_TRUE(thread.isRunning());
  EXPECT_EQ(thread.timer()->interval(), 40);
  // Both the object and its timer stay on the GUI thread, so the steps run there.
  EXPECT_EQ(thread.thread(), QThread::currentThread());
  EXPECT_EQ(thread.timer()->thread(), QThread::currentThread());
  QTest::qWait(1000);
  thread.quit();
  thread.wait();
  // 25 steps in a second; wide margins for a loaded machine.
  EXPECT_GE(engine->stepCount(), 8);
  EXPECT_LE(engine->stepCount(), 30);
  delete thread.timer();
}

TEST(PhysicThread, DestroyedAfterQuitAndWaitWithoutWarning) {
  auto world = testing_support::worldWithBundledRobot();
  // The engine's deleter holds a token: the token is let go only when the
  // last weak reference (the thread's) releases the engine's control block.
  auto token = std::make_shared<int>(0);
  boost::shared_ptr<ForwardKinematicEngine> engine(world->forwardKinematicEngine().get(),
                                                   [token, owner = world->forwardKinematicEngine()](auto*) {});
  auto* thread = new PhysicThread(engine, nullptr);
  engine.reset();
  QPointer<QTimer> timer = thread->timer();
  thread->init();
  ASSERT_TRUE(thread->isRunning());
  g_messages.clear();
  const QtMessageHandler previous = qInstallMessageHandler(captureMessages);
  thread->quit();
  thread->wait();
  EXPECT_TRUE(thread->isFinished());
  EXPECT_EQ(token.use_count(), 2) << "the thread still holds its weak reference";
  delete thread;
  qInstallMessageHandler(previous);
  EXPECT_TRUE(g_messages.isEmpty()) << g_messages.join("; ").toStdString();
  EXPECT_EQ(token.use_count(), 1) << "the destructor releases the engine";
  ASSERT_FALSE(timer.isNull()) << "the destructor does not delete the timer";
  EXPECT_TRUE(timer->isActive()) << "nor stop it";
  delete timer.data();
}

TEST(PhysicThread, TimerSurvivesTheThreadObjectAndReachesNoReceiver) {
  auto world = testing_support::worldWithBundledRobot();
  auto engine = world->forwardKinematicEngine();
  auto* thread = new PhysicThread(engine, nullptr);
  QPointer<QTimer> timer = thread->timer();
  thread->init();
  thread->quit();
  thread->wait();
  delete thread;
  ASSERT_FALSE(timer.isNull());
  EXPECT_TRUE(timer->isActive());
  const int steps = engine->stepCount();
  QTest::qWait(200);
  EXPECT_EQ(engine->stepCount(), steps) << "ticks after the thread is gone reach nothing";
  delete timer.data();
}

}  // namespace
