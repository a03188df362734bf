// The media the staged configuration points at: once a window exists and the
// resources are initialised, the overlay font and the sky material resolve in
// OGRE's default resource group.
#include <gtest/gtest.h>

#include <memory>

#include <OgreMaterialManager.h>
#include <OgrePass.h>
#include <OgreRenderWindow.h>
#include <OgreResourceGroupManager.h>
#include <OgreRoot.h>
#include <OgreGpuProgram.h>
#include <OgreTechnique.h>
#include <OgreTextureUnitState.h>

#include <ku/path.h>

#include <ku/record_capture.h>
#include "render_engine/ogre_engine.h"
#include "temporary_folder.h"

namespace VX::NextGenView {
namespace {

using LogCapture = ku::log::RecordCapture;
using testing::TemporaryFolder;

TEST(EngineMedia, FontAndSkyResolveOnceResourcesAreInitialised) {
  TemporaryFolder folder;
  const std::string conf = ku::path::findConf("balterconix", "ogre");
  ASSERT_FALSE(conf.empty());
  LogCapture capture;
  OgreEngine engine(conf, (folder.path() / "ogre.log").string());
  ASSERT_NE(engine.root(), nullptr);

  EXPECT_FALSE(engine.initialiseResources()) << "no window yet";
  engine.root()->initialise(false);
  Ogre::RenderWindow* window = engine.root()->createRenderWindow("media test", 64, 64, false);
  ASSERT_NE(window, nullptr);
  EXPECT_TRUE(engine.renderSystemReady());
  ASSERT_TRUE(engine.initialiseResources());
  EXPECT_TRUE(engine.initialiseResources()) << "idempotent";
  EXPECT_TRUE(engine.resourcesInitialised());

  const std::string group = Ogre::ResourceGroupManager::DEFAULT_RESOURCE_GROUP_NAME;
  EXPECT_TRUE(Ogre::ResourceGroupManager::getSingleton().resourceExists(group, "unispace_bd.ttf"));
  EXPECT_TRUE(Ogre::ResourceGroupManager::getSingleton().resourceExists(group, "sky_up.png"));

  Ogre::MaterialPtr sky = Ogre::MaterialManager::getSingleton().getByName("sky", group);
  ASSERT_TRUE(sky);
  sky->load();
  ASSERT_TRUE(sky->isLoaded());
  ASSERT_EQ(sky->getNumTechniques(), 2u);
  // The gradient computed per pixel, used wherever GLSL runs (Mesa does).
  Ogre::Technique* computed = sky->getTechnique(0);
  EXPECT_EQ(sky->getBestTechnique(), computed);
  Ogre::Pass* pass = computed->getPass(0);
  EXPECT_FALSE(pass->getLightingEnabled());
  EXPECT_FALSE(pass->getDepthWriteEnabled());
  EXPECT_EQ(pass->getNumTextureUnitStates(), 0u);
  ASSERT_TRUE(pass->hasVertexProgram());
  ASSERT_TRUE(pass->hasFragmentProgram());
  EXPECT_TRUE(pass->getFragmentProgram()->isSupported()) << "the fragment program compiles";
  // The fallback: the generated faces as a cube map.
  Ogre::Pass* fallback = sky->getTechnique(1)->getPass(0);
  EXPECT_FALSE(fallback->getLightingEnabled());
  EXPECT_FALSE(fallback->getDepthWriteEnabled());
  EXPECT_FALSE(fallback->hasFragmentProgram());
  Ogre::TextureUnitState* unit = fallback->getTextureUnitState(0);
  EXPECT_EQ(unit->getTextureType(), Ogre::TEX_TYPE_CUBE_MAP);
  ASSERT_TRUE(unit->_getTexturePtr());
  EXPECT_TRUE(unit->_getTexturePtr()->isLoaded()) << "the six faces load";
  EXPECT_EQ(capture.count(ku::log::Error, "rdr.engine"), 0);
}

}  // namespace
}  // namespace VX::NextGenView
