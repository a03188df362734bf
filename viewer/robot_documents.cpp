#include "robot_documents.h"

#include <algorithm>
#include <cmath>

#include <QFileInfo>

#include <ku/log.h>
#include <world_model/actuator.h>
#include <world_model/link.h>
#include <world_model/robot.h>
#include <world_model/world.h>

#include "robot_file_watcher.h"

using VX::NextGenView::Robot;

namespace {

// Joints that still exist keep their value and command (within the new limits).
void carryJointValues(const Robot& from, Robot& to) {
  for (const auto& actuator : to.actuators()) {
    const auto previous = from.actuator(actuator->name());
    if (!previous) continue;
    actuator->setCommand(previous->command());
    actuator->m_value = std::clamp(previous->m_value, actuator->lowerLimit(), actuator->upperLimit());
  }
  to.updateKinematics();
}

QStringList meshFilesOf(const Robot& robot) {
  QStringList files;
  for (const auto& link : robot.links()) {
    for (const auto& visual : link->visuals()) {
      if (!visual.meshFile.empty()) files << QString::fromStdString(visual.meshFile);
    }
  }
  files.removeDuplicates();
  return files;
}

}  // namespace

RobotDocuments::RobotDocuments(boost::shared_ptr<VX::NextGenView::World> world, QObject* parent)
    : QObject(parent), m_world(std::move(world)), m_watcher(new RobotFileWatcher(this)) {
  connect(m_watcher, &RobotFileWatcher::changed, this, [this](const QString& file) { reload(file); });
}

boost::shared_ptr<Robot> RobotDocuments::load(const QString& file, QString* error) {
  const VX::NextGenView::RobotLoadResult loaded = Robot::loadFromUrdfFile(file.toStdString());
  if (loaded.robot) return loaded.robot;
  QString message = QString::fromStdString(loaded.error);
  if (!message.contains(file)) message = file + ": " + message;
  message = tr("Cannot load the robot: %1").arg(message);
  ku::log::LogStream(ku::log::Error, "load", "viewer", __FILE__, __LINE__) << message.toStdString() << std::endl;
  if (error) *error = message;
  emit loadFailed(message);
  return nullptr;
}

bool RobotDocuments::add(const QString& file, QString* error) {
  const boost::shared_ptr<Robot> robot = load(file, error);
  if (!robot) return false;
  m_world->addRobot(robot);
  m_documents.push_back(Document{QFileInfo(file).absoluteFilePath(), robot});
  watch(m_documents.back());
  return true;
}

bool RobotDocuments::open(const QString& file, QString* error) {
  const boost::shared_ptr<Robot> robot = load(file, error);
  if (!robot) return false;  // the robots shown stay
  for (const Document& document : m_documents) m_watcher->forget(document.file);
  for (const auto& shown : m_world->robots()) m_world->removeRobot(shown);
  m_documents.clear();
  m_world->addRobot(robot);
  m_documents.push_back(Document{QFileInfo(file).absoluteFilePath(), robot});
  watch(m_documents.back());
  emit robotsReplaced(false);
  return true;
}

bool RobotDocuments::reload(const QString& file, QString* error) {
  const QString path = QFileInfo(file).absoluteFilePath();
  auto document = std::find_if(m_documents.begin(), m_documents.end(),
                               [&](const Document& candidate) { return candidate.file == path; });
  if (document == m_documents.end()) return false;
  const boost::shared_ptr<Robot> robot = load(path, error);
  if (!robot) return false;  // the last good robot stays
  carryJointValues(*document->robot, *robot);
  if (!robot->hasBaseAnnotation()) {
    // Where the viewer placed it (side by side) or the user left it.
    robot->setBasePosition(document->robot->basePosition());
    robot->setHeading(document->robot->heading());
    robot->updateKinematics();
  }
  robot->setSentence(document->robot->sentence());
  m_world->removeRobot(document->robot);
  m_world->addRobot(robot);
  document->robot = robot;
  watch(*document);
  emit robotsReplaced(true);
  return true;
}

QStringList RobotDocuments::files() const {
  QStringList list;
  for (const Document& document : m_documents) list << document.file;
  return list;
}

boost::shared_ptr<Robot> RobotDocuments::robotOf(const QString& file) const {
  const QString path = QFileInfo(file).absoluteFilePath();
  for (const Document& document : m_documents) {
    if (document.file == path) return document.robot;
  }
  return nullptr;
}

void RobotDocuments::watch(const Document& document) { m_watcher->watch(document.file, meshFilesOf(*document.robot)); }

void RobotDocuments::placeSideBySide(
    const std::function<bool(const boost::shared_ptr<Robot>&, float*, float*)>& bounds) {
  bool started = false;
  float edge = 0.0f;  // the +Y edge of the robots so far
  for (const Document& document : m_documents) {
    float low = 0.0f, high = 0.0f;
    if (!bounds(document.robot, &low, &high) || !std::isfinite(low) || !std::isfinite(high)) continue;
    if (started && !document.robot->hasBaseAnnotation()) {
      const float shift = edge + a_sideBySideGap * (high - low) - low;
      MK::Math::Position3D position = document.robot->basePosition();
      position.y += shift;
      document.robot->setBasePosition(position);
      document.robot->updateKinematics();
      low += shift;
      high += shift;
    }
    edge = started ? std::max(edge, high) : high;
    started = true;
  }
}
