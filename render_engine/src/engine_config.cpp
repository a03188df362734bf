#include "engine_config.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <system_error>

namespace fs = std::filesystem;

namespace VX::NextGenView {
namespace {

const char* const a_configFileName = "engine.cfg";

std::string trimmed(const std::string& text) {
  const auto first = text.find_first_not_of(" \t\r");
  if (first == std::string::npos) return std::string();
  const auto last = text.find_last_not_of(" \t\r");
  return text.substr(first, last - first + 1);
}

// Relative paths in the file are relative to the file's folder.
std::string absoluteFrom(const fs::path& folder, const std::string& path) {
  const fs::path candidate(path);
  return (candidate.is_absolute() ? candidate : folder / candidate).lexically_normal().string();
}

// "FileSystem:path", "Zip:path" or a bare path (a folder).
bool parseResourceLocation(const fs::path& folder, const std::string& value,
                           EngineConfig::ResourceLocation& location) {
  location.type = "FileSystem";
  std::string path = value;
  const auto colon = value.find(':');
  if (colon != std::string::npos) {
    const std::string type = trimmed(value.substr(0, colon));
    if (type != "FileSystem" && type != "Zip") return false;
    location.type = type;
    path = trimmed(value.substr(colon + 1));
  }
  if (path.empty()) return false;
  location.path = absoluteFrom(folder, path);
  return true;
}

}  // namespace

EngineConfigReadResult readEngineConfig(const std::string& confPath, const std::string& defaultPluginFolder) {
  EngineConfigReadResult result;
  if (confPath.empty()) {
    result.error = "no engine configuration given (empty path)";
    return result;
  }
  std::error_code error;
  fs::path file(confPath);
  if (fs::is_directory(file, error)) file /= a_configFileName;
  if (!fs::exists(file, error)) {
    result.error = "engine configuration not found: " + file.string();
    return result;
  }
  if (!fs::is_regular_file(file, error)) {
    result.error = "engine configuration is not a readable file: " + file.string();
    return result;
  }
  std::ifstream stream(file);
  if (!stream) {
    result.error = "cannot read the engine configuration " + file.string();
    return result;
  }

  EngineConfig& config = result.config;
  config.file = file.string();
  const fs::path folder = fs::absolute(file, error).parent_path();
  config.pluginFolder = defaultPluginFolder;

  std::string line;
  int lineNumber = 0;
  bool anySetting = false;
  while (std::getline(stream, line)) {
    ++lineNumber;
    const std::string text = trimmed(line);
    if (text.empty() || text.front() == '#') continue;
    std::ostringstream where;
    where << file.string() << ":" << lineNumber << ": ";
    const auto equal = text.find('=');
    if (equal == std::string::npos) {
      result.error = where.str() + "expected Key=Value, got \"" + text + "\"";
      return result;
    }
    const std::string key = trimmed(text.substr(0, equal));
    const std::string value = trimmed(text.substr(equal + 1));
    if (value.empty()) {
      result.error = where.str() + "\"" + key + "\" has no value";
      return result;
    }
    anySetting = true;
    if (key == "PluginFolder") {
      config.pluginFolder = absoluteFrom(folder, value);
    } else if (key == "Plugin") {
      config.plugins.push_back(value);
    } else if (key == "RenderSystem") {
      config.renderSystem = value;
    } else if (key == "SceneManager") {
      config.sceneManager = value;
    } else if (key == "ResourceLocation") {
      EngineConfig::ResourceLocation location;
      if (!parseResourceLocation(folder, value, location)) {
        result.error = where.str() + "bad resource location \"" + value +
                       "\" (expected FileSystem:<folder> or Zip:<file>)";
        return result;
      }
      config.resourceLocations.push_back(location);
    } else {
      result.error = where.str() + "unknown key \"" + key + "\"";
      return result;
    }
  }
  if (stream.bad()) {
    result.error = "cannot read the engine configuration " + file.string();
  } else if (!anySetting) {
    result.error = "the engine configuration " + file.string() + " is empty";
  } else if (config.plugins.empty()) {
    result.error = "the engine configuration " + file.string() + " names no plugin";
  }
  return result;
}

std::string pluginFile(const EngineConfig& config, const std::string& pluginName) {
  if (pluginName.find('/') != std::string::npos) return pluginName;
  std::string file = (fs::path(config.pluginFolder) / pluginName).string();
  if (pluginName.find(".so") == std::string::npos) file += ".so";
  return file;
}

}  // namespace VX::NextGenView
