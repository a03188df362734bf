#pragma once
// A headless run: waits until the window's view is ready and has drawn a few
// frames, moves the camera to the viewpoint asked for, saves the pictures and
// reports an exit status.
#include <QObject>
#include <QString>
#include <QTimer>

#include "viewer_options.h"

class ViewerWindow;

class ScreenshotSession : public QObject {
  Q_OBJECT

 public:
  // Software OpenGL under a virtual X server can take a while to start.
  static constexpr int a_readyTimeoutMs = 60000;
  // The container redraws every 25 ms: about twenty frames before the picture.
  static constexpr int a_settleMs = 500;
  // Frames drawn after a viewpoint change.
  static constexpr int a_viewpointSettleMs = 200;

  ScreenshotSession(ViewerWindow* window, const ViewerOptions& options, QObject* parent = nullptr);

  void start();

 signals:
  // 0 when every picture asked for was written; the message was printed.
  void finished(int exitCode);

 private slots:
  void onViewReady();
  void onReadyTimeout();
  void moveCamera();
  void savePictures();

 private:
  void finish(int exitCode, const QString& message);

  ViewerWindow* m_window;
  ViewerOptions m_options;
  QTimer m_readyTimeout;
  bool m_finished = false;
};
