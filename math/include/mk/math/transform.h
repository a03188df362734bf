#pragma once
// Rigid transforms (rotation and translation) in single precision, on Eigen.

#include <Eigen/Geometry>

namespace MK::Math {

struct Position3D {
  float x = 0.0f;
  float y = 0.0f;
  float z = 0.0f;
};

// Rotation components in the order w, x, y, z.
struct Quaternion {
  float w = 1.0f;
  float x = 0.0f;
  float y = 0.0f;
  float z = 0.0f;
};

class Transform {
 public:
  Transform();  // identity
  explicit Transform(const Eigen::Isometry3f& isometry);

  static Transform fromPosition(const Position3D& position);
  static Transform fromPosition(float x, float y, float z);
  // Rotation by `angle` radians about `axis` (normalised here).
  static Transform fromAxisAngle(const Eigen::Vector3f& axis, float angle);
  static Transform fromRotX(float angle);
  static Transform fromRotY(float angle);
  static Transform fromRotZ(float angle);

  // this * other: `other` is applied first, then this.
  Transform operator*(const Transform& other) const;
  Transform inverse() const;
  Position3D apply(const Position3D& point) const;
  Eigen::Vector3f applyToVector(const Eigen::Vector3f& direction) const;  // rotation only

  Eigen::Matrix3f rotation() const;
  Eigen::Vector3f translation() const;
  const Eigen::Isometry3f& isometry() const { return m_isometry; }

  bool isApprox(const Transform& other, float precision = 1e-5f) const;

 private:
  Eigen::Isometry3f m_isometry;
};

Quaternion quaternionFromTransform(const Transform& transform);
Position3D position3DFromTransform(const Transform& transform);

}  // namespace MK::Math
