#pragma once
// A bare OGRE scene for the picker: the widget's engine configuration, an
// OGRE window of its own (hardware buffers need a render system), a camera
// on the +Z axis looking down -Z at the origin, and manual meshes whose
// buffers keep a readable shadow copy.

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <QTemporaryDir>
#include <QWidget>

#include <OgreCamera.h>
#include <OgreEntity.h>
#include <OgreHardwareBufferManager.h>
#include <OgreMeshManager.h>
#include <OgreRenderWindow.h>
#include <OgreRoot.h>
#include <OgreSceneManager.h>
#include <OgreSceneNode.h>
#include <OgreSubMesh.h>

#include <render_engine/ogre_engine.h>

#include "selection.h"
#include "support/projection.h"
#include "support/widget_window.h"

namespace testing_support {

// One sub-mesh: its own vertices, or none to index the shared ones.
struct MeshPart {
  std::vector<Ogre::Vector3> vertices;
  std::vector<std::uint32_t> indices;
  bool wide = false;  // 32-bit indices
};

// Each vertex holds a normal and then the position, so a reader must honour
// the element's offset and the vertex size.
inline void fillVertexData(Ogre::VertexData* data, const std::vector<Ogre::Vector3>& positions) {
  data->vertexDeclaration->addElement(0, 0, Ogre::VET_FLOAT3, Ogre::VES_NORMAL);
  data->vertexDeclaration->addElement(0, 12, Ogre::VET_FLOAT3, Ogre::VES_POSITION);
  std::vector<float> raw;
  for (const Ogre::Vector3& p : positions) raw.insert(raw.end(), {0.0f, 0.0f, 1.0f, p.x, p.y, p.z});
  auto buffer = Ogre::HardwareBufferManager::getSingleton().createVertexBuffer(
      24, positions.size(), Ogre::HardwareBuffer::HBU_STATIC_WRITE_ONLY, true);
  buffer->writeData(0, buffer->getSizeInBytes(), raw.data(), true);
  data->vertexBufferBinding->setBinding(0, buffer);
  data->vertexStart = 0;
  data->vertexCount = positions.size();
}

inline Ogre::HardwareIndexBufferSharedPtr indexBuffer(const MeshPart& part) {
  auto buffer = Ogre::HardwareBufferManager::getSingleton().createIndexBuffer(
      part.wide ? Ogre::HardwareIndexBuffer::IT_32BIT : Ogre::HardwareIndexBuffer::IT_16BIT, part.indices.size(),
      Ogre::HardwareBuffer::HBU_STATIC_WRITE_ONLY, true);
  if (part.wide) {
    buffer->writeData(0, buffer->getSizeInBytes(), part.indices.data(), true);
  } else {
    const std::vector<std::uint16_t> narrow(part.indices.begin(), part.indices.end());
    buffer->writeData(0, buffer->getSizeInBytes(), narrow.data(), true);
  }
  return buffer;
}

inline Ogre::MeshPtr buildMesh(const std::string& name, const std::vector<MeshPart>& parts,
                               const std::vector<Ogre::Vector3>& shared = {}) {
  Ogre::MeshPtr mesh = Ogre::MeshManager::getSingleton().createManual(
      name, Ogre::ResourceGroupManager::DEFAULT_RESOURCE_GROUP_NAME);
  Ogre::AxisAlignedBox bounds;
  if (!shared.empty()) {
    mesh->sharedVertexData = OGRE_NEW Ogre::VertexData();
    fillVertexData(mesh->sharedVertexData, shared);
    for (const Ogre::Vector3& p : shared) bounds.merge(p);
  }
  for (const MeshPart& part : parts) {
    Ogre::SubMesh* subMesh = mesh->createSubMesh();
    subMesh->useSharedVertices = part.vertices.empty();
    if (!subMesh->useSharedVertices) {
      subMesh->vertexData = OGRE_NEW Ogre::VertexData();
      fillVertexData(subMesh->vertexData, part.vertices);
      for (const Ogre::Vector3& p : part.vertices) bounds.merge(p);
    }
    subMesh->indexData->indexBuffer = indexBuffer(part);
    subMesh->indexData->indexStart = 0;
    subMesh->indexData->indexCount = part.indices.size();
  }
  mesh->_setBounds(bounds, false);
  mesh->_setBoundingSphereRadius(std::max(bounds.getMinimum().length(), bounds.getMaximum().length()));
  mesh->load();
  return mesh;
}

// A square of side 2·half in a plane z = const, facing +Z (toward the camera)
// or, wound the other way, facing -Z.
inline MeshPart square(float half, float z = 0.0f, bool facingCamera = true, bool wide = false) {
  MeshPart part;
  part.vertices = {{-half, -half, z}, {half, -half, z}, {half, half, z}, {-half, half, z}};
  part.indices = facingCamera ? std::vector<std::uint32_t>{0, 1, 2, 0, 2, 3} : std::vector<std::uint32_t>{0, 2, 1, 0, 3, 2};
  part.wide = wide;
  return part;
}

// An L in the plane z = 0, facing +Z: the 2x2 square from (-1,-1) to (1,1)
// without its upper right quarter. Its bounding box covers that quarter.
// `padding` unused vertices come first, so the indices start at that value.
inline MeshPart lShape(bool wide, std::uint32_t padding = 0) {
  MeshPart part;
  part.vertices.assign(padding, Ogre::Vector3(-1, -1, 0));
  const std::vector<Ogre::Vector3> corners = {{-1, -1, 0}, {1, -1, 0}, {1, 0, 0}, {0, 0, 0},
                                              {0, 1, 0},   {-1, 1, 0}, {-1, 0, 0}};
  part.vertices.insert(part.vertices.end(), corners.begin(), corners.end());
  // Lower band (0 1 2 6... as two triangles) and the left upper square.
  for (std::uint32_t i : {0u, 1u, 2u, 0u, 2u, 6u, 6u, 3u, 4u, 6u, 4u, 5u}) part.indices.push_back(i + padding);
  part.wide = wide;
  return part;
}

class PickScene : public ::testing::Test {
 protected:
  static constexpr int a_width = 320;
  static constexpr int a_height = 240;

  void SetUp() override {
    engine = std::make_unique<VX::NextGenView::OgreEngine>(engineConfiguration(),
                                                            logs.filePath("ogre.log").toStdString());
    ASSERT_NE(engine->root(), nullptr);
    engine->root()->initialise(false);
    window = engine->root()->createRenderWindow("pick scene", a_width, a_height, false);
    ASSERT_NE(window, nullptr);
    scene = engine->sceneManager();
    camera = scene->createCamera("PickCamera");
    camera->setNearClipDistance(0.1f);
    camera->setFarClipDistance(100.0f);
    camera->setAspectRatio(float(a_width) / float(a_height));
    cameraNode = scene->getRootSceneNode()->createChildSceneNode(Ogre::Vector3(0, 0, 10));
    cameraNode->attachObject(camera);
    surface.resize(a_width, a_height);
    selection = std::make_unique<VX::NextGenView::Selection>(scene, camera);
  }

  void TearDown() override {
    selection.reset();
    engine.reset();
  }

  // An entity of that mesh on a new node at `position`, pickable (flag 1).
  Ogre::Entity* place(const std::string& name, const Ogre::MeshPtr& mesh, const Ogre::Vector3& position,
                      Ogre::SceneNode* parent = nullptr, std::uint32_t queryFlags = 1) {
    Ogre::Entity* entity = scene->createEntity(name, mesh);
    entity->setQueryFlags(queryFlags);
    (parent ? parent : scene->getRootSceneNode())->createChildSceneNode(position)->attachObject(entity);
    return entity;
  }

  void lookFrom(const Ogre::Vector3& eye, const Ogre::Vector3& target) {
    cameraNode->setPosition(eye);
    cameraNode->lookAt(target, Ogre::Node::TS_WORLD);
  }

  // The ray the picker casts through a pixel of the surface.
  Ogre::Ray rayAt(int x, int y) const {
    return camera->getCameraToViewportRay(x * (1.0f / a_width), y * (1.0f / a_height));
  }

  // Picks at (x, y); the entity's name, or "" for nothing.
  std::string pickAt(int x, int y) {
    std::string name;
    return selection->pick(x, y, &surface, name) ? name : std::string();
  }

  QTemporaryDir logs;
  std::unique_ptr<VX::NextGenView::OgreEngine> engine;
  Ogre::RenderWindow* window = nullptr;
  Ogre::SceneManager* scene = nullptr;
  Ogre::Camera* camera = nullptr;
  Ogre::SceneNode* cameraNode = nullptr;
  QWidget surface;
  std::unique_ptr<VX::NextGenView::Selection> selection;
};

}  // namespace testing_support
