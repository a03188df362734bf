// The media the staged configuration points at: once a window exists and the
// resources are initialised, the overlay font and the sky material resolve in
// OGRE's default resource group. Where the sky's GLSL programs cannot run,
// the generated faces take their place.
#include <gtest/gtest.h>

#include <memory>

#include <OgreMaterialManager.h>
#include <OgrePass.h>
#include <OgreRenderWindow.h>
#include <OgreResourceGroupManager.h>
#include <OgreRoot.h>
#include <OgreGpuProgram.h>
#include <OgreTechnique.h>
#include <OgreTextureManager.h>
#include <OgreTextureUnitState.h>
#include <OgreHighLevelGpuProgram.h>
#include <OgreHighLevelGpuProgramManager.h>

#include <ku/path.h>

#include <ku/record_capture.h>
#include "render_engine/ogre_engine.h"
#include "render_engine/sky_material.h"
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
  ASSERT_TRUE(prepareSkyMaterial(group));
  ASSERT_TRUE(sky->isLoaded());
  ASSERT_EQ(sky->getNumTechniques(), 1u);
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
  // The fallback: the generated faces as a cube map, left unloaded.
  Ogre::MaterialPtr faces = Ogre::MaterialManager::getSingleton().getByName("sky_faces", group);
  ASSERT_TRUE(faces);
  EXPECT_FALSE(faces->isLoaded()) << "its textures take no memory where GLSL runs";
  EXPECT_FALSE(Ogre::TextureManager::getSingleton().getByName("sky_fr.png", group)) << "no face texture loaded";
  faces->load();
  Ogre::Pass* fallback = faces->getTechnique(0)->getPass(0);
  EXPECT_FALSE(fallback->getLightingEnabled());
  EXPECT_FALSE(fallback->getDepthWriteEnabled());
  EXPECT_FALSE(fallback->hasFragmentProgram());
  Ogre::TextureUnitState* unit = fallback->getTextureUnitState(0);
  EXPECT_EQ(unit->getTextureType(), Ogre::TEX_TYPE_CUBE_MAP);
  ASSERT_TRUE(unit->_getTexturePtr());
  EXPECT_TRUE(unit->_getTexturePtr()->isLoaded()) << "the six faces load";
  EXPECT_EQ(capture.count(ku::log::Error, "rdr.engine"), 0);
}

// A window and the resources, as the widget has them.
class SkyWithoutGlsl : public ::testing::Test {
 protected:
  void SetUp() override {
    m_engine = std::make_unique<OgreEngine>(ku::path::findConf("balterconix", "ogre"),
                                            (m_folder.path() / "ogre.log").string());
    ASSERT_NE(m_engine->root(), nullptr);
    m_engine->root()->initialise(false);
    ASSERT_NE(m_engine->root()->createRenderWindow("sky test", 64, 64, false), nullptr);
    ASSERT_TRUE(m_engine->initialiseResources());
    Ogre::ResourceGroupManager::getSingleton().createResourceGroup(a_group);
  }

  // A "sky" whose fragment program cannot compile stands for a render system
  // without GLSL.
  Ogre::MaterialPtr skyThatCannotRun() {
    Ogre::HighLevelGpuProgramPtr program = Ogre::HighLevelGpuProgramManager::getSingleton().createProgram(
        "sky_not_glsl", a_group, "glsl", Ogre::GPT_FRAGMENT_PROGRAM);
    program->setSource("this is not GLSL");
    Ogre::MaterialPtr sky = Ogre::MaterialManager::getSingleton().create("sky", a_group);
    sky->getTechnique(0)->getPass(0)->setFragmentProgram("sky_not_glsl");
    return sky;
  }

  const std::string a_group = "SkyWithoutGlsl";
  TemporaryFolder m_folder;
  std::unique_ptr<OgreEngine> m_engine;
};

TEST_F(SkyWithoutGlsl, TheGeneratedFacesTakeThePlaceOfTheProgramsUnderTheSameName) {
  Ogre::MaterialPtr sky = skyThatCannotRun();
  Ogre::MaterialPtr faces = Ogre::MaterialManager::getSingleton().create("sky_faces", a_group);
  faces->getTechnique(0)->getPass(0)->setDiffuse(0.1f, 0.2f, 0.3f, 1.0f);
  LogCapture capture;
  EXPECT_TRUE(prepareSkyMaterial(a_group));
  EXPECT_EQ(sky->getName(), "sky");
  Ogre::Technique* shown = sky->getBestTechnique();
  ASSERT_NE(shown, nullptr);
  EXPECT_FALSE(shown->getPass(0)->hasFragmentProgram());
  EXPECT_EQ(shown->getPass(0)->getDiffuse(), Ogre::ColourValue(0.1f, 0.2f, 0.3f, 1.0f));
  EXPECT_EQ(capture.count(ku::log::Warning, "rdr.engine", "generated faces"), 1);
}

TEST_F(SkyWithoutGlsl, NoFacesToFallBackOnIsAnError) {
  skyThatCannotRun();
  LogCapture capture;
  EXPECT_FALSE(prepareSkyMaterial(a_group));
  EXPECT_EQ(capture.count(ku::log::Error, "rdr.engine", "no \"sky_faces\""), 1);
}

TEST_F(SkyWithoutGlsl, NoSkyAtAllIsAnError) {
  LogCapture capture;
  EXPECT_FALSE(prepareSkyMaterial(a_group));
  EXPECT_EQ(capture.count(ku::log::Error, "rdr.engine", "No material \"sky\""), 1);
}

}  // namespace
}  // namespace VX::NextGenView
