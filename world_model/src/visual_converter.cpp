#include "visual_converter.h"

#include <ku/log.h>

#include "urdf_conversions.h"

namespace VX::NextGenView {
namespace {

// Fills the shape; false for a visual without a usable geometry.
bool convertGeometry(const urdf::Geometry& geometry, MeshPathResolver& meshPaths, Visual& visual) {
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
      const MeshPathResolution resolution = meshPaths.resolve(mesh.filename);
      visual.meshReference = mesh.filename;
      visual.meshFile = resolution.path;
      visual.meshFileFound = resolution.found;
      if (!resolution.found) visual.meshPathsTried = resolution.tried;
      visual.meshScale = vectorFromUrdf(mesh.scale);
      return !visual.meshFile.empty();
    }
  }
  return false;
}

std::string materialName(const urdf::Visual& source) {
  if (!source.material_name.empty()) return source.material_name;
  return source.material ? source.material->name : std::string();
}

void applyMaterial(const urdf::Visual& source, const std::map<std::string, Eigen::Vector4f>& materialColors,
                   const std::map<std::string, std::string>& materialTextures, MeshPathResolver& meshPaths,
                   Visual& visual) {
  const std::string name = materialName(source);
  const auto texture = materialTextures.find(name);
  if (texture != materialTextures.end()) visual.textureFile = meshPaths.resolve(texture->second).path;
  const auto color = materialColors.find(name);
  if (color == materialColors.end()) return;
  visual.hasColor = true;
  visual.rgba = color->second;
}

// A shape with its origin; false (and a warning) when it has no usable geometry.
template <typename Element>
bool convertElement(const Element& source, const urdf::Link& link, const char* kind, MeshPathResolver& meshPaths,
                    Visual& visual) {
  if (!source.geometry || !convertGeometry(*source.geometry, meshPaths, visual)) {
    ku::log::LogStream(ku::log::Warning, "convertVisuals", "world.model", __FILE__, __LINE__)
        << "A " << kind << " of the link " << link.name << " has no usable geometry and is left out" << std::endl;
    return false;
  }
  visual.origin = transformFromUrdf(source.origin);
  return true;
}

}  // namespace

std::vector<Visual> convertVisuals(const urdf::Link& link, const std::map<std::string, Eigen::Vector4f>& materialColors,
                                   const std::map<std::string, std::string>& materialTextures,
                                   MeshPathResolver& meshPaths) {
  std::vector<urdf::VisualSharedPtr> sources = link.visual_array;
  if (sources.empty() && link.visual) sources.push_back(link.visual);
  std::vector<Visual> visuals;
  for (const urdf::VisualSharedPtr& source : sources) {
    Visual visual;
    if (!source || !convertElement(*source, link, "visual", meshPaths, visual)) continue;
    applyMaterial(*source, materialColors, materialTextures, meshPaths, visual);
    visuals.push_back(visual);
  }
  return visuals;
}

std::vector<Visual> convertCollisions(const urdf::Link& link, MeshPathResolver& meshPaths) {
  std::vector<urdf::CollisionSharedPtr> sources = link.collision_array;
  if (sources.empty() && link.collision) sources.push_back(link.collision);
  std::vector<Visual> collisions;
  for (const urdf::CollisionSharedPtr& source : sources) {
    Visual collision;
    if (source && convertElement(*source, link, "collision", meshPaths, collision)) collisions.push_back(collision);
  }
  return collisions;
}

}  // namespace VX::NextGenView
