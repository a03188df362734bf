#pragma once

#include <vector>

#include "world_model/frame.h"
#include "world_model/visual.h"

namespace VX::NextGenView {

// A rigid body of a robot; its frame is the link frame of the description.
// Its collision geometry comes from the description's <collision> elements
// (shapes and meshes, without colours), apart from its visuals.
class Link : public Frame {
 public:
  Link(std::string name, std::vector<Visual> visuals, std::vector<Visual> collisions = {});
  const std::vector<Visual>& visuals() const { return m_visuals; }
  const std::vector<Visual>& collisions() const { return m_collisions; }

 private:
  std::vector<Visual> m_visuals;
  std::vector<Visual> m_collisions;
};

}  // namespace VX::NextGenView
