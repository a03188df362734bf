#include "visual_converter.h"

#include <ku/log.h>

#include "mesh_path_resolver.h"
#include "urdf_conversions.h"

namespace VX::NextGenView {
namespace {

// Fills the shape; false for a visual without a usable geometry.
bool convertGeometry(const urdf::Geometry& geometry, const std::string& baseFolder, Visual& visual) {
  switch (geometry.type) {
    case urdf::Geometry::BOX:
      visual.shape = Visual::Shape::Box;
      visual.boxSize = vectorFromUrdf(static_cast<const urdf::Box&>(geometry).dim);
      return true;
    case urdf::Geometry::CYLINDER: {
      const auto& cylinder = static_cast<const urdf::Cylinder&>(geometry);
      visual.shape = Visual::Shape::Cylinder;
      visual.radius = static_cast<float>(cylinder.radius);
      visual.length = static_cast<float>(cylinder.length);
      return true;
    }
    case urdf::Geometry::SPHERE:
      visual.shape = Visual::Shape::Sphere;
      visual.radius = static_cast<float>(static_cast<const urdf::Sphere&>(geometry).radius);
      return true;
    case urdf::Geometry::MESH: {
      const auto& mesh = static_cast<const urdf::Mesh&>(geometry);
      visual.shape = Visual::Shape::Mesh;
      visual.meshFile = resolveMeshPath(mesh.filename, baseFolder);
      visual.meshScale = vectorFromUrdf(mesh.scale);
      return !visual.meshFile.empty();
    }
  }
  return false;
}

void applyMaterial(const urdf::Visual& source, const std::map<std::string, Eigen::Vector4f>& materialColors,
                   Visual& visual) {
  std::string name = source.material_name;
  if (name.empty() && source.material) name = source.material->name;
  const auto color = materialColors.find(name);
  if (color == materialColors.end()) return;
  visual.hasColor = true;
  visual.rgba = color->second;
}

}  // namespace

std::vector<Visual> convertVisuals(const urdf::Link& link, const std::map<std::string, Eigen::Vector4f>& materialColors,
                                   const std::string& baseFolder) {
  std::vector<urdf::VisualSharedPtr> sources = link.visual_array;
  if (sources.empty() && link.visual) sources.push_back(link.visual);
  std::vector<Visual> visuals;
  for (const urdf::VisualSharedPtr& source : sources) {
    if (!source) continue;
    Visual visual;
    if (!source->geometry || !convertGeometry(*source->geometry, baseFolder, visual)) {
      ku::log::LogStream(ku::log::Warning, "convertVisuals", "world.model", __FILE__, __LINE__)
          << "A visual of the link " << link.name << " has no usable geometry and is left out" << std::endl;
      continue;
    }
    visual.origin = transformFromUrdf(source->origin);
    applyMaterial(*source, materialColors, visual);
    visuals.push_back(visual);
  }
  return visuals;
}

}  // namespace VX::NextGenView
