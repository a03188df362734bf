#pragma once

#include <string>

#include <urdf_model/model.h>
#include <urdf_world/types.h>

namespace VX::NextGenView {

// Parses URDF text with urdfdom. On failure returns null and sets error to
// what the parser said; never throws.
urdf::ModelInterfaceSharedPtr parseUrdfModel(const std::string& xml, std::string& error);

}  // namespace VX::NextGenView
