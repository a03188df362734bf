#include "named_pass_hash.h"

#include <algorithm>
#include <string>

#include <OgreMaterial.h>
#include <OgreTechnique.h>

namespace VX::NextGenView {
namespace {

// FNV-1a: stable across runs and platforms, unlike a seeded hash.
Ogre::uint32 nameHash(const std::string& name) {
  Ogre::uint32 hash = 2166136261u;
  for (const unsigned char c : name) {
    hash ^= c;
    hash *= 16777619u;
  }
  return hash;
}

}  // namespace

Ogre::uint32 NamedPassHash::operator()(const Ogre::Pass* pass) const {
  const Ogre::uint32 index = std::min<Ogre::uint32>(pass->getIndex(), 15u);
  const Ogre::Technique* technique = pass->getParent();
  const Ogre::Material* material = technique ? technique->getParent() : nullptr;
  const Ogre::uint32 name = material ? nameHash(material->getName()) : 0u;
  return (index << 28) | (name & 0x0FFFFFFFu);
}

NamedPassHash& namedPassHash() {
  static NamedPassHash hash;
  return hash;
}

}  // namespace VX::NextGenView
