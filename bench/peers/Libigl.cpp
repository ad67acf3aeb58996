// libigl: functions from matrices to matrices, doubles and 32-bit numbers. The first call in a process
// fixes its number of threads for good, so this unit stands for one thread and is compiled once more,
// by LibiglThreads.cpp, for several.

#include <igl/boundary_facets.h>
#include <igl/centroid.h>
#include <igl/default_num_threads.h>
#include <igl/doublearea.h>
#include <igl/per_corner_normals.h>
#include <igl/per_face_normals.h>
#include <igl/per_vertex_normals.h>
#include <igl/remove_duplicate_vertices.h>
#include <igl/remove_unreferenced.h>
#include <igl/slice_mask.h>

#include <memory>

#include "peers/Figures.h"
#include "peers/Peers.h"

namespace Vr::bench::peers {

namespace {

constexpr const char* kName = "libigl";
#if defined(VERIDANE_LIBIGL_THREADS)
constexpr bool kHasThreads = true;
#else
constexpr bool kHasThreads = false;
#endif

struct Matrices {
    Eigen::MatrixXd points;
    Eigen::MatrixXi triangles;

    Point PointOf(size_t corner) const {
        const int point =
            triangles(static_cast<Eigen::Index>(corner / 3), static_cast<Eigen::Index>(corner % 3));
        return {points(point, 0), points(point, 1), points(point, 2)};
    }
};

Matrices MakeMatrices(const std::vector<Point>& points, const std::vector<Triangle>& triangles) {
    Matrices mesh;
    mesh.points.resize(static_cast<Eigen::Index>(points.size()), 3);
    for (Eigen::Index row = 0; row < mesh.points.rows(); ++row)
        for (Eigen::Index axis = 0; axis < 3; ++axis)
            mesh.points(row, axis) = points[static_cast<size_t>(row)][static_cast<size_t>(axis)];
    mesh.triangles.resize(static_cast<Eigen::Index>(triangles.size()), 3);
    for (Eigen::Index row = 0; row < mesh.triangles.rows(); ++row)
        for (Eigen::Index corner = 0; corner < 3; ++corner)
            mesh.triangles(row, corner) =
                static_cast<int>(triangles[static_cast<size_t>(row)][static_cast<size_t>(corner)]);
    return mesh;
}

Figures MeshFigures(const Matrices& mesh) {
    const auto triangleCount = static_cast<size_t>(mesh.triangles.rows());
    return {Count("vertices", static_cast<size_t>(mesh.points.rows())),
            Count("triangles", triangleCount),
            VectorSum("positions", 3 * triangleCount, kDoubles,
                      [&](size_t corner) { return mesh.PointOf(corner); })};
}

// What most tasks are: from one mesh to another, or to a matrix.
template <class Result, class Function, class FiguresOf>
Task FromMesh(const Input& input, Function function, FiguresOf figuresOf) {
    const auto mesh = std::make_shared<Matrices>(MakeMatrices(input.points, input.triangles));
    const auto result = std::make_shared<Result>();
    Task task;
    task.prepare = [=] { *result = Result(); };
    task.run = [=] { function(*mesh, *result); };
    task.result = [=] { return figuresOf(*mesh, *result); };
    return task;
}

Point RowOf(const Eigen::MatrixXd& matrix, size_t row) {
    const auto index = static_cast<Eigen::Index>(row);
    return {matrix(index, 0), matrix(index, 1), matrix(index, 2)};
}

Task JoinPoints(const Input& input) {
    return FromMesh<Matrices>(
        input,
        [](const Matrices& mesh, Matrices& result) {
            Eigen::VectorXi firstPointOf;
            Eigen::VectorXi newPointOf;
            igl::remove_duplicate_vertices(mesh.points, mesh.triangles, 0.0, result.points,
                                           firstPointOf, newPointOf, result.triangles);
        },
        [](const Matrices&, const Matrices& result) { return MeshFigures(result); });
}

Task Compact(const Input& input) {
    return FromMesh<Matrices>(
        input,
        [](const Matrices& mesh, Matrices& result) {
            Eigen::VectorXi newPointOf;
            igl::remove_unreferenced(mesh.points, mesh.triangles, result.points, result.triangles,
                                     newPointOf);
        },
        [](const Matrices&, const Matrices& result) { return MeshFigures(result); });
}

Task DeleteTriangles(const Input& input) {
    Eigen::Array<bool, Eigen::Dynamic, 1> isKept(static_cast<Eigen::Index>(input.triangles.size()));
    isKept.setConstant(true);
    for (const size_t face : input.faces)
        isKept(static_cast<Eigen::Index>(face)) = false;
    return FromMesh<Eigen::MatrixXi>(
        input,
        [=](const Matrices& mesh, Eigen::MatrixXi& result) {
            igl::slice_mask(mesh.triangles, isKept, 1, result);
        },
        [](const Matrices&, const Eigen::MatrixXi& result) {
            return Figures{Count("triangles", static_cast<size_t>(result.rows()))};
        });
}

Task FaceNormals(const Input& input) {
    return FromMesh<Eigen::MatrixXd>(
        input,
        [](const Matrices& mesh, Eigen::MatrixXd& result) {
            igl::per_face_normals(mesh.points, mesh.triangles, result);
        },
        [](const Matrices&, const Eigen::MatrixXd& result) {
            return Figures{VectorSum("normals", static_cast<size_t>(result.rows()), kDoubles,
                                     [&](size_t triangle) { return RowOf(result, triangle); })};
        });
}

std::function<Task(const Input&)> VertexNormals(igl::PerVertexNormalsWeightingType weighting,
                                                const char* figure) {
    return [=](const Input& input) {
        return FromMesh<Eigen::MatrixXd>(
            input,
            [=](const Matrices& mesh, Eigen::MatrixXd& result) {
                igl::per_vertex_normals(mesh.points, mesh.triangles, weighting, result);
            },
            [=](const Matrices& mesh, const Eigen::MatrixXd& result) {
                const auto cornerCount = static_cast<size_t>(3 * mesh.triangles.rows());
                return Figures{VectorSum(figure, cornerCount, kDoubles, [&](size_t corner) {
                    const int point = mesh.triangles(static_cast<Eigen::Index>(corner / 3),
                                                     static_cast<Eigen::Index>(corner % 3));
                    return RowOf(result, static_cast<size_t>(point));
                })};
            });
    };
}

Task CreaseNormals(const Input& input) {
    return FromMesh<Eigen::MatrixXd>(
        input,
        [](const Matrices& mesh, Eigen::MatrixXd& result) {
            igl::per_corner_normals(mesh.points, mesh.triangles, 30.0, result);
        },
        [](const Matrices&, const Eigen::MatrixXd&) { return Figures(); });
}

Task BoundaryEdges(const Input& input) {
    return FromMesh<Eigen::MatrixXi>(
        input,
        [](const Matrices& mesh, Eigen::MatrixXi& result) {
            igl::boundary_facets(mesh.triangles, result);
        },
        [](const Matrices&, const Eigen::MatrixXi& result) {
            return Figures{Count("edges", static_cast<size_t>(result.rows()))};
        });
}

Task Volume(const Input& input) {
    return FromMesh<double>(
        input,
        [](const Matrices& mesh, double& result) {
            Eigen::RowVector3d center;
            igl::centroid(mesh.points, mesh.triangles, center, result);
        },
        [](const Matrices&, double result) {
            return Figures{{"volume", result, kDoubles}};
        });
}

Task Area(const Input& input) {
    return FromMesh<double>(
        input,
        [](const Matrices& mesh, double& result) {
            Eigen::VectorXd twice;
            igl::doublearea(mesh.points, mesh.triangles, twice);
            result = 0.5 * twice.sum();
        },
        [](const Matrices&, double result) {
            return Figures{{"area", result, kDoubles}};
        });
}

Task Merge(const Input& input) {
    std::vector<Matrices> parts;
    for (const PlainMesh& part : input.parts)
        parts.push_back(MakeMatrices(part.points, part.triangles));
    const auto result = std::make_shared<Matrices>();
    Task task;
    task.prepare = [=] { *result = Matrices(); };
    task.run = [=] {
        Eigen::Index pointCount = 0;
        Eigen::Index triangleCount = 0;
        for (const Matrices& part : parts) {
            pointCount += part.points.rows();
            triangleCount += part.triangles.rows();
        }
        Matrices stacked;
        stacked.points.resize(pointCount, 3);
        stacked.triangles.resize(triangleCount, 3);
        pointCount = 0;
        triangleCount = 0;
        for (const Matrices& part : parts) {
            stacked.points.middleRows(pointCount, part.points.rows()) = part.points;
            stacked.triangles.middleRows(triangleCount, part.triangles.rows()) =
                part.triangles.array() + static_cast<int>(pointCount);
            pointCount += part.points.rows();
            triangleCount += part.triangles.rows();
        }
        Eigen::VectorXi firstPointOf;
        Eigen::VectorXi newPointOf;
        igl::remove_duplicate_vertices(stacked.points, stacked.triangles, 0.0, result->points,
                                       firstPointOf, newPointOf, result->triangles);
    };
    task.result = [=] { return MeshFigures(*result); };
    return task;
}

struct MatricesWithNormals {
    Matrices mesh;
    Eigen::MatrixXd normals;
};

Task Copy(const Input& input) {
    const auto original = std::make_shared<MatricesWithNormals>();
    original->mesh = MakeMatrices(input.points, input.triangles);
    original->normals = original->mesh.points;
    const auto copy = std::make_shared<MatricesWithNormals>();
    Task task;
    task.prepare = [=] { *copy = MatricesWithNormals(); };
    task.run = [=] { *copy = *original; };
    task.result = [=] { return MeshFigures(copy->mesh); };
    return task;
}

}  // namespace

void AddLibigl(Contest& contest) {
    contest.versionOf[kName] = VERIDANE_PEER_LIBIGL;
    contest.useThreads.push_back([](int threads) {
        if ((threads > 1) == kHasThreads)
            igl::default_num_threads(static_cast<unsigned>(threads));
    });
    const auto add = [&](const char* operation, const char* call, const char* note,
                         std::function<Task(const Input&)> make, bool isParallel = false) {
        Contestant contestant = Peer(operation, kName, call, note, std::move(make));
        contestant.isSequential = !kHasThreads;
        contestant.isParallel = kHasThreads && isParallel;
        contest.contestants.push_back(std::move(contestant));
    };
    for (const char* operation : {"weld", "weld_indexed", "merge_normals"})
        add(operation, "remove_duplicate_vertices",
            "epsilon 0; sorted by x, y, z; 32-bit numbers; new matrices", JoinPoints);
    add("flat_normals", "per_face_normals", "32-bit numbers; no numbers of normals", FaceNormals,
        true);
    add("smooth_area", "per_vertex_normals, area", "32-bit numbers; no numbers of corners",
        VertexNormals(igl::PER_VERTEX_NORMALS_WEIGHTING_TYPE_AREA, "normals by area"), true);
    add("smooth_angle", "per_vertex_normals, angle", "32-bit numbers; no numbers of corners",
        VertexNormals(igl::PER_VERTEX_NORMALS_WEIGHTING_TYPE_ANGLE, "normals by angle"), true);
    for (const char* operation : {"crease_area", "crease_angle"})
        add(operation, "per_corner_normals", "by area; a normal for every corner", CreaseNormals,
            true);
    add("delete_faces", "slice_mask", "by a mask; 32-bit numbers; new matrix", DeleteTriangles);
    add("compact", "remove_unreferenced", "32-bit numbers; new matrices", Compact);
    add("free_edges", "boundary_facets", "neither directed nor sorted; 32-bit numbers",
        BoundaryEdges);
    add("volume", "centroid", "the centre too", Volume);
    add("area", "doublearea", "an area for each triangle in a vector, then their sum", Area);
    add("merge", "stacked, remove_duplicate_vertices", "32-bit numbers; no maps", Merge);
    add("copy", "assignment", "32-bit numbers", Copy);
}

}  // namespace Vr::bench::peers
