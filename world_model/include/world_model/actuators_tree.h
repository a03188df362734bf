#pragma once

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

namespace VX::NextGenView {

class Actuator;
class Link;

// A named subtree of a robot: the root tree's children are the body chains
// (Head, LArm, ...), each listing its links and actuators from the root out.
class ActuatorsTree {
 public:
  explicit ActuatorsTree(std::string name);

  const std::string& name() const { return m_name; }
  std::vector<boost::shared_ptr<ActuatorsTree>> children() const { return m_children; }
  const std::vector<boost::shared_ptr<Actuator>>& actuators() const { return m_actuators; }
  const std::vector<boost::shared_ptr<Link>>& links() const { return m_links; }

  void addChild(boost::shared_ptr<ActuatorsTree> child);
  void addActuator(boost::shared_ptr<Actuator> actuator);
  void addLink(boost::shared_ptr<Link> link);

 private:
  std::string m_name;
  std::vector<boost::shared_ptr<ActuatorsTree>> m_children;
  std::vector<boost::shared_ptr<Actuator>> m_actuators;
  std::vector<boost::shared_ptr<Link>> m_links;
};

}  // namespace VX::NextGenView
