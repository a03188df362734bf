#pragma once

#include <string>

#include <Eigen/Core>
#include <mk/math/transform.h>

namespace VX::NextGenView {

// The motor of one revolute or continuous joint.
class Actuator {
 public:
  // The speed used when the description gives none, or zero (radians per second).
  static constexpr float a_defaultMaxVelocity = 2.0f;

  // A non-positive or non-finite maxVelocity falls back to a_defaultMaxVelocity;
  // a continuous joint ignores lower and upper and has no limits.
  Actuator(std::string name, float lower, float upper, float maxVelocity, bool continuous);

  const std::string& name() const { return m_name; }

  // The joint's present position in radians; the forward-kinematics engine
  // moves it toward the command. Read directly by the views.
  float m_value = 0.0f;

  float command() const { return m_command; }
  // Clamped to the limits (a continuous joint has none).
  void setCommand(float target);

  // Minus and plus infinity for a continuous joint.
  float lowerLimit() const { return m_lower; }
  float upperLimit() const { return m_upper; }
  float maxVelocity() const { return m_maxVelocity; }  // radians per second
  bool isContinuous() const { return m_continuous; }

  // Moves m_value toward the command by at most maxVelocity * seconds,
  // without overshoot and within the limits.
  void step(float seconds);

 private:
  std::string m_name;
  float m_lower;
  float m_upper;
  float m_maxVelocity;
  bool m_continuous;
  float m_command = 0.0f;
};

}  // namespace VX::NextGenView
