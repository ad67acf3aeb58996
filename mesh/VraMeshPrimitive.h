#pragma once

#include <afx.h>

#include <opennurbs.h>

#include <atomic>
#include <boost/container/small_vector.hpp>
#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/variant.hpp>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <set>
#include <type_traits>
#include <utility>
#include <vector>

#include "module/Export.h"

namespace Vr {

class VraMesh;
class VraMeshDegenJudge;
class VraMeshPrimitive;
class VruDuplicateMap;

/// Reads an object with `CArchive::ReadObject`; serialize/MeshSerializers.h tells the whole.
VERIDANE_MESH_API CArchive& AFXAPI operator>>(CArchive& archive, VraMeshPrimitive*& mesh);

/// @name Reference count of primitives
/// What `boost::intrusive_ptr` calls: the count starts at 0, changes atomically, and the release
/// that takes it back to 0 deletes the object through its virtual destructor.
/// @{
VERIDANE_MESH_API void intrusive_ptr_add_ref(const VraMeshPrimitive* mesh);
VERIDANE_MESH_API void intrusive_ptr_release(const VraMeshPrimitive* mesh);
VERIDANE_MESH_API void intrusive_ptr_add_ref(const VraMesh* mesh);
VERIDANE_MESH_API void intrusive_ptr_release(const VraMesh* mesh);
/// @}

/// A triangle mesh held as nine shared arrays and a crease angle.
///
/// Each array is held through a `std::shared_ptr` handle that other primitives and the host may hold
/// as well. There is no copy-on-write: who changes an array through one handle changes it for every
/// holder. Operations that edit say so under *Sharing*; operations that build new data install new
/// arrays through the setters and leave the old ones to their other holders.
///
/// | array | element | addressed by |
/// |---|---|---|
/// | vertex | position | vertex index array |
/// | normal | unit vector | normal index array |
/// | colour | packed colour | colour index array |
/// | vertex index | three vertex numbers a triangle | triangle number |
/// | normal index, colour index | one number a triangle, or one a corner | triangle number |
/// | texture-UV index | three numbers a triangle | triangle number |
/// | UV | texture coordinate | corner, where it has three entries a triangle |
/// | texture-UV | texture coordinate | texture-UV index array |
///
/// A missing array (empty handle) and an empty array are different things, and both are legal.
///
/// - Order: triangles are wound counter-clockwise seen from outside.
/// - Units: angles are radians; lengths are the host's.
/// - Requires: every number in an index array addresses an element; per-triangle lists have one
///   entry, per-vertex lists one triple, for each triangle. Nothing checks this.
class VERIDANE_MESH_API VraMeshPrimitive : public CObject {
    DECLARE_SERIAL(VraMeshPrimitive)

public:
    /// The three numbers of one triangle, in winding order.
    struct TriangleIndex {
        size_t v[3];

        size_t& operator[](size_t corner) noexcept { return v[corner]; }
        const size_t& operator[](size_t corner) const noexcept { return v[corner]; }

        friend bool operator==(const TriangleIndex& a, const TriangleIndex& b) noexcept {
            return a.v[0] == b.v[0] && a.v[1] == b.v[1] && a.v[2] == b.v[2];
        }
        friend bool operator!=(const TriangleIndex& a, const TriangleIndex& b) noexcept {
            return !(a == b);
        }
    };

    /// The numbers of normals or colours, in one of two forms.
    ///
    /// - Shape: alternative 0, per triangle: entry t serves all corners of triangle t. Alternative 1,
    ///   per vertex: triple t serves the corners of triangle t one by one.
    /// - Throws: `boost::get` of the alternative not held throws `boost::bad_get`.
    class IndexArray {
    public:
        using PerTriangle = std::vector<size_t>;
        using PerVertex = std::vector<TriangleIndex>;

        /// Holds an empty per-triangle list.
        IndexArray() = default;
        explicit IndexArray(PerTriangle numbers) : data(std::move(numbers)) {}
        explicit IndexArray(PerVertex triples) : data(std::move(triples)) {}

        /// Returns 0 for the per-triangle form and 1 for the per-vertex form.
        int which() const noexcept { return data.which(); }

        boost::variant<PerTriangle, PerVertex> data;
    };

    /// One vertex as `VraMeshDegenJudge` inspects it: a key and the triangles around it.
    struct MeshVertex {
        uint64_t key = 0;
        uint64_t reserved = 0;  ///< Not looked at by the judge.
        boost::container::small_vector<uint64_t, 32> triangles;
    };

    /// How a triangle counts in the normal of a vertex.
    enum VertexNormalWeightType : int {
        Area = 0,  ///< By its area.
        Angle = 1  ///< By its interior angle at the vertex.
    };

    using VertexArray = std::vector<ON_3dPoint>;
    using NormalArray = std::vector<ON_3dVector>;
    using ColorArray = std::vector<ON_Color>;
    using VertexIndexArray = std::vector<TriangleIndex>;
    using TextureUVIndexArray = std::vector<TriangleIndex>;
    using UVArray = std::vector<ON_2dPoint>;
    using TextureUVArray = std::vector<ON_2dPoint>;

    /// Creates an empty primitive: crease angle 0, all handles empty, reference count 0.
    VraMeshPrimitive();
    VraMeshPrimitive(const VraMeshPrimitive&) = delete;
    VraMeshPrimitive& operator=(const VraMeshPrimitive&) = delete;

    // The order of the virtual declarations from here to the end of the class is binary interface:
    // hosts are compiled against it. New ones go last.

    /// Releases the handles, the texture-UV array first and the vertex array last.
    ~VraMeshPrimitive() override;

protected:
    /// Stores or loads the body of the object (serialize/MeshSerializers.cpp).
    ///
    /// The byte layout is in docs/stream-format.md. The texture-UV index and texture-UV arrays are
    /// not part of it.
    ///
    /// - Sharing: an array met before on the same archive is stored as its number, and shared again
    ///   when loaded. Arrays are told apart by address, so a stored array must live, at its place,
    ///   until the archive is closed.
    /// - Requires: `archive` is a `VrmArchive`; a plain `CArchive` is not supported.
    /// - Deliberate: colours and UVs cut short are not reported; what did not come is 0.
    /// - Throws: `CArchiveException*` (cause `endOfFile`) for a short stream, `CUserException*` when
    ///   the observer cancels, `std::length_error` "vector too long" for a count no vector can have,
    ///   `std::bad_alloc`. Arrays read by then are installed, the others are as they were.
    /// - Complexity: linear in what is stored, one pass, calling thread only.
    void Serialize(CArchive& archive) override;

public:
    void AssertValid() const override;
    void Dump(CDumpContext& context) const override;

protected:
    /// Creates the duplicate for `Duplicate`; an override may answer an empty pointer.
    ///
    /// - Result: an object of this object's run-time class, deep-copied through `map`; an empty
    ///   pointer when that class cannot be created or `DeepCopy` answered false.
    /// - Throws: `std::bad_alloc`; the new object is gone then.
    virtual boost::intrusive_ptr<VraMeshPrimitive> OnDuplicate(VruDuplicateMap& map) const;

public:
    /// @name State
    /// @{
    /// Returns whether the normal index array is there and holds the per-vertex form, even if empty.
    virtual bool IsNormalPerVertex() const;
    /// Returns whether the colour index array is there and holds the per-vertex form, even if empty.
    virtual bool IsColorPerVertex() const;
    /// Returns whether there are no triangles.
    ///
    /// - Deliberate: a primitive with vertices but no triangle is empty.
    virtual bool IsEmpty() const;
    /// @}

    /// @name Arrays
    /// A setter shares the given array and lets go of the old one; an empty handle removes the
    /// array. The getters give a handle to the same array, or an empty handle; they never copy or
    /// create. `GetModifiable...` differs from `Get...` in constness only.
    ///
    /// - Deliberate: no copy-on-write; what is changed through a modifiable handle changes for every
    ///   holder of the array.
    /// @{
    virtual void SetVertexArray(std::shared_ptr<VertexArray> vertices);
    virtual std::shared_ptr<const VertexArray> GetVertexArray() const;
    virtual std::shared_ptr<VertexArray> GetModifiableVertexArray();

    virtual void SetNormalArray(std::shared_ptr<NormalArray> normals);
    virtual std::shared_ptr<const NormalArray> GetNormalArray() const;
    virtual std::shared_ptr<NormalArray> GetModifiableNormalArray();

    virtual void SetColorArray(std::shared_ptr<ColorArray> colors);
    virtual std::shared_ptr<const ColorArray> GetColorArray() const;
    virtual std::shared_ptr<ColorArray> GetModifiableColorArray();

    virtual void SetVertexIndexArray(std::shared_ptr<VertexIndexArray> triangles);
    virtual std::shared_ptr<const VertexIndexArray> GetVertexIndexArray() const;
    virtual std::shared_ptr<VertexIndexArray> GetModifiableVertexIndexArray();

    virtual void SetNormalIndexArray(std::shared_ptr<IndexArray> normalIndices);
    virtual std::shared_ptr<const IndexArray> GetNormalIndexArray() const;
    virtual std::shared_ptr<IndexArray> GetModifiableNormalIndexArray();

    virtual void SetColorIndexArray(std::shared_ptr<IndexArray> colorIndices);
    virtual std::shared_ptr<const IndexArray> GetColorIndexArray() const;
    virtual std::shared_ptr<IndexArray> GetModifiableColorIndexArray();

    virtual void SetTextureUVIndexArray(std::shared_ptr<TextureUVIndexArray> textureUVIndices);
    virtual std::shared_ptr<const TextureUVIndexArray> GetTextureUVIndexArray() const;
    virtual std::shared_ptr<TextureUVIndexArray> GetModifiableTextureUVIndexArray();

    virtual void SetUVArray(std::shared_ptr<UVArray> uvs);
    virtual std::shared_ptr<const UVArray> GetUVArray() const;
    virtual std::shared_ptr<UVArray> GetModifiableUVArray();

    virtual void SetTextureUVArray(std::shared_ptr<TextureUVArray> textureUVs);
    virtual std::shared_ptr<const TextureUVArray> GetTextureUVArray() const;
    virtual std::shared_ptr<TextureUVArray> GetModifiableTextureUVArray();
    /// @}

    /// @name Crease angle
    /// The angle in radians beyond which `CreateNormalPerVertex` splits normals; stored as given.
    /// @{
    virtual double GetCreaseAngle() const;
    virtual void SetCreaseAngle(double creaseAngle);
    /// @}

    /// @name Normals (mesh/CreateNormal.cpp)
    /// @{
    /// Gives every triangle its unit normal.
    ///
    /// - Shape: one normal and one index for each triangle; index t is t, in the per-triangle form.
    /// - Sharing: installs a new normal array, then a new normal index array, also empty ones. The
    ///   arrays held before are left unchanged to their other holders.
    /// - Result: always true; nothing happens when the vertex array or the vertex index array is
    ///   missing.
    /// - Deliberate: a degenerate triangle, and one with a coordinate that is no number, has the zero
    ///   vector.
    /// - Requires: every vertex number is below the vertex count.
    /// - Throws: `std::bad_alloc`; nothing has changed then.
    /// - Complexity: linear in the triangles, no memory but the result, on several threads.
    virtual bool CreateNormalPerTriangle();

    /// Gives every corner a normal averaged over the triangles around its vertex, split at creases.
    ///
    /// At each vertex the first triangle gathers those whose unit normal is within the crease angle
    /// of its own; the first of the rest gathers again, until none is left. Each group has one
    /// normal: the unit vector of its triangles' normals, weighted by area (`Area`) or by the
    /// interior angle at the vertex (`Angle`), added up in ascending order.
    ///
    /// - Shape: as many normals as groups, and no room to spare; an index triple for each triangle,
    ///   in the per-vertex form. A vertex without a triangle has no normal.
    /// - Order: normals ascend by vertex, within a vertex by the first triangle of the group, for
    ///   any number of threads.
    /// - Units: a triangle joins when the dot product of the unit normals is greater than
    ///   cos(crease angle) - 1e-12. A negative crease angle, not -0.0, splits nothing; a NaN gives
    ///   each corner a group of its own. The stored angle counts, not an overridden `GetCreaseAngle`.
    /// - Sharing: as `CreateNormalPerTriangle`.
    /// - Result: always true; nothing happens when the vertex array or the vertex index array is
    ///   missing.
    /// - Deliberate: triangles are compared with the first of their group alone, so two of a group
    ///   may differ by more than the crease angle.
    /// - Deliberate: a triangle that names a vertex twice counts twice there, and its later corner
    ///   keeps index 0.
    /// - Deliberate: under a weight type other than the two, every normal is the zero vector.
    /// - Requires: every vertex number is below the vertex count; the weight type does not change
    ///   meanwhile.
    /// - Throws: `std::bad_alloc`; nothing has changed then.
    /// - Complexity: linear in vertices and triangles while groups are few; a vertex with n triangles
    ///   in g groups costs n * g. About 50 bytes a triangle besides the result (65 for `Angle`), on
    ///   several threads.
    /// - Source: Max, "Weights for computing vertex normals from facet normals", 1999; Thürmer and
    ///   Wüthrich, "Computing vertex normals from polygonal facets", 1998.
    virtual bool CreateNormalPerVertex();
    /// @}

    /// @name Measures (mesh/Measure.cpp)
    /// @{
    /// Returns the area of one triangle.
    ///
    /// - Units: squared length unit of the positions.
    /// - Result: -1.0 when the vertex array or the vertex index array is missing, or `triangle` is
    ///   greater than the triangle count.
    /// - Deliberate: the bound is "greater than", so a number equal to the count passes the guard
    ///   and reads past the end; callers pass numbers below the count.
    /// - Requires: the triangle's vertex numbers are below the vertex count.
    /// - Complexity: constant, no allocation.
    virtual double GetTriangleArea(size_t triangle) const;
    /// @}

    /// @name Solids (mesh/SetDataAsBox.cpp, mesh/SetDataAsConeCylinder.cpp)
    /// @{
    /// Replaces the geometry with a closed box of 8 vertices, 12 triangles and 6 face normals.
    ///
    /// The box is taken as it is, also when it is unset or inverted: its corners are those of
    /// `ON_BoundingBox::Corner`.
    ///
    /// - Shape: two triangles and one normal a side; normal indices 0,0,1,1,...,5,5 in the
    ///   per-triangle form.
    /// - Order: corners (0,0,0), (1,0,0), (1,1,0), (0,1,0), then the same four at the upper z. Sides
    ///   bottom, front, right, back, left, top (-z, -y, +x, +y, -x, +z).
    /// - Sharing: installs new vertex, normal, vertex index and normal index arrays and empties the
    ///   colour and colour index handles; texture arrays and the crease angle stay. Arrays held
    ///   before are left unchanged to their other holders.
    /// - Result: always true.
    /// - Deliberate: the second triangle of the back side starts at vertex 6, not at 2 as the first.
    /// - Throws: `std::bad_alloc`; handles replaced by then keep their new arrays.
    virtual bool SetDataAsBox(const ON_BoundingBox& box);
    /// Replaces the geometry with a fan from the second point over a ring of `segmentCount` vertices,
    /// closed by a fan from the first point.
    ///
    /// - Shape: segmentCount + 2 vertices and as many normals, 2 * segmentCount triangles, normal
    ///   indices in the per-vertex form. Sides have a normal a vertex, the cap has normal 1.
    /// - Order: vertex 0 is the second point with the normal along the axis, vertex 1 the first point
    ///   with the opposite one, then the ring, at angles of k * 2 pi / segmentCount; triangles of the
    ///   side, then of the cap.
    /// - Sharing: installs new vertex, normal, vertex index and normal index arrays and empties the
    ///   colour and colour index handles; texture arrays and the crease angle stay. Arrays held
    ///   before are left unchanged to their other holders.
    /// - Result: false, and nothing changed, for fewer than three segments; otherwise true, also for
    ///   coincident points and radii that are not positive.
    /// - Deliberate: all ring vertices lie on the first point, because distances on an `ON_Cone` count
    ///   from its apex; only the ring normals are those of a cone of the radius.
    /// - Throws: `std::bad_alloc`; handles replaced by then keep their new arrays.
    /// - Complexity: linear in the segments, calling thread only.
    virtual bool SetDataAsCone(const ON_3dPoint& first, const ON_3dPoint& second, double radius,
                               size_t segmentCount);
    /// Replaces the geometry with a cylinder around the axis from the first to the second point.
    ///
    /// - Shape: 2 * segmentCount + 2 vertices, segmentCount + 2 normals, 4 * segmentCount triangles,
    ///   normal indices in the per-vertex form. Both rings have the normals of the first.
    /// - Order: vertices 0 and 1 and their normals as in `SetDataAsCone`, then the ring at the first
    ///   point, then the ring at the second; two side triangles a segment, the first cap, the second.
    /// - Sharing: as `SetDataAsCone`.
    /// - Result: as `SetDataAsCone`.
    /// - Deliberate: the second cap is a fan from the first point too, with the normal of the second;
    ///   no triangle uses vertex 0.
    /// - Throws: `std::bad_alloc`; handles replaced by then keep their new arrays.
    /// - Complexity: linear in the segments, calling thread only.
    virtual bool SetDataAsCylinder(const ON_3dPoint& first, const ON_3dPoint& second, double radius,
                                   size_t segmentCount);
    /// @}

    /// @name Joining equal data (mesh/MergeSameVertex.cpp)
    /// @{
    /// Joins equal vertices, then equal normals, then equal colours.
    ///
    /// Runs `OnMergeSameVertex`, `OnMergeSameNormal` and `OnMergeSameColor`, in this order and each
    /// in any case. Triangles whose corners fell together stay; `RemoveDegenerateMesh` removes them.
    ///
    /// - Throws: what a step throws; the steps before it are done, it and those after it are not.
    virtual void MergeSameData();
    /// @}

    /// @name Deleting triangles and vertices (mesh/DeleteFacetFaces.cpp, DeleteUnusedVertices.cpp)
    /// @{
    /// Removes the listed triangles and returns how many remain.
    ///
    /// Positions, normals, colours and texture-UVs stay, also those that no triangle uses any more;
    /// `DeleteUnusedVertices` drops unused vertices.
    ///
    /// - Shape: `faces` holds triangle numbers, strictly ascending; numbers from the triangle count
    ///   on are ignored. Each index array loses the entries at these positions, each by its own
    ///   length.
    /// - Order: what remains keeps its order.
    /// - Sharing: cuts the vertex, normal, colour and texture-UV index arrays, and a UV array of
    ///   exactly three entries a triangle, in place. An index array that serves two roles is cut
    ///   once. Where texture-UV indices are cut and the UV array is also the texture-UV array, the
    ///   primitive first gets a UV array of its own through `SetUVArray`.
    /// - Result: the triangle count after the removal, not the number removed; 0, and nothing
    ///   touched, when there is no vertex index array. An empty list touches nothing.
    /// - Deliberate: a number not above the one before it is never matched and blocks those behind
    ///   it.
    /// - Deliberate: a UV array of another size stays whole.
    /// - Requires: `faces` is not itself an array of the mesh.
    /// - Throws: `boost::bad_get` when `IsNormalPerVertex` or `IsColorPerVertex` is overridden to
    ///   answer other than the array's form; `std::bad_alloc` when an array's storage shrinks or
    ///   UVs are copied. Each array is cut or as it was; those cut before stay cut.
    /// - Complexity: linear in the triangles, calling thread only. Storage less than half full
    ///   (rounded down) afterwards is reallocated to the exact size, or released when empty.
    /// - Example: {2, 2, 3} on five triangles removes triangle 2 only and returns 4.
    virtual size_t DeleteFacetFaces(const std::vector<size_t>& faces);

    /// Drops the vertices that no triangle of this primitive uses, and renumbers its triangles.
    ///
    /// For a vertex array that several primitives share, use the static form with all of them.
    ///
    /// - Shape: every corner v becomes newVertexOf[v], and its position is bit for bit what it was.
    /// - Order: the remaining vertices keep theirs, as do triangles and corners.
    /// - Sharing: vertex array and vertex index array, in place. All others are untouched; also a
    ///   texture-UV array, whose indices are renumbered all the same where they are the vertex
    ///   index array itself.
    /// - Result: nothing happens when the vertex array or the vertex index array is missing.
    ///   Without triangles all vertices go.
    /// - Deliberate: another primitive with the same vertex array and triangles of its own is left
    ///   with stale numbers.
    /// - Deliberate: new numbers have 32 bits, and an index array of 2^31 or more triangles is
    ///   passed over, both when used vertices are looked for and when numbers change.
    /// - Requires: every vertex number is below the vertex count.
    /// - Throws: `std::bad_alloc`; nothing has changed then.
    /// - Complexity: linear in triangles and vertices, on several threads for large meshes, with at
    ///   most four bytes a vertex on one to four threads. Storage of the vertices less than half
    ///   full (rounded down) afterwards is reallocated to the exact size, or released when empty.
    /// - Example: with {4, 1, 3} the only triangle of five vertices, 1, 3 and 4 stay and it becomes
    ///   {2, 0, 1}.
    virtual void DeleteUnusedVertices();
    /// @}

    /// @name Transforms (mesh/Transform.cpp)
    /// @{
    /// Transforms points and normals, each array once for all primitives that are walked with `done`.
    ///
    /// Points go through `xf`, divided by their weight; normals through the transposed inverse, and
    /// come out as unit vectors.
    ///
    /// - Sharing: vertex and normal array, in place. An array whose address is in `done` is left as
    ///   it is; the others are added. Its address must stay its own while the set is in use.
    /// - Result: false when there are normals to transform and `xf` has no inverse; true otherwise.
    /// - Deliberate: the normals go first. On false nothing was transformed, but the address of the
    ///   normal array is in `done`; without normals a singular `xf` is applied.
    /// - Throws: `std::bad_alloc` from the set; the array in question is as it was.
    /// - Complexity: linear in points and normals, no memory, calling thread only.
    /// - Source: Turkowski, "Properties of surface-normal transformations", 1990.
    virtual bool Transform(const ON_Xform& xf, std::set<void*>& done);
    /// Multiplies every point by `factor`; normals stay as they are.
    ///
    /// - Sharing: vertex array, in place, at every call: an array of two primitives that are both
    ///   scaled is scaled twice.
    /// - Result: always true.
    /// - Complexity: linear in the points, no memory, calling thread only.
    virtual bool Scale(double factor);
    /// @}

    /// @name Measures (mesh/Measure.cpp)
    /// @{
    /// Finds the axis-aligned bounding box of the vertices that triangles use.
    ///
    /// - Result: true and `box` written; false, and `box` untouched, when the vertex array or the
    ///   vertex index array is missing or there is no triangle.
    /// - Deliberate: vertices that no triangle uses do not count.
    /// - Requires: every vertex number is below the vertex count.
    /// - Complexity: linear in the triangles and vertices, a bit of memory a vertex where triangles
    ///   name them in random order, calling thread only.
    virtual bool CalcBoundingBox(ON_BoundingBox& box) const;
    /// @}

    /// @name Duplication (mesh/Duplicate.cpp)
    /// @{
    /// Makes `target` share this primitive's arrays and copies the crease angle.
    ///
    /// - Sharing: afterwards both hold the same array objects, so an edit in place through one is
    ///   seen through the other. Handles that are empty here become empty there.
    /// - Deliberate: the UV handle of the target is left as it is.
    virtual void ShallowCopy(boost::intrusive_ptr<VraMeshPrimitive> target);
    /// @}

    /// @name Measures (mesh/Measure.cpp)
    /// @{
    /// Returns the signed volume enclosed by the triangles as seen from `reference`.
    ///
    /// Sums the signed tetrahedra (reference, P0, P1, P2) of all triangles in array order. For a
    /// closed and consistently wound mesh the result does not depend on `reference`; for an open
    /// mesh it does.
    ///
    /// - Units: cubed length unit of the positions; positive for counter-clockwise winding seen from
    ///   outside.
    /// - Result: 0.0 when the vertex array or the vertex index array is missing or there is no
    ///   triangle.
    /// - Requires: every vertex number is below the vertex count.
    /// - Complexity: linear in the triangles, no allocation, calling thread only.
    /// - Source: Zhang and Chen, "Efficient feature extraction for 2D/3D objects in mesh
    ///   representation", 2001.
    virtual double CalcVolume(ON_3dPoint reference) const;
    /// @}

    /// @name Free edges (mesh/GetFreeEdges.cpp)
    /// @{
    /// Appends the edges that no other triangle traverses in the opposite direction.
    ///
    /// Each triangle traverses (first, second), (second, third) and (third, first). In the order of
    /// the triangles, an edge takes away one there is in the opposite direction; otherwise it is
    /// recorded, unless it is recorded already.
    ///
    /// - Shape: pairs (from, to) of vertex numbers, in the direction of their triangle.
    /// - Order: ascending by from, then by to, behind what `edges` holds.
    /// - Result: nothing is appended when the vertex index array is missing.
    /// - Deliberate: `edges` is not cleared, and room is made for the new edges without counting
    ///   those it holds.
    /// - Deliberate: where three and more triangles meet at an edge the order counts: there, back,
    ///   there leaves the edge free; there, there, back leaves nothing.
    /// - Deliberate: an edge from a vertex to itself is its own opposite, so every second one takes
    ///   away the one before.
    /// - Throws: `std::bad_alloc`; `edges` has changed at most by edges appended.
    /// - Complexity: linear in time and memory; n log n where the vertex numbers spread over more
    ///   than four times the triangle count or hundreds of edges meet at a vertex. Calling thread
    ///   only. Numbers are only compared and may address no vertex.
    /// - Example: triangles {0,1,2} and {0,2,3} give (0,1), (1,2), (2,3), (3,0).
    virtual void GetFreeEdges(std::vector<std::pair<size_t, size_t>>& edges) const;
    /// @}

protected:
    /// @name Steps of `MergeSameData` (mesh/MergeSameVertex.cpp, mesh/MergeSameNormalColor.cpp)
    /// @{
    /// Joins vertices at exactly equal positions, and with equal texture coordinates where the
    /// texture-UV array is there and not empty.
    ///
    /// Afterwards the vertices stand in ascending order and only used ones remain. The texture-UV
    /// array counts as one entry a vertex here and is reordered with the positions.
    ///
    /// - Shape: every corner c becomes newVertexOf[c], and its position compares equal to what it
    ///   was. Triangles are neither removed nor reordered.
    /// - Order: ascending by x, y, z, then by u, v. +0.0 and -0.0 are equal; where vertices that
    ///   fall together differ in them, the bits of the one used first stay.
    /// - Sharing: vertex array, texture-UV array and vertex index array, in place. Another primitive
    ///   with the same vertex array but triangles of its own is left with outdated numbers.
    /// - Result: nothing happens when the vertex array or the vertex index array is missing.
    /// - Deliberate: normals, colours, UVs and texture-UV indices keep their order, also those that
    ///   a host holds one a vertex.
    /// - Throws: std::out_of_range "invalid vector subscript" for a vertex number that is not below
    ///   the size of each of the arrays read, std::bad_alloc; nothing has changed then.
    /// - Complexity: linear in corners and vertices, n log n in the distinct vertices at worst;
    ///   calling thread only. Positions with NaN have no place in the order: where they and others
    ///   end up is not defined, but every number stays in range.
    /// - Example: positions (1,0,0), (0,5,5), (1,0,0) with triangle {0,1,2} become (0,5,5), (1,0,0)
    ///   with {1,0,1}.
    virtual void OnMergeSameVertex();

    /// Joins exactly equal normals.
    ///
    /// - Shape: the normal index array keeps its form and length; each of its numbers n becomes
    ///   newNormalOf[n]. Normals that it does not use are dropped.
    /// - Order: ascending by x, y, z; zeros as for `OnMergeSameVertex`.
    /// - Sharing: normal array and normal index array, in place; nothing else is read.
    /// - Result: nothing happens when one of the two is missing.
    /// - Throws: std::out_of_range "invalid vector subscript" for a number that is not below the
    ///   normal count, `boost::bad_get` when the index array is not of the form that
    ///   `IsNormalPerVertex` tells, std::bad_alloc; nothing has changed then.
    /// - Complexity: as `OnMergeSameVertex`, NaN included.
    /// - Example: normals {a, b, a} with numbers {2, 0, 2} become {a} with {0, 0, 0}.
    virtual void OnMergeSameNormal();

    /// Joins equal colours, as `OnMergeSameNormal` does normals.
    ///
    /// - Order: ascending by the packed value, unsigned.
    /// - Sharing: colour array and colour index array, in place; nothing else is read.
    virtual void OnMergeSameColor();
    /// @}

    /// @name Degenerate triangles (mesh/RemoveDegenerateMesh.cpp)
    /// @{
    /// Removes the triangles that `judge` gives up, and cuts the other index arrays by its table.
    ///
    /// Sets the judge's mode, has it answer for each triangle in order from its cursor on, and
    /// resets its indices; the table tells afterwards what went. To remove triangles of one's own
    /// choice, call `SetDegenTriangles` first and pass false.
    ///
    /// - Shape: with `judgeTriangles`, triangles with a repeated vertex number go and the table is
    ///   filled; without, those marked in the table go. Per-vertex lists and texture-UV indices
    ///   lose the triples of the same triangles, counted from table entry 0.
    /// - Sharing: vertex index, normal index, colour index and texture-UV index array, in place;
    ///   one that serves two roles is cut once. The others are not fetched when nothing is marked.
    ///   Storage is kept.
    /// - Result: false, and nothing done, when there is no vertex index array; otherwise true.
    /// - Deliberate: a per-triangle list loses the entries whose value is the number of a removed
    ///   triangle, wherever they stand. An entry that is no triangle's number stays.
    /// - Deliberate: the judge is left in table mode when another index array was there to cut, and
    ///   otherwise in the mode that `judgeTriangles` chose.
    /// - Requires: the judge has an entry for every triangle and for every triple of other lists.
    /// - Throws: `boost::bad_get` when `IsNormalPerVertex` or `IsColorPerVertex` is overridden to
    ///   answer other than the array's form; arrays cut by then stay cut.
    /// - Complexity: linear in the index arrays, no allocation, calling thread only.
    virtual bool OnRemoveDegenerateMesh(VraMeshDegenJudge& judge, bool judgeTriangles);
    /// @}

public:
    /// @name Duplication (mesh/Duplicate.cpp)
    /// @{
    /// Returns a copy with arrays of its own; sharing between roles of this primitive is kept.
    boost::intrusive_ptr<VraMeshPrimitive> Duplicate() const;

    /// Returns the duplicate of this primitive within one duplication pass.
    ///
    /// - Sharing: arrays that primitives of the pass share are copied once and shared again by the
    ///   duplicates.
    /// - Result: the same object each time it is called with the same map; an empty pointer, and
    ///   nothing recorded, when `OnDuplicate` gives one.
    /// - Requires: a duplicate made earlier with `map` still lives; the map does not own it.
    /// - Throws: `std::bad_alloc`, `std::length_error`; nothing is recorded for this primitive then.
    boost::intrusive_ptr<VraMeshPrimitive> Duplicate(VruDuplicateMap& map) const;

    /// Copies the crease angle and every array that is there into `target`.
    ///
    /// - Order: vertex, normal, colour, vertex index, texture-UV index, texture-UV, normal index,
    ///   colour index.
    /// - Sharing: an array already copied with `map` is shared, any other is copied and recorded.
    ///   Members are read and written directly, not through the accessors.
    /// - Result: always true.
    /// - Deliberate: handles that are empty here leave the target's as they are, and the UV array is
    ///   never copied.
    /// - Throws: `std::bad_alloc`, `std::length_error`; arrays assigned by then stay.
    /// - Complexity: linear in the bytes copied.
    bool DeepCopy(boost::intrusive_ptr<VraMeshPrimitive> target, VruDuplicateMap& map) const;
    /// @}

    /// @name Degenerate triangles (mesh/RemoveDegenerateMesh.cpp)
    /// @{
    /// Removes the triangles that name a vertex twice, such as joining equal vertices leave behind.
    ///
    /// Their vertices stay; `DeleteUnusedVertices` drops those that are no longer used. Triangles
    /// of zero area with three different vertex numbers stay.
    ///
    /// - Order: the remaining triangles keep theirs.
    /// - Sharing: vertex index, normal index, colour index and texture-UV index array, in place;
    ///   one that serves two roles is cut once. Storage is kept, and numbers in the arrays are not
    ///   changed.
    /// - Result: false when there is no vertex index array; otherwise true, whether or not a
    ///   triangle went.
    /// - Deliberate: a per-triangle list of normals or colours loses the entries whose value is the
    ///   number of a removed triangle, wherever they stand. An entry that is no triangle's number
    ///   stays.
    /// - Throws: `std::bad_alloc`, and nothing has changed; `boost::bad_get` as
    ///   `OnRemoveDegenerateMesh`.
    /// - Complexity: linear in the triangles; four bytes a triangle for the table; calling thread
    ///   only.
    /// - Example: {0,1,2}, {3,3,4}, {5,6,7} becomes {0,1,2}, {5,6,7}.
    bool RemoveDegenerateMesh();
    /// @}

    /// @name Transforms (mesh/Transform.cpp)
    /// @{
    /// Turns every triangle over by swapping its second and third corner.
    ///
    /// - Sharing: vertex index and texture-UV index array, and normal and colour index array where
    ///   they have the per-vertex form, in place; with `reverseNormals` also the normal array, whose
    ///   vectors are negated.
    /// - Deliberate: each role is swapped for itself, so an array that serves two roles, or two
    ///   primitives that are both reversed, is swapped twice and comes out as it was.
    /// - Throws: `boost::bad_get` where an override says per-vertex form and the array holds the
    ///   other; arrays before it in the order vertex, normal, colour, texture-UV are swapped.
    /// - Complexity: linear, no memory, calling thread only.
    void ReverseFaces(bool reverseNormals);
    /// @}

    /// @name Merging primitives (mesh/Merge.cpp)
    /// @{
    /// Gives `target` the triangles of all sources, with equal positions, normals and colours
    /// stored once.
    ///
    /// Normals are merged when every source with vertices has normal indices and all index arrays
    /// have one form; otherwise the target ends without normals. Colours likewise.
    ///
    /// - Shape: `vertexMaps`, `normalMaps` and `colorMaps` may be null. One inner vector a source is
    ///   appended to each of them, with one entry for each of the source's values: its number in the
    ///   target, or -1 when no triangle uses it (or this kind is not merged).
    /// - Order: triangles in the order of sources; values in the order of their first use by sources,
    ///   triangles and corners. Unused values are not carried over. Equality is exact; of +0.0 and
    ///   -0.0, which are equal, the first used stays. NaN equals nothing: each use of a value with NaN
    ///   adds it again.
    /// - Sharing: new arrays are installed through the setters of `target`, normals and colours that
    ///   were not merged as empty handles. Sources and their arrays are only read; the target may be
    ///   one of them.
    /// - Result: false, and nothing touched, when there are no sources; otherwise true.
    /// - Deliberate: UV and texture-UV arrays of the target are emptied; its texture-UV index array
    ///   and crease angle stay. Map entries are 32 bits wide.
    /// - Requires: every number of the sources is below the size of the array that it addresses, and
    ///   that array is there.
    /// - Throws: `boost::bad_get` for a source that has triangles and whose index array is missing or
    ///   not of the form that it tells, std::length_error, std::bad_alloc; the target is unchanged
    ///   then, the maps may have grown.
    /// - Complexity: linear in triangles and values, calling thread only.
    static bool Merge(boost::intrusive_ptr<VraMeshPrimitive> target,
                      const std::vector<boost::intrusive_ptr<const VraMeshPrimitive>>& sources,
                      std::vector<std::vector<int>>* vertexMaps = nullptr,
                      std::vector<std::vector<int>>* normalMaps = nullptr,
                      std::vector<std::vector<int>>* colorMaps = nullptr);
    /// @}

    /// @name Deleting vertices of several primitives (mesh/DeleteUnusedVertices.cpp)
    /// @{
    /// Drops unused vertices of several primitives, each vertex array once.
    ///
    /// As the member of the same name, but a vertex stays if any of the listed primitives that hold
    /// its array uses it, and the triangles of all of them are renumbered.
    ///
    /// - Sharing: vertex arrays and vertex index arrays, in place; vertex arrays are told apart by
    ///   address.
    /// - Result: a primitive that lacks one of the two arrays takes no part.
    /// - Deliberate: a vertex index array is renumbered as often as it is listed, which spoils it
    ///   from the second time on: new numbers are taken for old ones, and 1 stands for a vertex
    ///   that went. List one primitive for each vertex index array.
    /// - Requires: no empty pointers; every vertex number is below the vertex count.
    /// - Throws: `std::bad_alloc`; vertex arrays done by then stay done, with all their triangles,
    ///   and the others are as they were.
    /// - Complexity: as the member, for the vertex arrays one after the other.
    static void DeleteUnusedVertices(
        const std::vector<boost::intrusive_ptr<VraMeshPrimitive>>& primitives);
    /// @}

    /// @name Weighting of vertex normals
    /// One setting for the whole process, `Area` at first, read by `CreateNormalPerVertex` of every
    /// primitive. Not synchronised and not checked: do not change it while normals are made.
    /// @{
    static VertexNormalWeightType GetVertexNormalWeightType();
    static void SetVertexNormalWeightType(VertexNormalWeightType weightType);
    /// @}

private:
    void AddRef() const;
    void Release() const;

    friend VERIDANE_MESH_API void intrusive_ptr_add_ref(const VraMeshPrimitive* mesh);
    friend VERIDANE_MESH_API void intrusive_ptr_release(const VraMeshPrimitive* mesh);
    friend VERIDANE_MESH_API void intrusive_ptr_add_ref(const VraMesh* mesh);
    friend VERIDANE_MESH_API void intrusive_ptr_release(const VraMesh* mesh);

    static VertexNormalWeightType vertexNormalWeightType_;

    // Destruction runs in reverse: the texture-UV array goes first, the vertex array last.
    double creaseAngle_ = 0.0;
    std::shared_ptr<VertexArray> vertexArray_;
    std::shared_ptr<NormalArray> normalArray_;
    std::shared_ptr<ColorArray> colorArray_;
    std::shared_ptr<VertexIndexArray> vertexIndexArray_;
    std::shared_ptr<IndexArray> normalIndexArray_;
    std::shared_ptr<IndexArray> colorIndexArray_;
    std::shared_ptr<TextureUVIndexArray> textureUVIndexArray_;
    std::shared_ptr<UVArray> uvArray_;
    std::shared_ptr<TextureUVArray> textureUVArray_;
    mutable std::atomic<uint32_t> referenceCount_{0};
};

static_assert(sizeof(VraMeshPrimitive::TriangleIndex) == 24, "three 64-bit numbers");
static_assert(std::is_trivially_copyable_v<VraMeshPrimitive::TriangleIndex>);

}  // namespace Vr
