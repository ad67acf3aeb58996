// Every input is made from the plain arrays of a mesh by counting or by a generator with a fixed
// seed, so that it is the same in every run.

#include "peers/Inputs.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "support/MeshShapes.h"

namespace Vr::bench::peers {

namespace {

constexpr size_t kSizes[] = {k10Thousand, k100Thousand, k1Million, k5Million, k10Million};
constexpr Shape kShapes[] = {Shape::kSphere, Shape::kGrid, Shape::kSphereShuffled,
                             Shape::kGridShuffled};

std::vector<Case> Cases() {
    std::vector<Case> cases;
    for (const size_t size : kSizes)
        for (const Shape shape : kShapes)
            cases.push_back({shape, size});
    return cases;
}

// Answers true once in `step` times, at random.
class OnceIn {
public:
    explicit OnceIn(uint64_t step) : step_(step) {}

    bool operator()() {
        state_ = state_ * 6364136223846793005u + 1442695040888963407u;
        return (state_ >> 33) % step_ == 0;
    }

private:
    uint64_t step_;
    uint64_t state_ = 20130711;
};

// Triangles `begin` to `end` with the points that they use, in the order of the whole mesh.
PlainMesh PartOf(const PlainMesh& whole, size_t begin, size_t end) {
    constexpr uint64_t kUnused = std::numeric_limits<uint64_t>::max();
    std::vector<uint64_t> newPointOf(whole.points.size(), kUnused);
    PlainMesh part;
    part.triangles.assign(std::next(whole.triangles.begin(), static_cast<std::ptrdiff_t>(begin)),
                          std::next(whole.triangles.begin(), static_cast<std::ptrdiff_t>(end)));
    for (const Triangle& triangle : part.triangles)
        for (const uint64_t point : triangle)
            newPointOf[point] = 0;
    for (size_t point = 0; point < newPointOf.size(); ++point) {
        if (newPointOf[point] == kUnused)
            continue;
        newPointOf[point] = part.points.size();
        part.points.push_back(whole.points[point]);
    }
    for (Triangle& triangle : part.triangles)
        for (uint64_t& point : triangle)
            point = newPointOf[point];
    return part;
}

}  // namespace

std::vector<std::string> MeshNames() {
    std::vector<std::string> names;
    for (const Case& which : Cases())
        names.push_back(which.Name());
    return names;
}

PlainMesh MakeMesh(const std::string& name) {
    const std::vector<Case> cases = Cases();
    const auto found = std::find_if(cases.begin(), cases.end(),
                                    [&](const Case& which) { return which.Name() == name; });
    if (found == cases.end())
        throw std::invalid_argument("there is no mesh " + name);
    const MeshArrays arrays = MakeArrays(*found);
    PlainMesh mesh;
    mesh.name = name;
    mesh.points.reserve(arrays.vertices->size());
    for (const ON_3dPoint& point : *arrays.vertices)
        mesh.points.push_back({point.x, point.y, point.z});
    mesh.triangles.reserve(arrays.triangles->size());
    for (const auto& corners : *arrays.triangles)
        mesh.triangles.push_back({corners[0], corners[1], corners[2]});
    return mesh;
}

Input WholeMesh(const PlainMesh& mesh) {
    Input input;
    input.triangleCount = mesh.triangles.size();
    input.points = mesh.points;
    input.triangles = mesh.triangles;
    input.isManifold = mesh.isManifold;
    return input;
}

Input Soup(const PlainMesh& mesh) {
    Input soup;
    soup.triangleCount = mesh.triangles.size();
    soup.points.reserve(3 * mesh.triangles.size());
    soup.triangles.reserve(mesh.triangles.size());
    for (const Triangle& triangle : mesh.triangles) {
        const uint64_t first = soup.points.size();
        soup.triangles.push_back({first, first + 1, first + 2});
        for (const uint64_t point : triangle)
            soup.points.push_back(mesh.points[point]);
    }
    return soup;
}

Input CornerColors(const PlainMesh& mesh) {
    Input soup = Soup(mesh);
    double low = std::numeric_limits<double>::max();
    double high = std::numeric_limits<double>::lowest();
    for (const Point& point : soup.points) {
        low = std::min(low, point[2]);
        high = std::max(high, point[2]);
    }
    const double colorsPerHeight = high > low ? 65535.0 / (high - low) : 0.0;
    soup.colors.reserve(soup.points.size());
    for (const Point& point : soup.points)
        soup.colors.push_back(static_cast<uint32_t>((point[2] - low) * colorsPerHeight));
    soup.points.clear();
    soup.points.shrink_to_fit();
    return soup;
}

Input WithDegenerate(const PlainMesh& mesh) {
    Input input = WholeMesh(mesh);
    OnceIn isDegenerate(20);
    for (Triangle& triangle : input.triangles)
        if (isDegenerate())
            triangle[2] = triangle[0];
    return input;
}

Input WithFacesToDelete(const PlainMesh& mesh) {
    Input input = WholeMesh(mesh);
    OnceIn isToDelete(10);
    for (size_t triangle = 0; triangle < input.triangles.size(); ++triangle)
        if (isToDelete())
            input.faces.push_back(triangle);
    return input;
}

Input WithUnusedPoints(const PlainMesh& mesh) {
    Input input = WholeMesh(mesh);
    input.points.clear();
    for (size_t point = 0; point < mesh.points.size(); ++point) {
        input.points.push_back(mesh.points[point]);
        if (point % 9 == 8)
            input.points.push_back({0.0, 0.0, 0.0});
    }
    for (Triangle& triangle : input.triangles)
        for (uint64_t& point : triangle)
            point += point / 9;
    return input;
}

Input EightParts(const PlainMesh& mesh) {
    constexpr size_t kPartCount = 8;
    const size_t count = mesh.triangles.size();
    Input input;
    input.triangleCount = count;
    for (size_t part = 0; part < kPartCount; ++part)
        input.parts.push_back(
            PartOf(mesh, count * part / kPartCount, count * (part + 1) / kPartCount));
    return input;
}

}  // namespace Vr::bench::peers
