#include "render_engine/directional_light.h"

#include <gtest/gtest.h>

#include <OgreDefaultHardwareBufferManager.h>
#include <OgreLight.h>
#include <OgreLogManager.h>
#include <OgreRoot.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>

namespace {

TEST(DirectionalLight, ShinesAlongTheDirectionFromANodeOfItsOwn) {
  Ogre::LogManager logs;
  logs.createLog("directional_light_test.log", true, false, true);
  Ogre::Root root("", "", "");
  Ogre::SceneManager* scene = root.createSceneManager();
  const Ogre::ColourValue diffuse(0.5f, 0.5f, 0.5f, 1.0f);
  const Ogre::ColourValue specular(1, 1, 1, 1);

  Ogre::Light* named = VX::NextGenView::addDirectionalLight(scene, "Light", Ogre::Vector3(-1, 0, -0.75f), diffuse, specular);
  Ogre::Light* unnamed = VX::NextGenView::addDirectionalLight(scene, "", Ogre::Vector3(0, 0, -2), diffuse, specular);

  EXPECT_EQ(scene->getLight("Light"), named);
  EXPECT_NE(unnamed->getName(), "Light");
  EXPECT_EQ(named->getType(), Ogre::Light::LT_DIRECTIONAL);
  EXPECT_EQ(named->getDiffuseColour(), diffuse);
  EXPECT_EQ(named->getSpecularColour(), specular);
  EXPECT_TRUE(named->getDerivedDirection().positionEquals(Ogre::Vector3(-1, 0, -0.75f).normalisedCopy(), 1e-5f));
  EXPECT_TRUE(unnamed->getDerivedDirection().positionEquals(Ogre::Vector3::NEGATIVE_UNIT_Z, 1e-5f));
  EXPECT_NE(named->getParentSceneNode(), unnamed->getParentSceneNode()) << "a node each";
  EXPECT_EQ(named->getParentSceneNode()->getParent(), scene->getRootSceneNode());
  root.destroySceneManager(scene);
}

}  // namespace
