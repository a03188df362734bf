#include "joint_animator.h"

#include <cmath>

#include <QTimer>

#include <world_model/actuator.h>
#include <world_model/robot.h>
#include <world_model/world.h>

#include "motor_command_applier.h"

JointAnimator::JointAnimator(boost::shared_ptr<VX::NextGenView::World> world, MotorCommandApplier* applier,
                             QObject* parent)
    : QObject(parent), m_world(world), m_applier(applier), m_timer(new QTimer(this)) {
  connect(m_timer, &QTimer::timeout, this, &JointAnimator::onTick);
}

void JointAnimator::start() {
  m_clock.start();
  m_timer->start(a_periodMs);
}

void JointAnimator::commandsAt(double seconds, QList<QString>* names, QList<float>* values) const {
  if (!m_world) return;
  int index = 0;
  for (const auto& robot : m_world->robots()) {
    for (const auto& actuator : robot->actuators()) {
      const bool limited = std::isfinite(actuator->lowerLimit()) && std::isfinite(actuator->upperLimit());
      const double middle = limited ? (actuator->lowerLimit() + actuator->upperLimit()) / 2.0 : 0.0;
      const double swing = limited ? (actuator->upperLimit() - actuator->lowerLimit()) / 2.0 : a_continuousSwing;
      // Each joint a little out of phase with the previous one, so the whole body moves.
      const double phase = 2.0 * M_PI * seconds / a_waveSeconds + 0.7 * index++;
      *names << QString::fromStdString(actuator->name());
      *values << static_cast<float>(middle + 0.8 * swing * std::sin(phase));
    }
  }
}

void JointAnimator::onTick() {
  QList<QString> names;
  QList<float> values;
  commandsAt(m_clock.elapsed() / 1000.0, &names, &values);
  if (!names.isEmpty()) m_applier->onMotorValues(names, values);
}
