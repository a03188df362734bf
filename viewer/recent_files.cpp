#include "recent_files.h"

#include <QAction>
#include <QFileInfo>
#include <QMenu>
#include <QSettings>

const QString RecentFiles::a_settingsKey("Viewer/recentRobotFiles");

RecentFiles::RecentFiles(QMenu* menu, QObject* parent) : QObject(parent), m_menu(menu) { fillMenu(); }

QStringList RecentFiles::files() const { return QSettings().value(a_settingsKey).toStringList(); }

void RecentFiles::add(const QString& file) {
  const QString path = QFileInfo(file).absoluteFilePath();
  QStringList list = files();
  list.removeAll(path);
  list.prepend(path);
  while (list.size() > a_maximum) list.removeLast();
  QSettings().setValue(a_settingsKey, list);
  fillMenu();
}

void RecentFiles::fillMenu() {
  // The menu is rebuilt from inside one of its own actions' triggered signal
  // (opening a recent file adds it again): the old actions are deleted once
  // control is back in the event loop, not while Qt still emits from them.
  for (QAction* action : m_menu->actions()) {
    m_menu->removeAction(action);
    action->deleteLater();
  }
  const QStringList list = files();
  for (int i = 0; i < list.size(); ++i) {
    const QString file = list[i];
    QAction* action = m_menu->addAction(QString("&%1 %2").arg(i + 1).arg(QFileInfo(file).fileName()));
    action->setToolTip(file);
    action->setData(file);
    connect(action, &QAction::triggered, this, [this, file] { emit openRequested(file); });
  }
  m_menu->setEnabled(!list.isEmpty());
}
