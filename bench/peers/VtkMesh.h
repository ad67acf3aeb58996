/// VTK's structure made of plain arrays, and filters as contestants.
#pragma once

#include <vtkPolyData.h>
#include <vtkSmartPointer.h>

#include <memory>

#include "peers/Peers.h"

namespace Vr::bench::peers {

using VtkMesh = vtkSmartPointer<vtkPolyData>;

/// Points as doubles, triangles as cells of 64-bit numbers.
[[nodiscard]] VtkMesh MakeVtkMesh(const std::vector<Point>& points,
                                  const std::vector<Triangle>& triangles);

/// The same with the points again as point normals.
[[nodiscard]] VtkMesh MakeVtkMeshWithNormals(const Input& input);

/// Counts, and the position at every corner in the order of triangles.
[[nodiscard]] Figures VtkMeshFigures(vtkPolyData& mesh);

/// Runs a new filter on `mesh` each time; `configure(filter)` sets it up, `figuresOf(output)` tells
/// about the result.
template <class Filter, class Configure, class FiguresOf>
Task VtkFilterTask(const VtkMesh& mesh, Configure configure, FiguresOf figuresOf) {
    const auto output = std::make_shared<VtkMesh>();
    Task task;
    task.prepare = [=] { *output = nullptr; };
    task.run = [=] {
        const auto filter = vtkSmartPointer<Filter>::New();
        filter->SetInputData(mesh);
        configure(*filter);
        filter->Update();
        *output = filter->GetOutput();
    };
    task.result = [=] { return figuresOf(**output); };
    return task;
}

/// The units of VTK's contestants.
void AddVtkCleaning(Contest& contest);
void AddVtkNormals(Contest& contest);
void AddVtkRest(Contest& contest);

}  // namespace Vr::bench::peers
