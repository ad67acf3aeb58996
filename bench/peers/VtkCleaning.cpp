// VTK's joining, removal, compaction and merging: filters that leave their input and make a new mesh.

#include <vtkAppendPolyData.h>
#include <vtkCellArray.h>
#include <vtkCleanPolyData.h>
#include <vtkPoints.h>
#include <vtkStaticCleanPolyData.h>

#include "peers/Figures.h"
#include "peers/VtkMesh.h"

namespace Vr::bench::peers {

namespace {

void JoinEqual(vtkStaticCleanPolyData& filter) {
    filter.SetTolerance(0.0);
    filter.ConvertPolysToLinesOff();
}

Task StaticClean(const Input& input) {
    return VtkFilterTask<vtkStaticCleanPolyData>(MakeVtkMesh(input.points, input.triangles),
                                                 JoinEqual, VtkMeshFigures);
}

// Without joining: throws away degenerate cells and points that no cell uses.
Task Clean(const Input& input, bool compareVertices) {
    return VtkFilterTask<vtkCleanPolyData>(
        MakeVtkMesh(input.points, input.triangles),
        [](vtkCleanPolyData& filter) {
            filter.PointMergingOff();
            filter.ConvertPolysToLinesOff();
        },
        [=](vtkPolyData& output) {
            Figures figures = VtkMeshFigures(output);
            if (!compareVertices)
                figures.erase(figures.begin());
            return figures;
        });
}

Task DeleteCells(const Input& input) {
    const VtkMesh original = MakeVtkMesh(input.points, input.triangles);
    const auto mesh = VtkMesh::New();
    Task task;
    task.prepare = [=] {
        mesh->DeepCopy(original);
        mesh->BuildCells();
    };
    task.run = [=, faces = input.faces] {
        for (const size_t face : faces)
            mesh->DeleteCell(static_cast<vtkIdType>(face));
        mesh->RemoveDeletedCells();
    };
    task.result = [=] { return VtkMeshFigures(*mesh); };
    return task;
}

Task Merge(const Input& input) {
    std::vector<VtkMesh> parts;
    for (const PlainMesh& part : input.parts)
        parts.push_back(MakeVtkMesh(part.points, part.triangles));
    const auto output = std::make_shared<VtkMesh>();
    Task task;
    task.prepare = [=] { *output = nullptr; };
    task.run = [=] {
        const auto append = vtkSmartPointer<vtkAppendPolyData>::New();
        for (const VtkMesh& part : parts)
            append->AddInputData(part);
        const auto clean = vtkSmartPointer<vtkStaticCleanPolyData>::New();
        clean->SetInputConnection(append->GetOutputPort());
        JoinEqual(*clean);
        clean->Update();
        *output = clean->GetOutput();
    };
    task.result = [=] { return VtkMeshFigures(**output); };
    return task;
}

}  // namespace

void AddVtkCleaning(Contest& contest) {
    auto& contestants = contest.contestants;
    for (const char* operation : {"weld", "weld_indexed", "merge_normals"})
        contestants.push_back(Peer(operation, "VTK", "vtkStaticCleanPolyData",
                                   "tolerance 0; not sorted; new mesh", StaticClean));
    contestants.push_back(Peer("remove_degenerate", "VTK", "vtkCleanPolyData",
                               "also compacts; new mesh",
                               [](const Input& input) { return Clean(input, false); }));
    contestants.push_back(Peer("compact", "VTK", "vtkCleanPolyData",
                               "also removes degenerate cells; new mesh",
                               [](const Input& input) { return Clean(input, true); }));
    contestants.push_back(Peer("delete_faces", "VTK", "DeleteCell, RemoveDeletedCells",
                               "table of cells built beforehand", DeleteCells));
    contestants.push_back(
        Peer("merge", "VTK", "vtkAppendPolyData, vtkStaticCleanPolyData", "no maps", Merge));
}

}  // namespace Vr::bench::peers
