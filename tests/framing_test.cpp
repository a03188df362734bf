// Framing: whatever a robot's size and wherever its followed link lies, the
// 3D view frames it so that it is whole and large, from every viewpoint.
#include "render_widget.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QImage>
#include <QTemporaryDir>

#include <OgreCamera.h>
#include <OgreSceneNode.h>

#include <scene_view/world_3d_view.h>
#include <world_view_container.h>

#include "camera.h"
#include "support/picture_extent.h"
#include "support/widget_window.h"

using testing_support::insideFrame;
using testing_support::largerShare;
using testing_support::nonWhiteExtent;
using testing_support::WidgetWindow;
using VX::NextGenView::RenderWidget;
using VX::NextGenView::World;

namespace {

const char* const a_viewpoints[] = {"onViewportTop",   "onViewportBottom", "onViewportLeft",
                                    "onViewportRight", "onViewportFront",  "onViewportBack"};

boost::shared_ptr<World> worldOf(const std::string& file) {
  auto world = boost::make_shared<World>();
  if (auto robot = testing_support::loadRobot(std::string(RENDERWIDGET_TEST_DATA_DIR) + "/framing/" + file)) {
    world->addRobot(robot);
  }
  return world;
}

class Framing : public ::testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    m_window = std::make_unique<WidgetWindow>(worldOf(GetParam()));
    ASSERT_NE(m_window->widget, nullptr);
    ASSERT_TRUE(m_window->show());
    m_window->widget->updateView();
  }

  // The picture with the background hidden; also kept to look at.
  QImage picture(const QString& name) {
    const QString file = m_folder.filePath("picture.png");
    m_window->widget->updateView();
    m_window->widget->saveScreenshot(file, true);
    QImage image(file);
    const QString robot = QString(GetParam()).section('.', 0, 0);
    image.save(QString("framing_%1_%2.png").arg(robot, name));
    return image;
  }

  RenderWidget* widget() { return m_window->widget; }

  QTemporaryDir m_folder;
  std::unique_ptr<WidgetWindow> m_window;
};

TEST_P(Framing, WholeAndLargeAfterFramingAndFromEveryViewpoint) {
  ASSERT_TRUE(widget()->frameWorld());
  const QImage framed = picture("framed");
  const QRect framedExtent = nonWhiteExtent(framed);
  EXPECT_TRUE(insideFrame(framedExtent, framed.size())) << "framed: " << framedExtent.left() << ","
                                                        << framedExtent.top() << " " << framedExtent.width() << "x"
                                                        << framedExtent.height();
  EXPECT_GE(largerShare(framedExtent, framed.size()), 0.5) << "the framed robot fills most of the view";

  // One home distance serves all six viewpoints: the robot is whole in
  // each, large in the one it is deepest in, and never lost in the distance.
  double largest = 0;
  for (const char* viewpoint : a_viewpoints) {
    SCOPED_TRACE(viewpoint);
    ASSERT_TRUE(QMetaObject::invokeMethod(widget()->camera().get(), viewpoint));
    const QImage image = picture(QString(viewpoint).mid(10).toLower());
    const QRect extent = nonWhiteExtent(image);
    const double share = largerShare(extent, image.size());
    std::cout << GetParam() << " " << viewpoint << ": " << extent.width() << "x" << extent.height() << " of "
              << image.width() << "x" << image.height() << " (" << share << ")" << std::endl;
    EXPECT_TRUE(insideFrame(extent, image.size())) << "cut off";
    EXPECT_GE(share, 0.15) << "too small to see";
    largest = std::max(largest, share);
  }
  EXPECT_GE(largest, 0.6);
}

TEST_P(Framing, TheFarClipKeepsTheWholeRobot) {
  ASSERT_TRUE(widget()->frameWorld());
  const Ogre::Camera* camera = widget()->camera()->ogreCamera();
  const Ogre::AxisAlignedBox box = widget()->worldView()->boundingBox();
  ASSERT_FALSE(box.isNull());
  const Ogre::Vector3 eye = camera->getDerivedPosition();
  for (const Ogre::Vector3& corner : box.getAllCorners()) {
    EXPECT_LT(eye.distance(corner), camera->getFarClipDistance());
    EXPECT_GT(eye.distance(corner), camera->getNearClipDistance());
  }
}

INSTANTIATE_TEST_SUITE_P(BoxRobots, Framing,
                         ::testing::Values("finger_5cm.urdf", "humanoid_0_5m.urdf", "humanoid_2m.urdf",
                                           "root_at_feet_1m.urdf"),
                         [](const ::testing::TestParamInfo<const char*>& info) {
                           return QString(info.param).section('.', 0, 0).toStdString();
                         });

TEST(FramingBounds, AnEmptyWorldHasNoBoxAndIsNotFramed) {
  WidgetWindow window(boost::make_shared<World>());
  ASSERT_TRUE(window.show());
  window.widget->updateView();
  EXPECT_TRUE(window.widget->worldView()->boundingBox().isNull());
  EXPECT_FALSE(window.widget->frameWorld());
  EXPECT_EQ(window.widget->camera()->homeDistance(), 1.0f);
}

TEST(FramingBounds, TheBoxHoldsEveryLinkInWorldCoordinates) {
  WidgetWindow window(worldOf("root_at_feet_1m.urdf"));
  ASSERT_TRUE(window.show());
  window.widget->updateView();
  // The plate's underside is the floor, the head's top 0.02 + 0.75 + 0.23 m up.
  const Ogre::AxisAlignedBox box = window.widget->worldView()->boundingBox();
  ASSERT_FALSE(box.isNull());
  EXPECT_NEAR(box.getMinimum().z, 0.0f, 1e-4);
  EXPECT_NEAR(box.getMaximum().z, 1.0f, 1e-4);
  EXPECT_NEAR(box.getMinimum().y, -0.15f, 1e-4);
  EXPECT_NEAR(box.getMaximum().x, 0.15f, 1e-4);
}

TEST(FramingBounds, TheContainerFramesOnlyA3DView) {
  QWidget host;
  VX::WorldViewContainer flat(nullptr, RENDERWIDGET_BUILD_DATA_DIR, &host, worldOf("humanoid_2m.urdf"), false);
  EXPECT_FALSE(flat.frameWorld());
}

}  // namespace
