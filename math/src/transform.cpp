#include "mk/math/transform.h"

namespace MK::Math {

Transform::Transform() : m_isometry(Eigen::Isometry3f::Identity()) {}

Transform::Transform(const Eigen::Isometry3f& isometry) : m_isometry(isometry) {}

Transform Transform::fromPosition(const Position3D& position) {
  return fromPosition(position.x, position.y, position.z);
}

Transform Transform::fromPosition(float x, float y, float z) {
  Eigen::Isometry3f isometry = Eigen::Isometry3f::Identity();
  isometry.translation() = Eigen::Vector3f(x, y, z);
  return Transform(isometry);
}

Transform Transform::fromAxisAngle(const Eigen::Vector3f& axis, float angle) {
  Eigen::Isometry3f isometry = Eigen::Isometry3f::Identity();
  isometry.linear() = Eigen::AngleAxisf(angle, axis.normalized()).toRotationMatrix();
  return Transform(isometry);
}

Transform Transform::fromRotX(float angle) { return fromAxisAngle(Eigen::Vector3f::UnitX(), angle); }
Transform Transform::fromRotY(float angle) { return fromAxisAngle(Eigen::Vector3f::UnitY(), angle); }
Transform Transform::fromRotZ(float angle) { return fromAxisAngle(Eigen::Vector3f::UnitZ(), angle); }

Transform Transform::operator*(const Transform& other) const { return Transform(m_isometry * other.m_isometry); }

Transform Transform::inverse() const { return Transform(m_isometry.inverse()); }

Position3D Transform::apply(const Position3D& point) const {
  const Eigen::Vector3f result = m_isometry * Eigen::Vector3f(point.x, point.y, point.z);
  return Position3D{result.x(), result.y(), result.z()};
}

Eigen::Vector3f Transform::applyToVector(const Eigen::Vector3f& direction) const {
  return m_isometry.linear() * direction;
}

Eigen::Matrix3f Transform::rotation() const { return m_isometry.linear(); }
Eigen::Vector3f Transform::translation() const { return m_isometry.translation(); }

bool Transform::isApprox(const Transform& other, float precision) const {
  return (m_isometry.matrix() - other.m_isometry.matrix()).cwiseAbs().maxCoeff() <= precision;
}

Quaternion quaternionFromTransform(const Transform& transform) {
  Eigen::Quaternionf q(transform.rotation());
  q.normalize();
  // One of the two equivalent quaternions: the one with a non-negative w.
  if (q.w() < 0.0f) q.coeffs() = -q.coeffs();
  return Quaternion{q.w(), q.x(), q.y(), q.z()};
}

Position3D position3DFromTransform(const Transform& transform) {
  const Eigen::Vector3f t = transform.translation();
  return Position3D{t.x(), t.y(), t.z()};
}

}  // namespace MK::Math
