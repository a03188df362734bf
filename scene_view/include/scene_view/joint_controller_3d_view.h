#pragma once

#include "scene_view/object_3d_view.h"

namespace VX::NextGenView {

class JointController;

// A ring around a joint's axis, at the joint, named as the controller's frame.
class JointController3DView : public Object3DView {
 public:
  JointController3DView(boost::shared_ptr<JointController> controller, Ogre::SceneNode* node);
  boost::shared_ptr<JointController> jointController() const { return m_controller; }

 private:
  boost::shared_ptr<JointController> m_controller;
};

}  // namespace VX::NextGenView
