#pragma once

#include <string>

#include <Eigen/Core>
#include <mk/math/transform.h>

namespace VX::NextGenView {

// The motor of one revolute, continuous or prismatic joint. A turning joint
// works in radians, a prismatic (sliding) joint in metres.
class Actuator {
 public:
  enum class Motion { Rotation, Translation };

  // The speed used when the description gives none, or zero (radians per second).
  static constexpr float a_defaultMaxVelocity = 2.0f;
  // The same for a prismatic joint (metres per second): a gripper finger or a
  // torso lift crosses its range in about a second.
  static constexpr float a_defaultMaxLinearVelocity = 0.5f;

  // A non-positive or non-finite maxVelocity falls back to a_defaultMaxVelocity
  // (a_defaultMaxLinearVelocity for a translation); a continuous joint ignores
  // lower and upper and has no limits.
  Actuator(std::string name, float lower, float upper, float maxVelocity, bool continuous,
           Motion motion = Motion::Rotation);

  const std::string& name() const { return m_name; }

  // The joint's present position in radians (metres for a prismatic joint);
  // the forward-kinematics engine moves it toward the command. Read directly
  // by the views. A value written here that is not finite is replaced by the
  // command at the next step, with an error record; setValue refuses it at once.
  float m_value = 0.0f;
  void setValue(float value);

  float command() const { return m_command; }
  // Clamped to the limits (a continuous joint has none). A target that is not
  // a finite number is refused with an error record (category "world.model").
  void setCommand(float target);

  // Minus and plus infinity for a continuous joint.
  float lowerLimit() const { return m_lower; }
  float upperLimit() const { return m_upper; }
  float maxVelocity() const { return m_maxVelocity; }  // radians (metres) per second
  bool isContinuous() const { return m_continuous; }
  Motion motion() const { return m_motion; }
  // A sliding joint: values in metres.
  bool isPrismatic() const { return m_motion == Motion::Translation; }

  // Moves m_value toward the command by at most maxVelocity * seconds,
  // without overshoot and within the limits.
  void step(float seconds);

 private:
  std::string m_name;
  float m_lower;
  float m_upper;
  float m_maxVelocity;
  bool m_continuous;
  Motion m_motion;
  float m_command = 0.0f;
};

}  // namespace VX::NextGenView
