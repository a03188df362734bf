#pragma once

#include <memory>
#include <string>

namespace Ogre {
class OverlaySystem;
class Root;
class SceneManager;
}  // namespace Ogre

namespace VX::NextGenView {

// Owns OGRE: the root, its render system, the scene manager and the overlay
// system. Construction never throws: when OGRE cannot start, the reason is
// logged and root() is null.
class OgreEngine {
 public:
  // confPath: the engine configuration (see docs/render_engine.md);
  // logPath: OGRE's log file, its folder created when missing.
  OgreEngine(const std::string& confPath, const std::string& logPath);
  ~OgreEngine();

  OgreEngine(const OgreEngine&) = delete;
  OgreEngine& operator=(const OgreEngine&) = delete;

  Ogre::Root* root() const;                    // null when OGRE could not start
  Ogre::SceneManager* sceneManager() const;    // null when OGRE could not start
  Ogre::OverlaySystem* overlaySystem() const;  // null when OGRE could not start

  // True once the render system has a render target (a window), which is
  // when OGRE can create textures, hardware buffers and fonts.
  bool renderSystemReady() const;

  // Initialises every resource group (parses the material and font scripts
  // of the configured media) once the render system is ready. Idempotent:
  // does nothing before a window exists or after the first success.
  // Returns whether the resources are initialised.
  bool initialiseResources();
  bool resourcesInitialised() const;

 private:
  struct Impl;
  std::unique_ptr<Impl> m_impl;
};

}  // namespace VX::NextGenView
