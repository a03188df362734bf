#include "render_engine/ogre_engine.h"

#include <exception>
#include <filesystem>
#include <system_error>

#include <OgreLogManager.h>
#include <OgrePlugin.h>
#include <OgreRenderSystem.h>
#include <OgreResourceGroupManager.h>
#include <OgreRoot.h>
#include <OgreSceneManager.h>
#include <Overlay/OgreOverlaySystem.h>

#include <ku/log.h>

#include "engine_config.h"
#include "named_pass_hash.h"
#include "ogre_log_forwarder.h"

namespace fs = std::filesystem;

namespace VX::NextGenView {
namespace {

const char* const a_category = "rdr.engine";

void logError(const char* function, const std::string& text) {
  ku::log::LogStream(ku::log::Error, function, a_category, __FILE__, __LINE__) << text << std::endl;
}

bool hasSceneManagerType(const Ogre::Root& root, const std::string& type) {
  for (const Ogre::SceneManagerMetaData* metaData : root.getSceneManagerMetaData()) {
    if (metaData->typeName == type) return true;
  }
  return false;
}

// OGRE 1.12 registers a plugin's scene manager types when the first render
// window appears (Root::initialisePlugins), but the widget builds its scene
// before it has a window. The scene-manager plugins are therefore initialised
// as soon as they are loaded. At the first window OGRE initialises them again,
// which adds the same factory to its list a second time: harmless, as the
// list finds the first and OGRE removes every copy at shutdown.
void registerSceneManagerTypes(Ogre::Root& root, const std::string& wantedType) {
  if (hasSceneManagerType(root, wantedType)) return;
  for (Ogre::Plugin* plugin : root.getInstalledPlugins()) {
    if (plugin->getName().find("Scene Manager") != std::string::npos) plugin->initialise();
  }
}

}  // namespace

struct OgreEngine::Impl {
  // Created in this order, released in the reverse one.
  std::unique_ptr<Ogre::LogManager> ownedLogManager;
  Ogre::Log* log = nullptr;
  bool createdLog = false;
  Ogre::Log* hostDefaultLog = nullptr;  // restored when a host's log manager is shared
  OgreLogForwarder logForwarder;
  std::unique_ptr<Ogre::Root> root;
  Ogre::SceneManager* sceneManager = nullptr;
  std::unique_ptr<Ogre::OverlaySystem> overlaySystem;
  bool resourcesInitialised = false;
  bool resourcesFailed = false;

  ~Impl() { release(); }

  void openLog(const std::string& logPath);
  bool start(const std::string& confPath);
  void release();
};

void OgreEngine::Impl::openLog(const std::string& logPath) {
  // A host that already runs an OGRE log manager keeps it; we add our log.
  if (!Ogre::LogManager::getSingletonPtr()) ownedLogManager = std::make_unique<Ogre::LogManager>();
  Ogre::LogManager& manager = Ogre::LogManager::getSingleton();
  const std::string name = logPath.empty() ? std::string("render_engine.log") : logPath;
  if (!logPath.empty()) {
    std::error_code error;
    const fs::path folder = fs::path(logPath).parent_path();
    if (!folder.empty()) fs::create_directories(folder, error);
    if (error) {
      ku::log::LogStream(ku::log::Warning, "OgreEngine", a_category, __FILE__, __LINE__)
          << "Cannot create the folder of OGRE's log " << folder.string() << ": " << error.message()
          << std::endl;
    }
  }
  if (!ownedLogManager) {
    try {
      log = manager.getLog(name);  // throws when the host has no log of that name
    } catch (const Ogre::Exception&) {
      log = nullptr;
    }
  }
  // Never to stdout (debuggerOutput false); to no file when no path is given.
  if (!log) {
    log = manager.createLog(name, false, false, logPath.empty());
    createdLog = true;
  }
  hostDefaultLog = manager.setDefaultLog(log);
  log->addListener(&logForwarder);
}

bool OgreEngine::Impl::start(const std::string& confPath) {
  const EngineConfigReadResult read = readEngineConfig(confPath, RENDER_ENGINE_DEFAULT_PLUGIN_FOLDER);
  if (!read.error.empty()) {
    logError("OgreEngine", "Cannot start OGRE: " + read.error);
    return false;
  }
  const EngineConfig& config = read.config;
  if (Ogre::Root::getSingletonPtr()) {
    logError("OgreEngine", "Cannot start OGRE: another OGRE root already exists in this process");
    return false;
  }

  // No plugins.cfg, no ogre.cfg: everything comes from our configuration.
  // Before the root makes its default materials: a pass keeps the hash it
  // was made with until its textures change.
  Ogre::Pass::setHashFunction(&namedPassHash());
  root = std::make_unique<Ogre::Root>("", "", "");
  for (const std::string& plugin : config.plugins) {
    const std::string file = pluginFile(config, plugin);
    std::error_code error;
    if (!fs::exists(file, error)) {
      logError("OgreEngine", "Cannot start OGRE: plugin " + plugin + " not found at " + file +
                                 " (configuration " + config.file + ")");
      return false;
    }
    root->loadPlugin(file);
  }

  Ogre::RenderSystem* renderSystem = root->getRenderSystemByName(config.renderSystem);
  if (!renderSystem) {
    logError("OgreEngine", "Cannot start OGRE: no render system \"" + config.renderSystem +
                               "\" among the loaded plugins (configuration " + config.file + ")");
    return false;
  }
  root->setRenderSystem(renderSystem);

  Ogre::ResourceGroupManager& resources = Ogre::ResourceGroupManager::getSingleton();
  for (const EngineConfig::ResourceLocation& location : config.resourceLocations) {
    std::error_code error;
    if (!fs::exists(location.path, error)) {
      ku::log::LogStream(ku::log::Warning, "OgreEngine", a_category, __FILE__, __LINE__)
          << "Resource location " << location.path << " does not exist; skipped (configuration "
          << config.file << ")" << std::endl;
      continue;
    }
    resources.addResourceLocation(location.path, location.type,
                                  Ogre::ResourceGroupManager::DEFAULT_RESOURCE_GROUP_NAME);
  }

  registerSceneManagerTypes(*root, config.sceneManager);
  sceneManager = root->createSceneManager(config.sceneManager);
  if (!sceneManager || sceneManager->getTypeName() != config.sceneManager) {
    logError("OgreEngine", "Cannot start OGRE: no scene manager of type \"" + config.sceneManager + "\"");
    return false;
  }

  // Overlays are a separate component since OGRE 1.9; they are drawn by
  // listening to the scene manager's render queue.
  overlaySystem = std::make_unique<Ogre::OverlaySystem>();
  sceneManager->addRenderQueueListener(overlaySystem.get());
  return true;
}

void OgreEngine::Impl::release() {
  try {
    if (sceneManager && overlaySystem) sceneManager->removeRenderQueueListener(overlaySystem.get());
    overlaySystem.reset();
    if (root && sceneManager) root->destroySceneManager(sceneManager);
    sceneManager = nullptr;
    root.reset();
  } catch (const std::exception& exception) {
    logError("~OgreEngine", std::string("Error while shutting OGRE down: ") + exception.what());
  }
  if (log) {
    log->removeListener(&logForwarder);
    if (!ownedLogManager) {
      Ogre::LogManager& manager = Ogre::LogManager::getSingleton();
      manager.setDefaultLog(hostDefaultLog);
      if (createdLog) manager.destroyLog(log);
    }
    log = nullptr;
  }
  ownedLogManager.reset();
}

OgreEngine::OgreEngine(const std::string& confPath, const std::string& logPath)
    : m_impl(std::make_unique<Impl>()) {
  try {
    m_impl->openLog(logPath);
    if (m_impl->start(confPath)) return;
  } catch (const Ogre::Exception& exception) {
    logError("OgreEngine", "Cannot start OGRE: " + exception.getFullDescription());
  } catch (const std::exception& exception) {
    logError("OgreEngine", std::string("Cannot start OGRE: ") + exception.what());
  } catch (...) {
    logError("OgreEngine", "Cannot start OGRE: unknown error");
  }
  m_impl->release();
}

OgreEngine::~OgreEngine() = default;

Ogre::Root* OgreEngine::root() const { return m_impl->root.get(); }
Ogre::SceneManager* OgreEngine::sceneManager() const { return m_impl->root ? m_impl->sceneManager : nullptr; }
Ogre::OverlaySystem* OgreEngine::overlaySystem() const { return m_impl->overlaySystem.get(); }

bool OgreEngine::renderSystemReady() const {
  Ogre::Root* root = m_impl->root.get();
  if (!root || !root->isInitialised()) return false;
  Ogre::RenderSystem* renderSystem = root->getRenderSystem();
  return renderSystem && renderSystem->getRenderTargetIterator().hasMoreElements();
}

bool OgreEngine::initialiseResources() {
  if (m_impl->resourcesInitialised) return true;
  if (m_impl->resourcesFailed || !renderSystemReady()) return false;
  try {
    Ogre::ResourceGroupManager::getSingleton().initialiseAllResourceGroups();
    m_impl->resourcesInitialised = true;
  } catch (const Ogre::Exception& exception) {
    // Not retried: the same media would fail the same way at every frame.
    m_impl->resourcesFailed = true;
    logError("initialiseResources", "Cannot initialise OGRE's resources: " + exception.getFullDescription());
  } catch (const std::exception& exception) {
    m_impl->resourcesFailed = true;
    logError("initialiseResources", std::string("Cannot initialise OGRE's resources: ") + exception.what());
  }
  return m_impl->resourcesInitialised;
}

bool OgreEngine::resourcesInitialised() const { return m_impl->resourcesInitialised; }

}  // namespace VX::NextGenView
