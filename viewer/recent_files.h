#pragma once
// The robot files opened last, newest first, kept in the viewer's settings,
// and the File menu's list of them.
#include <QObject>
#include <QString>
#include <QStringList>

class QMenu;

class RecentFiles : public QObject {
  Q_OBJECT

 public:
  static constexpr int a_maximum = 8;
  static const QString a_settingsKey;

  RecentFiles(QMenu* menu, QObject* parent = nullptr);

  QStringList files() const;
  // Puts the file first (once) and refreshes the menu.
  void add(const QString& file);

 signals:
  void openRequested(const QString& file);

 private:
  void fillMenu();

  QMenu* m_menu;
};
