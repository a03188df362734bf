// The draw order of opaque materials depends on their passes' hashes; the
// engine's hash makes it the same in every run.
#include <gtest/gtest.h>

#include <memory>

#include <OgreMaterialManager.h>
#include <OgreRoot.h>
#include <OgreTechnique.h>

#include "named_pass_hash.h"
#include "render_engine/ogre_engine.h"
#include "temporary_folder.h"

namespace VX::NextGenView {
namespace {

using testing::TemporaryFolder;

class NamedPassHashTest : public ::testing::Test {
 protected:
  void SetUp() override {
    m_folder.write("ogre/engine.cfg", "Plugin=RenderSystem_GL\nPlugin=Plugin_OctreeSceneManager\n");
    m_engine = std::make_unique<OgreEngine>((m_folder.path() / "ogre").string(),
                                            (m_folder.path() / "ogre.log").string());
    ASSERT_NE(m_engine->root(), nullptr);
  }

  // An untextured material's pass of the given index; the material is made
  // when it does not exist.
  Ogre::Pass* pass(const std::string& materialName, unsigned short index = 0) {
    Ogre::MaterialManager& materials = Ogre::MaterialManager::getSingleton();
    Ogre::MaterialPtr material = materials.getByName(materialName, "General");
    if (!material) material = materials.create(materialName, "General");
    // Without a window the root has no default technique to copy.
    if (material->getNumTechniques() == 0) material->createTechnique();
    Ogre::Technique* technique = material->getTechnique(0);
    while (technique->getNumPasses() <= index) technique->createPass();
    return technique->getPass(index);
  }

  TemporaryFolder m_folder;
  std::unique_ptr<OgreEngine> m_engine;
};

TEST_F(NamedPassHashTest, TheEngineInstallsIt) {
  EXPECT_EQ(Ogre::Pass::getHashFunction(), &namedPassHash());
}

TEST_F(NamedPassHashTest, UntexturedMaterialsWithOtherNamesHashApart) {
  const NamedPassHash& hash = namedPassHash();
  // OGRE's own hash gives every untextured first pass the same value, 0.
  Ogre::Pass* ring = pass("Test/Ring");
  Ogre::Pass* foot = pass("Test/Foot");
  EXPECT_EQ((*Ogre::Pass::getBuiltinHashFunction(Ogre::Pass::MIN_TEXTURE_CHANGE))(ring),
            (*Ogre::Pass::getBuiltinHashFunction(Ogre::Pass::MIN_TEXTURE_CHANGE))(foot));
  EXPECT_NE(hash(ring), hash(foot));
}

TEST_F(NamedPassHashTest, AMaterialMadeAgainHashesAsBefore) {
  const NamedPassHash& hash = namedPassHash();
  const Ogre::uint32 first = hash(pass("Test/Link"));
  Ogre::MaterialManager::getSingleton().remove("Test/Link", "General");
  // Other objects in between move the new material to another address.
  pass("Test/Other");
  const Ogre::uint32 again = hash(pass("Test/Link"));
  EXPECT_EQ(first, again);
}

TEST_F(NamedPassHashTest, LaterPassesOfAnyMaterialComeAfterFirstPasses) {
  const NamedPassHash& hash = namedPassHash();
  const Ogre::uint32 second = hash(pass("Test/TwoPasses", 1));
  for (const char* name : {"Test/A", "Test/B", "Test/TwoPasses", "Test/Z"}) {
    EXPECT_LT(hash(pass(name, 0)), second) << name;
  }
}

}  // namespace
}  // namespace VX::NextGenView
