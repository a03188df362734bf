// The 2D view's pictures as they ship: the files kept in the source tree
// (media/images/ogre/, rendered by tools/bitmap_pictures), which the build
// stages and the install copies. The view's clickable rectangles are fixed in
// picture pixels, so each chain's picture must differ from the whole robot's
// inside that chain's rectangle only: a click there must select the part the
// user sees. The last test shows the view itself and writes what it shows to
// render_widget_2d_*.png in the test's working folder.
#include <gtest/gtest.h>

#include <cstdio>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QSignalSpy>
#include <QTest>

#include "bitmap_area.h"
#include "render_widget_2d.h"
#include "support/test_world.h"

using VX::BitmapArea;
using VX::NextGenView::RenderWidget2d;

namespace {

// The source tree has the data folder's layout for the pictures:
// <root>/media/images/ogre/zel*.png.
const QString a_sourceTree = QStringLiteral(RENDERWIDGET_SOURCE_DIR);
const QSize a_pictureSize(800, 1000);  // the size the rectangles are measured in
constexpr double a_minimumInside = 0.9;
constexpr int a_minimumChanged = 500;

QString pictureName(const QString& suffix) {
  return RenderWidget2d::a_backgroundFilesPrefix + suffix + RenderWidget2d::a_backgroundFilesSuffix;
}

QImage shipped(const QString& name) {
  return QImage(a_sourceTree + name).convertToFormat(QImage::Format_ARGB32);
}

// The areas the view makes for the bundled robot: the chains' rectangles and
// the names of their pictures.
QList<boost::shared_ptr<BitmapArea>> viewAreas() {
  RenderWidget2d view(nullptr, testing_support::worldWithBundledRobot(), a_sourceTree);
  view.updateView();
  return view.bitmapAreas();
}

QStringList allPictures() {
  QStringList names{pictureName(""), pictureName("_unknown")};
  for (const auto& area : viewAreas()) names << area->image;
  return names;
}

// The highlight is orange: far more red than blue.
bool looksHighlighted(QRgb colour) { return qRed(colour) > qBlue(colour) + 80; }

struct Difference {
  int changed = 0;
  int inside = 0;
  int highlighted = 0;
  QPoint nearestToCentre;  // the changed pixel inside the rectangle nearest its centre
};

Difference differenceIn(const QImage& whole, const QImage& chain, const QRect& rect) {
  Difference d;
  int bestDistance = -1;
  for (int y = 0; y < whole.height(); ++y) {
    for (int x = 0; x < whole.width(); ++x) {
      if (whole.pixel(x, y) == chain.pixel(x, y)) continue;
      ++d.changed;
      if (looksHighlighted(chain.pixel(x, y))) ++d.highlighted;
      if (!rect.contains(x, y)) continue;
      ++d.inside;
      const int distance = (QPoint(x, y) - rect.center()).manhattanLength();
      if (bestDistance < 0 || distance < bestDistance) {
        bestDistance = distance;
        d.nearestToCentre = QPoint(x, y);
      }
    }
  }
  return d;
}

TEST(ShippedPictures, EveryPictureExistsWithTheSizeOfTheRectangles) {
  const QStringList names = allPictures();
  ASSERT_EQ(names.size(), 7);
  for (const QString& name : names) {
    const QImage picture = shipped(name);
    ASSERT_FALSE(picture.isNull()) << qPrintable(a_sourceTree + name);
    EXPECT_EQ(picture.size(), a_pictureSize) << qPrintable(name);
  }
}

TEST(ShippedPictures, TheBackgroundIsTransparentAroundTheRobot) {
  for (const QString& name : allPictures()) {
    const QImage picture = shipped(name);
    ASSERT_FALSE(picture.isNull()) << qPrintable(name);
    int transparent = 0;
    int opaque = 0;
    int borderVisible = 0;
    for (int y = 0; y < picture.height(); ++y) {
      for (int x = 0; x < picture.width(); ++x) {
        const int alpha = qAlpha(picture.pixel(x, y));
        if (alpha == 0) ++transparent;
        if (alpha == 255) ++opaque;
        const bool border = x < 10 || y < 10 || x >= picture.width() - 10 || y >= picture.height() - 10;
        if (border && alpha != 0) ++borderVisible;
      }
    }
    const int pixels = picture.width() * picture.height();
    EXPECT_EQ(borderVisible, 0) << qPrintable(name) << ": the edges show the view's background";
    EXPECT_GT(transparent, pixels / 2) << qPrintable(name);
    EXPECT_GT(opaque, pixels / 10) << qPrintable(name) << ": the robot shows";
  }
}

TEST(ShippedPictures, EachChainPictureChangesItsOwnRectangle) {
  const QImage whole = shipped(pictureName(""));
  ASSERT_FALSE(whole.isNull());
  const QList<boost::shared_ptr<BitmapArea>> areas = viewAreas();
  ASSERT_EQ(areas.size(), 5);
  for (const auto& area : areas) {
    const QImage chain = shipped(area->image);
    ASSERT_EQ(chain.size(), whole.size()) << qPrintable(area->image);
    const Difference d = differenceIn(whole, chain, area->rect);
    const double inside = d.changed > 0 ? static_cast<double>(d.inside) / d.changed : 0.0;
    const double highlighted = d.changed > 0 ? static_cast<double>(d.highlighted) / d.changed : 0.0;
    std::printf("%-5s %6d pixels changed, %5.1f %% inside (%d, %d)-(%d, %d), %5.1f %% in the highlight colour\n",
                qPrintable(area->chainName), d.changed, 100.0 * inside, area->rect.left(), area->rect.top(),
                area->rect.right(), area->rect.bottom(), 100.0 * highlighted);
    EXPECT_GT(d.changed, a_minimumChanged) << qPrintable(area->chainName);
    EXPECT_GE(inside, a_minimumInside) << qPrintable(area->chainName);
    EXPECT_GE(highlighted, 0.8) << qPrintable(area->chainName) << ": the highlight is obvious";
  }
}

TEST(ShippedPictures, TheUnknownPictureIsNotTheRobot) {
  const QImage whole = shipped(pictureName(""));
  const QImage unknown = shipped(pictureName("_unknown"));
  ASSERT_FALSE(unknown.isNull());
  ASSERT_EQ(unknown.size(), whole.size());
  int changed = 0;
  for (int y = 0; y < whole.height(); ++y) {
    for (int x = 0; x < whole.width(); ++x) changed += whole.pixel(x, y) != unknown.pixel(x, y) ? 1 : 0;
  }
  EXPECT_GT(changed, 10000);
}

// The view on the staged pictures, as a program run from the build folder
// shows it, at half the pictures' size.
TEST(RenderWidget2dPictures, AClickOnTheLeftArmShowsItHighlighted) {
  const QString data = QStringLiteral(RENDERWIDGET_BUILD_DATA_DIR);
  for (const QString& name : allPictures()) {
    EXPECT_EQ(QImage(data + name), QImage(a_sourceTree + name)) << qPrintable(name) << " is staged as it ships";
  }
  RenderWidget2d view(nullptr, testing_support::worldWithBundledRobot(), data);
  QSignalSpy selected(&view, &RenderWidget2d::chainSelected);
  view.resize(400, 500);
  view.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&view));
  EXPECT_TRUE(view.grab().save("render_widget_2d_unknown.png"));

  view.updateView();
  EXPECT_TRUE(view.grab().save("render_widget_2d_robot.png"));
  boost::shared_ptr<BitmapArea> leftArm;
  for (const auto& area : view.bitmapAreas()) leftArm = area->chainName == "LArm" ? area : leftArm;
  ASSERT_TRUE(leftArm);
  ASSERT_FLOAT_EQ(view.scale(), 2.0f);

  // Click on the arm itself, not merely inside its rectangle.
  const QPoint onArm = differenceIn(shipped(pictureName("")), shipped(leftArm->image), leftArm->rect).nearestToCentre;
  const QPoint click = view.label()->pos() + onArm / 2;
  QTest::mouseClick(&view, Qt::LeftButton, Qt::NoModifier, click);
  ASSERT_EQ(selected.count(), 2);  // the whole robot at updateView, then the arm
  EXPECT_EQ(selected.last().at(0).toString(), QString("LArm"));
  EXPECT_EQ(view.currentImage(), leftArm->image);

  const QImage shown = view.grab().toImage();
  EXPECT_TRUE(shown.save("render_widget_2d_LArm.png"));
  EXPECT_TRUE(looksHighlighted(shown.pixel(click))) << "the clicked arm is orange";
  EXPECT_EQ(shown.pixelColor(2, 2), RenderWidget2d::a_backgroundColor) << "the view's colour shows around the robot";
  std::printf("the view's pictures are in %s/render_widget_2d_*.png\n", qPrintable(QDir::currentPath()));
}

}  // namespace
