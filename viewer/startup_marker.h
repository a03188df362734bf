#pragma once
// The record, in the application's QSettings, of whether the last 3D start-up
// finished: "ogreInitSucceeded". The container writes false before it builds
// the 3D engine and true once the engine stands. The render window, where a
// broken OpenGL driver usually fails, comes later: the viewer marks that step
// too, so that a crash there also sends the next start to the 2D view.
#include <QString>

class StartupMarker {
 public:
  static const QString a_key;

  // True when the key exists and is false: the last 3D start-up did not finish.
  static bool lastStartFailed();
  // Written to disk at once: a crash right after must leave it behind.
  static void markStarting();
  static void markSucceeded();
  // Forgets the record: the next start tries the 3D view again.
  static void clear();
  // Where the record lives, for messages.
  static QString settingsFile();
};
