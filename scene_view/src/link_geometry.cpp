#include "link_geometry.h"

#include <sstream>

#include <world_model/link.h>

#include "material_library.h"
#include "mesh_file_loader.h"
#include "ogre_conversions.h"
#include "shape_geometry.h"

namespace VX::NextGenView {
namespace {

bool positive(float value) { return value > 0.0f; }

}  // namespace

MeshAssembly LinkGeometry::assemble(const Link& link, MaterialLibrary& materials, MeshFileLoader& meshFiles,
                                    std::vector<std::string>& problems) {
  MeshAssembly assembly;
  int index = 0;
  for (const Visual& visual : link.visuals()) {
    std::ostringstream which;
    which << "link " << link.name() << ", visual " << index++ << ": ";
    const Ogre::Matrix4 origin = toOgreMatrix(visual.origin);
    const std::string material = materials.colour(toOgreColour(visual.rgba));
    switch (visual.shape) {
      case Visual::Shape::Box:
        if (!positive(visual.boxSize.x()) || !positive(visual.boxSize.y()) || !positive(visual.boxSize.z())) {
          problems.push_back(which.str() + "box without a size");
          break;
        }
        assembly.add(material, ShapeGeometry::box(toOgreVector(visual.boxSize)), origin);
        break;
      case Visual::Shape::Cylinder:
        if (!positive(visual.radius) || !positive(visual.length)) {
          problems.push_back(which.str() + "cylinder without a radius or length");
          break;
        }
        assembly.add(material, ShapeGeometry::cylinder(visual.radius, visual.length), origin);
        break;
      case Visual::Shape::Sphere:
        if (!positive(visual.radius)) {
          problems.push_back(which.str() + "sphere without a radius");
          break;
        }
        assembly.add(material, ShapeGeometry::sphere(visual.radius), origin);
        break;
      case Visual::Shape::Mesh: {
        const MeshFileLoadResult& file = meshFiles.load(visual.meshFile);
        if (!file.error.empty()) {
          problems.push_back(which.str() + file.error);
          break;
        }
        Ogre::Matrix4 scale = Ogre::Matrix4::IDENTITY;
        scale.setScale(toOgreVector(visual.meshScale));
        for (const MeshFilePart& part : file.parts) {
          // The description's colour wins; else the file's own, else the default.
          const std::string partMaterial =
              visual.hasColor || !part.hasColour ? material : materials.colour(part.colour);
          assembly.add(partMaterial, part.triangles, origin * scale);
        }
        break;
      }
    }
  }
  return assembly;
}

}  // namespace VX::NextGenView
