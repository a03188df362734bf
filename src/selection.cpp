#include "selection.h"

#include <QMouseEvent>
#include <QWidget>

#include <OgreCamera.h>
#include <OgreEntity.h>
#include <OgreMath.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>
#include <OgreSubMesh.h>

namespace VX::NextGenView {

Selection::Selection(Ogre::SceneManager* sceneManager, Ogre::Camera* camera)
    : QObject(nullptr),
      sceneManager(sceneManager),
      camera(camera),
      pickPoint(new Ogre::Vector3(Ogre::Vector3::ZERO)),
      dragPoint(new Ogre::Vector3(Ogre::Vector3::ZERO)) {}

Selection::~Selection() {
  delete pickPoint;
  delete dragPoint;
}

void Selection::onMousePressEvent(QMouseEvent* event, QWidget* sender) {
  if (event->button() != Qt::LeftButton) return;
  const bool multiSelect = event->modifiers() & Qt::ControlModifier;
  std::string name;
  if (pick(event->x(), event->y(), sender, name)) {
    emit objectSelected(QString::fromLatin1(name.c_str()), multiSelect);
  } else {
    emit objectSelected(QString(), multiSelect);
  }
}

// A view of no area has no pixel to cast a ray through, and its camera no
// valid frustum (OGRE aborts when it is asked for one).
bool Selection::hasArea(const QWidget* widget) {
  return widget->width() > 0 && widget->height() > 0;
}

Ogre::Ray Selection::rayThrough(int x, int y, QWidget* widget) const {
  const float sx = x * (1.0f / widget->width());
  const float sy = y * (1.0f / widget->height());
  return camera->getCameraToViewportRay(sx, sy);
}

bool Selection::pick(int x, int y, QWidget* widget, std::string& name) {
  if (!hasArea(widget)) return false;
  const Ogre::Ray ray = rayThrough(x, y, widget);

  // Bounds are current only after a frame; a click may come before one.
  sceneManager->getRootSceneNode()->_update(true, false);

  // A fresh query on every pick, deliberately kept alive afterwards.
  Ogre::RaySceneQuery* query = sceneManager->createRayQuery(ray, 0xFFFFFFFF);
  query->setRay(ray);
  query->setSortByDistance(true, 0);
  query->setQueryMask(1);
  if (query->execute().empty()) return false;

  const Ogre::RaySceneQueryResult results = query->getLastResults();
  float closest = -1.0f;
  for (const Ogre::RaySceneQueryResultEntry& entry : results) {
    if (entry.movable && !entry.movable->isVisible()) continue;
    // Sorted by box distance: nothing farther can hold a nearer triangle.
    if (closest >= 0.0f && entry.distance > closest) break;
    if (!entry.movable || entry.movable->getMovableType() != "Entity") continue;

    Ogre::Entity* entity = static_cast<Ogre::Entity*>(entry.movable);
    Ogre::SceneNode* node = entity->getParentSceneNode();
    unsigned int vertexCount = 0;
    unsigned int indexCount = 0;
    Ogre::Vector3* vertices = nullptr;
    unsigned long* indices = nullptr;
    // World position and orientation, but the node's own scale only.
    getMeshInformation(entity->getMesh(), vertexCount, vertices, indexCount, indices, node->_getDerivedPosition(),
                       node->_getDerivedOrientation(), entity->getParentNode()->getScale());

    bool improved = false;
    for (int i = 0; i < static_cast<int>(indexCount); i += 3) {
      const std::pair<bool, Ogre::Real> hit = Ogre::Math::intersects(
          ray, vertices[indices[i]], vertices[indices[i + 1]], vertices[indices[i + 2]], true, false);
      if (hit.first && (closest < 0.0f || hit.second < closest)) {
        closest = hit.second;
        name = entity->getName();
        improved = true;
      }
    }
    delete[] vertices;
    delete[] indices;

    if (improved) {
      const Ogre::Vector3 point = ray.getOrigin() + ray.getDirection() * closest;
      *pickPoint = point;
      *dragPoint = point;
    }
  }
  query->clearResults();
  return closest >= 0.0f;
}

void Selection::getMeshInformation(Ogre::MeshPtr mesh, unsigned int& vertexCount, Ogre::Vector3*& vertices,
                                   unsigned int& indexCount, unsigned long*& indices,
                                   const Ogre::Vector3& position, const Ogre::Quaternion& orientation,
                                   const Ogre::Vector3& scale) {
  vertexCount = 0;
  indexCount = 0;
  bool sharedCounted = false;
  for (unsigned short i = 0; i < mesh->getNumSubMeshes(); ++i) {
    const Ogre::SubMesh* subMesh = mesh->getSubMesh(i);
    if (subMesh->useSharedVertices) {
      if (!sharedCounted) {
        vertexCount += mesh->sharedVertexData->vertexCount;
        sharedCounted = true;
      }
    } else {
      vertexCount += subMesh->vertexData->vertexCount;
    }
    indexCount += subMesh->indexData->indexCount;
  }

  vertices = new Ogre::Vector3[vertexCount];
  indices = new unsigned long[indexCount];

  bool sharedCopied = false;
  size_t currentOffset = 0;
  size_t sharedOffset = 0;
  size_t nextOffset = 0;
  size_t indexWrite = 0;
  for (unsigned short i = 0; i < mesh->getNumSubMeshes(); ++i) {
    Ogre::SubMesh* subMesh = mesh->getSubMesh(i);
    Ogre::VertexData* vertexData = subMesh->useSharedVertices ? mesh->sharedVertexData : subMesh->vertexData;

    if (!subMesh->useSharedVertices || !sharedCopied) {
      if (subMesh->useSharedVertices) {
        sharedCopied = true;
        sharedOffset = currentOffset;
      }
      const Ogre::VertexElement* element =
          vertexData->vertexDeclaration->findElementBySemantic(Ogre::VES_POSITION);
      Ogre::HardwareVertexBufferSharedPtr buffer = vertexData->vertexBufferBinding->getBuffer(element->getSource());
      unsigned char* vertex = static_cast<unsigned char*>(buffer->lock(Ogre::HardwareBuffer::HBL_READ_ONLY));
      for (size_t j = 0; j < vertexData->vertexCount; ++j, vertex += buffer->getVertexSize()) {
        float* components = nullptr;
        element->baseVertexPointerToElement(vertex, &components);
        const Ogre::Vector3 point(components[0], components[1], components[2]);
        vertices[currentOffset + j] = orientation * (point * scale) + position;
      }
      buffer->unlock();
      nextOffset += vertexData->vertexCount;
    }

    Ogre::IndexData* indexData = subMesh->indexData;
    Ogre::HardwareIndexBufferSharedPtr indexBuffer = indexData->indexBuffer;
    const size_t base = subMesh->useSharedVertices ? sharedOffset : currentOffset;
    const size_t count = indexData->indexCount / 3 * 3;  // a trailing partial triangle is dropped
    if (count > 0) {
      void* data = indexBuffer->lock(Ogre::HardwareBuffer::HBL_READ_ONLY);
      const bool wide = indexBuffer->getType() == Ogre::HardwareIndexBuffer::IT_32BIT;
      for (size_t k = 0; k < count; ++k) {
        const unsigned long index = wide ? static_cast<const uint32_t*>(data)[k] : static_cast<const uint16_t*>(data)[k];
        indices[indexWrite++] = index + base;
      }
      indexBuffer->unlock();
    }
    currentOffset = nextOffset;
  }
  // Indices dropped from partial triangles leave the tail of the array unused.
  indexCount = static_cast<unsigned int>(indexWrite);
}

bool Selection::moveAngle(float& angle, int x, int y, QWidget* widget, const Ogre::Plane& plane,
                          const Ogre::Vector3& axis, const Ogre::Vector3& center) {
  if (!hasArea(widget)) return false;
  const Ogre::Ray ray = rayThrough(x, y, widget);
  const Ogre::Vector3 radial = *pickPoint - center;
  const float radius = radial.length();

  // The cursor moves on the plane through the grab point, perpendicular to
  // the radius there, not on the rotation plane.
  const Ogre::Plane grabPlane(radial, *pickPoint);
  const std::pair<bool, Ogre::Real> hit = Ogre::Math::intersects(ray, grabPlane);
  if (!hit.first) return false;
  const Ogre::Vector3 cursor = ray.getPoint(hit.second);

  const Ogre::Vector3 previous = plane.projectVector(*dragPoint - center);
  const Ogre::Vector3 current = plane.projectVector(cursor - center);
  // The chord over the radius approximates the angle; the 0.2π gain turns the
  // joint by about 63 % of the swept angle.
  const float magnitude = (current - previous).length() / radius * Ogre::Math::PI * 0.2f;
  const float sign = previous.crossProduct(current).dotProduct(axis);
  *dragPoint = cursor;
  // No guard: a zero triple product gives a not-a-number angle.
  angle = (sign / std::fabs(sign)) * magnitude;
  return true;
}

}  // namespace VX::NextGenView
