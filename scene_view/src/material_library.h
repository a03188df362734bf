#pragma once

#include <map>
#include <set>
#include <string>

#include <OgreColourValue.h>

namespace VX::NextGenView {

// The materials of one scene, created on demand in its resource group and
// named "<prefix>/...": lit colours, image textures and vertex colours for
// the links, and the looks of the joint rings and of selection.
class MaterialLibrary {
 public:
  MaterialLibrary(std::string prefix, std::string group);

  // A lit material of that colour: ambient and diffuse from it, some
  // specular; blended when not opaque.
  std::string colour(const Ogre::ColourValue& colour);
  // A lit material showing the image file `path` (loaded into the group
  // once); empty, with `problem` set, when the image cannot be read.
  std::string texture(const std::string& path, std::string& problem);
  // A lit material whose ambient and diffuse colours are the vertices' own.
  std::string vertexColours();

  std::string collision();      // collision geometry: see-through
  std::string highlight();      // a selected or highlighted object
  std::string ring();           // a joint ring at rest
  std::string ringCommanded();  // a joint ring whose joint has a pending command
  std::string commandTarget();  // the marker of a pending command's target

  const std::string& group() const { return m_group; }

 private:
  std::string lit(const std::string& name, const Ogre::ColourValue& colour, const Ogre::ColourValue& emissive,
                  const std::string& textureName = {}, bool vertexColours = false);
  std::string loadTexture(const std::string& path, std::string& problem);

  std::string m_prefix;
  std::string m_group;
  std::set<std::string> m_created;
  struct TextureEntry {
    std::string material;  // empty when the image could not be read
    std::string problem;
  };
  std::map<std::string, TextureEntry> m_textures;  // by image path
};

}  // namespace VX::NextGenView
