// OpenMesh: half-edges with doubles. Its structure, which most of the work goes into, is built
// beforehand.

#include <OpenMesh/Core/IO/MeshIO.hh>
#include <OpenMesh/Core/Mesh/TriMesh_ArrayKernelT.hh>

#include <cmath>
#include <iostream>
#include <memory>

#include "peers/Figures.h"
#include "peers/Peers.h"
#include "peers/ScratchFile.h"

namespace Vr::bench::peers {

namespace {

constexpr const char* kName = "OpenMesh";
constexpr size_t kMostTriangles = 1'000'000;

struct Traits : OpenMesh::DefaultTraits {
    using Point = OpenMesh::Vec3d;
    using Normal = OpenMesh::Vec3d;
};
using Mesh = OpenMesh::TriMesh_ArrayKernelT<Traits>;

std::shared_ptr<Mesh> MakeOpenMesh(const Input& input) {
    if (!input.isManifold)
        throw CannotHold();
    auto mesh = std::make_shared<Mesh>();
    mesh->reserve(input.points.size(), 3 * input.triangles.size() / 2, input.triangles.size());
    for (const Point& point : input.points)
        mesh->add_vertex(Mesh::Point(point[0], point[1], point[2]));
    const auto vertex = [](uint64_t number) {
        return OpenMesh::VertexHandle(static_cast<int>(number));
    };
    for (const Triangle& triangle : input.triangles)
        mesh->add_face(vertex(triangle[0]), vertex(triangle[1]), vertex(triangle[2]));
    return mesh;
}

Figures MeshFigures(const Mesh& mesh) {
    return {Count("vertices", mesh.n_vertices()), Count("triangles", mesh.n_faces())};
}

Task FaceNormals(const Input& input) {
    const auto mesh = MakeOpenMesh(input);
    Task task;
    task.prepare = [=] {
        if (mesh->has_face_normals())
            mesh->release_face_normals();
    };
    task.run = [=] {
        mesh->request_face_normals();
        mesh->update_face_normals();
    };
    task.result = [=] {
        return Figures{VectorSum("normals", mesh->n_faces(), kDoubles, [&](size_t face) {
            return mesh->normal(OpenMesh::FaceHandle(static_cast<int>(face)));
        })};
    };
    return task;
}

Task VertexNormals(const Input& input) {
    const auto mesh = MakeOpenMesh(input);
    mesh->request_face_normals();
    mesh->update_face_normals();
    Task task;
    task.prepare = [=] {
        if (mesh->has_vertex_normals())
            mesh->release_vertex_normals();
    };
    task.run = [=] {
        mesh->request_vertex_normals();
        mesh->update_vertex_normals();
    };
    return task;
}

Task HalfedgeNormals(const Input& input) {
    const auto mesh = MakeOpenMesh(input);
    mesh->request_face_normals();
    mesh->update_face_normals();
    Task task;
    task.prepare = [=] {
        if (mesh->has_halfedge_normals())
            mesh->release_halfedge_normals();
    };
    task.run = [=] {
        mesh->request_halfedge_normals();
        mesh->update_halfedge_normals(std::acos(-1.0) / 6.0);
    };
    return task;
}

std::shared_ptr<Mesh> WithStatus(const Input& input) {
    auto mesh = MakeOpenMesh(input);
    mesh->request_vertex_status();
    mesh->request_edge_status();
    mesh->request_halfedge_status();
    mesh->request_face_status();
    return mesh;
}

template <class Edit>
Task EditTask(const Input& input, Edit edit) {
    const auto original = WithStatus(input);
    const auto mesh = std::make_shared<Mesh>();
    Task task;
    task.prepare = [=] { *mesh = *original; };
    task.run = [=] { edit(*mesh); };
    task.result = [=] { return MeshFigures(*mesh); };
    return task;
}

Task DeleteFaces(const Input& input) {
    return EditTask(input, [faces = input.faces](Mesh& mesh) {
        for (const size_t face : faces)
            mesh.delete_face(OpenMesh::FaceHandle(static_cast<int>(face)), false);
        mesh.garbage_collection();
    });
}

Task Compact(const Input& input) {
    return EditTask(input, [](Mesh& mesh) {
        mesh.delete_isolated_vertices();
        mesh.garbage_collection();
    });
}

Task BoundaryEdges(const Input& input) {
    const auto mesh = MakeOpenMesh(input);
    const auto edges = std::make_shared<std::vector<OpenMesh::HalfedgeHandle>>();
    Task task;
    task.prepare = [=] { std::vector<OpenMesh::HalfedgeHandle>().swap(*edges); };
    task.run = [=] {
        for (const auto halfedge : mesh->halfedges())
            if (mesh->is_boundary(halfedge))
                edges->push_back(halfedge);
    };
    task.result = [=] { return Figures{Count("edges", edges->size())}; };
    return task;
}

Task Area(const Input& input) {
    const auto mesh = MakeOpenMesh(input);
    const auto area = std::make_shared<double>(0.0);
    Task task;
    task.run = [=] {
        double sum = 0.0;
        for (const auto face : mesh->faces())
            sum += mesh->calc_face_area(face);
        *area = sum;
    };
    task.result = [=] { return Figures{{"area", *area, kDoubles}}; };
    return task;
}

std::shared_ptr<Mesh> WithNormals(const Input& input) {
    auto mesh = MakeOpenMesh(input);
    mesh->request_vertex_normals();
    for (const auto vertex : mesh->vertices())
        mesh->set_normal(vertex, mesh->point(vertex));
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

constexpr OpenMesh::IO::Options::Flag kNormals = OpenMesh::IO::Options::VertexNormal;

Task Save(const Input& input) {
    const auto mesh = WithNormals(input);
    const auto file = std::make_shared<ScratchFile>(".om");
    Task task;
    task.run = [=] { OpenMesh::IO::write_mesh(*mesh, file->Path(), kNormals); };
    return task;
}

Task Load(const Input& input) {
    const auto file = std::make_shared<ScratchFile>(".om");
    OpenMesh::IO::write_mesh(*WithNormals(input), file->Path(), kNormals);
    const auto mesh = std::make_shared<std::shared_ptr<Mesh>>();
    Task task;
    task.prepare = [=] {
        *mesh = std::make_shared<Mesh>();
        (*mesh)->request_vertex_normals();
    };
    task.run = [=] {
        OpenMesh::IO::Options options = kNormals;
        OpenMesh::IO::read_mesh(**mesh, file->Path(), options);
    };
    task.result = [=] { return MeshFigures(**mesh); };
    return task;
}

}  // namespace

void AddOpenMesh(Contest& contest) {
    // It tells the size of every file that it writes.
    std::clog.setstate(std::ios::failbit);
    contest.versionOf[kName] = std::to_string(OM_GET_VER) + "." + std::to_string(OM_GET_MAJ) + "." +
                               std::to_string(OM_GET_MIN);
    const auto add = [&](const char* operation, const char* call, const char* note,
                         Task (*make)(const Input&)) {
        contest.contestants.push_back(Peer(operation, kName, call, note, make));
        contest.contestants.back().mostTriangles = kMostTriangles;
    };
    add("flat_normals", "update_face_normals", "half-edges given; no numbers", FaceNormals);
    add("smooth_area", "update_vertex_normals",
        "half-edges and face normals given; each face counts alike", VertexNormals);
    contest.contestants.back().isComparable = false;
    add("crease_area", "update_halfedge_normals",
        "half-edges and face normals given; each face counts alike; splits along edges",
        HalfedgeNormals);
    add("delete_faces", "delete_face, garbage_collection",
        "half-edges given and kept up; holes filled from the end", DeleteFaces);
    add("compact", "delete_isolated_vertices, garbage_collection",
        "half-edges given; holes filled from the end", Compact);
    add("free_edges", "is_boundary", "half-edges given: only a walk over them", BoundaryEdges);
    contest.contestants.back().isComparable = false;
    add("area", "calc_face_area", "half-edges given; inline", Area);
    add("copy", "copy constructor", "half-edges too", Copy);
    add("save", "write_mesh, .om", "half-edges too", Save);
    add("load", "read_mesh, .om", "half-edges too", Load);
}

}  // namespace Vr::bench::peers
