#include "scene_view/link_3d_view.h"

#include <OgreSceneNode.h>

#include <world_model/link.h>

#include "ogre_conversions.h"

namespace VX::NextGenView {

Link3DView::Link3DView(boost::shared_ptr<Link> link, Ogre::SceneNode* node)
    : Object3DView(link, node), m_link(std::move(link)) {}

// The link's global transform already holds its robot's base pose.
void Link3DView::updatePose() {
  const MK::Math::Transform pose = m_link->globalTransform();
  if (placeNode(*m_node, toOgrePosition(pose), toOgreOrientation(pose))) noteChange();
}

}  // namespace VX::NextGenView
