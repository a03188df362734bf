#pragma once

#include "scene_view/object_3d_view.h"

namespace VX::NextGenView {

class Link;

// A robot link: its visuals merged into one entity named as the link.
class Link3DView : public Object3DView {
 public:
  Link3DView(boost::shared_ptr<Link> link, Ogre::SceneNode* node);
  boost::shared_ptr<Link> link() const { return m_link; }

 protected:
  void updatePose() override;

 private:
  boost::shared_ptr<Link> m_link;
};

}  // namespace VX::NextGenView
