#include "mk/math/transform.h"

#include <gtest/gtest.h>

#include <cmath>

using MK::Math::Position3D;
using MK::Math::Transform;

namespace {

constexpr float kQuarterTurn = 1.5707964f;  // pi/2 in single precision

TEST(Transform, DefaultIsIdentity) {
  const Position3D p = Transform().apply({1.0f, 2.0f, 3.0f});
  EXPECT_FLOAT_EQ(p.x, 1.0f);
  EXPECT_FLOAT_EQ(p.y, 2.0f);
  EXPECT_FLOAT_EQ(p.z, 3.0f);
}

TEST(Transform, QuarterTurnAboutXAsQuaternion) {
  const MK::Math::Quaternion q = MK::Math::quaternionFromTransform(Transform::fromRotX(kQuarterTurn));
  EXPECT_NEAR(q.w, 0.70710677f, 1e-6);
  EXPECT_NEAR(q.x, 0.70710677f, 1e-6);
  EXPECT_NEAR(q.y, 0.0f, 1e-6);
  EXPECT_NEAR(q.z, 0.0f, 1e-6);
}

TEST(Transform, QuarterTurnAboutXMapsYToZ) {
  const Position3D p = Transform::fromRotX(kQuarterTurn).apply({0, 1, 0});
  EXPECT_NEAR(p.x, 0.0f, 1e-6);
  EXPECT_NEAR(p.y, 0.0f, 1e-6);
  EXPECT_NEAR(p.z, 1.0f, 1e-6);
}

TEST(Transform, QuarterTurnAboutZRotatesAPoint) {
  const Position3D p = Transform::fromRotZ(kQuarterTurn).apply({2, 0, 5});
  EXPECT_NEAR(p.x, 0.0f, 1e-6);
  EXPECT_NEAR(p.y, 2.0f, 1e-6);
  EXPECT_NEAR(p.z, 5.0f, 1e-6);
}

TEST(Transform, QuarterTurnAboutYMapsZToX) {
  const Position3D p = Transform::fromRotY(kQuarterTurn).apply({0, 0, 1});
  EXPECT_NEAR(p.x, 1.0f, 1e-6);
  EXPECT_NEAR(p.z, 0.0f, 1e-6);
}

TEST(Transform, ComposedWithInverseIsIdentity) {
  const Transform t = Transform::fromPosition(1, -2, 3) * Transform::fromAxisAngle({1, 2, 3}, 0.7f);
  EXPECT_TRUE((t * t.inverse()).isApprox(Transform()));
  EXPECT_TRUE((t.inverse() * t).isApprox(Transform()));
}

TEST(Transform, CompositionAppliesRightOperandFirst) {
  // Rotate a quarter turn about Z, then move along X.
  const Transform t = Transform::fromPosition(10, 0, 0) * Transform::fromRotZ(kQuarterTurn);
  const Position3D p = t.apply({1, 0, 0});
  EXPECT_NEAR(p.x, 10.0f, 1e-5);
  EXPECT_NEAR(p.y, 1.0f, 1e-5);
}

TEST(Transform, PositionFromTransform) {
  const Transform t = Transform::fromPosition({4, 5, 6}) * Transform::fromRotY(0.3f);
  const Position3D p = MK::Math::position3DFromTransform(t);
  EXPECT_FLOAT_EQ(p.x, 4.0f);
  EXPECT_FLOAT_EQ(p.y, 5.0f);
  EXPECT_FLOAT_EQ(p.z, 6.0f);
}

TEST(Transform, AxisIsNormalised) {
  const Transform a = Transform::fromAxisAngle({0, 0, 5}, 0.4f);
  EXPECT_TRUE(a.isApprox(Transform::fromRotZ(0.4f)));
}

TEST(Transform, QuaternionHasNonNegativeW) {
  const MK::Math::Quaternion q = MK::Math::quaternionFromTransform(Transform::fromRotZ(3.0f * kQuarterTurn));
  EXPECT_GE(q.w, 0.0f);
  EXPECT_NEAR(q.w * q.w + q.x * q.x + q.y * q.y + q.z * q.z, 1.0f, 1e-6);
}

TEST(Transform, VectorsIgnoreTranslation) {
  const Transform t = Transform::fromPosition(7, 7, 7) * Transform::fromRotZ(kQuarterTurn);
  const Eigen::Vector3f v = t.applyToVector({1, 0, 0});
  EXPECT_NEAR(v.x(), 0.0f, 1e-6);
  EXPECT_NEAR(v.y(), 1.0f, 1e-6);
  EXPECT_NEAR(v.z(), 0.0f, 1e-6);
}

}  // namespace
