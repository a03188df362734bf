#include "mesh_assembly.h"

#include <algorithm>
#include <limits>

#include <OgreHardwareBufferManager.h>
#include <OgreMeshManager.h>
#include <OgreSubMesh.h>

namespace VX::NextGenView {
namespace {

// One interleaved buffer of floats: position and normal, then the vertex
// colour and the texture coordinates when the triangles have them.
Ogre::HardwareVertexBufferSharedPtr createVertexBuffer(Ogre::VertexData* vertexData, const TriangleMesh& triangles) {
  Ogre::VertexDeclaration* declaration = vertexData->vertexDeclaration;
  const bool coloured = triangles.colours.size() == triangles.positions.size();
  const bool textured = triangles.texCoords.size() == triangles.positions.size();
  std::size_t offset = 0;
  offset += declaration->addElement(0, offset, Ogre::VET_FLOAT3, Ogre::VES_POSITION).getSize();
  offset += declaration->addElement(0, offset, Ogre::VET_FLOAT3, Ogre::VES_NORMAL).getSize();
  if (coloured) offset += declaration->addElement(0, offset, Ogre::VET_FLOAT4, Ogre::VES_DIFFUSE).getSize();
  if (textured) offset += declaration->addElement(0, offset, Ogre::VET_FLOAT2, Ogre::VES_TEXTURE_COORDINATES).getSize();

  std::vector<float> data;
  data.reserve(triangles.positions.size() * offset / sizeof(float));
  for (std::size_t i = 0; i < triangles.positions.size(); ++i) {
    const Ogre::Vector3& p = triangles.positions[i];
    const Ogre::Vector3& n = triangles.normals[i];
    data.insert(data.end(), {p.x, p.y, p.z, n.x, n.y, n.z});
    if (coloured) {
      const Ogre::ColourValue& c = triangles.colours[i];
      data.insert(data.end(), {c.r, c.g, c.b, c.a});
    }
    if (textured) data.insert(data.end(), {triangles.texCoords[i].x, triangles.texCoords[i].y});
  }
  Ogre::HardwareVertexBufferSharedPtr buffer = Ogre::HardwareBufferManager::getSingleton().createVertexBuffer(
      offset, triangles.positions.size(), Ogre::HardwareBuffer::HBU_STATIC_WRITE_ONLY);
  buffer->writeData(0, buffer->getSizeInBytes(), data.data(), true);
  return buffer;
}

Ogre::HardwareIndexBufferSharedPtr createIndexBuffer(const TriangleMesh& triangles) {
  const bool small = triangles.positions.size() <= std::numeric_limits<Ogre::uint16>::max();
  Ogre::HardwareIndexBufferSharedPtr buffer = Ogre::HardwareBufferManager::getSingleton().createIndexBuffer(
      small ? Ogre::HardwareIndexBuffer::IT_16BIT : Ogre::HardwareIndexBuffer::IT_32BIT, triangles.indices.size(),
      Ogre::HardwareBuffer::HBU_STATIC_WRITE_ONLY);
  if (small) {
    const std::vector<Ogre::uint16> indices(triangles.indices.begin(), triangles.indices.end());
    buffer->writeData(0, buffer->getSizeInBytes(), indices.data(), true);
  } else {
    buffer->writeData(0, buffer->getSizeInBytes(), triangles.indices.data(), true);
  }
  return buffer;
}

}  // namespace

void MeshAssembly::add(const std::string& material, const TriangleMesh& triangles, const Ogre::Matrix4& transform) {
  if (triangles.empty()) return;
  auto section = std::find_if(m_sections.begin(), m_sections.end(),
                              [&](const Section& candidate) { return candidate.material == material; });
  if (section == m_sections.end()) section = m_sections.insert(m_sections.end(), Section{material, {}});
  section->triangles.append(triangles, transform);
}

bool MeshAssembly::empty() const { return m_sections.empty(); }

Ogre::MeshPtr MeshAssembly::create(const std::string& name, const std::string& group) const {
  if (m_sections.empty()) return Ogre::MeshPtr();
  Ogre::MeshPtr mesh = Ogre::MeshManager::getSingleton().createManual(name, group);
  Ogre::AxisAlignedBox bounds;
  float radius = 0.0f;
  for (const Section& section : m_sections) {
    const TriangleMesh& triangles = section.triangles;
    Ogre::SubMesh* subMesh = mesh->createSubMesh();
    subMesh->useSharedVertices = false;
    subMesh->vertexData = OGRE_NEW Ogre::VertexData();  // deleted by the sub-mesh
    subMesh->vertexData->vertexStart = 0;
    subMesh->vertexData->vertexCount = triangles.positions.size();
    subMesh->vertexData->vertexBufferBinding->setBinding(0, createVertexBuffer(subMesh->vertexData, triangles));
    subMesh->indexData->indexBuffer = createIndexBuffer(triangles);
    subMesh->indexData->indexStart = 0;
    subMesh->indexData->indexCount = triangles.indices.size();
    subMesh->setMaterialName(section.material, group);
    for (const Ogre::Vector3& position : triangles.positions) {
      bounds.merge(position);
      radius = std::max(radius, position.length());
    }
  }
  mesh->_setBounds(bounds, false);
  mesh->_setBoundingSphereRadius(radius);
  mesh->load();
  return mesh;
}

}  // namespace VX::NextGenView
