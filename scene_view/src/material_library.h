#pragma once

#include <set>
#include <string>

#include <OgreColourValue.h>

namespace VX::NextGenView {

// The materials of one scene, created on demand in its resource group and
// named "<prefix>/...": lit colours for the links, and the looks of the
// joint rings and of selection.
class MaterialLibrary {
 public:
  MaterialLibrary(std::string prefix, std::string group);

  // A lit material of that colour: ambient and diffuse from it, some
  // specular; blended when not opaque.
  std::string colour(const Ogre::ColourValue& colour);

  std::string highlight();      // a selected or highlighted object
  std::string ring();           // a joint ring at rest
  std::string ringCommanded();  // a joint ring whose joint has a pending command
  std::string commandTarget();  // the marker of a pending command's target

  const std::string& group() const { return m_group; }

 private:
  std::string lit(const std::string& name, const Ogre::ColourValue& colour, const Ogre::ColourValue& emissive);

  std::string m_prefix;
  std::string m_group;
  std::set<std::string> m_created;
};

}  // namespace VX::NextGenView
