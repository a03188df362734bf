#pragma once

#include <map>
#include <string>
#include <vector>

#include <Eigen/Core>
#include <urdf_model/link.h>

#include "mesh_path_resolver.h"
#include "world_model/visual.h"

namespace VX::NextGenView {

// The visuals of a URDF link. A material's colour comes from materialColors
// and its texture from materialTextures by the material's name (robot-level
// definitions included); mesh and texture file names become absolute paths
// found by the resolver; a visual whose mesh file is not found keeps every
// path tried, for the scene view's record.
std::vector<Visual> convertVisuals(const urdf::Link& link, const std::map<std::string, Eigen::Vector4f>& materialColors,
                                   const std::map<std::string, std::string>& materialTextures,
                                   MeshPathResolver& meshPaths);

// The collision geometry of a URDF link, as visuals without colours.
std::vector<Visual> convertCollisions(const urdf::Link& link, MeshPathResolver& meshPaths);

}  // namespace VX::NextGenView
