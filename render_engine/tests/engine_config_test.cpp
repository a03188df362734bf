// Reading the engine configuration file, without starting OGRE.
#include <gtest/gtest.h>

#include "engine_config.h"
#include "temporary_folder.h"

namespace VX::NextGenView {
namespace {

using testing::TemporaryFolder;

const char* const a_defaultPlugins = "/default/plugins";

TEST(EngineConfig, ReadsEveryKeyFromTheFolderOrTheFile) {
  TemporaryFolder folder;
  folder.write("ogre/engine.cfg",
               "# comment\n"
               "\n"
               "PluginFolder = plugins\n"
               "Plugin=RenderSystem_GL\n"
               "  Plugin=Codec_FreeImage  \n"
               "RenderSystem=Some Render System\n"
               "SceneManager=DefaultSceneManager\n"
               "ResourceLocation=FileSystem:../media/fonts\n"
               "ResourceLocation=Zip:/abs/pack.zip\n"
               "ResourceLocation=textures\n");
  for (const std::string& path : {(folder.path() / "ogre").string(), (folder.path() / "ogre/engine.cfg").string()}) {
    const EngineConfigReadResult read = readEngineConfig(path, a_defaultPlugins);
    ASSERT_EQ(read.error, "") << path;
    const EngineConfig& config = read.config;
    EXPECT_EQ(config.file, (folder.path() / "ogre/engine.cfg").string());
    EXPECT_EQ(config.pluginFolder, (folder.path() / "ogre/plugins").string());
    EXPECT_EQ(config.plugins, (std::vector<std::string>{"RenderSystem_GL", "Codec_FreeImage"}));
    EXPECT_EQ(config.renderSystem, "Some Render System");
    EXPECT_EQ(config.sceneManager, "DefaultSceneManager");
    ASSERT_EQ(config.resourceLocations.size(), 3u);
    EXPECT_EQ(config.resourceLocations[0].type, "FileSystem");
    EXPECT_EQ(config.resourceLocations[0].path, (folder.path() / "media/fonts").string());
    EXPECT_EQ(config.resourceLocations[1].type, "Zip");
    EXPECT_EQ(config.resourceLocations[1].path, "/abs/pack.zip");
    EXPECT_EQ(config.resourceLocations[2].type, "FileSystem");
    EXPECT_EQ(config.resourceLocations[2].path, (folder.path() / "ogre/textures").string());
  }
}

TEST(EngineConfig, DefaultsApplyWhenKeysAreAbsent) {
  TemporaryFolder folder;
  const auto file = folder.write("engine.cfg", "Plugin=RenderSystem_GL\n");
  const EngineConfigReadResult read = readEngineConfig(file.string(), a_defaultPlugins);
  ASSERT_EQ(read.error, "");
  EXPECT_EQ(read.config.pluginFolder, a_defaultPlugins);
  EXPECT_EQ(read.config.renderSystem, "OpenGL Rendering Subsystem");
  EXPECT_EQ(read.config.sceneManager, "OctreeSceneManager");
  EXPECT_TRUE(read.config.resourceLocations.empty());
  EXPECT_EQ(pluginFile(read.config, "RenderSystem_GL"), "/default/plugins/RenderSystem_GL.so");
  EXPECT_EQ(pluginFile(read.config, "Codec_FreeImage.so"), "/default/plugins/Codec_FreeImage.so");
  EXPECT_EQ(pluginFile(read.config, "/elsewhere/Plugin_X.so"), "/elsewhere/Plugin_X.so");
}

struct BadConfig {
  const char* name;
  const char* text;
  const char* errorFragment;
};

// Names the case in test listings.
void PrintTo(const BadConfig& config, std::ostream* out) { *out << config.name; }

class EngineConfigErrors : public ::testing::TestWithParam<BadConfig> {};

TEST_P(EngineConfigErrors, AreReportedWithTheirReason) {
  TemporaryFolder folder;
  const auto file = folder.write("ogre/engine.cfg", GetParam().text);
  const EngineConfigReadResult read = readEngineConfig(file.parent_path().string(), a_defaultPlugins);
  EXPECT_NE(read.error.find(GetParam().errorFragment), std::string::npos) << read.error;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, EngineConfigErrors,
    ::testing::Values(BadConfig{"Empty", "", "is empty"},
                      BadConfig{"OnlyComments", "# nothing\n\n   # here\n", "is empty"},
                      BadConfig{"NoEqualSign", "Plugin=RenderSystem_GL\nthis is not a setting\n", "engine.cfg:2: expected Key=Value"},
                      BadConfig{"UnknownKey", "Plugins=RenderSystem_GL\n", "unknown key \"Plugins\""},
                      BadConfig{"EmptyValue", "Plugin=\n", "has no value"},
                      BadConfig{"NoPlugin", "SceneManager=OctreeSceneManager\n", "names no plugin"},
                      BadConfig{"BadLocationType", "Plugin=RenderSystem_GL\nResourceLocation=Http:x\n", "bad resource location"},
                      BadConfig{"Binary", "\x01\x02\xff\xfe\n", "expected Key=Value"}),
    [](const ::testing::TestParamInfo<BadConfig>& info) { return std::string(info.param.name); });

TEST(EngineConfig, MissingEmptyOrUnreadablePathsAreErrors) {
  TemporaryFolder folder;
  EXPECT_NE(readEngineConfig("", a_defaultPlugins).error.find("empty path"), std::string::npos);
  EXPECT_NE(readEngineConfig((folder.path() / "absent").string(), a_defaultPlugins).error.find("not found"),
            std::string::npos);
  // A folder without engine.cfg.
  EXPECT_NE(readEngineConfig(folder.path().string(), a_defaultPlugins).error.find("not found"), std::string::npos);
  // engine.cfg that is a folder cannot be read.
  std::filesystem::create_directories(folder.path() / "odd/engine.cfg");
  EXPECT_NE(readEngineConfig((folder.path() / "odd").string(), a_defaultPlugins).error.find("not a readable file"),
            std::string::npos);
}

}  // namespace
}  // namespace VX::NextGenView
