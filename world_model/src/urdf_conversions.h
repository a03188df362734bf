#pragma once
// urdfdom's double-precision types to the single-precision ones of MK::Math.

#include <Eigen/Geometry>
#include <mk/math/transform.h>
#include <urdf_model/pose.h>

namespace VX::NextGenView {

inline Eigen::Vector3f vectorFromUrdf(const urdf::Vector3& vector) {
  return Eigen::Vector3d(vector.x, vector.y, vector.z).cast<float>();
}

inline MK::Math::Transform transformFromUrdf(const urdf::Pose& pose) {
  const urdf::Rotation& r = pose.rotation;
  Eigen::Quaterniond rotation(r.w, r.x, r.y, r.z);
  // A zero quaternion would not be a rotation; urdfdom gives unit ones.
  if (rotation.norm() < 1e-9) rotation = Eigen::Quaterniond::Identity();
  Eigen::Isometry3f isometry = Eigen::Isometry3f::Identity();
  isometry.linear() = rotation.normalized().toRotationMatrix().cast<float>();
  isometry.translation() = vectorFromUrdf(pose.position);
  return MK::Math::Transform(isometry);
}

}  // namespace VX::NextGenView
