// The 3D view's scene set-up and per-frame update: lights, sky, overlay,
// the robots' sentences, the info text and screenshots.
#include "render_widget.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include <QImage>
#include <QTemporaryDir>

#include <OgreCamera.h>
#include <OgreLight.h>
#include <OgreManualObject.h>
#include <OgreMaterialManager.h>
#include <OgreRenderWindow.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>
#include <OgreTextureManager.h>
#include <OgreViewport.h>
#include <Overlay/OgreFontManager.h>
#include <Overlay/OgreOverlay.h>
#include <Overlay/OgreOverlayContainer.h>
#include <Overlay/OgreTextAreaOverlayElement.h>

#include <ku/record_capture.h>
#include <scene_view/world_3d_view.h>

#include "camera.h"
#include "support/section_positions.h"
#include "support/widget_window.h"

using testing_support::WidgetWindow;
using VX::NextGenView::RenderWidget;
using VX::NextGenView::RenderWidgetTestAccess;
using VX::NextGenView::Robot;
using VX::NextGenView::World;

namespace {

// A shown 3D view whose widget is `width` pixels wide.
class ShownView : public ::testing::Test {
 protected:
  void show(boost::shared_ptr<World> world = testing_support::worldWithBundledRobot(), int width = 400) {
    m_window = std::make_unique<WidgetWindow>(world);
    ASSERT_NE(m_window->widget, nullptr);
    m_window->widget->setFixedWidth(width);
    ASSERT_TRUE(m_window->show());
    QTest::qWait(20);
    ASSERT_EQ(widget()->width(), width);
  }
  RenderWidget* widget() const { return m_window->widget; }
  Ogre::TextAreaOverlayElement* sentenceArea() const { return RenderWidgetTestAccess::sentenceArea(*widget()); }
  std::string caption() const { return sentenceArea()->getCaption().asUTF8(); }
  boost::shared_ptr<Robot> firstRobot() const { return *m_window->world->robots().begin(); }
  // One robot saying `sentence`, one frame.
  void say(const std::string& sentence) {
    firstRobot()->setSentence(sentence);
    widget()->updateView();
  }

  std::unique_ptr<WidgetWindow> m_window;
};

std::string words(std::size_t length) {
  std::string text;
  while (text.size() < length) text += (text.size() % 5 == 4) ? ' ' : 'a' + static_cast<char>(text.size() % 26);
  return text;
}

TEST(SceneSetUp, SkyQuaternionIsAQuarterTurnAboutX) {
  const Ogre::Quaternion q = RenderWidget::computeSkyQuaternion();
  EXPECT_NEAR(q.w, 0.70710677f, 1e-6);
  EXPECT_NEAR(q.x, 0.70710677f, 1e-6);
  EXPECT_NEAR(q.y, 0.0f, 1e-6);
  EXPECT_NEAR(q.z, 0.0f, 1e-6);
  const Ogre::Vector3 up = q * Ogre::Vector3::UNIT_Y;
  EXPECT_NEAR(up.z, 1.0f, 1e-6) << "the sky's up becomes +Z";
}

TEST_F(ShownView, LightsFogAndSky) {
  show();
  Ogre::SceneManager* scene = widget()->worldView()->getOgreSceneManager();
  EXPECT_EQ(scene->getAmbientLight(), Ogre::ColourValue(0.5f, 0.5f, 0.5f, 1.0f));
  EXPECT_EQ(scene->getShadowTechnique(), Ogre::SHADOWTYPE_NONE);
  const struct {
    const char* name;
    Ogre::Vector3 direction;
  } lights[] = {{"Light", Ogre::Vector3(-1, 0, -0.75f)}, {"Light2", Ogre::Vector3(1, 0, -0.75f)}};
  for (const auto& expected : lights) {
    Ogre::Light* light = scene->getLight(expected.name);
    EXPECT_EQ(light->getType(), Ogre::Light::LT_DIRECTIONAL);
    EXPECT_EQ(light->getDiffuseColour(), Ogre::ColourValue(0.5f, 0.5f, 0.5f, 1.0f));
    EXPECT_EQ(light->getSpecularColour(), Ogre::ColourValue(1, 1, 1, 1));
    EXPECT_TRUE(light->getDerivedDirection().positionEquals(expected.direction.normalisedCopy(), 1e-5f))
        << expected.name;
  }
  EXPECT_EQ(scene->getFogMode(), Ogre::FOG_LINEAR);
  EXPECT_EQ(scene->getFogColour(), Ogre::ColourValue(1, 1, 1, 1));
  EXPECT_FLOAT_EQ(scene->getFogStart(), 2000.0f);
  EXPECT_FLOAT_EQ(scene->getFogEnd(), 10000.0f);
  EXPECT_FLOAT_EQ(scene->getFogDensity(), 0.1f);
  EXPECT_TRUE(scene->isSkyBoxEnabled());
}

// The sky box's corners: all on the cube of half-side 5 (its distance); its
// front face (-Z when authored Y-up) is turned to +Y by the quarter turn.
TEST_F(ShownView, SkyBoxDistanceAndOrientation) {
  show();
  Ogre::SceneManager* scene = widget()->worldView()->getOgreSceneManager();
  EXPECT_FLOAT_EQ(scene->getSkyBoxGenParameters().skyBoxDistance, 5.0f);
  Ogre::SceneNode* node = scene->getSkyBoxNode();
  ASSERT_NE(node, nullptr);
  ASSERT_EQ(node->numAttachedObjects(), 1u);
  auto* box = dynamic_cast<Ogre::ManualObject*>(node->getAttachedObject(0));
  ASSERT_NE(box, nullptr);
  ASSERT_EQ(box->getSections().size(), 1u);
  const std::vector<Ogre::Vector3> corners = testing_support::sectionPositions(*box->getSections().front());
  ASSERT_EQ(corners.size(), 24u) << "six faces of four corners, the front face first";
  for (const Ogre::Vector3& corner : corners) {
    EXPECT_NEAR(std::max({std::fabs(corner.x), std::fabs(corner.y), std::fabs(corner.z)}), 5.0f, 1e-4f);
  }
  for (const Ogre::Vector3& corner : std::vector<Ogre::Vector3>(corners.begin(), corners.begin() + 4)) {
    EXPECT_NEAR(corner.y, 5.0f, 1e-4f) << "the front face lies at +Y";
    EXPECT_NEAR(std::fabs(corner.x), 5.0f, 1e-4f);
    EXPECT_NEAR(std::fabs(corner.z), 5.0f, 1e-4f);
  }
}

TEST_F(ShownView, RenderingDefaults) {
  show();
  EXPECT_EQ(Ogre::TextureManager::getSingleton().getDefaultNumMipmaps(), 5u);
  Ogre::MaterialManager& materials = Ogre::MaterialManager::getSingleton();
  EXPECT_EQ(materials.getDefaultTextureFiltering(Ogre::FT_MIN), Ogre::FO_ANISOTROPIC);
  EXPECT_EQ(materials.getDefaultTextureFiltering(Ogre::FT_MAG), Ogre::FO_ANISOTROPIC);
  EXPECT_EQ(materials.getDefaultTextureFiltering(Ogre::FT_MIP), Ogre::FO_LINEAR);
  EXPECT_EQ(materials.getDefaultAnisotropy(), 20u);
}

TEST_F(ShownView, CameraRigAndWhiteViewport) {
  show();
  ASSERT_TRUE(widget()->camera());
  Ogre::Camera* camera = widget()->camera()->ogreCamera();
  EXPECT_EQ(camera->getName(), "FreeCam");
  Ogre::SceneManager* scene = widget()->worldView()->getOgreSceneManager();
  EXPECT_EQ(widget()->camera()->targetNode(), scene->getSceneNode("camera_obj"));
  EXPECT_EQ(widget()->camera()->targetNode()->getParent(), scene->getRootSceneNode());
  Ogre::Viewport* viewport = widget()->renderWindow()->getViewport(0);
  EXPECT_EQ(viewport->getCamera(), camera);
  EXPECT_EQ(viewport->getBackgroundColour(), Ogre::ColourValue(1, 1, 1, 1));
  EXPECT_FLOAT_EQ(viewport->getWidth(), 1.0f);
  EXPECT_FLOAT_EQ(viewport->getHeight(), 1.0f);
  EXPECT_FLOAT_EQ(viewport->getLeft(), 0.0f);
  EXPECT_FLOAT_EQ(viewport->getTop(), 0.0f);
  EXPECT_EQ(viewport->getZOrder(), 0);
  EXPECT_EQ(widget()->renderWindow()->getNumViewports(), 1u);
  EXPECT_NEAR(camera->getAspectRatio(), float(widget()->width()) / float(widget()->height()), 1e-5);
}

TEST_F(ShownView, AspectRatioAtHeightZeroIsNotGuarded) {
  show();
  // Rebuild the camera rig on a widget that is, for the moment, 0 pixels high.
  Ogre::SceneManager* scene = widget()->worldView()->getOgreSceneManager();
  widget()->renderWindow()->removeAllViewports();
  scene->destroyCamera("FreeCam");
  scene->destroySceneNode("camera_obj");
  widget()->hide();
  widget()->setFixedHeight(0);
  ASSERT_EQ(widget()->height(), 0);
  RenderWidgetTestAccess::initCamera(*widget());
  const float ratio = widget()->camera()->ogreCamera()->getAspectRatio();
  EXPECT_TRUE(std::isinf(ratio) || std::isnan(ratio)) << ratio;
}

TEST_F(ShownView, FontAndOverlayElements) {
  show();
  Ogre::FontPtr font = Ogre::FontManager::getSingleton().getByName("Arial");
  ASSERT_TRUE(font);
  EXPECT_EQ(font->getType(), Ogre::FT_TRUETYPE);
  EXPECT_EQ(font->getSource(), "unispace_bd.ttf");
  EXPECT_FLOAT_EQ(font->getTrueTypeSize(), 16.0f);
  EXPECT_EQ(font->getTrueTypeResolution(), 96u);
  EXPECT_TRUE(font->isLoaded());

  Ogre::Overlay* overlay = RenderWidgetTestAccess::overlay(*widget());
  EXPECT_EQ(overlay->getName(), "OverlayName");
  Ogre::OverlayContainer* panel = overlay->getChild("PanelName");
  ASSERT_NE(panel, nullptr);
  EXPECT_EQ(panel->getMetricsMode(), Ogre::GMM_PIXELS);
  EXPECT_FLOAT_EQ(panel->getLeft(), 10.0f);
  EXPECT_FLOAT_EQ(panel->getTop(), 10.0f);
  EXPECT_FLOAT_EQ(panel->getWidth(), 100.0f);
  EXPECT_FLOAT_EQ(panel->getHeight(), 100.0f);
  EXPECT_EQ(RenderWidgetTestAccess::infoArea(*widget())->getParent(), panel);
  EXPECT_EQ(sentenceArea()->getParent(), panel);
  EXPECT_FLOAT_EQ(sentenceArea()->getCharHeight(), 32.0f);
  EXPECT_FLOAT_EQ(RenderWidgetTestAccess::infoArea(*widget())->getCharHeight(), 16.0f);
}

TEST_F(ShownView, OverlayHiddenUntilTheFirstFrame) {
  show();
  EXPECT_FALSE(RenderWidgetTestAccess::overlay(*widget())->isVisible());
  widget()->updateView();
  EXPECT_TRUE(RenderWidgetTestAccess::overlay(*widget())->isVisible());
}

TEST_F(ShownView, FreeTextAreaReceivesTextButNeverShows) {
  show();
  widget()->text("hello there");
  widget()->updateView();
  Ogre::TextAreaOverlayElement* area = RenderWidgetTestAccess::textArea(*widget());
  EXPECT_EQ(area->getCaption().asUTF8(), "") << "only while the text is visible";
  widget()->textVisible(true);
  widget()->updateView();
  EXPECT_EQ(area->getCaption().asUTF8(), "hello there");
  EXPECT_EQ(area->getParent(), nullptr) << "not part of the panel, so never on screen";
}

TEST_F(ShownView, InfoTextShowsFrameRateAndTriangles) {
  show();
  widget()->displayInfo(true);
  widget()->updateView();
  widget()->updateView();
  Ogre::TextAreaOverlayElement* info = RenderWidgetTestAccess::infoArea(*widget());
  const std::string text = info->getCaption().asUTF8();
  EXPECT_EQ(text.rfind("FPS: ", 0), 0u) << text;
  EXPECT_NE(text.find(" \nTriangle count: "), std::string::npos) << text;
  const long long triangles = std::stoll(text.substr(text.find("count: ") + 7));
  EXPECT_GT(triangles, 100) << "the robot's triangles";
  EXPECT_FLOAT_EQ(info->getTop(), float(widget()->renderWindow()->getHeight() - 50));
  widget()->displayInfo(false);
  widget()->updateView();
  EXPECT_EQ(info->getCaption().asUTF8(), text) << "turning it off keeps the last caption";
}

TEST_F(ShownView, InfoAreaLeavesTheScreenBelow50Pixels) {
  show();
  widget()->setFixedHeight(40);
  QTest::qWait(50);
  ASSERT_EQ(widget()->renderWindow()->getHeight(), 40u);
  widget()->displayInfo(true);
  widget()->updateView();
  EXPECT_FLOAT_EQ(RenderWidgetTestAccess::infoArea(*widget())->getTop(), float(40u - 50u));
  EXPECT_GT(RenderWidgetTestAccess::infoArea(*widget())->getTop(), 4.0e9f);
}

TEST_F(ShownView, NoRobotsClearTheCaptionEveryFrame) {
  show(boost::make_shared<World>());
  sentenceArea()->setCaption("left over");
  widget()->updateView();
  EXPECT_EQ(caption(), "");
}

TEST_F(ShownView, ShortSentenceIsBig) {
  show();
  say("Hello you!");
  EXPECT_EQ(caption(), "Hello you!");
  EXPECT_FLOAT_EQ(sentenceArea()->getCharHeight(), 32.0f);
}

TEST_F(ShownView, FortyCharactersAreSmallAndWhole) {
  show();
  say(words(40));
  EXPECT_EQ(caption(), words(40));
  EXPECT_FLOAT_EQ(sentenceArea()->getCharHeight(), 16.0f);
}

TEST_F(ShownView, HundredCharactersAreCutAtASpace) {
  show();
  say(words(100));
  EXPECT_EQ(caption(), words(100).substr(0, 49) + "...");
  EXPECT_FLOAT_EQ(sentenceArea()->getCharHeight(), 16.0f);
}

TEST_F(ShownView, NoSpaceGivesDots) {
  show();
  say(std::string(100, 'x'));
  EXPECT_EQ(caption(), "...");
}

TEST_F(ShownView, LimitBetweenFiveAndEightKeepsTheSentence) {
  show(testing_support::worldWithBundledRobot(), 50);
  say(words(100));
  EXPECT_EQ(caption(), words(100));
}

TEST_F(ShownView, UnderThirtySixPixelsKeepsTheOldCaptionAndLogs) {
  show(testing_support::worldWithBundledRobot(), 30);
  say("Hi");
  ASSERT_EQ(caption(), "Hi");
  ku::log::RecordCapture captured;
  EXPECT_NO_THROW(say(words(100)));
  EXPECT_EQ(caption(), "Hi");
  ASSERT_EQ(captured.records().size(), 1u);
  EXPECT_EQ(captured.records()[0].level, 2);
  EXPECT_EQ(captured.records()[0].category, "rdr.widget");
  EXPECT_EQ(captured.records()[0].function, "updateView");
}

TEST_F(ShownView, InvalidUtf8KeepsTheCaption) {
  show();
  say("Good");
  say(std::string("Bad \xff\xfe bytes"));
  EXPECT_EQ(caption(), "Good");
}

TEST_F(ShownView, TwoRobotsConcatenateAndTheCameraFollowsTheLast) {
  auto world = boost::make_shared<World>();
  auto first = testing_support::loadRobot();
  auto second = testing_support::loadRobot();
  first->setBasePosition({0, -1, 0.33f});
  second->setBasePosition({0, 1, 0.33f});
  first->setHeading(0.5f);
  second->setHeading(-0.25f);
  first->updateKinematics();
  second->updateKinematics();
  world->addRobot(first);
  world->addRobot(second);
  show(world);
  first->setSentence("One.");
  second->setSentence("Two.");
  widget()->updateView();

  const auto robots = world->robots();
  const auto last = *robots.rbegin();
  EXPECT_EQ(caption(), (*robots.begin())->sentence() + last->sentence());
  const MK::Math::Position3D torso = MK::Math::position3DFromTransform(last->link("TorsoLink")->globalTransform());
  const Ogre::SceneNode* target = widget()->camera()->targetNode();
  EXPECT_NEAR(target->getPosition().x, torso.x, 1e-5);
  EXPECT_NEAR(target->getPosition().y, torso.y, 1e-5);
  EXPECT_NEAR(target->getPosition().z, torso.z, 1e-5);
  const Ogre::Quaternion heading(Ogre::Radian(last->heading()), Ogre::Vector3::UNIT_Z);
  EXPECT_TRUE(target->getOrientation().equals(heading, Ogre::Radian(1e-5f)));
}

class Screenshots : public ShownView {
 protected:
  QImage save(bool backgroundHidden) {
    const QString file = m_folder.filePath(backgroundHidden ? "white.png" : "sky.png");
    widget()->saveScreenshot(file, backgroundHidden);
    QImage image(file);
    // Kept for a person to look at.
    image.save(QString::fromUtf8(::testing::TempDir().c_str()) + (backgroundHidden ? "shot_white.png" : "shot_sky.png"));
    return image;
  }
  QTemporaryDir m_folder;
};

TEST_F(Screenshots, HiddenBackgroundIsWhiteAndTheSkyComesBack) {
  show(testing_support::worldWithBundledRobot(), 500);
  widget()->updateView();
  const QImage sky = save(false);
  const QImage white = save(true);
  ASSERT_FALSE(white.isNull());
  ASSERT_FALSE(sky.isNull());
  EXPECT_EQ(white.size(), widget()->size());
  EXPECT_EQ(sky.size(), widget()->size());
  const QRgb whitePixel = qRgb(255, 255, 255);
  for (const QPoint& corner : {QPoint(0, 0), QPoint(white.width() - 1, 0)}) {
    EXPECT_EQ(white.pixel(corner), whitePixel);
    EXPECT_NE(sky.pixel(corner), whitePixel);
  }
  EXPECT_NE(white.pixel(white.width() / 2, white.height() / 2), whitePixel) << "the robot is in the picture";
  EXPECT_TRUE(widget()->worldView()->getOgreSceneManager()->isSkyBoxEnabled()) << "the sky is back on";

  // Without a new frame a plain screenshot receives what was rendered last:
  // the white frame. The next frame shows the sky again.
  EXPECT_EQ(save(false).pixel(0, 0), whitePixel);
  widget()->updateView();
  EXPECT_NE(save(false).pixel(0, 0), whitePixel);
}

// How many pixels of a region differ between two pictures.
int differingPixels(const QImage& a, const QImage& b, const QRect& region) {
  int count = 0;
  for (int y = region.top(); y <= region.bottom(); ++y)
    for (int x = region.left(); x <= region.right(); ++x) count += a.pixel(x, y) != b.pixel(x, y);
  return count;
}

TEST_F(Screenshots, SentenceAndInfoTextAreDrawn) {
  show(testing_support::worldWithBundledRobot(), 600);
  widget()->updateView();
  const QImage plain = save(false);
  say("Hello, I am zel.");
  widget()->displayInfo(true);
  widget()->updateView();
  widget()->updateView();
  const QImage withText = save(false);
  withText.save(QString::fromUtf8(::testing::TempDir().c_str()) + "shot_overlay.png");
  const int h = withText.height();
  EXPECT_GT(differingPixels(plain, withText, QRect(10, 10, 300, 35)), 200) << "the sentence, top left";
  EXPECT_GT(differingPixels(plain, withText, QRect(10, h - 40, 250, 38)), 200) << "the info text, bottom left";
  EXPECT_LT(differingPixels(plain, withText, QRect(300, h / 2 - 20, 40, 40)), 40) << "the robot is unchanged";
}

TEST_F(Screenshots, UnknownExtensionThrowsOutOfTheWidget) {
  show();
  widget()->updateView();
  EXPECT_THROW(widget()->saveScreenshot(m_folder.filePath("shot.unknown-format"), false), Ogre::Exception);
}

TEST_F(ShownView, ScreenshotBeforeTheWindowDoesNothing) {
  QWidget parent;
  RenderWidget* early = RenderWidget::create(&parent, testing_support::worldWithBundledRobot(),
                                             testing_support::engineConfiguration(), testing_support::engineLog(), false);
  ASSERT_NE(early, nullptr);
  QTemporaryDir folder;
  early->saveScreenshot(folder.filePath("early.png"), true);
  early->updateView();
  EXPECT_FALSE(QFile::exists(folder.filePath("early.png")));
  EXPECT_FALSE(early->camera());
}

}  // namespace
