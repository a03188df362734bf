// Starting OGRE from a configuration: every failure gives a null root and an
// error record, never an exception; a good configuration gives the root, an
// octree scene manager, the overlay system and OGRE's log file.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>

#include <OgreRoot.h>
#include <OgreSceneManager.h>

#include <ku/path.h>

#include <ku/record_capture.h>
#include "render_engine/ogre_engine.h"
#include "temporary_folder.h"

namespace VX::NextGenView {
namespace {

namespace fs = std::filesystem;
using LogCapture = ku::log::RecordCapture;
using testing::TemporaryFolder;

const char* const a_goodConfig =
    "Plugin=RenderSystem_GL\n"
    "Plugin=Plugin_OctreeSceneManager\n"
    "Plugin=Codec_FreeImage\n";

// Builds an engine, checking that the constructor lets no exception out.
std::unique_ptr<OgreEngine> startEngine(const std::string& confPath, const std::string& logPath) {
  std::unique_ptr<OgreEngine> engine;
  EXPECT_NO_THROW(engine = std::make_unique<OgreEngine>(confPath, logPath));
  return engine;
}

void expectFailedStart(const std::string& confPath, const std::string& reasonFragment) {
  TemporaryFolder logs;
  LogCapture capture;
  const std::unique_ptr<OgreEngine> engine = startEngine(confPath, (logs.path() / "ogre.log").string());
  ASSERT_TRUE(engine);
  EXPECT_EQ(engine->root(), nullptr);
  EXPECT_EQ(engine->sceneManager(), nullptr);
  EXPECT_EQ(engine->overlaySystem(), nullptr);
  EXPECT_FALSE(engine->renderSystemReady());
  EXPECT_FALSE(engine->initialiseResources());
  EXPECT_EQ(capture.count(ku::log::Error, "rdr.engine", reasonFragment), 1) << "reason: " << reasonFragment;
  EXPECT_EQ(Ogre::Root::getSingletonPtr(), nullptr) << "a failed start must release OGRE";
}

TEST(OgreEngine, MissingConfigurationGivesNoRoot) {
  TemporaryFolder folder;
  expectFailedStart((folder.path() / "no/such/ogre").string(), "not found");
  expectFailedStart("", "empty path");
}

TEST(OgreEngine, EmptyConfigurationGivesNoRoot) {
  TemporaryFolder folder;
  folder.write("ogre/engine.cfg", "");
  expectFailedStart((folder.path() / "ogre").string(), "is empty");
}

TEST(OgreEngine, BrokenConfigurationGivesNoRoot) {
  TemporaryFolder folder;
  folder.write("ogre/engine.cfg", "Plugin=RenderSystem_GL\n<xml>not a configuration</xml>\n");
  expectFailedStart((folder.path() / "ogre").string(), "expected Key=Value");
}

TEST(OgreEngine, UnreadableConfigurationGivesNoRoot) {
  TemporaryFolder folder;
  fs::create_directories(folder.path() / "ogre/engine.cfg");  // a folder where the file should be
  expectFailedStart((folder.path() / "ogre").string(), "not a readable file");
}

TEST(OgreEngine, ConfigurationWithoutRenderSystemGivesNoRoot) {
  TemporaryFolder folder;
  folder.write("ogre/engine.cfg", "Plugin=Plugin_OctreeSceneManager\n");
  expectFailedStart((folder.path() / "ogre").string(), "no render system \"OpenGL Rendering Subsystem\"");
}

TEST(OgreEngine, NonexistentPluginGivesNoRoot) {
  TemporaryFolder folder;
  folder.write("ogre/engine.cfg", "Plugin=RenderSystem_GL\nPlugin=Plugin_DoesNotExist\n");
  expectFailedStart((folder.path() / "ogre").string(), "plugin Plugin_DoesNotExist not found");
}

TEST(OgreEngine, UnknownSceneManagerGivesNoRoot) {
  TemporaryFolder folder;
  folder.write("ogre/engine.cfg", std::string(a_goodConfig) + "SceneManager=NoSuchSceneManager\n");
  expectFailedStart((folder.path() / "ogre").string(), "Cannot start OGRE");
}

TEST(OgreEngine, GoodConfigurationStartsOgreAndWritesItsLog) {
  TemporaryFolder folder;
  folder.write("ogre/engine.cfg", a_goodConfig);
  const fs::path logPath = folder.path() / "logs/nested/ogre.log";
  LogCapture capture;
  {
    const std::unique_ptr<OgreEngine> engine = startEngine((folder.path() / "ogre").string(), logPath.string());
    ASSERT_NE(engine->root(), nullptr);
    ASSERT_NE(engine->sceneManager(), nullptr);
    EXPECT_EQ(engine->sceneManager()->getTypeName(), "OctreeSceneManager");
    EXPECT_NE(engine->overlaySystem(), nullptr);
    ASSERT_NE(engine->root()->getRenderSystem(), nullptr);
    EXPECT_EQ(engine->root()->getRenderSystem()->getName(), "OpenGL Rendering Subsystem");
    EXPECT_FALSE(engine->root()->isInitialised()) << "the widget initialises the root with its window";
    // No window yet: resources wait for one.
    EXPECT_FALSE(engine->renderSystemReady());
    EXPECT_FALSE(engine->initialiseResources());
    EXPECT_FALSE(engine->resourcesInitialised());
  }
  EXPECT_EQ(capture.count(ku::log::Error, "rdr.engine"), 0);
  EXPECT_EQ(Ogre::Root::getSingletonPtr(), nullptr);
  ASSERT_TRUE(fs::exists(logPath));
  std::ifstream log(logPath);
  const std::string text((std::istreambuf_iterator<char>(log)), std::istreambuf_iterator<char>());
  EXPECT_NE(text.find("RenderSystem_GL"), std::string::npos) << text.substr(0, 400);
}

TEST(OgreEngine, StartsAgainAfterTheFirstEngineIsGone) {
  TemporaryFolder folder;
  folder.write("ogre/engine.cfg", a_goodConfig);
  for (int round = 0; round < 2; ++round) {
    const std::unique_ptr<OgreEngine> engine =
        startEngine((folder.path() / "ogre").string(), (folder.path() / "ogre.log").string());
    EXPECT_NE(engine->root(), nullptr) << "round " << round;
  }
}

TEST(OgreEngine, SecondEngineAtTheSameTimeGivesNoRoot) {
  TemporaryFolder folder;
  folder.write("ogre/engine.cfg", a_goodConfig);
  const std::unique_ptr<OgreEngine> first =
      startEngine((folder.path() / "ogre").string(), (folder.path() / "first.log").string());
  ASSERT_NE(first->root(), nullptr);
  LogCapture capture;
  const std::unique_ptr<OgreEngine> second =
      startEngine((folder.path() / "ogre").string(), (folder.path() / "second.log").string());
  EXPECT_EQ(second->root(), nullptr);
  EXPECT_EQ(capture.count(ku::log::Error, "rdr.engine", "another OGRE root"), 1);
  EXPECT_EQ(Ogre::Root::getSingletonPtr(), first->root()) << "the first engine is untouched";
}

// The configuration staged in the build tree is what a program run from the
// build folder finds, whatever the user's own configuration folders hold.
TEST(OgreEngine, StagedConfigurationIsFoundFromTheBuildFolder) {
  TemporaryFolder home;
  TemporaryFolder dirs;
  ::setenv("XDG_CONFIG_HOME", home.path().c_str(), 1);
  ::setenv("XDG_CONFIG_DIRS", dirs.path().c_str(), 1);
  const std::string found = ku::path::findConf("balterconix", "ogre");
  ::unsetenv("XDG_CONFIG_HOME");
  ::unsetenv("XDG_CONFIG_DIRS");
  EXPECT_EQ(fs::path(found).lexically_normal(),
            (fs::path(RENDERWIDGET_BUILD_DATA_DIR) / "config/balterconix/ogre").lexically_normal());
  ASSERT_TRUE(fs::exists(fs::path(found) / "engine.cfg"));

  LogCapture capture;
  const std::unique_ptr<OgreEngine> engine = startEngine(found, (home.path() / "ogre.log").string());
  EXPECT_NE(engine->root(), nullptr);
  EXPECT_EQ(capture.count(ku::log::Warning, "rdr.engine"), 0) << "every staged resource location exists";
}

}  // namespace
}  // namespace VX::NextGenView
