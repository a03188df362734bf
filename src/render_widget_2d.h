#pragma once

#include <QColor>
#include <QList>
#include <QString>

#include <boost/shared_ptr.hpp>

#include "render_widget_interface.h"

class QLabel;

namespace VX {
class BitmapArea;
}

namespace VX::NextGenView {

class World;

// The view shown when the host asks for no 3D view: a pre-rendered picture of
// the robot, scaled to the widget with its aspect kept. Clicking one of the
// five body chains shows a picture with that chain highlighted and emits
// chainSelected.
class RenderWidget2d : public RenderWidgetInterface {
  Q_OBJECT

 public:
  static const QColor a_backgroundColor;
  static const QString a_backgroundFilesPrefix;
  static const QString a_backgroundFilesSuffix;

  RenderWidget2d(QWidget* parent, boost::shared_ptr<World> world, const QString& dataPath);
  ~RenderWidget2d() override;

  void initRenderWindow() override;
  // Shows a picture (relative to the data path) and announces a chain; does
  // nothing when that picture is already shown.
  void setSelection(const QString& image, const QString& chainName);

  const QList<boost::shared_ptr<BitmapArea>>& bitmapAreas() const { return m_bitmapAreas; }
  QLabel* label() const { return m_label; }
  float scale() const { return m_scale; }
  // The unscaled picture's pixel under a point of the widget.
  QPoint picturePoint(const QPoint& widgetPoint) const;
  const QString& currentImage() const { return m_currentImage; }

 public slots:
  void updateView() override;
  void displayInfo(bool isInfoDisplayed) override;

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  QList<boost::shared_ptr<BitmapArea>> m_bitmapAreas;
  boost::shared_ptr<World> m_world;
  QLabel* m_label;
  float m_scale;
  QString m_currentImage;
  QString m_dataPath;
};

}  // namespace VX::NextGenView
