#include "world_model/link.h"

#include <utility>

namespace VX::NextGenView {

Link::Link(std::string name, std::vector<Visual> visuals, std::vector<Visual> collisions)
    : Frame(std::move(name)), m_visuals(std::move(visuals)), m_collisions(std::move(collisions)) {}

}  // namespace VX::NextGenView
