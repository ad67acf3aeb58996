// Assimp's post-processing: floats, and numbers of each face in a block of their own.

#include <assimp/SceneCombiner.h>
#include <assimp/config.h>
#include <assimp/postprocess.h>
#include <assimp/version.h>

#include <assimp/Exporter.hpp>
#include <memory>

#include "peers/AssimpScene.h"
#include "peers/Figures.h"
#include "peers/Peers.h"
#include "peers/ScratchFile.h"

namespace Vr::bench::peers {

namespace {

constexpr const char* kName = "Assimp";
constexpr size_t kMostTriangles = 1'000'000;

Figures TriangleCount(const aiMesh& mesh) {
    return {Count("triangles", mesh.mNumFaces)};
}

void RemoveNormals(aiMesh& mesh) {
    delete[] mesh.mNormals;
    mesh.mNormals = nullptr;
}

// A step that changes what it starts from.
Task StepOnFresh(const Input& input, unsigned int step) {
    const auto scene = std::make_shared<AssimpScene>(input, false);
    scene->Importer().SetPropertyBool(AI_CONFIG_PP_FD_REMOVE, true);
    scene->Importer().SetPropertyFloat(AI_CONFIG_PP_GSN_MAX_SMOOTHING_ANGLE, 30.0F);
    Task task;
    task.prepare = [=] { scene->Restore(); };
    task.run = [=] { scene->Importer().ApplyPostProcessing(step); };
    task.result = [=] { return TriangleCount(scene->Mesh()); };
    return task;
}

Task JoinVertices(const Input& input) {
    return StepOnFresh(input, aiProcess_JoinIdenticalVertices);
}

Task RemoveDegenerate(const Input& input) {
    Task task = StepOnFresh(input, aiProcess_FindDegenerates);
    // Points that are equal as floats are equal to it.
    task.result = [] { return Figures(); };
    return task;
}

Task CreaseNormals(const Input& input) {
    return StepOnFresh(input, aiProcess_GenSmoothNormals);
}

Task FaceNormals(const Input& input) {
    const auto scene = std::make_shared<AssimpScene>(input, false);
    Task task;
    task.prepare = [=] { RemoveNormals(scene->Mesh()); };
    task.run = [=] { scene->Importer().ApplyPostProcessing(aiProcess_GenNormals); };
    return task;
}

Task BoundingBox(const Input& input) {
    const auto scene = std::make_shared<AssimpScene>(input, false);
    Task task;
    task.run = [=] { scene->Importer().ApplyPostProcessing(aiProcess_GenBoundingBoxes); };
    task.result = [=] {
        const aiAABB& box = scene->Mesh().mAABB;
        return Figures{{"lower z", static_cast<double>(box.mMin.z), kFloats},
                       {"upper x", static_cast<double>(box.mMax.x), kFloats}};
    };
    return task;
}

Task Reverse(const Input& input) {
    const auto scene = std::make_shared<AssimpScene>(input, true);
    Task task;
    task.run = [=] { scene->Importer().ApplyPostProcessing(aiProcess_FlipWindingOrder); };
    return task;
}

Task Copy(const Input& input) {
    const auto scene = std::make_shared<AssimpScene>(input, true);
    const auto copy = std::make_shared<std::unique_ptr<aiMesh>>();
    Task task;
    task.prepare = [=] { copy->reset(); };
    task.run = [=] {
        aiMesh* made = nullptr;
        Assimp::SceneCombiner::Copy(&made, &scene->Mesh());
        copy->reset(made);
    };
    task.result = [=] { return TriangleCount(**copy); };
    return task;
}

Task Save(const Input& input) {
    const auto scene = std::make_shared<AssimpScene>(input, true);
    const auto file = std::make_shared<ScratchFile>(".assbin");
    Task task;
    task.run = [=] {
        Assimp::Exporter exporter;
        exporter.Export(scene->Importer().GetScene(), "assbin", file->Path());
    };
    return task;
}

Task Load(const Input& input) {
    const auto file = std::make_shared<ScratchFile>(".assbin");
    {
        AssimpScene scene(input, true);
        Assimp::Exporter exporter;
        exporter.Export(scene.Importer().GetScene(), "assbin", file->Path());
    }
    const auto importer = std::make_shared<Assimp::Importer>();
    Task task;
    task.prepare = [=] { importer->FreeScene(); };
    task.run = [=] { importer->ReadFile(file->Path(), 0); };
    task.result = [=] { return TriangleCount(*importer->GetScene()->mMeshes[0]); };
    return task;
}

}  // namespace

void AddAssimp(Contest& contest) {
    contest.versionOf[kName] = std::to_string(aiGetVersionMajor()) + "." +
                               std::to_string(aiGetVersionMinor()) + "." +
                               std::to_string(aiGetVersionPatch());
    const auto add = [&](const char* operation, const char* call, const char* note,
                         Task (*make)(const Input&)) {
        contest.contestants.push_back(Peer(operation, kName, call, note, make));
        contest.contestants.back().mostTriangles = kMostTriangles;
    };
    add("weld", "JoinIdenticalVertices", "floats, with a tolerance; sorted along a line",
        JoinVertices);
    add("flat_normals", "GenNormals", "floats; splits all vertices of shared ones", FaceNormals);
    for (const char* operation : {"crease_area", "crease_angle"})
        add(operation, "GenSmoothNormals", "floats; points looked up by place, none shared",
            CreaseNormals);
    add("remove_degenerate", "FindDegenerates",
        "compares positions too, as floats; a block for each face", RemoveDegenerate);
    add("bbox", "GenBoundingBoxes", "floats; of all points", BoundingBox);
    contest.contestants.back().isComparable = false;
    add("reverse", "FlipWindingOrder", "32-bit numbers, a block for each face; normals stay",
        Reverse);
    add("copy", "SceneCombiner::Copy", "floats, 32-bit numbers, a block for each face", Copy);
    add("save", "Exporter, assbin", "floats, 32-bit numbers", Save);
    add("load", "ReadFile, assbin", "floats, 32-bit numbers, a block for each face", Load);
}

}  // namespace Vr::bench::peers
