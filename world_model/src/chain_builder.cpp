#include "chain_builder.h"

namespace VX::NextGenView {

RobotChains buildChains(const std::string& robotName, const boost::shared_ptr<Link>& rootLink,
                        const std::vector<Robot::JointModel>& joints, const std::vector<ChainAnnotation>& annotated) {
  std::vector<ChainAnnotation> definitions = annotated;
  if (definitions.empty()) {
    for (const Robot::JointModel& joint : joints) {
      if (joint.parent == rootLink) definitions.push_back({joint.child->name(), joint.child->name(), 0});
    }
  }

  RobotChains chains;
  chains.rootTree.reset(new ActuatorsTree(robotName));
  std::map<std::string, boost::shared_ptr<ActuatorsTree>> chainStartingAt;
  for (const ChainAnnotation& definition : definitions) {
    boost::shared_ptr<ActuatorsTree> chain(new ActuatorsTree(definition.name));
    chains.rootTree->addChild(chain);
    chainStartingAt[definition.rootLink] = chain;
  }

  // A link belongs to the chain starting at it, or else to its parent's chain.
  std::map<std::string, boost::shared_ptr<ActuatorsTree>> chainOf;
  const auto place = [&](const boost::shared_ptr<Link>& link, const boost::shared_ptr<ActuatorsTree>& inherited) {
    const auto starting = chainStartingAt.find(link->name());
    boost::shared_ptr<ActuatorsTree> chain = starting != chainStartingAt.end() ? starting->second : inherited;
    chainOf[link->name()] = chain;
    if (chain) {
      chain->addLink(link);
      chains.chainOfLink[link->name()] = chain->name();
    }
    return chain;
  };
  if (rootLink) place(rootLink, nullptr);
  for (const Robot::JointModel& joint : joints) {
    const boost::shared_ptr<ActuatorsTree> chain = place(joint.child, chainOf[joint.parent->name()]);
    if (chain && joint.actuator) chain->addActuator(joint.actuator);
  }
  return chains;
}

}  // namespace VX::NextGenView
