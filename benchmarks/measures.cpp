#include "measures.h"

#include <malloc.h>

#include <fstream>
#include <string>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>
#include <QWidget>
#include <QWindow>

#include <OgreCamera.h>
#include <OgreEntity.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>

#include "selection.h"

namespace bench {

long residentKiB() {
  std::ifstream status("/proc/self/status");
  std::string key;
  while (status >> key) {
    if (key == "VmRSS:") {
      long kib = 0;
      status >> kib;
      return kib;
    }
    status.ignore(1 << 16, '\n');
  }
  return -1;
}

std::size_t heapBytesInUse() {
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;  // small blocks plus mmap'ed ones
}

QPoint pixelOf(const Ogre::Camera& camera, const QWidget& widget, const Ogre::Vector3& world) {
  const Ogre::Vector3 ndc = camera.getProjectionMatrix() * camera.getViewMatrix() * world;
  return QPoint(static_cast<int>((ndc.x + 1.0f) * 0.5f * widget.width()),
                static_cast<int>((1.0f - ndc.y) * 0.5f * widget.height()));
}

Ogre::Ray rayThrough(const Ogre::Camera& camera, const QWidget& widget, const QPoint& pixel) {
  // The picker's own arithmetic: a pixel over the widget's size.
  return camera.getCameraToViewportRay(pixel.x() * (1.0f / widget.width()), pixel.y() * (1.0f / widget.height()));
}

unsigned long trianglesTested(Ogre::SceneManager& scene, VX::NextGenView::Selection& selection, const Ogre::Ray& ray) {
  scene.getRootSceneNode()->_update(true, false);
  Ogre::RaySceneQuery* query = scene.createRayQuery(ray, 1);
  query->setSortByDistance(true, 0);
  const Ogre::RaySceneQueryResult results = query->execute();
  unsigned long tested = 0;
  float closest = -1.0f;
  for (const Ogre::RaySceneQueryResultEntry& entry : results) {
    if (entry.movable && !entry.movable->isVisible()) continue;
    if (closest >= 0.0f && entry.distance > closest) break;
    if (!entry.movable || entry.movable->getMovableType() != "Entity") continue;
    auto* entity = static_cast<Ogre::Entity*>(entry.movable);
    Ogre::SceneNode* node = entity->getParentSceneNode();
    unsigned int vertexCount = 0, indexCount = 0;
    Ogre::Vector3* vertices = nullptr;
    unsigned long* indices = nullptr;
    selection.getMeshInformation(entity->getMesh(), vertexCount, vertices, indexCount, indices,
                                 node->_getDerivedPosition(), node->_getDerivedOrientation(), node->getScale());
    tested += indexCount / 3;
    for (unsigned int i = 0; i + 2 < indexCount; i += 3) {
      const auto hit = Ogre::Math::intersects(ray, vertices[indices[i]], vertices[indices[i + 1]],
                                              vertices[indices[i + 2]], true, false);
      if (hit.first && (closest < 0.0f || hit.second < closest)) closest = hit.second;
    }
    delete[] vertices;
    delete[] indices;
  }
  scene.destroyQuery(query);
  return tested;
}

bool waitExposed(QWidget& widget, int timeoutMs) {
  QElapsedTimer clock;
  clock.start();
  // Short sleeps: the start-up figure should not carry a 10 ms granularity.
  while (!(widget.windowHandle() && widget.windowHandle()->isExposed())) {
    if (clock.elapsed() > timeoutMs) return false;
    QCoreApplication::processEvents(QEventLoop::AllEvents);
    QThread::usleep(200);
  }
  return true;
}

void processEventsFor(int ms) {
  QElapsedTimer clock;
  clock.start();
  while (clock.elapsed() < ms) {
    QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    QThread::usleep(500);
  }
}

}  // namespace bench
