#include "render_engine/directional_light.h"

#include <OgreLight.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>

namespace VX::NextGenView {

Ogre::Light* addDirectionalLight(Ogre::SceneManager* scene, const std::string& name, const Ogre::Vector3& direction,
                                 const Ogre::ColourValue& diffuse, const Ogre::ColourValue& specular) {
  Ogre::Light* light = name.empty() ? scene->createLight() : scene->createLight(name);
  light->setType(Ogre::Light::LT_DIRECTIONAL);
  light->setDiffuseColour(diffuse);
  light->setSpecularColour(specular);
  Ogre::SceneNode* node = scene->getRootSceneNode()->createChildSceneNode();
  node->setDirection(direction.normalisedCopy(), Ogre::Node::TS_WORLD);
  node->attachObject(light);
  return light;
}

}  // namespace VX::NextGenView
