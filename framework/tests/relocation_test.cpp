// The library finds its data beside its own file, wherever that file lies: a
// copy of the built library is put into a scratch prefix and loaded there.
#include "ku/path.h"

#include <dlfcn.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace {

using StringFunction = std::string (*)();
using FindConfFunction = std::string (*)(const std::string&, const std::string&);

// A prefix laid out as an installed tree, holding a copy of the library.
class RelocatedLibrary : public ::testing::Test {
 protected:
  void SetUp() override {
    const std::string name = ::testing::UnitTest::GetInstance()->current_test_info()->name();
    m_root = fs::temp_directory_path() / ("ku_relocation_" + std::to_string(::getpid()) + "_" + name);
    fs::remove_all(m_root);
    m_prefix = m_root / "some prefix";
    m_data = m_prefix / KU_TEST_DATADIR / "render_widget";
    fs::create_directories(m_prefix / KU_TEST_LIBDIR);
    m_library = m_prefix / KU_TEST_LIBDIR / fs::path(KU_TEST_LIBRARY_FILE).filename();
    fs::copy_file(fs::canonical(KU_TEST_LIBRARY_FILE), m_library);
    const char* configHome = std::getenv("XDG_CONFIG_HOME");
    m_savedConfigHome = configHome ? configHome : "";
    ::setenv("XDG_CONFIG_HOME", (m_root / "user config").c_str(), 1);
  }
  void TearDown() override {
    if (m_handle) ::dlclose(m_handle);
    if (m_savedConfigHome.empty()) ::unsetenv("XDG_CONFIG_HOME");
    else ::setenv("XDG_CONFIG_HOME", m_savedConfigHome.c_str(), 1);
    fs::remove_all(m_root);
  }
  static fs::path touch(const fs::path& file) {
    fs::create_directories(file.parent_path());
    std::ofstream(file) << "x";
    return file;
  }
  // Loads the library from `file` and looks up one of its functions.
  template <typename Function>
  Function load(const fs::path& file, const char* mangledName) {
    if (!m_handle) m_handle = ::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!m_handle) {
      ADD_FAILURE() << ::dlerror();
      return nullptr;
    }
    auto* function = reinterpret_cast<Function>(::dlsym(m_handle, mangledName));
    if (!function) ADD_FAILURE() << mangledName << ": " << ::dlerror();
    return function;
  }
  StringFunction dataFolderOf(const fs::path& file) {
    return load<StringFunction>(file, "_ZN2ku4path10dataFolderB5cxx11Ev");
  }
  FindConfFunction findConfOf(const fs::path& file) {
    return load<FindConfFunction>(file,
                                  "_ZN2ku4path8findConfERKNSt7__cxx1112basic_stringIcSt11char_"
                                  "traitsIcESaIcEEES8_");
  }

  fs::path m_root, m_prefix, m_data, m_library;
  void* m_handle = nullptr;

 private:
  std::string m_savedConfigHome;
};

TEST_F(RelocatedLibrary, FindsTheDataBesideItsOwnFile) {
  fs::create_directories(m_data / "robots");
  const fs::path conf = touch(m_data / "config" / "app" / "conf");
  // The build folder's staged data exists too, and must not be preferred.
  ASSERT_TRUE(fs::is_directory(KU_TEST_BUILD_DATA_DIR));
  const StringFunction dataFolder = dataFolderOf(m_library);
  const FindConfFunction findConf = findConfOf(m_library);
  ASSERT_TRUE(dataFolder && findConf);
  EXPECT_EQ(dataFolder(), m_data.string());
  EXPECT_EQ(findConf("app", "conf"), conf.string());
}

TEST_F(RelocatedLibrary, UserConfigurationStillComesFirst) {
  touch(m_data / "config" / "app" / "conf");
  const fs::path user = touch(m_root / "user config" / "app" / "conf");
  const FindConfFunction findConf = findConfOf(m_library);
  ASSERT_TRUE(findConf);
  EXPECT_EQ(findConf("app", "conf"), user.string());
}

TEST_F(RelocatedLibrary, ReachedThroughASymbolicLinkFindsTheRealTreesData) {
  fs::create_directories(m_data);
  const fs::path link = m_root / "elsewhere" / "lib" / m_library.filename();
  fs::create_directories(link.parent_path());
  fs::create_symlink(m_library, link);
  const StringFunction dataFolder = dataFolderOf(link);
  ASSERT_TRUE(dataFolder);
  EXPECT_EQ(dataFolder(), m_data.string());
}

TEST_F(RelocatedLibrary, WithoutDataBesideItFallsBackToTheBuildFolder) {
  // This test program runs from the build folder: its staged data is next.
  const StringFunction dataFolder = dataFolderOf(m_library);
  ASSERT_TRUE(dataFolder);
  EXPECT_EQ(dataFolder(), fs::path(KU_TEST_BUILD_DATA_DIR).lexically_normal().string());
}

TEST(LibraryFile, IsTheBuiltLibrary) {
  EXPECT_EQ(ku::path::libraryFile(), fs::canonical(KU_TEST_LIBRARY_FILE).string());
}

TEST(LibraryFile, DataBesideFollowsTheInstallLayout) {
  const std::string prefix = "/opt/somewhere/";
  EXPECT_EQ(ku::path::dataFolderBeside(prefix + KU_TEST_LIBDIR + "/libku_framework.so.0.1"),
            fs::path(prefix + KU_TEST_DATADIR + "/render_widget").lexically_normal().string());
  EXPECT_EQ(ku::path::dataFolderBeside(""), "");
}

TEST(LibraryFile, CandidatesStartBesideTheLibrary) {
  const auto candidates = ku::path::dataFolderCandidates();
  ASSERT_FALSE(candidates.empty());
  EXPECT_EQ(candidates.front(), ku::path::dataFolderBeside(ku::path::libraryFile()));
}

}  // namespace
