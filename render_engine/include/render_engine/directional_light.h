#pragma once

#include <string>

#include <OgreColourValue.h>
#include <OgreVector.h>

namespace Ogre {
class Light;
class SceneManager;
}  // namespace Ogre

namespace VX::NextGenView {

// A directional light shining along `direction` (world coordinates). OGRE 1.12
// takes a light's direction from its scene node, so the light hangs on a node
// of its own under the scene's root, turned accordingly. An empty name lets
// OGRE choose one.
Ogre::Light* addDirectionalLight(Ogre::SceneManager* scene, const std::string& name, const Ogre::Vector3& direction,
                                 const Ogre::ColourValue& diffuse, const Ogre::ColourValue& specular);

}  // namespace VX::NextGenView
