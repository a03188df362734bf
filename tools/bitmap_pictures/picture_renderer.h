#pragma once

#include <string>

#include <QImage>

#include <boost/shared_ptr.hpp>

#include "picture_layout.h"

namespace Ogre {
class Camera;
class RenderTarget;
class RenderWindow;
class Viewport;
}  // namespace Ogre

namespace VX::NextGenView {

class OgreEngine;
class Robot;
class World;
class World3DView;

// Renders the bundled robot, posed for the pictures, with the project's own
// render engine and scene view, lit as the 3D view lights it, into an
// off-screen target of the layout's size.
class PictureRenderer {
 public:
  explicit PictureRenderer(const PictureLayout& layout);
  ~PictureRenderer();

  // Empty when OGRE, the robot or the scene could not be set up.
  const std::string& error() const { return m_error; }
  boost::shared_ptr<Robot> robot() const { return m_robot; }

  // The robot with one chain in the highlight colour (none when the name is
  // empty), on a transparent background.
  QImage render(const std::string& highlightedChain);

 private:
  bool setUpScene();
  void addLights();
  void addCamera();
  void highlightChain(const std::string& chain, bool on);
  QImage renderOnBackground(float grey);

  PictureLayout m_layout;
  std::string m_error;
  boost::shared_ptr<OgreEngine> m_engine;
  boost::shared_ptr<World> m_world;
  boost::shared_ptr<Robot> m_robot;
  boost::shared_ptr<World3DView> m_view;
  Ogre::RenderWindow* m_window = nullptr;
  Ogre::RenderTarget* m_target = nullptr;
  Ogre::Camera* m_camera = nullptr;
  Ogre::Viewport* m_viewport = nullptr;
};

}  // namespace VX::NextGenView
