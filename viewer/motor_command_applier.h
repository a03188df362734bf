#pragma once
// Applies motor commands to the world: those the view reports while the user
// drags a joint ring, and those of the joint sliders. The forward-kinematics
// engine then moves the actuators toward them.
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

#include <boost/shared_ptr.hpp>

namespace VX::NextGenView {
class World;
}

class MotorCommandApplier : public QObject {
  Q_OBJECT

 public:
  explicit MotorCommandApplier(boost::shared_ptr<VX::NextGenView::World> world, QObject* parent = nullptr);

  // The actuator's command now, or NaN when no robot has that actuator.
  float command(const QString& name) const;

 signals:
  // The names that reached an actuator and their commands after clamping to
  // the limits; unknown names are left out. Not emitted when none applied.
  void commandsApplied(const QStringList& names, const QList<float>& commands);

 public slots:
  // The container's setMotorValues. Returns how many names were applied.
  int onMotorValues(QList<QString> actuatorList, QList<float> valueList);
  // One command, from a slider.
  void onCommandRequested(const QString& name, float value);

 private:
  boost::shared_ptr<VX::NextGenView::World> m_world;
};
