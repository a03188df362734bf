#pragma once

#include <string>
#include <vector>

namespace Ogre {
class Node;
class Overlay;
class OverlayElement;
class RenderTarget;
class SceneManager;
}  // namespace Ogre

namespace VX::NextGenView {

// Tells whether a frame rendered now would look different from the last one
// it was asked about: the render on change of the 3D view. It records what
// decides the picture (the target's size, every scene node's placement and
// the look of what hangs on it, the cameras' lenses, the sky and lights, the
// shown overlays' elements and texts) and compares that with the record of
// the previous call.
class FrameChangeWatch {
 public:
  // True when the picture may differ from the last call's (or on the first
  // call, or after forget()); the record is renewed either way.
  bool changed(Ogre::SceneManager& scene, Ogre::RenderTarget& target);
  // The next changed() answers true.
  void forget();

 private:
  struct Record {
    std::vector<float> numbers;
    std::vector<const void*> identities;
    std::vector<std::string> texts;
    bool operator==(const Record& other) const {
      return numbers == other.numbers && identities == other.identities && texts == other.texts;
    }
    void clear() {  // keeps the capacity: a still scene allocates nothing per tick
      numbers.clear();
      identities.clear();
      texts.clear();
    }
  };

  void recordNode(const Ogre::Node& node, Record& record) const;
  void recordOverlays(Record& record) const;
  void recordElement(const Ogre::OverlayElement& element, Record& record) const;

  Record m_last;
  Record m_current;
  bool m_known = false;
};

}  // namespace VX::NextGenView
