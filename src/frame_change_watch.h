#pragma once

#include <cstdint>
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
// decides the picture and compares that with the record of the previous call.
//
// The view's part (the target's size, the viewports, the cameras' poses and
// lenses, the lights, the sky, the shown overlays' elements and texts) is
// small and recorded on every call. The scene graph (every node's placement
// and the look of what hangs on it) is large: walking it on every refresh
// tick cost a still view most of its CPU. It is walked when the scene view
// reports a change, and every a_callsPerSceneWalk calls anyway, which catches
// a host's node moves, visibility and material swaps made in OGRE behind the
// scene view's back. Edits inside a mesh's buffers or a material's passes
// (its colours, its textures) are not recorded: they show at the next
// change, resize or screenshot.
class FrameChangeWatch {
 public:
  static constexpr int a_callsPerSceneWalk = 8;  // 0.2 s at the 40 Hz refresh

  // True when the picture may differ from the last call's (or on the first
  // call, or after forget()). `sceneChanges` is the scene view's change
  // count; the scene graph is walked when it moved.
  bool changed(Ogre::SceneManager& scene, Ogre::RenderTarget& target, std::uint64_t sceneChanges);
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

  // A record and the one before it.
  struct History {
    Record last;
    Record current;
    // Swaps the records; true when the new one differs from the last.
    bool renew();
  };

  void recordView(Ogre::SceneManager& scene, Ogre::RenderTarget& target, Record& record) const;
  void recordNode(const Ogre::Node& node, Record& record) const;
  void recordOverlays(Record& record) const;
  void recordElement(const Ogre::OverlayElement& element, Record& record) const;

  History m_view;
  History m_scene;
  std::uint64_t m_sceneChanges = 0;
  int m_callsSinceSceneWalk = 0;
  bool m_known = false;
};

}  // namespace VX::NextGenView
