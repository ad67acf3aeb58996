#include "support/MeshBuilders.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Vr::test {

namespace {

using VertexArray = VraMeshPrimitive::VertexArray;
using NormalArray = VraMeshPrimitive::NormalArray;
using ColorArray = VraMeshPrimitive::ColorArray;
using VertexIndexArray = VraMeshPrimitive::VertexIndexArray;
using UVArray = VraMeshPrimitive::UVArray;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// The same value but for the sign of a zero, or the next one up or down.
double Neighbour(Random& random, double value) {
    if (value == 0.0)
        return -value;
    return std::nextafter(value, random.Chance(50) ? kInfinity : -kInfinity);
}

template <class Value, class Make>
std::vector<Value> RandomValues(Random& random, std::size_t count, const Make& make) {
    std::vector<Value> values;
    values.reserve(count);
    while (values.size() < count) {
        const bool isRepeated = !values.empty() && random.Chance(35);
        values.push_back(isRepeated ? values[random.Below(values.size())] : make());
    }
    return values;
}

template <class Value>
Value RandomPoint(Random& random, bool hasSpecialValues) {
    // Braces, because they evaluate from left to right.
    return Value{RandomCoordinate(random, hasSpecialValues),
                 RandomCoordinate(random, hasSpecialValues),
                 RandomCoordinate(random, hasSpecialValues)};
}

std::vector<ON_2dPoint> RandomUVs(Random& random, std::size_t count, bool hasSpecialValues) {
    return RandomValues<ON_2dPoint>(random, count, [&] {
        return ON_2dPoint{RandomCoordinate(random, hasSpecialValues),
                          RandomCoordinate(random, hasSpecialValues)};
    });
}

VertexArray RandomVertices(Random& random, std::size_t count, bool hasSpecialValues) {
    VertexArray vertices = RandomValues<ON_3dPoint>(
        random, count, [&] { return RandomPoint<ON_3dPoint>(random, hasSpecialValues); });
    for (ON_3dPoint& vertex : vertices)
        if (random.Chance(15))
            vertex.y = Neighbour(random, vertex.y);
    return vertices;
}

VertexIndexArray RandomTriples(Random& random, std::size_t count, std::size_t bound,
                               unsigned degeneratePercent) {
    return RandomValues<TriangleIndex>(random, count, [&] {
        TriangleIndex triangle{{random.Below(bound), random.Below(bound), random.Below(bound)}};
        if (random.Chance(degeneratePercent))
            triangle[random.Below(3)] = triangle[random.Below(3)];
        return triangle;
    });
}

std::shared_ptr<IndexArray> RandomIndices(Random& random, std::size_t triangleCount,
                                          std::size_t bound, std::optional<int> form) {
    if (form ? *form == 1 : random.Chance(50))
        return PerVertex(RandomTriples(random, triangleCount, bound, 20));
    return PerTriangle(
        RandomValues<std::size_t>(random, triangleCount, [&] { return random.Below(bound); }));
}

// Between one and `maximum`, or, where nothing refers to the values, also none.
std::size_t RandomCount(Random& random, std::size_t maximum, bool mayBeEmpty) {
    return mayBeEmpty && random.Chance(50) ? 0 : 1 + random.Below(maximum);
}

void AddNormalsAndColors(Random& random, const RandomMeshOptions& options,
                         std::size_t triangleCount, VraMeshPrimitive& mesh) {
    const bool isUnused = triangleCount == 0;
    const std::size_t normalCount = RandomCount(random, options.maxVertices, isUnused);
    const std::size_t colorCount = RandomCount(random, options.maxVertices, isUnused);
    const auto isThere = [&] { return !random.Chance(options.missingPercent); };
    if (isThere())
        mesh.SetNormalArray(
            std::make_shared<NormalArray>(RandomValues<ON_3dVector>(random, normalCount, [&] {
                return RandomPoint<ON_3dVector>(random, options.hasSpecialValues);
            })));
    if (isThere())
        mesh.SetColorArray(
            std::make_shared<ColorArray>(RandomValues<ON_Color>(random, colorCount, [&] {
                return ON_Color(static_cast<unsigned int>(random.Below(4) * 0x55000001u));
            })));
    if (options.sharesRoles && random.Chance(25)) {
        const auto shared = RandomIndices(
            random, triangleCount, std::max<std::size_t>(1, std::min(normalCount, colorCount)),
            options.form);
        mesh.SetNormalIndexArray(shared);
        mesh.SetColorIndexArray(shared);
        return;
    }
    if (isThere())
        mesh.SetNormalIndexArray(RandomIndices(
            random, triangleCount, std::max<std::size_t>(1, normalCount), options.form));
    if (isThere())
        mesh.SetColorIndexArray(RandomIndices(random, triangleCount,
                                              std::max<std::size_t>(1, colorCount), options.form));
}

void AddTextures(Random& random, const RandomMeshOptions& options,
                 const std::shared_ptr<VertexIndexArray>& triangles, std::size_t vertexCount,
                 VraMeshPrimitive& mesh) {
    const auto isThere = [&] { return !random.Chance(options.missingPercent); };
    const std::size_t triangleCount = triangles->size();
    const bool sharesIndices = options.sharesRoles && random.Chance(25);
    std::size_t textureUVCount = RandomCount(random, options.maxVertices, triangleCount == 0);
    if (sharesIndices)
        textureUVCount = std::max(textureUVCount, vertexCount);

    auto uvs = std::make_shared<UVArray>(RandomUVs(
        random, random.Chance(70) ? 3 * triangleCount : random.Below(5), options.hasSpecialValues));
    auto textureUVs =
        std::make_shared<UVArray>(RandomUVs(random, textureUVCount, options.hasSpecialValues));
    if (options.sharesRoles && random.Chance(25)) {
        if (uvs->size() < textureUVCount)
            uvs->resize(textureUVCount, ON_2dPoint(0.5, 0.25));
        textureUVs = uvs;
    }
    if (isThere())
        mesh.SetUVArray(uvs);
    if (isThere())
        mesh.SetTextureUVArray(textureUVs);
    if (sharesIndices)
        mesh.SetTextureUVIndexArray(triangles);
    else if (isThere())
        mesh.SetTextureUVIndexArray(std::make_shared<VertexIndexArray>(
            RandomTriples(random, triangleCount, std::max<std::size_t>(1, textureUVCount), 20)));
}

}  // namespace

std::shared_ptr<VertexArray> Vertices(std::initializer_list<Point3> points) {
    return std::make_shared<VertexArray>(points.begin(), points.end());
}

std::shared_ptr<NormalArray> Normals(std::initializer_list<Vector3> vectors) {
    return std::make_shared<NormalArray>(vectors.begin(), vectors.end());
}

std::shared_ptr<ColorArray> Colors(std::initializer_list<unsigned int> packed) {
    return std::make_shared<ColorArray>(packed.begin(), packed.end());
}

std::shared_ptr<VertexIndexArray> Triangles(std::initializer_list<TriangleIndex> triangles) {
    return std::make_shared<VertexIndexArray>(triangles);
}

std::shared_ptr<IndexArray> PerTriangle(std::vector<std::size_t> numbers) {
    return std::make_shared<IndexArray>(std::move(numbers));
}

std::shared_ptr<IndexArray> PerVertex(std::vector<TriangleIndex> triples) {
    return std::make_shared<IndexArray>(std::move(triples));
}

std::shared_ptr<UVArray> UVs(std::initializer_list<Point2> uvs) {
    return std::make_shared<UVArray>(uvs.begin(), uvs.end());
}

const std::vector<std::size_t>& PerTriangleOf(const IndexArray& indices) {
    return boost::get<IndexArray::PerTriangle>(indices.data);
}

const std::vector<TriangleIndex>& PerVertexOf(const IndexArray& indices) {
    return boost::get<IndexArray::PerVertex>(indices.data);
}

Mesh NewPrimitive() {
    return Mesh(new VraMeshPrimitive);
}

Mesh NewPrimitive(std::initializer_list<Point3> points,
                  std::initializer_list<TriangleIndex> triangles) {
    const Mesh mesh = NewPrimitive();
    mesh->SetVertexArray(Vertices(points));
    mesh->SetVertexIndexArray(Triangles(triangles));
    return mesh;
}

Mesh SingleTriangle() {
    return NewPrimitive({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {{{0, 1, 2}}});
}

Mesh Square() {
    return NewPrimitive({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}, {{{0, 1, 2}}, {{0, 2, 3}}});
}

Mesh Box() {
    const Mesh mesh = NewPrimitive();
    mesh->SetDataAsBox(ON_BoundingBox(ON_3dPoint(0, 0, 0), ON_3dPoint(2, 3, 4)));
    return mesh;
}

Mesh Fan(std::size_t triangleCount) {
    const auto vertices = Vertices({{0, 0, 0}});
    const auto triangles = Triangles({});
    for (std::size_t rim = 0; rim <= triangleCount; ++rim) {
        const double x = static_cast<double>(rim);
        vertices->push_back(ON_3dPoint(x + 1, x * x + 1, 0));
    }
    for (std::size_t triangle = 0; triangle < triangleCount; ++triangle)
        triangles->push_back({{0, triangle + 1, triangle + 2}});
    const Mesh mesh = NewPrimitive();
    mesh->SetVertexArray(vertices);
    mesh->SetVertexIndexArray(triangles);
    return mesh;
}

Mesh OpenTube(std::size_t ringCount) {
    const auto vertices = Vertices({});
    const auto triangles = Triangles({});
    for (std::size_t ring = 0; ring < ringCount; ++ring) {
        const double z = static_cast<double>(ring);
        const auto corners = Vertices({{0, 0, z}, {1, 0, z}, {1, 1, z}, {0, 1, z}});
        vertices->insert(vertices->end(), corners->begin(), corners->end());
        for (std::size_t side = 0; side < 4 && ring + 1 < ringCount; ++side) {
            const std::size_t low = 4 * ring + side;
            const std::size_t lowNext = 4 * ring + (side + 1) % 4;
            triangles->push_back({{low, lowNext, lowNext + 4}});
            triangles->push_back({{low, lowNext + 4, low + 4}});
        }
    }
    const Mesh mesh = NewPrimitive();
    mesh->SetVertexArray(vertices);
    mesh->SetVertexIndexArray(triangles);
    return mesh;
}

std::pair<Mesh, Mesh> SharedPair() {
    const Mesh first = Square();
    const Mesh second = NewPrimitive();
    second->SetVertexArray(first->GetModifiableVertexArray());
    first->SetVertexIndexArray(Triangles({{{0, 1, 2}}}));
    second->SetVertexIndexArray(Triangles({{{0, 2, 3}}}));
    return {first, second};
}

Mesh FullSquare() {
    const Mesh mesh = Square();
    mesh->SetCreaseAngle(0.5);
    mesh->SetNormalArray(Normals({{0, 0, 1}, {0, 0, -1}}));
    mesh->SetColorArray(Colors({0x00FF0000u, 0x8000FF00u}));
    mesh->SetNormalIndexArray(PerVertex({{{0, 0, 1}}, {{1, 0, 1}}}));
    mesh->SetColorIndexArray(PerTriangle({1, 0}));
    mesh->SetTextureUVIndexArray(Triangles({{{0, 1, 2}}, {{2, 1, 0}}}));
    mesh->SetUVArray(UVs({{0, 0}, {1, 0}, {1, 1}, {0, 0}, {1, 1}, {0, 1}}));
    mesh->SetTextureUVArray(UVs({{0, 0.5}, {0.25, 1}, {1, 0.75}}));
    return mesh;
}

double RandomCoordinate(Random& random, bool hasSpecialValues) {
    static const std::vector<double> kPool = {
        0.0, -0.0, 1.0, std::nextafter(1.0, 2.0), std::nextafter(1.0, 0.0), -1.0, 0.5, 5e-324};
    static const std::vector<double> kSpecial = {std::numeric_limits<double>::quiet_NaN(),
                                                 kInfinity,
                                                 -kInfinity,
                                                 ON_UNSET_VALUE,
                                                 -ON_UNSET_VALUE,
                                                 std::numeric_limits<double>::max()};
    if (hasSpecialValues && random.Chance(8))
        return random.OneOf(kSpecial);
    return random.Chance(60) ? random.OneOf(kPool) : random.Between(-4.0, 4.0);
}

Mesh RandomMesh(Random& random, const RandomMeshOptions& options) {
    const Mesh mesh(options.isVraMesh ? new VraMesh : new VraMeshPrimitive);
    const std::size_t triangleCount =
        random.Chance(options.noTrianglesPercent) ? 0 : 1 + random.Below(options.maxTriangles);
    const std::size_t vertexCount = RandomCount(random, options.maxVertices, triangleCount == 0);
    const auto triangles = std::make_shared<VertexIndexArray>(RandomTriples(
        random, triangleCount, std::max<std::size_t>(1, vertexCount), options.degeneratePercent));
    if (!random.Chance(options.missingPercent))
        mesh->SetVertexArray(std::make_shared<VertexArray>(
            RandomVertices(random, vertexCount, options.hasSpecialValues)));
    if (!random.Chance(options.missingPercent))
        mesh->SetVertexIndexArray(triangles);
    mesh->SetCreaseAngle(RandomCoordinate(random, options.hasSpecialValues));
    AddNormalsAndColors(random, options, triangleCount, *mesh);
    AddTextures(random, options, triangles, vertexCount, *mesh);
    return mesh;
}

}  // namespace Vr::test
