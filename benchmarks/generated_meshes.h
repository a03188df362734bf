#pragma once
// Flat triangle grids for the picking benchmarks, with readable buffers.

#include <string>

#include <OgreMesh.h>

namespace bench {

// A grid in the plane z = 0 facing +Z, `size` wide and high, centred on the
// origin: cols × rows quads (two triangles each) minus a central hole of
// holeCols × holeRows quads. Buffers keep a shadow copy, so the picker can
// read them; indices are 32-bit.
Ogre::MeshPtr gridMesh(const std::string& name, int cols, int rows, float size, int holeCols = 0, int holeRows = 0);

}  // namespace bench
