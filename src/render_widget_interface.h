#pragma once

#include <QString>
#include <QWidget>

namespace VX::NextGenView {

// The abstract view that the container drives: the 3D view or the 2D picture.
// A view builds its drawing surface in initRenderWindow(), draws a frame in
// updateView() and announces the kinematic chain the user selected.
class RenderWidgetInterface : public QWidget {
  Q_OBJECT

 public:
  explicit RenderWidgetInterface(QWidget* parent) : QWidget(parent), m_initialized(false) {}
  ~RenderWidgetInterface() override;

  // Builds the drawing surface. Its last step sets m_initialized and emits
  // renderWindowReady() only the first time, so the signal comes at most once.
  virtual void initRenderWindow() = 0;

  // Set once initRenderWindow() completed; never reset. Read by the container.
  bool m_initialized;

 signals:
  void chainSelected(const QString& chainName);
  void renderWindowReady();

 public slots:
  virtual void updateView() = 0;
  virtual void displayInfo(bool isInfoDisplayed) = 0;

 protected:
  // The common last step of initRenderWindow().
  void markInitialized();
};

}  // namespace VX::NextGenView
