#pragma once
// Watches robot descriptions and their mesh files, and says, once the writing
// has settled, which description should be loaded again. Editors often save
// by replacing a file, which ends its watch: the path is watched again as
// soon as it exists.
#include <QFileSystemWatcher>
#include <QMap>
#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QTimer>

class RobotFileWatcher : public QObject {
  Q_OBJECT

 public:
  // Saving a file often takes several writes: they make one change.
  static constexpr int a_settleMs = 300;

  explicit RobotFileWatcher(QObject* parent = nullptr);

  // Watches the description and the files it uses, instead of what was
  // watched for it before.
  void watch(const QString& description, const QStringList& usedFiles);
  void forget(const QString& description);
  QStringList watchedFiles() const { return m_watcher.files(); }

 signals:
  void changed(const QString& description);

 private slots:
  void onFileChanged(const QString& path);
  void onDirectoryChanged(const QString& folder);
  void onSettled();

 private:
  void rewatch();

  QFileSystemWatcher m_watcher;
  QTimer m_settle;
  QMap<QString, QString> m_descriptionOf;  // watched file -> its description
  QSet<QString> m_changedDescriptions;
};
