#include "peers/AssimpScene.h"

#include <assimp/BaseImporter.h>
#include <assimp/importerdesc.h>

#include <memory>
#include <set>
#include <stdexcept>

namespace Vr::bench::peers {

namespace {

constexpr const char* kExtension = "plainarrays";

aiVector3D Vector(const Point& point) {
    return {static_cast<ai_real>(point[0]), static_cast<ai_real>(point[1]),
            static_cast<ai_real>(point[2])};
}

class PlainLoader : public Assimp::BaseImporter {
public:
    PlainLoader(const Input& input, bool withNormals)
        : points_(input.points), triangles_(input.triangles), withNormals_(withNormals) {}

    bool CanRead(const std::string& file, Assimp::IOSystem*, bool) const override {
        return file.find(kExtension) != std::string::npos;
    }

    const aiImporterDesc* GetInfo() const override {
        static const aiImporterDesc description = {
            "plain arrays", "", "", "", aiImporterFlags_SupportBinaryFlavour, 0, 0, 0, 0,
            kExtension};
        return &description;
    }

protected:
    void InternReadFile(const std::string&, aiScene* scene, Assimp::IOSystem*) override {
        scene->mNumMaterials = 1;
        scene->mMaterials = new aiMaterial* [1] { new aiMaterial };
        scene->mNumMeshes = 1;
        scene->mMeshes = new aiMesh* [1] { MakeMesh() };
        scene->mRootNode = new aiNode("root");
        scene->mRootNode->mNumMeshes = 1;
        scene->mRootNode->mMeshes = new unsigned int[1]{0};
    }

private:
    aiMesh* MakeMesh() const {
        auto mesh = std::make_unique<aiMesh>();
        mesh->mPrimitiveTypes = aiPrimitiveType_TRIANGLE;
        mesh->mNumVertices = static_cast<unsigned int>(points_.size());
        mesh->mVertices = new aiVector3D[points_.size()];
        for (size_t point = 0; point < points_.size(); ++point)
            mesh->mVertices[point] = Vector(points_[point]);
        if (withNormals_) {
            mesh->mNormals = new aiVector3D[points_.size()];
            for (size_t point = 0; point < points_.size(); ++point)
                mesh->mNormals[point] = Vector(points_[point]);
        }
        mesh->mNumFaces = static_cast<unsigned int>(triangles_.size());
        mesh->mFaces = new aiFace[triangles_.size()];
        for (size_t triangle = 0; triangle < triangles_.size(); ++triangle) {
            aiFace& face = mesh->mFaces[triangle];
            face.mNumIndices = 3;
            face.mIndices = new unsigned int[3];
            for (size_t corner = 0; corner < 3; ++corner)
                face.mIndices[corner] = static_cast<unsigned int>(triangles_[triangle][corner]);
        }
        return mesh.release();
    }

    std::vector<Point> points_;
    std::vector<Triangle> triangles_;
    bool withNormals_;
};

}  // namespace

AssimpScene::AssimpScene(const Input& input, bool withNormals) {
    importer_.RegisterLoader(new PlainLoader(input, withNormals));
    Restore();
}

void AssimpScene::Restore() {
    const char nothing = ' ';
    if (!importer_.ReadFileFromMemory(&nothing, 1, 0, kExtension))
        throw std::runtime_error(importer_.GetErrorString());
}

}  // namespace Vr::bench::peers
