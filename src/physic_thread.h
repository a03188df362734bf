#pragma once

#include <QThread>

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

class QTimer;

namespace VX::NextGenView {

class ForwardKinematicEngine;

// Steps the world's forward-kinematics engine every 40 ms.
//
// The object and its timer are created on the GUI thread and stay there, so
// the steps run on the GUI thread, serialised with rendering and picking:
// the world model and the scene are not guarded against concurrent access.
// The thread itself, once started, only runs an idle event loop.
class PhysicThread : public QThread {
  Q_OBJECT

 public:
  static constexpr int a_periodMs = 40;

  PhysicThread(boost::shared_ptr<ForwardKinematicEngine> engine, QObject* parent);
  // Exits the event loop; does not stop or delete the timer.
  ~PhysicThread() override;

  // Starts the 40 ms stepping and the thread.
  void init();

  QTimer* timer() const { return m_timer; }

 public slots:
  // One step of the engine, when it still exists.
  void loop();

 private:
  // Weak, so that the thread never keeps the world's engine alive.
  boost::weak_ptr<ForwardKinematicEngine> m_engine;
  QTimer* m_timer;
};

}  // namespace VX::NextGenView
