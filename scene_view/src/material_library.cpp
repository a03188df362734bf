#include "material_library.h"

#include <cstdio>
#include <exception>
#include <filesystem>

#include <OgreImage.h>
#include <OgreMaterialManager.h>
#include <OgrePass.h>
#include <OgreRoot.h>
#include <OgreTechnique.h>
#include <OgreTextureManager.h>

namespace VX::NextGenView {
namespace {

const Ogre::ColourValue a_highlightColour(1.0f, 0.55f, 0.1f);
const Ogre::ColourValue a_highlightGlow(0.55f, 0.28f, 0.02f);
const Ogre::ColourValue a_collisionColour(0.75f, 0.3f, 0.85f, 0.5f);
const Ogre::ColourValue a_ringColour(0.2f, 0.5f, 1.0f);
const Ogre::ColourValue a_ringGlow(0.05f, 0.12f, 0.3f);
const Ogre::ColourValue a_commandedColour(0.15f, 0.85f, 0.35f);
const Ogre::ColourValue a_commandedGlow(0.05f, 0.3f, 0.1f);
const Ogre::ColourValue a_targetColour(0.3f, 1.0f, 0.45f);
const Ogre::ColourValue a_targetGlow(0.2f, 0.6f, 0.25f);

}  // namespace

MaterialLibrary::MaterialLibrary(std::string prefix, std::string group)
    : m_prefix(std::move(prefix)), m_group(std::move(group)) {}

std::string MaterialLibrary::colour(const Ogre::ColourValue& colour) {
  char name[64];
  std::snprintf(name, sizeof name, "Colour/%.3f_%.3f_%.3f_%.3f", colour.r, colour.g, colour.b, colour.a);
  return lit(name, colour, Ogre::ColourValue::Black);
}

std::string MaterialLibrary::texture(const std::string& path, std::string& problem) {
  auto found = m_textures.find(path);
  if (found == m_textures.end()) {
    TextureEntry entry;
    const std::string textureName = loadTexture(path, entry.problem);
    if (!textureName.empty()) {
      entry.material = lit("Texture/" + std::to_string(m_textures.size()), Ogre::ColourValue::White,
                           Ogre::ColourValue::Black, textureName);
    }
    found = m_textures.emplace(path, entry).first;
  }
  problem = found->second.problem;
  return found->second.material;
}

std::string MaterialLibrary::vertexColours() {
  return lit("VertexColours", Ogre::ColourValue::White, Ogre::ColourValue::Black, {}, true);
}

// The image goes into this scene's group, so it goes away with the scene.
std::string MaterialLibrary::loadTexture(const std::string& path, std::string& problem) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) {
    problem = "texture file not found: " + path;
    return {};
  }
  try {
    Ogre::Image image;
    std::string extension = std::filesystem::path(path).extension().string();
    if (!extension.empty()) extension.erase(0, 1);
    image.load(Ogre::Root::openFileStream(path), extension);
    const std::string name = m_prefix + "/Image/" + std::to_string(m_textures.size()) + "/" + path;
    Ogre::TextureManager::getSingleton().loadImage(name, m_group, image);
    return name;
  } catch (const std::exception& exception) {
    problem = "cannot read texture file " + path + ": " + exception.what();
  }
  return {};
}

std::string MaterialLibrary::collision() { return lit("Collision", a_collisionColour, Ogre::ColourValue::Black); }
std::string MaterialLibrary::highlight() { return lit("Highlight", a_highlightColour, a_highlightGlow); }
std::string MaterialLibrary::ring() { return lit("Ring", a_ringColour, a_ringGlow); }
std::string MaterialLibrary::ringCommanded() { return lit("RingCommanded", a_commandedColour, a_commandedGlow); }
std::string MaterialLibrary::commandTarget() { return lit("CommandTarget", a_targetColour, a_targetGlow); }

std::string MaterialLibrary::lit(const std::string& name, const Ogre::ColourValue& colour,
                                 const Ogre::ColourValue& emissive, const std::string& textureName,
                                 bool vertexColours) {
  const std::string fullName = m_prefix + "/" + name;
  if (m_created.count(fullName)) return fullName;
  Ogre::MaterialPtr material = Ogre::MaterialManager::getSingleton().create(fullName, m_group);
  Ogre::Pass* pass = material->getTechnique(0)->getPass(0);
  pass->setLightingEnabled(true);
  pass->setAmbient(colour.r, colour.g, colour.b);
  pass->setDiffuse(colour);
  pass->setSpecular(0.3f, 0.3f, 0.3f, colour.a);
  pass->setShininess(40.0f);
  pass->setSelfIllumination(emissive);
  if (!textureName.empty()) {
    pass->createTextureUnitState()->setTexture(Ogre::TextureManager::getSingleton().getByName(textureName, m_group));
  }
  if (vertexColours) pass->setVertexColourTracking(Ogre::TVC_AMBIENT | Ogre::TVC_DIFFUSE);
  // The scene's fog starts far beyond the camera's far clip: computing it
  // per pixel would change nothing on screen.
  pass->setFog(true, Ogre::FOG_NONE);
  if (colour.a < 0.999f) {
    pass->setSceneBlending(Ogre::SBT_TRANSPARENT_ALPHA);
    pass->setDepthWriteEnabled(false);
  }
  material->load();
  m_created.insert(fullName);
  return fullName;
}

}  // namespace VX::NextGenView
