// A robot's mesh file rewritten while the 3D viewer shows the robot: a half
// written file keeps the last good shape on screen with a clear record, and
// the finished file shows its new shape.
#include <gtest/gtest.h>

#include <QFile>
#include <QImage>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <OgreAxisAlignedBox.h>

#include <boost/make_shared.hpp>

#include <ku/record_capture.h>
#include <scene_view/world_3d_view.h>
#include <world_model/robot.h>
#include <world_model/world.h>
#include <world_view_container.h>

#include "render_widget.h"
#include "robot_documents.h"
#include "support/picture_extent.h"
#include "viewer_window.h"

using VX::NextGenView::World;

namespace {

// A binary STL box centred on the origin, `x` by `y` by `z` metres. Binary,
// because its header counts the triangles: a file cut short cannot be read,
// where an ASCII one gives the triangles before the cut.
QByteArray stlBox(float x, float y, float z) {
  const float hx = x / 2, hy = y / 2, hz = z / 2;
  const float corner[8][3] = {{-hx, -hy, -hz}, {hx, -hy, -hz}, {hx, hy, -hz}, {-hx, hy, -hz},
                              {-hx, -hy, hz},  {hx, -hy, hz},  {hx, hy, hz},  {-hx, hy, hz}};
  // Two outward triangles per face, counter-clockwise seen from outside.
  const int triangles[12][3] = {{0, 2, 1}, {0, 3, 2}, {4, 5, 6}, {4, 6, 7}, {0, 1, 5}, {0, 5, 4},
                                {1, 2, 6}, {1, 6, 5}, {2, 3, 7}, {2, 7, 6}, {3, 0, 4}, {3, 4, 7}};
  QByteArray data(80, ' ');
  const quint32 count = 12;
  data.append(reinterpret_cast<const char*>(&count), 4);
  for (const auto& triangle : triangles) {
    const float normal[3] = {0, 0, 0};  // readers compute it from the winding
    data.append(reinterpret_cast<const char*>(normal), sizeof normal);
    for (const int index : triangle) data.append(reinterpret_cast<const char*>(corner[index]), sizeof corner[index]);
    data.append(2, '\0');  // attribute bytes
  }
  return data;
}

const char* const a_robot =
    "<robot name='one_part'>\n"
    "  <link name='base'><visual><geometry><box size='0.05 0.05 0.05'/></geometry></visual></link>\n"
    "  <link name='part'><visual><geometry><mesh filename='part.stl'/></geometry></visual></link>\n"
    "  <joint name='turn' type='revolute'><parent link='base'/><child link='part'/>\n"
    "    <origin xyz='0 0 0.1'/><axis xyz='0 0 1'/><limit lower='-1' upper='1' effort='1' velocity='1'/>\n"
    "  </joint>\n"
    "</robot>\n";

class MeshRewrite : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(m_folder.isValid());
    write("robot.urdf", a_robot);
    write("part.stl", stlBox(0.1f, 0.1f, 0.1f));
    m_world = boost::make_shared<World>();
    m_documents = new RobotDocuments(m_world);
    ASSERT_TRUE(m_documents->add(m_folder.filePath("robot.urdf")));
    m_window = std::make_unique<ViewerWindow>(m_world, RENDERWIDGET_BUILD_DATA_DIR, true);
    ASSERT_TRUE(m_window->shows3DView());
    m_window->setRobotDocuments(m_documents);
    m_window->refreshRobots();
    m_window->setViewSize(QSize(320, 240));
    m_window->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(m_window.get()));
    QTRY_VERIFY_WITH_TIMEOUT(m_window->isViewReady(), 30000);
  }

  void write(const QString& name, const QByteArray& contents) {
    QFile out(m_folder.filePath(name));
    ASSERT_TRUE(out.open(QIODevice::WriteOnly | QIODevice::Truncate));
    out.write(contents);
  }

  // The shown robot's height: its box's extent along z.
  float shownHeight() {
    auto* view = dynamic_cast<VX::NextGenView::RenderWidget*>(m_window->container()->view());
    view->updateView();
    const auto robots = m_world->robots();
    if (robots.size() != 1) return -1.0f;
    return view->worldView()->robotBoundingBox(*robots.begin()).getSize().z;
  }

  QImage picture() {
    const QString file = m_folder.filePath("view.png");
    m_window->container()->saveScreenshot(file, true);
    return QImage(file);
  }

  QTemporaryDir m_folder;
  boost::shared_ptr<World> m_world;
  RobotDocuments* m_documents = nullptr;
  std::unique_ptr<ViewerWindow> m_window;
};

TEST_F(MeshRewrite, AHalfWrittenMeshKeepsTheLastGoodShapeUntilTheWriteEnds) {
  // The base's 5 cm cube reaches down to -0.025; the part's 10 cm box, 0.1
  // above it, up to 0.15.
  ASSERT_NEAR(shownHeight(), 0.175f, 1e-4f);
  ku::log::RecordCapture records;
  QSignalSpy replaced(m_documents, &RobotDocuments::robotsReplaced);

  // The editor is caught half way through writing a 30 cm box.
  const QByteArray tall = stlBox(0.1f, 0.1f, 0.3f);
  write("part.stl", tall.left(tall.size() / 2));
  QTRY_COMPARE_WITH_TIMEOUT(replaced.count(), 1, 5000);
  EXPECT_NEAR(shownHeight(), 0.175f, 1e-4f) << "the last good box stays";
  EXPECT_EQ(records.count(ku::log::Warning, "rdr.scene", "changed and cannot be read now"), 1);
  const QImage kept = picture();
  const QRect keptExtent = testing_support::nonWhiteExtent(kept);
  EXPECT_FALSE(keptExtent.isEmpty()) << "the robot is still drawn";

  // The write ends.
  write("part.stl", tall);
  QTRY_COMPARE_WITH_TIMEOUT(replaced.count(), 2, 5000);
  EXPECT_NEAR(shownHeight(), 0.3f, 1e-4f) << "the finished file's box, from -0.05 to 0.25";
  for (const ku::log::Record& record : records.records()) {
    EXPECT_NE(record.level, ku::log::Error) << record.text;
  }
}

TEST_F(MeshRewrite, AMeshThatBecomesGarbageNeverTakesTheViewerDown) {
  ku::log::RecordCapture records;
  QSignalSpy replaced(m_documents, &RobotDocuments::robotsReplaced);
  const char garbage[] = "\0\1\2 garbage \xff\xfe";
  write("part.stl", QByteArray(garbage, sizeof garbage - 1).repeated(40));
  QTRY_COMPARE_WITH_TIMEOUT(replaced.count(), 1, 5000);
  EXPECT_NEAR(shownHeight(), 0.175f, 1e-4f);
  EXPECT_EQ(records.count(ku::log::Warning, "rdr.scene", "part.stl"), 1);
  EXPECT_FALSE(testing_support::nonWhiteExtent(picture()).isEmpty());
}

}  // namespace
