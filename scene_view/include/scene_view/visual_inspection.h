#pragma once
// What the scene view would draw of a robot's visuals, found without OGRE's
// root or a display: for tools that check a robot description.

#include <cstddef>
#include <string>

#include <world_model/visual.h>

namespace VX::NextGenView {

struct VisualInspection {
  std::size_t triangles = 0;
  std::string error;  // empty when the visual can be shown
};

// Why a mesh visual whose file was not found is not shown, naming every path
// the world model tried.
std::string missingMeshText(const Visual& visual);

// Reads a mesh file with the scene view's own loader (Assimp).
VisualInspection inspectMeshFile(const std::string& path);

// The triangles of one visual as the scene view builds them: a generated
// shape, or its mesh file. A shape without a size, or a mesh file that is
// missing or unreadable, gives an error instead.
VisualInspection inspectVisual(const Visual& visual);

}  // namespace VX::NextGenView
