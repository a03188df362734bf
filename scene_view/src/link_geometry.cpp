#include "link_geometry.h"

#include <sstream>

#include <scene_view/visual_inspection.h>
#include <world_model/link.h>

#include "material_library.h"
#include "mesh_file_loader.h"
#include "ogre_conversions.h"
#include "shape_geometry.h"

namespace VX::NextGenView {
namespace {

bool positive(float value) { return value > 0.0f; }

std::string describe(const Link& link, const char* kind, int index) {
  std::ostringstream which;
  which << "link " << link.name() << ", " << kind << " " << index << ": ";
  return which.str();
}

// The material of one part of a mesh file, as LinkGeometry::assemble says.
std::string partMaterial(const MeshFilePart& part, const Visual& visual, const std::string& which,
                         MaterialLibrary& materials, std::vector<std::string>& notes) {
  std::string problem;
  if (!part.texture.empty()) {
    const std::string textured = materials.texture(part.texture, problem);
    if (!textured.empty()) return textured;
    notes.push_back(which + problem + "; drawn with its colour");
  }
  if (part.hasVertexColours()) return materials.vertexColours();
  if (!visual.textureFile.empty() && !part.triangles.texCoords.empty()) {
    const std::string textured = materials.texture(visual.textureFile, problem);
    if (!textured.empty()) return textured;
    notes.push_back(which + problem + "; drawn with its colour");
  }
  // The description's colour wins; else the file's own, else the default.
  if (visual.hasColor || !part.hasColour) return materials.colour(toOgreColour(visual.rgba));
  return materials.colour(part.colour);
}

}  // namespace

MeshAssembly LinkGeometry::assemble(const Link& link, MaterialLibrary& materials, MeshFileLoader& meshFiles,
                                    std::vector<std::string>& problems, std::vector<std::string>& notes) {
  MeshAssembly assembly;
  int index = 0;
  for (const Visual& visual : link.visuals()) {
    addVisual(visual, describe(link, "visual", index++), &materials, {}, meshFiles, assembly, problems, notes);
  }
  return assembly;
}

MeshAssembly LinkGeometry::assembleCollisions(const Link& link, const std::string& material,
                                              MeshFileLoader& meshFiles, std::vector<std::string>& problems) {
  MeshAssembly assembly;
  std::vector<std::string> notes;
  int index = 0;
  for (const Visual& collision : link.collisions()) {
    addVisual(collision, describe(link, "collision", index++), nullptr, material, meshFiles, assembly, problems,
              notes);
  }
  return assembly;
}

// With `materials`, the visual's own looks; without, everything in `fixedMaterial`.
void LinkGeometry::addVisual(const Visual& visual, const std::string& which, MaterialLibrary* materials,
                             const std::string& fixedMaterial, MeshFileLoader& meshFiles, MeshAssembly& assembly,
                             std::vector<std::string>& problems, std::vector<std::string>& notes) {
  const Ogre::Matrix4 origin = toOgreMatrix(visual.origin);
  const std::string material = materials ? materials->colour(toOgreColour(visual.rgba)) : fixedMaterial;
  switch (visual.shape) {
    case Visual::Shape::Box:
      if (!positive(visual.boxSize.x()) || !positive(visual.boxSize.y()) || !positive(visual.boxSize.z())) {
        problems.push_back(which + "box without a size");
        return;
      }
      assembly.add(material, ShapeGeometry::box(toOgreVector(visual.boxSize)), origin);
      return;
    case Visual::Shape::Cylinder:
      if (!positive(visual.radius) || !positive(visual.length)) {
        problems.push_back(which + "cylinder without a radius or length");
        return;
      }
      assembly.add(material, ShapeGeometry::cylinder(visual.radius, visual.length), origin);
      return;
    case Visual::Shape::Sphere:
      if (!positive(visual.radius)) {
        problems.push_back(which + "sphere without a radius");
        return;
      }
      assembly.add(material, ShapeGeometry::sphere(visual.radius), origin);
      return;
    case Visual::Shape::Mesh: {
      if (!visual.meshFileFound) {
        problems.push_back(which + missingMeshText(visual));
        return;
      }
      const MeshFileLoadResult& file = meshFiles.load(visual.meshFile);
      if (!file.error.empty()) {
        problems.push_back(which + file.error);
        return;
      }
      Ogre::Matrix4 scale = Ogre::Matrix4::IDENTITY;
      scale.setScale(toOgreVector(visual.meshScale));
      for (const MeshFilePart& part : file.parts) {
        const std::string look = materials ? partMaterial(part, visual, which, *materials, notes) : material;
        assembly.add(look, part.triangles, origin * scale);
      }
      return;
    }
  }
}

}  // namespace VX::NextGenView
