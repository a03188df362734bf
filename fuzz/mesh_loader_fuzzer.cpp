// Feeds arbitrary bytes to the scene view's mesh file loader, as STL (binary
// or ASCII), OBJ with its MTL, or COLLADA: the first byte chooses the file
// extension (0 .stl, 1 .obj, 2 .dae, modulo 3), the rest is the file. For OBJ,
// the text after a line "#mtl" becomes the side file "fuzz.mtl".
// A load gives triangles and no error, or an error and no triangles; every
// index names a vertex, and every position and normal is finite.
#include <unistd.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <string>

#include "mesh_file_loader.h"

using VX::NextGenView::MeshFileLoader;
using VX::NextGenView::MeshFileLoadResult;

namespace {

void check(bool condition) {
  if (!condition) __builtin_trap();
}

const std::string& scratchFolder() {
  static const std::string folder = [] {
    char pattern[] = "/tmp/fuzz_mesh_XXXXXX";
    const char* made = mkdtemp(pattern);
    if (!made) std::abort();
    return std::string(made);
  }();
  return folder;
}

void write(const std::string& path, const char* data, std::size_t size) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(data, static_cast<std::streamsize>(size));
}

bool finite(const Ogre::Vector3& v) { return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z); }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 1) return 0;
  static const char* const extensions[] = {"stl", "obj", "dae"};
  const std::string extension = extensions[data[0] % 3];
  const std::string content(reinterpret_cast<const char*>(data) + 1, size - 1);
  const std::string path = scratchFolder() + "/fuzz." + extension;

  std::string mesh = content;
  std::string material;
  if (extension == "obj") {
    const std::size_t split = content.find("\n#mtl\n");
    if (split != std::string::npos) {
      mesh = content.substr(0, split + 1);
      material = content.substr(split + 6);
    }
  }
  write(path, mesh.data(), mesh.size());
  write(scratchFolder() + "/fuzz.mtl", material.data(), material.size());

  MeshFileLoader loader;  // a new loader: its cache would answer the old file
  const MeshFileLoadResult& result = loader.load(path);
  check(result.error.empty() != result.parts.empty());
  for (const auto& part : result.parts) {
    const auto& triangles = part.triangles;
    check(!triangles.empty());
    check(triangles.indices.size() % 3 == 0);
    check(triangles.normals.size() == triangles.positions.size());
    for (const std::uint32_t index : triangles.indices) check(index < triangles.positions.size());
    for (const auto& position : triangles.positions) check(finite(position));
    for (const auto& normal : triangles.normals) check(finite(normal));
  }
  return 0;
}
