#pragma once
// Small measuring helpers shared by the benchmarks: memory readings, where a
// world point lands on a widget, and how many triangles a pick tests.

#include <cstddef>

#include <QPoint>

#include <OgreRay.h>
#include <OgreVector.h>

class QWidget;

namespace Ogre {
class Camera;
class SceneManager;
}  // namespace Ogre

namespace VX::NextGenView {
class Selection;
}

namespace bench {

// VmRSS of this process, in KiB (from /proc/self/status).
long residentKiB();
// Bytes the C heap has handed out and not taken back (mallinfo2).
std::size_t heapBytesInUse();

// The widget pixel where `world` appears through `camera`.
QPoint pixelOf(const Ogre::Camera& camera, const QWidget& widget, const Ogre::Vector3& world);
// The ray the picker casts through widget pixel `pixel`.
Ogre::Ray rayThrough(const Ogre::Camera& camera, const QWidget& widget, const QPoint& pixel);

// The triangles Selection::pick tests for this ray: its walk over the sorted
// ray-query results, repeated here because the picker does not count.
unsigned long trianglesTested(Ogre::SceneManager& scene, VX::NextGenView::Selection& selection, const Ogre::Ray& ray);

// Processes events until `widget`'s window is exposed; false after timeoutMs.
bool waitExposed(QWidget& widget, int timeoutMs = 5000);
// Processes events for `ms` milliseconds (timers fire, nothing is rendered by us).
void processEventsFor(int ms);

}  // namespace bench
