// Damaged mesh files: one caught half-written (every prefix of a few real
// files loads as triangles or as an error naming the file), and the inputs
// the mesh fuzzer found crashing Assimp. Never a crash.
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

#include "collada_precheck.h"
#include "mesh_file_loader.h"

namespace VX::NextGenView {
namespace {

namespace fs = std::filesystem;
const std::string a_data = SCENE_VIEW_TEST_DATA;

std::string contentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

void writeFile(const fs::path& path, const std::string& content) {
  std::ofstream(path, std::ios::binary | std::ios::trunc) << content;
}

class TruncatedMeshes : public ::testing::Test {
 protected:
  void SetUp() override {
    m_folder = fs::temp_directory_path() / ("mesh_truncation_" + std::to_string(::getpid()));
    fs::create_directories(m_folder);
  }
  void TearDown() override { fs::remove_all(m_folder); }

  // Loads every prefix of `name` (its side files complete); returns how many
  // prefixes gave triangles.
  int loadEveryPrefix(const std::string& name) {
    const std::string content = contentOf(a_data + "/" + name);
    EXPECT_FALSE(content.empty()) << name;
    const fs::path path = m_folder / name;
    int loaded = 0;
    for (std::size_t length = 0; length <= content.size(); ++length) {
      writeFile(path, content.substr(0, length));
      MeshFileLoader loader;  // one per prefix: the cache would answer the old content
      const MeshFileLoadResult& result = loader.load(path.string());
      SCOPED_TRACE(name + " cut at " + std::to_string(length) + " bytes");
      EXPECT_NE(result.error.empty(), result.parts.empty()) << result.error;
      if (!result.error.empty()) {
        EXPECT_NE(result.error.find(path.string()), std::string::npos) << result.error;
        continue;
      }
      ++loaded;
      for (const MeshFilePart& part : result.parts) {
        for (const std::uint32_t index : part.triangles.indices) EXPECT_LT(index, part.triangles.positions.size());
      }
    }
    return loaded;
  }

  fs::path m_folder;
};

TEST_F(TruncatedMeshes, AsciiStl) { EXPECT_GE(loadEveryPrefix("cube.stl"), 1); }

TEST_F(TruncatedMeshes, BinaryStl) { EXPECT_GE(loadEveryPrefix("tetrahedron_binary.stl"), 1); }

TEST_F(TruncatedMeshes, ObjAndItsMaterial) {
  writeFile(m_folder / "tetrahedron.mtl", contentOf(a_data + "/tetrahedron.mtl"));
  EXPECT_GE(loadEveryPrefix("tetrahedron.obj"), 1);
  // The material half-written under a complete OBJ.
  writeFile(m_folder / "tetrahedron.obj", contentOf(a_data + "/tetrahedron.obj"));
  const std::string material = contentOf(a_data + "/tetrahedron.mtl");
  for (std::size_t length = 0; length <= material.size(); ++length) {
    writeFile(m_folder / "tetrahedron.mtl", material.substr(0, length));
    MeshFileLoader loader;
    const MeshFileLoadResult& result = loader.load((m_folder / "tetrahedron.obj").string());
    SCOPED_TRACE("material cut at " + std::to_string(length) + " bytes");
    // Assimp refuses an OBJ whose material file is a byte long; otherwise the triangles come.
    if (!result.error.empty()) {
      EXPECT_TRUE(result.parts.empty());
      EXPECT_NE(result.error.find("tetrahedron.obj"), std::string::npos) << result.error;
      continue;
    }
    ASSERT_EQ(result.parts.size(), 1u);
    EXPECT_EQ(result.parts[0].triangles.triangleCount(), 4u);
  }
  writeFile(m_folder / "tetrahedron.mtl", material);
  MeshFileLoader loader;
  EXPECT_EQ(loader.load((m_folder / "tetrahedron.obj").string()).error, "");
}

TEST_F(TruncatedMeshes, Collada) { EXPECT_GE(loadEveryPrefix("triangle_mm_zup.dae"), 1); }

TEST_F(TruncatedMeshes, FilesOverTheSizeLimitAreRefusedUnread) {
  const fs::path path = m_folder / "huge.stl";
  writeFile(path, contentOf(a_data + "/cube.stl"));
  fs::resize_file(path, MeshFileLoader::a_maxFileBytes + 1);  // sparse: no disk used
  MeshFileLoader loader;
  const MeshFileLoadResult& result = loader.load(path.string());
  EXPECT_TRUE(result.parts.empty());
  EXPECT_EQ(result.error, "mesh file " + path.string() + " is larger than 64 MB");
}

// Found by the mesh fuzzer: a data array whose count reads as zero made
// Assimp's COLLADA reader dereference a null pointer.
TEST(DamagedMeshes, ColladaArrayOfNoValuesIsRefusedBeforeAssimpReadsIt) {
  MeshFileLoader loader;
  const std::string path = a_data + "/collada_empty_array.dae";
  const MeshFileLoadResult& result = loader.load(path);
  EXPECT_TRUE(result.parts.empty());
  EXPECT_EQ(result.error.rfind("cannot read mesh file " + path + ": a COLLADA data array (<float_array", 0), 0u)
      << result.error;
  EXPECT_NE(result.error.find("declares no values"), std::string::npos) << result.error;
}

// Found by the mesh fuzzer: a byte 0x19 among the triangle indices made
// Assimp allocate gigabytes until it ran out of memory.
TEST(DamagedMeshes, ColladaIndexListWithAForeignCharacterIsRefused) {
  MeshFileLoader loader;
  const std::string path = a_data + "/collada_letter_in_indices.dae";
  const MeshFileLoadResult& result = loader.load(path);
  EXPECT_TRUE(result.parts.empty());
  EXPECT_EQ(result.error, "cannot read mesh file " + path +
                              ": a COLLADA index list (<p>) holds the character 25, not a number; Assimp cannot "
                              "read it safely");
  const std::string sound = contentOf(a_data + "/triangle_mm_zup.dae");
  ASSERT_NE(sound.find("<p>0 1 2</p>"), std::string::npos);
  for (const char* list : {"0 1 x 2", "0 1 2.", "0 1 2x", "0 &#49; 2"}) {
    std::string damaged = sound;
    damaged.replace(damaged.find("<p>0 1 2</p>"), 12, std::string("<p>") + list + "</p>");
    EXPECT_NE(colladaHazard(damaged), "") << list;
  }
  for (const char* list : {" 0\t1\r\n2 ", "0 1 -2", "+0 1 2"}) {
    std::string fine = sound;
    fine.replace(fine.find("<p>0 1 2</p>"), 12, std::string("<p>") + list + "</p>");
    EXPECT_EQ(colladaHazard(fine), "") << list;
  }
}

// Found by the mesh fuzzer: <triangles count="1"> without its <p> made Assimp
// abort the process.
TEST(DamagedMeshes, ColladaPrimitivesWithoutIndicesAreRefused) {
  MeshFileLoader loader;
  const std::string path = a_data + "/collada_triangles_without_indices.dae";
  const MeshFileLoadResult& result = loader.load(path);
  EXPECT_TRUE(result.parts.empty());
  EXPECT_EQ(result.error, "cannot read mesh file " + path +
                              ": a COLLADA <triangles> announces primitives but has no index list (<p>); Assimp "
                              "cannot read it safely");
  const std::string sound = contentOf(a_data + "/triangle_mm_zup.dae");
  const std::size_t begin = sound.find("<triangles");
  const std::size_t end = sound.find("</triangles>") + 12;
  ASSERT_NE(begin, std::string::npos);
  const std::string inputs = "<input semantic=\"VERTEX\" source=\"#triangle-vertices\" offset=\"0\"/>";
  auto with = [&](const std::string& primitive) { return sound.substr(0, begin) + primitive + sound.substr(end); };
  EXPECT_NE(colladaHazard(with("<triangles count=\"1\">" + inputs + "</triangles>")), "");
  EXPECT_NE(colladaHazard(with("<triangles count=\"1\"/>")), "");
  EXPECT_NE(colladaHazard(with("<polylist count=\"1\">" + inputs + "<vcount>3</vcount></polylist>")), "");
  EXPECT_EQ(colladaHazard(with("<triangles count=\"0\">" + inputs + "</triangles>")), "") << "announces none";
  EXPECT_EQ(colladaHazard(with("<polylist count=\"1\">" + inputs + "<vcount>3</vcount><p>0 1 2</p></polylist>")),
            "");
}

TEST(DamagedMeshes, ColladaCountsThatReadAsZero) {
  const std::string sound = contentOf(a_data + "/triangle_mm_zup.dae");
  ASSERT_NE(sound.find("count=\"9\""), std::string::npos);
  EXPECT_EQ(colladaHazard(sound), "");
  for (const char* count : {"0", "", "-3", "x", "+9", "00"}) {
    std::string damaged = sound;
    damaged.replace(damaged.find("count=\"9\""), 9, std::string("count=\"") + count + "\"");
    EXPECT_NE(colladaHazard(damaged), "") << "count=\"" << count << "\"";
  }
  std::string spaced = sound;
  spaced.replace(spaced.find("count=\"9\""), 9, "count=\" 9\"");
  EXPECT_EQ(colladaHazard(spaced), "") << "Assimp skips leading blanks";
  EXPECT_EQ(colladaHazard("solid cube\n<float_array count=\"0\">"), "") << "no COLLADA document";
}

}  // namespace
}  // namespace VX::NextGenView
