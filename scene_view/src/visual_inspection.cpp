#include "scene_view/visual_inspection.h"

#include "mesh_file_loader.h"
#include "ogre_conversions.h"
#include "shape_geometry.h"

namespace VX::NextGenView {
namespace {

VisualInspection shape(const TriangleMesh& triangles) { return VisualInspection{triangles.triangleCount(), {}}; }

VisualInspection failure(const std::string& error) { return VisualInspection{0, error}; }

}  // namespace

std::string missingMeshText(const Visual& visual) {
  std::string text = "mesh file \"" + visual.meshReference + "\" not found; tried:";
  for (const std::string& path : visual.meshPathsTried) text += " " + path;
  return text;
}

VisualInspection inspectMeshFile(const std::string& path) {
  MeshFileLoader loader;
  const MeshFileLoadResult& file = loader.load(path);
  if (!file.error.empty()) return failure(file.error);
  VisualInspection result;
  for (const MeshFilePart& part : file.parts) result.triangles += part.triangles.triangleCount();
  return result;
}

VisualInspection inspectVisual(const Visual& visual) {
  switch (visual.shape) {
    case Visual::Shape::Box:
      if (!(visual.boxSize.minCoeff() > 0.0f)) return failure("box without a size");
      return shape(ShapeGeometry::box(toOgreVector(visual.boxSize)));
    case Visual::Shape::Cylinder:
      if (!(visual.radius > 0.0f) || !(visual.length > 0.0f)) return failure("cylinder without a radius or length");
      return shape(ShapeGeometry::cylinder(visual.radius, visual.length));
    case Visual::Shape::Sphere:
      if (!(visual.radius > 0.0f)) return failure("sphere without a radius");
      return shape(ShapeGeometry::sphere(visual.radius));
    case Visual::Shape::Mesh:
      if (!visual.meshFileFound) return failure(missingMeshText(visual));
      return inspectMeshFile(visual.meshFile);
  }
  return failure("unknown shape");
}

}  // namespace VX::NextGenView
