#pragma once

#include <map>
#include <string>
#include <vector>

#include <Eigen/Core>
#include <urdf_model/link.h>

#include "world_model/visual.h"

namespace VX::NextGenView {

// The visuals of a URDF link. A material's colour comes from materialColors
// by the material's name (robot-level definitions included); mesh file names
// become absolute paths resolved against baseFolder, the URDF's folder.
std::vector<Visual> convertVisuals(const urdf::Link& link, const std::map<std::string, Eigen::Vector4f>& materialColors,
                                   const std::string& baseFolder);

}  // namespace VX::NextGenView
