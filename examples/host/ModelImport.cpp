// A model is a tree of places that refer to meshes. What does not depend on the place is built once a
// mesh (MeshParts), the positions and normals once a place.

#include "ModelImport.h"

#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include <assimp/Importer.hpp>
#include <memory>
#include <string>
#include <system_error>
#include <utility>

#include "Failure.h"
#include "Interrupt.h"

namespace Host {

namespace {

using Vr::VraMesh;
using TriangleIndex = VraMesh::TriangleIndex;
using IndexArray = VraMesh::IndexArray;

// The arrays that all places of a mesh share.
struct MeshParts {
    std::shared_ptr<VraMesh::ColorArray> colors;
    std::shared_ptr<VraMesh::VertexIndexArray> triangles;
    std::shared_ptr<IndexArray> normalIndices;
    std::shared_ptr<IndexArray> colorIndices;
    std::shared_ptr<VraMesh::UVArray> uvs;
};

ON_Xform ToXform(const aiMatrix4x4& matrix) {
    ON_Xform xform;
    for (unsigned int row = 0; row < 4; ++row)
        for (unsigned int column = 0; column < 4; ++column)
            xform[static_cast<int>(row)][column] = static_cast<double>(matrix[row][column]);
    return xform;
}

// Alpha counts the other way round: 0 is opaque in a document and transparent in a model.
ON_Color ToColor(const aiColor4D& color) {
    ON_Color packed;
    packed.SetFractionalRGBA(static_cast<double>(color.r), static_cast<double>(color.g),
                             static_cast<double>(color.b), 1.0 - static_cast<double>(color.a));
    return packed;
}

class Importer {
public:
    Importer(const std::filesystem::path& path, const aiScene& scene)
        : path_(path),
          scene_(scene),
          partsOf_(scene.mNumMeshes),
          mirroredPartsOf_(scene.mNumMeshes) {}

    ImportedModel Run() {
        CountFaces();
        if (scene_.mRootNode != nullptr)
            ImportPlaces(*scene_.mRootNode, ON_Xform(1.0));
        if (model_.meshes.empty())
            throw Failure(path_, "the model holds no triangles");
        return std::move(model_);
    }

private:
    void CountFaces();
    void ImportPlaces(const aiNode& node, const ON_Xform& parentXform);
    void ImportPlace(unsigned int meshNumber, const ON_Xform& xform);
    const MeshParts& PartsOf(unsigned int meshNumber, bool isMirrored);
    std::shared_ptr<VraMesh::VertexIndexArray> ReadTriangles(const aiMesh& source,
                                                             bool isMirrored) const;
    std::shared_ptr<VraMesh::VertexArray> ReadPositions(const aiMesh& source,
                                                        const ON_Xform& xform) const;
    std::shared_ptr<VraMesh::NormalArray> ReadNormals(const aiMesh& source, const ON_Xform& xform);

    const std::filesystem::path& path_;
    const aiScene& scene_;
    std::vector<MeshParts> partsOf_;
    std::vector<MeshParts> mirroredPartsOf_;
    ImportedModel model_;
};

// Once a mesh, however many places it has.
void Importer::CountFaces() {
    for (unsigned int meshNumber = 0; meshNumber < scene_.mNumMeshes; ++meshNumber) {
        const aiMesh& mesh = *scene_.mMeshes[meshNumber];
        for (unsigned int face = 0; face < mesh.mNumFaces; ++face) {
            const unsigned int cornerCount = mesh.mFaces[face].mNumIndices;
            model_.droppedPointCount += cornerCount == 1 ? 1U : 0U;
            model_.droppedLineCount += cornerCount == 2 ? 1U : 0U;
        }
    }
}

void Importer::ImportPlaces(const aiNode& node, const ON_Xform& parentXform) {
    const ON_Xform xform = parentXform * ToXform(node.mTransformation);
    for (unsigned int position = 0; position < node.mNumMeshes; ++position) {
        ThrowIfInterrupted();
        ImportPlace(node.mMeshes[position], xform);
    }
    // Some readers count places that they leave empty.
    for (unsigned int child = 0; child < node.mNumChildren; ++child)
        if (node.mChildren[child] != nullptr)
            ImportPlaces(*node.mChildren[child], xform);
}

void Importer::ImportPlace(unsigned int meshNumber, const ON_Xform& xform) {
    if (meshNumber >= scene_.mNumMeshes)
        throw Failure(path_, "damaged model: a mesh number is out of range");
    const aiMesh& source = *scene_.mMeshes[meshNumber];
    const MeshParts& parts = PartsOf(meshNumber, xform.Determinant() < 0.0);
    if (parts.triangles->empty())
        return;
    const Mesh mesh(new VraMesh);
    mesh->SetVertexArray(ReadPositions(source, xform));
    mesh->SetVertexIndexArray(parts.triangles);
    if (auto normals = ReadNormals(source, xform)) {
        mesh->SetNormalArray(std::move(normals));
        mesh->SetNormalIndexArray(parts.normalIndices);
    }
    mesh->SetColorArray(parts.colors);
    mesh->SetColorIndexArray(parts.colorIndices);
    mesh->SetUVArray(parts.uvs);
    model_.triangleCount += parts.triangles->size();
    model_.meshes.push_back(mesh);
}

const MeshParts& Importer::PartsOf(unsigned int meshNumber, bool isMirrored) {
    MeshParts& parts = isMirrored ? mirroredPartsOf_[meshNumber] : partsOf_[meshNumber];
    if (parts.triangles)
        return parts;
    const aiMesh& source = *scene_.mMeshes[meshNumber];
    parts.triangles = ReadTriangles(source, isMirrored);
    const auto& triangles = *parts.triangles;
    if (source.HasNormals())
        parts.normalIndices = std::make_shared<IndexArray>(triangles);
    if (source.HasVertexColors(0)) {
        // One array object more, not the one of the normals: joining equal normals and joining equal
        // colours renumber theirs each by itself.
        parts.colorIndices = std::make_shared<IndexArray>(triangles);
        parts.colors = std::make_shared<VraMesh::ColorArray>();
        parts.colors->reserve(source.mNumVertices);
        for (unsigned int vertex = 0; vertex < source.mNumVertices; ++vertex)
            parts.colors->push_back(ToColor(source.mColors[0][vertex]));
    }
    if (source.HasTextureCoords(0)) {
        parts.uvs = std::make_shared<VraMesh::UVArray>();
        parts.uvs->reserve(3 * triangles.size());
        for (const TriangleIndex& triangle : triangles)
            for (const size_t vertex : triangle.v) {
                const aiVector3D& uv = source.mTextureCoords[0][vertex];
                parts.uvs->emplace_back(static_cast<double>(uv.x), static_cast<double>(uv.y));
            }
    }
    return parts;
}

std::shared_ptr<VraMesh::VertexIndexArray> Importer::ReadTriangles(const aiMesh& source,
                                                                   bool isMirrored) const {
    auto triangles = std::make_shared<VraMesh::VertexIndexArray>();
    triangles->reserve(source.mNumFaces);
    for (unsigned int face = 0; face < source.mNumFaces; ++face) {
        const aiFace& corners = source.mFaces[face];
        if (corners.mNumIndices != 3)
            continue;
        TriangleIndex triangle = {{corners.mIndices[0], corners.mIndices[1], corners.mIndices[2]}};
        if (isMirrored)
            std::swap(triangle[1], triangle[2]);
        triangles->push_back(triangle);
    }
    return triangles;
}

std::shared_ptr<VraMesh::VertexArray> Importer::ReadPositions(const aiMesh& source,
                                                              const ON_Xform& xform) const {
    auto vertices = std::make_shared<VraMesh::VertexArray>();
    vertices->reserve(source.mNumVertices);
    for (unsigned int vertex = 0; vertex < source.mNumVertices; ++vertex) {
        const aiVector3D& position = source.mVertices[vertex];
        ON_3dPoint point(static_cast<double>(position.x), static_cast<double>(position.y),
                         static_cast<double>(position.z));
        point.Transform(xform);
        if (!point.IsValid())
            throw Failure(path_, "damaged model: a position is not finite");
        vertices->push_back(point);
    }
    return vertices;
}

// Normals go by the inverse transpose, which keeps them upright where a place stretches or mirrors.
// A normal without a direction becomes the zero vector.
std::shared_ptr<VraMesh::NormalArray> Importer::ReadNormals(const aiMesh& source,
                                                            const ON_Xform& xform) {
    if (!source.HasNormals())
        return nullptr;
    ON_Xform normalXform = xform;
    if (!normalXform.Invert()) {
        ++model_.flattenedCount;
        return nullptr;
    }
    normalXform.Transpose();
    auto normals = std::make_shared<VraMesh::NormalArray>();
    normals->reserve(source.mNumVertices);
    for (unsigned int vertex = 0; vertex < source.mNumVertices; ++vertex) {
        const aiVector3D& direction = source.mNormals[vertex];
        ON_3dVector normal(static_cast<double>(direction.x), static_cast<double>(direction.y),
                           static_cast<double>(direction.z));
        normal.Transform(normalXform);
        if (!normal.Unitize() || !normal.IsValid())
            normal = ON_3dVector(0, 0, 0);
        normals->push_back(normal);
    }
    return normals;
}

// The triangulation trusts the faces, and so does everything behind it.
void CheckFaces(const aiScene& scene, const std::filesystem::path& path) {
    for (unsigned int meshNumber = 0; meshNumber < scene.mNumMeshes; ++meshNumber) {
        const aiMesh& mesh = *scene.mMeshes[meshNumber];
        for (unsigned int face = 0; face < mesh.mNumFaces; ++face) {
            // A file cut short leaves such faces, and the triangulation would end the process.
            if (mesh.mFaces[face].mNumIndices == 0)
                throw Failure(path, "damaged model: a face has no corners");
            for (unsigned int corner = 0; corner < mesh.mFaces[face].mNumIndices; ++corner)
                if (mesh.mFaces[face].mIndices[corner] >= mesh.mNumVertices)
                    throw Failure(path, "damaged model: a vertex number is out of range");
        }
    }
}

const aiScene& ReadScene(Assimp::Importer& reader, const std::filesystem::path& path) {
    const aiScene* scene = reader.ReadFile(path.string(), 0);
    ThrowIfInterrupted();
    if (scene != nullptr) {
        CheckFaces(*scene, path);
        scene = reader.ApplyPostProcessing(aiProcess_Triangulate);
    }
    if (scene == nullptr)
        throw Failure(path, reader.GetErrorString());
    return *scene;
}

}  // namespace

ImportedModel ImportModel(const std::filesystem::path& path) {
    try {
        std::error_code error;
        if (const auto status = std::filesystem::status(path, error);
            error || std::filesystem::is_directory(status))
            throw Failure(path, error ? error.message() : "is a directory");
        Assimp::Importer reader;
        return Importer(path, ReadScene(reader, path)).Run();
    } catch (...) {
        RethrowAsFailure(path);
    }
}

}  // namespace Host
