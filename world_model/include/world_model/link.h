#pragma once

#include <vector>

#include "world_model/frame.h"
#include "world_model/visual.h"

namespace VX::NextGenView {

// A rigid body of a robot; its frame is the link frame of the description.
class Link : public Frame {
 public:
  Link(std::string name, std::vector<Visual> visuals);
  const std::vector<Visual>& visuals() const { return m_visuals; }

 private:
  std::vector<Visual> m_visuals;
};

}  // namespace VX::NextGenView
