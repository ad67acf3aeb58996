// CGAL: joining and compaction of polygon soups, the rest on Surface_mesh, whose half-edges are built
// beforehand.

#include <CGAL/Polygon_mesh_processing/bbox.h>
#include <CGAL/Polygon_mesh_processing/border.h>
#include <CGAL/Polygon_mesh_processing/compute_normal.h>
#include <CGAL/Polygon_mesh_processing/measure.h>
#include <CGAL/Polygon_mesh_processing/orientation.h>
#include <CGAL/Polygon_mesh_processing/repair_polygon_soup.h>
#include <CGAL/Polygon_mesh_processing/transform.h>
#include <CGAL/Simple_cartesian.h>
#include <CGAL/Surface_mesh.h>
#include <CGAL/version.h>

#include <cmath>
#include <memory>

#include "peers/Figures.h"
#include "peers/Peers.h"

namespace Vr::bench::peers {

namespace {

namespace PMP = CGAL::Polygon_mesh_processing;
using Kernel = CGAL::Simple_cartesian<double>;
using Mesh = CGAL::Surface_mesh<Kernel::Point_3>;
using Face = Mesh::Face_index;
using Vertex = Mesh::Vertex_index;
using Halfedge = Mesh::Halfedge_index;

constexpr const char* kName = "CGAL";
constexpr size_t kMostTriangles = 1'000'000;

struct PolygonSoup {
    std::vector<Kernel::Point_3> points;
    std::vector<std::array<size_t, 3>> triangles;

    void Append(const std::vector<Point>& newPoints, const std::vector<Triangle>& newTriangles) {
        const size_t first = points.size();
        for (const Point& point : newPoints)
            points.emplace_back(point[0], point[1], point[2]);
        for (const Triangle& triangle : newTriangles)
            triangles.push_back({first + triangle[0], first + triangle[1], first + triangle[2]});
    }
};

Figures SoupFigures(const PolygonSoup& soup) {
    return {Count("vertices", soup.points.size()), Count("triangles", soup.triangles.size()),
            VectorSum("positions", 3 * soup.triangles.size(), kDoubles, [&](size_t corner) {
                const auto& point = soup.points[soup.triangles[corner / 3][corner % 3]];
                return Point{point.x(), point.y(), point.z()};
            })};
}

Task SoupTask(const PolygonSoup& original, void (*edit)(PolygonSoup&)) {
    const auto soup = std::make_shared<PolygonSoup>();
    Task task;
    task.prepare = [=] { *soup = original; };
    task.run = [=] { edit(*soup); };
    task.result = [=] { return SoupFigures(*soup); };
    return task;
}

void Join(PolygonSoup& soup) {
    PMP::merge_duplicate_points_in_polygon_soup(soup.points, soup.triangles);
}

Task JoinPoints(const Input& input) {
    PolygonSoup soup;
    soup.Append(input.points, input.triangles);
    return SoupTask(soup, Join);
}

Task Compact(const Input& input) {
    PolygonSoup soup;
    soup.Append(input.points, input.triangles);
    return SoupTask(soup, [](PolygonSoup& edited) {
        PMP::remove_isolated_points_in_polygon_soup(edited.points, edited.triangles);
    });
}

// The parts are put behind one another beforehand.
Task Merge(const Input& input) {
    PolygonSoup soup;
    for (const PlainMesh& part : input.parts)
        soup.Append(part.points, part.triangles);
    return SoupTask(soup, Join);
}

std::shared_ptr<Mesh> MakeSurfaceMesh(const Input& input) {
    if (!input.isManifold)
        throw CannotHold();
    auto mesh = std::make_shared<Mesh>();
    mesh->reserve(static_cast<Mesh::size_type>(input.points.size()),
                  static_cast<Mesh::size_type>(3 * input.triangles.size() / 2),
                  static_cast<Mesh::size_type>(input.triangles.size()));
    for (const Point& point : input.points)
        mesh->add_vertex(Kernel::Point_3(point[0], point[1], point[2]));
    const auto vertex = [](uint64_t number) {
        return Vertex(static_cast<Mesh::size_type>(number));
    };
    for (const Triangle& triangle : input.triangles)
        mesh->add_face(vertex(triangle[0]), vertex(triangle[1]), vertex(triangle[2]));
    return mesh;
}

Task FaceNormals(const Input& input) {
    const auto mesh = MakeSurfaceMesh(input);
    using Normals = Mesh::Property_map<Face, Kernel::Vector_3>;
    const auto normals = std::make_shared<Normals>();
    Task task;
    task.prepare = [=] {
        if (*normals)
            mesh->remove_property_map(*normals);
    };
    task.run = [=] {
        *normals = mesh->add_property_map<Face, Kernel::Vector_3>("f:normal").first;
        PMP::compute_face_normals(*mesh, *normals);
    };
    task.result = [=] {
        return Figures{VectorSum("normals", mesh->number_of_faces(), kDoubles, [&](size_t face) {
            const auto& normal = (*normals)[Face(static_cast<Mesh::size_type>(face))];
            return Point{normal.x(), normal.y(), normal.z()};
        })};
    };
    return task;
}

Task VertexNormals(const Input& input) {
    const auto mesh = MakeSurfaceMesh(input);
    using Normals = Mesh::Property_map<Vertex, Kernel::Vector_3>;
    const auto normals = std::make_shared<Normals>();
    Task task;
    task.prepare = [=] {
        if (*normals)
            mesh->remove_property_map(*normals);
    };
    task.run = [=] {
        *normals = mesh->add_property_map<Vertex, Kernel::Vector_3>("v:normal").first;
        PMP::compute_vertex_normals(*mesh, *normals);
    };
    return task;
}

Task BorderEdges(const Input& input) {
    const auto mesh = MakeSurfaceMesh(input);
    const auto edges = std::make_shared<std::vector<Halfedge>>();
    Task task;
    task.prepare = [=] { std::vector<Halfedge>().swap(*edges); };
    task.run = [=] { PMP::border_halfedges(*mesh, std::back_inserter(*edges)); };
    task.result = [=] { return Figures{Count("edges", edges->size())}; };
    return task;
}

Task BoundingBox(const Input& input) {
    const auto mesh = MakeSurfaceMesh(input);
    const auto box = std::make_shared<CGAL::Bbox_3>();
    Task task;
    task.run = [=] { *box = PMP::bbox(*mesh); };
    task.result = [=] {
        return Figures{{"lower z", box->zmin(), kDoubles}, {"upper x", box->xmax(), kDoubles}};
    };
    return task;
}

// Volume is defined here for closed meshes alone.
Task Volume(const Input& input) {
    const auto mesh = MakeSurfaceMesh(input);
    const auto volume = std::make_shared<double>(0.0);
    Task task;
    task.run = [=] { *volume = PMP::volume(*mesh); };
    task.result = [=] { return Figures{{"volume", *volume, kDoubles}}; };
    return task;
}

Task Area(const Input& input) {
    const auto mesh = MakeSurfaceMesh(input);
    const auto area = std::make_shared<double>(0.0);
    Task task;
    task.run = [=] { *area = PMP::area(*mesh); };
    task.result = [=] { return Figures{{"area", *area, kDoubles}}; };
    return task;
}

Task Rotate(const Input& input) {
    const auto mesh = MakeSurfaceMesh(input);
    const double cosine = std::cos(0.1);
    const double sine = std::sin(0.1);
    const CGAL::Aff_transformation_3<Kernel> rotation(cosine, -sine, 0, sine, cosine, 0, 0, 0, 1);
    Task task;
    task.run = [=] { PMP::transform(rotation, *mesh); };
    task.result = [=] {
        return Figures{
            VectorSum("points", mesh->number_of_vertices(), kDoubles, [&](size_t vertex) {
                const auto& point = mesh->point(Vertex(static_cast<Mesh::size_type>(vertex)));
                return Point{point.x(), point.y(), point.z()};
            })};
    };
    return task;
}

Task Reverse(const Input& input) {
    const auto mesh = MakeSurfaceMesh(input);
    Task task;
    task.run = [=] { PMP::reverse_face_orientations(*mesh); };
    return task;
}

Task Copy(const Input& input) {
    const auto mesh = MakeSurfaceMesh(input);
    auto normals = mesh->add_property_map<Vertex, Kernel::Vector_3>("v:normal").first;
    for (const Vertex vertex : mesh->vertices())
        normals[vertex] = mesh->point(vertex) - CGAL::ORIGIN;
    const auto copy = std::make_shared<std::shared_ptr<Mesh>>();
    Task task;
    task.prepare = [=] { copy->reset(); };
    task.run = [=] { *copy = std::make_shared<Mesh>(*mesh); };
    task.result = [=] {
        return Figures{Count("vertices", (*copy)->number_of_vertices()),
                       Count("triangles", (*copy)->number_of_faces())};
    };
    return task;
}

}  // namespace

void AddCgal(Contest& contest) {
    contest.versionOf[kName] = CGAL_VERSION_STR;
    auto& contestants = contest.contestants;
    const auto add = [&](const char* operation, const char* call, const char* note,
                         Task (*make)(const Input&)) {
        contestants.push_back(Peer(operation, kName, call, note, make));
        contestants.back().mostTriangles = kMostTriangles;
    };
    for (const char* operation : {"weld", "weld_indexed", "merge_normals"})
        add(operation, "merge_duplicate_points_in_polygon_soup", "ordered map; order of first use",
            JoinPoints);
    add("merge", "merge_duplicate_points_in_polygon_soup",
        "put behind one another beforehand; no maps", Merge);
    add("compact", "remove_isolated_points_in_polygon_soup", "64-bit numbers", Compact);
    add("flat_normals", "compute_face_normals", "half-edges given; no numbers", FaceNormals);
    add("smooth_area", "compute_vertex_normals",
        "half-edges given; another normal: most visible from all faces", VertexNormals);
    contestants.back().mostTriangles = 100'000;
    contestants.back().isComparable = false;
    add("free_edges", "border_halfedges", "half-edges given: only a walk over them", BorderEdges);
    contestants.back().isComparable = false;
    add("bbox", "bbox", "of all points", BoundingBox);
    contestants.back().isComparable = false;
    add("volume", "volume", "half-edges given", Volume);
    add("area", "area", "half-edges given", Area);
    add("transform", "transform", "points only", Rotate);
    contestants.back().isComparable = false;
    add("reverse", "reverse_face_orientations", "half-edges, no normals", Reverse);
    add("copy", "copy constructor", "half-edges too", Copy);
}

}  // namespace Vr::bench::peers
