// Open3D's triangle mesh: doubles and 32-bit numbers, edited in place. Its vectors of results keep their
// memory, so they are replaced before each run.

#include <open3d/geometry/BoundingVolume.h>
#include <open3d/geometry/TriangleMesh.h>
#include <open3d/io/TriangleMeshIO.h>

#include <cmath>
#include <memory>

#include "peers/Figures.h"
#include "peers/Peers.h"
#include "peers/ScratchFile.h"

namespace Vr::bench::peers {

namespace {

constexpr const char* kName = "Open3D";
using Mesh = open3d::geometry::TriangleMesh;

std::shared_ptr<Mesh> MakeOpen3dMesh(const std::vector<Point>& points,
                                     const std::vector<Triangle>& triangles) {
    auto mesh = std::make_shared<Mesh>();
    mesh->vertices_.reserve(points.size());
    for (const Point& point : points)
        mesh->vertices_.emplace_back(point[0], point[1], point[2]);
    mesh->triangles_.reserve(triangles.size());
    for (const Triangle& triangle : triangles)
        mesh->triangles_.emplace_back(static_cast<int>(triangle[0]), static_cast<int>(triangle[1]),
                                      static_cast<int>(triangle[2]));
    return mesh;
}

Figures MeshFigures(const Mesh& mesh) {
    return {Count("vertices", mesh.vertices_.size()), Count("triangles", mesh.triangles_.size()),
            VectorSum("positions", 3 * mesh.triangles_.size(), kDoubles, [&](size_t corner) {
                const int vertex = mesh.triangles_[corner / 3][static_cast<int>(corner % 3)];
                return mesh.vertices_[static_cast<size_t>(vertex)];
            })};
}

template <class Edit>
Task EditTask(const Input& input, Edit edit) {
    const auto original = MakeOpen3dMesh(input.points, input.triangles);
    const auto mesh = std::make_shared<Mesh>();
    Task task;
    task.prepare = [=] { *mesh = *original; };
    task.run = [=] { edit(*mesh); };
    task.result = [=] { return MeshFigures(*mesh); };
    return task;
}

Task JoinVertices(const Input& input) {
    return EditTask(input, [](Mesh& mesh) { mesh.RemoveDuplicatedVertices(); });
}

Task RemoveDegenerate(const Input& input) {
    return EditTask(input, [](Mesh& mesh) { mesh.RemoveDegenerateTriangles(); });
}

Task DeleteTriangles(const Input& input) {
    return EditTask(input,
                    [faces = input.faces](Mesh& mesh) { mesh.RemoveTrianglesByIndex(faces); });
}

Task Compact(const Input& input) {
    return EditTask(input, [](Mesh& mesh) { mesh.RemoveUnreferencedVertices(); });
}

Task TriangleNormals(const Input& input) {
    const auto mesh = MakeOpen3dMesh(input.points, input.triangles);
    Task task;
    task.prepare = [=] { std::vector<Eigen::Vector3d>().swap(mesh->triangle_normals_); };
    task.run = [=] { mesh->ComputeTriangleNormals(); };
    task.result = [=] {
        return Figures{VectorSum("normals", mesh->triangle_normals_.size(), kDoubles,
                                 [&](size_t place) { return mesh->triangle_normals_[place]; })};
    };
    return task;
}

Task VertexNormals(const Input& input) {
    const auto mesh = MakeOpen3dMesh(input.points, input.triangles);
    Task task;
    task.prepare = [=] {
        std::vector<Eigen::Vector3d>().swap(mesh->triangle_normals_);
        std::vector<Eigen::Vector3d>().swap(mesh->vertex_normals_);
    };
    task.run = [=] { mesh->ComputeVertexNormals(); };
    task.result = [=] {
        return Figures{
            VectorSum("normals by area", 3 * mesh->triangles_.size(), kDoubles, [&](size_t corner) {
                const int vertex = mesh->triangles_[corner / 3][static_cast<int>(corner % 3)];
                return mesh->vertex_normals_[static_cast<size_t>(vertex)];
            })};
    };
    return task;
}

Task FreeEdges(const Input& input) {
    const auto mesh = MakeOpen3dMesh(input.points, input.triangles);
    const auto edges = std::make_shared<std::vector<Eigen::Vector2i>>();
    Task task;
    task.prepare = [=] { std::vector<Eigen::Vector2i>().swap(*edges); };
    task.run = [=] { *edges = mesh->GetNonManifoldEdges(false); };
    task.result = [=] { return Figures{Count("edges", edges->size())}; };
    return task;
}

Task BoundingBox(const Input& input) {
    const auto mesh = MakeOpen3dMesh(input.points, input.triangles);
    const auto box = std::make_shared<open3d::geometry::AxisAlignedBoundingBox>();
    Task task;
    task.run = [=] { *box = mesh->GetAxisAlignedBoundingBox(); };
    task.result = [=] {
        return Figures{{"lower z", box->min_bound_.z(), kDoubles},
                       {"upper x", box->max_bound_.x(), kDoubles}};
    };
    return task;
}

Task Area(const Input& input) {
    const auto mesh = MakeOpen3dMesh(input.points, input.triangles);
    const auto area = std::make_shared<double>(0.0);
    Task task;
    task.run = [=] { *area = mesh->GetSurfaceArea(); };
    task.result = [=] { return Figures{{"area", *area, kDoubles}}; };
    return task;
}

Task Rotate(const Input& input) {
    const auto mesh = MakeOpen3dMesh(input.points, input.triangles);
    for (const Eigen::Vector3d& vertex : mesh->vertices_)
        mesh->vertex_normals_.push_back((vertex + Eigen::Vector3d(0.0, 0.0, 1.0)).normalized());
    Eigen::Matrix4d matrix = Eigen::Matrix4d::Identity();
    matrix.topLeftCorner<3, 3>() =
        Eigen::AngleAxisd(0.1, Eigen::Vector3d::UnitZ()).toRotationMatrix();
    Task task;
    task.run = [=] { mesh->Transform(matrix); };
    task.result = [=] {
        return Figures{VectorSum("points", mesh->vertices_.size(), kDoubles,
                                 [&](size_t place) { return mesh->vertices_[place]; }),
                       VectorSum("normals", mesh->vertex_normals_.size(), kDoubles,
                                 [&](size_t place) { return mesh->vertex_normals_[place]; })};
    };
    return task;
}

Task Merge(const Input& input) {
    std::vector<std::shared_ptr<Mesh>> parts;
    for (const PlainMesh& part : input.parts)
        parts.push_back(MakeOpen3dMesh(part.points, part.triangles));
    const auto merged = std::make_shared<Mesh>();
    Task task;
    task.prepare = [=] { *merged = Mesh(); };
    task.run = [=] {
        for (const auto& part : parts)
            *merged += *part;
        merged->RemoveDuplicatedVertices();
    };
    task.result = [=] { return MeshFigures(*merged); };
    return task;
}

std::shared_ptr<Mesh> WithNormals(const Input& input) {
    auto mesh = MakeOpen3dMesh(input.points, input.triangles);
    mesh->vertex_normals_ = mesh->vertices_;
    return mesh;
}

Task Copy(const Input& input) {
    const auto mesh = WithNormals(input);
    const auto copy = std::make_shared<std::shared_ptr<Mesh>>();
    Task task;
    task.prepare = [=] { copy->reset(); };
    task.run = [=] { *copy = std::make_shared<Mesh>(*mesh); };
    task.result = [=] { return MeshFigures(**copy); };
    return task;
}

Task Save(const Input& input) {
    const auto mesh = WithNormals(input);
    const auto file = std::make_shared<ScratchFile>(".ply");
    Task task;
    task.run = [=] { open3d::io::WriteTriangleMesh(file->Path(), *mesh); };
    return task;
}

Task Load(const Input& input) {
    const auto file = std::make_shared<ScratchFile>(".ply");
    open3d::io::WriteTriangleMesh(file->Path(), *WithNormals(input));
    const auto mesh = std::make_shared<Mesh>();
    Task task;
    task.prepare = [=] { *mesh = Mesh(); };
    task.run = [=] { open3d::io::ReadTriangleMeshFromPLY(file->Path(), *mesh, {}); };
    task.result = [=] { return MeshFigures(*mesh); };
    return task;
}

}  // namespace

void AddOpen3d(Contest& contest) {
    contest.versionOf[kName] = VERIDANE_PEER_OPEN3D;
    const auto add = [&](const char* operation, const char* call, const char* note,
                         Task (*make)(const Input&)) {
        contest.contestants.push_back(Peer(operation, kName, call, note, make));
    };
    const char* const join = "32-bit numbers; not sorted";
    add("weld", "RemoveDuplicatedVertices", join, JoinVertices);
    add("weld_indexed", "RemoveDuplicatedVertices", join, JoinVertices);
    add("merge_normals", "RemoveDuplicatedVertices", join, JoinVertices);
    add("remove_degenerate", "RemoveDegenerateTriangles", "32-bit numbers; no table",
        RemoveDegenerate);
    add("delete_faces", "RemoveTrianglesByIndex", "32-bit numbers", DeleteTriangles);
    add("compact", "RemoveUnreferencedVertices", "32-bit numbers", Compact);
    add("flat_normals", "ComputeTriangleNormals", "32-bit numbers; no numbers of normals",
        TriangleNormals);
    contest.contestants.back().isParallel = true;
    add("smooth_area", "ComputeVertexNormals", "triangle normals too; no numbers of corners",
        VertexNormals);
    contest.contestants.back().isParallel = true;
    add("free_edges", "GetNonManifoldEdges", "neither directed nor sorted; hash map", FreeEdges);
    contest.contestants.back().mostTriangles = 1'000'000;
    add("bbox", "GetAxisAlignedBoundingBox", "of all points", BoundingBox);
    contest.contestants.back().isComparable = false;
    add("area", "GetSurfaceArea", "32-bit numbers; one call for all", Area);
    add("transform", "Transform", "normals too, not made unit vectors again", Rotate);
    add("merge", "+=, RemoveDuplicatedVertices", "32-bit numbers; no maps", Merge);
    add("copy", "copy constructor", "32-bit numbers", Copy);
    add("save", "WriteTriangleMesh, binary PLY", "32-bit numbers; new file", Save);
    add("load", "ReadTriangleMeshFromPLY", "32-bit numbers", Load);
}

}  // namespace Vr::bench::peers
