#pragma once

#include "triangle_mesh.h"

namespace VX::NextGenView {

// The primitive shapes of robot descriptions, centred on the origin, with
// outward normals and counter-clockwise triangles seen from outside.
namespace ShapeGeometry {

// Full extents along x, y and z.
TriangleMesh box(const Ogre::Vector3& size);
// Axis along z, `length` long, flat caps.
TriangleMesh cylinder(float radius, float length, int segments = 32);
TriangleMesh sphere(float radius, int rings = 16, int segments = 32);
// A ring around the z axis: the tube's centre runs at majorRadius.
TriangleMesh torus(float majorRadius, float minorRadius, int majorSegments = 48, int minorSegments = 12);

}  // namespace ShapeGeometry
}  // namespace VX::NextGenView
