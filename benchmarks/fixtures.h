#pragma once
// The scenes the benchmarks run on. Only one OGRE root may live in a process,
// so one fixture at a time is kept: asking for another destroys the first.

#include <memory>
#include <optional>
#include <string>

#include <QPoint>
#include <QWidget>

#include <boost/shared_ptr.hpp>

namespace Ogre {
class Camera;
class RenderWindow;
class SceneManager;
}  // namespace Ogre

namespace VX {
class WorldViewContainer;
namespace NextGenView {
class Camera;
class OgreEngine;
class RenderWidget;
class Selection;
class World;
class World3DView;
}  // namespace NextGenView
}  // namespace VX

namespace bench {

class Fixture {
 public:
  virtual ~Fixture() = default;
  std::string error;  // empty when the fixture is usable
};

Fixture* currentFixture(const std::string& key);
Fixture& keepFixture(const std::string& key, std::unique_ptr<Fixture> fixture);
void releaseFixture();

// The fixture named `key`, built from `args` unless it is the one kept.
template <class T, class... Args>
T& fixture(const std::string& key, Args... args) {
  if (Fixture* kept = currentFixture(key)) return static_cast<T&>(*kept);
  releaseFixture();  // the old root goes before the new one is made
  return static_cast<T&>(keepFixture(key, std::make_unique<T>(args...)));
}

std::string engineConfiguration();
std::string engineLog();
boost::shared_ptr<VX::NextGenView::World> worldWithBundledRobot();
// A world holding the robot of `urdfFile`; empty when it does not load.
boost::shared_ptr<VX::NextGenView::World> worldWithRobot(const std::string& urdfFile);
std::string bundledRobotFile();
// The shared benchmark humanoid: $RENDERWIDGET_BENCH_HUMANOID, else the path
// the build was configured with.
std::string humanoidFile();
// OGRE's name for the OpenGL device (llvmpipe under Xvfb), from a tiny window.
std::string glDeviceName();

// The container as a host shows it, but frameless and exactly width × height
// so that the 3D view has that size; the 3D view set to select links or to
// grab joint rings.
std::unique_ptr<VX::WorldViewContainer> makeContainer(boost::shared_ptr<VX::NextGenView::World> world, int width,
                                                      int height, bool use3DController);

// A container shown, its render window built, its refresh timer stopped
// (the benchmarks call the frames themselves), a few frames rendered.
class ShownContainer : public Fixture {
 public:
  ShownContainer(int width, int height, bool use3DController);
  ~ShownContainer() override;
  VX::WorldViewContainer& container() const { return *m_container; }
  VX::NextGenView::RenderWidget* widget() const;
  QPoint torsoPixel() const;  // the middle of the robot's torso on screen
  std::optional<QPoint> ringPixel;  // where a joint ring is grabbed, once found

 private:
  boost::shared_ptr<VX::NextGenView::World> m_world;
  std::unique_ptr<VX::WorldViewContainer> m_container;
};

// The widget's scene without the widget: the scene view in an OGRE-owned
// frameless window, with the widget's rendering defaults, lights, sky and
// camera rig (same pose), rendered by renderWindow->update(true).
class BareScene : public Fixture {
 public:
  BareScene(int width, int height);
  ~BareScene() override;
  void frame();  // scene view update, then render and swap

 private:
  boost::shared_ptr<VX::NextGenView::OgreEngine> m_engine;
  boost::shared_ptr<VX::NextGenView::World> m_world;
  boost::shared_ptr<VX::NextGenView::World3DView> m_view;
  Ogre::RenderWindow* m_window = nullptr;
  std::unique_ptr<VX::NextGenView::Camera> m_rig;
};

// Generated meshes for the picker, seen by a camera on +Z looking down -Z:
// "grid_10k", "grid_100k", "grid_1M" (one entity), "stack_100x10k" (100
// parallel grids along the ray, the first 99 with a hole it passes through).
class GeneratedScene : public Fixture {
 public:
  explicit GeneratedScene(const std::string& kind);
  ~GeneratedScene() override;
  static constexpr int a_width = 320;
  static constexpr int a_height = 240;
  QPoint target() const { return QPoint(a_width / 2, a_height / 2); }
  std::string expectedName;  // the entity a pick at target() hits

  boost::shared_ptr<VX::NextGenView::OgreEngine> engine;
  Ogre::SceneManager* scene = nullptr;
  Ogre::Camera* camera = nullptr;
  QWidget surface;  // the picker's pixel grid
  std::unique_ptr<VX::NextGenView::Selection> selection;
};

}  // namespace bench
