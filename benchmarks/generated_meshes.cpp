#include "generated_meshes.h"

#include <cstdint>
#include <vector>

#include <OgreHardwareBufferManager.h>
#include <OgreMeshManager.h>
#include <OgreSubMesh.h>

namespace bench {

Ogre::MeshPtr gridMesh(const std::string& name, int cols, int rows, float size, int holeCols, int holeRows) {
  std::vector<float> positions;
  for (int j = 0; j <= rows; ++j) {
    for (int i = 0; i <= cols; ++i) {
      positions.insert(positions.end(), {size * (float(i) / cols - 0.5f), size * (float(j) / rows - 0.5f), 0.0f});
    }
  }
  const int holeLeft = (cols - holeCols) / 2;
  const int holeBottom = (rows - holeRows) / 2;
  std::vector<std::uint32_t> indices;
  for (int j = 0; j < rows; ++j) {
    for (int i = 0; i < cols; ++i) {
      const bool inHole = i >= holeLeft && i < holeLeft + holeCols && j >= holeBottom && j < holeBottom + holeRows;
      if (inHole) continue;
      const std::uint32_t a = j * (cols + 1) + i, b = a + 1, c = a + cols + 1, d = c + 1;
      indices.insert(indices.end(), {a, b, d, a, d, c});  // counter-clockwise seen from +Z
    }
  }

  Ogre::HardwareBufferManager& buffers = Ogre::HardwareBufferManager::getSingleton();
  Ogre::MeshPtr mesh =
      Ogre::MeshManager::getSingleton().createManual(name, Ogre::ResourceGroupManager::DEFAULT_RESOURCE_GROUP_NAME);
  mesh->sharedVertexData = OGRE_NEW Ogre::VertexData();
  Ogre::VertexData* vertexData = mesh->sharedVertexData;
  vertexData->vertexDeclaration->addElement(0, 0, Ogre::VET_FLOAT3, Ogre::VES_POSITION);
  vertexData->vertexCount = positions.size() / 3;
  auto vertexBuffer = buffers.createVertexBuffer(12, vertexData->vertexCount, Ogre::HardwareBuffer::HBU_STATIC_WRITE_ONLY,
                                                 true);
  vertexBuffer->writeData(0, vertexBuffer->getSizeInBytes(), positions.data(), true);
  vertexData->vertexBufferBinding->setBinding(0, vertexBuffer);

  Ogre::SubMesh* subMesh = mesh->createSubMesh();
  subMesh->useSharedVertices = true;
  subMesh->indexData->indexCount = indices.size();
  subMesh->indexData->indexBuffer = buffers.createIndexBuffer(
      Ogre::HardwareIndexBuffer::IT_32BIT, indices.size(), Ogre::HardwareBuffer::HBU_STATIC_WRITE_ONLY, true);
  subMesh->indexData->indexBuffer->writeData(0, subMesh->indexData->indexBuffer->getSizeInBytes(), indices.data(), true);

  // A little depth, so the ray-box test never meets a box of zero thickness.
  const float half = size / 2;
  mesh->_setBounds(Ogre::AxisAlignedBox(-half, -half, -0.01f, half, half, 0.01f), false);
  mesh->_setBoundingSphereRadius(half * 1.5f);
  mesh->load();
  return mesh;
}

}  // namespace bench
