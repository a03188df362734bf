#include "robot_file_watcher.h"

#include <QDir>
#include <QFileInfo>

RobotFileWatcher::RobotFileWatcher(QObject* parent) : QObject(parent) {
  m_settle.setSingleShot(true);
  m_settle.setInterval(a_settleMs);
  connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &RobotFileWatcher::onFileChanged);
  connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &RobotFileWatcher::onDirectoryChanged);
  connect(&m_settle, &QTimer::timeout, this, &RobotFileWatcher::onSettled);
}

void RobotFileWatcher::watch(const QString& description, const QStringList& usedFiles) {
  forget(description);
  QStringList files{description};
  files << usedFiles;
  for (const QString& file : files) {
    const QString path = QFileInfo(file).absoluteFilePath();
    if (m_descriptionOf.contains(path)) continue;
    m_descriptionOf.insert(path, description);
    if (QFileInfo::exists(path)) m_watcher.addPath(path);
    // The folder tells when a replaced or deleted file comes back.
    const QString folder = QFileInfo(path).absolutePath();
    if (!m_watcher.directories().contains(folder)) m_watcher.addPath(folder);
  }
}

void RobotFileWatcher::forget(const QString& description) {
  for (auto it = m_descriptionOf.begin(); it != m_descriptionOf.end();) {
    if (it.value() != description) {
      ++it;
      continue;
    }
    m_watcher.removePath(it.key());
    it = m_descriptionOf.erase(it);
  }
  // Folders no watched file lives in any more.
  QSet<QString> folders;
  for (const QString& path : m_descriptionOf.keys()) folders.insert(QFileInfo(path).absolutePath());
  for (const QString& folder : m_watcher.directories()) {
    if (!folders.contains(folder)) m_watcher.removePath(folder);
  }
}

void RobotFileWatcher::onFileChanged(const QString& path) {
  if (m_descriptionOf.contains(path)) m_changedDescriptions.insert(m_descriptionOf.value(path));
  m_settle.start();
}

void RobotFileWatcher::onDirectoryChanged(const QString& folder) {
  // A watched file of that folder that is no longer watched was replaced.
  const QStringList watched = m_watcher.files();
  for (auto it = m_descriptionOf.constBegin(); it != m_descriptionOf.constEnd(); ++it) {
    if (QFileInfo(it.key()).absolutePath() == folder && !watched.contains(it.key())) {
      m_changedDescriptions.insert(it.value());
    }
  }
  m_settle.start();
}

void RobotFileWatcher::onSettled() {
  rewatch();
  const QSet<QString> descriptions = m_changedDescriptions;
  m_changedDescriptions.clear();
  for (const QString& description : descriptions) emit changed(description);
}

void RobotFileWatcher::rewatch() {
  const QStringList watched = m_watcher.files();
  for (const QString& path : m_descriptionOf.keys()) {
    if (!watched.contains(path) && QFileInfo::exists(path)) m_watcher.addPath(path);
  }
}
