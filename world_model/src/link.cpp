#include "world_model/link.h"

#include <utility>

namespace VX::NextGenView {

Link::Link(std::string name, std::vector<Visual> visuals) : Frame(std::move(name)), m_visuals(std::move(visuals)) {}

}  // namespace VX::NextGenView
