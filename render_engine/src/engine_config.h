#pragma once

#include <string>
#include <vector>

namespace VX::NextGenView {

// What the engine configuration asks OGRE to load (see docs/render_engine.md).
// Every path is absolute once read.
struct EngineConfig {
  struct ResourceLocation {
    std::string type;  // an OGRE archive type: "FileSystem" or "Zip"
    std::string path;
  };

  std::string file;  // the file the configuration was read from
  std::string pluginFolder;
  std::vector<std::string> plugins;  // plugin names, in loading order
  std::string renderSystem = "OpenGL Rendering Subsystem";
  std::string sceneManager = "OctreeSceneManager";
  std::vector<ResourceLocation> resourceLocations;
};

struct EngineConfigReadResult {
  EngineConfig config;
  std::string error;  // empty when the configuration is usable
};

// Reads the configuration at confPath: a folder holding "engine.cfg", or the
// file itself. defaultPluginFolder is used when the file names none.
EngineConfigReadResult readEngineConfig(const std::string& confPath, const std::string& defaultPluginFolder);

// The shared object of a plugin: "<folder>/<name>.so" unless the name is a path.
std::string pluginFile(const EngineConfig& config, const std::string& pluginName);

}  // namespace VX::NextGenView
