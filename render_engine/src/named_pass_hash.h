#pragma once

#include <OgrePass.h>

namespace VX::NextGenView {

// OGRE draws opaque renderables grouped by their pass's hash, and orders
// passes of equal hash by their address. With OGRE's own hash every
// untextured material hashes alike, so where two materials draw coincident
// surfaces the one that wins the depth test changed from run to run. This
// hash keeps OGRE's layout (the pass index in the top four bits, so first
// passes still come first) and fills the rest from the material's name,
// which makes the draw order the same in every run.
class NamedPassHash : public Ogre::Pass::HashFunc {
 public:
  Ogre::uint32 operator()(const Ogre::Pass* pass) const override;
};

// The one instance the engine installs; it lives as long as the process.
NamedPassHash& namedPassHash();

}  // namespace VX::NextGenView
