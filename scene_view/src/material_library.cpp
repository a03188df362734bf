#include "material_library.h"

#include <cstdio>

#include <OgreMaterialManager.h>
#include <OgrePass.h>
#include <OgreTechnique.h>

namespace VX::NextGenView {
namespace {

const Ogre::ColourValue a_highlightColour(1.0f, 0.55f, 0.1f);
const Ogre::ColourValue a_highlightGlow(0.55f, 0.28f, 0.02f);
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

std::string MaterialLibrary::highlight() { return lit("Highlight", a_highlightColour, a_highlightGlow); }
std::string MaterialLibrary::ring() { return lit("Ring", a_ringColour, a_ringGlow); }
std::string MaterialLibrary::ringCommanded() { return lit("RingCommanded", a_commandedColour, a_commandedGlow); }
std::string MaterialLibrary::commandTarget() { return lit("CommandTarget", a_targetColour, a_targetGlow); }

std::string MaterialLibrary::lit(const std::string& name, const Ogre::ColourValue& colour,
                                 const Ogre::ColourValue& emissive) {
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
  if (colour.a < 0.999f) {
    pass->setSceneBlending(Ogre::SBT_TRANSPARENT_ALPHA);
    pass->setDepthWriteEnabled(false);
  }
  material->load();
  m_created.insert(fullName);
  return fullName;
}

}  // namespace VX::NextGenView
