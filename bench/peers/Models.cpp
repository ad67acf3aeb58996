// Assimp gives a soup or an indexed mesh as the format has it; joining makes one form of them all.

#include "peers/Models.h"

#include <map>
#include <stdexcept>

#if defined(VERIDANE_PEER_ASSIMP)
#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include <assimp/Importer.hpp>

#include "peers/Manifold.h"
#endif

namespace Vr::bench::peers {

#if defined(VERIDANE_PEER_ASSIMP)

namespace {

void Append(const aiMesh& part, std::map<Point, uint64_t>& pointAt, PlainMesh& mesh) {
    for (unsigned int face = 0; face < part.mNumFaces; ++face) {
        if (part.mFaces[face].mNumIndices != 3)
            continue;
        Triangle triangle = {};
        for (unsigned int corner = 0; corner < 3; ++corner) {
            const aiVector3D& position = part.mVertices[part.mFaces[face].mIndices[corner]];
            const Point point = {position.x, position.y, position.z};
            const auto [place, isNew] = pointAt.emplace(point, mesh.points.size());
            if (isNew)
                mesh.points.push_back(point);
            triangle[corner] = place->second;
        }
        mesh.triangles.push_back(triangle);
    }
}

}  // namespace

PlainMesh LoadModel(const std::string& path) {
    Assimp::Importer importer;
    const aiScene* const scene = importer.ReadFile(path, aiProcess_Triangulate);
    if (!scene)
        throw std::runtime_error(importer.GetErrorString());
    PlainMesh mesh;
    mesh.name = path.substr(path.find_last_of('/') + 1);
    std::map<Point, uint64_t> pointAt;
    for (unsigned int part = 0; part < scene->mNumMeshes; ++part)
        Append(*scene->mMeshes[part], pointAt, mesh);
    if (mesh.triangles.empty())
        throw std::runtime_error(path + " has no triangle");
    mesh.isManifold = IsManifold(mesh.triangles);
    return mesh;
}

#else

PlainMesh LoadModel(const std::string& path) {
    throw std::runtime_error("built without Assimp, which reads " + path);
}

#endif

}  // namespace Vr::bench::peers
