// Corners are joined by walking the corners of each vertex that were given out before: a chain a
// vertex, threaded through flat arrays. Chains are short, as they grow with the differing corners.

#include "ModelExport.h"

#include <assimp/config.h>
#include <assimp/scene.h>

#include <algorithm>
#include <assimp/Exporter.hpp>
#include <cctype>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Failure.h"
#include "Interrupt.h"
#include "ReplacingFile.h"

namespace Host {

namespace {

using Vr::VraMeshPrimitive;
using TriangleIndex = VraMeshPrimitive::TriangleIndex;
using IndexArray = VraMeshPrimitive::IndexArray;

constexpr size_t kNone = std::numeric_limits<size_t>::max();

// The number that an index array gives to a corner; a missing array counts as one value for all.
class CornerNumbers {
public:
    explicit CornerNumbers(const IndexArray* indices) {
        if (indices == nullptr)
            return;
        if (indices->which() == 1)
            perVertex_ = &boost::get<IndexArray::PerVertex>(indices->data);
        else
            perTriangle_ = &boost::get<IndexArray::PerTriangle>(indices->data);
    }
    bool IsEmpty() const { return perVertex_ == nullptr && perTriangle_ == nullptr; }
    size_t Of(size_t triangle, size_t corner) const {
        if (perVertex_ != nullptr)
            return (*perVertex_)[triangle][corner];
        return perTriangle_ != nullptr ? (*perTriangle_)[triangle] : 0;
    }

private:
    const IndexArray::PerVertex* perVertex_ = nullptr;
    const IndexArray::PerTriangle* perTriangle_ = nullptr;
};

aiVector3D ToVector(double x, double y, double z) {
    return aiVector3D(static_cast<ai_real>(x), static_cast<ai_real>(y), static_cast<ai_real>(z));
}

aiColor4D ToColor(const ON_Color& color) {
    return aiColor4D(static_cast<ai_real>(color.FractionRed()),
                     static_cast<ai_real>(color.FractionGreen()),
                     static_cast<ai_real>(color.FractionBlue()),
                     static_cast<ai_real>(1.0 - color.FractionAlpha()));
}

class MeshBuilder {
public:
    explicit MeshBuilder(const VraMeshPrimitive& source)
        : vertices_(source.GetVertexArray()),
          normals_(source.GetNormalArray()),
          colors_(source.GetColorArray()),
          triangles_(source.GetVertexIndexArray()),
          normalIndices_(source.GetNormalIndexArray()),
          colorIndices_(source.GetColorIndexArray()),
          uvs_(source.GetUVArray()),
          normalNumbers_(normals_ ? normalIndices_.get() : nullptr),
          colorNumbers_(colors_ ? colorIndices_.get() : nullptr),
          hasUVs_(uvs_ && uvs_->size() == 3 * triangles_->size()) {}

    std::unique_ptr<aiMesh> Run() {
        auto mesh = std::make_unique<aiMesh>();
        mesh->mPrimitiveTypes = aiPrimitiveType_TRIANGLE;
        JoinCorners(*mesh);
        const size_t vertexCount = vertexOf_.size();
        if (vertexCount > AI_MAX_VERTICES)
            throw std::runtime_error("an object has too many vertices for a model");
        mesh->mNumVertices = static_cast<unsigned int>(vertexCount);
        FillValues(*mesh);
        return mesh;
    }

private:
    void JoinCorners(aiMesh& mesh);
    size_t ModelVertexOf(size_t triangle, size_t corner);
    void FillValues(aiMesh& mesh) const;

    ON_2dPoint UVOf(size_t triangle, size_t corner) const {
        return hasUVs_ ? (*uvs_)[3 * triangle + corner] : ON_2dPoint(0, 0);
    }

    const std::shared_ptr<const VraMeshPrimitive::VertexArray> vertices_;
    const std::shared_ptr<const VraMeshPrimitive::NormalArray> normals_;
    const std::shared_ptr<const VraMeshPrimitive::ColorArray> colors_;
    const std::shared_ptr<const VraMeshPrimitive::VertexIndexArray> triangles_;
    const std::shared_ptr<const IndexArray> normalIndices_;
    const std::shared_ptr<const IndexArray> colorIndices_;
    const std::shared_ptr<const VraMeshPrimitive::UVArray> uvs_;
    const CornerNumbers normalNumbers_;
    const CornerNumbers colorNumbers_;
    const bool hasUVs_;

    /// The newest model vertex of each vertex, and the one before it of each model vertex.
    std::vector<size_t> newestOf_;
    std::vector<size_t> olderOf_;
    /// What each model vertex stands for.
    std::vector<size_t> vertexOf_;
    std::vector<size_t> normalOf_;
    std::vector<size_t> colorOf_;
    std::vector<ON_2dPoint> uvOf_;
};

void MeshBuilder::JoinCorners(aiMesh& mesh) {
    newestOf_.assign(vertices_->size(), kNone);
    for (auto* const list : {&olderOf_, &vertexOf_, &normalOf_, &colorOf_})
        list->reserve(vertices_->size());
    uvOf_.reserve(vertices_->size());

    mesh.mNumFaces = static_cast<unsigned int>(triangles_->size());
    mesh.mFaces = new aiFace[triangles_->size()];
    for (size_t triangle = 0; triangle < triangles_->size(); ++triangle) {
        aiFace& face = mesh.mFaces[triangle];
        face.mNumIndices = 3;
        face.mIndices = new unsigned int[3];  // the model's own layout
        for (size_t corner = 0; corner < 3; ++corner)
            face.mIndices[corner] = static_cast<unsigned int>(ModelVertexOf(triangle, corner));
    }
}

size_t MeshBuilder::ModelVertexOf(size_t triangle, size_t corner) {
    const size_t vertex = (*triangles_)[triangle][corner];
    const size_t normal = normalNumbers_.Of(triangle, corner);
    const size_t color = colorNumbers_.Of(triangle, corner);
    const ON_2dPoint uv = UVOf(triangle, corner);
    for (size_t known = newestOf_[vertex]; known != kNone; known = olderOf_[known])
        if (normalOf_[known] == normal && colorOf_[known] == color && uvOf_[known] == uv)
            return known;
    const size_t added = vertexOf_.size();
    olderOf_.push_back(newestOf_[vertex]);
    newestOf_[vertex] = added;
    vertexOf_.push_back(vertex);
    normalOf_.push_back(normal);
    colorOf_.push_back(color);
    uvOf_.push_back(uv);
    return added;
}

void MeshBuilder::FillValues(aiMesh& mesh) const {
    const size_t count = vertexOf_.size();
    mesh.mVertices = new aiVector3D[count];
    for (size_t modelVertex = 0; modelVertex < count; ++modelVertex) {
        const ON_3dPoint& point = (*vertices_)[vertexOf_[modelVertex]];
        mesh.mVertices[modelVertex] = ToVector(point.x, point.y, point.z);
    }
    if (!normalNumbers_.IsEmpty()) {
        mesh.mNormals = new aiVector3D[count];
        for (size_t modelVertex = 0; modelVertex < count; ++modelVertex) {
            const ON_3dVector& normal = (*normals_)[normalOf_[modelVertex]];
            mesh.mNormals[modelVertex] = ToVector(normal.x, normal.y, normal.z);
        }
    }
    if (!colorNumbers_.IsEmpty()) {
        mesh.mColors[0] = new aiColor4D[count];
        for (size_t modelVertex = 0; modelVertex < count; ++modelVertex)
            mesh.mColors[0][modelVertex] = ToColor((*colors_)[colorOf_[modelVertex]]);
    }
    if (hasUVs_) {
        mesh.mNumUVComponents[0] = 2;
        mesh.mTextureCoords[0] = new aiVector3D[count];
        for (size_t modelVertex = 0; modelVertex < count; ++modelVertex)
            mesh.mTextureCoords[0][modelVertex] =
                ToVector(uvOf_[modelVertex].x, uvOf_[modelVertex].y, 0.0);
    }
}

// A model of one place that holds all meshes, with the one material that every model must have.
std::unique_ptr<aiScene> BuildScene(const std::vector<std::unique_ptr<aiMesh>>& meshes) {
    auto scene = std::make_unique<aiScene>();
    scene->mMaterials = new aiMaterial*[1];
    scene->mMaterials[0] = new aiMaterial;
    scene->mNumMaterials = 1;
    scene->mRootNode = new aiNode("document");
    scene->mRootNode->mMeshes = new unsigned int[meshes.size()];
    scene->mMeshes = new aiMesh*[meshes.size()];
    return scene;
}

// Named, because some formats tell meshes apart by nothing else.
void AddMesh(aiScene& scene, std::unique_ptr<aiMesh> mesh) {
    mesh->mName = "object_" + std::to_string(scene.mNumMeshes + 1);
    aiNode& root = *scene.mRootNode;
    root.mMeshes[root.mNumMeshes++] = scene.mNumMeshes;
    scene.mMeshes[scene.mNumMeshes++] = mesh.release();
}

// Of several formats with one extension: an OBJ without materials is one file, a binary STL is small
// and exact, and glTF 2 is what is read today. A binary PLY would have its colours in a width that its
// header does not name, so the text form stays.
std::string FormatFor(const Assimp::Exporter& exporter, const std::filesystem::path& path) {
    std::string extension = path.extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    constexpr std::string_view kPreferred[] = {"objnomtl", "stlb", "gltf2", "glb2"};
    std::string format;
    for (size_t number = 0; number < exporter.GetExportFormatCount(); ++number) {
        const aiExportFormatDesc& description = *exporter.GetExportFormatDescription(number);
        if (extension != "." + std::string(description.fileExtension))
            continue;
        const bool isPreferred = std::find(std::begin(kPreferred), std::end(kPreferred),
                                           description.id) != std::end(kPreferred);
        if (format.empty() || isPreferred)
            format = description.id;
    }
    if (format.empty())
        throw Failure(path, "no model format is known for this extension");
    return format;
}

void WriteFile(const aiExportDataBlob& blob, const std::filesystem::path& path) {
    try {
        ReplacingFile replacing(path);
        CFile file(replacing.Path().c_str(), CFile::modeWrite);
        constexpr size_t kPieceBytes = size_t{1} << 20;
        const auto* const bytes = static_cast<const BYTE*>(blob.data);
        for (size_t begin = 0; begin < blob.size; begin += kPieceBytes)
            file.Write(bytes + begin,
                       static_cast<UINT>((std::min)(kPieceBytes, blob.size - begin)));
        file.Flush();
        file.Close();
        ThrowIfInterrupted();
        replacing.Commit();
    } catch (...) {
        RethrowAsFailure(path);
    }
}

// The first blob is the model. The others, which it refers to by their names, stand beside it and are
// written first, so that a model never stands there without them.
void WriteFiles(const aiExportDataBlob& model, const std::filesystem::path& path) {
    for (const aiExportDataBlob* part = model.next; part != nullptr; part = part->next)
        WriteFile(*part, path.parent_path() / part->name.C_Str());
    WriteFile(model, path);
}

}  // namespace

size_t ExportModel(const Document& document, const std::filesystem::path& path) {
    try {
        Assimp::Exporter exporter;
        const std::string format = FormatFor(exporter, path);
        std::vector<std::unique_ptr<aiMesh>> meshes;
        size_t triangleCount = 0;
        for (const Mesh& object : MeshesOf(document)) {
            ThrowIfInterrupted();
            if (object->IsEmpty())
                continue;
            meshes.push_back(MeshBuilder(*object).Run());
            triangleCount += object->GetVertexIndexArray()->size();
        }
        if (meshes.empty())
            throw Failure(path, "the document holds no triangles to export");
        const auto scene = BuildScene(meshes);
        for (auto& mesh : meshes)
            AddMesh(*scene, std::move(mesh));

        Assimp::ExportProperties properties;
        properties.SetPropertyString(AI_CONFIG_EXPORT_BLOB_NAME, path.stem().string());
        const aiExportDataBlob* const blob =
            exporter.ExportToBlob(scene.get(), format, 0, &properties);
        ThrowIfInterrupted();
        if (blob == nullptr)
            throw Failure(path, exporter.GetErrorString());
        WriteFiles(*blob, path);
        return triangleCount;
    } catch (...) {
        RethrowAsFailure(path);
    }
}

}  // namespace Host
