#pragma once

#include <string>

#include <mk/math/transform.h>

namespace VX::NextGenView {

// A named coordinate frame with its pose in world coordinates.
class Frame {
 public:
  explicit Frame(std::string name);
  virtual ~Frame();

  const std::string& name() const { return m_name; }
  MK::Math::Transform globalTransform() const { return m_globalTransform; }
  void setGlobalTransform(const MK::Math::Transform& transform) { m_globalTransform = transform; }

 private:
  std::string m_name;
  MK::Math::Transform m_globalTransform;
};

}  // namespace VX::NextGenView
