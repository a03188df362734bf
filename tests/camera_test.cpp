#include "camera.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include <QAction>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QWheelEvent>

#include <OgreCamera.h>
#include <OgreDefaultHardwareBufferManager.h>
#include <OgreLogManager.h>
#include <OgreMaterialManager.h>
#include <OgreRoot.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>

#include <ku/record_capture.h>

#include "support/meta_object_table.h"

using VX::NextGenView::Camera;

namespace {

// An OGRE scene with the widget's camera rig, without any window.
class CameraRig : public ::testing::Test {
 protected:
  void SetUp() override {
    m_logs = new Ogre::LogManager();
    m_logs->createLog("camera_test.log", true, false, true);
    m_root = new Ogre::Root("", "", "");
    // No render system: cameras get their buffers from OGRE's software manager.
    m_buffers = new Ogre::DefaultHardwareBufferManager();
    Ogre::MaterialManager::getSingleton().initialise();
    m_scene = m_root->createSceneManager();
    m_ogreCamera = m_scene->createCamera("FreeCam");
    m_target = m_scene->getRootSceneNode()->createChildSceneNode("camera_obj", Ogre::Vector3::ZERO,
                                                                 Ogre::Quaternion::IDENTITY);
    m_camera = std::make_unique<Camera>(m_ogreCamera, nullptr, m_target);
  }
  void TearDown() override {
    if (m_camera) delete m_camera->cameraMenu();
    m_camera.reset();
    m_root->destroySceneManager(m_scene);
    delete m_buffers;
    delete m_root;
    delete m_logs;
  }

  // The camera's position seen from the target node.
  Ogre::Vector3 positionFromTarget() const {
    return m_target->convertWorldToLocalPosition(m_ogreCamera->getDerivedPosition());
  }
  void press(Qt::MouseButton button, int x, int y) {
    QMouseEvent event(QEvent::MouseButtonPress, QPointF(x, y), button, button, Qt::NoModifier);
    m_camera->mousePressEvent(&event);
  }
  void move(Qt::MouseButtons buttons, int x, int y, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QMouseEvent event(QEvent::MouseMove, QPointF(x, y), Qt::NoButton, buttons, modifiers);
    m_camera->mouseMoveEvent(&event);
  }
  void release(Qt::MouseButton button, int x, int y) {
    QMouseEvent event(QEvent::MouseButtonRelease, QPointF(x, y), button, Qt::NoButton, Qt::NoModifier);
    m_camera->mouseReleaseEvent(&event);
  }
  void key(QEvent::Type type, int code) {
    QKeyEvent event(type, code, Qt::NoModifier);
    if (type == QEvent::KeyPress) m_camera->keyPressEvent(&event);
    else m_camera->keyReleaseEvent(&event);
  }
  void viewpoint(const char* slot) { ASSERT_TRUE(QMetaObject::invokeMethod(m_camera.get(), slot)); }

  Ogre::LogManager* m_logs = nullptr;
  Ogre::Root* m_root = nullptr;
  Ogre::DefaultHardwareBufferManager* m_buffers = nullptr;
  Ogre::SceneManager* m_scene = nullptr;
  Ogre::Camera* m_ogreCamera = nullptr;
  Ogre::SceneNode* m_target = nullptr;
  std::unique_ptr<Camera> m_camera;
};

void expectNear(const Ogre::Vector3& actual, const Ogre::Vector3& expected, float tolerance = 1e-5f) {
  EXPECT_NEAR(actual.x, expected.x, tolerance);
  EXPECT_NEAR(actual.y, expected.y, tolerance);
  EXPECT_NEAR(actual.z, expected.z, tolerance);
}

TEST(CameraMetaObject, SignalsAndSlotsInOrder) {
  const auto pub = QMetaMethod::Public;
  const auto priv = QMetaMethod::Private;
  const auto sig = QMetaMethod::Signal;
  const auto slot = QMetaMethod::Slot;
  expectMethods(Camera::staticMetaObject, {
                                              {sig, pub, "moved()", {}},
                                              {sig, pub, "showMenu(QMouseEvent*)", {"event"}},
                                              {slot, pub, "update()", {}},
                                              {slot, pub, "keyPressEvent(QKeyEvent*)", {"event"}},
                                              {slot, pub, "keyReleaseEvent(QKeyEvent*)", {"event"}},
                                              {slot, pub, "mouseDoubleClickEvent(QMouseEvent*)", {"event"}},
                                              {slot, pub, "mouseMoveEvent(QMouseEvent*)", {"event"}},
                                              {slot, pub, "mousePressEvent(QMouseEvent*)", {"event"}},
                                              {slot, pub, "mouseReleaseEvent(QMouseEvent*)", {"event"}},
                                              {slot, pub, "wheelEvent(QWheelEvent*)", {"event"}},
                                              {slot, priv, "onViewportTop()", {}},
                                              {slot, priv, "onViewportBottom()", {}},
                                              {slot, priv, "onViewportLeft()", {}},
                                              {slot, priv, "onViewportRight()", {}},
                                              {slot, priv, "onViewportFront()", {}},
                                              {slot, priv, "onViewportBack()", {}},
                                              {slot, priv, "updateOrientation()", {}},
                                          });
}

TEST_F(CameraRig, ConstructionSetsClipsNodesAndHomePose) {
  EXPECT_FLOAT_EQ(m_ogreCamera->getNearClipDistance(), 0.01f);
  EXPECT_FLOAT_EQ(m_ogreCamera->getFarClipDistance(), 10.0f);
  EXPECT_EQ(m_camera->azimuthNode()->getParent(), m_target);
  EXPECT_EQ(m_camera->elevationNode()->getParent(), m_camera->azimuthNode());
  EXPECT_EQ(m_ogreCamera->getParentSceneNode(), m_camera->elevationNode());
  expectNear(m_camera->position(), Ogre::Vector3(1, 0, 0));
  const Ogre::Quaternion& q = m_camera->orientation();
  EXPECT_NEAR(q.w, 0.5f, 1e-6);
  EXPECT_NEAR(q.x, 0.5f, 1e-6);
  EXPECT_NEAR(q.y, 0.5f, 1e-6);
  EXPECT_NEAR(q.z, 0.5f, 1e-6);
  // Home: one unit out on +X, looking along -X, right +Y, up +Z.
  expectNear(m_ogreCamera->getDerivedDirection(), Ogre::Vector3(-1, 0, 0));
  expectNear(m_ogreCamera->getDerivedRight(), Ogre::Vector3(0, 1, 0));
  expectNear(m_ogreCamera->getDerivedUp(), Ogre::Vector3(0, 0, 1));
}

TEST_F(CameraRig, RightClickWithoutMotionShowsTheMenu) {
  QSignalSpy menu(m_camera.get(), &Camera::showMenu);
  press(Qt::RightButton, 30, 40);
  release(Qt::RightButton, 30, 40);
  EXPECT_EQ(menu.count(), 1);
}

TEST_F(CameraRig, RightClickWithOnePixelMotionDoesNot) {
  QSignalSpy menu(m_camera.get(), &Camera::showMenu);
  press(Qt::RightButton, 30, 40);
  move(Qt::RightButton, 31, 40);
  release(Qt::RightButton, 31, 40);
  EXPECT_EQ(menu.count(), 0);
}

TEST_F(CameraRig, LeftClickDoesNotShowTheMenu) {
  QSignalSpy menu(m_camera.get(), &Camera::showMenu);
  press(Qt::LeftButton, 30, 40);
  release(Qt::LeftButton, 30, 40);
  EXPECT_EQ(menu.count(), 0);
}

TEST_F(CameraRig, RightDragOf100PixelsTurnsTheAzimuthNodeByMinusTwo) {
  QSignalSpy moved(m_camera.get(), &Camera::moved);
  press(Qt::RightButton, 100, 100);
  move(Qt::RightButton, 200, 100);
  const Ogre::Quaternion expected(Ogre::Radian(-2.0f), Ogre::Vector3::UNIT_Z);
  EXPECT_TRUE(m_camera->azimuthNode()->getOrientation().equals(expected, Ogre::Radian(1e-5f)));
  EXPECT_TRUE(m_camera->elevationNode()->getOrientation().equals(Ogre::Quaternion::IDENTITY, Ogre::Radian(1e-5f)));
  EXPECT_EQ(moved.count(), 1);
}

TEST_F(CameraRig, LeftDragTenPixelsLeftPansPlusPoint015AlongY) {
  press(Qt::LeftButton, 100, 100);
  move(Qt::LeftButton, 90, 100);
  EXPECT_NEAR(m_camera->position().y, 0.015f, 1e-6);
  EXPECT_NEAR(m_camera->position().z, 0.0f, 1e-6);
  move(Qt::LeftButton, 90, 110);  // down 10 pixels: the camera goes up
  EXPECT_NEAR(m_camera->position().z, 0.015f, 1e-6);
}

TEST_F(CameraRig, LeftDragWithMetaOrbits) {
  press(Qt::LeftButton, 100, 100);
  move(Qt::LeftButton, 100, 150, Qt::MetaModifier);
  const Ogre::Quaternion expected(Ogre::Radian(-1.0f), Ogre::Vector3::UNIT_Y);
  EXPECT_TRUE(m_camera->elevationNode()->getOrientation().equals(expected, Ogre::Radian(1e-5f)));
  expectNear(m_camera->position(), Ogre::Vector3(1, 0, 0));
}

TEST_F(CameraRig, MiddleDragOnlyAnnouncesAMove) {
  QSignalSpy moved(m_camera.get(), &Camera::moved);
  press(Qt::MiddleButton, 100, 100);
  move(Qt::MiddleButton, 150, 150);
  EXPECT_EQ(moved.count(), 1);
  expectNear(m_camera->position(), Ogre::Vector3(1, 0, 0));
  move(Qt::NoButton, 170, 170);
  EXPECT_EQ(moved.count(), 1) << "moves without a button do nothing";
}

TEST_F(CameraRig, UpAndRightHeldThenAThirdKey) {
  key(QEvent::KeyPress, Qt::Key_Up);
  key(QEvent::KeyPress, Qt::Key_Right);
  const Ogre::Vector3 before = m_camera->position();
  key(QEvent::KeyPress, Qt::Key_A);
  expectNear(m_camera->position() - before, Ogre::Vector3(-0.1f, 0.1f, 0));
  key(QEvent::KeyPress, Qt::Key_A);
  expectNear(m_camera->position() - before, Ogre::Vector3(-0.2f, 0.2f, 0));
  key(QEvent::KeyRelease, Qt::Key_Up);
  key(QEvent::KeyRelease, Qt::Key_Right);
  const Ogre::Vector3 released = m_camera->position();
  key(QEvent::KeyPress, Qt::Key_A);
  expectNear(m_camera->position(), released);
}

TEST_F(CameraRig, PageKeysMoveAlongZ) {
  key(QEvent::KeyPress, Qt::Key_PageUp);
  EXPECT_NEAR(m_camera->position().z, 0.1f, 1e-6);
  key(QEvent::KeyRelease, Qt::Key_PageUp);
  key(QEvent::KeyPress, Qt::Key_PageDown);
  EXPECT_NEAR(m_camera->position().z, 0.0f, 1e-6);
}

TEST_F(CameraRig, WheelAwayDolliesInAndDeltaZeroDolliesOut) {
  auto wheel = [this](int delta) {
    QWheelEvent event(QPointF(5, 5), QPointF(5, 5), QPoint(), QPoint(0, delta), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    m_camera->wheelEvent(&event);
  };
  wheel(120);
  expectNear(m_camera->position(), Ogre::Vector3(0.9f, 0, 0));
  wheel(0);
  wheel(0);
  expectNear(m_camera->position(), Ogre::Vector3(1.1f, 0, 0));
  wheel(-5000);
  // The size of the delta does not matter.
  expectNear(m_camera->position(), Ogre::Vector3(1.2f, 0, 0));
}

TEST_F(CameraRig, ElevationGoesOverTheTop) {
  press(Qt::RightButton, 100, 100);
  move(Qt::RightButton, 100, 200);  // 2 radians, beyond a quarter turn
  EXPECT_LT(m_ogreCamera->getDerivedUp().z, 0.0f) << "the view is upside down";
  EXPECT_GT(positionFromTarget().z, 0.8f);
}

TEST_F(CameraRig, PendingStepsWrapIntoTwoPi) {
  press(Qt::RightButton, 0, 0);
  move(Qt::RightButton, 500, 0);  // 10 radians wrap to 10 - 2π
  // A turn by -10 rad and one by -(10 - 2π) are the same rotation but not the
  // same quaternion: half of 2π flips the sign of every component. The node's
  // raw components tell which step was applied.
  const float wrappedHalf = -(10.0f - Ogre::Math::TWO_PI) / 2.0f;
  const Ogre::Quaternion q = m_camera->azimuthNode()->getOrientation();
  EXPECT_NEAR(q.w, std::cos(wrappedHalf), 1e-5f);
  EXPECT_NEAR(q.z, std::sin(wrappedHalf), 1e-5f);
  EXPECT_LT(q.w, 0.0f) << "an unwrapped step of -10 rad gives w = cos(-5) > 0";
  EXPECT_NEAR(q.x, 0.0f, 1e-6f);
  EXPECT_NEAR(q.y, 0.0f, 1e-6f);
}

TEST_F(CameraRig, ResetPositionAloneLeavesTheViewUnchanged) {
  press(Qt::LeftButton, 100, 100);
  move(Qt::LeftButton, 50, 80);
  const Ogre::Vector3 panned = m_ogreCamera->getDerivedPosition();
  QSignalSpy moved(m_camera.get(), &Camera::moved);
  m_camera->resetPosition();
  expectNear(m_ogreCamera->getDerivedPosition(), panned);
  expectNear(m_camera->position(), Ogre::Vector3(1, 0, 0));
  EXPECT_EQ(moved.count(), 0);
  ASSERT_TRUE(QMetaObject::invokeMethod(m_camera.get(), "updateOrientation"));
  expectNear(m_ogreCamera->getDerivedPosition(), Ogre::Vector3(1, 0, 0));
}

TEST_F(CameraRig, SixViewpointsAroundTheTarget) {
  const struct {
    const char* slot;
    Ogre::Vector3 position;
  } viewpoints[] = {
      {"onViewportFront", {1, 0, 0}},  {"onViewportBack", {-1, 0, 0}}, {"onViewportRight", {0, -1, 0}},
      {"onViewportLeft", {0, 1, 0}},   {"onViewportTop", {0, 0, 1}},   {"onViewportBottom", {0, 0, -1}},
  };
  m_target->setPosition(0.3f, -0.2f, 0.5f);
  for (const auto& viewpoint : viewpoints) {
    SCOPED_TRACE(viewpoint.slot);
    QSignalSpy moved(m_camera.get(), &Camera::moved);
    this->viewpoint(viewpoint.slot);
    EXPECT_EQ(moved.count(), 1);
    expectNear(positionFromTarget(), viewpoint.position);
    // Every viewpoint looks at the target.
    expectNear(m_ogreCamera->getDerivedDirection(), -viewpoint.position);
  }
}

TEST_F(CameraRig, FrontTwiceAndBackTwiceKeepThePose) {
  viewpoint("onViewportBack");
  const Ogre::Vector3 back = positionFromTarget();
  viewpoint("onViewportBack");
  expectNear(positionFromTarget(), back);
  viewpoint("onViewportFront");
  viewpoint("onViewportFront");
  expectNear(positionFromTarget(), Ogre::Vector3(1, 0, 0));
}

TEST_F(CameraRig, ViewpointAfterAPanIsBackAtDistanceOne) {
  press(Qt::LeftButton, 100, 100);
  move(Qt::LeftButton, 20, 30);
  ASSERT_GT(positionFromTarget().distance(Ogre::Vector3(1, 0, 0)), 0.05f);
  viewpoint("onViewportLeft");
  EXPECT_NEAR(positionFromTarget().length(), 1.0f, 1e-5);
  expectNear(positionFromTarget(), Ogre::Vector3(0, 1, 0));
}

TEST_F(CameraRig, FrontTurnsWithTheRobotHeading) {
  m_camera->updateTargetPosition(MK::Math::Position3D{2, 3, 0.3f}, Ogre::Math::HALF_PI);
  viewpoint("onViewportFront");
  expectNear(m_ogreCamera->getDerivedDirection(), Ogre::Vector3(0, -1, 0));
  expectNear(m_ogreCamera->getDerivedPosition(), Ogre::Vector3(2, 4, 0.3f));
}

TEST_F(CameraRig, UpdateTargetPositionDoesNotAnnounceAMove) {
  QSignalSpy moved(m_camera.get(), &Camera::moved);
  m_camera->updateTargetPosition(MK::Math::Position3D{1, 1, 1}, 0.3f);
  EXPECT_EQ(moved.count(), 0);
  expectNear(m_target->getPosition(), Ogre::Vector3(1, 1, 1));
}

TEST_F(CameraRig, TargetNumbersThatAreNotFiniteAreRefused) {
  m_camera->updateTargetPosition(MK::Math::Position3D{1, 2, 3}, 0.5f);
  const Ogre::Quaternion turned = m_target->getOrientation();
  const float bad[] = {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
                       -std::numeric_limits<float>::infinity()};
  for (const float value : bad) {
    for (int slot = 0; slot < 4; ++slot) {
      MK::Math::Position3D position{4, 5, 6};
      float angle = 1.0f;
      (slot == 0 ? position.x : slot == 1 ? position.y : slot == 2 ? position.z : angle) = value;
      ku::log::RecordCapture captured;
      m_camera->updateTargetPosition(position, angle);
      EXPECT_EQ(captured.count(2, "rdr.widget", "are not all finite"), 1) << value << " in slot " << slot;
      expectNear(m_target->getPosition(), Ogre::Vector3(1, 2, 3));
      EXPECT_EQ(m_target->getOrientation(), turned);
    }
  }
  EXPECT_FALSE(m_ogreCamera->getDerivedPosition().isNaN());
}

TEST_F(CameraRig, MenuHasSixPlainActionsInOrder) {
  QMenu* menu = m_camera->cameraMenu();
  ASSERT_NE(menu, nullptr);
  EXPECT_EQ(menu->parent(), nullptr);
  const QList<QAction*> actions = menu->actions();
  const QStringList labels{"Top", "Bottom", "Left", "Right", "Front", "Back"};
  ASSERT_EQ(actions.size(), labels.size());
  for (int i = 0; i < actions.size(); ++i) {
    EXPECT_EQ(actions[i]->text(), labels[i]);
    EXPECT_EQ(actions[i]->parent(), m_camera.get());
    EXPECT_FALSE(actions[i]->isCheckable());
    EXPECT_TRUE(actions[i]->icon().isNull());
    EXPECT_TRUE(actions[i]->shortcut().isEmpty());
    EXPECT_FALSE(actions[i]->isSeparator());
  }
}

TEST_F(CameraRig, MenuActionsMoveTheCamera) {
  QAction* top = m_camera->cameraMenu()->actions().at(0);
  top->trigger();
  expectNear(positionFromTarget(), Ogre::Vector3(0, 0, 1));
  m_camera->cameraMenu()->actions().at(5)->trigger();
  expectNear(positionFromTarget(), Ogre::Vector3(-1, 0, 0));
}

TEST_F(CameraRig, DefaultHomeDistanceIsTheDocumentedPose) {
  EXPECT_EQ(m_camera->homeDistance(), 1.0f);
  EXPECT_EQ(m_camera->targetOffset(), Ogre::Vector3::ZERO);
  viewpoint("onViewportTop");
  m_camera->resetPosition();
  EXPECT_EQ(m_camera->position(), Ogre::Vector3(1, 0, 0)) << "exactly, not nearly";
  EXPECT_EQ(m_ogreCamera->getFarClipDistance(), 10.0f);
  m_camera->updateTargetPosition(MK::Math::Position3D{0.25f, -0.5f, 0.75f}, 0.3f);
  EXPECT_EQ(m_target->getPosition(), Ogre::Vector3(0.25f, -0.5f, 0.75f)) << "no offset by default";
}

TEST_F(CameraRig, ViewpointsStandAtTheHomeDistance) {
  m_camera->setHomeDistance(2.5f);
  EXPECT_FLOAT_EQ(m_ogreCamera->getFarClipDistance(), 25.0f) << "the far clip grows with the distance";
  // The pose changes at the next viewpoint.
  expectNear(m_camera->position(), Ogre::Vector3(1, 0, 0));
  const struct {
    const char* slot;
    Ogre::Vector3 position;
  } viewpoints[] = {
      {"onViewportFront", {2.5f, 0, 0}},  {"onViewportBack", {-2.5f, 0, 0}}, {"onViewportRight", {0, -2.5f, 0}},
      {"onViewportLeft", {0, 2.5f, 0}},   {"onViewportTop", {0, 0, 2.5f}},   {"onViewportBottom", {0, 0, -2.5f}},
  };
  for (const auto& viewpoint : viewpoints) {
    SCOPED_TRACE(viewpoint.slot);
    this->viewpoint(viewpoint.slot);
    expectNear(positionFromTarget(), viewpoint.position);
    expectNear(m_ogreCamera->getDerivedDirection(), -viewpoint.position / 2.5f);
  }
  m_camera->resetPosition();
  expectNear(m_camera->position(), Ogre::Vector3(2.5f, 0, 0));

  m_camera->setHomeDistance(0.1f);
  EXPECT_FLOAT_EQ(m_ogreCamera->getFarClipDistance(), 10.0f) << "never below the documented far clip";
  viewpoint("onViewportLeft");
  expectNear(positionFromTarget(), Ogre::Vector3(0, 0.1f, 0));
  for (float bad : {0.0f, -1.0f, std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity()}) {
    m_camera->setHomeDistance(bad);
    EXPECT_FLOAT_EQ(m_camera->homeDistance(), 0.1f) << bad;
  }
}

TEST_F(CameraRig, TargetOffsetTurnsWithTheFollowedHeading) {
  m_camera->setTargetOffset(Ogre::Vector3(0, 0, 0.4f));
  m_camera->updateTargetPosition(MK::Math::Position3D{1, 2, 0}, 0.0f);
  expectNear(m_target->getPosition(), Ogre::Vector3(1, 2, 0.4f));
  m_camera->setTargetOffset(Ogre::Vector3(0.5f, 0, 0));
  m_camera->updateTargetPosition(MK::Math::Position3D{1, 2, 0}, Ogre::Math::HALF_PI);
  // The offset is in the robot's turned frame.
  expectNear(m_target->getPosition(), Ogre::Vector3(1, 2.5f, 0));
  m_camera->setTargetOffset(Ogre::Vector3(std::numeric_limits<float>::infinity(), 0, 0));
  // Non-finite offsets are refused.
  expectNear(m_camera->targetOffset(), Ogre::Vector3(0.5f, 0, 0));
}

}  // namespace
