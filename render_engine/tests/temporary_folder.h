#pragma once
// Test helper: a fresh folder under the system's temporary folder, removed
// with everything in it when the helper goes away.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace VX::NextGenView::testing {

class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "render_widget_test_XXXXXX").string();
    const char* made = ::mkdtemp(pattern.data());
    m_path = made ? std::filesystem::path(made) : std::filesystem::path();
  }
  ~TemporaryFolder() {
    std::error_code error;
    if (!m_path.empty()) std::filesystem::remove_all(m_path, error);
  }

  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& path() const { return m_path; }

  // Writes `text` to a file inside the folder, creating sub-folders.
  std::filesystem::path write(const std::string& relativePath, const std::string& text) const {
    const std::filesystem::path file = m_path / relativePath;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file) << text;
    return file;
  }

 private:
  std::filesystem::path m_path;
};

}  // namespace VX::NextGenView::testing
