#include "scene_assets.h"

#include <atomic>
#include <cmath>

#include <OgreResourceGroupManager.h>
#include <OgreSceneManager.h>

#include <ku/log.h>

#include "mesh_assembly.h"
#include "shape_geometry.h"

namespace VX::NextGenView {
namespace {

// The tube of a ring and the marker, relative to the ring's radius.
const float a_ringTubeRatio = 0.1f;
const float a_markerRatio = 0.22f;

std::string nextPrefix() {
  static std::atomic<int> s_count{0};
  return "SceneView" + std::to_string(++s_count);
}

int sizeKey(float radius) { return static_cast<int>(std::lround(radius * 10000.0f)); }

}  // namespace

SceneAssets::SceneAssets(Ogre::SceneManager* sceneManager)
    : m_sceneManager(sceneManager),
      m_prefix(nextPrefix()),
      m_group(m_prefix),
      m_materials(m_prefix, m_group) {
  Ogre::ResourceGroupManager::getSingleton().createResourceGroup(m_group);
}

SceneAssets::~SceneAssets() {
  m_rings.clear();
  m_markers.clear();
  try {
    Ogre::ResourceGroupManager::getSingleton().destroyResourceGroup(m_group);
  } catch (const std::exception& exception) {
    ku::log::LogStream(ku::log::Error, "~SceneAssets", "rdr.scene", __FILE__, __LINE__)
        << "Cannot release the scene's resources: " << exception.what() << std::endl;
  }
}

std::string SceneAssets::uniqueMeshName(const std::string& hint) {
  return m_prefix + "/Mesh" + std::to_string(++m_meshCount) + "/" + hint;
}

std::string SceneAssets::freeEntityName(const std::string& wanted) const {
  std::string name = wanted;
  for (int copy = 2; m_sceneManager->hasEntity(name); ++copy) name = wanted + "#" + std::to_string(copy);
  return name;
}

Ogre::MeshPtr SceneAssets::ringMesh(float radius) {
  Ogre::MeshPtr& mesh = m_rings[sizeKey(radius)];
  if (!mesh) {
    MeshAssembly assembly;
    assembly.add(m_materials.ring(), ShapeGeometry::torus(radius, radius * a_ringTubeRatio));
    mesh = assembly.create(uniqueMeshName("Ring"), m_group);
  }
  return mesh;
}

Ogre::MeshPtr SceneAssets::commandMarkerMesh(float ringRadius) {
  Ogre::MeshPtr& mesh = m_markers[sizeKey(ringRadius)];
  if (!mesh) {
    MeshAssembly assembly;
    assembly.add(m_materials.commandTarget(), ShapeGeometry::sphere(ringRadius * a_markerRatio, 10, 16));
    mesh = assembly.create(uniqueMeshName("CommandTarget"), m_group);
  }
  return mesh;
}

}  // namespace VX::NextGenView
