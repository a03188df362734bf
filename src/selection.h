#pragma once

#include <string>

#include <QObject>
#include <QString>

#include <OgreMesh.h>
#include <OgrePlane.h>
#include <OgreQuaternion.h>
#include <OgreVector.h>

class QMouseEvent;
class QWidget;

namespace Ogre {
class Camera;
class SceneManager;
}  // namespace Ogre

namespace VX::NextGenView {

// Turns a click into the name of the entity under the cursor: a ray from the
// camera through the pixel, a bounding-box query sorted by distance, then a
// test against every front-facing triangle of each candidate mesh. It keeps
// the point the ray struck, where a joint-controller drag starts.
class Selection : public QObject {
  Q_OBJECT

 public:
  Selection(Ogre::SceneManager* sceneManager, Ogre::Camera* camera);
  ~Selection() override;

  // Casts the ray through widget pixel (x, y). On a hit: true, `name` is the
  // entity's name, and pickPoint and dragPoint hold the hit point. Otherwise
  // false and `name` is left alone.
  bool pick(int x, int y, QWidget* widget, std::string& name);

  // Flattens a triangle-list mesh into world-space vertices and triangle
  // indices, allocated here with new[]; the caller releases them with delete[].
  void getMeshInformation(Ogre::MeshPtr mesh, unsigned int& vertexCount, Ogre::Vector3*& vertices,
                          unsigned int& indexCount, unsigned long*& indices, const Ogre::Vector3& position,
                          const Ogre::Quaternion& orientation, const Ogre::Vector3& scale);

  // The signed angle about `axis` through `center` that the cursor at (x, y)
  // swept since the last drag point; false when the ray misses the grab plane.
  bool moveAngle(float& angle, int x, int y, QWidget* widget, const Ogre::Plane& plane, const Ogre::Vector3& axis,
                 const Ogre::Vector3& center);

  Ogre::SceneManager* sceneManager;  // not owned
  Ogre::Camera* camera;              // not owned
  Ogre::Vector3* pickPoint;          // where the last successful pick struck
  Ogre::Vector3* dragPoint;          // the running point of a controller drag

 signals:
  void objectSelected(const QString&, bool multiSelect);

 public slots:
  // Left clicks only; Ctrl makes it a multiple selection. A click on nothing
  // reports a null name.
  void onMousePressEvent(QMouseEvent* event, QWidget* sender);

 private:
  static bool hasArea(const QWidget* widget);
  Ogre::Ray rayThrough(int x, int y, QWidget* widget) const;
};

}  // namespace VX::NextGenView
