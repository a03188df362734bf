#pragma once

#include <map>
#include <memory>
#include <string>

#include <OgreMesh.h>

#include "material_library.h"
#include "mesh_file_loader.h"

namespace Ogre {
class SceneManager;
}

namespace VX::NextGenView {

// The OGRE resources one World3DView creates: its own resource group (so
// that they all go away together), materials, meshes, and the unique names
// they need. Meshes can only be made once the render system is ready.
class SceneAssets {
 public:
  explicit SceneAssets(Ogre::SceneManager* sceneManager);
  ~SceneAssets();  // destroys the resource group and everything in it

  SceneAssets(const SceneAssets&) = delete;
  SceneAssets& operator=(const SceneAssets&) = delete;

  Ogre::SceneManager* sceneManager() const { return m_sceneManager; }
  const std::string& group() const { return m_group; }
  MaterialLibrary& materials() { return m_materials; }
  MeshFileLoader& meshFiles() { return m_meshFiles; }

  // A mesh name of this scene, unique across scenes.
  std::string uniqueMeshName(const std::string& hint);
  // `wanted` when no entity has that name yet, else a variant of it.
  std::string freeEntityName(const std::string& wanted) const;

  // A joint ring of that radius, its tube in proportion; shared by rings of
  // the same size.
  Ogre::MeshPtr ringMesh(float radius);
  // The small sphere that marks a pending command's target on a ring.
  Ogre::MeshPtr commandMarkerMesh(float ringRadius);

 private:
  Ogre::SceneManager* m_sceneManager;
  std::string m_prefix;
  std::string m_group;
  MaterialLibrary m_materials;
  MeshFileLoader m_meshFiles;
  std::map<int, Ogre::MeshPtr> m_rings;    // by radius in tenths of a millimetre
  std::map<int, Ogre::MeshPtr> m_markers;  // by ring radius, likewise
  int m_meshCount = 0;
};

}  // namespace VX::NextGenView
