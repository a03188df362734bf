// The 3D view's picture stays what it was when the frame was made cheaper:
// renderings of the bundled robot compared with reference pictures kept in
// tests/data/frame_pictures (made before the change). The sky's gradient, the
// lights, the rings, the highlight and the overlay's text all appear in them.
//
// RENDERWIDGET_WRITE_FRAME_PICTURES=1 writes the references instead of
// comparing (only when the look is meant to change).
#include <gtest/gtest.h>

#include <QDir>
#include <QImage>
#include <QSettings>
#include <QTest>

#include <world_model/robot.h>
#include <world_model/world.h>
#include <world_view_container.h>

#include "camera.h"
#include "picture_difference.h"
#include "render_widget.h"
#include "support/test_world.h"

using VX::NextGenView::RenderWidget;

namespace {

const int a_width = 480;
const int a_height = 360;

QString referenceFolder() { return QStringLiteral(RENDERWIDGET_SOURCE_DIR "/tests/data/frame_pictures"); }
bool writingReferences() { return qgetenv("RENDERWIDGET_WRITE_FRAME_PICTURES") == "1"; }

class FramePicture : public ::testing::Test {
 protected:
  void show(bool use3DController) {
    QSettings().setValue(VX::WorldViewContainer::a_use3DControllerForMotorsKey, use3DController);
    m_world = testing_support::worldWithBundledRobot();
    m_container = std::make_unique<VX::WorldViewContainer>(nullptr, QString(), nullptr, m_world, true);
    m_container->setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
    m_container->setFixedSize(a_width, a_height);
    m_container->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(m_container.get()));
    m_container->onVisibilityChanged(true);
    ASSERT_NE(widget(), nullptr);
    ASSERT_TRUE(widget()->m_initialized);
    QTest::qWait(100);
  }
  RenderWidget* widget() const { return dynamic_cast<RenderWidget*>(m_container->view()); }

  // Renders the view as it is now, saves it, and compares it with the reference.
  void expectPicture(const QString& name) {
    // The joints settle (a grabbed ring's joint steps toward its command) before the picture.
    QTest::qWait(300);
    m_container->update();
    const QString file = QDir::current().filePath("frame_picture_" + name + ".png");
    m_container->saveScreenshot(file);
    const QImage picture(file);
    ASSERT_FALSE(picture.isNull()) << file.toStdString();
    const QString referenceFile = referenceFolder() + "/" + name + ".png";
    if (writingReferences()) {
      ASSERT_TRUE(QDir().mkpath(referenceFolder()));
      ASSERT_TRUE(picture.save(referenceFile));
      return;
    }
    const QImage reference(referenceFile);
    ASSERT_FALSE(reference.isNull()) << "no reference " << referenceFile.toStdString();
    const PictureDifference difference = comparePictures(reference, picture);
    ASSERT_TRUE(difference.sameSize);
    differencePicture(reference, picture).save(QDir::current().filePath("frame_picture_" + name + "_difference.png"));
    EXPECT_LE(difference.worstChannelMean(), a_meanLimit)
        << name.toStdString() << ": mean differences " << difference.meanPerChannel[0] << ", "
        << difference.meanPerChannel[1] << ", " << difference.meanPerChannel[2];
    EXPECT_LE(difference.worstBlockMean, a_blockLimit)
        << name.toStdString() << ": the block at (" << difference.worstBlock.x() << ", " << difference.worstBlock.y()
        << ") changed";
  }

  boost::shared_ptr<VX::NextGenView::World> m_world;
  std::unique_ptr<VX::WorldViewContainer> m_container;
};

TEST_F(FramePicture, FrontWithASentence) {
  show(false);
  (*m_world->robots().begin())->setSentence("Hello, I am Zel");
  expectPicture("front_saying");
}

TEST_F(FramePicture, ChainHighlighted) {
  show(false);
  widget()->onObjectSelected("LBicepLink", false);
  expectPicture("chain_selected");
}

TEST_F(FramePicture, RingGrabbedFromTheLeft) {
  show(true);
  QMetaObject::invokeMethod(widget()->camera().get(), "onViewportLeft");
  widget()->onObjectSelected("LShoulderPitch_controller", false);
  expectPicture("ring_grabbed_left");
}

TEST_F(FramePicture, SkyFromBelow) {
  show(false);
  QMetaObject::invokeMethod(widget()->camera().get(), "onViewportBottom");
  expectPicture("bottom");
}

TEST_F(FramePicture, GroundFromAbove) {
  show(false);
  QMetaObject::invokeMethod(widget()->camera().get(), "onViewportTop");
  expectPicture("top");
}

// The comparison itself tells a changed picture from an unchanged one.
TEST(PictureComparison, SeesALocalChangeTheMeanHides) {
  QImage reference(a_width, a_height, QImage::Format_RGB888);
  reference.fill(QColor(120, 160, 200));
  QImage marked = reference;
  for (int y = 96; y < 112; ++y) {
    for (int x = 96; x < 112; ++x) marked.setPixelColor(x, y, QColor(120, 160, 240));
  }
  const PictureDifference difference = comparePictures(reference, marked);
  EXPECT_LT(difference.worstChannelMean(), 1.0);
  EXPECT_DOUBLE_EQ(difference.worstBlockMean, 40.0);
  EXPECT_EQ(difference.worstBlock, QPoint(96, 96));
  EXPECT_FALSE(difference.within(a_meanLimit, a_blockLimit));
  EXPECT_TRUE(comparePictures(reference, reference).within(a_meanLimit, a_blockLimit));
}

}  // namespace
