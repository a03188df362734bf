#include "physic_thread.h"

#include <QTimer>

#include <world_model/forward_kinematic_engine.h>

namespace VX::NextGenView {

PhysicThread::PhysicThread(boost::shared_ptr<ForwardKinematicEngine> engine, QObject* parent)
    : QThread(parent), m_engine(engine), m_timer(new QTimer()) {}

PhysicThread::~PhysicThread() {
  exit(0);
  m_engine.reset();
}

void PhysicThread::init() {
  connect(m_timer, SIGNAL(timeout()), this, SLOT(loop()));
  m_timer->start(a_periodMs);
  start(QThread::InheritPriority);
}

void PhysicThread::loop() {
  // The strong reference lives only for this step.
  if (boost::shared_ptr<ForwardKinematicEngine> engine = m_engine.lock()) {
    engine->run(a_periodMs);
  }
}

}  // namespace VX::NextGenView
