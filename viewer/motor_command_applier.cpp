#include "motor_command_applier.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <world_model/actuator.h>
#include <world_model/robot.h>
#include <world_model/world.h>

using VX::NextGenView::Actuator;
using VX::NextGenView::Robot;

MotorCommandApplier::MotorCommandApplier(boost::shared_ptr<VX::NextGenView::World> world, QObject* parent)
    : QObject(parent), m_world(world) {}

float MotorCommandApplier::command(const QString& name) const {
  if (m_world) {
    for (const boost::shared_ptr<Robot>& robot : m_world->robots()) {
      if (const boost::shared_ptr<Actuator> actuator = robot->actuator(name.toStdString())) return actuator->command();
    }
  }
  return std::numeric_limits<float>::quiet_NaN();
}

int MotorCommandApplier::onMotorValues(QList<QString> actuatorList, QList<float> valueList) {
  if (!m_world) return 0;
  std::vector<std::string> names;
  std::vector<float> values;
  for (const QString& name : actuatorList) names.push_back(name.toStdString());
  for (float value : valueList) values.push_back(value);
  // The world skips unknown names and pairs the lists' common prefix, with a
  // warning record for each.
  const int applied = m_world->setActuatorCommands(names, values);

  QStringList appliedNames;
  QList<float> commands;
  const int count = std::min(actuatorList.size(), valueList.size());
  for (int i = 0; i < count; ++i) {
    const float clamped = command(actuatorList[i]);
    if (std::isnan(clamped)) continue;
    appliedNames << actuatorList[i];
    commands << clamped;
  }
  if (!appliedNames.isEmpty()) emit commandsApplied(appliedNames, commands);
  return applied;
}

void MotorCommandApplier::onCommandRequested(const QString& name, float value) {
  onMotorValues(QList<QString>{name}, QList<float>{value});
}
