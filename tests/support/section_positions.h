#pragma once
// The vertex positions of one section of an OGRE manual object, read back
// from its vertex buffer.

#include <vector>

#include <OgreHardwareBufferManager.h>
#include <OgreManualObject.h>
#include <OgreRenderOperation.h>
#include <OgreVertexIndexData.h>

namespace testing_support {

inline std::vector<Ogre::Vector3> sectionPositions(Ogre::ManualObject::ManualObjectSection& section) {
  std::vector<Ogre::Vector3> positions;
  const Ogre::VertexData* data = section.getRenderOperation()->vertexData;
  const Ogre::VertexElement* element = data->vertexDeclaration->findElementBySemantic(Ogre::VES_POSITION);
  if (!element) return positions;
  const Ogre::HardwareVertexBufferSharedPtr buffer = data->vertexBufferBinding->getBuffer(element->getSource());
  const auto* bytes = static_cast<const unsigned char*>(buffer->lock(Ogre::HardwareBuffer::HBL_READ_ONLY));
  for (size_t i = 0; i < data->vertexCount; ++i) {
    const unsigned char* vertex = bytes + (data->vertexStart + i) * buffer->getVertexSize();
    float* xyz = nullptr;
    element->baseVertexPointerToElement(const_cast<unsigned char*>(vertex), &xyz);
    positions.emplace_back(xyz[0], xyz[1], xyz[2]);
  }
  buffer->unlock();
  return positions;
}

}  // namespace testing_support
