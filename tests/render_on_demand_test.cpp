// Render on change: with it on, a refresh renders only when the picture would
// change. Frames are counted as OGRE renders them into the view's window.
#include <gtest/gtest.h>

#include <utility>

#include <QImage>
#include <QMetaObject>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <OgreCamera.h>
#include <OgreEntity.h>
#include <OgreLight.h>
#include <OgreRenderTargetListener.h>
#include <OgreSceneManager.h>
#include <OgreRenderWindow.h>

#include <scene_view/joint_controller_3d_view.h>
#include <scene_view/world_3d_view.h>
#include <world_model/actuator.h>
#include <world_model/robot.h>
#include <world_model/world.h>
#include <world_view_container.h>

#include "camera.h"
#include "frame_change_watch.h"
#include "render_widget.h"
#include "support/test_world.h"

using VX::NextGenView::RenderWidget;

namespace {

class FrameCounter : public Ogre::RenderTargetListener {
 public:
  explicit FrameCounter(Ogre::RenderTarget* target) : m_target(target) { m_target->addListener(this); }
  ~FrameCounter() override { m_target->removeListener(this); }
  void postRenderTargetUpdate(const Ogre::RenderTargetEvent&) override { ++m_frames; }
  // Frames rendered since the last call.
  int taken() { return std::exchange(m_frames, 0); }

 private:
  Ogre::RenderTarget* m_target;
  int m_frames = 0;
};

class RenderOnDemand : public ::testing::Test {
 protected:
  void SetUp() override {
    QSettings().setValue(VX::WorldViewContainer::a_use3DControllerForMotorsKey, false);
    m_world = testing_support::worldWithBundledRobot();
    m_container = std::make_unique<VX::WorldViewContainer>(nullptr, QString(), nullptr, m_world, true);
    m_container->setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
    m_container->setFixedSize(320, 240);
    m_container->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(m_container.get()));
    m_container->onVisibilityChanged(true);
    ASSERT_NE(widget(), nullptr);
    ASSERT_TRUE(widget()->m_initialized);
    // The test drives the ticks itself; the joints come to rest first.
    ASSERT_NE(m_container->refreshTimer(), nullptr);
    m_container->refreshTimer()->stop();
    QTest::qWait(200);
    m_frames = std::make_unique<FrameCounter>(widget()->renderWindow());
  }
  void TearDown() override {
    m_frames.reset();
    m_container.reset();
  }

  RenderWidget* widget() const { return dynamic_cast<RenderWidget*>(m_container->view()); }
  boost::shared_ptr<VX::NextGenView::Robot> robot() const { return *m_world->robots().begin(); }
  // Render on change switched on, and the first frame after the switch drawn.
  void switchOn() {
    m_container->setRenderOnDemand(true);
    ASSERT_TRUE(m_container->renderOnDemand());
    m_container->update();
    m_frames->taken();
  }
  // Frames rendered over `ticks` refresh ticks.
  int framesOver(int ticks) {
    for (int i = 0; i < ticks; ++i) m_container->update();
    return m_frames->taken();
  }
  void moveJoint(const std::string& name, float value) {
    robot()->actuator(name)->m_value = value;
    robot()->actuator(name)->setCommand(value);
    robot()->updateKinematics();
  }

  boost::shared_ptr<VX::NextGenView::World> m_world;
  std::unique_ptr<VX::WorldViewContainer> m_container;
  std::unique_ptr<FrameCounter> m_frames;
};

TEST_F(RenderOnDemand, OffByDefaultEveryTickRenders) {
  EXPECT_FALSE(m_container->renderOnDemand());
  EXPECT_FALSE(widget()->renderOnDemand());
  m_frames->taken();
  EXPECT_EQ(framesOver(5), 5);
}

TEST_F(RenderOnDemand, NothingChangedNothingRendered) {
  switchOn();
  EXPECT_EQ(framesOver(5), 0);
  QTest::qWait(150);  // the physics stepping runs meanwhile and changes nothing
  EXPECT_EQ(framesOver(5), 0);
}

TEST_F(RenderOnDemand, SwitchingOffRendersEveryTickAgain) {
  switchOn();
  m_container->setRenderOnDemand(false);
  EXPECT_EQ(framesOver(3), 3);
}

TEST_F(RenderOnDemand, ALinkPoseRendersOnce) {
  switchOn();
  moveJoint("LElbowRoll", -0.5f);
  EXPECT_EQ(framesOver(1), 1) << "drawn on the next tick";
  EXPECT_EQ(framesOver(2), 0);
}

TEST_F(RenderOnDemand, TheCameraRenders) {
  switchOn();
  QMetaObject::invokeMethod(widget()->camera().get(), "onViewportTop");
  EXPECT_GE(m_frames->taken(), 1) << "the camera's move redraws at once";
  EXPECT_EQ(framesOver(3), 0);
}

TEST_F(RenderOnDemand, TheLensAndTheLightsRender) {
  switchOn();
  Ogre::Camera* lens = widget()->camera()->ogreCamera();
  lens->setFOVy(lens->getFOVy() * 0.5f);
  EXPECT_EQ(framesOver(1), 1) << "a narrower lens";
  EXPECT_EQ(framesOver(2), 0);
  Ogre::Light* light = widget()->worldView()->getOgreSceneManager()->getLight("Light");
  light->setDiffuseColour(Ogre::ColourValue(0.9f, 0.2f, 0.2f));
  EXPECT_EQ(framesOver(1), 1) << "a redder light";
  EXPECT_EQ(framesOver(2), 0);
  light->getParentSceneNode()->yaw(Ogre::Degree(30.0f));
  EXPECT_EQ(framesOver(1), 1) << "a light turned";
}

TEST_F(RenderOnDemand, ASelectionAndItsClearingRender) {
  switchOn();
  widget()->onObjectSelected("LBicepLink", false);
  EXPECT_EQ(framesOver(1), 1) << "the chain's highlight";
  EXPECT_EQ(framesOver(2), 0);
  widget()->onObjectSelected(QString(), false);
  EXPECT_GE(m_frames->taken() + framesOver(3), 1) << "the highlight goes";
  EXPECT_EQ(framesOver(3), 0);
}

TEST_F(RenderOnDemand, RingVisibilityRenders) {
  switchOn();
  const auto rings = widget()->worldView()->jointControllerViews();
  ASSERT_FALSE(rings.empty());
  rings.front()->setVisible(false);
  EXPECT_EQ(framesOver(1), 1);
  EXPECT_EQ(framesOver(2), 0);
  widget()->worldView()->showJointControllers();
  EXPECT_EQ(framesOver(1), 1);
}

TEST_F(RenderOnDemand, TheSentenceRenders) {
  switchOn();
  robot()->setSentence("Hello");
  EXPECT_EQ(framesOver(3), 1);
  robot()->setSentence("");
  EXPECT_EQ(framesOver(3), 1);
}

TEST_F(RenderOnDemand, TheInfoOverlayRendersEveryTickWhileShown) {
  switchOn();
  widget()->displayInfo(true);
  EXPECT_EQ(framesOver(4), 4);
  widget()->displayInfo(false);
  EXPECT_EQ(framesOver(3), 0) << "the last statistics stay on screen";
}

TEST_F(RenderOnDemand, ANewSizeRenders) {
  switchOn();
  m_container->setFixedSize(360, 260);
  QTest::qWait(100);
  m_frames->taken();  // whatever Qt's own paint events drew
  EXPECT_GE(framesOver(1), 1) << "the render window's new size";
  EXPECT_EQ(framesOver(3), 0);
}

TEST_F(RenderOnDemand, ExposureRenders) {
  switchOn();
  m_container->hide();
  QTest::qWait(50);
  m_frames->taken();
  m_container->show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(m_container.get()));
  QTest::qWait(100);
  EXPECT_GE(m_frames->taken(), 1) << "the exposed window is drawn";
}

TEST_F(RenderOnDemand, RobotsAddedAndRemovedRender) {
  switchOn();
  const auto second = testing_support::loadRobot();
  ASSERT_TRUE(second);
  MK::Math::Position3D beside = second->basePosition();
  beside.y += 1.0f;
  second->setBasePosition(beside);
  second->updateKinematics();
  m_world->addRobot(second);
  EXPECT_EQ(framesOver(1), 1) << "drawn on the next tick";
  framesOver(2);  // the camera follows the robots' new middle
  EXPECT_EQ(framesOver(3), 0);
  m_world->removeRobot(second);
  EXPECT_EQ(framesOver(1), 1) << "drawn on the next tick";
  framesOver(2);
  EXPECT_EQ(framesOver(3), 0);
}

// The scene graph is walked only now and then unless the scene view reports
// a change: what a host changes in OGRE behind its back still shows, a few
// ticks later.
TEST_F(RenderOnDemand, AChangeBehindTheSceneViewsBackRendersWithinTheSceneWalk) {
  switchOn();
  Ogre::Entity* torso = widget()->worldView()->getOgreSceneManager()->getEntity("TorsoLink");
  torso->setVisible(false);
  EXPECT_EQ(framesOver(VX::NextGenView::FrameChangeWatch::a_callsPerSceneWalk), 1);
  EXPECT_EQ(framesOver(VX::NextGenView::FrameChangeWatch::a_callsPerSceneWalk), 0);
  torso->setVisible(true);
  EXPECT_EQ(framesOver(VX::NextGenView::FrameChangeWatch::a_callsPerSceneWalk), 1);
}

// The host's switches change what is drawn without moving anything the
// scene view counts as a pose: each must still be drawn on the next tick.
TEST_F(RenderOnDemand, TheCollisionSwitchRenders) {
  switchOn();
  m_container->setCollisionGeometryShown(true);
  EXPECT_EQ(framesOver(1), 1) << "the collision shapes replace the visuals";
  EXPECT_EQ(framesOver(2), 0);
  m_container->setCollisionGeometryShown(false);
  EXPECT_EQ(framesOver(1), 1) << "the visuals come back";
  EXPECT_EQ(framesOver(2), 0);
}

TEST_F(RenderOnDemand, HidingAndShowingTheRingsRenders) {
  switchOn();
  m_container->setJointRingsShown(false);
  EXPECT_EQ(framesOver(1), 1) << "the rings go";
  EXPECT_EQ(framesOver(2), 0);
  m_container->setJointRingsShown(true);
  EXPECT_EQ(framesOver(1), 1) << "the rings come back";
  EXPECT_EQ(framesOver(2), 0);
}

TEST_F(RenderOnDemand, FramingTheWorldRenders) {
  switchOn();
  ASSERT_TRUE(m_container->frameWorld());
  EXPECT_GE(m_frames->taken() + framesOver(1), 1) << "the framed camera is drawn";
  EXPECT_EQ(framesOver(3), 0);
}

TEST_F(RenderOnDemand, ScreenshotsRender) {
  switchOn();
  QTemporaryDir folder;
  const QString file = folder.filePath("still.png");
  m_container->saveScreenshot(file);
  EXPECT_EQ(m_frames->taken(), 1);
  EXPECT_FALSE(QImage(file).isNull());
}

}  // namespace
