#include "shape_geometry.h"

#include <algorithm>

#include <OgreMath.h>

namespace VX::NextGenView::ShapeGeometry {
namespace {

// Two triangles for the quad a, b, c, d (counter-clockwise seen from outside).
void addQuad(TriangleMesh& mesh, std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint32_t d) {
  mesh.indices.insert(mesh.indices.end(), {a, b, c, a, c, d});
}

void addVertex(TriangleMesh& mesh, const Ogre::Vector3& position, const Ogre::Vector3& normal) {
  mesh.positions.push_back(position);
  mesh.normals.push_back(normal);
}

}  // namespace

TriangleMesh box(const Ogre::Vector3& size) {
  TriangleMesh mesh;
  const Ogre::Vector3 half = size * 0.5f;
  // Each face has its own four corners so that its normal stays flat.
  const Ogre::Vector3 axes[3] = {Ogre::Vector3::UNIT_X, Ogre::Vector3::UNIT_Y, Ogre::Vector3::UNIT_Z};
  for (int axis = 0; axis < 3; ++axis) {
    for (const float sign : {1.0f, -1.0f}) {
      const Ogre::Vector3 normal = axes[axis] * sign;
      // u, v span the face so that u x v = normal.
      const Ogre::Vector3 u = axes[(axis + 1) % 3] * sign;
      const Ogre::Vector3 v = axes[(axis + 2) % 3];
      const Ogre::Vector3 centre = normal * half;
      const Ogre::Vector3 du = u * half;
      const Ogre::Vector3 dv = v * half;
      const auto first = static_cast<std::uint32_t>(mesh.positions.size());
      addVertex(mesh, centre - du - dv, normal);
      addVertex(mesh, centre + du - dv, normal);
      addVertex(mesh, centre + du + dv, normal);
      addVertex(mesh, centre - du + dv, normal);
      addQuad(mesh, first, first + 1, first + 2, first + 3);
    }
  }
  return mesh;
}

TriangleMesh cylinder(float radius, float length, int segments) {
  TriangleMesh mesh;
  segments = std::max(segments, 3);
  const float halfLength = length * 0.5f;
  // Side: a strip of quads with radial normals.
  for (int i = 0; i <= segments; ++i) {
    const float angle = Ogre::Math::TWO_PI * i / segments;
    const Ogre::Vector3 radial(std::cos(angle), std::sin(angle), 0.0f);
    addVertex(mesh, radial * radius + Ogre::Vector3(0, 0, -halfLength), radial);
    addVertex(mesh, radial * radius + Ogre::Vector3(0, 0, halfLength), radial);
  }
  for (int i = 0; i < segments; ++i) {
    const auto bottom = static_cast<std::uint32_t>(2 * i);
    addQuad(mesh, bottom, bottom + 2, bottom + 3, bottom + 1);
  }
  // Caps: fans around their centres with axial normals.
  for (const float sign : {1.0f, -1.0f}) {
    const Ogre::Vector3 normal(0, 0, sign);
    const auto centre = static_cast<std::uint32_t>(mesh.positions.size());
    addVertex(mesh, normal * halfLength, normal);
    for (int i = 0; i <= segments; ++i) {
      const float angle = Ogre::Math::TWO_PI * i / segments;
      addVertex(mesh, Ogre::Vector3(radius * std::cos(angle), radius * std::sin(angle), sign * halfLength), normal);
    }
    for (int i = 0; i < segments; ++i) {
      const auto rim = static_cast<std::uint32_t>(centre + 1 + i);
      if (sign > 0) {
        mesh.indices.insert(mesh.indices.end(), {centre, rim, rim + 1});
      } else {
        mesh.indices.insert(mesh.indices.end(), {centre, rim + 1, rim});
      }
    }
  }
  return mesh;
}

TriangleMesh sphere(float radius, int rings, int segments) {
  TriangleMesh mesh;
  rings = std::max(rings, 2);
  segments = std::max(segments, 3);
  for (int ring = 0; ring <= rings; ++ring) {
    const float polar = Ogre::Math::PI * ring / rings;  // 0 at +z
    for (int i = 0; i <= segments; ++i) {
      const float azimuth = Ogre::Math::TWO_PI * i / segments;
      const Ogre::Vector3 normal(std::sin(polar) * std::cos(azimuth), std::sin(polar) * std::sin(azimuth),
                                 std::cos(polar));
      addVertex(mesh, normal * radius, normal);
    }
  }
  const auto stride = static_cast<std::uint32_t>(segments + 1);
  for (int ring = 0; ring < rings; ++ring) {
    for (int i = 0; i < segments; ++i) {
      const auto upper = static_cast<std::uint32_t>(ring * stride + i);
      const std::uint32_t lower = upper + stride;
      // Skip the degenerate triangles at the poles.
      if (ring != 0) mesh.indices.insert(mesh.indices.end(), {upper, lower, upper + 1});
      if (ring != rings - 1) mesh.indices.insert(mesh.indices.end(), {upper + 1, lower, lower + 1});
    }
  }
  return mesh;
}

TriangleMesh torus(float majorRadius, float minorRadius, int majorSegments, int minorSegments) {
  TriangleMesh mesh;
  majorSegments = std::max(majorSegments, 3);
  minorSegments = std::max(minorSegments, 3);
  for (int i = 0; i <= majorSegments; ++i) {
    const float u = Ogre::Math::TWO_PI * i / majorSegments;
    const Ogre::Vector3 radial(std::cos(u), std::sin(u), 0.0f);
    for (int j = 0; j <= minorSegments; ++j) {
      const float v = Ogre::Math::TWO_PI * j / minorSegments;
      const Ogre::Vector3 normal = radial * std::cos(v) + Ogre::Vector3::UNIT_Z * std::sin(v);
      addVertex(mesh, radial * majorRadius + normal * minorRadius, normal);
    }
  }
  const auto stride = static_cast<std::uint32_t>(minorSegments + 1);
  for (int i = 0; i < majorSegments; ++i) {
    for (int j = 0; j < minorSegments; ++j) {
      const auto a = static_cast<std::uint32_t>(i * stride + j);
      addQuad(mesh, a, a + stride, a + stride + 1, a + 1);
    }
  }
  return mesh;
}

}  // namespace VX::NextGenView::ShapeGeometry
