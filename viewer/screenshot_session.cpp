#include "screenshot_session.h"

#include <iostream>

#include <QPixmap>
#include <QScreen>

#include "view_screenshot.h"
#include "viewer_window.h"

ScreenshotSession::ScreenshotSession(ViewerWindow* window, const ViewerOptions& options, QObject* parent)
    : QObject(parent), m_window(window), m_options(options) {
  m_readyTimeout.setSingleShot(true);
  m_readyTimeout.setInterval(a_readyTimeoutMs);
  connect(&m_readyTimeout, &QTimer::timeout, this, &ScreenshotSession::onReadyTimeout);
}

void ScreenshotSession::start() {
  if (m_window->isViewReady()) {
    onViewReady();
    return;
  }
  connect(m_window, &ViewerWindow::viewReady, this, &ScreenshotSession::onViewReady);
  m_readyTimeout.start();
}

void ScreenshotSession::onViewReady() {
  m_readyTimeout.stop();
  QTimer::singleShot(a_settleMs, this, &ScreenshotSession::moveCamera);
}

void ScreenshotSession::onReadyTimeout() {
  finish(1, QString("The view was not ready after %1 s: no screenshot.").arg(a_readyTimeoutMs / 1000));
}

void ScreenshotSession::moveCamera() {
  if (m_options.viewpoint.isEmpty()) {
    savePictures();
    return;
  }
  if (!m_window->goToViewpoint(m_options.viewpoint)) {
    std::cerr << "render_widget_viewer: the viewpoint applies to the 3D view only; ignored." << std::endl;
  }
  QTimer::singleShot(a_viewpointSettleMs, this, &ScreenshotSession::savePictures);
}

void ScreenshotSession::savePictures() {
  QStringList saved;
  if (!m_options.screenshotFile.isEmpty()) {
    QString error;
    if (!ViewScreenshot::save(m_window->container(), m_options.screenshotFile, m_options.noBackground, &error)) {
      finish(1, error);
      return;
    }
    saved << m_options.screenshotFile;
  }
  if (!m_options.windowScreenshotFile.isEmpty()) {
    QScreen* screen = m_window->screen();
    const QPixmap picture = screen ? screen->grabWindow(m_window->winId()) : QPixmap();
    if (picture.isNull() || !picture.save(m_options.windowScreenshotFile)) {
      finish(1, QString("Cannot save the window screenshot %1.").arg(m_options.windowScreenshotFile));
      return;
    }
    saved << m_options.windowScreenshotFile;
  }
  finish(0, QString("Saved %1 (%2 view).").arg(saved.join(", "), m_window->shows3DView() ? "3D" : "2D"));
}

void ScreenshotSession::finish(int exitCode, const QString& message) {
  if (m_finished) return;
  m_finished = true;
  (exitCode == 0 ? std::cout : std::cerr) << "render_widget_viewer: " << message.toStdString() << std::endl;
  emit finished(exitCode);
}
