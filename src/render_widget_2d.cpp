#include "render_widget_2d.h"

#include <QLabel>
#include <QMouseEvent>
#include <QPalette>
#include <QPixmap>
#include <QResizeEvent>

#include <ku/log.h>
#include <world_model/robot.h>
#include <world_model/world.h>

#include "bitmap_area.h"

namespace VX::NextGenView {

const QColor RenderWidget2d::a_backgroundColor(84, 84, 168, 255);
const QString RenderWidget2d::a_backgroundFilesPrefix("/media/images/ogre/zel");
const QString RenderWidget2d::a_backgroundFilesSuffix(".png");

namespace {

QString pictureName(const QString& selection) {
  return RenderWidget2d::a_backgroundFilesPrefix + selection + RenderWidget2d::a_backgroundFilesSuffix;
}

QString chainPicture(const QString& chain) { return pictureName("_" + chain); }

}  // namespace

RenderWidget2d::RenderWidget2d(QWidget* parent, boost::shared_ptr<World> world, const QString& dataPath)
    : RenderWidgetInterface(parent), m_world(world), m_label(nullptr), m_scale(1.0f), m_dataPath(dataPath) {
  QPalette colours = palette();
  colours.setBrush(QPalette::All, QPalette::Base, QBrush(a_backgroundColor));
  colours.setBrush(QPalette::All, QPalette::Window, QBrush(a_backgroundColor));
  setBackgroundRole(QPalette::Base);
  setPalette(colours);
  setAutoFillBackground(true);

  // The first picture goes straight to the label: nothing is announced.
  m_label = new QLabel(this);
  m_label->setPixmap(QPixmap(m_dataPath + pictureName("_unknown")));
  m_label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
  m_label->setScaledContents(true);
}

RenderWidget2d::~RenderWidget2d() = default;

void RenderWidget2d::initRenderWindow() { markInitialized(); }

void RenderWidget2d::displayInfo(bool) {}

void RenderWidget2d::resizeEvent(QResizeEvent* event) {
  const QPixmap pixmap = m_label->pixmap(Qt::ReturnByValue);
  // A missing picture leaves an empty pixmap: nothing to scale.
  if (pixmap.height() > 0) {
    const int w = event->size().width();
    const int h = event->size().height();
    const float ratio = static_cast<float>(pixmap.width()) / static_cast<float>(pixmap.height());
    if (h * ratio > w) {
      m_scale = static_cast<float>(pixmap.width()) / static_cast<float>(w);
      m_label->resize(w, static_cast<int>(w / ratio));
    } else {
      m_scale = static_cast<float>(pixmap.height()) / static_cast<float>(h);
      m_label->resize(static_cast<int>(h * ratio), h);
    }
  }
  QWidget::resizeEvent(event);
}

void RenderWidget2d::updateView() {
  const std::set<boost::shared_ptr<Robot>> robots = m_world ? m_world->robots() : std::set<boost::shared_ptr<Robot>>();
  if (robots.empty()) {
    setSelection(pictureName("_unknown"), QString());
    return;
  }
  if (robots.size() > 1) {
    ku::log::LogStream(ku::log::Error, "updateView", "rdr.widget", "", 0)
        << "RenderWidget2d doesn't support multi robot " << robots.size() << std::endl
        << "Only the first will be visible." << std::endl;
    return;
  }
  if (!m_bitmapAreas.isEmpty()) return;

  const std::vector<boost::shared_ptr<ActuatorsTree>> chains = (*robots.begin())->rootTree()->children();
  if (chains.size() != 5) {
    ku::log::LogStream(ku::log::Error, "updateView", "rdr.widget", "", 0)
        << "RenderWidget2d doesn't support " << chains.size() << " chains" << std::endl;
    return;
  }
  setSelection(pictureName(""), QString());

  QStringList c;
  for (const boost::shared_ptr<ActuatorsTree>& chain : chains) c << QString::fromLatin1(chain->name().c_str());
  // Fixed to the layout of the pictures: head at the top centre, the arms
  // upper left and right, the legs lower left and right.
  const struct {
    int chain;
    QRect rect;
  } areas[] = {
      {0, QRect(QPoint(306, 54), QPoint(517, 232))},  {2, QRect(QPoint(134, 207), QPoint(281, 497))},
      {1, QRect(QPoint(519, 207), QPoint(697, 532))}, {4, QRect(QPoint(243, 506), QPoint(401, 917))},
      {3, QRect(QPoint(417, 504), QPoint(587, 916))},
  };
  for (const auto& area : areas) {
    m_bitmapAreas.append(BitmapArea::createBitmapArea(area.rect, chainPicture(c[area.chain]), c[area.chain]));
  }
  update();
}

void RenderWidget2d::mousePressEvent(QMouseEvent* event) {
  if (m_bitmapAreas.isEmpty()) return;
  if (const boost::shared_ptr<BitmapArea> area = BitmapArea::areaAt(m_bitmapAreas, picturePoint(event->pos()))) {
    setSelection(area->image, area->chainName);
  } else {
    setSelection(pictureName(""), QString());
  }
}

QPoint RenderWidget2d::picturePoint(const QPoint& widgetPoint) const {
  return QPoint(qRound((widgetPoint.x() - m_label->x()) * m_scale), qRound((widgetPoint.y() - m_label->y()) * m_scale));
}

void RenderWidget2d::setSelection(const QString& image, const QString& chainName) {
  if (image == m_currentImage) return;
  m_label->setPixmap(QPixmap(m_dataPath + image));
  m_currentImage = image;
  update();
  emit chainSelected(chainName);
}

}  // namespace VX::NextGenView
