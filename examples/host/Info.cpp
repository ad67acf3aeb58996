// Numbers are printed with twelve digits: the last four hold what rounding leaves in long sums.

#include "Info.h"

#include <fmt/format.h>

#include <array>
#include <iterator>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "ForEachMesh.h"
#include "GeometryInfo.h"
#include "Interrupt.h"
#include "Output.h"

namespace Host {

namespace {

using Vr::VraMeshPrimitive;
using Text = std::back_insert_iterator<std::string>;

constexpr double kDegreesPerRadian = 180.0 / ON_PI;

struct Totals {
    size_t triangleCount = 0;
    size_t vertexCount = 0;
    double area = 0.0;
    double volume = 0.0;
};

// An array where it was met first.
struct Place {
    size_t object;
    const char* role;
};
using PlaceTable = std::unordered_map<const void*, Place>;

template <class Array>
size_t SizeOf(const std::shared_ptr<Array>& array) {
    return array ? array->size() : 0;
}

// "24 (per vertex)"; `values` may be there without numbers that use them.
template <class Array>
std::string ValuesText(const std::shared_ptr<Array>& values, bool hasIndices, bool isPerVertex) {
    if (!values)
        return "none";
    const char* const form =
        !hasIndices ? "no index array" : (isPerVertex ? "per vertex" : "per triangle");
    return fmt::format("{} ({})", values->size(), form);
}

double AreaOf(const VraMeshPrimitive& mesh, size_t triangleCount) {
    double area = 0.0;
    for (size_t triangle = 0; triangle < triangleCount; ++triangle)
        area += mesh.GetTriangleArea(triangle);
    return area;
}

std::vector<std::pair<size_t, size_t>> FreeEdgesOf(const VraMeshPrimitive& mesh) {
    std::vector<std::pair<size_t, size_t>> edges;
    mesh.GetFreeEdges(edges);
    return edges;
}

// Where an array stands that `object` has in `role` too.
std::string PlaceText(const Place& first, size_t object, std::string_view role) {
    if (first.object == object)
        return fmt::format("its own {} array", first.role);
    if (first.role == role)
        return fmt::format("object {}", first.object + 1);
    return fmt::format("object {}'s {} array", first.object + 1, first.role);
}

// The arrays of one object that were met before, in the order of their roles.
std::string SharingText(const VraMeshPrimitive& mesh, size_t object, PlaceTable& firstPlaceOf) {
    const std::array<std::pair<const char*, const void*>, 7> arrays = {{
        {"vertex", mesh.GetVertexArray().get()},
        {"normal", mesh.GetNormalArray().get()},
        {"colour", mesh.GetColorArray().get()},
        {"vertex index", mesh.GetVertexIndexArray().get()},
        {"normal index", mesh.GetNormalIndexArray().get()},
        {"colour index", mesh.GetColorIndexArray().get()},
        {"UV", mesh.GetUVArray().get()},
    }};
    std::string text;
    for (const auto& [role, array] : arrays) {
        if (array == nullptr)
            continue;
        const auto [found, isNew] = firstPlaceOf.emplace(array, Place{object, role});
        if (isNew)
            continue;
        text += fmt::format("{}{} array with {}", text.empty() ? "" : "; ", role,
                            PlaceText(found->second, object, role));
    }
    return text;
}

void DescribeMesh(const VraMeshPrimitive& mesh, size_t object, PlaceTable& firstPlaceOf,
                  Totals& totals, Text out) {
    const size_t triangleCount = SizeOf(mesh.GetVertexIndexArray());
    const size_t vertexCount = SizeOf(mesh.GetVertexArray());
    const double area = AreaOf(mesh, triangleCount);
    const double volume = mesh.CalcVolume(ON_3dPoint(0, 0, 0));
    totals.triangleCount += triangleCount;
    totals.vertexCount += vertexCount;
    totals.area += area;
    totals.volume += volume;

    fmt::format_to(out, "object {}: {}\n", object + 1, mesh.GetRuntimeClass()->m_lpszClassName);
    fmt::format_to(out, "  triangles: {}\n", triangleCount);
    fmt::format_to(out, "  vertices: {}\n", vertexCount);
    fmt::format_to(out, "  normals: {}\n",
                   ValuesText(mesh.GetNormalArray(), mesh.GetNormalIndexArray() != nullptr,
                              mesh.IsNormalPerVertex()));
    fmt::format_to(out, "  colours: {}\n",
                   ValuesText(mesh.GetColorArray(), mesh.GetColorIndexArray() != nullptr,
                              mesh.IsColorPerVertex()));
    const auto uvs = mesh.GetUVArray();
    fmt::format_to(out, "  UVs: {}\n", uvs ? std::to_string(uvs->size()) : "none");
    fmt::format_to(out, "  crease angle: {:.12g} degrees\n",
                   mesh.GetCreaseAngle() * kDegreesPerRadian);
    ON_BoundingBox box;
    const bool hasBox = mesh.CalcBoundingBox(box);
    fmt::format_to(out, "  bounding box: {}\n", hasBox ? BoxText(box) : "none");
    fmt::format_to(out, "  area: {:.12g}\n", area);
    fmt::format_to(out, "  volume: {:.12g}\n", volume);
    fmt::format_to(out, "  free edges: {}\n", FreeEdgesOf(mesh).size());
    const std::string sharing = SharingText(mesh, object, firstPlaceOf);
    fmt::format_to(out, "  shares: {}\n", sharing.empty() ? "nothing" : sharing);
}

void DescribeOther(const Object& object, size_t number, Text out) {
    const auto describe = [number, out](const auto& geometry) {
        fmt::format_to(out, "object {}: {}\n{}", number + 1, geometry.ClassId()->ClassName(),
                       Describe(geometry));
    };
    if (const Curve* const curve = std::get_if<Curve>(&object))
        describe(**curve);
    else if (const Surface* const surface = std::get_if<Surface>(&object))
        describe(**surface);
    else
        describe(*std::get<Material>(object));
}

}  // namespace

std::string DescribeDocument(const Document& document, const std::filesystem::path& path) {
    std::string text;
    const Text out(text);
    fmt::format_to(out, "{}: {} bytes\n", path.string(), std::filesystem::file_size(path));
    PlaceTable firstPlaceOf;
    Totals totals;
    for (size_t object = 0; object < document.objects.size(); ++object) {
        ThrowIfInterrupted();
        if (const Mesh* const mesh = std::get_if<Mesh>(&document.objects[object]))
            DescribeMesh(**mesh, object, firstPlaceOf, totals, out);
        else
            DescribeOther(document.objects[object], object, out);
    }
    fmt::format_to(out, "total: {}, {}, {}, area {:.12g}, volume {:.12g}\n",
                   Counted(document.objects.size(), "object", "objects"),
                   Counted(totals.triangleCount, "triangle", "triangles"),
                   Counted(totals.vertexCount, "vertex", "vertices"), totals.area, totals.volume);
    return text;
}

std::string ListFreeEdges(const Document& document) {
    std::string text;
    const Text out(text);
    ForEachMesh(document, [out](const VraMeshPrimitive& mesh, size_t object) {
        ThrowIfInterrupted();
        for (const auto& [first, second] : FreeEdgesOf(mesh))
            fmt::format_to(out, "{} {} {}\n", object + 1, first, second);
    });
    return text;
}

}  // namespace Host
