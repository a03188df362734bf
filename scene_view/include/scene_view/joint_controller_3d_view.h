#pragma once

#include <string>

#include "scene_view/object_3d_view.h"

namespace VX::NextGenView {

class JointController;

// A ring around a joint's axis, at the joint, named as the controller's frame.
// While the controller has a pending command, the ring takes the commanded
// colour and a marker on it shows where the target lies, turned from the
// ring's reference direction (its local +X) by commandTarget - m_value.
class JointController3DView : public Object3DView {
 public:
  JointController3DView(boost::shared_ptr<JointController> controller, Ogre::SceneNode* node);
  boost::shared_ptr<JointController> jointController() const { return m_controller; }

  // Used by World3DView when it builds the ring.
  void attachCommandMarker(Ogre::SceneNode* markerNode, Ogre::Entity* marker, float ringRadius,
                           const std::string& restMaterial, const std::string& commandedMaterial);
  void detachFromScene() override;

  float ringRadius() const { return m_ringRadius; }
  Ogre::SceneNode* commandMarkerNode() const { return m_markerNode; }
  // True when the ring shows a pending command (marker visible, commanded colour).
  bool showsCommand() const { return m_showsCommand; }

 protected:
  void updatePose() override;
  void refreshDecorations() override;
  std::vector<std::string> restingMaterials() const override;
  void visibilityChanged() override;

 private:
  void updateCommandMarker();

  boost::shared_ptr<JointController> m_controller;
  Ogre::SceneNode* m_markerNode = nullptr;
  Ogre::Entity* m_marker = nullptr;
  float m_ringRadius = 0.0f;
  std::string m_restMaterial;
  std::string m_commandedMaterial;
  bool m_showsCommand = false;
};

}  // namespace VX::NextGenView
