/// What the host does to loaded documents, object by object, with the library's operations.
///
/// The library leaves the order of its operations and the sharing between objects to the host. So each
/// function here says which operations it chains and what it does about arrays that objects share.
/// Objects that are no meshes stay as and where they are, but for `TransformDocument`.
/// All of them work on documents whose numbers are in range (`RequireSafe`), look for Ctrl-C between
/// two objects (`Interrupted`) and may leave a document half edited when they throw: throw it away then.
#pragma once

#include <opennurbs.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "Document.h"

namespace Host {

/// Counts over all objects; what is in a shared array counts for each holder.
struct DocumentSize {
    size_t vertexCount = 0;
    size_t triangleCount = 0;
    size_t normalCount = 0;
};
DocumentSize SizeOf(const Document& document);

/// Joins equal data, removes triangles that lost a side to that, and drops vertices nobody uses.
///
/// `MergeSameData`, then `RemoveDegenerateMesh` or its like, then `DeleteUnusedVertices`. Equality is
/// exact, and vertices come out sorted.
///
/// - Sharing: every object gets arrays of its own first, because joining sorts and renumbers arrays
///   that other objects may use with other partners.
/// - Result: how many arrays were copied for that.
/// - Throws: `std::runtime_error` for positions or normals that are not finite, which may have no
///   order.
size_t CleanDocument(const Document& document);

/// Makes one normal a triangle (`CreateNormalPerTriangle`).
///
/// - Sharing: new arrays for each object.
/// - Throws: `std::runtime_error` for positions that are not finite, which have no normals.
void MakeFlatNormals(const Document& document);

/// Makes normals for the corners, split where triangles meet at more than the crease angle
/// (`CreateNormalPerVertex`).
///
/// - Units: radians; a negative angle never splits.
/// - Sharing: new arrays for each object. The weight type is one setting for the process and stays.
/// - Throws: `std::runtime_error` for positions that are not finite.
void MakeSmoothNormals(const Document& document, double creaseAngle,
                       Vr::VraMeshPrimitive::VertexNormalWeightType weightType);

/// Transforms every mesh, curve and surface and returns how many these are; a transformation that
/// mirrors also turns the triangles round, so that they face outwards again.
///
/// Curves and surfaces become NURBS (`MoveGeometry.h`).
///
/// - Sharing: shared arrays are edited once and stay shared: one visited set over all objects.
/// - Throws: `std::runtime_error` when the transformation flattens and there are normals, when it cannot
///   be had of a curve or surface, or when something is not finite afterwards.
size_t TransformDocument(Document& document, const ON_Xform& xform);

/// Turns every triangle round, and the normals too when `reversesNormals` (`ReverseFaces`).
///
/// - Sharing: shared arrays are turned once and stay shared, also between two roles of one object.
void ReverseDocument(const Document& document, bool reversesNormals);

/// Deletes triangles of one object (`DeleteFacetFaces`) and returns how many were deleted.
///
/// - Shape: `object` counts from 0; `triangles` in any order, repeated or not.
/// - Sharing: only this object loses triangles. Vertices, normals and colours stay, and stay shared.
/// - Throws: `std::runtime_error` for a mesh or a triangle that is not there.
size_t DeleteTriangles(const Document& document, size_t object, std::vector<size_t> triangles);

/// Drops the vertices that no triangle of any object uses (the static `DeleteUnusedVertices`).
///
/// - Sharing: objects that share a vertex array are compacted together and go on sharing it.
void CompactVertices(const Document& document);

/// What was merged, and what got lost in it.
struct MergeReport {
    size_t mergedCount = 0;
    bool lostNormals = false;
    bool lostColors = false;
    bool lostUVs = false;
};

/// Replaces the meshes by one that holds all their triangles, each distinct value once (`Merge`), and
/// the crease angle of the first, at the place of the first.
///
/// - Throws: `std::runtime_error` when there are no meshes.
MergeReport MergeObjects(Document& document);

/// Makes a document of one solid.
///
/// - Throws: `std::runtime_error` when something is not finite, or for less than three segments.
/// @{
Document MakeBox(const ON_3dPoint& corner, const ON_3dPoint& oppositeCorner);
Document MakeCone(const ON_3dPoint& base, const ON_3dPoint& apex, double radius,
                  size_t segmentCount);
Document MakeCylinder(const ON_3dPoint& base, const ON_3dPoint& top, double radius,
                      size_t segmentCount);
/// @}

}  // namespace Host
