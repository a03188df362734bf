#include "world_model/frame.h"

#include <utility>

namespace VX::NextGenView {

Frame::Frame(std::string name) : m_name(std::move(name)) {}

Frame::~Frame() = default;

}  // namespace VX::NextGenView
