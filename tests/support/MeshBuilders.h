/// Small meshes by name, and random ones.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "mesh/VraMesh.h"
#include "mesh/VraMeshPrimitive.h"
#include "support/Random.h"

namespace Vr::test {

using Mesh = boost::intrusive_ptr<VraMeshPrimitive>;
using TriangleIndex = VraMeshPrimitive::TriangleIndex;
using IndexArray = VraMeshPrimitive::IndexArray;

/// @name Points and vectors from braces
/// openNURBS 6 and later make its own constructors explicit, so that `{1, 2, 3}` is no point there.
/// @{
struct Point3 : ON_3dPoint {
    Point3(double x0, double y0, double z0) : ON_3dPoint(x0, y0, z0) {}
    Point3(const ON_3dPoint& point) : ON_3dPoint(point) {}
};
struct Vector3 : ON_3dVector {
    Vector3(double x0, double y0, double z0) : ON_3dVector(x0, y0, z0) {}
    Vector3(const ON_3dVector& vector) : ON_3dVector(vector) {}
};
struct Point2 : ON_2dPoint {
    Point2(double x0, double y0) : ON_2dPoint(x0, y0) {}
    Point2(const ON_2dPoint& point) : ON_2dPoint(point) {}
};
/// @}

/// @name Arrays from braces
/// @{
std::shared_ptr<VraMeshPrimitive::VertexArray> Vertices(std::initializer_list<Point3> points);
std::shared_ptr<VraMeshPrimitive::NormalArray> Normals(std::initializer_list<Vector3> vectors);
std::shared_ptr<VraMeshPrimitive::ColorArray> Colors(std::initializer_list<unsigned int> packed);
/// Serves for vertex indices and for texture-UV indices.
std::shared_ptr<VraMeshPrimitive::VertexIndexArray> Triangles(
    std::initializer_list<TriangleIndex> triangles);
std::shared_ptr<IndexArray> PerTriangle(std::vector<std::size_t> numbers);
std::shared_ptr<IndexArray> PerVertex(std::vector<TriangleIndex> triples);
/// Serves for UVs and for texture-UVs.
std::shared_ptr<VraMeshPrimitive::UVArray> UVs(std::initializer_list<Point2> uvs);
/// @}

/// Copies of the numbers an index array holds. The form asked for must be the one held.
/// @{
const std::vector<std::size_t>& PerTriangleOf(const IndexArray& indices);
const std::vector<TriangleIndex>& PerVertexOf(const IndexArray& indices);
/// @}

/// An empty primitive: nine empty handles.
Mesh NewPrimitive();
/// A primitive with these vertices and triangles and nothing else.
Mesh NewPrimitive(std::initializer_list<Point3> points,
                  std::initializer_list<TriangleIndex> triangles);

/// @name Meshes of vertices and triangles only, counter-clockwise seen from +z or from outside
/// @{

/// (0,0,0), (1,0,0), (0,1,0).
Mesh SingleTriangle();
/// The unit square in z = 0: (0,0), (1,0), (1,1), (0,1); triangles {0,1,2}, {0,2,3}.
Mesh Square();
/// The closed box from the origin to (2,3,4) as `SetDataAsBox` makes it, with face normals.
Mesh Box();
/// `triangleCount` triangles {0, k+1, k+2} around vertex 0 at the origin; vertex k+1 at (k+1, k*k+1,
/// 0). Open, not closed to a ring.
Mesh Fan(std::size_t triangleCount);
/// A square tube along z of `ringCount` rings of 4 vertices, open at both ends; ring r has z = r and
/// vertices 4r..4r+3 at (0,0), (1,0), (1,1), (0,1). Each side between two rings has two triangles.
Mesh OpenTube(std::size_t ringCount);
/// Two primitives with one vertex array of a square: the first has triangle {0,1,2}, the second
/// {0,2,3}; their vertex index arrays are their own.
std::pair<Mesh, Mesh> SharedPair();
/// @}

/// A square with all nine arrays, each of its own, normals per vertex, colours per triangle.
Mesh FullSquare();

/// What `RandomMesh` may do. The result always satisfies `ExpectConsistent`.
struct RandomMeshOptions {
    std::size_t maxVertices = 12;
    std::size_t maxTriangles = 16;
    /// Chance in percent that any one array is missing.
    unsigned missingPercent = 15;
    /// Chance in percent that a triangle repeats a vertex number.
    unsigned degeneratePercent = 20;
    /// Chance in percent that there are no triangles, so that arrays are empty or unused.
    unsigned noTrianglesPercent = 5;
    /// Roles may hold one array: normal and colour indices; vertex and texture-UV indices; UVs and
    /// texture-UVs.
    bool sharesRoles = true;
    /// Coordinates may be NaN, infinite or openNURBS's unset value.
    bool hasSpecialValues = false;
    /// The form of both index arrays: 0 per triangle, 1 per vertex; either when there is none.
    std::optional<int> form;
    /// Makes a `VraMesh`.
    bool isVraMesh = false;
};

/// A mesh with repeated vertices, zeros of both signs, neighbours in the last bit, degenerate and
/// repeated triangles, missing and empty arrays, both forms of index arrays and shared roles.
Mesh RandomMesh(Random& random, const RandomMeshOptions& options = {});

/// A coordinate from a small pool, so that equal, nearly equal and zero ones meet often.
double RandomCoordinate(Random& random, bool hasSpecialValues = false);

}  // namespace Vr::test
