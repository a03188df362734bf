#include "mesh_file_loader.h"

#include <cmath>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <assimp/Importer.hpp>
#include <assimp/config.h>
#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include <ku/log.h>
#include "collada_precheck.h"

namespace VX::NextGenView {
namespace {

Ogre::Matrix4 toOgre(const aiMatrix4x4& m) {
  return Ogre::Matrix4(m.a1, m.a2, m.a3, m.a4, m.b1, m.b2, m.b3, m.b4, m.c1, m.c2, m.c3, m.c4, m.d1, m.d2, m.d3,
                       m.d4);
}

bool finite(const aiVector3D& v) { return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z); }

TriangleMesh trianglesOf(const aiMesh& mesh) {
  TriangleMesh triangles;
  if (!mesh.mVertices) return triangles;
  for (unsigned i = 0; i < mesh.mNumVertices; ++i) {
    // A vertex that is not finite stays unused (below) but still goes into the buffer: at the origin.
    const aiVector3D p = finite(mesh.mVertices[i]) ? mesh.mVertices[i] : aiVector3D(0, 0, 0);
    triangles.positions.emplace_back(p.x, p.y, p.z);
    const aiVector3D n = mesh.HasNormals() && finite(mesh.mNormals[i]) ? mesh.mNormals[i] : aiVector3D(0, 0, 1);
    triangles.normals.emplace_back(Ogre::Vector3(n.x, n.y, n.z).normalisedCopy());
    // The importer flips v, so coordinates are already OGRE's (v down the image).
    if (mesh.HasTextureCoords(0)) triangles.texCoords.emplace_back(mesh.mTextureCoords[0][i].x, mesh.mTextureCoords[0][i].y);
    if (mesh.HasVertexColors(0)) {
      const aiColor4D& c = mesh.mColors[0][i];
      triangles.colours.emplace_back(c.r, c.g, c.b, c.a);
    }
  }
  // A damaged file may name vertices it does not have, or give numbers that
  // are not finite: those triangles are left out.
  auto usable = [&mesh](unsigned index) { return index < mesh.mNumVertices && finite(mesh.mVertices[index]); };
  for (unsigned f = 0; mesh.mFaces && f < mesh.mNumFaces; ++f) {
    const aiFace& face = mesh.mFaces[f];
    if (face.mNumIndices != 3) continue;  // points and lines are not drawn
    if (!usable(face.mIndices[0]) || !usable(face.mIndices[1]) || !usable(face.mIndices[2])) continue;
    triangles.indices.insert(triangles.indices.end(), {face.mIndices[0], face.mIndices[1], face.mIndices[2]});
  }
  return triangles;
}

void warn(const std::string& text) {
  ku::log::LogStream(ku::log::Warning, "MeshFileLoader", "rdr.scene", __FILE__, __LINE__) << text << std::endl;
}

// A texture named by a material: relative names are next to the mesh file.
std::string texturePath(const aiString& name, const std::filesystem::path& meshFolder) {
  std::string file = name.C_Str();
  if (file.rfind("file://", 0) == 0) file.erase(0, 7);
  const std::filesystem::path path(file);
  return (path.is_absolute() ? path : meshFolder / path).lexically_normal().string();
}

// The diffuse colour, its opacity, and the diffuse texture of a material.
void applyMaterial(const aiMaterial& material, const std::string& path, MeshFilePart& part) {
  aiColor4D diffuse;
  if (material.Get(AI_MATKEY_COLOR_DIFFUSE, diffuse) == aiReturn_SUCCESS) {
    float opacity = 1.0f;
    material.Get(AI_MATKEY_OPACITY, opacity);
    part.hasColour = true;
    part.colour = Ogre::ColourValue(diffuse.r, diffuse.g, diffuse.b, diffuse.a * opacity);
    // Exporters write <transparency>0</transparency> with an opaque <transparent>
    // colour for opaque materials; an invisible visual is never meant.
    if (!(part.colour.a > 0.0f)) {
      aiString name;
      material.Get(AI_MATKEY_NAME, name);
      warn("The material \"" + std::string(name.C_Str()) + "\" of " + path +
           " has opacity 0; it is drawn opaque");
      part.colour.a = 1.0f;
    }
  }
  aiString texture;
  if (!part.triangles.texCoords.empty() && material.GetTexture(aiTextureType_DIFFUSE, 0, &texture) == aiReturn_SUCCESS &&
      texture.length > 0) {
    if (texture.C_Str()[0] == '*') {
      warn("The embedded texture of " + path + " is not shown");
    } else {
      part.texture = texturePath(texture, std::filesystem::path(path).parent_path());
    }
  }
}

// The node hierarchy places meshes; its transforms are baked into the parts.
void collect(const aiScene& scene, const aiNode& node, const aiMatrix4x4& parentTransform, const std::string& path,
             std::vector<MeshFilePart>& parts) {
  const aiMatrix4x4 transform = parentTransform * node.mTransformation;
  for (unsigned i = 0; i < node.mNumMeshes; ++i) {
    if (node.mMeshes[i] >= scene.mNumMeshes || !scene.mMeshes[node.mMeshes[i]]) continue;
    const aiMesh& mesh = *scene.mMeshes[node.mMeshes[i]];
    MeshFilePart part;
    part.triangles.append(trianglesOf(mesh), toOgre(transform));
    if (part.triangles.empty()) continue;
    if (mesh.mMaterialIndex < scene.mNumMaterials) applyMaterial(*scene.mMaterials[mesh.mMaterialIndex], path, part);
    parts.push_back(std::move(part));
  }
  for (unsigned i = 0; i < node.mNumChildren; ++i) {
    if (node.mChildren[i]) collect(scene, *node.mChildren[i], transform, path, parts);
  }
}

std::string contentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

bool allFinite(const TriangleMesh& triangles) {
  for (const Ogre::Vector3& p : triangles.positions) {
    if (!std::isfinite(p.x) || !std::isfinite(p.y) || !std::isfinite(p.z)) return false;
  }
  for (const Ogre::Vector3& n : triangles.normals) {
    if (!std::isfinite(n.x) || !std::isfinite(n.y) || !std::isfinite(n.z)) return false;
  }
  return true;
}

}  // namespace

MeshFileLoader::FileStamp MeshFileLoader::stampOf(const std::string& path) {
  std::error_code error;  // a missing file has the zero stamp
  FileStamp stamp;
  stamp.written = std::filesystem::last_write_time(path, error);
  stamp.bytes = std::filesystem::file_size(path, error);
  if (error) stamp = FileStamp();
  return stamp;
}

const MeshFileLoadResult& MeshFileLoader::load(const std::string& path) {
  const FileStamp stamp = stampOf(path);
  auto found = m_cache.find(path);
  if (found == m_cache.end()) return m_cache.emplace(path, CachedFile{stamp, read(path)}).first->second.result;
  CachedFile& cached = found->second;
  if (cached.stamp == stamp) return cached.result;
  MeshFileLoadResult fresh = read(path);
  cached.stamp = stamp;  // this version is not read again
  if (!fresh.error.empty() && cached.result.error.empty()) {
    warn("Mesh file " + path + " changed and cannot be read now (" + fresh.error +
         "); its last good content stays until it changes again");
  } else {
    cached.result = std::move(fresh);
  }
  return cached.result;
}

MeshFileLoadResult MeshFileLoader::read(const std::string& path) {
  MeshFileLoadResult result;
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) {
    result.error = "mesh file not found: " + path;
    return result;
  }
  const std::uintmax_t bytes = std::filesystem::file_size(path, error);
  if (error || bytes > a_maxFileBytes) {
    result.error = "mesh file " + path + " is larger than " + std::to_string(a_maxFileBytes >> 20) + " MB";
    return result;
  }
  try {
    const std::string hazard = colladaHazard(contentOf(path));
    if (!hazard.empty()) {
      result.error = "cannot read mesh file " + path + ": " + hazard;
      return result;
    }
    Assimp::Importer importer;
    // Robot descriptions place meshes in their own axes: a COLLADA file's
    // up axis must not turn it. Its unit still scales it to metres.
    importer.SetPropertyBool(AI_CONFIG_IMPORT_COLLADA_IGNORE_UP_DIRECTION, true);
    // Validation first: a damaged file must not reach the steps that trust its indices.
    const aiScene* scene =
        importer.ReadFile(path, aiProcess_ValidateDataStructure | aiProcess_Triangulate |
                                    aiProcess_JoinIdenticalVertices | aiProcess_GenSmoothNormals | aiProcess_SortByPType |
                                    aiProcess_FlipUVs);
    if (!scene || !scene->mRootNode || (scene->mFlags & AI_SCENE_FLAGS_INCOMPLETE)) {
      result.error = "cannot read mesh file " + path + ": " + importer.GetErrorString();
      return result;
    }
    collect(*scene, *scene->mRootNode, aiMatrix4x4(), path, result.parts);
    // A transform that is not finite spoils the triangles it places.
    for (auto part = result.parts.begin(); part != result.parts.end();) {
      part = allFinite(part->triangles) ? part + 1 : result.parts.erase(part);
    }
    if (result.parts.empty()) result.error = "mesh file " + path + " holds no triangles";
  } catch (const std::exception& exception) {
    result.parts.clear();
    result.error = "cannot read mesh file " + path + ": " + exception.what();
  }
  return result;
}

}  // namespace VX::NextGenView
