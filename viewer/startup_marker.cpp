#include "startup_marker.h"

#include <QSettings>

const QString StartupMarker::a_key("ogreInitSucceeded");

bool StartupMarker::lastStartFailed() {
  const QSettings settings;
  return settings.contains(a_key) && !settings.value(a_key).toBool();
}

void StartupMarker::markStarting() {
  QSettings settings;
  settings.setValue(a_key, false);
  settings.sync();
}

void StartupMarker::markSucceeded() {
  QSettings settings;
  settings.setValue(a_key, true);
  settings.sync();
}

void StartupMarker::clear() {
  QSettings settings;
  settings.remove(a_key);
  settings.sync();
}

QString StartupMarker::settingsFile() { return QSettings().fileName(); }
