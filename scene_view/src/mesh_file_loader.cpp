#include "mesh_file_loader.h"

#include <exception>
#include <filesystem>

#include <assimp/Importer.hpp>
#include <assimp/config.h>
#include <assimp/postprocess.h>
#include <assimp/scene.h>

namespace VX::NextGenView {
namespace {

Ogre::Matrix4 toOgre(const aiMatrix4x4& m) {
  return Ogre::Matrix4(m.a1, m.a2, m.a3, m.a4, m.b1, m.b2, m.b3, m.b4, m.c1, m.c2, m.c3, m.c4, m.d1, m.d2, m.d3,
                       m.d4);
}

TriangleMesh trianglesOf(const aiMesh& mesh) {
  TriangleMesh triangles;
  for (unsigned i = 0; i < mesh.mNumVertices; ++i) {
    const aiVector3D& p = mesh.mVertices[i];
    triangles.positions.emplace_back(p.x, p.y, p.z);
    const aiVector3D n = mesh.HasNormals() ? mesh.mNormals[i] : aiVector3D(0, 0, 1);
    triangles.normals.emplace_back(Ogre::Vector3(n.x, n.y, n.z).normalisedCopy());
  }
  for (unsigned f = 0; f < mesh.mNumFaces; ++f) {
    const aiFace& face = mesh.mFaces[f];
    if (face.mNumIndices != 3) continue;  // points and lines are not drawn
    triangles.indices.insert(triangles.indices.end(), {face.mIndices[0], face.mIndices[1], face.mIndices[2]});
  }
  return triangles;
}

// The node hierarchy places meshes; its transforms are baked into the parts.
void collect(const aiScene& scene, const aiNode& node, const aiMatrix4x4& parentTransform,
             std::vector<MeshFilePart>& parts) {
  const aiMatrix4x4 transform = parentTransform * node.mTransformation;
  for (unsigned i = 0; i < node.mNumMeshes; ++i) {
    const aiMesh& mesh = *scene.mMeshes[node.mMeshes[i]];
    MeshFilePart part;
    part.triangles.append(trianglesOf(mesh), toOgre(transform));
    if (part.triangles.empty()) continue;
    aiColor4D diffuse;
    if (mesh.mMaterialIndex < scene.mNumMaterials &&
        scene.mMaterials[mesh.mMaterialIndex]->Get(AI_MATKEY_COLOR_DIFFUSE, diffuse) == aiReturn_SUCCESS) {
      float opacity = 1.0f;
      scene.mMaterials[mesh.mMaterialIndex]->Get(AI_MATKEY_OPACITY, opacity);
      part.hasColour = true;
      part.colour = Ogre::ColourValue(diffuse.r, diffuse.g, diffuse.b, diffuse.a * opacity);
    }
    parts.push_back(std::move(part));
  }
  for (unsigned i = 0; i < node.mNumChildren; ++i) collect(scene, *node.mChildren[i], transform, parts);
}

}  // namespace

const MeshFileLoadResult& MeshFileLoader::load(const std::string& path) {
  auto found = m_cache.find(path);
  if (found == m_cache.end()) found = m_cache.emplace(path, read(path)).first;
  return found->second;
}

MeshFileLoadResult MeshFileLoader::read(const std::string& path) {
  MeshFileLoadResult result;
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) {
    result.error = "mesh file not found: " + path;
    return result;
  }
  try {
    Assimp::Importer importer;
    // Robot descriptions place meshes in their own axes: a COLLADA file's
    // up axis must not turn it. Its unit still scales it to metres.
    importer.SetPropertyBool(AI_CONFIG_IMPORT_COLLADA_IGNORE_UP_DIRECTION, true);
    const aiScene* scene = importer.ReadFile(path, aiProcess_Triangulate | aiProcess_JoinIdenticalVertices |
                                                       aiProcess_GenSmoothNormals | aiProcess_SortByPType);
    if (!scene || !scene->mRootNode || (scene->mFlags & AI_SCENE_FLAGS_INCOMPLETE)) {
      result.error = "cannot read mesh file " + path + ": " + importer.GetErrorString();
      return result;
    }
    collect(*scene, *scene->mRootNode, aiMatrix4x4(), result.parts);
    if (result.parts.empty()) result.error = "mesh file " + path + " holds no triangles";
  } catch (const std::exception& exception) {
    result.parts.clear();
    result.error = "cannot read mesh file " + path + ": " + exception.what();
  }
  return result;
}

}  // namespace VX::NextGenView
