#include "world_model/actuator.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include <ku/log.h>

namespace VX::NextGenView {

Actuator::Actuator(std::string name, float lower, float upper, float maxVelocity, bool continuous, Motion motion)
    : m_name(std::move(name)),
      m_lower(lower),
      m_upper(upper),
      m_maxVelocity(maxVelocity),
      m_continuous(continuous),
      m_motion(motion) {
  // A continuous joint turns forever; a missing (NaN) limit means no limit.
  if (m_continuous || std::isnan(m_lower)) m_lower = -std::numeric_limits<float>::infinity();
  if (m_continuous || std::isnan(m_upper)) m_upper = std::numeric_limits<float>::infinity();
  if (m_lower > m_upper) {
    ku::log::LogStream(ku::log::Warning, "Actuator", "world.model", __FILE__, __LINE__)
        << "Actuator " << m_name << " has its lower limit " << m_lower << " above its upper limit " << m_upper
        << "; the two are swapped" << std::endl;
    std::swap(m_lower, m_upper);
  }
  if (!std::isfinite(m_maxVelocity) || m_maxVelocity <= 0.0f) {
    m_maxVelocity = isPrismatic() ? a_defaultMaxLinearVelocity : a_defaultMaxVelocity;
  }
  // The rest position is zero, or the nearest limit when zero is out of range.
  m_value = std::clamp(0.0f, m_lower, m_upper);
  m_command = m_value;
}

void Actuator::setValue(float value) {
  if (!std::isfinite(value)) {
    ku::log::LogStream(ku::log::Error, "setValue", "world.model", __FILE__, __LINE__)
        << "Actuator " << m_name << " refuses the position " << value << ": not a finite number" << std::endl;
    return;
  }
  m_value = std::clamp(value, m_lower, m_upper);
}

void Actuator::setCommand(float target) {
  if (!std::isfinite(target)) {
    ku::log::LogStream(ku::log::Error, "setCommand", "world.model", __FILE__, __LINE__)
        << "Actuator " << m_name << " refuses the command " << target << ": not a finite number" << std::endl;
    return;
  }
  m_command = std::clamp(target, m_lower, m_upper);
}

void Actuator::step(float seconds) {
  // m_value is public: whoever wrote it may have left it invalid or out of range.
  if (!std::isfinite(m_value)) {
    ku::log::LogStream(ku::log::Error, "step", "world.model", __FILE__, __LINE__)
        << "Actuator " << m_name << " had the position " << m_value
        << " written into it: not a finite number; it takes its command " << m_command << std::endl;
    m_value = m_command;
  }
  if (seconds > 0.0f) {
    const float maxStep = m_maxVelocity * seconds;
    const float remaining = m_command - m_value;
    if (std::fabs(remaining) <= maxStep) {
      m_value = m_command;
    } else {
      m_value += remaining > 0.0f ? maxStep : -maxStep;
    }
  }
  m_value = std::clamp(m_value, m_lower, m_upper);
}

}  // namespace VX::NextGenView
