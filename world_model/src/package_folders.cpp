#include "world_model/package_folders.h"

#include <mutex>

namespace VX::NextGenView {
namespace {

std::mutex& guard() {
  static std::mutex mutex;
  return mutex;
}

std::vector<std::string>& folders() {
  static std::vector<std::string> list;
  return list;
}

}  // namespace

void PackageFolders::set(const std::vector<std::string>& list) {
  const std::lock_guard<std::mutex> lock(guard());
  folders() = list;
}

std::vector<std::string> PackageFolders::get() {
  const std::lock_guard<std::mutex> lock(guard());
  return folders();
}

}  // namespace VX::NextGenView
