// Cells are given as their numbers alone: VTK makes the offsets itself.

#include "peers/VtkMesh.h"

#include <vtkCellArray.h>
#include <vtkDoubleArray.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkSMPTools.h>
#include <vtkTypeInt64Array.h>
#include <vtkVersion.h>

#include "peers/Figures.h"

namespace Vr::bench::peers {

VtkMesh MakeVtkMesh(const std::vector<Point>& points, const std::vector<Triangle>& triangles) {
    const auto vtkPositions = vtkSmartPointer<vtkPoints>::New();
    vtkPositions->SetDataTypeToDouble();
    vtkPositions->SetNumberOfPoints(static_cast<vtkIdType>(points.size()));
    for (size_t point = 0; point < points.size(); ++point)
        vtkPositions->SetPoint(static_cast<vtkIdType>(point), points[point].data());

    const auto numbers = vtkSmartPointer<vtkTypeInt64Array>::New();
    numbers->SetNumberOfValues(static_cast<vtkIdType>(3 * triangles.size()));
    for (size_t corner = 0; corner < 3 * triangles.size(); ++corner)
        numbers->SetValue(static_cast<vtkIdType>(corner),
                          static_cast<vtkTypeInt64>(triangles[corner / 3][corner % 3]));
    const auto cells = vtkSmartPointer<vtkCellArray>::New();
    cells->SetData(3, numbers);

    auto mesh = VtkMesh::New();
    mesh->SetPoints(vtkPositions);
    mesh->SetPolys(cells);
    return mesh;
}

VtkMesh MakeVtkMeshWithNormals(const Input& input) {
    VtkMesh mesh = MakeVtkMesh(input.points, input.triangles);
    const auto normals = vtkSmartPointer<vtkDoubleArray>::New();
    normals->SetNumberOfComponents(3);
    normals->SetNumberOfTuples(static_cast<vtkIdType>(input.points.size()));
    for (size_t point = 0; point < input.points.size(); ++point)
        normals->SetTuple(static_cast<vtkIdType>(point), input.points[point].data());
    mesh->GetPointData()->SetNormals(normals);
    return mesh;
}

Figures VtkMeshFigures(vtkPolyData& mesh) {
    vtkCellArray& cells = *mesh.GetPolys();
    const auto triangleCount = static_cast<size_t>(cells.GetNumberOfCells());
    vtkDataArray& numbers = *cells.GetConnectivityArray();
    // Joining may leave cells of fewer than three points.
    const auto cornerCount = static_cast<size_t>(numbers.GetNumberOfTuples());
    const auto positionOf = [&](size_t corner) {
        Point point = {};
        mesh.GetPoint(static_cast<vtkIdType>(numbers.GetTuple1(static_cast<vtkIdType>(corner))),
                      point.data());
        return point;
    };
    return {Count("vertices", static_cast<size_t>(mesh.GetNumberOfPoints())),
            Count("triangles", triangleCount),
            VectorSum("positions", cornerCount, kDoubles, positionOf)};
}

void AddVtk(Contest& contest) {
    contest.versionOf["VTK"] = vtkVersion::GetVTKVersion();
    contest.useThreads.push_back([](int threads) {
        vtkSMPTools::SetBackend(threads == 1 ? "Sequential" : "TBB");
        vtkSMPTools::Initialize(threads);
    });
    AddVtkCleaning(contest);
    AddVtkNormals(contest);
    AddVtkRest(contest);
}

}  // namespace Vr::bench::peers
