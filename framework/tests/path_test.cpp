#include "ku/path.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "ku/log.h"
#include "ku/record_capture.h"

namespace fs = std::filesystem;

namespace {

// A temporary folder tree standing in for the user's XDG folders; the
// environment variables are restored afterwards.
class XdgFolders : public ::testing::Test {
 protected:
  void SetUp() override {
    m_root = fs::temp_directory_path() / ("ku_path_test_" + std::to_string(::getpid()));
    fs::remove_all(m_root);
    save("XDG_CONFIG_HOME");
    save("XDG_CONFIG_DIRS");
    save("XDG_DATA_HOME");
    ::setenv("XDG_CONFIG_HOME", (m_root / "home").c_str(), 1);
    ::setenv("XDG_CONFIG_DIRS", ((m_root / "sys1").string() + ":" + (m_root / "sys2").string()).c_str(), 1);
    ::setenv("XDG_DATA_HOME", (m_root / "data").c_str(), 1);
  }
  void TearDown() override {
    for (const auto& [name, value] : m_saved) {
      if (value.first) ::setenv(name.c_str(), value.second.c_str(), 1);
      else ::unsetenv(name.c_str());
    }
    fs::remove_all(m_root);
  }
  std::string touch(const std::string& folder, const std::string& app, const std::string& file) {
    const fs::path path = m_root / folder / app / file;
    fs::create_directories(path.parent_path());
    std::ofstream(path) << "x";
    return path.string();
  }
  fs::path m_root;

 private:
  void save(const std::string& name) {
    const char* value = std::getenv(name.c_str());
    m_saved[name] = {value != nullptr, value ? value : ""};
  }
  std::map<std::string, std::pair<bool, std::string>> m_saved;
};

TEST_F(XdgFolders, EmptyWhenAbsent) { EXPECT_EQ(ku::path::findConf("no_such_application_xyz", "ogre"), ""); }

TEST_F(XdgFolders, UserFolderWins) {
  touch("sys1", "app", "conf");
  const std::string user = touch("home", "app", "conf");
  EXPECT_EQ(ku::path::findConf("app", "conf"), user);
}

TEST_F(XdgFolders, ConfigDirsInListOrder) {
  touch("sys2", "app", "conf");
  const std::string first = touch("sys1", "app", "conf");
  EXPECT_EQ(ku::path::findConf("app", "conf"), first);
}

TEST_F(XdgFolders, LaterConfigDirIsFoundWhenEarlierLacksIt) {
  const std::string second = touch("sys2", "app", "conf");
  EXPECT_EQ(ku::path::findConf("app", "conf"), second);
}

TEST_F(XdgFolders, FindsDirectories) {
  fs::create_directories(m_root / "home" / "app" / "folder");
  EXPECT_EQ(ku::path::findConf("app", "folder"), (m_root / "home" / "app" / "folder").string());
}

TEST_F(XdgFolders, SearchOrderEndsWithProjectData) {
  const auto folders = ku::path::configSearchFolders();
  ASSERT_EQ(folders.size(), 5u);
  EXPECT_EQ(folders[0], (m_root / "home").string() + "/");
  EXPECT_EQ(folders[1], (m_root / "sys1").string() + "/");
  EXPECT_EQ(folders[2], (m_root / "sys2").string() + "/");
  // The data beside the library, which for this test program is the data
  // staged in the build folder, then the configured installation prefix.
  EXPECT_EQ(folders[3], fs::path(KU_TEST_BUILD_DATA_DIR).lexically_normal().string() + "/config/");
  EXPECT_NE(folders[4].find("render_widget/config/"), std::string::npos);
}

TEST_F(XdgFolders, NothingFoundNamesEveryFolderSearched) {
  ku::log::RecordCapture captured;
  EXPECT_EQ(ku::path::findConf("no_such_application_xyz", "ogre"), "");
  ASSERT_EQ(captured.count(ku::log::Error, "ku.path"), 1);
  const std::string text = captured.records().front().text;
  EXPECT_NE(text.find("no_such_application_xyz/ogre"), std::string::npos) << text;
  for (const std::string& folder : ku::path::configSearchFolders()) {
    EXPECT_NE(text.find(folder), std::string::npos) << folder << " missing from: " << text;
  }
}

TEST_F(XdgFolders, FoundConfigurationLogsNothing) {
  touch("home", "app", "conf");
  ku::log::RecordCapture captured;
  EXPECT_FALSE(ku::path::findConf("app", "conf").empty());
  EXPECT_TRUE(captured.records().empty());
}

TEST_F(XdgFolders, UnsetConfigHomeFallsBackToDotConfig) {
  ::unsetenv("XDG_CONFIG_HOME");
  const char* home = std::getenv("HOME");
  ASSERT_NE(home, nullptr);
  EXPECT_EQ(ku::path::configSearchFolders().front(), std::string(home) + "/.config/");
}

TEST_F(XdgFolders, UserWritableDataPathCreatesTheFolder) {
  const std::string path = ku::path::userWritableDataPath("app", "ogre.log");
  EXPECT_EQ(path, (m_root / "data" / "app" / "ogre.log").string());
  EXPECT_TRUE(fs::is_directory(m_root / "data" / "app"));
  EXPECT_FALSE(fs::exists(path)) << "only the folder is created";
}

TEST_F(XdgFolders, UserWritableDataPathDefaultsToLocalShare) {
  ::unsetenv("XDG_DATA_HOME");
  const fs::path fakeHome = m_root / "fakehome";
  const char* realHome = std::getenv("HOME");
  const std::string savedHome = realHome ? realHome : "";
  ::setenv("HOME", fakeHome.c_str(), 1);
  const std::string path = ku::path::userWritableDataPath("app", "f");
  ::setenv("HOME", savedHome.c_str(), 1);
  EXPECT_EQ(path, (fakeHome / ".local/share/app/f").string());
  EXPECT_TRUE(fs::is_directory(fakeHome / ".local/share/app"));
}

// This test program runs from the build folder, where configuring the
// project already staged data (the engine configuration).
TEST(DataFolder, IsTheStagedFolderWhenRunningFromTheBuildFolder) {
  ASSERT_TRUE(fs::is_directory(KU_TEST_BUILD_DATA_DIR));
  EXPECT_EQ(ku::path::dataFolder(), fs::path(KU_TEST_BUILD_DATA_DIR).lexically_normal().string());
}

TEST(DataFolder, EndsInTheProjectFolderWithoutSlash) {
  const std::string folder = ku::path::dataFolder();
  ASSERT_FALSE(folder.empty());
  EXPECT_NE(folder.back(), '/');
  EXPECT_EQ(fs::path(folder).filename(), "render_widget");
}

TEST(DataFolder, HoldsTheBundledData) {
  // What hosts look up below it, e.g. the 2D view's pictures under media/.
  EXPECT_TRUE(fs::exists(fs::path(ku::path::dataFolder()) / "config"));
}

}  // namespace
