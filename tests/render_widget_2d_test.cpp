#include "render_widget_2d.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QImage>
#include <QLabel>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <ku/record_capture.h>

#include "bitmap_area.h"
#include "support/meta_object_table.h"
#include "support/test_world.h"

using VX::BitmapArea;
using VX::NextGenView::RenderWidget2d;
using VX::NextGenView::World;

namespace {

// A data folder with an 800 × 1000 picture of one flat colour for every name
// the view asks for, so the colour on the label says which picture it shows.
class PictureFolder {
 public:
  PictureFolder() {
    QDir(m_folder.path()).mkpath("media/images/ogre");
    for (const QString suffix : {"", "_unknown", "_Head", "_LArm", "_RArm", "_LLeg", "_RLeg"}) {
      QImage picture(800, 1000, QImage::Format_RGB32);
      picture.fill(colourOf(suffix));
      picture.save(path() + RenderWidget2d::a_backgroundFilesPrefix + suffix + ".png");
    }
  }
  QString path() const { return m_folder.path(); }
  static QRgb colourOf(const QString& suffix) { return qRgb(10 + suffix.size() * 20, 200 - suffix.size() * 10, qHash(suffix) % 256); }

 private:
  QTemporaryDir m_folder;
};

QRgb shownColour(const RenderWidget2d& view) {
  return view.label()->pixmap(Qt::ReturnByValue).toImage().pixel(5, 5);
}

boost::shared_ptr<World> worldOf(int robots) {
  auto world = boost::make_shared<World>();
  for (int i = 0; i < robots; ++i) world->addRobot(testing_support::loadRobot());
  return world;
}

// A robot of four chains.
boost::shared_ptr<World> fourChainWorld() {
  std::string urdf = "<robot name='four'><link name='TorsoLink'/>";
  for (const char* chain : {"A", "B", "C", "D"}) {
    urdf += std::string("<link name='") + chain + "'/><joint name='" + chain +
            "_joint' type='revolute'><parent link='TorsoLink'/><child link='" + chain +
            "'/><axis xyz='0 1 0'/><limit lower='-1' upper='1' effort='1' velocity='1'/></joint>";
  }
  urdf += "</robot>";
  auto loaded = VX::NextGenView::Robot::loadFromUrdfString(urdf);
  EXPECT_TRUE(loaded.robot) << loaded.error;
  auto world = boost::make_shared<World>();
  world->addRobot(loaded.robot);
  return world;
}

TEST(BitmapArea, NewAreaHasUseCountOneAndTheListTakesASecond) {
  boost::shared_ptr<BitmapArea> area = BitmapArea::createBitmapArea(QRect(0, 0, 10, 10), "/a.png", "A");
  EXPECT_EQ(area.use_count(), 1);
  QList<boost::shared_ptr<BitmapArea>> list;
  list.append(area);
  EXPECT_EQ(area.use_count(), 2);
  area.reset();
  EXPECT_EQ(list.first().use_count(), 1);
  EXPECT_EQ(list.first()->chainName, "A");
  EXPECT_EQ(list.first()->image, "/a.png");
}

TEST(BitmapArea, OverlappingAreasGiveTheFirstInListOrder) {
  QList<boost::shared_ptr<BitmapArea>> areas{BitmapArea::createBitmapArea(QRect(0, 0, 100, 100), "/1.png", "first"),
                                             BitmapArea::createBitmapArea(QRect(50, 50, 100, 100), "/2.png", "second")};
  EXPECT_EQ(BitmapArea::areaAt(areas, QPoint(75, 75))->chainName, "first");
  EXPECT_EQ(BitmapArea::areaAt(areas, QPoint(120, 120))->chainName, "second");
  EXPECT_FALSE(BitmapArea::areaAt(areas, QPoint(300, 300)));
}

TEST(RenderWidget2d, MetaObjectHasTwoSlots) {
  expectMethods(RenderWidget2d::staticMetaObject,
                {{QMetaMethod::Slot, QMetaMethod::Public, "updateView()", {}},
                 {QMetaMethod::Slot, QMetaMethod::Public, "displayInfo(bool)", {"isInfoDisplayed"}}});
}

TEST(RenderWidget2d, ConstantsAndPalette) {
  EXPECT_EQ(RenderWidget2d::a_backgroundColor, QColor(84, 84, 168, 255));
  EXPECT_EQ(RenderWidget2d::a_backgroundFilesPrefix, "/media/images/ogre/zel");
  EXPECT_EQ(RenderWidget2d::a_backgroundFilesSuffix, ".png");
  PictureFolder pictures;
  RenderWidget2d view(nullptr, worldOf(1), pictures.path());
  EXPECT_EQ(view.palette().color(QPalette::Base), RenderWidget2d::a_backgroundColor);
  EXPECT_EQ(view.palette().color(QPalette::Inactive, QPalette::Window), RenderWidget2d::a_backgroundColor);
  EXPECT_EQ(view.backgroundRole(), QPalette::Base);
  EXPECT_TRUE(view.autoFillBackground());
  EXPECT_TRUE(view.label()->hasScaledContents());
  EXPECT_EQ(view.label()->sizePolicy().horizontalPolicy(), QSizePolicy::Ignored);
  EXPECT_FLOAT_EQ(view.scale(), 1.0f);
}

TEST(RenderWidget2d, ConstructionShowsTheUnknownPictureSilently) {
  PictureFolder pictures;
  RenderWidget2d view(nullptr, worldOf(1), pictures.path());
  EXPECT_EQ(shownColour(view), PictureFolder::colourOf("_unknown"));
  EXPECT_TRUE(view.currentImage().isEmpty());
}

TEST(RenderWidget2d, ReadySignalOnce) {
  PictureFolder pictures;
  RenderWidget2d view(nullptr, worldOf(1), pictures.path());
  QSignalSpy ready(&view, &RenderWidget2d::renderWindowReady);
  view.initRenderWindow();
  view.initRenderWindow();
  EXPECT_TRUE(view.m_initialized);
  EXPECT_EQ(ready.count(), 1);
}

TEST(RenderWidget2d, NoRobotShowsUnknownAndAnnouncesOnce) {
  PictureFolder pictures;
  RenderWidget2d view(nullptr, worldOf(0), pictures.path());
  QSignalSpy chains(&view, &RenderWidget2d::chainSelected);
  view.updateView();
  view.updateView();
  ASSERT_EQ(chains.count(), 1);
  EXPECT_EQ(chains.at(0).at(0).toString(), QString());
  EXPECT_EQ(view.currentImage(), "/media/images/ogre/zel_unknown.png");
  EXPECT_TRUE(view.bitmapAreas().isEmpty());
}

TEST(RenderWidget2d, FiveChainsGiveTheWholeRobotAndFiveAreas) {
  PictureFolder pictures;
  RenderWidget2d view(nullptr, worldOf(1), pictures.path());
  QSignalSpy chains(&view, &RenderWidget2d::chainSelected);
  view.updateView();
  ASSERT_EQ(chains.count(), 1);
  EXPECT_EQ(chains.at(0).at(0).toString(), QString());
  EXPECT_EQ(shownColour(view), PictureFolder::colourOf(""));
  const auto& areas = view.bitmapAreas();
  ASSERT_EQ(areas.size(), 5);
  const QStringList order{"Head", "RArm", "LArm", "RLeg", "LLeg"};
  const QList<QRect> rects{QRect(QPoint(306, 54), QPoint(517, 232)), QRect(QPoint(134, 207), QPoint(281, 497)),
                           QRect(QPoint(519, 207), QPoint(697, 532)), QRect(QPoint(243, 506), QPoint(401, 917)),
                           QRect(QPoint(417, 504), QPoint(587, 916))};
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(areas[i]->chainName, order[i]);
    EXPECT_EQ(areas[i]->rect, rects[i]);
    EXPECT_EQ(areas[i]->image, "/media/images/ogre/zel_" + order[i] + ".png");
  }
  view.updateView();
  EXPECT_EQ(chains.count(), 1) << "the areas are built once";
  EXPECT_EQ(view.bitmapAreas().size(), 5);
}

class ShownView : public ::testing::Test {
 protected:
  void SetUp() override {
    m_view = std::make_unique<RenderWidget2d>(nullptr, worldOf(1), m_pictures.path());
    m_view->resize(400, 400);
    m_view->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(m_view.get()));
    m_view->updateView();
  }
  void click(int x, int y) { QTest::mouseClick(m_view.get(), Qt::LeftButton, Qt::NoModifier, QPoint(x, y)); }

  PictureFolder m_pictures;
  std::unique_ptr<RenderWidget2d> m_view;
};

TEST_F(ShownView, PictureScalesWithItsAspectKept) {
  EXPECT_FLOAT_EQ(m_view->scale(), 2.5f);
  EXPECT_EQ(m_view->label()->size(), QSize(320, 400));
  EXPECT_EQ(m_view->label()->pos(), QPoint(0, 0));
  m_view->resize(400, 1000);  // too narrow for the full height: the width rules
  QTest::qWait(20);
  EXPECT_FLOAT_EQ(m_view->scale(), 2.0f);
  EXPECT_EQ(m_view->label()->size(), QSize(400, 500));
}

TEST_F(ShownView, ClickMapsIntoPicturePixels) {
  QSignalSpy chains(m_view.get(), &RenderWidget2d::chainSelected);
  EXPECT_EQ(m_view->picturePoint(QPoint(100, 100)), QPoint(250, 250));
  EXPECT_EQ(m_view->picturePoint(QPoint(97, 301)), QPoint(243, 753)) << "242.5 and 752.5 round up";
  EXPECT_EQ(m_view->picturePoint(QPoint(0, 0)), QPoint(0, 0));
  click(100, 100);  // picture point (250, 250): inside RArm's rectangle
  ASSERT_EQ(chains.count(), 1);
  EXPECT_EQ(chains.at(0).at(0).toString(), "RArm");
  EXPECT_EQ(shownColour(*m_view), PictureFolder::colourOf("_RArm"));
}

TEST_F(ShownView, ClickInsideTheFirstRectangleShowsTheHead) {
  QSignalSpy chains(m_view.get(), &RenderWidget2d::chainSelected);
  click(160, 40);  // picture point (400, 100)
  ASSERT_EQ(chains.count(), 1);
  EXPECT_EQ(chains.at(0).at(0).toString(), "Head");
  EXPECT_EQ(m_view->currentImage(), "/media/images/ogre/zel_Head.png");
  click(161, 41);
  EXPECT_EQ(chains.count(), 1) << "the chain already shown is not announced again";
}

TEST_F(ShownView, ClickOutsideEveryAreaShowsTheWholeRobot) {
  QSignalSpy chains(m_view.get(), &RenderWidget2d::chainSelected);
  click(160, 40);
  click(10, 10);  // picture point (25, 25)
  ASSERT_EQ(chains.count(), 2);
  EXPECT_EQ(chains.at(1).at(0).toString(), QString());
  EXPECT_EQ(shownColour(*m_view), PictureFolder::colourOf(""));
}

TEST_F(ShownView, PointsOnAnEdgeCountAsInside) {
  QSignalSpy chains(m_view.get(), &RenderWidget2d::chainSelected);
  // 306 / 2.5 = 122.4 → picture x qRound(122 × 2.5) = 305 is outside; 123 → 308 inside.
  click(122, 40);
  EXPECT_EQ(chains.count(), 0);
  // Picture point (517, 232) is the Head's far corner: widget (206.8, 92.8) → (207, 93) maps to (518, 233).
  // Widget (206, 92) maps to (515, 230), inside; the exact corner is checked on the area itself.
  click(206, 92);
  ASSERT_EQ(chains.count(), 1);
  EXPECT_EQ(chains.at(0).at(0).toString(), "Head");
  // Widget x 97 is picture x 242.5, rounded to 243: RLeg's left edge; 96 is 240, outside.
  click(96, 300);
  ASSERT_EQ(chains.count(), 2) << "outside every area: the head gives way to the whole robot";
  EXPECT_EQ(chains.at(1).at(0).toString(), QString());
  EXPECT_EQ(m_view->currentImage(), "/media/images/ogre/zel.png");
  ASSERT_EQ(m_view->bitmapAreas().at(3)->rect.left(), 243);
  click(97, 300);
  ASSERT_EQ(chains.count(), 3);
  EXPECT_EQ(chains.at(2).at(0).toString(), "RLeg") << "a click on the left edge is inside";
  EXPECT_TRUE(m_view->bitmapAreas().first()->rect.contains(QPoint(517, 232)));
  EXPECT_TRUE(m_view->bitmapAreas().first()->rect.contains(QPoint(306, 54)));
  EXPECT_FALSE(m_view->bitmapAreas().first()->rect.contains(QPoint(518, 232)));
}

TEST_F(ShownView, EveryButtonClicks) {
  QSignalSpy chains(m_view.get(), &RenderWidget2d::chainSelected);
  QTest::mouseClick(m_view.get(), Qt::RightButton, Qt::NoModifier, QPoint(160, 40));
  EXPECT_EQ(chains.count(), 1);
}

TEST(RenderWidget2d, TwoRobotsOnlyLogEveryTime) {
  PictureFolder pictures;
  ku::log::RecordCapture captured;
  RenderWidget2d view(nullptr, worldOf(2), pictures.path());
  QSignalSpy chains(&view, &RenderWidget2d::chainSelected);
  view.updateView();
  view.updateView();
  EXPECT_EQ(chains.count(), 0);
  EXPECT_TRUE(view.bitmapAreas().isEmpty());
  EXPECT_EQ(shownColour(view), PictureFolder::colourOf("_unknown"));
  ASSERT_EQ(captured.records().size(), 2u);
  for (const auto& record : captured.records()) {
    EXPECT_EQ(record.text, "RenderWidget2d doesn't support multi robot 2\nOnly the first will be visible.\n");
    EXPECT_EQ(record.level, 2);
    EXPECT_EQ(record.category, "rdr.widget");
    EXPECT_EQ(record.function, "updateView");
  }
}

TEST(RenderWidget2d, FourChainsLogEveryTimeAndBuildNoArea) {
  PictureFolder pictures;
  auto world = fourChainWorld();
  ku::log::RecordCapture captured;
  RenderWidget2d view(nullptr, world, pictures.path());
  view.updateView();
  view.updateView();
  EXPECT_TRUE(view.bitmapAreas().isEmpty());
  ASSERT_EQ(captured.records().size(), 2u);
  EXPECT_EQ(captured.records()[0].text, "RenderWidget2d doesn't support 4 chains\n");
  EXPECT_EQ(captured.records()[1].level, 2);
}

TEST(RenderWidget2d, MissingPictureGivesAnEmptyLabelAndSkipsTheResize) {
  QTemporaryDir empty;
  RenderWidget2d view(nullptr, worldOf(1), empty.path());
  EXPECT_TRUE(view.label()->pixmap(Qt::ReturnByValue).isNull());
  view.resize(400, 400);
  view.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&view));
  view.updateView();
  EXPECT_EQ(view.bitmapAreas().size(), 5);
  EXPECT_FLOAT_EQ(view.scale(), 1.0f) << "no picture: no resize arithmetic";
}

}  // namespace
