// VTK's edges, measures, transforms, copies and files.

#include <vtkCellArray.h>
#include <vtkFeatureEdges.h>
#include <vtkMassProperties.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkReverseSense.h>
#include <vtkTransform.h>
#include <vtkTransformPolyDataFilter.h>
#include <vtkXMLPolyDataReader.h>
#include <vtkXMLPolyDataWriter.h>

#include <cmath>

#include "peers/Figures.h"
#include "peers/ScratchFile.h"
#include "peers/VtkMesh.h"

namespace Vr::bench::peers {

namespace {

Task BoundaryEdges(const Input& input) {
    return VtkFilterTask<vtkFeatureEdges>(
        MakeVtkMesh(input.points, input.triangles),
        [](vtkFeatureEdges& filter) {
            filter.BoundaryEdgesOn();
            filter.FeatureEdgesOff();
            filter.NonManifoldEdgesOff();
            filter.ManifoldEdgesOff();
            filter.ColoringOff();
        },
        [](vtkPolyData& output) {
            return Figures{Count("edges", static_cast<size_t>(output.GetNumberOfLines()))};
        });
}

Task CellsBounds(const Input& input) {
    const VtkMesh mesh = MakeVtkMesh(input.points, input.triangles);
    const auto bounds = std::make_shared<std::array<double, 6>>();
    Task task;
    // The mesh remembers its bounds until something has changed.
    task.prepare = [=] {
        mesh->GetPoints()->Modified();
        mesh->GetPolys()->Modified();
        mesh->Modified();
    };
    task.run = [=] { mesh->GetCellsBounds(bounds->data()); };
    task.result = [=] {
        return Figures{{"lower z", (*bounds)[4], kDoubles}, {"upper x", (*bounds)[1], kDoubles}};
    };
    return task;
}

Task MassProperties(const Input& input, bool compareArea) {
    const VtkMesh mesh = MakeVtkMesh(input.points, input.triangles);
    const auto result = std::make_shared<double>(0.0);
    Task task;
    task.run = [=] {
        const auto filter = vtkSmartPointer<vtkMassProperties>::New();
        filter->SetInputData(mesh);
        filter->Update();
        *result = compareArea ? filter->GetSurfaceArea() : filter->GetVolume();
    };
    // Its volume is a mixture of three projections and only comes near for closed meshes.
    task.result = [=] { return compareArea ? Figures{{"area", *result, kDoubles}} : Figures(); };
    return task;
}

Task TransformMesh(const Input& input) {
    std::vector<Point> normals;
    for (const Point& point : input.points) {
        const double length = std::hypot(point[0], point[1], point[2] + 1.0);
        normals.push_back({point[0] / length, point[1] / length, (point[2] + 1.0) / length});
    }
    Input inputOfNormals;
    inputOfNormals.points = normals;
    const VtkMesh mesh = MakeVtkMesh(input.points, input.triangles);
    mesh->GetPointData()->SetNormals(
        MakeVtkMeshWithNormals(inputOfNormals)->GetPointData()->GetNormals());
    const auto rotation = vtkSmartPointer<vtkTransform>::New();
    rotation->RotateZ(0.1 * 180.0 / std::acos(-1.0));
    return VtkFilterTask<vtkTransformPolyDataFilter>(
        mesh,
        [=](vtkTransformPolyDataFilter& filter) {
            filter.SetTransform(rotation);
            filter.SetOutputPointsPrecision(vtkAlgorithm::DOUBLE_PRECISION);
        },
        [](vtkPolyData& output) {
            const auto pointAt = [&](size_t place) {
                Point point = {};
                output.GetPoint(static_cast<vtkIdType>(place), point.data());
                return point;
            };
            return Figures{VectorSum("points", static_cast<size_t>(output.GetNumberOfPoints()),
                                     kDoubles, pointAt)};
        });
}

Task ReverseSense(const Input& input) {
    return VtkFilterTask<vtkReverseSense>(
        MakeVtkMeshWithNormals(input),
        [](vtkReverseSense& filter) {
            filter.ReverseCellsOn();
            filter.ReverseNormalsOn();
        },
        [](vtkPolyData&) { return Figures(); });
}

Task DeepCopy(const Input& input) {
    const VtkMesh mesh = MakeVtkMeshWithNormals(input);
    const auto copy = std::make_shared<VtkMesh>();
    Task task;
    task.prepare = [=] { *copy = nullptr; };
    task.run = [=] {
        *copy = VtkMesh::New();
        (*copy)->DeepCopy(mesh);
    };
    task.result = [=] { return VtkMeshFigures(**copy); };
    return task;
}

void Write(const VtkMesh& mesh, const std::string& path) {
    const auto writer = vtkSmartPointer<vtkXMLPolyDataWriter>::New();
    writer->SetInputData(mesh);
    writer->SetFileName(path.c_str());
    writer->SetDataModeToAppended();
    writer->EncodeAppendedDataOff();
    writer->SetCompressorTypeToNone();
    writer->SetHeaderTypeToUInt64();
    writer->Write();
}

Task Save(const Input& input) {
    const VtkMesh mesh = MakeVtkMeshWithNormals(input);
    const auto file = std::make_shared<ScratchFile>(".vtp");
    Task task;
    task.run = [=] { Write(mesh, file->Path()); };
    return task;
}

Task Load(const Input& input) {
    const auto file = std::make_shared<ScratchFile>(".vtp");
    Write(MakeVtkMeshWithNormals(input), file->Path());
    const auto loaded = std::make_shared<VtkMesh>();
    Task task;
    task.prepare = [=] { *loaded = nullptr; };
    task.run = [=] {
        const auto reader = vtkSmartPointer<vtkXMLPolyDataReader>::New();
        reader->SetFileName(file->Path().c_str());
        reader->Update();
        *loaded = reader->GetOutput();
    };
    task.result = [=] { return VtkMeshFigures(**loaded); };
    return task;
}

}  // namespace

void AddVtkRest(Contest& contest) {
    const auto add = [&](const char* operation, const char* call, const char* note,
                         std::function<Task(const Input&)> make) {
        contest.contestants.push_back(Peer(operation, "VTK", call, note, std::move(make)));
    };
    add("free_edges", "vtkFeatureEdges, boundary",
        "neither directed nor sorted; edges as a mesh; memory that it reserves is hardly touched",
        BoundaryEdges);
    // What it reserves grows with the square of the triangles.
    contest.contestants.back().mostTriangles = 1'000'000;
    add("bbox", "GetCellsBounds", "of used points too", CellsBounds);
    add("volume", "vtkMassProperties", "area and a shape index too",
        [](const Input& input) { return MassProperties(input, false); });
    add("area", "vtkMassProperties", "volume and a shape index too",
        [](const Input& input) { return MassProperties(input, true); });
    add("transform", "vtkTransformPolyDataFilter", "new arrays; normals too", TransformMesh);
    add("reverse", "vtkReverseSense", "new arrays; normals too", ReverseSense);
    add("copy", "DeepCopy", "offsets of cells too", DeepCopy);
    add("save", "vtkXMLPolyDataWriter", "appended raw; offsets and types of cells too; new file",
        Save);
    add("load", "vtkXMLPolyDataReader", "appended raw", Load);
}

}  // namespace Vr::bench::peers
