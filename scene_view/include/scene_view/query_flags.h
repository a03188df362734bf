#pragma once

#include <cstdint>

namespace VX::NextGenView {

// OGRE query flags of the scene's entities: scene queries with a mask that
// includes a_pickableQueryFlag find the links and joint rings, and nothing
// decorative.
constexpr std::uint32_t a_pickableQueryFlag = 1u;
constexpr std::uint32_t a_decorativeQueryFlags = 0u;

}  // namespace VX::NextGenView
