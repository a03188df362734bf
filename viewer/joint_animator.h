#pragma once
// Keeps the robot moving without a user (--animate): every joint follows a
// slow sine wave inside its limits, sent as motor commands through the
// viewer's MotorCommandApplier, as the sliders' commands are.
#include <QElapsedTimer>
#include <QList>
#include <QObject>
#include <QString>

#include <boost/shared_ptr.hpp>

class MotorCommandApplier;
class QTimer;

namespace VX::NextGenView {
class World;
}

class JointAnimator : public QObject {
  Q_OBJECT

 public:
  static constexpr int a_periodMs = 100;         // a new command ten times a second
  static constexpr double a_waveSeconds = 8.0;   // one swing of every joint
  static constexpr float a_continuousSwing = 1.0f;  // radians either way, for joints without limits

  JointAnimator(boost::shared_ptr<VX::NextGenView::World> world, MotorCommandApplier* applier,
                QObject* parent = nullptr);

  void start();
  // The commands of the wave `seconds` after the start, in the robots' actuator order.
  void commandsAt(double seconds, QList<QString>* names, QList<float>* values) const;

 private slots:
  void onTick();

 private:
  boost::shared_ptr<VX::NextGenView::World> m_world;
  MotorCommandApplier* m_applier;
  QTimer* m_timer;
  QElapsedTimer m_clock;
};
