// VTK's normals, which are floats.

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkPointData.h>
#include <vtkPolyDataNormals.h>
#include <vtkTriangleMeshPointNormals.h>

#include "peers/Figures.h"
#include "peers/VtkMesh.h"

namespace Vr::bench::peers {

namespace {

Point NormalAt(vtkDataArray& normals, size_t place) {
    Point normal = {};
    normals.GetTuple(static_cast<vtkIdType>(place), normal.data());
    return normal;
}

Figures CellFigures(vtkPolyData& output) {
    vtkDataArray& normals = *output.GetCellData()->GetNormals();
    return {VectorSum("normals", static_cast<size_t>(normals.GetNumberOfTuples()), kFloats,
                      [&](size_t triangle) { return NormalAt(normals, triangle); })};
}

Figures PointFigures(vtkPolyData& output) {
    vtkDataArray& normals = *output.GetPointData()->GetNormals();
    vtkDataArray& numbers = *output.GetPolys()->GetConnectivityArray();
    const auto cornerCount = static_cast<size_t>(numbers.GetNumberOfTuples());
    return {VectorSum("normals by area", cornerCount, kFloats, [&](size_t corner) {
        return NormalAt(normals,
                        static_cast<size_t>(numbers.GetTuple1(static_cast<vtkIdType>(corner))));
    })};
}

Task CellNormals(const Input& input) {
    return VtkFilterTask<vtkPolyDataNormals>(
        MakeVtkMesh(input.points, input.triangles),
        [](vtkPolyDataNormals& filter) {
            filter.ComputePointNormalsOff();
            filter.ComputeCellNormalsOn();
            filter.SplittingOff();
            filter.ConsistencyOff();
        },
        CellFigures);
}

Task PointNormals(const Input& input) {
    return VtkFilterTask<vtkTriangleMeshPointNormals>(
        MakeVtkMesh(input.points, input.triangles), [](vtkTriangleMeshPointNormals&) {},
        PointFigures);
}

Task CreaseNormals(const Input& input) {
    return VtkFilterTask<vtkPolyDataNormals>(
        MakeVtkMesh(input.points, input.triangles),
        [](vtkPolyDataNormals& filter) {
            filter.SplittingOn();
            filter.SetFeatureAngle(30.0);
            filter.ConsistencyOff();
        },
        [](vtkPolyData&) { return Figures(); });
}

}  // namespace

void AddVtkNormals(Contest& contest) {
    const auto add = [&](const char* operation, const char* call, const char* note,
                         Task (*make)(const Input&)) {
        contest.contestants.push_back(Peer(operation, "VTK", call, note, make));
        contest.contestants.back().isParallel = true;
    };
    add("flat_normals", "vtkPolyDataNormals, cells", "floats; no numbers", CellNormals);
    add("smooth_area", "vtkTriangleMeshPointNormals", "floats; no numbers of corners",
        PointNormals);
    for (const char* operation : {"crease_area", "crease_angle"}) {
        add(operation, "vtkPolyDataNormals, splitting",
            "floats; each face counts alike; splits along edges; splits points too", CreaseNormals);
        contest.contestants.back().mostTriangles = 1'000'000;
    }
}

}  // namespace Vr::bench::peers
