// Robot files in the viewer: open, drop, recent files, reload on change
// (joint values kept), a broken edit that keeps the last good robot, several
// robots side by side, and the 2D view with robots it can or cannot picture.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QPointer>
#include <QSettings>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>
#include <QWheelEvent>

#include <OgreAxisAlignedBox.h>

#include <ku/record_capture.h>
#include <scene_view/world_3d_view.h>
#include <world_model/actuator.h>
#include <world_model/robot.h>
#include <world_model/world.h>
#include <world_view_container.h>

#include "camera.h"
#include "joint_slider_panel.h"
#include "recent_files.h"
#include "render_widget.h"
#include "render_widget_2d.h"
#include "robot_documents.h"
#include "support/picture_extent.h"
#include "support/test_world.h"
#include "viewer_window.h"

using VX::NextGenView::Robot;
using VX::NextGenView::World;

namespace {

QString framingRobot(const QString& name) { return QString(RENDERWIDGET_TEST_DATA_DIR "/framing/") + name; }

QByteArray contentsOf(const QString& file) {
  QFile in(file);
  return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
}

// Saves as editors do: a new file renamed over the old one.
void replaceFile(const QString& file, const QByteArray& contents) {
  const QString temporary = file + ".saving";
  QFile out(temporary);
  ASSERT_TRUE(out.open(QIODevice::WriteOnly));
  out.write(contents);
  out.close();
  QFile::remove(file);
  ASSERT_TRUE(QFile::rename(temporary, file));
}

void writeInPlace(const QString& file, const QByteArray& contents) {
  QFile out(file);
  ASSERT_TRUE(out.open(QIODevice::WriteOnly | QIODevice::Truncate));
  out.write(contents);
}

boost::shared_ptr<Robot> onlyRobot(const boost::shared_ptr<World>& world) {
  const auto robots = world->robots();
  return robots.size() == 1 ? *robots.begin() : nullptr;
}

class RobotFiles3d : public ::testing::Test {
 protected:
  void show(boost::shared_ptr<World> world, RobotDocuments* documents = nullptr) {
    m_world = world;
    m_window = std::make_unique<ViewerWindow>(world, RENDERWIDGET_BUILD_DATA_DIR, true);
    ASSERT_TRUE(m_window->shows3DView());
    if (documents) {
      m_window->setRobotDocuments(documents);
      m_window->refreshRobots();
    }
    m_window->setViewSize(QSize(480, 360));
    m_window->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(m_window.get()));
    QTRY_VERIFY_WITH_TIMEOUT(m_window->isViewReady(), 30000);
  }
  VX::NextGenView::RenderWidget* view() const {
    return dynamic_cast<VX::NextGenView::RenderWidget*>(m_window->container()->view());
  }
  QImage picture() {
    const QString file = m_folder.filePath("view.png");
    m_window->container()->update();
    m_window->container()->saveScreenshot(file, true);
    return QImage(file);
  }

  QTemporaryDir m_folder;
  boost::shared_ptr<World> m_world;
  std::unique_ptr<ViewerWindow> m_window;
};

TEST_F(RobotFiles3d, OpenReplacesTheRobotFramesItAndRemembersTheFile) {
  show(testing_support::worldWithBundledRobot());
  ASSERT_TRUE(m_window->openRobotFile(framingRobot("finger_5cm.urdf")));
  const auto robot = onlyRobot(m_world);
  ASSERT_TRUE(robot);
  EXPECT_EQ(robot->name(), "finger_5cm");
  EXPECT_EQ(m_window->sliderPanel()->actuatorNames(), QStringList({"distal_joint", "proximal_joint"}));
  EXPECT_TRUE(m_window->windowTitle().startsWith("finger_5cm"));
  EXPECT_EQ(m_window->recentFiles()->files().value(0), framingRobot("finger_5cm.urdf"));
  EXPECT_TRUE(m_window->statusBar()->currentMessage().contains("Opened")) << m_window->statusBar()->currentMessage().toStdString();
  // Framed for 5 cm: the camera came close, and the finger is whole and large.
  EXPECT_LT(view()->camera()->homeDistance(), 0.3f);
  const QImage image = picture();
  image.save("robot_files_opened_finger.png");
  const QRect extent = testing_support::nonWhiteExtent(image);
  EXPECT_TRUE(testing_support::insideFrame(extent, image.size()));
  EXPECT_GE(testing_support::largerShare(extent, image.size()), 0.5);
}

TEST_F(RobotFiles3d, FrameRobotFramesAgainAfterTheUserMovedAway) {
  show(testing_support::worldWithBundledRobot());
  const float framed = view()->camera()->homeDistance();
  EXPECT_NE(framed, 1.0f) << "framed at start";
  // Zoom far out with the wheel, then F.
  for (int i = 0; i < 30; ++i) {
    QWheelEvent wheel(QPointF(5, 5), QPointF(5, 5), QPoint(), QPoint(0, -120), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    view()->camera()->wheelEvent(&wheel);
  }
  QAction* frame = nullptr;
  for (QAction* action : m_window->findChildren<QAction*>()) {
    if (action->text() == "&Frame robot") frame = action;
  }
  ASSERT_NE(frame, nullptr);
  EXPECT_EQ(frame->shortcut(), QKeySequence(Qt::Key_F));
  frame->trigger();
  EXPECT_NEAR(view()->camera()->position().x, framed, 1e-4);
  const QImage image = picture();
  const QRect extent = testing_support::nonWhiteExtent(image);
  EXPECT_TRUE(testing_support::insideFrame(extent, image.size()));
  EXPECT_GE(testing_support::largerShare(extent, image.size()), 0.5);
}

TEST_F(RobotFiles3d, TwoRobotsStandSideBySideOrWhereTheirBaseSays) {
  auto world = boost::make_shared<World>();
  auto* documents = new RobotDocuments(world);
  // The humanoid has a <base>; the second robot has none and goes beside it.
  ASSERT_TRUE(documents->add(framingRobot("humanoid_0_5m.urdf")));
  ASSERT_TRUE(documents->add(framingRobot("root_at_feet_1m.urdf")));
  show(world, documents);
  const auto humanoid = documents->robotOf(framingRobot("humanoid_0_5m.urdf"));
  const auto tall = documents->robotOf(framingRobot("root_at_feet_1m.urdf"));
  ASSERT_TRUE(humanoid && tall);
  EXPECT_FLOAT_EQ(humanoid->basePosition().y, 0.0f) << "placed by its <base>";
  const auto scene = view()->worldView();
  const Ogre::AxisAlignedBox first = scene->robotBoundingBox(humanoid);
  const Ogre::AxisAlignedBox second = scene->robotBoundingBox(tall);
  EXPECT_GT(second.getMinimum().y, first.getMaximum().y) << "beside, not inside, the first";
  EXPECT_LT(second.getMinimum().y, first.getMaximum().y + 0.2f) << "and near it";
  const QImage image = picture();
  image.save("robot_files_two_robots.png");
  const QRect extent = testing_support::nonWhiteExtent(image);
  EXPECT_TRUE(testing_support::insideFrame(extent, image.size())) << "both framed";
  EXPECT_GE(testing_support::largerShare(extent, image.size()), 0.5);
}

// The file-level behaviour needs no OpenGL: the 2D view.
class RobotFiles2d : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(m_folder.isValid());
    m_file = m_folder.filePath("robot.urdf");
    ASSERT_TRUE(QFile::copy(framingRobot("humanoid_0_5m.urdf"), m_file));
    QSettings().remove(RecentFiles::a_settingsKey);  // the process's tests share settings
    m_world = boost::make_shared<World>();
    m_documents = new RobotDocuments(m_world);
    ASSERT_TRUE(m_documents->add(m_file));
    m_window = std::make_unique<ViewerWindow>(m_world, RENDERWIDGET_BUILD_DATA_DIR, false);
    m_window->setRobotDocuments(m_documents);
    m_window->refreshRobots();
  }
  boost::shared_ptr<Robot> robot() const { return m_documents->robotOf(m_file); }

  QTemporaryDir m_folder;
  QString m_file;
  boost::shared_ptr<World> m_world;
  RobotDocuments* m_documents = nullptr;
  std::unique_ptr<ViewerWindow> m_window;
};

TEST_F(RobotFiles2d, DroppingAUrdfOpensIt) {
  QMimeData data;
  data.setUrls({QUrl::fromLocalFile(framingRobot("finger_5cm.urdf"))});
  QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(m_window.get(), &enter);
  EXPECT_TRUE(enter.isAccepted());
  QDropEvent drop(QPointF(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(m_window.get(), &drop);
  ASSERT_TRUE(onlyRobot(m_world));
  EXPECT_EQ(onlyRobot(m_world)->name(), "finger_5cm");
  EXPECT_EQ(m_documents->files(), QStringList({framingRobot("finger_5cm.urdf")}));

  QMimeData other;
  other.setUrls({QUrl::fromLocalFile(m_file + ".txt")});
  QDragEnterEvent refused(QPoint(10, 10), Qt::CopyAction, &other, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(m_window.get(), &refused);
  EXPECT_FALSE(refused.isAccepted()) << "only robot descriptions";
}

TEST_F(RobotFiles2d, AChangedFileIsLoadedAgainKeepingJointValues) {
  const auto before = robot();
  before->actuator("LShoulderPitch")->setCommand(0.7f);
  before->actuator("LShoulderPitch")->m_value = 0.6f;
  before->actuator("HeadYaw")->setCommand(-0.4f);
  QSignalSpy replaced(m_documents, &RobotDocuments::robotsReplaced);
  // The edit removes the head's joint and its link, and is saved by renaming.
  QByteArray text = contentsOf(m_file);
  const int head = text.indexOf("  <joint name=\"HeadYaw\"");
  const int arms = text.indexOf("  <joint name=\"LShoulderPitch\"");
  ASSERT_GT(head, 0);
  ASSERT_GT(arms, head);
  text.remove(head, arms - head);
  replaceFile(m_file, text);
  QTRY_COMPARE_WITH_TIMEOUT(replaced.count(), 1, 5000);
  const auto after = robot();
  ASSERT_TRUE(after);
  EXPECT_NE(after, before);
  EXPECT_EQ(m_world->robots().size(), 1u);
  EXPECT_EQ(after->actuator("HeadYaw"), nullptr);
  EXPECT_FLOAT_EQ(after->actuator("LShoulderPitch")->command(), 0.7f);
  EXPECT_FLOAT_EQ(after->actuator("LShoulderPitch")->m_value, 0.6f);
  EXPECT_FLOAT_EQ(m_window->sliderPanel()->sliderValue("LShoulderPitch"), 0.7f);
  EXPECT_FALSE(m_window->sliderPanel()->actuatorNames().contains("HeadYaw"));

  // The replaced file is watched again: a second edit, written in place.
  writeInPlace(m_file, contentsOf(framingRobot("humanoid_0_5m.urdf")));
  QTRY_COMPARE_WITH_TIMEOUT(replaced.count(), 2, 5000);
  EXPECT_TRUE(robot()->actuator("HeadYaw"));
  EXPECT_FLOAT_EQ(robot()->actuator("LShoulderPitch")->command(), 0.7f);
}

TEST_F(RobotFiles2d, ABrokenEditKeepsTheLastGoodRobotAndSaysWhy) {
  const auto good = robot();
  QSignalSpy failed(m_documents, &RobotDocuments::loadFailed);
  ku::log::RecordCapture records;
  writeInPlace(m_file, "<robot name='broken'>\n  <link name='a'>\n</robot>\n");
  QTRY_COMPARE_WITH_TIMEOUT(failed.count(), 1, 5000);
  EXPECT_EQ(robot(), good);
  EXPECT_EQ(onlyRobot(m_world), good);
  const QString message = m_window->statusBar()->currentMessage();
  EXPECT_TRUE(message.contains("Cannot load the robot")) << message.toStdString();
  EXPECT_TRUE(message.contains("robot.urdf")) << message.toStdString();
  EXPECT_EQ(records.count(2, "viewer", "Cannot load the robot"), 1);
  // Fixed again: it comes back.
  QSignalSpy replaced(m_documents, &RobotDocuments::robotsReplaced);
  writeInPlace(m_file, contentsOf(framingRobot("humanoid_0_5m.urdf")));
  QTRY_COMPARE_WITH_TIMEOUT(replaced.count(), 1, 5000);
  EXPECT_NE(robot(), good);
}

TEST_F(RobotFiles2d, OpeningABrokenFileKeepsTheRobotShown) {
  const auto good = robot();
  const QString broken = m_folder.filePath("broken.urdf");
  writeInPlace(broken, "<robot name='broken'>");
  EXPECT_FALSE(m_window->openRobotFile(broken));
  EXPECT_EQ(onlyRobot(m_world), good);
  EXPECT_TRUE(m_window->statusBar()->currentMessage().contains("broken.urdf"));
  EXPECT_TRUE(m_window->recentFiles()->files().isEmpty()) << "only files that opened are remembered";
}

TEST_F(RobotFiles2d, RecentFilesAreKeptNewestFirstAndOpenFromTheMenu) {
  ASSERT_TRUE(m_window->openRobotFile(framingRobot("finger_5cm.urdf")));
  ASSERT_TRUE(m_window->openRobotFile(m_file));
  ASSERT_TRUE(m_window->openRobotFile(framingRobot("finger_5cm.urdf")));
  EXPECT_EQ(m_window->recentFiles()->files(), QStringList({framingRobot("finger_5cm.urdf"), m_file}));
  QMenu* recent = nullptr;
  for (QMenu* menu : m_window->findChildren<QMenu*>()) {
    if (menu->title() == "Open &recent") recent = menu;
  }
  ASSERT_NE(recent, nullptr);
  ASSERT_EQ(recent->actions().size(), 2);
  recent->actions().at(1)->trigger();
  EXPECT_EQ(m_documents->files(), QStringList({m_file}));
}

// Opening a recent file adds it again, which rebuilds the menu from inside
// the clicked action's own signal: the action must outlive its emission.
TEST_F(RobotFiles2d, ClickingARecentFileRebuildsTheMenuSafely) {
  ASSERT_TRUE(m_window->openRobotFile(framingRobot("finger_5cm.urdf")));
  ASSERT_TRUE(m_window->openRobotFile(m_file));
  QMenu* recent = nullptr;
  for (QMenu* menu : m_window->findChildren<QMenu*>()) {
    if (menu->title() == "Open &recent") recent = menu;
  }
  ASSERT_NE(recent, nullptr);
  ASSERT_EQ(recent->actions().size(), 2);
  QPointer<QAction> clicked = recent->actions().at(1);
  ASSERT_EQ(clicked->data().toString(), framingRobot("finger_5cm.urdf"));
  // The menu reports the action it triggered after the action's own signal:
  // by then the action has to be alive still.
  QString reported;
  QObject::connect(recent, &QMenu::triggered, [&reported](QAction* action) { reported = action->data().toString(); });

  recent->popup(QPoint(20, 20));
  ASSERT_TRUE(QTest::qWaitForWindowExposed(recent));
  QTest::mouseClick(recent, Qt::LeftButton, Qt::NoModifier, recent->actionGeometry(clicked).center());

  EXPECT_EQ(m_documents->files(), QStringList({framingRobot("finger_5cm.urdf")}));
  EXPECT_EQ(reported, framingRobot("finger_5cm.urdf"));
  EXPECT_FALSE(clicked.isNull()) << "deleted while Qt still emitted from it";
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_TRUE(clicked.isNull()) << "the old actions are gone once the event loop runs";
  ASSERT_EQ(recent->actions().size(), 2);
  EXPECT_EQ(recent->actions().at(0)->data().toString(), framingRobot("finger_5cm.urdf"));
  EXPECT_EQ(recent->actions().at(1)->data().toString(), m_file);
}

TEST(RobotFiles2dPictures, ARobotOfOtherChainsShowsTheUnknownPictureAndFiveChainsTheRobot) {
  if (!QFile::exists(RENDERWIDGET_BUILD_DATA_DIR "/media/images/ogre/zel.png")) GTEST_SKIP() << "no 2D pictures";
  auto world = boost::make_shared<World>();
  auto* documents = new RobotDocuments(world);
  ASSERT_TRUE(documents->add(framingRobot("finger_5cm.urdf")));  // one chain
  ViewerWindow window(world, RENDERWIDGET_BUILD_DATA_DIR, false);
  window.setRobotDocuments(documents);
  window.refreshRobots();
  window.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
  QTRY_VERIFY(window.isViewReady());
  auto* view = dynamic_cast<VX::NextGenView::RenderWidget2d*>(window.container()->view());
  ASSERT_NE(view, nullptr);
  window.container()->update();
  EXPECT_TRUE(view->bitmapAreas().isEmpty());
  EXPECT_TRUE(view->currentImage().isEmpty() || view->currentImage().endsWith("_unknown.png"))
      << view->currentImage().toStdString();

  // A robot of five chains, opened in its place, is pictured.
  ASSERT_TRUE(window.openRobotFile(framingRobot("humanoid_0_5m.urdf")));
  window.container()->update();
  EXPECT_EQ(view->bitmapAreas().size(), 5);
  EXPECT_EQ(view->currentImage(), "/media/images/ogre/zel.png");
}

}  // namespace
