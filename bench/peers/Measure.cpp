// Bounding box, volume and area.

#include <memory>

#include "peers/Families.h"
#include "peers/Inputs.h"
#include "peers/Limits.h"
#include "peers/OurMesh.h"

namespace Vr::bench::peers {

namespace {

Task BoundingBox(const Input& input) {
    const OurMesh mesh = MakeOurMesh(input.points, input.triangles);
    const auto box = std::make_shared<ON_BoundingBox>();
    Task task;
    task.run = [=] { mesh->CalcBoundingBox(*box); };
    task.result = [=] {
        return Figures{{"lower z", box->m_min.z, kDoubles}, {"upper x", box->m_max.x, kDoubles}};
    };
    return task;
}

Task Volume(const Input& input) {
    const OurMesh mesh = MakeOurMesh(input.points, input.triangles);
    const auto volume = std::make_shared<double>(0.0);
    Task task;
    task.run = [=] { *volume = mesh->CalcVolume(ON_3dPoint(0, 0, 0)); };
    task.result = [=] { return Figures{{"volume", *volume, kDoubles}}; };
    return task;
}

Task Area(const Input& input) {
    const OurMesh mesh = MakeOurMesh(input.points, input.triangles);
    const auto area = std::make_shared<double>(0.0);
    const size_t triangleCount = input.triangles.size();
    Task task;
    task.run = [=] {
        double sum = 0.0;
        for (size_t triangle = 0; triangle < triangleCount; ++triangle)
            sum += mesh->GetTriangleArea(triangle);
        *area = sum;
    };
    task.result = [=] { return Figures{{"area", *area, kDoubles}}; };
    return task;
}

}  // namespace

void AddMeasure(Contest& contest) {
    contest.operations.push_back({"bbox", "bounding box", false, WholeMesh});
    contest.contestants.push_back(
        Ours("bbox", "CalcBoundingBox", "of the vertices that triangles use", BoundingBox));
    contest.operations.push_back({"volume", "volume", false, WholeMesh});
    contest.contestants.push_back(Ours("volume", "CalcVolume", "", Volume));
    contest.operations.push_back({"area", "area", true, WholeMesh});
    contest.contestants.push_back(
        Ours("area", "GetTriangleArea",
             "one virtual call a triangle; with a second thread in the process the counts of "
             "handles are atomic",
             Area, true));
    for (const char* operation : {"bbox", "volume", "area"}) {
        contest.contestants.push_back(GatherLimit(operation));
        contest.contestants.push_back(StreamLimit(operation));
    }
}

}  // namespace Vr::bench::peers
