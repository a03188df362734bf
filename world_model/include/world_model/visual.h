#pragma once

#include <string>
#include <vector>

#include <Eigen/Core>
#include <mk/math/transform.h>

namespace VX::NextGenView {

// One visual (or collision) element of a link, as the robot description gives it.
struct Visual {
  enum class Shape { Box, Cylinder, Sphere, Mesh };

  Shape shape = Shape::Box;
  Eigen::Vector3f boxSize = Eigen::Vector3f::Zero();  // Box: full extents along x, y, z
  float radius = 0.0f;                                 // Cylinder, Sphere
  float length = 0.0f;                                 // Cylinder: along its local z
  std::string meshFile;                                // Mesh: absolute path, resolved by the loader
  // Mesh: the name the description gives, whether a file was found for it,
  // and, when none was, every path looked at (the scene view's warning
  // record names them all).
  std::string meshReference;
  bool meshFileFound = true;
  std::vector<std::string> meshPathsTried;
  Eigen::Vector3f meshScale = Eigen::Vector3f::Ones(); // Mesh
  MK::Math::Transform origin;                          // pose relative to the link
  bool hasColor = false;
  Eigen::Vector4f rgba = Eigen::Vector4f(0.7f, 0.7f, 0.7f, 1.0f);  // colour when hasColor
  std::string textureFile;  // the material's <texture>, an absolute path resolved as mesh files; empty when none
};

}  // namespace VX::NextGenView
