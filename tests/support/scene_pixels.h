#pragma once
// Where things of the 3D scene appear in the widget, and real mouse input on
// them: clicks through QTest, moves with a button held through sendEvent
// (QTest::mouseMove would move the real cursor).

#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include <QApplication>
#include <QMouseEvent>
#include <QTest>
#include <QWidget>

#include <OgreCamera.h>
#include <OgreEntity.h>
#include <OgreMath.h>
#include <OgreSceneNode.h>

#include <scene_view/joint_controller_3d_view.h>
#include <scene_view/link_3d_view.h>
#include <scene_view/world_3d_view.h>
#include <world_model/joint_controller.h>

#include "camera.h"
#include "render_widget.h"
#include "selection.h"
#include "support/projection.h"
#include "support/widget_window.h"

namespace testing_support {

inline Ogre::Camera& ogreCamera(VX::NextGenView::RenderWidget& widget) { return *widget.camera()->ogreCamera(); }

inline QPoint pixelOf(VX::NextGenView::RenderWidget& widget, const Ogre::Vector3& world) {
  return pixelOf(ogreCamera(widget), widget, world);
}

// The view whose frame has that name, of either kind.
template <typename View>
boost::shared_ptr<View> viewNamed(const std::deque<boost::shared_ptr<View>>& views, const std::string& name) {
  for (const auto& view : views)
    if (view && view->frame()->name() == name) return view;
  return {};
}
inline boost::shared_ptr<VX::NextGenView::JointController3DView> controllerView(VX::NextGenView::RenderWidget& widget,
                                                                               const std::string& name) {
  return viewNamed(widget.worldView()->jointControllerViews(), name);
}
inline boost::shared_ptr<VX::NextGenView::Link3DView> linkView(VX::NextGenView::RenderWidget& widget,
                                                              const std::string& name) {
  return viewNamed(widget.worldView()->linkViews(), name);
}

// The first of the candidate world points whose pixel the widget's picker
// resolves to `entityName`.
inline std::optional<QPoint> pixelPicking(VX::NextGenView::RenderWidget& widget, const std::string& entityName,
                                          const std::vector<Ogre::Vector3>& candidates) {
  auto selection = VX::NextGenView::RenderWidgetTestAccess::selection(widget);
  for (const Ogre::Vector3& point : candidates) {
    const QPoint pixel = pixelOf(widget, point);
    if (!widget.rect().contains(pixel)) continue;
    std::string name;
    if (selection->pick(pixel.x(), pixel.y(), &widget, name) && name == entityName) return pixel;
  }
  return std::nullopt;
}

// Points on a joint controller's ring (it lies in its node's XY plane).
inline std::vector<Ogre::Vector3> ringPoints(const VX::NextGenView::JointController3DView& view, int count = 48) {
  std::vector<Ogre::Vector3> points;
  const Ogre::SceneNode* node = view.sceneNode();
  for (int i = 0; i < count; ++i) {
    const float angle = Ogre::Math::TWO_PI * i / count;
    const Ogre::Vector3 local(view.ringRadius() * std::cos(angle), view.ringRadius() * std::sin(angle), 0.0f);
    points.push_back(node->_getDerivedOrientation() * local + node->_getDerivedPosition());
  }
  return points;
}

// The centre of an entity's world bounding box, then a grid over the box.
inline std::vector<Ogre::Vector3> boxPoints(const Ogre::Entity& entity, int steps = 6) {
  const Ogre::AxisAlignedBox& box = entity.getWorldBoundingBox(true);
  std::vector<Ogre::Vector3> points{box.getCenter()};
  const Ogre::Vector3 size = box.getSize();
  for (int i = 1; i < steps; ++i)
    for (int j = 1; j < steps; ++j)
      for (int k = 1; k < steps; ++k)
        points.push_back(box.getMinimum() + size * Ogre::Vector3(float(i) / steps, float(j) / steps, float(k) / steps));
  return points;
}

inline std::optional<QPoint> ringPixel(VX::NextGenView::RenderWidget& widget, const std::string& controllerName) {
  auto view = controllerView(widget, controllerName);
  if (!view) return std::nullopt;
  return pixelPicking(widget, controllerName, ringPoints(*view));
}

inline std::optional<QPoint> linkPixel(VX::NextGenView::RenderWidget& widget, const std::string& linkName) {
  auto view = linkView(widget, linkName);
  if (!view || !view->entity()) return std::nullopt;
  return pixelPicking(widget, linkName, boxPoints(*view->entity()));
}

// The pixel `pixels` away from the grab pixel, across the ring's on-screen
// radius: counter-clockwise as the viewer sees it, or clockwise.
inline QPoint alongRing(VX::NextGenView::RenderWidget& widget, const VX::NextGenView::JointController& controller,
                        const QPoint& grab, float pixels, bool counterClockwise) {
  const Eigen::Vector3f c = controller.rotationCenter();
  const QPointF radial = grab - pixelOf(widget, Ogre::Vector3(c.x(), c.y(), c.z()));
  const qreal length = std::hypot(radial.x(), radial.y());
  // Screen y grows downward: (y, -x) turns counter-clockwise on screen.
  QPointF tangent(radial.y() / length, -radial.x() / length);
  if (!counterClockwise) tangent = -tangent;
  return (QPointF(grab) + tangent * pixels).toPoint();
}

// A move with the left button held, as a drag delivers it.
inline void dragTo(QWidget& widget, const QPoint& pixel, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
  QMouseEvent move(QEvent::MouseMove, QPointF(pixel), Qt::NoButton, Qt::LeftButton, modifiers);
  QApplication::sendEvent(&widget, &move);
}

// A move with no button.
inline void hoverTo(QWidget& widget, const QPoint& pixel) {
  QMouseEvent move(QEvent::MouseMove, QPointF(pixel), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
  QApplication::sendEvent(&widget, &move);
}

// Shows the window and builds the scene's entities (they come with the first
// update of the scene view).
inline bool showWithEntities(WidgetWindow& window) {
  if (!window.show()) return false;
  window.widget->updateView();
  return true;
}

}  // namespace testing_support
